// The dot plot of several samples in one raster.
#pragma once

#include <vector>

#include <orvane/OVBitmapData.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>

namespace Orvane {

/// Marks, for every sample, the pixels on which an event of its population falls: bit `SampleIndex` mod 32 of
/// the cell. Gates play no part. The population of a sample is chosen as in a plot of one (IOVPlotViewDot).
///
/// After each sample, the border is folded inward (OVBitmapData::MoveEdgeDataFlag). Deliberate: a border cell
/// that holds bits of other samples too stays where it is, so that overlaps on the border are kept.
///
/// The transformers must keep every event in the raster. Throws OutOfMemoryException* when the pool is
/// exhausted.
class ORVANE_API IOVPlotViewDot_MultiSample {
public:
    virtual ~IOVPlotViewDot_MultiSample() = default;

    /// Clears the raster and draws the samples into it, in order, without those whose `XSections` is null.
    virtual void RenderPlot(std::vector<OVPlotData*>& samples, OVBitmapData& bitmap,
                            IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) = 0;

    /// Replaces every cell c by colors[c]. The table must hold a color for every combination of samples;
    /// `count` is not used.
    virtual void SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) = 0;
};

/// The stateless implementation.
class ORVANE_API OVPlotViewDot_MultiSample : public IOVPlotViewDot_MultiSample {
public:
    void RenderPlot(std::vector<OVPlotData*>& samples, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                    IOVCoordinateTransformerY* y) override;
    void SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) override;

private:
    void RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, int flag, IOVCoordinateTransformerX* x,
                        IOVCoordinateTransformerY* y) const;
    void RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, int flag, IOVCoordinateTransformerX* x,
                         IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population) const;
};

}  // namespace Orvane
