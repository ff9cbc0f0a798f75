// Acquisitions from the simulated instrument: the same again, plausible, counted live, and stopped.
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdio>
#include <map>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

const std::string Gates = ORVANE_EXAMPLES "/strategy.xml";

class HostAcquire : public HostTest {
protected:
    /// Returns the path of the file.
    std::string Acquire(const std::string& name, Strings options) {
        options.insert(options.begin(), {"acquire", "-o", Path(name)});
        run_ = Run(options);
        EXPECT_EQ(run_.status, 0) << run_.err;
        return Path(name);
    }

    std::string DataOf(const std::string& path) const {
        const json place = Run({"info", path, "--format", "json", "--strict"}).Json()["files"][0]["data"];
        return ReadFile(path).substr(place["begin"], place["length"]);
    }

    std::map<std::string, int> Populations(const std::string& path) const {
        std::map<std::string, int> counts;
        const json tree = Run({"gate", path, "--gates", Gates, "--format", "json"}).Json();
        for (const json& row : tree["populations"])
            counts[row["name"]] = row["count"];
        return counts;
    }

    HostRun run_;
};

/// At another rate the buffers have other sizes, and the library seeds its random numbers with each of them.
TEST_F(HostAcquire, TheSeedDecidesEveryByte) {
    const std::string file = Acquire("a.fcs", {"--seed", "7", "--events", "1800"});
    EXPECT_EQ(ReadFile(Acquire("b.fcs", {"--seed", "7", "--events", "1800", "--rate", "9000"})),
              ReadFile(file));
    EXPECT_NE(DataOf(Acquire("b.fcs", {"--seed", "8", "--events", "1800"})), DataOf(file));
    const std::string start = DataOf(Acquire("b.fcs", {"--seed", "7", "--events", "1234"}));
    EXPECT_EQ(start, DataOf(file).substr(0, start.size()));
}

TEST_F(HostAcquire, BloodLooksLikeBlood) {
    const std::string file = Acquire("a.fcs", {"--events", "70000"});
    const json info = Run({"info", file, "--format", "json", "--strict"}).Json()["files"][0];
    EXPECT_EQ(info["events"], 70000);
    std::map<std::string, int> counts = Populations(file);
    const std::map<std::string, double> percent{{"Singlets", 97},
                                                {"CD4+ T cells", 17.5},
                                                {"CD8+ T cells", 10.7},
                                                {"B cells", 5.8},
                                                {"Monocytes", 7.8}};
    for (const auto& [name, share] : percent)
        EXPECT_NEAR(counts[name] / 700.0, share, share / 20) << name;

    const auto medianOfCD8 = [&](const std::string& compensate) {
        const Strings options{"--gates", Gates, "--population", "T cells", "--compensate", compensate};
        return Row(Stats(file, options), "PE-A")["median"].get<double>();
    };
    EXPECT_GT(medianOfCD8("none"), 1500);
    EXPECT_NEAR(medianOfCD8("file"), 150, 100);
    EXPECT_LT(Row(Stats(file), "APC-A")["min"], -100);
    EXPECT_NEAR(Row(Stats(file), "Time")["max"].get<double>(), 3500, 50);
}

/// The last counts are those of the last 10 000 events, here put into a file of their own.
TEST_F(HostAcquire, CountsTheLastEventsLive) {
    const std::string file = Acquire("a.fcs", {"--events", "23457", "--gates", Gates});
    constexpr int Window = 10000;
    const Strings names{"FSC-A",         "FSC-H", "FSC-W",    "SSC-A",    "FITC-A", "PE-A",
                        "PerCP-Cy5-5-A", "APC-A", "PE-Cy7-A", "APC-H7-A", "Time"};
    FcsBuilder builder('F', "1,2,3,4", Strings(names.size(), "32"), Window);
    for (std::size_t p = 0; p < names.size(); ++p)
        builder.Set("$P" + std::to_string(p + 1) + "N", names[p]);
    const std::string text = ReadFile(file);
    const std::size_t matrix = text.find("$SPILLOVER") + 11;
    builder.Set("$SPILLOVER", text.substr(matrix, text.find(text[58], matrix) - matrix));
    const std::string data = DataOf(file);
    builder.data = data.substr(data.size() - Window * names.size() * sizeof(float));

    const std::string lastLine = run_.out.substr(run_.out.find("23457 events"));
    std::map<std::string, int> counts = Populations(Write(builder, "window.fcs"));
    EXPECT_EQ(counts["All"], Window);
    counts.erase("All");
    EXPECT_EQ(counts.size(), 8U);
    for (const auto& [name, count] : counts)
        EXPECT_NE(lastLine.find("   " + name + ' ' + std::to_string(count) + " ("), std::string::npos)
            << lastLine;
}

TEST_F(HostAcquire, AnInterruptKeepsWhatThereIs) {
    const std::string file = Path("a.fcs");
    const std::string command = "echo $$; exec " ORVANE_HOST_PROGRAM " acquire --rate 200 -o '" + file + "'";
    FILE* program = popen(command.c_str(), "r");
    ASSERT_NE(program, nullptr);
    int process = 0;
    ASSERT_EQ(std::fscanf(program, "%d counts", &process), 1);
    kill(process, SIGINT);
    while (std::fgetc(program) != EOF) {
    }
    EXPECT_EQ(pclose(program), 0);
    const std::string data = DataOf(file);
    EXPECT_FALSE(data.empty());
    EXPECT_EQ(DataOf(Acquire("b.fcs", {"--events", "1000"})).substr(0, data.size()), data);
}

TEST_F(HostAcquire, RefusesWhatItCannotDo) {
    const Strings good{"acquire", "-o", Path("a.fcs")};
    for (const auto& [option, value] : {std::pair("--events", "0"),
                                        {"--events", "10000001"},
                                        {"--events", "many"},
                                        {"--seed", "-1"},
                                        {"--seed", "18446744073709551616"},
                                        {"--rate", "-5"}}) {
        Strings arguments = good;
        arguments.insert(arguments.end(), {option, value});
        EXPECT_EQ(Run(arguments).status, 2) << option << ' ' << value;
    }
    EXPECT_EQ(Run({"acquire"}).status, 2);
    EXPECT_EQ(Run({"acquire", "-o", Path("no directory/a.fcs")}).status, 1);
    EXPECT_EQ(Run({"acquire", "-o", Path("a.fcs"), "--gates", Path("none.xml")}).status, 1);
    EXPECT_EQ(Run(good, "trap '' XFSZ; ulimit -f 100; ").status, 1) << "the disk is full";
    for (const auto& entry : std::filesystem::directory_iterator(Path("")))
        EXPECT_TRUE(entry.path().filename().string().starts_with("std")) << entry.path();
}

}  // namespace
}  // namespace Orvane::Testing
