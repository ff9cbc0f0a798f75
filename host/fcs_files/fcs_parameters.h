// How an event is stored: data type, byte order, and what the $Pn keywords say about each parameter.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fcs_files/fcs_text.h"
#include "files/findings.h"

namespace Host {

enum class DataType : char { Integer = 'I', Float = 'F', Double = 'D', Ascii = 'A' };

/// One parameter. Texts are bytes as they stand in the file.
struct Parameter {
    std::string name;                 ///< $PnN
    std::string stain;                ///< $PnS, may be empty
    unsigned width = 0;               ///< bits of a value, characters for ASCII; 0 in free format
    std::optional<double> range;      ///< $PnR
    std::uint32_t mask = 0xFFFFFFFF;  ///< the bits of an integer that $PnR leaves
    double decades = 0;               ///< $PnE, first number; 0 for a linear parameter
    double logOffset = 0;             ///< $PnE, second number: the value of channel 0
    std::optional<double> gain;       ///< $PnG

    bool IsLog() const { return decades > 0; }
};

/// $BYTEORD: which byte of a word comes first.
class ByteOrder {
public:
    /// Throws Refusal unless `text` holds each of the numbers from 1 on once.
    explicit ByteOrder(const std::string& text);

    /// For each byte of a word of `width` bytes in file order, its significance: 0 is the least. A shorter
    /// word keeps the order among its own bytes, a longer one continues a plain order. Throws Refusal when
    /// there is none to continue.
    std::vector<unsigned> Significances(unsigned width) const;

    const std::string& Text() const { return text_; }

private:
    std::string text_;
    std::vector<unsigned> ranks_;
};

/// Whether `significances` are those of a word with its least, or its most, significant byte first.
bool IsLittleEndian(const std::vector<unsigned>& significances);
bool IsBigEndian(const std::vector<unsigned>& significances);

struct EventLayout {
    DataType type = DataType::Integer;
    std::optional<ByteOrder> byteOrder;  ///< none for ASCII
    std::vector<Parameter> parameters;
    bool freeFormat = false;  ///< ASCII numbers of any length with separators between them

    /// Bytes of one event in the file; 0 in free format.
    std::uint64_t EventBytes() const;
};

/// Reads the layout from TEXT. Throws Refusal when events so described cannot be read.
EventLayout ReadLayout(const Header& header, const Keywords& keywords, Findings& findings);

}  // namespace Host
