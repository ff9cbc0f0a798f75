// Density plots: how many events of the population fall on each pixel.
#pragma once

#include <vector>

#include <orvane/OVBitmapData.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>

namespace Orvane {

/// Both steps work on one raster of the caller: RenderPlot leaves counts in its cells, SetBitmapColor turns
/// them into colors.
///
/// The population is `PopulationFilters` of the plot data, else the `Filters` of its `Population`, else every
/// event; a filter counts with its stored `TrueCount`. Gates play no part. The transformers must keep
/// coordinates in the raster, `Width` columns and `Height` rows of it, and the raster has at least two rows.
/// Nothing of this is validated. OutOfMemoryException* passes when the pool has no room for the coordinates
/// of one section; nothing else is thrown.
class ORVANE_API IOVPlotViewDensity {
public:
    virtual ~IOVPlotViewDensity() = default;

    /// Overwrites the raster with the number of events of the population at each pixel. Events on the border,
    /// where clamping transformers put all that is off scale, are dropped: border cells are 0.
    virtual void RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                            IOVCoordinateTransformerY* y) = 0;

    /// Colors every cell by its share of the largest count in steps of `level`: a count c becomes
    /// colors[ceil(c * levels / max)] with levels = ceil(1 / level), so `colors` has levels + 1 entries, the
    /// first one for empty cells. All cells of an empty raster get colors[0]. `count` is not looked at.
    virtual void SetBitmapColor(OVBitmapData& bitmap, float level, int* colors, int count) = 0;
};

/// The operations of IOVPlotViewDensity. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVPlotViewDensity : public IOVPlotViewDensity {
public:
    void RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                    IOVCoordinateTransformerY* y) override;
    void SetBitmapColor(OVBitmapData& bitmap, float level, int* colors, int count) override;

private:
    void RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                        IOVCoordinateTransformerY* y) const;
    void RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                         IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population) const;
};

}  // namespace Orvane
