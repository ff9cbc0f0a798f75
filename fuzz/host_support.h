// What the targets of the host share: an input as a file, the pool as it is when a command starts.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <orvane/MemoryManage.h>

#include "host/fcs_files/opened_files.h"
#include "host/statistics/population_statistics.h"

namespace Fuzz {

/// A file of its own, which goes with its object.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& bytes = "")
        : path_((std::filesystem::temp_directory_path() /
                 ("orvane_fuzz_" + std::to_string(std::random_device()())))
                    .string()) {
        Write(bytes);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    void Write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

inline Host::OpenedFile Open(const std::string& path) {
    Host::Findings findings(false);
    Host::FcsFile file = Host::OpenFcsFile(path, findings);
    Host::SizePool({&file});
    return {std::move(file), std::move(findings)};
}

/// Runs `work` as a command runs. It may refuse its input; whatever else it throws is a finding.
template <class Work>
void RunCommand(Work work) {
    try {
        work();
    } catch (const Host::Refusal&) {
        // An answer like any other.
    }
    Orvane::MemoryManage::ReleaseAll();
    Orvane::MemoryManage::InitMemoryManage(8 << 20, 32, 0, 65536, 2048);
}

}  // namespace Fuzz
