#include "picture/colors.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Host {
namespace {

/// B. Ottosson's OKLab, where equal distances look equally far apart: lightness from 0 to 1, green to red,
/// blue to yellow.
struct OkLab {
    double lightness;
    double a;
    double b;
};

double Decoded(unsigned char channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

unsigned char Encoded(double linear) {
    const double value = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return static_cast<unsigned char>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

OkLab ToOkLab(Color color) {
    const double red = Decoded(color.red);
    const double green = Decoded(color.green);
    const double blue = Decoded(color.blue);
    const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
    const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
    const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

Color ToColor(const OkLab& lab) {
    const double l = std::pow(lab.lightness + 0.3963377774 * lab.a + 0.2158037573 * lab.b, 3);
    const double m = std::pow(lab.lightness - 0.1055613458 * lab.a - 0.0638541728 * lab.b, 3);
    const double s = std::pow(lab.lightness - 0.0894841775 * lab.a - 1.2914855480 * lab.b, 3);
    return {Encoded(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            Encoded(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            Encoded(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

OkLab Between(const OkLab& from, const OkLab& to, double share) {
    return {std::lerp(from.lightness, to.lightness, share), std::lerp(from.a, to.a, share),
            std::lerp(from.b, to.b, share)};
}

/// Equal steps of lightness; hue turns from violet over blue, teal and green to yellow.
constexpr OkLab DensityAnchors[] = {{0.36, 0.047, -0.135},
                                    {0.50, -0.035, -0.115},
                                    {0.64, -0.095, -0.020},
                                    {0.78, -0.125, 0.105},
                                    {0.92, -0.035, 0.175}};

/// `share` from 0, the least density, to 1.
OkLab DensityColor(double share) {
    constexpr int Last = std::size(DensityAnchors) - 1;
    const int anchor = std::min(static_cast<int>(share * Last), Last - 1);
    return Between(DensityAnchors[anchor], DensityAnchors[anchor + 1], share * Last - anchor);
}

Color Darkened(Color color, double lightness) {
    const OkLab lab = ToOkLab(color);
    if (lab.lightness <= lightness) return color;
    const double share = lightness / lab.lightness;
    return ToColor({lightness, lab.a * share, lab.b * share});
}

constexpr Color GateColors[] = {{0x00, 0x72, 0xB2}, {0xD5, 0x5E, 0x00}, {0x00, 0x9E, 0x73},
                                {0xCC, 0x79, 0xA7}, {0xE6, 0x9F, 0x00}, {0x56, 0xB4, 0xE9}};
constexpr double DarkGateLightness = 0.42;
constexpr double TextLightness = 0.5;

}  // namespace

std::uint32_t Cell(Color color) {
    return 0xFF000000U | static_cast<std::uint32_t>(color.red) << 16U |
           static_cast<std::uint32_t>(color.green) << 8U | color.blue;
}

std::vector<std::uint32_t> DensityColors(int levels) {
    std::vector<std::uint32_t> cells(static_cast<std::size_t>(std::max(levels, 0)), 0);
    const double last = std::max(1, levels - 2);
    for (int level = 1; level < levels; ++level)
        cells[static_cast<std::size_t>(level)] = Cell(ToColor(DensityColor((level - 1) / last)));
    return cells;
}

Color GateColor(std::size_t index) {
    const Color color = GateColors[index % std::size(GateColors)];
    const bool dark = index / std::size(GateColors) % 2 == 1;
    return dark ? Darkened(color, DarkGateLightness) : color;
}

Color TextColor(Color color) {
    return Darkened(color, TextLightness);
}

}  // namespace Host
