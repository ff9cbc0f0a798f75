// Kernels over the bits of several filters: gate numbers, packing, spaced selection. Event i is bit i % 32 of
// word i / 32, as in sections/kernels.h. Bits at or above a `count` are never used, words behind it never
// read.
#pragma once

#include <cstdint>
#include <span>

namespace Orvane {

/// numbers[i] = 1 + the position of the last of `filters` that has bit i; `unassigned` when none has, or when
/// `base` is not null and lacks bit i. At most 65534 filters.
void NumberEvents(std::span<const std::uint32_t* const> filters, const std::uint32_t* base, int count,
                  std::uint16_t unassigned, std::uint16_t* numbers);

/// Moves the values of the selected events to the front, in order. Returns how many there are; the values
/// behind them are undefined.
int KeepSelected(const std::uint32_t* select, int count, std::uint16_t* values);

/// Appends the bits of `bits` that belong to the selected ones of the events `begin` to `end - 1`: the first
/// one becomes bit `position` of `out`. The bits of `out` from there on must be clear as far as they are
/// written.
void PackSelectedBits(const std::uint32_t* select, const std::uint32_t* bits, int begin, int end,
                      std::uint32_t* out, int position);

/// Sets the bits trunc(p), trunc(p + step), trunc(p + 2 step), …, with p starting at `position` and float
/// sums, while they lie below `count` and `remaining` is positive. `position` and `remaining` are left where
/// it ended. Returns how many were selected.
int SelectSpaced(std::uint32_t* words, int count, float step, float& position, int& remaining);

}  // namespace Orvane
