#include "picture/figure_text.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <numbers>
#include <string_view>

#include "text/display.h"

namespace Host {
namespace {

constexpr char FontFamily[] = "DejaVu Sans";
constexpr double HaloWidth = 0.3;  ///< of the font's size

/// Cairo and Fontconfig keep their fonts for the next picture. They are released when the program ends, so
/// that a leak checker finds leaks alone.
struct FontCaches {
    ~FontCaches() {
        cairo_debug_reset_static_data();
        FcFini();
    }
};

void SelectFont(cairo_t* context, const TextStyle& style) {
    static const FontCaches caches;
    cairo_select_font_face(context, FontFamily, CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
}

/// Where the characters of UTF-8 text start, and its end.
std::vector<std::size_t> CharacterStarts(const std::string& text) {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) starts.push_back(i);
    }
    starts.push_back(text.size());
    return starts;
}

/// Whether UTF-8 text has at `place` one of the 66 code points that Unicode gives no character: U+FDD0 to
/// U+FDEF and the last two of each plane. Cairo takes none of them for valid.
bool IsNoncharacter(std::string_view text, std::size_t place) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[place + i]); };
    const bool isLong = byte(0) >= 0xF0;
    if (byte(0) < 0xEF) return false;
    if (!isLong && byte(1) == 0xB7) return byte(2) >= 0x90 && byte(2) < 0xB0;
    const bool isEndOfPlane = isLong ? (byte(1) & 0x0FU) == 0x0F && byte(2) == 0xBF : byte(1) == 0xBF;
    return isEndOfPlane && byte(isLong ? 3 : 2) >= 0xBE;
}

/// Valid UTF-8 with the sign for what cannot be shown in the place of noncharacters.
std::string WithoutNoncharacters(const std::string& text) {
    const std::vector<std::size_t> starts = CharacterStarts(text);
    std::string result;
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const std::size_t length = starts[i + 1] - starts[i];
        result += IsNoncharacter(text, starts[i]) ? "\uFFFD" : text.substr(starts[i], length);
    }
    return result;
}

void DrawHalo(cairo_t* context, const std::string& text, const TextStyle& style) {
    cairo_text_path(context, text.c_str());
    SetColor(context, White, 0.85);
    cairo_set_line_width(context, style.size * HaloWidth);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(context);
}

}  // namespace

double TextWidth(Canvas& canvas, const std::string& text, const TextStyle& style) {
    SelectFont(canvas.Context(), style);
    cairo_text_extents_t extents;
    cairo_text_extents(canvas.Context(), text.c_str(), &extents);
    return extents.x_advance;
}

std::string Ellipsised(Canvas& canvas, const std::string& text, const TextStyle& style, double width) {
    if (TextWidth(canvas, text, style) <= width) return text;
    const auto Shortened = [&text](std::size_t length) { return text.substr(0, length).append("…"); };
    const std::vector<std::size_t> starts = CharacterStarts(text);
    const auto tooLong = std::partition_point(starts.begin(), starts.end(), [&](std::size_t length) {
        return TextWidth(canvas, Shortened(length), style) <= width;
    });
    return tooLong == starts.begin() ? std::string() : Shortened(*(tooLong - 1));
}

void DrawText(Canvas& canvas, const std::string& text, const TextStyle& style, Point baseline, Align align) {
    cairo_t* context = canvas.Context();
    const double width = TextWidth(canvas, text, style);
    const double shift = align == Align::Left ? 0 : align == Align::Center ? width / 2 : width;
    if (style.halo) {
        cairo_move_to(context, baseline.x - shift, baseline.y);
        DrawHalo(context, text, style);
    }
    cairo_move_to(context, baseline.x - shift, baseline.y);
    SetColor(context, style.color);
    cairo_show_text(context, text.c_str());
    cairo_new_path(context);
}

void DrawTextUpward(Canvas& canvas, const std::string& text, const TextStyle& style, Point baseline,
                    Align align) {
    cairo_t* context = canvas.Context();
    cairo_save(context);
    cairo_translate(context, baseline.x, baseline.y);
    cairo_rotate(context, -std::numbers::pi / 2);
    DrawText(canvas, text, style, {0, 0}, align);
    cairo_restore(context);
}

std::vector<std::string> TextLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(WithoutNoncharacters(Printable(std::string_view(text).substr(start, end - start))));
        start = end + 1;
    }
    return lines;
}

std::string TextLine(const std::string& text) {
    std::string line;
    for (const std::string& part : TextLines(text)) {
        if (!line.empty()) line += ' ';
        line += part;
    }
    return line;
}

}  // namespace Host
