// The commands of the host program: options, formats, several files, exit statuses.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

class Host : public HostTest {
protected:
    json FirstRow(const std::vector<float>& values) const {
        return Stats(Write(FcsBuilder::Floats(1, values)))["populations"][0]["statistics"][0];
    }
};

TEST_F(Host, ComputesEveryStatistic) {
    const json row = FirstRow({1, 2, 3, 4, 100});
    const double sd = std::sqrt((21.0 * 21 + 20 * 20 + 19 * 19 + 18 * 18 + 78 * 78) / 4);
    const std::map<std::string, double> expected{{"count", 5},    {"min", 1},      {"max", 100},
                                                 {"mean", 22},    {"median", 3},   {"sd", sd},
                                                 {"cv", sd / 22}, {"rsd", 1.4826}, {"rcv", 1.4826 / 3}};
    for (const auto& [key, value] : expected)
        EXPECT_NEAR(row[key].get<double>(), value, 1e-6 * value) << key;
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
        const bool finite =
            std::all_of(values.begin(), values.end(), [](float x) { return std::isfinite(x); });
        const json row = FirstRow(values);
        EXPECT_EQ(row["count"], values.size());
        EXPECT_EQ(Run({"stats", Path("a.fcs"), "--strict"}).status, finite ? 0 : 1);
        const HostRun csv = Run({"stats", Path("a.fcs"), "--format", "csv"});
        EXPECT_FALSE(csv.Says(",nan") || csv.Says(",-nan") || csv.Says(",inf")) << csv.out;
        for (const std::string& key : all)
            EXPECT_EQ(row[key].is_null(), std::count(undefined.begin(), undefined.end(), key) == 1) << key;
    }
}

/// JSON, CSV and the table say the same, and numbers come back as the floats they were.
TEST_F(Host, WritesTheSameInEveryFormat) {
    FcsBuilder builder = FcsBuilder::Floats(2, {0.1F, 16777216.0F, 1e-30F, -3.4e38F});
    builder.Set("$P1N", "A \"b\"").Set("$TOT", "5").Set("$P2N", "\xB5m");
    const std::string path = Write(builder, "odd, name.fcs");
    const json file = Stats(path);
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
    ExpectRefused({"stats", path, "--parameters", "Par1,Par9"}, "\"Par9\", expected one of Par1, FL 1-A");
}

TEST_F(Host, ReportsTheOtherFilesWhenOneIsRefused) {
    Strings command = {"stats", "--format", "json", "--jobs", "3"};
    for (std::size_t i = 0; i < 12; ++i) {
        FcsBuilder builder = FcsBuilder::Floats(1, std::vector<float>(1 + 1000 * (i % 3)));
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
    const std::string out = Write("old", "out.csv");
    EXPECT_EQ(Run({"stats", Path("missing.fcs"), "--format", "csv", "-o", out}).status, 1);
    EXPECT_EQ(ReadFile(out), "old");
    const HostRun run = Run({"stats", good, "--format", "csv", "-o", out});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(ReadFile(out), Run({"stats", good, "--format", "csv"}).out);
    ASSERT_EQ(mkfifo(Path("fifo").c_str(), 0600), 0);
    const std::string reader = "timeout 10 cat '" + Path("fifo") + "' >/dev/null & ";
    EXPECT_EQ(Run({"stats", good, "-o", Path("fifo")}, reader).status, 0);
    EXPECT_TRUE(std::filesystem::is_fifo(Path("fifo")));
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
    const json file = Tell("info", path);
    EXPECT_EQ(file["spillover"]["matrix"], json::parse("[[1.0, 0.25], [0.0, 1.0]]"));
    EXPECT_EQ(file["parameters"][0]["gain"], 2.5);
    EXPECT_EQ(file["warnings"].size(), 1U);
    EXPECT_EQ(Run({"info", path, "--strict"}).status, 1);
}

TEST_F(Host, RefusesWrongUsage) {
    Write(FcsBuilder::Small());
    std::istringstream cases(R"(|
stats|
unknown a.fcs|subcommand
info a.fcs --format csv|--format
stats a.fcs --jobs 0|--jobs
stats a.fcs --population x|--population
stats a.fcs --values channel --compensate file|need scale values
gate a.fcs|--gates
convert a.fcs out --type A|--type
convert a.fcs out --order middle|--order
convert a.fcs out --population x|--population
convert a.fcs out --gates x.xml|--gates
convert a.fcs out --values channel --compensate file|need scale values
acquire|--output
acquire -o out --events 0|--events
acquire -o out --events 10000001|--events
acquire -o out --events many|--events
acquire -o out --seed -1|--seed
acquire -o out --seed 18446744073709551616|--seed
acquire -o out --rate -5|--rate
plot a.fcs --x Par1|-o
convert a.fcs a.fcs --compensate a.fcs|a file to read cannot be
gate a.fcs --gates x.xml --membership out -o ./out|--membership
plot a.fcs --x Par1 -o a.fcs|a file to read cannot be
plot a.fcs -o out --y Par1|--x
plot a.fcs -o out --x Par1 --kind dot|need --y
plot a.fcs -o out --x Par1 --y Par2 --kind histogram|no --y
plot a.fcs -o out --x Par1 --y Par2 --kind density --overlay a.fcs|only dot plots
plot a.fcs -o out --x Par1 --y Par2 --overlay x,x,x,x,x,x,x,x|at most 8
plot a.fcs -o out --x Par1 --x-range 5,5|--x-range
plot a.fcs -o out --x Par1 --x-range 0,inf|--x-range
plot a.fcs -o out --x Par1 --x-range 0,1e39|--x-range
plot a.fcs -o out --x Par1 --y-range 0,1|--y
plot a.fcs -o out --x Par1 --size 100x2000|--size
plot a.fcs -o out --x Par1 --size 640|--size
plot a.fcs -o out --x Par1 --scale 5|--scale
)");
    std::string command;
    std::string reason;
    while (std::getline(std::getline(cases, command, '|'), reason)) {
        SCOPED_TRACE(command);
        ExpectRefused(Split(command, ' '), reason, 2, "cd '" + Path("") + "'; ");
        EXPECT_FALSE(std::filesystem::exists(Path("out")));
    }
    EXPECT_EQ(ReadFile(Path("a.fcs")), FcsBuilder::Small().Build());
    for (const char* option : {"--gates", "--population", "--compensate", "-o"})
        ExpectRefused({"stats", Path("a.fcs"), "--gates", "x.xml", option, ""}, "the value is empty", 2);
    for (const char* option : {"--help", "--version"})
        EXPECT_EQ(Run({option}).status, 0);
}

}  // namespace
}  // namespace Orvane::Testing
