// The commands of the host program: options, formats, several files, exit statuses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

class Host : public HostTest {
protected:
    /// One parameter of floats.
    static FcsBuilder Column(const std::vector<float>& values) {
        FcsBuilder builder('F', "1,2,3,4", {"32"}, static_cast<int>(values.size()));
        for (const float value : values)
            builder.data += EncodeFloat(value);
        return builder;
    }

    json FirstRow(const std::vector<float>& values) const {
        return Stats(Write(Column(values)))["populations"][0]["statistics"][0];
    }
};

Strings Split(const std::string& text, char separator) {
    Strings parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

TEST_F(Host, ComputesEveryStatistic) {
    const json row = FirstRow({1, 2, 3, 4, 100});
    const double sd = std::sqrt((21.0 * 21 + 20 * 20 + 19 * 19 + 18 * 18 + 78 * 78) / 4);
    for (const auto& [key, value] : std::vector<std::pair<const char*, double>>{{"count", 5},
                                                                                {"min", 1},
                                                                                {"max", 100},
                                                                                {"mean", 22},
                                                                                {"median", 3},
                                                                                {"sd", sd},
                                                                                {"cv", sd / 22},
                                                                                {"rsd", 1.4826},
                                                                                {"rcv", 1.4826 / 3}}) {
        EXPECT_NEAR(row[key].get<double>(), value, 1e-6 * value) << key;
    }
    const HostRun table = Run({"stats", Path("a.fcs")});
    EXPECT_NE(table.out.find(" 49.42"), std::string::npos) << "ratios in per cent: " << table.out;
}

TEST_F(Host, GivesNullWhereAStatisticIsUndefined) {
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    const Strings all = {"min", "max", "mean", "median", "sd", "cv", "rsd", "rcv"};
    for (const auto& [values, undefined] : std::vector<std::pair<std::vector<float>, Strings>>{
             {{}, all},
             {{7}, {"sd", "cv"}},
             {{-1, 0, 1}, {"cv", "rcv"}},
             {{1, NaN, 3}, all},
             {{1, 2, Infinity}, {"max", "mean", "sd", "cv"}}}) {
        const json row = FirstRow(values);
        EXPECT_EQ(row["count"], values.size());
        Strings nulls;
        std::copy_if(all.begin(), all.end(), std::back_inserter(nulls),
                     [&row = row](const std::string& key) { return row[key].is_null(); });
        EXPECT_EQ(nulls, undefined) << values.size() << " values";
    }
}

/// JSON, CSV and the table say the same, and numbers come back as the floats they were.
TEST_F(Host, WritesTheSameInEveryFormat) {
    FcsBuilder builder = FcsBuilder::Small().Set("$P1N", "A \"b\"").Set("$TOT", "5").Set("$P2N", "\xB5m");
    builder.data = EncodeFloat(0.1F) + EncodeFloat(16777216.0F) + EncodeFloat(1e-30F) + EncodeFloat(-3.4e38F);
    const std::string path = Write(builder, "odd, name.fcs");
    const json file = Stats(path);
    EXPECT_EQ(file["file"], path);
    EXPECT_EQ(file["version"], "FCS3.1");
    EXPECT_EQ(file["events"], 2);
    const json& population = file["populations"][0];
    EXPECT_EQ(population["name"], "All");
    EXPECT_TRUE(population["parent"].is_null());
    EXPECT_EQ(population["count"], 2);
    EXPECT_EQ(population["percent_of_total"], 100);
    EXPECT_EQ(Row(file, "A \"b\"")["max"].get<float>(), 0.1F);
    EXPECT_EQ(Row(file, "\u00B5m")["min"].get<float>(), -3.4e38F);
    EXPECT_NE(Run({"stats", path, "--format", "json"}).out.find("\"max\": 0.1,"), std::string::npos);

    const Strings lines = Split(Run({"stats", path, "--format", "csv"}).out, '\n');
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0],
              "file,version,events,warnings,population,parent,population_count,percent_of_parent,"
              "percent_of_total,parameter,count,min,max,mean,median,sd,cv,rsd,rcv");
    EXPECT_EQ(lines[1].rfind("\"" + path + "\",FCS3.1,2,\"$TOT is \"\"5\"\"", 0), 0U) << lines[1];
    EXPECT_NE(lines[1].find(",All,,2,,100,\"A \"\"b\"\"\",2,1e-30,0.1,"), std::string::npos) << lines[1];
    const json second = Row(file, "\u00B5m");
    const Strings fields = Split(lines[2], ',');
    EXPECT_EQ(std::stof(fields[fields.size() - 4]), second["sd"].get<float>());
    EXPECT_EQ(std::stof(fields[fields.size() - 3]), second["cv"].get<float>());

    const std::string table = Run({"stats", path}).out;
    for (const char* part :
         {"odd, name.fcs", "FCS3.1", "\u00B5m", "1e-30", "16777216", "CV %", "warning: $TOT"}) {
        EXPECT_NE(table.find(part), std::string::npos) << table;
    }
}

TEST_F(Host, SelectsParametersByName) {
    const std::string path = Write(FcsBuilder::Small().Set("$P2N", "FL 1-A"));
    const json rows = Stats(path, {"--parameters", "FL 1-A,Par1"})["populations"][0]["statistics"];
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["parameter"], "FL 1-A");
    EXPECT_EQ(rows[1]["parameter"], "Par1");
    const HostRun unknown = Run({"stats", path, "--parameters", "Par1,Par9"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("\"Par9\", expected one of Par1, FL 1-A"), std::string::npos) << unknown.err;
}

TEST_F(Host, ReportsTheOtherFilesWhenOneIsRefused) {
    Strings command = {"stats", "--format", "json", "--jobs", "3"};
    for (int i = 0; i < 12; ++i) {
        FcsBuilder builder = Column(std::vector<float>(static_cast<std::size_t>(1 + 1000 * (i % 3)), 5.0F));
        if (i == 4) builder.Set("$PAR", "x");
        command.push_back(Write(builder, std::to_string(i) + ".fcs"));
    }
    command.push_back(Path("missing.fcs"));
    command.push_back(Path("."));
    const HostRun run = Run(command);
    EXPECT_EQ(run.status, 1);
    const Strings refusals = Split(run.err, '\n');
    ASSERT_EQ(refusals.size(), 3U) << run.err;
    EXPECT_NE(refusals[0].find("4.fcs: $PAR"), std::string::npos);
    EXPECT_NE(refusals[1].find("missing.fcs"), std::string::npos);
    EXPECT_NE(refusals[2].find("regular file"), std::string::npos);
    const json files = run.Json()["files"];
    ASSERT_EQ(files.size(), 11U);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::size_t number = i < 4 ? i : i + 1;
        EXPECT_EQ(files[i]["file"], Path(std::to_string(number) + ".fcs"));
        EXPECT_EQ(files[i]["events"], 1 + 1000 * (number % 3));
    }
}

TEST_F(Host, WritesOutputFilesWholeOrNotAtAll) {
    const std::string good = Write(FcsBuilder::Small());
    const std::string out = Path("out.csv");
    std::ofstream(out) << "old";
    EXPECT_EQ(Run({"stats", Path("missing.fcs"), "--format", "csv", "-o", out}).status, 1);
    EXPECT_EQ(ReadFile(out), "old");
    const HostRun run = Run({"stats", good, "--format", "csv", "-o", out});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(ReadFile(out), Run({"stats", good, "--format", "csv"}).out);
    const HostRun failed = Run({"stats", good, "-o", Path("no/such/directory/out")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err.find("no/such/directory/out"), std::string::npos);
    EXPECT_EQ(Run({"stats", good, "-o", "/dev/null"}).status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    std::size_t entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Path(".")))
        entries += entry.exists() ? 1U : 0U;
    EXPECT_EQ(entries, 4U) << "the sample, the output, standard output and standard error";
}

TEST_F(Host, InfoDescribesAFile) {
    FcsBuilder builder = FcsBuilder::Small().Set("$P2S", "CD4 \xB5").Set("$P1G", "2.5").Set("$P1R", "262144");
    builder.Set("$SPILLOVER", "2,Par1,Par2,1,0.25,0,1").header[3] = "    4118";
    const std::string path = Write(builder);
    const HostRun table = Run({"info", path});
    EXPECT_EQ(table.status, 0);
    for (const char* part : {"FCS3.1", "DATA 4096..4118", "DATA 4096..4119", "as TEXT says", "F, 32-bit",
                             "1,2,3,4", "events       3", "$SPILLOVER, 2 x 2: Par1, Par2", "CD4 \u00B5",
                             "262144", "2.5", "warning: HEADER begin and end of DATA is"}) {
        EXPECT_NE(table.out.find(part), std::string::npos) << part << " in\n" << table.out;
    }
    const json file = Run({"info", path, "--format", "json"}).Json()["files"][0];
    EXPECT_EQ(file["spillover"]["matrix"], json::parse("[[1.0, 0.25], [0.0, 1.0]]"));
    EXPECT_EQ(file["parameters"][0]["gain"], 2.5);
    EXPECT_EQ(file["warnings"].size(), 1U);
    EXPECT_EQ(Run({"info", path, "--strict"}).status, 1);
}

TEST_F(Host, RefusesWrongUsage) {
    const std::string path = Write(FcsBuilder::Small());
    for (const Strings& command : std::vector<Strings>{{},
                                                       {"stats"},
                                                       {"unknown", path},
                                                       {"info", path, "--format", "csv"},
                                                       {"stats", path, "--jobs", "0"}}) {
        const HostRun run = Run(command);
        EXPECT_EQ(run.status, 2) << run.out;
        EXPECT_NE(run.err, "");
    }
    for (const char* option : {"--help", "--version"})
        EXPECT_EQ(Run({option}).status, 0);
}

}  // namespace
}  // namespace Orvane::Testing
