// Running the host program as a user does, in a directory of its own.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "fcs_builder.h"

namespace Orvane::Testing {

using nlohmann::json;
using Strings = std::vector<std::string>;

inline Strings Split(const std::string& text, char separator) {
    Strings parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return (std::ostringstream() << stream.rdbuf()).str();
}

struct HostRun {
    int status;  ///< the exit status, or -1 when the program was ended by a signal
    std::string out;
    std::string err;

    json Json() const { return json::parse(out); }
    bool Says(const std::string& part) const { return (out + err).find(part) != std::string::npos; }
};

class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string path = (std::filesystem::temp_directory_path() / "orvane_test_XXXXXX").string();
        directory_ = mkdtemp(path.data());
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string Path(const std::string& name) const { return (directory_ / name).string(); }

    /// Writes a file and returns its path.
    std::string Write(const std::string& bytes, const std::string& name) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }
    std::string Write(const FcsBuilder& builder, const std::string& name = "a.fcs") const {
        return Write(builder.Build(), name);
    }

    /// `setup` is a shell command to run before the program.
    HostRun Run(const Strings& arguments, const std::string& setup = "") const {
        const std::string streams = " >" + Path("stdout") + " 2>" + Path("stderr") + " </dev/null";
        const int status = std::system((setup + CommandLine(arguments) + streams).c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(Path("stdout")),
                ReadFile(Path("stderr"))};
    }

    /// Expects the program to end with `status` and nothing but a reason that has `part` in it.
    HostRun ExpectRefused(const Strings& arguments, const std::string& part, int status = 1,
                          const std::string& setup = "") const {
        HostRun run = Run(arguments, setup);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find(part), std::string::npos) << run.err << part;
        return run;
    }

    /// Starts a command that says "counts" and more until it is stopped, sends it `signal` and returns how it
    /// ended.
    int Interrupt(const Strings& arguments, int signal) const {
        const std::string command = "echo $$; exec " + CommandLine(arguments);
        FILE* program = popen(command.c_str(), "r");
        int process = 0;
        EXPECT_EQ(std::fscanf(program, "%d counts", &process), 1);
        kill(process, signal);
        while (std::fgetc(program) != EOF) {
        }
        return pclose(program);
    }

    /// What a command that succeeds says about its only file.
    json Tell(const std::string& command, const std::string& path, Strings options = {}) const {
        options.insert(options.begin(), {command, path, "--format", "json"});
        const HostRun run = Run(options);
        EXPECT_EQ(run.status, 0) << run.err;
        return run.Json()["files"][0];
    }
    json Stats(const std::string& path, const Strings& options = {}) const {
        return Tell("stats", path, options);
    }

    /// The DATA segment of a file without irregularities.
    std::string DataOf(const std::string& path) const {
        const json place = Tell("info", path, {"--strict"})["data"];
        return ReadFile(path).substr(place["begin"], place["length"]);
    }

private:
    static std::string CommandLine(const Strings& arguments) {
        std::string line = ORVANE_HOST_PROGRAM;
        for (const std::string& argument : arguments)
            line += " '" + argument + "'";
        return line;
    }

    std::filesystem::path directory_;
};

/// The row of a parameter in the statistics of a file.
inline json Row(const json& file, const std::string& parameter) {
    for (const auto& row : file["populations"][0]["statistics"]) {
        if (row["parameter"] == parameter) return row;
    }
    return nullptr;
}

/// The membership that the program writes: for each population one character per event.
inline std::map<std::string, std::string> ReadMembership(const std::string& path) {
    const Strings lines = Split(ReadFile(path), '\n');
    const Strings names = Split(lines.at(0), ',');
    std::map<std::string, std::string> members;
    for (std::size_t line = 1; line < lines.size(); ++line) {
        const Strings fields = Split(lines[line], ',');
        for (std::size_t i = 1; i < names.size(); ++i)
            members[names[i]] += fields.at(i);
    }
    return members;
}

}  // namespace Orvane::Testing
