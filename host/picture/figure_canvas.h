// A white sheet of pixels, drawn on through Cairo.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "picture/colors.h"

namespace Host {

constexpr Color White{0xFF, 0xFF, 0xFF};
constexpr Color DarkInk{0x22, 0x22, 0x22};
constexpr Color QuietInk{0x5A, 0x5A, 0x5A};

/// In pixels from the upper left corner of the sheet.
struct Point {
    double x;
    double y;
};

struct Box {
    double left;
    double top;
    double width;
    double height;

    double Right() const { return left + width; }
    double Bottom() const { return top + height; }
};

/// How many square pixels two boxes have in common.
double SharedArea(const Box& a, const Box& b);

/// `box`, moved no further than is needed to lie inside `bounds`.
Box MovedInside(Box box, const Box& bounds);

class Canvas {
public:
    /// Throws std::runtime_error when there is no memory for it.
    Canvas(int width, int height);

    cairo_t* Context() { return context_.get(); }

    /// The share of the pixels of a box that are not white, from 0 to 1.
    double Ink(const Box& box) const;

    /// As the bytes of a PNG file. Throws std::runtime_error when anything could not be drawn.
    std::string Png() const;

private:
    struct Release {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    std::unique_ptr<cairo_surface_t, Release> surface_;
    std::unique_ptr<cairo_t, Release> context_;
};

void SetColor(cairo_t* context, Color color, double opacity = 1);

void FillBox(Canvas& canvas, const Box& box, Color color, double opacity = 1);

}  // namespace Host
