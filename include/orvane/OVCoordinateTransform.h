// The coordinate transform without state: every call brings its axis along.
#pragma once

#include <vector>

#include <orvane/CoordinateType.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Maps data values (w) to screen coordinates (s) of an axis from `sMin` to `sMax` that shows `wMin` to
/// `wMax`, and back: single values for ticks, gate vertices and the mouse, or whole columns. `Log` forms have
/// an asinh axis of width `alpha`, in data units.
///
/// Deliberately not the arithmetic of the transformers: the scale uses the exact span `sMax - sMin`, columns
/// add no half pixel before truncation, vertical columns count whole pixels from `sMax - 1`, clamps compare
/// with `wMin` and `wMax`, and a range below 1e-5 (on the asinh scale for `Log` forms), reversed ones
/// included, gives 0. With a `t` that is no CoordinateType, columns write nothing but the count.
///
/// Columns store the low 16 bits of a coordinate truncated toward zero to 64 bits; NaN and what exceeds 64
/// bits become 0. Model sections get the count of their signal section and must have room for it.
/// Arguments are not checked, and nothing is thrown.
class ORVANE_API OVCoordinateTransform {
public:
    /// `inScreen` clamps `out` to `sMin` and `sMax - 1`, unless the range is zero. A `t` that is no
    /// CoordinateType leaves `out` as it was before the clamp.
    void CalculateLinearCoordinateScreen(double w, float sMin, float sMax, double wMin, double wMax,
                                         CoordinateType t, bool inScreen, float& out) const;

    /// Not guarded against `sMax = sMin`. A `t` that is no CoordinateType leaves `out` as it was.
    void CalculateLinearCoordinateWorld(float s, float sMin, float sMax, double wMin, double wMax,
                                        CoordinateType t, double& out) const;

    /// As CalculateLinearCoordinateScreen, except that a `t` that is no CoordinateType gives the distance
    /// from the start of the axis, before the clamp.
    void CalculateLogCoordinateScreen(double w, float sMin, float sMax, double wMin, double wMax,
                                      CoordinateType t, bool inScreen, double alpha, float& out) const;

    /// Not guarded against `sMax = sMin`. A `t` that is no CoordinateType gives 0.
    void CalculateLogCoordinateWorld(float s, float sMin, float sMax, double wMin, double wMax,
                                     CoordinateType t, double alpha, double& out) const;

    /// One column. With `inScreen`, values up to `wMin` get the pixel of `sMin`, values from `wMax` on that
    /// of `sMax - 1`, or the other way round on a vertical axis; NaN follows the formula.
    void CalculateLinearCoordinateScreen(SignalSection* signal, float sMin, float sMax, double wMin,
                                         double wMax, CoordinateType t, bool inScreen,
                                         ModelSection* out) const;
    void CalculateLogCoordinateScreen(SignalSection* signal, float sMin, float sMax, double wMin, double wMax,
                                      CoordinateType t, bool inScreen, double alpha, ModelSection* out) const;

    /// Every signal section into the model section at its position; there must be one.
    void CalculateLinearCoordinateScreen(std::vector<SignalSection*>& signals, float sMin, float sMax,
                                         double wMin, double wMax, CoordinateType t, bool inScreen,
                                         std::vector<ModelSection*>& out) const;
    void CalculateLogCoordinateScreen(std::vector<SignalSection*>& signals, float sMin, float sMax,
                                      double wMin, double wMax, CoordinateType t, bool inScreen, double alpha,
                                      std::vector<ModelSection*>& out) const;
};

}  // namespace Orvane
