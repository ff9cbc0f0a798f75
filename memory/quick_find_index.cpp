#include <orvane/QuickFindIndex.h>

#include <algorithm>
#include <memory>

namespace Orvane {
namespace {

std::int64_t ToAddress(void* p) {
    return static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(p));
}

}  // namespace

QuickFindIndex::~QuickFindIndex() {
    for (AddressInfo* item : Items)
        delete item;
}

void QuickFindIndex::AddItem(void* address, int size, int index) {
    const std::int64_t start = ToAddress(address);
    auto item = std::make_unique<AddressInfo>(AddressInfo{start, start + size, size, index});
    const auto place = std::lower_bound(Items.begin(), Items.end(), start,
                                        [](const AddressInfo* a, std::int64_t b) { return a->IsLess(b); });
    Items.insert(place, item.get());
    static_cast<void>(item.release());
    MinAddress = Items.front()->Start;
    MaxAddress = Items.back()->End;
    UpdateItemsPerByte();
}

void QuickFindIndex::RemoveItem(void* address) {
    const int position = FindPosition(ToAddress(address));
    if (position < 0) throw "No find address in itmes.";
    delete Items[static_cast<std::size_t>(position)];
    Items.erase(Items.begin() + position);
    UpdateAddressMaxAndMin(position);
}

int QuickFindIndex::FindIndex(void* address) {
    int position = -1;
    return FindIndex(address, position);
}

int QuickFindIndex::FindIndex(void* address, int& position) {
    position = FindPosition(ToAddress(address));
    return position < 0 ? -1 : Items[static_cast<std::size_t>(position)]->Index;
}

// The guess is right when segments lie evenly. When they do not (a system may place them in regions far
// apart), a binary search keeps every lookup short.
int QuickFindIndex::FindPosition(std::int64_t address) const {
    if (address < MinAddress || address >= MaxAddress) return -1;
    const auto guess = static_cast<std::size_t>(static_cast<double>(address - MinAddress) * itemsPerByte_);
    if (guess < Items.size() && Items[guess]->IsInRange(address)) return static_cast<int>(guess);

    const auto above = std::upper_bound(Items.begin(), Items.end(), address,
                                        [](std::int64_t a, const AddressInfo* b) { return b->IsLarge(a); });
    const auto found = above - 1;  // exists: MinAddress is the first item's start
    return (*found)->IsInRange(address) ? static_cast<int>(found - Items.begin()) : -1;
}

void QuickFindIndex::UpdateAddressMaxAndMin(int removedPosition) {
    if (Items.empty()) {
        MinAddress = MaxAddress = 0;
        return;
    }
    if (removedPosition == 0) MinAddress = Items.front()->Start;
    if (removedPosition == static_cast<int>(Items.size())) MaxAddress = Items.back()->End;
    UpdateItemsPerByte();
}

void QuickFindIndex::UpdateItemsPerByte() {
    itemsPerByte_ = static_cast<double>(Items.size()) / static_cast<double>(MaxAddress - MinAddress);
}

}  // namespace Orvane
