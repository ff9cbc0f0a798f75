// Running the host program as a user does, in a directory of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "fcs_builder.h"

namespace Orvane::Testing {

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct HostRun {
    int status;  ///< the exit status, or -1 when the program was ended by a signal
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "." + test->name();
        for (char& c : name)
            c = c == '/' ? '_' : c;
        directory_ =
            std::filesystem::temp_directory_path() / ("orvane_" + name + "_" + std::to_string(getpid()));
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string Path(const std::string& name) const { return (directory_ / name).string(); }

    /// Writes a file and returns its path.
    std::string Write(const FcsBuilder& builder, const std::string& name = "a.fcs") const {
        builder.Write(Path(name));
        return Path(name);
    }

    /// `setup` is a shell command to run before the program.
    HostRun Run(const std::vector<std::string>& arguments, const std::string& setup = "") const {
        std::string command = setup + ORVANE_HOST_PROGRAM;
        for (const std::string& argument : arguments)
            command += " '" + argument + "'";
        command += " >" + Path("stdout") + " 2>" + Path("stderr") + " </dev/null";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(Path("stdout")),
                ReadFile(Path("stderr"))};
    }

    /// The statistics of the only population of one file.
    nlohmann::json Stats(const std::string& path, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"stats", path, "--format", "json"});
        const HostRun run = Run(options);
        EXPECT_EQ(run.status, 0) << run.err;
        if (run.status != 0) return nullptr;
        return run.Json()["files"][0];
    }

private:
    std::filesystem::path directory_;
};

/// The row of a parameter in the statistics of a file.
inline nlohmann::json Row(const nlohmann::json& file, const std::string& parameter) {
    for (const auto& row : file["populations"][0]["statistics"]) {
        if (row["parameter"] == parameter) return row;
    }
    return nullptr;
}

}  // namespace Orvane::Testing
