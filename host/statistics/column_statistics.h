// The statistics of a column over a population.
#pragma once

#include <cstdint>

#include <orvane/OVStatisticsSignalSection.h>

#include "gating/column.h"
#include "gating/membership.h"

namespace Host {

/// Over the events inside `members`, or over all when it is null.
Orvane::OVSignalStatistics ComputeStatistics(Column& column, Membership* members,
                                             Orvane::IOVStatisticsSignalSection& operations);

/// How many of these values `matches` says true of.
std::uint64_t CountWhere(Column& column, Membership* members, bool (*matches)(float));

}  // namespace Host
