#include "fcs_files/rearranging_reader.h"

#include <algorithm>

namespace Host {
namespace {

constexpr std::uint64_t PieceBytes = 1U << 18U;
constexpr unsigned Bits = 8;

/// All bits of a word of `width` bits.
std::uint32_t AllBits(unsigned width) {
    return 0xFFFFFFFFU >> (32 - width);
}

}  // namespace

bool RearrangingReader::IsNeeded(const EventLayout& layout) {
    if (layout.type != DataType::Integer && layout.type != DataType::Float) return false;
    const unsigned width = layout.parameters[0].width;
    const std::vector<unsigned> order = layout.byteOrder->Significances(width / Bits);
    if (!IsLittleEndian(order) && !IsBigEndian(order)) return true;
    if (layout.type == DataType::Float) return false;
    const auto asStored = [width](const Parameter& parameter) {
        return parameter.width == width && (parameter.mask & AllBits(width)) == AllBits(width);
    };
    return (width != 16 && width != 32) ||
           !std::all_of(layout.parameters.begin(), layout.parameters.end(), asStored);
}

RearrangingReader::RearrangingReader(FcsFile& file) : file_(file), position_(file.data.begin), wordBytes_(2) {
    std::size_t offset = 0;
    for (const Parameter& parameter : file.layout.parameters) {
        Field field{offset, parameter.width / Bits, {}, parameter.mask & AllBits(parameter.width)};
        const std::vector<unsigned> order = file.layout.byteOrder->Significances(field.bytes);
        for (unsigned i = 0; i < field.bytes; ++i)
            field.shifts[i] = order[i] * Bits;
        fields_.push_back(field);
        offset += field.bytes;
        if (field.bytes > 2) wordBytes_ = 4;
    }
    const std::uint64_t eventBytes = file.layout.EventBytes();
    piece_.resize(static_cast<std::size_t>(std::max<std::uint64_t>(PieceBytes / eventBytes, 1) * eventBytes));
}

WordFormat RearrangingReader::Format() const {
    const int type = file_.layout.type == DataType::Float ? 2 : 1;
    return {type, static_cast<int>(wordBytes_), static_cast<int>(wordBytes_ * Bits), true};
}

void RearrangingReader::Read(unsigned char* dest, std::uint64_t events) {
    const std::uint64_t eventBytes = file_.layout.EventBytes();
    for (std::uint64_t done = 0; done < events;) {
        const std::uint64_t count = std::min<std::uint64_t>(events - done, piece_.size() / eventBytes);
        const std::size_t bytes = static_cast<std::size_t>(count * eventBytes);
        file_.bytes.Read(position_, piece_.data(), bytes);
        position_ += bytes;
        done += count;
        for (const unsigned char* event = piece_.data(); event < piece_.data() + bytes; event += eventBytes) {
            for (const Field& field : fields_) {
                std::uint32_t value = 0;
                for (unsigned i = 0; i < field.bytes; ++i) {
                    value |= static_cast<std::uint32_t>(event[field.offset + i]) << field.shifts[i];
                }
                value &= field.mask;
                for (unsigned i = 0; i < wordBytes_; ++i) {
                    *dest++ = static_cast<unsigned char>(value >> (i * Bits));
                }
            }
        }
    }
}

}  // namespace Host
