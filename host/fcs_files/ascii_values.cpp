#include "fcs_files/ascii_values.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "text/numbers.h"

namespace Host {
namespace {

/// The library folds digits into 32-bit integers.
constexpr std::uint64_t LargestValue = 2147483647;
constexpr unsigned MostDigits = 10;
constexpr std::size_t PieceBytes = 1U << 18U;
constexpr std::size_t LongestNumber = 64;

bool IsSeparator(char c) {
    return c == ' ' || c == ',' || c == '\t' || c == '\r' || c == '\n';
}

void WriteZeroPadded(std::string_view text, std::uint64_t event, std::size_t parameter, unsigned width,
                     unsigned char* dest) {
    const auto value = ParseUnsigned(text);
    if (!value || *value > LargestValue) {
        Refuse("DATA value of parameter " + std::to_string(parameter + 1) + " in event " +
                   std::to_string(event + 1),
               text, "a whole number up to " + std::to_string(LargestValue));
    }
    std::uint64_t rest = *value;
    for (unsigned i = width; i-- > 0; rest /= 10)
        dest[i] = static_cast<unsigned char>('0' + rest % 10);
}

}  // namespace

std::uint64_t CountFreeFormatValues(InputFile& file, std::uint64_t begin, std::uint64_t length) {
    std::uint64_t values = 0;
    bool inside = false;
    for (std::uint64_t done = 0; done < length;) {
        const std::string piece =
            file.ReadText(begin + done, std::min<std::uint64_t>(length - done, PieceBytes));
        for (const char c : piece) {
            if (!inside && !IsSeparator(c)) ++values;
            inside = !IsSeparator(c);
        }
        done += piece.size();
    }
    return values;
}

FixedAsciiReader::FixedAsciiReader(FcsFile& file) : file_(file), position_(file.data.begin), width_(0) {
    for (const Parameter& parameter : file.layout.parameters)
        width_ = std::max(width_, parameter.width);
    width_ = std::min(width_, MostDigits);
}

WordFormat FixedAsciiReader::Format() const {
    return {4, static_cast<int>(width_), 0, true};
}

void FixedAsciiReader::Read(unsigned char* dest, std::uint64_t events) {
    const std::uint64_t eventBytes = file_.layout.EventBytes();
    const std::uint64_t perPiece = std::max<std::uint64_t>(PieceBytes / eventBytes, 1);
    for (std::uint64_t done = 0; done < events;) {
        const std::uint64_t count = std::min(events - done, perPiece);
        const std::string piece = file_.bytes.ReadText(position_, count * eventBytes);
        position_ += piece.size();
        done += count;
        std::string_view rest(piece);
        for (const std::uint64_t end = event_ + count; event_ < end; ++event_) {
            for (std::size_t p = 0; p < file_.layout.parameters.size(); ++p, dest += width_) {
                const unsigned width = file_.layout.parameters[p].width;
                WriteZeroPadded(rest.substr(0, width), event_, p, width_, dest);
                rest.remove_prefix(width);
            }
        }
    }
}

FreeAsciiReader::FreeAsciiReader(FcsFile& file)
    : file_(file), position_(file.data.begin), end_(file.data.begin + file.data.length) {}

WordFormat FreeAsciiReader::Format() const {
    return {4, static_cast<int>(MostDigits), 0, true};
}

/// The next byte of DATA, -1 at its end.
int FreeAsciiReader::NextByte() {
    if (next_ == buffer_.size()) {
        buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(end_ - position_, PieceBytes)));
        if (buffer_.empty()) return -1;
        file_.bytes.Read(position_, buffer_.data(), buffer_.size());
        position_ += buffer_.size();
        next_ = 0;
    }
    return static_cast<unsigned char>(buffer_[next_++]);
}

/// The next number without leading zeros, cut where it is too long to be one.
std::string FreeAsciiReader::NextNumber() {
    int c = NextByte();
    while (c >= 0 && IsSeparator(static_cast<char>(c)))
        c = NextByte();
    std::string number;
    for (; c >= 0 && !IsSeparator(static_cast<char>(c)); c = NextByte()) {
        if (number == "0") number.clear();
        if (number.size() < LongestNumber) number += static_cast<char>(c);
    }
    return number;
}

void FreeAsciiReader::Read(unsigned char* dest, std::uint64_t events) {
    for (const std::uint64_t end = event_ + events; event_ < end; ++event_) {
        for (std::size_t p = 0; p < file_.layout.parameters.size(); ++p, dest += MostDigits) {
            WriteZeroPadded(NextNumber(), event_, p, MostDigits, dest);
        }
    }
}

}  // namespace Host
