#include <orvane/OVConvertLinearAndLog.h>
#include <orvane/OVCoordinateTransform.h>

#include "transform/axis_scales.h"
#include "transform/section_mapping.h"

namespace Orvane {
namespace {

using Form = PixelMapping::Form;

/// The axis of one call. `Start` and `End` are its data bounds on its own scale: as they are, or their asinh.
struct Axis {
    static Axis Linear(float sMin, float sMax, double wMin, double wMax, CoordinateType t) {
        return {sMin, sMax, wMin, wMax, t, Form::Linear, 0.0};
    }
    static Axis Log(float sMin, float sMax, double wMin, double wMax, CoordinateType t, double alpha) {
        const double factor = 1.0 / alpha;
        const OVConvertLinearAndLog convert;
        return {sMin,
                sMax,
                convert.LinearConvertToAsinh(wMin, factor),
                convert.LinearConvertToAsinh(wMax, factor),
                t,
                Form::Asinh,
                factor};
    }

    double Range() const { return End - Start; }
    bool IsEmpty() const { return Range() < SmallestRange; }
    double Span() const { return ScreenMax - ScreenMin; }
    bool HasDirection() const { return Direction == Horizontal || Direction == Vertical; }

    /// The distance of a screen coordinate from the start of the axis.
    double Offset(float s) const { return Direction == Vertical ? ScreenMax - s : s - ScreenMin; }

    /// Turns the distance from the start of the axis into a screen coordinate.
    float Placed(float offset) const {
        return Direction == Vertical ? ScreenMax - offset : offset + ScreenMin;
    }

    float Clamped(float s) const {
        const float last = ScreenMax - 1;
        if (s > last) return last;
        return ScreenMin > s ? ScreenMin : s;
    }

    float ScreenMin;
    float ScreenMax;
    double Start;
    double End;
    CoordinateType Direction;
    Form Kind;
    double Factor;
};

PixelMapping HorizontalMapping(const Axis& axis, double scale) {
    PixelMapping mapping;
    mapping.Scale = scale;
    mapping.Constant = axis.ScreenMin - scale * axis.Start;
    mapping.LowPixel = PixelAt(axis.ScreenMin);
    mapping.HighPixel = PixelAt(axis.ScreenMax - 1.0F);
    return mapping;
}

// Deliberately counted from the last row, in whole pixels: the transformers count from one past it.
PixelMapping VerticalMapping(const Axis& axis, double scale) {
    PixelMapping mapping;
    mapping.Origin = axis.Start;
    mapping.Scale = scale;
    mapping.Mirrored = true;
    mapping.MirrorBase = axis.ScreenMax - 1.0F;
    mapping.LowPixel = PixelAt(axis.ScreenMax - 1.0F);
    mapping.HighPixel = PixelAt(axis.ScreenMin);
    return mapping;
}

/// The mapping without bounds. An empty range maps everything to 0, whatever the direction.
PixelMapping MappingOf(const Axis& axis) {
    if (axis.IsEmpty()) return {};
    const double scale = axis.Span() / axis.Range();
    PixelMapping mapping =
        axis.Direction == Vertical ? VerticalMapping(axis, scale) : HorizontalMapping(axis, scale);
    mapping.Kind = axis.Kind;
    mapping.Factor = axis.Factor;
    return mapping;
}

void MapAxisSection(const Axis& axis, double wMin, double wMax, bool inScreen, SignalSection* signal,
                    ModelSection* out) {
    out->Count = signal->Count;
    if (!axis.HasDirection() && !axis.IsEmpty()) return;
    PixelMapping mapping = MappingOf(axis);
    if (inScreen) {
        mapping.Low = wMin;
        mapping.High = wMax;
    }
    MapSection(mapping, signal, out);
}

}  // namespace

void OVCoordinateTransform::CalculateLinearCoordinateScreen(double w, float sMin, float sMax, double wMin,
                                                            double wMax, CoordinateType t, bool inScreen,
                                                            float& out) const {
    const Axis axis = Axis::Linear(sMin, sMax, wMin, wMax, t);
    if (axis.IsEmpty()) {
        out = 0.0F;
        return;
    }
    const auto offset = static_cast<float>(axis.Span() * (w - wMin) / axis.Range());
    if (axis.HasDirection()) out = axis.Placed(offset);
    if (inScreen) out = axis.Clamped(out);
}

void OVCoordinateTransform::CalculateLinearCoordinateWorld(float s, float sMin, float sMax, double wMin,
                                                           double wMax, CoordinateType t, double& out) const {
    const Axis axis = Axis::Linear(sMin, sMax, wMin, wMax, t);
    if (axis.HasDirection()) out = axis.Offset(s) * axis.Range() / axis.Span() + wMin;
}

void OVCoordinateTransform::CalculateLogCoordinateScreen(double w, float sMin, float sMax, double wMin,
                                                         double wMax, CoordinateType t, bool inScreen,
                                                         double alpha, float& out) const {
    const Axis axis = Axis::Log(sMin, sMax, wMin, wMax, t, alpha);
    if (axis.IsEmpty()) {
        out = 0.0F;
        return;
    }
    const double asinh = OVConvertLinearAndLog().LinearConvertToAsinh(w, axis.Factor);
    const auto offset = static_cast<float>((asinh - axis.Start) * axis.Span() / axis.Range());
    out = axis.HasDirection() ? axis.Placed(offset) : offset;
    if (inScreen) out = axis.Clamped(out);
}

void OVCoordinateTransform::CalculateLogCoordinateWorld(float s, float sMin, float sMax, double wMin,
                                                        double wMax, CoordinateType t, double alpha,
                                                        double& out) const {
    const Axis axis = Axis::Log(sMin, sMax, wMin, wMax, t, alpha);
    const double asinh = axis.HasDirection() ? axis.Offset(s) * axis.Range() / axis.Span() + axis.Start : 0.0;
    out = OVConvertLinearAndLog().AsinhConvertToLinear(asinh, axis.Factor);
}

void OVCoordinateTransform::CalculateLinearCoordinateScreen(SignalSection* signal, float sMin, float sMax,
                                                            double wMin, double wMax, CoordinateType t,
                                                            bool inScreen, ModelSection* out) const {
    MapAxisSection(Axis::Linear(sMin, sMax, wMin, wMax, t), wMin, wMax, inScreen, signal, out);
}

void OVCoordinateTransform::CalculateLogCoordinateScreen(SignalSection* signal, float sMin, float sMax,
                                                         double wMin, double wMax, CoordinateType t,
                                                         bool inScreen, double alpha,
                                                         ModelSection* out) const {
    MapAxisSection(Axis::Log(sMin, sMax, wMin, wMax, t, alpha), wMin, wMax, inScreen, signal, out);
}

void OVCoordinateTransform::CalculateLinearCoordinateScreen(std::vector<SignalSection*>& signals, float sMin,
                                                            float sMax, double wMin, double wMax,
                                                            CoordinateType t, bool inScreen,
                                                            std::vector<ModelSection*>& out) const {
    for (std::size_t k = 0; k < signals.size(); ++k) {
        CalculateLinearCoordinateScreen(signals[k], sMin, sMax, wMin, wMax, t, inScreen, out[k]);
    }
}

void OVCoordinateTransform::CalculateLogCoordinateScreen(std::vector<SignalSection*>& signals, float sMin,
                                                         float sMax, double wMin, double wMax,
                                                         CoordinateType t, bool inScreen, double alpha,
                                                         std::vector<ModelSection*>& out) const {
    for (std::size_t k = 0; k < signals.size(); ++k) {
        CalculateLogCoordinateScreen(signals[k], sMin, sMax, wMin, wMax, t, inScreen, alpha, out[k]);
    }
}

}  // namespace Orvane
