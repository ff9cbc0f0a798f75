// What the host program leaves behind when the system gets in its way: whole files or none, and a reason.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/files/findings.h"
#include "host/files/input_file.h"
#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

namespace fs = std::filesystem;

class HostSurvival : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        sample_ = Path("a.fcs");
        gates_ = Path("gates.xml");
        old_ = Path("old");
        ASSERT_EQ(Run({"acquire", "--events", "100", "-o", sample_}).status, 0);
        fs::copy_file(ORVANE_EXAMPLES "/strategy.xml", gates_);
        Write("old", "old");
    }

    /// The commands with `output` as a file that they write.
    std::vector<Strings> WritingTo(const std::string& output) const {
        return {{"stats", sample_, "-o", output},
                {"gate", sample_, "--gates", gates_, "--membership", output},
                {"convert", sample_, output},
                {"plot", sample_, "--x", "FSC-A", "-o", output},
                {"report", sample_, "-o", output},
                {"acquire", "--events", "50", "--gates", gates_, "-o", output}};
    }

    void ExpectNothingChanged() const {
        EXPECT_EQ(ReadFile(old_), "old");
        for (const auto& entry : fs::directory_iterator(Path("")))
            EXPECT_NE(entry.path().extension(), ".part");
    }

    std::string sample_;
    std::string gates_;
    std::string old_;  ///< what commands are to write; it has another content
};

TEST_F(HostSurvival, NothingChangesWhereOutputCannotBeWritten) {
    const std::string nowhere = Path("no/such/directory/out");
    for (const auto& [output, reason] : {std::pair(old_, "File too large"),
                                         {nowhere, "No such file or directory"},
                                         {Path("."), "Is a directory"}}) {
        for (const Strings& command : WritingTo(output)) {
            const HostRun run = Run(command, "ulimit -f 2; ");
            EXPECT_EQ(run.status, 1) << command[0];
            EXPECT_EQ(run.err, "orvane: " + output + " cannot be written: " + reason + "\n");
            ExpectNothingChanged();
        }
    }
}

TEST_F(HostSurvival, ASignalLeavesTheOldFile) {
    for (const int signal : {SIGTERM, SIGHUP, SIGPIPE}) {
        const int status = Interrupt({"acquire", "--rate", "200", "-o", old_}, signal);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        ExpectNothingChanged();
    }
}

TEST_F(HostSurvival, ClosedStreamsAreNotWrittenIntoFiles) {
    const std::string command = ORVANE_HOST_PROGRAM " acquire --events 50 -o '" + old_ + "' <&- >&- 2>&-";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    ExpectNothingChanged();
}

TEST_F(HostSurvival, ReplacesWhatALinkLeadsToAndKeepsItsPermissions) {
    fs::create_symlink("old", Path("link"));
    fs::permissions(old_, fs::perms(0640));
    EXPECT_EQ(Run({"convert", sample_, Path("link")}).status, 0);
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    EXPECT_TRUE(ReadFile(old_).starts_with("FCS3.1"));
    EXPECT_EQ(fs::status(old_).permissions(), fs::perms(0640));
}

TEST_F(HostSurvival, RefusesInputsThatAreNoFilesOrTooLarge) {
    ASSERT_EQ(mkfifo(Path("fifo").c_str(), 0600), 0);
    std::ofstream(Path("large")).close();
    fs::resize_file(Path("large"), 6ULL << 30U);
    for (const auto& [name, says] : {std::pair("fifo", "regular"), {".", "regular"}, {"large", "at most"}}) {
        for (const char* option : {"--gates", "--compensate"}) {
            const HostRun run = Run({"stats", sample_, option, Path(name)});
            EXPECT_NE(run.err.find(says), std::string::npos) << run.err;
        }
    }
    if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
    fs::permissions(old_, fs::perms::owner_read);
    ExpectRefused({"convert", sample_, old_}, "old cannot be written: Permission denied");
    ExpectNothingChanged();
    fs::permissions(sample_, fs::perms::none);
    EXPECT_NE(Run({"info", sample_}).err.find("Permission denied"), std::string::npos);
}

TEST_F(HostSurvival, AFileThatShrinksIsRefused) {
    Host::InputFile file(sample_);
    fs::resize_file(sample_, 100);
    char bytes[200];
    EXPECT_THROW(file.Read(50, bytes, sizeof bytes), Host::Refusal);
    EXPECT_THROW(file.Read(150, bytes, 1), Host::Refusal);
    EXPECT_NO_THROW(file.Read(50, bytes, 50));
}

TEST_F(HostSurvival, ReadsManyFilesWithFewDescriptors) {
    Strings stats{"stats"};
    stats.resize(100, sample_);
    std::string overlay = sample_;
    for (int i = 0; i < 50; ++i)
        overlay += ',' + sample_;
    EXPECT_EQ(Run(stats, "ulimit -n 24; ").status, 0);
    EXPECT_EQ(
        Run({"plot", sample_, "--x", "FSC-A", "--overlay", overlay, "-o", old_}, "ulimit -n 24; ").status, 0);
}

TEST_F(HostSurvival, TakesAnyName) {
    const std::string directory = "cd '" + Path("") + "'; ";
    for (const std::string name : {"a b", "\u00FC\u6F22", "\xFF\xFE", "line\nbreak", "-a", "\"<&>"}) {
        EXPECT_EQ(Run({"convert", "--", "a.fcs", name}, directory).status, 0) << name;
        const HostRun run = Run({"stats", "--format", "json", "--", name}, directory);
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.Json()["files"][0]["events"], 100) << name;
    }
}

}  // namespace
}  // namespace Orvane::Testing
