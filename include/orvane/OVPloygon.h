// A closed polygon, prepared once so that many points can be tested against it.
#pragma once

#include <orvane/OVPoint.h>
#include <orvane/OVRect.h>
#include <orvane/Platform.h>

namespace Orvane {

/// One edge, as the line x = `Slope` * y + `Intercept` between two heights.
struct OVPloygonEigenValue {
    double Slope;      ///< dx / dy; of a horizontal edge the largest float with the sign of dx, or 0
    double Intercept;  ///< x where the line meets y = 0
    float MinY;        ///< height of the lower vertex
    float MaxY;        ///< height of the upper vertex
    float X;           ///< the edge's end vertex
    float Y;           ///< height of the end vertex
};

/// A polygon that is built from its vertices and then asked about points. It keeps no reference to the
/// vertices.
class ORVANE_API IOVPloygon {
public:
    virtual ~IOVPloygon() = default;

    /// Prepares the polygon of `count` vertices, in place of any earlier one; the last vertex is joined to
    /// the first. `vertices` must hold at least one vertex, which is read whatever `count` says. With a count
    /// below 1 every point is outside; an edge to a vertex that is NaN is never crossed. Throws
    /// std::bad_alloc.
    virtual void ConstructEigenValue(OVPoint* vertices, int count) = 0;

    /// The rectangle around the vertices. NaN is passed over, except that of the first vertex, which stays.
    virtual OVRect GetMinRect() = 0;

    /// Whether the edges to the right of the point are odd in number. An edge counts for
    /// `MinY <= y < MaxY` where its line lies strictly to the right of x, in double. So points on a left or
    /// a bottom edge are inside, points on a right or a top edge outside; NaN is outside. May be called from
    /// several threads at once.
    virtual bool IsInPloygon(float x, float y) = 0;
};

/// Deliberate: a copy shares the table of edges, and the destructor of each would delete it. Of a polygon
/// and its copies only one may be destroyed, or built anew.
class ORVANE_API OVPloygon : public IOVPloygon {
public:
    /// A polygon without edges, or one that shares those of `other`.
    OVPloygon();
    OVPloygon(const OVPloygon& other);
    OVPloygon& operator=(const OVPloygon& other);
    ~OVPloygon() override;

    void ConstructEigenValue(OVPoint* vertices, int count) override;
    OVRect GetMinRect() override;
    bool IsInPloygon(float x, float y) override;

private:
    void CalcMinRect(OVPoint* vertices, int count);

    int count_;
    OVPloygonEigenValue* edges_;  ///< highest `MaxY` first
    OVRect minRect_;
};

}  // namespace Orvane
