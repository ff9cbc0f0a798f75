// Contour plots: the dots of the events that lie outside the lowest contour.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include <orvane/OVPlotViewContour.h>

#include "foundation/convert.h"

namespace Orvane {
namespace {

constexpr int NoDot = std::numeric_limits<int>::max();

/// The values of one parameter by global event number.
class NumberedValues {
public:
    explicit NumberedValues(const std::vector<SignalSection*>& sections) : sections_(sections) {
        ends_.reserve(sections.size());
        std::int64_t end = 0;
        for (const SignalSection* section : sections)
            ends_.push_back(end += section->Count);
    }

    /// The value of event `number`; 0.0 when there is no such event.
    double At(int number) const {
        const auto end = std::upper_bound(ends_.begin(), ends_.end(), number);
        if (number < 0 || end == ends_.end()) return 0.0;
        const SignalSection& section = *sections_[static_cast<std::size_t>(end - ends_.begin())];
        return section.Values[number - (*end - section.Count)];
    }

private:
    const std::vector<SignalSection*>& sections_;
    std::vector<std::int64_t> ends_;  ///< the number behind the last event of each section
};

/// The pixel of a value that the transformer does not round.
template <class Transformer>
unsigned PositionOf(Transformer& transformer, double value) {
    float screen = 0.0F;
    transformer.GetScreenValue(value, screen);
    return static_cast<unsigned>(TruncateToInt64(static_cast<double>(screen)));
}

}  // namespace

void OVPlotViewContour::RenderZeroLevelPos(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                                           float level, IOVCoordinateTransformerX* x,
                                           IOVCoordinateTransformerY* y) {
    const float lowest = static_cast<float>(counts.GetDataMax()) * level;
    const auto threshold = static_cast<int>(TruncateToInt64(static_cast<double>(lowest)));
    const NumberedValues xs(*data.XSections);
    const NumberedValues ys(*data.YSections);
    const auto dotOf = [&](int event) {
        return static_cast<int>(PositionOf(*y, ys.At(event)) << 16 |
                                (PositionOf(*x, xs.At(event)) & 0xFFFFU));
    };
    for (int row = 0; row < firstEvent.Height; ++row) {
        for (int column = 0; column < firstEvent.Width; ++column) {
            const int event = firstEvent.GetData(column, row);
            const bool isDot = event != NoDot && counts.GetData(column, row) < threshold;
            firstEvent.SetData(column, row, isDot ? dotOf(event) : NoDot);
        }
    }
}

}  // namespace Orvane
