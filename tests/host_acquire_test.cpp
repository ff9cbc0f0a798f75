// Acquisitions from the simulated instrument: the same again, plausible, counted live, and stopped.
#include <gtest/gtest.h>
#include <map>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

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
    EXPECT_EQ(Tell("info", file, {"--strict"})["events"], 70000);
    std::map<std::string, int> counts = Populations(file);
    for (const auto& [name, share] : std::map<std::string, double>{{"Singlets", 97},
                                                                   {"CD4+ T cells", 17.5},
                                                                   {"CD8+ T cells", 10.7},
                                                                   {"B cells", 5.8},
                                                                   {"Monocytes", 7.8}})
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
    const json info = Tell("info", file);
    const std::size_t parameters = info["parameters"].size();
    FcsBuilder builder('F', "1,2,3,4", Strings(parameters, "32"), Window);
    for (std::size_t p = 0; p < parameters; ++p)
        builder.Set("$P" + std::to_string(p + 1) + "N", info["parameters"][p]["name"]);
    const std::string text = ReadFile(file);
    const std::size_t matrix = text.find("$SPILLOVER") + 11;
    builder.Set("$SPILLOVER", text.substr(matrix, text.find(text[58], matrix) - matrix));
    const std::string data = DataOf(file);
    builder.data = data.substr(data.size() - Window * parameters * sizeof(float));

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
    EXPECT_EQ(Interrupt({"acquire", "--rate", "200", "-o", file}, SIGINT), 0);
    const std::string data = DataOf(file);
    EXPECT_FALSE(data.empty());
    EXPECT_EQ(DataOf(Acquire("b.fcs", {"--events", "1000"})).substr(0, data.size()), data);
}

}  // namespace
}  // namespace Orvane::Testing
