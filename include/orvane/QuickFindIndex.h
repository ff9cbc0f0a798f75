// Finds the segment that an address lies in.
#pragma once

#include <cstdint>
#include <vector>

#include <orvane/Platform.h>

namespace Orvane {

/// The addresses of one segment, Start <= address < End.
struct AddressInfo {
    std::int64_t Start;  ///< first address
    std::int64_t End;    ///< one past the last address
    int Size;            ///< bytes
    int Index;           ///< position of the segment in the pool's vector of segments

    /// Whether the segment contains `address`.
    bool IsInRange(std::int64_t address) const { return Start <= address && address < End; }
    /// Whether the segment starts above `address`; its end does not matter.
    bool IsLarge(std::int64_t address) const { return Start > address; }
    /// Whether the segment starts below `address`; its end does not matter.
    bool IsLess(std::int64_t address) const { return Start < address; }
};

/// An index from addresses to segments that do not overlap. Segments are few, large and usually lie evenly,
/// so a position guessed by interpolation is normally the right one.
///
/// Owns its items. Copying copies the pointers, and only one of the copies may be destroyed. Not locked.
class ORVANE_API QuickFindIndex {
public:
    /// An empty index, or one that shares the items of another.
    QuickFindIndex() = default;
    QuickFindIndex(const QuickFindIndex&) = default;
    QuickFindIndex& operator=(const QuickFindIndex&) = default;
    ~QuickFindIndex();

    /// Files the `size` bytes from `address` on under `index`.
    void AddItem(void* address, int size, int index);

    /// Removes the item that contains `address`. Throws the text "No find address in itmes."
    /// (`const char*`) when there is none.
    void RemoveItem(void* address);

    /// The Index of the item that contains `address`, or -1. Never throws.
    int FindIndex(void* address);

    std::vector<AddressInfo*> Items;  ///< ascending by Start
    std::int64_t MaxAddress = 0;      ///< End of the last item, 0 when empty
    std::int64_t MinAddress = 0;      ///< Start of the first item, 0 when empty

private:
    int FindIndex(void* address, int& position);
    int FindPosition(std::int64_t address) const;
    void UpdateAddressMaxAndMin(int removedPosition);
    void UpdateItemsPerByte();

    double itemsPerByte_ = 0.0;  // items per byte from MinAddress to MaxAddress, for the guess
};

}  // namespace Orvane
