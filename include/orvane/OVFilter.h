// Gates: which events of a sample lie in a region drawn on one or two of its signals.
//
// A gate's result is a vector of filter sections, one bit per event, cut into sections as the signals are.
// The vectors of the X and of the Y signal run parallel, and section i of Y holds at least as many events
// as section i of X.
#pragma once

#include <vector>

#include <orvane/OVFilterSection.h>
#include <orvane/OVPoint.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Every operation first makes its filter vectors parallel to the (X) signal, all bits cleared, as
/// OVFilterSection::SynchronousVectorSection does, then sets the bits of the events in each region, and
/// recounts `TrueCount`. The caller owns vectors and records. Signals and points are only read.
///
/// Comparisons are made in float, except where said. An event that is NaN is in no region, except where
/// said. Without signals the filter vectors are emptied. Throws OutOfMemoryException* when the pool is
/// exhausted, with no bit set.
///
/// The `_Fast` forms fill the vectors of all regions in one pass. One vector may stand for several
/// regions: it gets the events of all of them.
class ORVANE_API IOVFilter {
public:
    virtual ~IOVFilter() = default;

    /// low <= x <= high. Deliberately leaves `TrueCount` as it was: callers of this gate recount.
    virtual void Filter_LineSegment(std::vector<SignalSection*>& signals,
                                    std::vector<FilterSection*>& filters, float low, float high) = 0;

    /// Side 0: x <= cut; any other: x > cut.
    virtual void Filter_Vertical(std::vector<SignalSection*>& signals, std::vector<FilterSection*>& filters,
                                 float cut, int side) = 0;

    /// Left: x <= cut; right: all others. Deliberately unlike Filter_Vertical, NaN goes to the right.
    virtual void Filter_Vertical_Fast(std::vector<SignalSection*>& signals, std::vector<FilterSection*>& left,
                                      std::vector<FilterSection*>& right, float cut) = 0;

    /// xMin <= x <= xMax and yMin <= y <= yMax.
    virtual void Filter_Rectangle(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                                  std::vector<FilterSection*>& filters, float xMin, float xMax, float yMin,
                                  float yMax) = 0;

    /// Quadrants are numbered counter-clockwise from the upper right. Events on a cut belong to the left or
    /// the lower side: 0 is x > xCut and y > yCut, 1 x <= xCut and y > yCut, 2 x <= xCut and y <= yCut, 3
    /// x > xCut and y <= yCut. Other numbers have no events.
    virtual void Filter_Quadrant(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                                 std::vector<FilterSection*>& filters, float xCut, float yCut,
                                 int quadrant) = 0;
    virtual void Filter_Quadrant_Fast(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                                      std::vector<FilterSection*>& filters0,
                                      std::vector<FilterSection*>& filters1,
                                      std::vector<FilterSection*>& filters2,
                                      std::vector<FilterSection*>& filters3, float xCut, float yCut) = 0;

    /// The quadrants of a centre between four arms that are straight on the screen, so that they bend with
    /// the axes. The lines through the centre choose which two arms an event is compared with; across an
    /// arm it belongs to the region there. Regions are numbered as quadrants, others have no events.
    ///
    /// `points` holds 15 points; with fewer there is no region and nothing is read. Point 0 is the centre,
    /// points 1 to 4 are free for the caller. The floats of points 5 to 10 are the log flag, screenMin,
    /// screenMax, worldMin, worldMax and alpha of the X axis, then of the Y axis, as the factories of
    /// OVCoordinateTransformerX and Y take them. Points 11 to 14 are the arms left, right, upper and lower,
    /// as slope and intercept in screen coordinates: those of the first two give y from x, those of the last
    /// two x from y.
    ///
    /// With ArmX and ArmY for the arm's x and y in data values, taken through the screen in float and
    /// compared in double (12 and 13 for the arms of points 12 and 13, and so on):
    ///
    ///     x > cx,  y > cy:   1 unless x > ArmX13(y);   else 0 if y > ArmY12(x), else 3
    ///     x <= cx, y > cy:   0 unless ArmX13(y) >= x;  else 1 if y > ArmY11(x), else 2
    ///     x <= cx, y <= cy:  3 unless ArmX14(y) >= x;  else 2 if ArmY11(x) >= y, else 1
    ///     x > cx,  y <= cy:  2 unless x > ArmX14(y);   else 3 if ArmY12(x) >= y, else 0
    virtual void Filter_Hinged(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                               std::vector<FilterSection*>& filters, OVPoint* points, int count,
                               int region) = 0;
    virtual void Filter_Hinged_Fast(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                                    std::vector<FilterSection*>& filters0,
                                    std::vector<FilterSection*>& filters1,
                                    std::vector<FilterSection*>& filters2,
                                    std::vector<FilterSection*>& filters3, OVPoint* points, int count) = 0;

    /// Inside the polygon's rectangle (closed) and, by the rule of OVPloygon::IsInPloygon, inside the
    /// polygon: left and bottom edges belong to it, right and top edges do not. `vertices` holds `count`
    /// vertices, at least one; it is not looked at without signals. Also throws std::bad_alloc.
    virtual void Filter_Ploygon(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                                std::vector<FilterSection*>& filters, OVPoint* vertices, int count) = 0;
};

/// Holds nothing between calls.
class ORVANE_API OVFilter : public IOVFilter {
public:
    void Filter_LineSegment(std::vector<SignalSection*>& signals, std::vector<FilterSection*>& filters,
                            float low, float high) override;
    void Filter_Vertical(std::vector<SignalSection*>& signals, std::vector<FilterSection*>& filters,
                         float cut, int side) override;
    void Filter_Vertical_Fast(std::vector<SignalSection*>& signals, std::vector<FilterSection*>& left,
                              std::vector<FilterSection*>& right, float cut) override;
    void Filter_Rectangle(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                          std::vector<FilterSection*>& filters, float xMin, float xMax, float yMin,
                          float yMax) override;
    void Filter_Quadrant(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                         std::vector<FilterSection*>& filters, float xCut, float yCut, int quadrant) override;
    void Filter_Quadrant_Fast(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                              std::vector<FilterSection*>& filters0, std::vector<FilterSection*>& filters1,
                              std::vector<FilterSection*>& filters2, std::vector<FilterSection*>& filters3,
                              float xCut, float yCut) override;
    void Filter_Hinged(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                       std::vector<FilterSection*>& filters, OVPoint* points, int count, int region) override;
    void Filter_Hinged_Fast(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                            std::vector<FilterSection*>& filters0, std::vector<FilterSection*>& filters1,
                            std::vector<FilterSection*>& filters2, std::vector<FilterSection*>& filters3,
                            OVPoint* points, int count) override;
    void Filter_Ploygon(std::vector<SignalSection*>& xs, std::vector<SignalSection*>& ys,
                        std::vector<FilterSection*>& filters, OVPoint* vertices, int count) override;

private:
    OVFilterSection filterSection_;
};

}  // namespace Orvane
