// ASCII events. The library reads zero-padded fields of one width; files hold fields of several widths,
// padded with zeros or blanks, or numbers of any length with separators between them.
#pragma once

#include <cstdint>
#include <vector>

#include "fcs_files/event_reader.h"

namespace Host {

/// The numbers in a stretch of free-format DATA.
std::uint64_t CountFreeFormatValues(InputFile& file, std::uint64_t begin, std::uint64_t length);

/// Fields of a fixed number of characters per parameter.
class FixedAsciiReader : public EventReader {
public:
    explicit FixedAsciiReader(FcsFile& file);
    WordFormat Format() const override;
    void Read(unsigned char* dest, std::uint64_t events) override;

private:
    FcsFile& file_;
    std::uint64_t position_;
    std::uint64_t event_ = 0;
    unsigned width_;
};

/// Numbers of any length, separated by blanks, tabs, commas and line ends, of which several count as one.
class FreeAsciiReader : public EventReader {
public:
    explicit FreeAsciiReader(FcsFile& file);
    WordFormat Format() const override;
    void Read(unsigned char* dest, std::uint64_t events) override;

private:
    int NextByte();
    std::string NextNumber();

    FcsFile& file_;
    std::uint64_t position_;
    std::uint64_t end_;
    std::uint64_t event_ = 0;
    std::vector<char> buffer_;
    std::size_t next_ = 0;
};

}  // namespace Host
