// Real list-mode files: gates and compensation agree event by event, and number by number, with what is known
// about them.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "support/host_program.h"
#include "support/truth.h"

namespace Orvane::Testing {
namespace {

namespace fs = std::filesystem;

class GatingTruth : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        if (!fs::is_directory(Folder())) GTEST_SKIP() << "no sample files in " << SampleFolder();
    }

    static fs::path Folder() { return SampleFolder() / "gatingml"; }

    /// One character per event.
    std::string Members(const json& gate) const {
        const std::string out = Path("members.csv");
        const fs::path sample = Folder() / "data1.fcs";
        const fs::path strategy = Folder() / "gates" / gate["xml"].get<std::string>();
        const HostRun run = Run({"gate", sample, "--gates", strategy, "--membership", out});
        EXPECT_EQ(run.status, 0) << run.err;
        return ReadMembership(out).at(gate["gate"]);
    }
};

TEST_F(GatingTruth, MembershipsAgree) {
    const json list = json::parse(ReadFile(Folder() / "gates.json"));
    for (const json& gate : list["gates"]) {
        SCOPED_TRACE(gate["gate"]);
        std::istringstream file(ReadFile(Folder() / "expected" / gate["expected"].get<std::string>()));
        const std::string members = Members(gate);
        std::set<std::size_t> decidedByRounding = gate["boundary_events"];
        decidedByRounding.merge(gate["sensitive_events"].get<std::set<std::size_t>>());
        std::size_t event = 0;
        for (char expected = 0; file >> expected; ++event) {
            ASSERT_LT(event, members.size());
            if (!decidedByRounding.contains(event)) {
                EXPECT_EQ(members[event], expected) << "event " << event;
            }
        }
        EXPECT_EQ(event, members.size());
    }
}

TEST_F(GatingTruth, CompensatedStatisticsAgree) {
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(SampleFolder() / "truth")) {
        const std::string name = entry.path().filename();
        if (!name.ends_with(".comp.json")) continue;
        SCOPED_TRACE(name);
        const json truth = json::parse(ReadFile(entry.path()));
        const std::string path = SampleFolder() / truth["file"].get<std::string>();
        const json file = Stats(path);
        const json raw = Stats(path, {"--compensate", "none"});
        EXPECT_EQ(Stats(path, {"--compensate", "file"}), file);
        std::set<std::string> compensated;
        for (const json& channel : truth["compensated"]) {
            compensated.insert(channel["name"]);
            SCOPED_TRACE(channel["name"]);
            ExpectStatistics(Row(file, channel["name"]), channel, 1.0);
        }
        for (const json& row : raw["populations"][0]["statistics"]) {
            if (compensated.contains(row["parameter"])) continue;
            EXPECT_EQ(Row(file, row["parameter"]), row);
        }
        ++files;
    }
    EXPECT_GT(files, 0U);
}

}  // namespace
}  // namespace Orvane::Testing
