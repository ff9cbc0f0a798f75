#include <orvane/VectorToArray.h>

#include <algorithm>

namespace Orvane {

VectorToArray<int>::VectorToArray(std::vector<int>& v) : array_(new int[v.size()]) {
    std::copy(v.begin(), v.end(), array_);
}

VectorToArray<int>::~VectorToArray() {
    delete[] array_;
}

int* VectorToArray<int>::GetArray() {
    return array_;
}

}  // namespace Orvane
