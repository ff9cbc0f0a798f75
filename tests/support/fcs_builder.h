// FCS files as tests need them: right unless told otherwise, and every part can be made wrong.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
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

template <class Floating, class Bits>
std::string EncodeFloating(Floating value, const std::string& order) {
    Bits bits;
    std::memcpy(&bits, &value, sizeof bits);
    return EncodeWord(bits, order);
}

inline std::string EncodeFloat(float value, const std::string& order = "1234") {
    return EncodeFloating<float, std::uint32_t>(value, order);
}
inline std::string EncodeDouble(double value, const std::string& order = "12345678") {
    return EncodeFloating<double, std::uint64_t>(value, order);
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
    FcsBuilder(char type, const std::string& byteOrder, const std::vector<std::string>& widths, int events) {
        Set("$MODE", "L").Set("$DATATYPE", std::string(1, type)).Set("$NEXTDATA", "0");
        if (type != 'A') Set("$BYTEORD", byteOrder);
        Set("$PAR", std::to_string(widths.size())).Set("$TOT", std::to_string(events));
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const std::string prefix = "$P" + std::to_string(i + 1);
            Set(prefix + "N", "Par" + std::to_string(i + 1)).Set(prefix + "B", widths[i]);
            Set(prefix + "R", "4294967296").Set(prefix + "E", "0,0");
        }
    }

    /// Two parameters, three events of floats: 1, 2, 3 and 10, 20, 30.
    static FcsBuilder Small() {
        FcsBuilder builder('F', "1,2,3,4", {"32", "32"}, 3);
        for (const float value : {1.0F, 10.0F, 2.0F, 20.0F, 3.0F, 30.0F})
            builder.data += EncodeFloat(value);
        return builder;
    }

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
        std::string text(1, delimiter);
        for (const auto& [keyword, value] : AllKeywords()) {
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

    void Write(const std::string& path) const { std::ofstream(path, std::ios::binary) << Build(); }

private:
    std::vector<std::pair<std::string, std::string>> AllKeywords() const {
        auto all = keywords_;
        if (placesInText) {
            all.emplace_back("$BEGINDATA", std::to_string(dataBegin));
            all.emplace_back("$ENDDATA", std::to_string(dataBegin + data.size() - 1));
        }
        return all;
    }

    std::vector<std::pair<std::string, std::string>> keywords_;
};

}  // namespace Orvane::Testing
