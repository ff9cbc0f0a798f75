// EventSection. Every operation that exists once per form of sharing is written once, over a predicate that
// says whether signal `s` has a shared column.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

#include <orvane/MemoryManage.h>
#include <orvane/Sections.h>

#include "foundation/throw.h"
#include "memory/pooled.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

constexpr auto NothingShared = [](int) { return false; };

auto SharedByFlags(const std::vector<bool>& reuse) {
    return [&reuse](int s) {
        const auto signal = static_cast<std::size_t>(s);
        assert(signal < reuse.size());
        return static_cast<bool>(reuse[signal]);
    };
}

auto SharedByMap(const std::vector<int>& map) {
    return [&map](int s) {
        const auto signal = static_cast<std::size_t>(s);
        assert(signal < map.size());
        return map[signal] != -1;
    };
}

auto SharedWith(const EventSection& ref, const EventSection& section) {
    return [&ref, &section](int s) {
        assert(s < ref.SignalCount);
        return section.Signals[s] == ref.Signals[s];
    };
}

float** NewTable(int signalCount) {
    return new float*[static_cast<std::size_t>(signalCount)]();
}

/// New columns for the signals without a shared one, in signal order. What is not handed over goes back.
template <class IsShared>
std::vector<PooledColumn> TakeColumns(int signalCount, IsShared isShared) {
    std::vector<PooledColumn> columns;
    for (int s = 0; s < signalCount; ++s) {
        if (!isShared(s)) columns.emplace_back();
    }
    return columns;
}

/// Fills the table with the columns `sharedColumn(s)` and, for the other signals, with `own` in order.
template <class IsShared, class SharedColumn>
void FillTable(EventSection& section, std::vector<PooledColumn> own, IsShared isShared,
               SharedColumn sharedColumn) {
    auto nextOwn = own.begin();
    for (int s = 0; s < section.SignalCount; ++s) {
        section.Signals[s] = isShared(s) ? sharedColumn(s) : (nextOwn++)->Release();
    }
}

void FillTable(EventSection& section, std::vector<PooledColumn> own) {
    FillTable(section, std::move(own), NothingShared, [](int) { return nullptr; });
}

template <class IsShared, class Action>
void ForEachOwnColumn(EventSection& section, IsShared isShared, Action action) {
    if (section.Signals == nullptr) return;
    for (int s = 0; s < section.SignalCount; ++s) {
        if (section.Signals[s] != nullptr && !isShared(s)) action(s);
    }
}

/// A column leaves the table before it is returned: when the pool refuses it, releasing again goes on
/// behind it.
template <class IsShared>
void ReleaseColumns(EventSection& section, IsShared isShared) {
    ForEachOwnColumn(section, isShared, [&section](int s) {
        MemoryManage::FreeFloatArray(std::exchange(section.Signals[s], nullptr));
    });
    delete[] std::exchange(section.Signals, nullptr);
    section.SignalCount = 0;
    section.Init();
}

/// Deliberate: where the events go (`destStart`) plays no part in the check.
void RequireRoom(const EventSection& section, int count) {
    assert(count >= 0);
    if (count > section.Capacity - section.Count) ThrowInvalidMemory("CopyData out of array capacity.");
}

template <class IsShared>
void CopyColumns(EventSection& dest, EventSection& src, int srcStart, int destStart, int count,
                 IsShared isShared) {
    ForEachOwnColumn(dest, isShared, [&](int s) {
        std::copy_n(src.Signals[s] + srcStart, count, dest.Signals[s] + destStart);
    });
    dest.Count += count;
}

template <class IsShared>
void RemoveFromColumns(EventSection& section, int start, int count, IsShared isShared) {
    assert(start >= 0 && count >= 0);
    if (section.Count < count) ThrowInvalidMemory("Remove data count less then event section count.");
    const int following = section.Count - start - count;
    if (following > 0) {
        ForEachOwnColumn(section, isShared, [&](int s) {
            std::copy_n(section.Signals[s] + start + count, following, section.Signals[s] + start);
        });
    }
    section.Count -= count;
}

void InsertColumn(EventSection& section, int pos, float* column) {
    assert(pos >= 0 && pos <= section.SignalCount);
    float** table = NewTable(section.SignalCount + 1);
    std::copy_n(section.Signals, pos, table);
    table[pos] = column;
    std::copy(section.Signals + pos, section.Signals + section.SignalCount, table + pos + 1);
    delete[] std::exchange(section.Signals, table);
    section.SignalCount += 1;
}

}  // namespace

void EventSection::CheckEventValue(int signalCount) {
    if (Signals != nullptr && SignalCount == signalCount) return;
    float** table = NewTable(signalCount);
    delete[] std::exchange(Signals, table);
    SignalCount = signalCount;
}

bool EventSection::Initial(int signalCount) {
    std::vector<PooledColumn> own = TakeColumns(signalCount, NothingShared);
    CheckEventValue(signalCount);
    FillTable(*this, std::move(own));
    Capacity = MemoryManage::GetCapacity();
    return true;
}

bool EventSection::Initial_Share(int signalCount) {
    CheckEventValue(signalCount);
    std::fill_n(Signals, SignalCount, nullptr);
    Capacity = MemoryManage::GetCapacity();
    return true;
}

bool EventSection::Initial(EventSection& src, std::vector<bool>& reuse) {
    std::vector<PooledColumn> own = TakeColumns(src.SignalCount, SharedByFlags(reuse));
    CheckEventValue(src.SignalCount);
    FillTable(*this, std::move(own), SharedByFlags(reuse), [&src](int s) { return src.Signals[s]; });
    Capacity = MemoryManage::GetCapacity();
    return true;
}

bool EventSection::Initial(EventSection& src, std::vector<int>& map) {
    const int signalCount = static_cast<int>(map.size());
    std::vector<PooledColumn> own = TakeColumns(signalCount, SharedByMap(map));
    // Deliberate: a table that exists is kept whatever its length. Hosts depend on it.
    if (Signals == nullptr) Signals = NewTable(signalCount);
    SignalCount = signalCount;
    FillTable(*this, std::move(own), SharedByMap(map), [&](int s) { return src.Signals[map.data()[s]]; });
    Capacity = MemoryManage::GetCapacity();
    return true;
}

void EventSection::Release() {
    ReleaseColumns(*this, NothingShared);
}

void EventSection::Release(std::vector<bool>& reuse) {
    ReleaseColumns(*this, SharedByFlags(reuse));
}

void EventSection::Release(std::vector<int>& map) {
    ReleaseColumns(*this, SharedByMap(map));
}

void EventSection::Release(EventSection& ref) {
    ReleaseColumns(*this, SharedWith(ref, *this));
}

void EventSection::Release_Share() {
    ReleaseColumns(*this, [](int) { return true; });
}

SignalSection* EventSection::GetSignalSection(int s) {
    assert(s >= 0 && s < SignalCount);
    auto* section = new SignalSection;
    section->Copy(*this);
    section->Values = Signals[s];
    return section;
}

bool EventSection::Clone(EventSection& src) {
    std::vector<PooledColumn> own = TakeColumns(src.SignalCount, NothingShared);
    for (int s = 0; s < src.SignalCount; ++s) {
        std::copy_n(src.Signals[s], MemoryManage::GetCapacity(), own[static_cast<std::size_t>(s)].Get());
    }
    CheckEventValue(src.SignalCount);
    FillTable(*this, std::move(own));
    Copy(src);
    return true;
}

bool EventSection::CopyShareSignal(EventSection& src) {
    CheckEventValue(src.SignalCount);
    std::copy_n(src.Signals, SignalCount, Signals);
    Copy(src);
    return true;
}

bool EventSection::CopyData(EventSection& src, int srcStart, int destStart, int count) {
    RequireRoom(*this, count);
    CheckEventValue(src.SignalCount);
    CopyColumns(*this, src, srcStart, destStart, count, NothingShared);
    return true;
}

bool EventSection::CopyData(EventSection& src, int srcStart, int destStart, int count, EventSection& ref) {
    RequireRoom(*this, count);
    CheckEventValue(src.SignalCount);
    CopyColumns(*this, src, srcStart, destStart, count, SharedWith(ref, *this));
    return true;
}

bool EventSection::CopyData(EventSection& src, int srcStart, int destStart, int count,
                            std::vector<bool>& reuse) {
    RequireRoom(*this, count);
    CheckEventValue(src.SignalCount);
    CopyColumns(*this, src, srcStart, destStart, count, SharedByFlags(reuse));
    return true;
}

bool EventSection::RemoveData(int start, int count) {
    RemoveFromColumns(*this, start, count, NothingShared);
    return true;
}

bool EventSection::RemoveData(int start, int count, EventSection& ref) {
    RemoveFromColumns(*this, start, count, SharedWith(ref, *this));
    return true;
}

bool EventSection::RemoveData(int start, int count, std::vector<bool>& reuse) {
    RemoveFromColumns(*this, start, count, SharedByFlags(reuse));
    return true;
}

float* EventSection::operator[](int s) const {
    return Signals[s];
}

void EventSection::SetValue(int s, int e, float v) {
    Signals[s][e] = v;
}

void EventSection::AddValue(int s, float d) {
    AddToColumn(Signals[s], Count, d);
}

void EventSection::InsertSignal(int pos) {
    PooledColumn column;
    InsertColumn(*this, pos, column.Get());
    column.Release();
}

void EventSection::InsertSignalRef(int pos, int srcSignal, EventSection& src) {
    InsertColumn(*this, pos, src.Signals[srcSignal]);
}

void EventSection::RemoveSignal(int pos) {
    float* column = Signals[pos];
    RemoveSignalRef(pos);
    MemoryManage::FreeFloatArray(column);
}

void EventSection::RemoveSignalRef(int pos) {
    assert(pos >= 0 && pos < SignalCount);
    float** table = NewTable(SignalCount - 1);
    std::copy_n(Signals, pos, table);
    std::copy(Signals + pos + 1, Signals + SignalCount, table + pos);
    delete[] std::exchange(Signals, table);
    SignalCount -= 1;
}

void EventSection::SetShareSignal(int pos, int srcSignal, EventSection& src) {
    assert(pos >= 0 && pos < SignalCount);
    Signals[pos] = src.Signals[srcSignal];
}

}  // namespace Orvane
