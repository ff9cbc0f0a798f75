// FCS files as tests need them: right unless told otherwise, and every part can be made wrong.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace Orvane::Testing {

/// The bytes of an integer of `width` bytes; `order` is a $BYTEORD of as many digits, each the significance
/// of a byte in file order (1 is the least).
inline std::string EncodeWord(std::uint64_t value, const std::string& order) {
    std::string bytes;
    for (const char digit : order)
        bytes += static_cast<char>(value >> (8 * (digit - '1')) & 0xFFU);
    return bytes;
}

inline std::string EncodeFloat(float value, const std::string& order = "1234") {
    return EncodeWord(std::bit_cast<std::uint32_t>(value), order);
}
inline std::string EncodeDouble(double value, const std::string& order = "12345678") {
    return EncodeWord(std::bit_cast<std::uint64_t>(value), order);
}

class FcsBuilder {
public:
    static constexpr std::size_t TextBegin = 58;
    static constexpr std::size_t DataBegin = 4096;

    std::string version = "FCS3.1";
    char delimiter = '/';
    std::string data;
    std::string textEnd;     ///< stands behind the last value and its delimiter
    std::string behindData;  ///< follows the DATA segment
    std::size_t dataBegin = DataBegin;
    bool placesInText = true;  ///< whether TEXT has $BEGINDATA and $ENDDATA
    /// Fields of HEADER to write instead of the right ones, by position; empty for the right one.
    std::array<std::string, 6> header;

    /// `widths` are $PnB; every parameter is linear with a range that masks nothing.
    FcsBuilder(char type, const std::string& byteOrder, const std::vector<std::string>& widths,
               std::size_t events, std::string bytes = "")
        : data(std::move(bytes)) {
        Set("$MODE", "L").Set("$DATATYPE", std::string(1, type)).Set("$NEXTDATA", "0");
        if (type != 'A') Set("$BYTEORD", byteOrder);
        Set("$PAR", std::to_string(widths.size())).Set("$TOT", std::to_string(events));
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const std::string prefix = "$P" + std::to_string(i + 1);
            Set(prefix + "N", "Par" + std::to_string(i + 1)).Set(prefix + "B", widths[i]);
            Set(prefix + "R", "4294967296").Set(prefix + "E", "0,0");
        }
    }

    /// Little-endian floats, event by event.
    static FcsBuilder Floats(std::size_t parameters, const std::vector<float>& values) {
        FcsBuilder builder('F', "1,2,3,4", std::vector<std::string>(parameters, "32"),
                           values.size() / parameters);
        for (const float value : values)
            builder.data += EncodeFloat(value);
        return builder;
    }

    /// Two parameters, three events: 1, 2, 3 and 10, 20, 30.
    static FcsBuilder Small() { return Floats(2, {1, 10, 2, 20, 3, 30}); }

    FcsBuilder& Set(const std::string& keyword, const std::string& value) {
        for (auto& pair : keywords_) {
            if (pair.first == keyword) {
                pair.second = value;
                return *this;
            }
        }
        keywords_.emplace_back(keyword, value);
        return *this;
    }

    FcsBuilder& Remove(const std::string& keyword) {
        std::erase_if(keywords_, [&](const auto& pair) { return pair.first == keyword; });
        return *this;
    }

    std::string Build() const {
        auto keywords = keywords_;
        if (placesInText) {
            keywords.emplace_back("$BEGINDATA", std::to_string(dataBegin));
            keywords.emplace_back("$ENDDATA", std::to_string(dataBegin + data.size() - 1));
        }
        std::string text(1, delimiter);
        for (const auto& [keyword, value] : keywords) {
            for (const std::string& token : {keyword, value})
                text.append(token).append(1, delimiter);
        }
        text += textEnd;
        std::string file = version + "    ";
        const std::array<std::size_t, 6> places = {
            TextBegin, TextBegin + text.size() - 1, dataBegin, dataBegin + data.size() - 1, 0, 0};
        for (std::size_t i = 0; i < places.size(); ++i) {
            char field[32];
            std::snprintf(field, sizeof field, "%8zu", places[i]);
            file += header[i].empty() ? field : header[i];
        }
        file += text;
        file.resize(std::max(dataBegin, file.size()), ' ');
        return file + data + behindData;
    }

private:
    std::vector<std::pair<std::string, std::string>> keywords_;
};

}  // namespace Orvane::Testing
