// The host's reader, from the bytes of a file to its statistics.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <numeric>

#include "fuzz/host_support.h"
#include "fuzz/input.h"
#include "fuzz/target.h"

namespace {

/// No event may come from nowhere: each has a byte for every parameter.
void ExpectPossibleCounts(const Host::FcsFile& file, std::size_t size) {
    const std::size_t parameters = file.layout.parameters.size();
    ASSERT_GT(parameters, 0U);
    ASSERT_LE(file.data.events, size / parameters);
}

void ExpectSameCounts(const Host::FileStatistics& statistics, const Host::FcsFile& file) {
    const auto json = nlohmann::json::parse(Host::FormatStatistics({statistics}, Host::Format::Json));
    EXPECT_EQ(json.size(), 1U);
    EXPECT_EQ(statistics.summary.events, file.data.events);
    for (const Host::ParameterStatistics& parameter : statistics.populations.at(0).parameters)
        EXPECT_EQ(parameter.count, file.data.events);
}

void Measure(const std::string& path, Host::ValueKind values, std::size_t size) {
    Host::OpenedFile opened = Fuzz::Open(path);
    ExpectPossibleCounts(opened.file, size);
    const Host::Analysis analysis = Host::ReadAnalysis({}, values);
    Host::GatedSample sample(opened.file, analysis, opened.findings, [](std::uint64_t) {});
    std::vector<std::size_t> parameters(opened.file.layout.parameters.size());
    std::iota(parameters.begin(), parameters.end(), std::size_t{0});
    ExpectSameCounts(Host::MeasureFile(path, opened, sample, analysis, parameters), opened.file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Fuzz::TemporaryFile file;
    file.Write(Fuzz::Input(data, size).Rest());
    for (const Host::ValueKind values : {Host::ValueKind::Scale, Host::ValueKind::Channel})
        Fuzz::RunCommand([&] { Measure(file.Path(), values, size); });
    return 0;
}
