// The dot plot of one sample, its gates told apart.
#pragma once

#include <vector>

#include <orvane/OVBitmapData.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>

namespace Orvane {

/// Marks every pixel on which an event of the displayed population falls.
///
/// A cell of the raster is then 0 where there is no event. With a single gate, whatever its filters, every
/// other cell is 1. With several gates it is the largest of its events' gate numbers: 1 + the position in
/// `Gates` of the last gate that contains the event, 0 for an event in none. A gate with null `Filters`
/// contains every event. With a population, the population itself takes the place of the first gate.
///
/// The population is `PopulationFilters`, else the `Filters` of `Population`, else every event. Events
/// clamped onto the outermost rows and columns are shown one pixel inside
/// (OVBitmapData::MoveEdgeDataGreater).
///
/// The transformers must keep every event in the raster, and `Gates` holds at least one gate; neither is
/// checked. Throws OutOfMemoryException* when the pool is exhausted.
class ORVANE_API IOVPlotViewDot {
public:
    virtual ~IOVPlotViewDot() = default;

    /// Clears the raster and draws the sample into it.
    virtual void RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                            IOVCoordinateTransformerY* y) = 0;

    /// Replaces every cell c by colors[c]. The table must hold a color for every gate and for 0; `count` is
    /// not used.
    virtual void SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) = 0;
};

/// The stateless implementation.
class ORVANE_API OVPlotViewDot : public IOVPlotViewDot {
public:
    void RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                    IOVCoordinateTransformerY* y) override;
    void SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) override;

private:
    void RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                        IOVCoordinateTransformerY* y) const;
    void RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                         IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population);
};

}  // namespace Orvane
