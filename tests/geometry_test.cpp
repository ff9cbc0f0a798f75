// Points, rectangles and polygons as values.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include <orvane/OVPloygon.h>

namespace Orvane {
namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

TEST(Geometry, PointsAreEqualExactlyOrWithinAnInclusiveTolerance) {
    const OVPoint point(1.0F, -2.0F);
    OVPoint copy;
    EXPECT_TRUE(copy.IsEqual(0.0F, -0.0F));
    copy = point;
    EXPECT_TRUE(copy.IsEqual(point));
    EXPECT_TRUE(point.IsEqual(OVPoint(1.5F, -2.0F), 0.5F));
    EXPECT_FALSE(point.IsEqual(1.5F, -2.0F, std::nextafter(0.5F, 0.0F)));
    EXPECT_FALSE(point.IsEqual(1.0F, -2.75F, 0.5F));
    copy.SetValue(NaN, 0.0F);
    EXPECT_FALSE(copy.IsEqual(copy));
    EXPECT_FALSE(copy.IsEqual(copy, std::numeric_limits<float>::infinity()));
}

TEST(Geometry, RectanglesAreClosedAndTakeCorners) {
    const OVRect rect(0.0F, 1.0F, 10.0F, 5.0F);
    EXPECT_EQ(rect.MinY, 1.0F);
    EXPECT_EQ(rect.MaxX, 10.0F);
    for (const OVPoint& corner : {OVPoint(0, 1), OVPoint(10, 1), OVPoint(0, 5), OVPoint(10, 5)})
        EXPECT_TRUE(rect.InRect(corner)) << corner.x << ' ' << corner.y;
    for (const OVPoint& outside : {OVPoint(10.0001F, 5), OVPoint(5, 0.9999F), OVPoint(-1, 3),
                                   OVPoint(5, 5.001F), OVPoint(NaN, 3), OVPoint(5, NaN)})
        EXPECT_FALSE(rect.InRect(outside)) << outside.x << ' ' << outside.y;
}

TEST(Geometry, APolygonCanBeBuiltAnewAndWithNothing) {
    OVPoint vertices[] = {{3, 1}, {-2, 4}, {5, -6}};
    OVPloygon polygon;
    EXPECT_FALSE(polygon.IsInPloygon(0, 0));
    for (const int count : {3, 0, -1, 1, 3}) {
        polygon.ConstructEigenValue(vertices, count);
        const OVRect rect = polygon.GetMinRect();
        EXPECT_EQ(rect.MinX, count == 3 ? -2 : 3);
        EXPECT_EQ(rect.MaxX, count == 3 ? 5 : 3);
        EXPECT_EQ(rect.MinY, count == 3 ? -6 : 1);
        EXPECT_EQ(rect.MaxY, count == 3 ? 4 : 1);
        EXPECT_EQ(polygon.IsInPloygon(2, 0), count == 3);
    }
}

TEST(Geometry, ACopiedPolygonSharesItsTable) {
    OVPoint vertices[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    auto* original = new OVPloygon;
    original->ConstructEigenValue(vertices, 4);
    // Never destroyed: only one of the two may be.
    alignas(OVPloygon) unsigned char storage[sizeof(OVPloygon)];
    auto* copy = new (storage) OVPloygon(*original);
    EXPECT_TRUE(copy->IsInPloygon(0.5F, 0.5F));
    EXPECT_EQ(copy->GetMinRect().MaxX, 1.0F);
    delete original;
}

}  // namespace
}  // namespace Orvane
