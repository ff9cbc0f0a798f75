// Contour plots: counts to trace the lines from, and the events outside all lines as single dots.
#pragma once

#include <vector>

#include <orvane/OVBitmapData.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>

namespace Orvane {

/// The lines themselves are the caller's: the view supplies counts, and dots for sparse pixels.
///
/// Population and requirements are those of IOVPlotViewDensity. Rasters that are passed together have the
/// same `Height`, `Width` and `Stride`. An event's global number is its position when all sections of
/// `XSections` are laid end to end; events outside the population have numbers too.
class ORVANE_API IOVPlotViewContour {
public:
    virtual ~IOVPlotViewContour() = default;

    /// Overwrites the raster with the number of events of the population at each pixel, 0 on the border.
    virtual void RenderPlot(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                            IOVCoordinateTransformerY* y) = 0;

    /// The same, and overwrites `firstEvent` with the smallest global number of an event of the population at
    /// each pixel, 2147483647 where there is none. Deliberate: its border cells keep their events. Here the
    /// bits of the filters decide, not their stored counts.
    virtual void RenderPlot(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                            IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) = 0;

    /// Turns first events into dots, one for each pixel that is not empty and lies outside the lowest
    /// contour, whose count is below trunc(max * level) with the largest count max: the cell becomes the
    /// position of its first event, `(y << 16) | (x & 0xFFFF)`, both truncated from the transformers'
    /// GetScreenValue. The `Width` columns of all other cells become 2147483647. A value that its sections do
    /// not have counts as 0.0. Events on the border, where counts are 0, become dots under every positive
    /// threshold.
    virtual void RenderZeroLevelPos(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                                    float level, IOVCoordinateTransformerX* x,
                                    IOVCoordinateTransformerY* y) = 0;
};

/// The operations of IOVPlotViewContour. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVPlotViewContour : public IOVPlotViewContour {
public:
    void RenderPlot(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                    IOVCoordinateTransformerY* y) override;
    void RenderPlot(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                    IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) override;
    void RenderZeroLevelPos(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent, float level,
                            IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) override;

private:
    void RenderPlot_All(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                        IOVCoordinateTransformerY* y) const;
    void RenderPlot_Part(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                         IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population) const;
    void RenderPlot_All(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                        IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) const;
    void RenderPlot_Part(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                         IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y,
                         std::vector<FilterSection*>& population) const;
};

}  // namespace Orvane
