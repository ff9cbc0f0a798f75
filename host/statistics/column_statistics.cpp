#include "statistics/column_statistics.h"

namespace Host {

Orvane::OVSignalStatistics ComputeStatistics(Column& column, Membership* members,
                                             Orvane::IOVStatisticsSignalSection& operations) {
    Orvane::OVSignalStatistics statistics;
    if (members == nullptr) {
        operations.CalcStatistic_MorePara(column.Sections(), statistics);
    } else {
        operations.CalcStatistic_MorePara(column.Sections(), members->Sections(), statistics);
    }
    return statistics;
}

std::uint64_t CountWhere(Column& column, Membership* members, bool (*matches)(float)) {
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < column.Sections().size(); ++i) {
        const Orvane::SignalSection& section = *column.Sections()[i];
        for (int e = 0; e < section.Count; ++e) {
            const bool inside = members == nullptr || members->Sections()[i]->GetFlag(e);
            if (inside && matches(section.Values[e])) ++count;
        }
    }
    return count;
}

}  // namespace Host
