// The colors of pictures: tables that keep their order for every kind of color vision, on a white ground.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Host {

struct Color {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
};

/// 0xFFRRGGBB, a cell of a raster.
std::uint32_t Cell(Color color);

/// `levels` cells of rising density: 0 (nothing drawn), then dark violet through green to yellow, evenly
/// spaced in perceived lightness. Lightness alone tells the order.
std::vector<std::uint32_t> DensityColors(int levels);

/// A color for the gate or file at `index`, told apart from the others by every kind of color vision: the
/// colors of Okabe and Ito (Color Universal Design, 2008) that show on white, then darker ones of the same
/// hues, then the same again.
Color GateColor(std::size_t index);

/// `color`, darkened where it would be too light to read as text on white.
Color TextColor(Color color);

}  // namespace Host
