#include "picture/figure_canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace Host {
namespace {

void Check(cairo_status_t status) {
    if (status == CAIRO_STATUS_SUCCESS) return;
    throw std::runtime_error(
        std::string("the picture cannot be drawn: ").append(cairo_status_to_string(status)));
}

cairo_status_t Append(void* text, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

/// How far two intervals overlap.
double Shared(double firstA, double lastA, double firstB, double lastB) {
    return std::max(0.0, std::min(lastA, lastB) - std::max(firstA, firstB));
}

/// Every letter has its true shape and width, so that a picture is the same at each scale.
void SetFontOptions(cairo_t* context) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context, options);
    cairo_font_options_destroy(options);
}

}  // namespace

double SharedArea(const Box& a, const Box& b) {
    return Shared(a.left, a.Right(), b.left, b.Right()) * Shared(a.top, a.Bottom(), b.top, b.Bottom());
}

Box MovedInside(Box box, const Box& bounds) {
    box.left = std::max(bounds.left, std::min(box.left, bounds.Right() - box.width));
    box.top = std::max(bounds.top, std::min(box.top, bounds.Bottom() - box.height));
    return box;
}

Canvas::Canvas(int width, int height)
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      context_(cairo_create(surface_.get())) {
    Check(cairo_status(context_.get()));
    cairo_set_source_rgb(context_.get(), 1, 1, 1);
    cairo_paint(context_.get());
    SetFontOptions(context_.get());
}

double Canvas::Ink(const Box& box) const {
    constexpr std::uint32_t WhitePixel = 0xFFFFFF;
    cairo_surface_t* surface = surface_.get();
    cairo_surface_flush(surface);
    const int left = std::max(0, static_cast<int>(box.left));
    const int top = std::max(0, static_cast<int>(box.top));
    const int right =
        std::min(cairo_image_surface_get_width(surface), static_cast<int>(std::ceil(box.Right())));
    const int bottom =
        std::min(cairo_image_surface_get_height(surface), static_cast<int>(std::ceil(box.Bottom())));
    std::int64_t inked = 0;
    for (int row = top; row < bottom; ++row) {
        const unsigned char* bytes = cairo_image_surface_get_data(surface) +
                                     std::ptrdiff_t{row} * cairo_image_surface_get_stride(surface);
        for (int column = left; column < right; ++column) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, bytes + std::ptrdiff_t{column} * 4, sizeof pixel);
            inked += (pixel & WhitePixel) != WhitePixel ? 1 : 0;
        }
    }
    return static_cast<double>(inked) / std::max(1, (right - left) * (bottom - top));
}

std::string Canvas::Png() const {
    Check(cairo_status(context_.get()));
    std::string bytes;
    Check(cairo_surface_write_to_png_stream(surface_.get(), Append, &bytes));
    return bytes;
}

void SetColor(cairo_t* context, Color color, double opacity) {
    cairo_set_source_rgba(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0, opacity);
}

void FillBox(Canvas& canvas, const Box& box, Color color, double opacity) {
    cairo_rectangle(canvas.Context(), box.left, box.top, box.width, box.height);
    SetColor(canvas.Context(), color, opacity);
    cairo_fill(canvas.Context());
}

}  // namespace Host
