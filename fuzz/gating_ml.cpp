// Gating strategies, from the bytes of a document to the statistics of populations in a small sample.
#include <gtest/gtest.h>

#include "fuzz/host_support.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "host/statistics/population_statistics.h"
#include "tests/support/fcs_builder.h"

namespace {

constexpr const char* Names[] = {"FSC-A", "FSC-W", "SSC-A", "FITC-A", "PE-A", "APC-A"};

/// Some events with every kind of value.
std::string SampleBytes() {
    constexpr int Events = 100;
    Orvane::Testing::FcsBuilder builder('F', "1,2,3,4", std::vector<std::string>(std::size(Names), "32"),
                                        Events);
    for (std::size_t i = 0; i < std::size(Names); ++i)
        builder.Set("$P" + std::to_string(i + 1) + "N", Names[i]);
    builder.Set("$SPILLOVER", "2,FITC-A,PE-A,1,0.25,0.125,1");
    for (const float value : Orvane::Testing::RandomFloats(Events * static_cast<int>(std::size(Names)), 1))
        builder.data += Orvane::Testing::EncodeFloat(value);
    return builder.Build();
}

/// The sample as every run opens it.
Host::OpenedFile OpenSample() {
    static const Fuzz::TemporaryFile file(SampleBytes());
    Host::Findings findings(false);
    Host::FcsFile opened = Host::OpenFcsFile(file.Path(), findings);
    return {std::move(opened), std::move(findings)};
}

/// Its events are inside its parent, and counted.
void ExpectPopulation(Host::GatedPopulation& population, Host::GatedPopulation* parent) {
    std::uint64_t count = 0;
    for (std::size_t s = 0; s < population.members.Sections().size(); ++s) {
        const Orvane::FilterSection& section = *population.members.Sections()[s];
        for (int e = 0; e < section.Count; ++e) {
            if (!section.GetFlag(e)) continue;
            ++count;
            EXPECT_TRUE(parent == nullptr || parent->members.Sections()[s]->GetFlag(e));
        }
    }
    EXPECT_EQ(population.count, count);
}

void Gate(const std::string& path) {
    const Host::Analysis analysis = Host::ReadAnalysis({"", path, ""}, Host::ValueKind::Scale);
    Host::OpenedFile opened = OpenSample();
    Host::SizePool({&opened.file});
    Host::GatedSample sample(opened.file, analysis, opened.findings, [](std::uint64_t) {});
    std::vector<Host::GatedPopulation>& populations = sample.Populations();
    for (Host::GatedPopulation& population : populations)
        ExpectPopulation(population, population.parent ? &populations[*population.parent] : nullptr);
    const Host::FileStatistics statistics = Host::MeasureFile(path, opened, sample, analysis, {0, 3});
    for (const Host::Format format : {Host::Format::Table, Host::Format::Csv, Host::Format::Json})
        EXPECT_NE(Host::FormatStatistics({statistics}, format), "");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Fuzz::TemporaryFile document;
    document.Write(Fuzz::Input(data, size).Rest());
    Fuzz::RunCommand([&] { Gate(document.Path()); });
    return 0;
}
