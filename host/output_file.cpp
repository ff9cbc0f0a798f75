#include "output_file.h"

#include <filesystem>
#include <random>
#include <stdexcept>
#include <system_error>

#include "display.h"

namespace Host {
namespace {

[[noreturn]] void Fail(const std::string& path) {
    throw std::runtime_error(Printable(path) + " cannot be written");
}

bool IsSpecial(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
    const bool special = IsSpecial(path);
    if (!special) written_ = path + "." + std::to_string(std::random_device()()) + ".part";
    stream_.open(special ? path : written_, std::ios::binary);
    if (!stream_) Fail(path_);
}

OutputFile::~OutputFile() {
    if (written_.empty()) return;
    stream_.close();
    std::error_code error;
    std::filesystem::remove(written_, error);
}

void OutputFile::Write(const void* bytes, std::size_t size) {
    stream_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    if (!stream_) Fail(path_);
}

void OutputFile::Commit() {
    stream_.close();
    if (!stream_) Fail(path_);
    if (written_.empty()) return;
    std::error_code error;
    std::filesystem::rename(written_, path_, error);
    if (error) Fail(path_);
    written_.clear();
}

}  // namespace Host
