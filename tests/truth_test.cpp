// Real list-mode files: what the host program says about them agrees with what is known about them. The
// folder with the files and one description per file is named at configuration or in the environment.
#include <gtest/gtest.h>

#include "support/host_program.h"
#include "support/truth.h"

namespace Orvane::Testing {
namespace {

namespace fs = std::filesystem;

class Truth : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        if (!fs::is_directory(SampleFolder() / "truth"))
            GTEST_SKIP() << "no sample files in " << SampleFolder();
        for (const fs::path& folder : {SampleFolder(), SampleFolder() / "gatingml"}) {
            if (!fs::is_directory(folder)) continue;
            for (const auto& entry : fs::directory_iterator(folder)) {
                const fs::path description =
                    SampleFolder() / "truth" / (entry.path().filename().string() + ".json");
                if (entry.path().extension() != ".fcs" || !fs::exists(description)) continue;
                files_.push_back(entry.path().string());
                truths_.push_back(json::parse(ReadFile(description)));
            }
        }
        ASSERT_FALSE(files_.empty());
    }

    json RunOnAll(Strings command) const {
        command.insert(command.end(), files_.begin(), files_.end());
        const HostRun run = Run(command);
        EXPECT_EQ(run.status, 0) << run.err;
        return run.Json()["files"];
    }

    std::vector<std::string> files_;
    std::vector<json> truths_;
};

/// The block of a parameter's truth for channel or scale values, those with the bits above $PnR cleared where
/// that changes anything.
const json& Block(const json& parameter, bool scaled) {
    const bool masked = parameter.contains("raw_masked");
    const json& block = parameter[masked ? "scaled_masked" : "scaled"];
    return scaled && block.is_object() ? block : parameter[masked ? "raw_masked" : "raw"];
}

TEST_F(Truth, StatisticsAgree) {
    for (const bool scaled : {false, true}) {
        const json files = RunOnAll({"stats", "--format", "json", "--jobs", "2", "--compensate", "none",
                                     "--values", scaled ? "scale" : "channel"});
        ASSERT_EQ(files.size(), truths_.size());
        for (std::size_t f = 0; f < files.size(); ++f) {
            SCOPED_TRACE(files_[f]);
            const json& parameters = truths_[f]["parameters"];
            const json& rows = files[f]["populations"][0]["statistics"];
            EXPECT_EQ(files[f]["events"], truths_[f]["events"]);
            ASSERT_EQ(rows.size(), parameters.size());
            for (std::size_t p = 0; p < rows.size(); ++p) {
                SCOPED_TRACE(parameters[p]["name"]);
                const bool divided =
                    scaled && parameters[p]["amp"][0] == 0.0 && parameters[p]["gain"].is_number();
                ExpectStatistics(rows[p], Block(parameters[p], scaled),
                                 divided ? parameters[p]["gain"].get<double>() : 1.0);
            }
        }
    }
}

TEST_F(Truth, ConvertedFilesReadTheSame) {
    const std::string converted = Path("converted.fcs");
    for (const auto& [type, values] :
         {std::pair("F", "scale"), std::pair("D", "scale"), std::pair("I32", "channel")}) {
        for (std::size_t f = 0; f < files_.size(); ++f) {
            SCOPED_TRACE(files_[f] + " as " + type);
            const bool floating = truths_[f]["datatype"] == "F" || truths_[f]["datatype"] == "D";
            if (floating && type == std::string("I32")) continue;
            const HostRun run =
                Run({"convert", files_[f], converted, "--type", type, "--values", values, "--order", "big"});
            ASSERT_EQ(run.status, 0) << run.err;
            EXPECT_EQ(Stats(converted, {"--values", values})["populations"],
                      Stats(files_[f], {"--values", values})["populations"]);
        }
    }
}

void ExpectParameter(const json& parameter, const json& truth) {
    for (const char* key : {"name", "stain", "bits", "range", "gain"})
        EXPECT_EQ(parameter[key], truth[key]);
    json amplification = truth["amp"];
    if (truth.contains("amp_zero_taken_as_one")) amplification[1] = 1.0;
    EXPECT_EQ(parameter["amplification"], amplification);
}

TEST_F(Truth, InfoAgrees) {
    const json files = RunOnAll({"info", "--format", "json"});
    ASSERT_EQ(files.size(), truths_.size());
    for (std::size_t f = 0; f < files.size(); ++f) {
        SCOPED_TRACE(files_[f]);
        const json& file = files[f];
        const json& truth = truths_[f];
        for (const char* key : {"version", "datatype", "events"})
            EXPECT_EQ(file[key], truth[key]);
        EXPECT_EQ(file["byteord"], truth["datatype"] == "A" ? json() : truth["byteord"]);
        EXPECT_EQ(file["data"]["begin"], truth["data_begin"]);
        EXPECT_EQ(file["data"]["from"], truth["data_offsets_from"]);
        std::size_t expectedWarnings = truth["notes"].size();
        const json& offsets = truth["header_offsets"];
        EXPECT_EQ(file["header"]["text"], json::array({offsets[0], offsets[1]}));
        EXPECT_EQ(file["header"]["data"], json::array({offsets[2], offsets[3]}));
        for (std::size_t p = 0; p < truth["parameters"].size(); ++p) {
            ExpectParameter(file["parameters"][p], truth["parameters"][p]);
            if (truth["parameters"][p].contains("amp_zero_taken_as_one")) ++expectedWarnings;
        }
        EXPECT_EQ(file["warnings"].size(), expectedWarnings) << file["warnings"];
        EXPECT_EQ(file["spillover"].is_null(), truth["spill"].is_null());
        if (truth["spill"].is_null()) continue;
        for (const char* key : {"keyword", "names", "matrix"})
            EXPECT_EQ(file["spillover"][key], truth["spill"][key]);
    }
}

}  // namespace
}  // namespace Orvane::Testing
