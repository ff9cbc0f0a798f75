// Matrices of spill-over, as a keyword and as a file of comma-separated values, up to compensated events.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include <orvane/OVEventSection.h>

#include "fuzz/host_support.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "host/gating/compensation.h"

namespace {

const Host::EventLayout& Layout() {
    static const Host::EventLayout layout = [] {
        Host::EventLayout made;
        for (const char* name : {"A", "B", "C", "D"}) {
            made.parameters.emplace_back();
            made.parameters.back().name = name;
        }
        return made;
    }();
    return layout;
}

/// One event for each row of the matrix: what one unit of its channel gives.
struct SpilledUnits {
    SpilledUnits(const Host::Spillover& matrix, const std::vector<std::size_t>& channels) {
        const auto count = static_cast<int>(channels.size());
        Orvane::OVEventSection().NewEventSection(Sections, count,
                                                 static_cast<int>(Layout().parameters.size()));
        Orvane::EventSection& section = *Sections.back();
        section.Count = count;
        for (int p = 0; p < section.SignalCount; ++p)
            std::fill_n(section[p], count, 0.0F);
        for (std::size_t row = 0; row < channels.size(); ++row) {
            for (std::size_t column = 0; column < channels.size(); ++column)
                section[static_cast<int>(channels[column])][row] = static_cast<float>(matrix.At(row, column));
        }
    }
    SpilledUnits(const SpilledUnits&) = delete;
    SpilledUnits& operator=(const SpilledUnits&) = delete;
    ~SpilledUnits() { Orvane::OVEventSection().ReleaseVectorSection(Sections); }

    std::vector<Orvane::EventSection*> Sections;
};

/// Whether every channel keeps most of its light, so that the inverse is near and exact enough to be told.
bool IsGentle(const Host::Spillover& matrix) {
    for (std::size_t row = 0; row < matrix.names.size(); ++row) {
        double elsewhere = 0;
        for (std::size_t column = 0; column < matrix.names.size(); ++column)
            elsewhere += column == row ? 0 : std::abs(matrix.At(row, column));
        if (matrix.At(row, row) != 1 || !(elsewhere < 0.5)) return false;
    }
    return true;
}

/// Compensation gives the units back.
void ExpectUnits(const Host::Spillover& matrix, const std::vector<std::size_t>& channels,
                 const Host::Compensation& compensation) {
    SpilledUnits spilled(matrix, channels);
    Host::CompensatedEvents units(spilled.Sections, compensation);
    if (!IsGentle(matrix)) return;
    for (std::size_t row = 0; row < channels.size(); ++row) {
        for (const std::size_t column : channels) {
            const float value = (*units.Sections().back())[static_cast<int>(column)][row];
            EXPECT_NEAR(value, column == channels[row] ? 1 : 0, 1e-5);
        }
    }
}

void Compensate(const Host::CompensationChoice& choice, const std::optional<Host::Spillover>& ofFile) {
    Host::Findings findings(false);
    const Host::Compensation compensation = Host::ChooseCompensation(choice, ofFile, Layout(), findings);
    const Host::Spillover* matrix = Host::ChosenMatrix(choice, ofFile);
    if (matrix == nullptr) return;
    std::vector<std::size_t> channels;
    for (const std::string& name : matrix->names) {
        if (const auto channel = Host::FindChannel(Layout(), name)) channels.push_back(*channel);
    }
    const bool isUsable = std::set(channels.begin(), channels.end()).size() == matrix->names.size();
    if (isUsable) ExpectUnits(*matrix, channels, compensation);
}

void CompensateByKeyword(const std::string& text) {
    Host::Findings findings(false);
    Host::Keywords keywords;
    keywords.Add("$SPILLOVER", text, findings);
    Compensate({}, Host::ReadSpillover(keywords, Layout(), findings));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Fuzz::TemporaryFile file;
    Fuzz::Input input(data, size);
    const bool isKeyword = input.Below(2) == 0;
    const std::string text = input.Rest();
    if (!isKeyword) file.Write(text);
    Fuzz::RunCommand([&] {
        if (isKeyword) CompensateByKeyword(text);
        if (!isKeyword) Compensate(Host::ReadCompensationChoice(file.Path()), std::nullopt);
    });
    return 0;
}
