// Lines of text in a picture.
#pragma once

#include <string>
#include <vector>

#include "picture/figure_canvas.h"

namespace Host {

struct TextStyle {
    double size;  ///< of the font, in pixels
    Color color;
    bool bold = false;
    bool halo = false;  ///< a white border, for text on data
};

enum class Align { Left, Center, Right };

double TextWidth(Canvas& canvas, const std::string& text, const TextStyle& style);

/// `text`, its end replaced by an ellipsis where it is wider than `width` pixels.
std::string Ellipsised(Canvas& canvas, const std::string& text, const TextStyle& style, double width);

/// `baseline` is where the left end, the middle or the right end of the line goes.
void DrawText(Canvas& canvas, const std::string& text, const TextStyle& style, Point baseline,
              Align align = Align::Left);

/// The same from bottom to top.
void DrawTextUpward(Canvas& canvas, const std::string& text, const TextStyle& style, Point baseline,
                    Align align);

/// The lines of `text` as they can be drawn: valid UTF-8 without control characters and
/// noncharacters.
std::vector<std::string> TextLines(const std::string& text);

/// Those lines in one, separated by blanks.
std::string TextLine(const std::string& text);

}  // namespace Host
