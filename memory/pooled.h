// Owners of temporary pool storage, for use inside operations: the storage returns to the pool on every path.
#pragma once

#include <utility>

#include <orvane/MemoryManage.h>

namespace Orvane {

/// Owns one packet, taken at construction (contents not cleared) and returned at destruction. Throws
/// OutOfMemoryException* when the pool is exhausted.
template <class Element, Element* (*Take)(), void (*Return)(Element*)>
class Pooled {
public:
    Pooled() : packet_(Take()) {}
    Pooled(const Pooled&) = delete;
    Pooled& operator=(const Pooled&) = delete;
    Pooled(Pooled&& other) noexcept : packet_(other.Release()) {}
    ~Pooled() {
        if (packet_ != nullptr) Return(packet_);
    }

    /// The first element; null after Release or a move.
    Element* Get() const { return packet_; }

    /// Hands the packet to the caller, who returns it from now on.
    Element* Release() { return std::exchange(packet_, nullptr); }

private:
    Element* packet_;
};

/// MemoryManage::GetCapacity() floats.
using PooledColumn = Pooled<float, MemoryManage::NewFloatArray, MemoryManage::FreeFloatArray>;
/// MemoryManage::GetCapacity() shorts.
using PooledShorts = Pooled<short, MemoryManage::NewShortArray, MemoryManage::FreeShortArray>;
/// MemoryManage::GetCapacityInt() ints.
using PooledInts = Pooled<int, MemoryManage::NewIntArray, MemoryManage::FreeIntArray>;
/// MemoryManage::GetCapacity() bits.
using PooledBits = Pooled<int, MemoryManage::NewBitArray, MemoryManage::FreeBitArray>;

}  // namespace Orvane
