// A file that is written in pieces and appears whole or not at all.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

namespace Host {

/// A result that cannot be written. It names the place and the reason, and is about no input.
class OutputError : public std::runtime_error {
public:
    explicit OutputError(const std::string& message) : std::runtime_error(message) {}
};

/// One at a time. Wherever the program ends before the file is whole, also by a signal that can be caught,
/// what was written is removed and the older file is there as before.
class OutputFile {
public:
    /// Opens a file aside, or the one at `path` itself where that is something other than a regular file. A
    /// link is followed: what it leads to is replaced. This and the operations throw OutputError.
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes what was written unless it was put in place.
    ~OutputFile();

    void Write(const void* bytes, std::size_t size);

    /// Puts the file in the place of an older one, whose permissions it takes over.
    void Commit();

private:
    /// Finds the regular file to replace and opens the one to write.
    void OpenAside();
    [[noreturn]] void Fail() const;

    std::string path_;
    std::string target_;   ///< the path of the regular file that is replaced
    std::string written_;  ///< the path of the file that is written; empty when it is in place
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream_;
};

}  // namespace Host
