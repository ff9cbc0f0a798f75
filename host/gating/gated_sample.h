// The events of a file as every command works on them: read, compensated and gated.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fcs_files/sample.h"
#include "gating/compensation.h"
#include "gating/populations.h"

namespace Host {

/// What `--compensate`, `--gates` and `--population` say; empty for nothing.
struct AnalysisOptions {
    std::string compensate;
    std::string gates;
    std::string population;
};

/// The same, read: what is to be done with the events of each file.
struct Analysis {
    ValueKind values = ValueKind::Scale;
    CompensationChoice compensation;
    std::optional<Strategy> strategy;
    std::string population;  ///< the only one to report; all when empty
};

/// Reads the matrix and the strategy. Channel values are neither compensated nor gated. Throws Refusal when
/// one of the files cannot be used, naming it.
Analysis ReadAnalysis(const AnalysisOptions& options, ValueKind values);

class GatedSample {
public:
    /// Reads and evaluates the events of `file`; what does not fit the file is refused before. Warns of a
    /// matrix that is not used. Throws as Sample does, and Refusal.
    GatedSample(FcsFile& file, const Analysis& analysis, Findings& findings,
                const std::function<void(std::uint64_t)>& progress);
    GatedSample(const GatedSample&) = delete;
    GatedSample& operator=(const GatedSample&) = delete;
    ~GatedSample() = default;

    /// All events, compensated.
    std::vector<Orvane::EventSection*>& Events() { return compensated_.Sections(); }

    /// All events as they stand in the file.
    std::vector<Orvane::EventSection*>& RawEvents() { return sample_.Events(); }

    /// Whether the two differ.
    bool IsCompensated() const { return !compensation_.ChangesNothing(); }

    /// The strategy in terms of the columns; one without gates when there is none.
    const StrategyBinding& Binding() const { return binding_; }

    /// One population for every gate of the strategy, in its order.
    std::vector<GatedPopulation>& Populations() { return populations_; }

private:
    Compensation compensation_;
    StrategyBinding binding_;
    Sample sample_;
    CompensatedEvents compensated_;
    std::vector<GatedPopulation> populations_;
};

}  // namespace Host
