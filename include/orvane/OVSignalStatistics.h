// One row of a population table.
#pragma once

namespace Orvane {

/// The statistics of one signal over one population. Each field holds, bit for bit, what the operation of
/// IOVStatisticsSignalSection named beside it gives for the same values.
struct OVSignalStatistics {
    int Count = 0;       ///< Average, in a form with count
    float Min = 0;       ///< Average, in the form with count and range
    float Max = 0;       ///< Average, in the form with count and range
    float Average = 0;   ///< Average
    float Median = 0;    ///< Median
    float SD = 0;        ///< SD
    float CV = 0;        ///< CV: a ratio with its sign
    float RobustSD = 0;  ///< RobustSD about `Median`
    float RobustCV = 0;  ///< RobustCV about `Median`: a ratio with its sign
};

}  // namespace Orvane
