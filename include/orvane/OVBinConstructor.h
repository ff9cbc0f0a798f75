// Counting events into bins on the pixel grid of one axis or two.
#pragma once

#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Bins are the caller's: `n` of them in one dimension, rows of `n` in two, where the bin of an event stands
/// in the row of its x coordinate and the column of its y coordinate, at `x * n + y`. Vectors of sections and
/// filters are parallel.
///
/// Bins and `total` are added to, not cleared. Then the border, where clamping transformers put all that is
/// off scale, is cleared: the first and the last bin, or row and column; its events stay in `total`. `maxBin`
/// becomes the largest bin, the smallest int when `n` is 0.
///
/// The forms with filters count the events whose bit is set; a filter counts with its stored `TrueCount`.
/// Coordinates must lie below `n`, which is not validated. OutOfMemoryException* passes when the pool has no
/// room for the coordinates of one section; nothing else is thrown.
class ORVANE_API IOVBinConstructor {
public:
    virtual ~IOVBinConstructor() = default;

    /// Counts all events, or those of `filters`, along one axis.
    virtual void ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                                 IOVCoordinateTransformerX* x, int& maxBin, int& total) = 0;
    virtual void ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                                 std::vector<FilterSection*>& filters, IOVCoordinateTransformerX* x,
                                 int& maxBin, int& total) = 0;

    /// Counts all events, or those of `filters`, over two axes.
    virtual void ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                                 std::vector<SignalSection*>& ySections, IOVCoordinateTransformerX* x,
                                 IOVCoordinateTransformerY* y, int& maxBin, int& total) = 0;
    virtual void ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                                 std::vector<SignalSection*>& ySections, std::vector<FilterSection*>& filters,
                                 IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y, int& maxBin,
                                 int& total) = 0;
};

/// The operations of IOVBinConstructor. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVBinConstructor : public IOVBinConstructor {
public:
    void ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                         IOVCoordinateTransformerX* x, int& maxBin, int& total) override;
    void ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                         std::vector<FilterSection*>& filters, IOVCoordinateTransformerX* x, int& maxBin,
                         int& total) override;
    void ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                         std::vector<SignalSection*>& ySections, IOVCoordinateTransformerX* x,
                         IOVCoordinateTransformerY* y, int& maxBin, int& total) override;
    void ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                         std::vector<SignalSection*>& ySections, std::vector<FilterSection*>& filters,
                         IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y, int& maxBin,
                         int& total) override;
};

}  // namespace Orvane
