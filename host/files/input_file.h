// A file read in pieces from any place, with 64-bit positions.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace Host {

class InputFile {
public:
    /// Throws Refusal when `path` is no regular file that can be read.
    explicit InputFile(const std::string& path);

    std::uint64_t Size() const { return size_; }

    /// Reads `size` bytes from `offset` into `dest`. Throws Refusal when the file has not so many, or no
    /// longer.
    void Read(std::uint64_t offset, void* dest, std::size_t size);

    /// The same into a string; the size is compared with the file's before anything is allocated.
    std::string ReadText(std::uint64_t offset, std::uint64_t size);

    /// All of a file that is small by its nature. Throws Refusal when it has more than 64 MiB.
    std::string ReadWhole();

    /// Gives the system's handle back until the next read, for a file that waits among many.
    void Close() { stream_.close(); }

private:
    void Open();
    [[noreturn]] void RefuseShrunk();

    std::string path_;
    std::ifstream stream_;
    std::uint64_t size_ = 0;
};

}  // namespace Host
