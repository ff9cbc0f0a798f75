// Integers whose words are not what the library reads: of 8 or 24 bits, of several widths, in an order of
// bytes that is neither plain one, or with bits above $PnR. They become little-endian words of one width.
// Floats in such an order of bytes take the same way.
#pragma once

#include <vector>

#include "fcs_files/event_reader.h"

namespace Host {

class RearrangingReader : public EventReader {
public:
    explicit RearrangingReader(FcsFile& file);

    WordFormat Format() const override;
    void Read(unsigned char* dest, std::uint64_t events) override;

    /// Whether the words of `layout` have to be rearranged at all.
    static bool IsNeeded(const EventLayout& layout);

private:
    /// Where the value of one parameter stands within an event and how it is put together.
    struct Field {
        std::size_t offset;
        unsigned bytes;
        unsigned shifts[4];
        std::uint32_t mask;
    };

    FcsFile& file_;
    std::uint64_t position_;
    unsigned wordBytes_;
    std::vector<Field> fields_;
    std::vector<unsigned char> piece_;
};

}  // namespace Host
