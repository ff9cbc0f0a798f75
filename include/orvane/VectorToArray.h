// Hands the contents of a vector to an interface that takes a plain array.
#pragma once

#include <vector>

#include <orvane/Platform.h>

namespace Orvane {

template <class T>
class VectorToArray;

/// Owns a plain array with the elements of a vector of int, in order. Never assign one: assignment copies the
/// pointer, and two objects then own one array.
template <>
class ORVANE_API VectorToArray<int> {
public:
    /// Copies the elements.
    explicit VectorToArray(std::vector<int>& v);
    VectorToArray(const VectorToArray&) = delete;
    VectorToArray& operator=(const VectorToArray&) = default;
    ~VectorToArray();

    /// The array, valid as long as this object; never null, also for an empty vector.
    int* GetArray();

private:
    int* array_;
};

}  // namespace Orvane
