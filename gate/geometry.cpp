// Points and rectangles.
#include <cmath>

#include <orvane/OVPoint.h>
#include <orvane/OVRect.h>

namespace Orvane {

OVPoint::OVPoint() : OVPoint(0.0F, 0.0F) {}

OVPoint::OVPoint(float newX, float newY) : x(newX), y(newY) {}

OVPoint::OVPoint(const OVPoint& other) = default;

void OVPoint::operator=(const OVPoint& other) {
    SetValue(other);
}

void OVPoint::SetValue(float newX, float newY) {
    x = newX;
    y = newY;
}

void OVPoint::SetValue(const OVPoint& other) {
    SetValue(other.x, other.y);
}

bool OVPoint::IsEqual(float otherX, float otherY) const {
    return x == otherX && y == otherY;
}

bool OVPoint::IsEqual(const OVPoint& other) const {
    return IsEqual(other.x, other.y);
}

bool OVPoint::IsEqual(float otherX, float otherY, float tolerance) const {
    return tolerance >= std::fabs(x - otherX) && tolerance >= std::fabs(y - otherY);
}

bool OVPoint::IsEqual(const OVPoint& other, float tolerance) const {
    return IsEqual(other.x, other.y, tolerance);
}

OVRect::OVRect() : OVRect(0.0F, 0.0F, 0.0F, 0.0F) {}

OVRect::OVRect(float minX, float minY, float maxX, float maxY)
    : MinX(minX), MaxX(maxX), MinY(minY), MaxY(maxY) {}

bool OVRect::InRect(float x, float y) const {
    return MinX <= x && x <= MaxX && MinY <= y && y <= MaxY;
}

bool OVRect::InRect(const OVPoint& point) const {
    return InRect(point.x, point.y);
}

}  // namespace Orvane
