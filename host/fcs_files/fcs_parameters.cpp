#include "fcs_files/fcs_parameters.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "text/numbers.h"

namespace Host {
namespace {

constexpr std::uint64_t MostAsciiCharacters = 1000;

std::string Keyword(std::size_t parameter, std::string_view name) {
    return std::string("$P").append(std::to_string(parameter)).append(name);
}

const std::string& Require(const Keywords& keywords, const std::string& keyword, const char* expected) {
    const std::string* value = keywords.Find(keyword);
    if (value == nullptr) RefuseMissing(keyword, expected);
    return *value;
}

bool IsIntegral(DataType type) {
    return type == DataType::Integer || type == DataType::Ascii;
}

/// Reads the keywords of one parameter after another.
class ParameterReader {
public:
    ParameterReader(const Header& header, const Keywords& keywords, DataType type, Findings& findings)
        : needsAll_(header.version != "FCS2.0"), keywords_(keywords), type_(type), findings_(findings) {}

    Parameter Read(std::size_t n) {
        CheckType(n);
        Parameter parameter;
        parameter.width = Width(n);
        parameter.name = Name(n);
        const std::string* stain = keywords_.Find(Keyword(n, "S"));
        if (stain != nullptr) parameter.stain = *stain;
        ReadRange(n, parameter);
        ReadAmplification(n, parameter);
        ReadGain(n, parameter);
        return parameter;
    }

private:
    /// Version 3.2 allows every parameter its own data type.
    void CheckType(std::size_t n) const {
        const std::string keyword = Keyword(n, "DATATYPE");
        const std::string* type = keywords_.Find(keyword);
        if (type == nullptr || Trim(*type) == std::string(1, static_cast<char>(type_))) return;
        Refuse(keyword, *type, std::string(1, static_cast<char>(type_)) + " as in $DATATYPE");
    }

    unsigned Width(std::size_t n) const {
        const std::string keyword = Keyword(n, "B");
        const char* expected = ExpectedWidth();
        const std::string& text = Require(keywords_, keyword, expected);
        if (type_ == DataType::Ascii && Trim(text) == "*") return 0;
        const auto width = ParseUnsigned(text);
        if (!width || !IsWidth(*width)) Refuse(keyword, text, expected);
        return static_cast<unsigned>(*width);
    }

    const char* ExpectedWidth() const {
        switch (type_) {
            case DataType::Integer:
                return "8, 16, 24 or 32 bits";
            case DataType::Float:
                return "32 bits";
            case DataType::Double:
                return "64 bits";
            default:
                return "a number of characters up to 1000, or *";
        }
    }

    bool IsWidth(std::uint64_t width) const {
        switch (type_) {
            case DataType::Integer:
                return width == 8 || width == 16 || width == 24 || width == 32;
            case DataType::Float:
                return width == 32;
            case DataType::Double:
                return width == 64;
            default:
                return width >= 1 && width <= MostAsciiCharacters;
        }
    }

    std::string Name(std::size_t n) {
        const std::string* name = keywords_.Find(Keyword(n, "N"));
        std::string chosen = name != nullptr ? *name : Keyword(n, "").substr(1);
        if (name == nullptr && needsAll_) {
            findings_.Warn({Keyword(n, "N"), std::nullopt, "a name"}, "it is called " + chosen);
        }
        if (!names_.insert(chosen).second) {
            findings_.Warn({Keyword(n, "N"), chosen, "a name that no other parameter has"},
                           "the name stands for the first");
        }
        return chosen;
    }

    void ReadRange(std::size_t n, Parameter& parameter) {
        const std::string keyword = Keyword(n, "R");
        const char* expected = "a number of at least 0";
        const std::string* text = keywords_.Find(keyword);
        if (text != nullptr) parameter.range = ParseNumber(*text);
        if (parameter.range && *parameter.range < 0) parameter.range.reset();
        if (!parameter.range) {
            const Fault fault{keyword, text ? std::optional(*text) : std::nullopt, expected};
            if (IsIntegral(type_)) throw Refusal(fault);
            findings_.Warn(fault, "the range is left open");
        }
        if (type_ == DataType::Integer) SetMask(keyword, parameter);
    }

    /// The values 0 to $PnR - 1 need that many bits; what stands above is no part of the value.
    void SetMask(const std::string& keyword, Parameter& parameter) {
        if (*parameter.range < 2) {
            findings_.Warn({keyword, Shortest(*parameter.range), "at least 2"}, "no bits are masked");
            return;
        }
        std::uint64_t mask = 1;
        while (mask < 0xFFFFFFFF && static_cast<double>(mask) < *parameter.range - 1)
            mask = mask << 1U | 1U;
        parameter.mask = static_cast<std::uint32_t>(mask);
    }

    void ReadAmplification(std::size_t n, Parameter& parameter) {
        const std::string keyword = Keyword(n, "E");
        const std::string* text = keywords_.Find(keyword);
        if (text == nullptr) {
            if (!needsAll_) return;
            findings_.Warn({keyword, std::nullopt, "two numbers such as 0,0"},
                           "the parameter is taken as linear");
            return;
        }
        const std::size_t comma = std::min(text->find(','), text->size());
        const auto decades = ParseNumber(std::string_view(*text).substr(0, comma));
        const auto offset = ParseNumber(std::string_view(*text).substr(std::min(comma + 1, text->size())));
        if (!decades || !offset || *decades < 0 || *offset < 0) {
            const Fault fault{keyword, *text, "two numbers of at least 0, such as 0,0 or 4,1"};
            if (IsIntegral(type_)) throw Refusal(fault);
            findings_.Warn(fault, "the values are taken as linear");
            return;
        }
        SetAmplification({keyword, *text, "0,0"}, *decades, *offset, parameter);
    }

    void SetAmplification(Fault fault, double decades, double offset, Parameter& parameter) {
        if (decades == 0 && offset == 0) return;
        if (!IsIntegral(type_)) {
            fault.expected += " with floating-point data";
            findings_.Warn(fault, "the values are taken as linear");
            return;
        }
        if (decades == 0) {
            findings_.Warn(fault, "the parameter is taken as linear");
            return;
        }
        if (*parameter.range == 0) Refuse(fault.where, *fault.value, "0,0 where the range is 0");
        parameter.decades = decades;
        parameter.logOffset = offset;
        if (offset == 0) {
            fault.expected = "a second number above 0";
            findings_.Warn(fault, "it is taken as " + Shortest(decades) + ",1");
            parameter.logOffset = 1;
        }
    }

    void ReadGain(std::size_t n, Parameter& parameter) {
        const std::string keyword = Keyword(n, "G");
        const std::string* text = keywords_.Find(keyword);
        if (text == nullptr) return;
        const auto gain = ParseNumber(*text);
        if (!gain || *gain < 0) Refuse(keyword, *text, "a number above 0");
        if (*gain == 0) {
            findings_.Warn({keyword, *text, "a number above 0"}, "it is taken as 1");
            return;
        }
        parameter.gain = gain;
        if (parameter.IsLog() && *gain != 1) {
            findings_.Warn({keyword, *text, "1 for a logarithmic parameter"}, "the gain is not applied");
        }
    }

    bool needsAll_;
    const Keywords& keywords_;
    DataType type_;
    Findings& findings_;
    std::set<std::string> names_;
};

DataType ReadDataType(const Keywords& keywords) {
    const char* expected = "I, F, D or A";
    const std::string& text = Require(keywords, "$DATATYPE", expected);
    const std::string_view type = Trim(text);
    if (type.size() != 1 || std::string_view("IFDA").find(type[0]) == std::string_view::npos) {
        Refuse("$DATATYPE", text, expected);
    }
    return static_cast<DataType>(type[0]);
}

void CheckMode(const Keywords& keywords, Findings& findings) {
    const std::string* mode = keywords.Find("$MODE");
    const std::string expected = "L, list mode";
    if (mode == nullptr) {
        findings.Warn({"$MODE", std::nullopt, expected}, "list mode is taken");
    } else if (Trim(*mode) != "L") {
        Refuse("$MODE", *mode, expected);
    }
}

/// Integers and floats are rearranged whatever their order; doubles are read as they stand.
void CheckByteOrder(const EventLayout& layout) {
    for (const Parameter& parameter : layout.parameters) {
        const auto significances = layout.byteOrder->Significances(parameter.width / 8);
        const bool plain = IsLittleEndian(significances) || IsBigEndian(significances);
        if (layout.type == DataType::Double && !plain) {
            Refuse("$BYTEORD", layout.byteOrder->Text(), "a plain ascending or descending order for doubles");
        }
    }
}

/// Every parameter needs keywords of its own, so that their number limits what $PAR can be.
std::size_t ReadParameterCount(const Keywords& keywords) {
    const std::string& text = Require(keywords, "$PAR", "the number of parameters");
    const auto count = ParseUnsigned(text);
    if (!count || *count == 0 || *count > keywords.Count()) {
        Refuse("$PAR", text, "a number of parameters that TEXT describes");
    }
    return static_cast<std::size_t>(*count);
}

/// Free format has no fields, so it is for all parameters or for none.
bool ReadFreeFormat(const std::vector<Parameter>& parameters) {
    const bool free = parameters[0].width == 0;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if ((parameters[i].width == 0) == free) continue;
        Refuse(Keyword(i + 1, "B"), free ? std::to_string(parameters[i].width) : "*",
               free ? "* as for the other parameters" : "a number of characters as for the other parameters");
    }
    return free;
}

}  // namespace

ByteOrder::ByteOrder(const std::string& text) : text_(Trim(text)) {
    constexpr const char* Expected = "the numbers from 1 on in the order of the bytes, such as 1,2,3,4";
    constexpr std::size_t LongestWord = 8;
    for (std::size_t begin = 0; begin <= text_.size();) {
        const std::size_t end = std::min(text_.find(',', begin), text_.size());
        const auto rank = ParseUnsigned(std::string_view(text_).substr(begin, end - begin));
        if (!rank || *rank < 1 || *rank > LongestWord) Refuse("$BYTEORD", text, Expected);
        ranks_.push_back(static_cast<unsigned>(*rank));
        begin = end + 1;
    }
    std::vector<unsigned> sorted = ranks_;
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (sorted[i] != i + 1) Refuse("$BYTEORD", text, Expected);
    }
}

std::vector<unsigned> ByteOrder::Significances(unsigned width) const {
    std::vector<unsigned> significances;
    for (const unsigned rank : ranks_) {
        if (rank <= width) significances.push_back(rank - 1);
    }
    if (ranks_.size() >= width) return significances;
    const bool little = IsLittleEndian(significances);
    if (ranks_.size() == 1 || (!little && !IsBigEndian(significances))) {
        Refuse("$BYTEORD", text_, "the order of " + std::to_string(width) + " bytes");
    }
    significances.clear();
    for (unsigned i = 0; i < width; ++i)
        significances.push_back(little ? i : width - 1 - i);
    return significances;
}

bool IsLittleEndian(const std::vector<unsigned>& significances) {
    return std::is_sorted(significances.begin(), significances.end());
}

bool IsBigEndian(const std::vector<unsigned>& significances) {
    return std::is_sorted(significances.rbegin(), significances.rend());
}

std::uint64_t EventLayout::EventBytes() const {
    std::uint64_t width = 0;
    for (const Parameter& parameter : parameters)
        width += parameter.width;
    return type == DataType::Ascii ? width : width / 8;
}

EventLayout ReadLayout(const Header& header, const Keywords& keywords, Findings& findings) {
    EventLayout layout;
    CheckMode(keywords, findings);
    layout.type = ReadDataType(keywords);
    if (layout.type != DataType::Ascii) {
        layout.byteOrder.emplace(Require(keywords, "$BYTEORD", "an order of bytes such as 1,2,3,4"));
    }
    const std::size_t count = ReadParameterCount(keywords);
    ParameterReader reader(header, keywords, layout.type, findings);
    for (std::size_t n = 1; n <= count; ++n)
        layout.parameters.push_back(reader.Read(n));
    layout.freeFormat = ReadFreeFormat(layout.parameters);
    if (layout.byteOrder) CheckByteOrder(layout);
    return layout;
}

}  // namespace Host
