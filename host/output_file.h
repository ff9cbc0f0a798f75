// A file that is written in pieces and appears whole or not at all.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace Host {

class OutputFile {
public:
    /// Opens a file aside, or the one at `path` itself where that is something other than a regular file.
    /// This and the operations throw std::runtime_error when the file cannot be written.
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes what was written unless it was put in place.
    ~OutputFile();

    void Write(const void* bytes, std::size_t size);

    /// Puts the file in the place of an older one.
    void Commit();

private:
    std::string path_;
    std::string written_;  ///< the path of the file that is written; empty when it is in place
    std::ofstream stream_;
};

}  // namespace Host
