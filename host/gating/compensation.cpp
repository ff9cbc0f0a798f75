#include "gating/compensation.h"

#include <algorithm>
#include <cmath>
#include <set>

#include <orvane/OVCompensation.h>
#include <orvane/OVEventSection.h>

#include "fcs_files/spillover_csv.h"
#include "text/numbers.h"

namespace Host {
namespace {

/// Events are floats of 24 bits: beyond this condition number none of them says anything about the result.
constexpr double LargestCondition = 1 << 24;

/// The largest sum of absolute values in a row.
double Norm(const Orvane::OVMatrix& matrix) {
    double norm = 0;
    for (int i = 0; i < matrix.GetRowNum(); ++i) {
        double sum = 0;
        for (int j = 0; j < matrix.GetColumnNum(); ++j)
            sum += std::abs(matrix.GetValue(i, j));
        norm = std::isnan(sum) ? sum : std::max(norm, sum);
    }
    return norm;
}

Orvane::OVMatrix Invert(const std::string& where, const std::vector<double>& coefficients, int size) {
    std::vector<double> values = coefficients;
    const Orvane::OVMatrix matrix(values.data(), size, size);
    Orvane::OVMatrix inverse = matrix.Invert();
    const double condition = Norm(matrix) * Norm(inverse);
    if (!(condition <= LargestCondition)) {
        Refuse(where + ": condition number", std::isfinite(condition) ? Rounded(condition) : "infinite",
               "at most " + Rounded(LargestCondition) + ", a matrix that can be inverted");
    }
    return inverse;
}

/// Whether channel i is not what it was, and whether another one needs it.
bool Changes(const Orvane::OVMatrix& inverse, int i) {
    for (int j = 0; j < inverse.GetRowNum(); ++j) {
        if (inverse.GetValue(j, i) != (i == j ? 1.0 : 0.0)) return true;
    }
    return false;
}
bool IsNeeded(const Orvane::OVMatrix& inverse, int i) {
    for (int j = 0; j < inverse.GetColumnNum(); ++j) {
        if (j != i && inverse.GetValue(i, j) != 0.0) return true;
    }
    return false;
}

void RefuseRepeated(const std::string& where, const std::vector<std::size_t>& channels) {
    std::set<std::size_t> seen;
    for (const std::size_t channel : channels) {
        if (seen.insert(channel).second) continue;
        Refuse(where, "parameter " + std::to_string(channel + 1) + " twice", "each channel once");
    }
}

Compensation FromSpillover(const Spillover& matrix, const EventLayout& layout) {
    std::vector<std::size_t> channels;
    for (const std::string& name : matrix.names) {
        const std::optional<std::size_t> channel = FindChannel(layout, name);
        if (!channel) Refuse(matrix.keyword, name, "names of parameters, and the file has none of that name");
        channels.push_back(*channel);
    }
    return {matrix.keyword, matrix.coefficients, channels};
}

bool HasChannels(const Spillover& matrix, const EventLayout& layout) {
    return std::all_of(matrix.names.begin(), matrix.names.end(),
                       [&](const std::string& name) { return FindChannel(layout, name).has_value(); });
}

}  // namespace

Compensation::Compensation(const std::string& where, const std::vector<double>& coefficients,
                           const std::vector<std::size_t>& channels) {
    RefuseRepeated(where, channels);
    const Orvane::OVMatrix inverse = Invert(where, coefficients, static_cast<int>(channels.size()));
    std::vector<int> positions;
    for (int i = 0; i < inverse.GetRowNum(); ++i) {
        const bool changes = Changes(inverse, i);
        if (!changes && !IsNeeded(inverse, i)) continue;
        positions.push_back(i);
        channels_.push_back(static_cast<int>(channels[static_cast<std::size_t>(i)]));
        if (!changes) unchanged_.push_back(channels_.back());
    }
    const auto size = static_cast<int>(positions.size());
    matrix_.InitMatrix(size, size);
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < size; ++j) {
            const double value = inverse.GetValue(positions[static_cast<std::size_t>(j)],
                                                  positions[static_cast<std::size_t>(i)]);
            matrix_.SetValue(i, j, i == j ? value : -value);
        }
    }
}

CompensatedEvents::CompensatedEvents(std::vector<Orvane::EventSection*>& raw,
                                     const Compensation& compensation)
    : raw_(raw) {
    try {
        Fill(compensation);
    } catch (...) {
        Release();
        throw;
    }
}

CompensatedEvents::~CompensatedEvents() {
    Release();
}

void CompensatedEvents::Release() {
    Orvane::OVEventSection().ReleaseVectorSectionCompensation(raw_, sections_);
}

/// The library writes every channel of the matrix; those that come out as they went in are shared afterwards.
void CompensatedEvents::Fill(const Compensation& compensation) {
    if (raw_.empty()) return;
    Orvane::OVEventSection operations;
    std::vector<bool> shared(static_cast<std::size_t>(raw_.front()->SignalCount), true);
    for (const int channel : compensation.channels_)
        shared[static_cast<std::size_t>(channel)] = false;
    operations.SynchronousEventSectionCompensation(sections_, raw_, shared);
    if (compensation.ChangesNothing()) return;
    std::vector<int> channels = compensation.channels_;
    std::vector<float> baselines(channels.size(), 0.0F);
    std::vector<int> none;
    Orvane::OVCompensation().CalcCompensation(sections_, raw_, compensation.matrix_, baselines, channels,
                                              Orvane::OVMatrix(), baselines, none);
    for (const int channel : compensation.unchanged_)
        shared[static_cast<std::size_t>(channel)] = true;
    operations.SynchronousEventSectionCompensation(sections_, raw_, shared);
}

CompensationChoice ReadCompensationChoice(const std::string& text) {
    using Source = CompensationChoice::Source;
    if (text.empty()) return {};
    if (text == "none") return {Source::None};
    if (text == "file") return {Source::File};
    return {Source::Given, ReadSpilloverCsv(text)};
}

const Spillover* ChosenMatrix(const CompensationChoice& choice, const std::optional<Spillover>& ofFile) {
    using Source = CompensationChoice::Source;
    if (choice.source == Source::None) return nullptr;
    if (choice.source == Source::Given) return &choice.matrix;
    return ofFile ? &*ofFile : nullptr;
}

Compensation ChooseCompensation(const CompensationChoice& choice, const std::optional<Spillover>& ofFile,
                                const EventLayout& layout, Findings& findings) {
    using Source = CompensationChoice::Source;
    if (choice.source == Source::None) return {};
    if (choice.source == Source::Given) return FromSpillover(choice.matrix, layout);
    if (choice.source == Source::File) {
        if (!ofFile)
            RefuseMissing("spill-over matrix", std::string("one that can be read in ") + SpilloverKeywords);
        return FromSpillover(*ofFile, layout);
    }
    if (!ofFile || !HasChannels(*ofFile, layout)) return {};
    try {
        return FromSpillover(*ofFile, layout);
    } catch (const Refusal& refusal) {
        findings.Warn(refusal.Cause(), "the values are not compensated");
        return {};
    }
}

}  // namespace Host
