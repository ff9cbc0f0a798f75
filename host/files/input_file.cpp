#include "files/input_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "files/findings.h"

namespace Host {
namespace {

constexpr std::uint64_t LargestWhole = 1U << 26U;

[[noreturn]] void RefuseUnreadable(const std::string& path, const std::error_code& error) {
    Refuse("file", path, "a file that can be read (" + error.message() + ")");
}

std::uint64_t RegularFileSize(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) Refuse("file", path, "a file that exists");
    if (error) RefuseUnreadable(path, error);
    if (!std::filesystem::is_regular_file(status)) Refuse("file", path, "a regular file");
    const auto size = std::filesystem::file_size(path, error);
    if (error) RefuseUnreadable(path, error);
    return size;
}

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path), size_(RegularFileSize(path)) {
    Open();
}

/// Without a buffer, as everything is read in large pieces.
void InputFile::Open() {
    stream_.rdbuf()->pubsetbuf(nullptr, 0);
    stream_.open(path_, std::ios::binary);
    if (!stream_) RefuseUnreadable(path_, std::error_code(errno, std::generic_category()));
}

void InputFile::Read(std::uint64_t offset, void* dest, std::size_t size) {
    if (!stream_.is_open()) Open();
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(offset));
    stream_.read(static_cast<char*>(dest), static_cast<std::streamsize>(size));
    if (stream_.gcount() == static_cast<std::streamsize>(size)) return;
    RefuseShrunk();
}

void InputFile::RefuseShrunk() {
    stream_.clear();
    stream_.seekg(0, std::ios::end);
    Refuse("file", std::to_string(stream_.tellg()) + " bytes",
           "the " + std::to_string(size_) + " bytes that it had when it was opened");
}

std::string InputFile::ReadText(std::uint64_t offset, std::uint64_t size) {
    if (offset > size_ || size > size_ - offset) {
        Refuse("file", std::to_string(size_) + " bytes",
               std::to_string(size) + " bytes from byte " + std::to_string(offset));
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    Read(offset, text.data(), text.size());
    return text;
}

std::string InputFile::ReadWhole() {
    if (size_ > LargestWhole) {
        Refuse(path_, std::to_string(size_) + " bytes", "at most " + std::to_string(LargestWhole));
    }
    return ReadText(0, size_);
}

}  // namespace Host
