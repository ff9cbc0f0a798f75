#include "output.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <stdexcept>
#include <system_error>

#include "display.h"

namespace Host {
namespace {

[[noreturn]] void Fail(const std::string& path) {
    throw std::runtime_error(Printable(path) + " cannot be written");
}

bool WriteWhole(const std::string& text, const std::string& path) {
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    return !stream.fail();
}

/// Leaves either the new file or the old one.
bool Replace(const std::string& text, const std::string& path) {
    const std::string aside = path + "." + std::to_string(std::random_device()()) + ".part";
    std::error_code error;
    if (WriteWhole(text, aside)) {
        std::filesystem::rename(aside, path, error);
        if (!error) return true;
    }
    std::filesystem::remove(aside, error);
    return false;
}

}  // namespace

void WriteResult(const std::string& text, const std::string& path) {
    if (path.empty()) {
        std::cout << text << std::flush;
        if (!std::cout) Fail("standard output");
        return;
    }
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    const bool special = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    if (!(special ? WriteWhole(text, path) : Replace(text, path))) Fail(path);
}

void PrintRefusal(const std::string& path, const std::string& refusal) {
    std::cerr << "orvane: " << Printable(path) << ": " << refusal << '\n';
}

}  // namespace Host
