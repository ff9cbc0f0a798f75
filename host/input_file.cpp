#include "input_file.h"

#include <filesystem>
#include <system_error>

#include "findings.h"

namespace Host {
namespace {

std::uint64_t RegularFileSize(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) Refuse("file", path, "a file that exists");
    if (!std::filesystem::is_regular_file(status)) Refuse("file", path, "a regular file");
    const auto size = std::filesystem::file_size(path, error);
    if (error) Refuse("file", path, "a file that can be read (" + error.message() + ")");
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
    if (!stream_) Refuse("file", path_, "a file that can be read");
}

void InputFile::Read(std::uint64_t offset, void* dest, std::size_t size) {
    if (!stream_.is_open()) Open();
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(offset));
    stream_.read(static_cast<char*>(dest), static_cast<std::streamsize>(size));
    if (stream_.gcount() == static_cast<std::streamsize>(size)) return;
    Refuse("file", std::to_string(size_) + " bytes",
           std::to_string(size) + " bytes from byte " + std::to_string(offset));
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

}  // namespace Host
