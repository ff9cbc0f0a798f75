// Gating strategies, from the bytes of a document to the statistics of populations in a small sample.
#include <gtest/gtest.h>

#include "fuzz/host_support.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/fcs_builder.h"

namespace {

using Orvane::Testing::FcsBuilder;

/// Some events with every kind of value, of parameters that the seeds name.
std::string SampleBytes() {
    const std::vector<std::string> names{"Par1",   "Par2", "Par3",  "FSC-A",    "FSC-W",        "SSC-A",
                                         "FITC-A", "PE-A", "APC-A", "PE-Cy7-A", "PerCP-Cy5-5-A"};
    const auto parameters = static_cast<int>(names.size());
    FcsBuilder builder = FcsBuilder::Floats(names.size(), Orvane::Testing::RandomFloats(100 * parameters, 1));
    for (std::size_t i = 0; i < names.size(); ++i)
        builder.Set("$P" + std::to_string(i + 1) + "N", names[i]);
    return builder.Set("$SPILLOVER", "2,FITC-A,PE-A,1,0.25,0.125,1").Build();
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
    static const Fuzz::TemporaryFile events(SampleBytes());
    Host::OpenedFile opened = Fuzz::Open(events.Path());
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
