#include <orvane/OVCoordinateTransformerY.h>

#include "transform/axis_scales.h"
#include "transform/section_mapping.h"

namespace Orvane {

// The clamp lies one pixel from the end of the axis, whereas the horizontal one lies a whole span from its
// start. Deliberate: gates and plots depend on the pixel of each event.
OVCoordinateTransformerY::OVCoordinateTransformerY(float screenMin, float screenMax, double worldMin,
                                                   double worldMax, double alpha)
    : ScreenMin(screenMin),
      ScreenMax(screenMax),
      ScreenLast(screenMax - 1.0F),
      WorldMin(worldMin),
      WorldMax(worldMax),
      AlphaInverse(1.0 / alpha) {
    const AxisScales scales(screenMax - screenMin, screenMax - (screenMax - 1.0F), worldMin, worldMax, alpha);
    WorldClamp = scales.WorldClamp;
    PixelsPerWorld = scales.PixelsPerWorld;
    PixelsPerAsinh = scales.PixelsPerAsinh;
    AsinhMin = scales.AsinhMin;
    AsinhMax = scales.AsinhMax;
    WorldPerPixel = scales.WorldPerPixel;
    AsinhPerPixel = scales.AsinhPerPixel;
}

void OVCoordinateTransformerY::Choose(ScreenValueRoutine value, SectionRoutine section,
                                      SectionFilterRoutine filtered, SectionFilterRoutine packed) {
    ScreenValueFn = value;
    SectionFn = section;
    SectionFilterFn = filtered;
    SectionFilterInTrueFn = packed;
}

void OVCoordinateTransformerY::GetScreenValue(double world, float& screen) {
    screen = (this->*ScreenValueFn)(world);
}

void OVCoordinateTransformerY::GetScreenSection(SignalSection* signal, FilterSection* filter,
                                                ModelSection* model) {
    (this->*SectionFilterFn)(signal, filter, model);
}

void OVCoordinateTransformerY::GetScreenSection(SignalSection* signal, ModelSection* model) {
    (this->*SectionFn)(signal, model);
}

void OVCoordinateTransformerY::GetScreenSectionInTrue(SignalSection* signal, FilterSection* filter,
                                                      ModelSection* model) {
    (this->*SectionFilterInTrueFn)(signal, filter, model);
}

void OVCoordinateTransformerY::GetWorldValue(float screen, double& world) {
    world = (this->*WorldValueFn)(screen);
}

double OVCoordinateTransformerY::GetWorld_Linear(float screen) {
    return static_cast<double>(ScreenMax - screen) * WorldPerPixel + WorldMin;
}

double OVCoordinateTransformerY::GetWorld_Log(float screen) {
    const double asinh = static_cast<double>(ScreenMax - screen) * AsinhPerPixel + AsinhMin;
    return Convert.AsinhConvertToLinear(asinh, AlphaInverse);
}

float OVCoordinateTransformerY::GetScreen_Linear(double world) {
    return ScreenMax - static_cast<float>((world - WorldMin) * PixelsPerWorld);
}

float OVCoordinateTransformerY::GetScreen_Log(double world) {
    const double asinh = Convert.LinearConvertToAsinh(world, AlphaInverse);
    return ScreenMax - static_cast<float>((asinh - AsinhMin) * PixelsPerAsinh);
}

float OVCoordinateTransformerY::Clamped(float screen) const {
    if (screen > ScreenLast) return ScreenLast;
    return ScreenMin > screen ? ScreenMin : screen;
}

// The class's own formula, even where a further subclass overrides the virtual one.
float OVCoordinateTransformerY::GetScreen_Linear_InScreen(double world) {
    return Clamped(OVCoordinateTransformerY::GetScreen_Linear(world));
}

float OVCoordinateTransformerY::GetScreen_Log_InScreen(double world) {
    return Clamped(OVCoordinateTransformerY::GetScreen_Log(world));
}

float OVCoordinateTransformerY::GetScreenValue_Zero(double /*world*/) {
    return ScreenMin;
}

// c - v * p is (-p) * v + c to the last bit, so a vertical axis is a horizontal one with a negative scale.

PixelMapping OVCoordinateTransformerY::Linear() const {
    PixelMapping mapping;
    mapping.Kind = PixelMapping::Form::Linear;
    mapping.Scale = -PixelsPerWorld;
    mapping.Constant = ScreenMax + WorldMin * PixelsPerWorld;
    return mapping;
}

PixelMapping OVCoordinateTransformerY::Log() const {
    PixelMapping mapping;
    mapping.Kind = PixelMapping::Form::Asinh;
    mapping.Factor = AlphaInverse;
    mapping.Scale = -PixelsPerAsinh;
    mapping.Constant = ScreenMax + AsinhMin * PixelsPerAsinh;
    return mapping;
}

PixelMapping OVCoordinateTransformerY::InScreen(PixelMapping mapping) const {
    mapping.Constant += 0.5;
    mapping.Low = WorldClamp;
    mapping.LowPixel = PixelAt(ScreenLast);
    mapping.High = WorldMax;
    mapping.HighPixel = PixelAt(ScreenMin);
    return mapping;
}

PixelMapping OVCoordinateTransformerY::Zero() const {
    PixelMapping mapping;
    mapping.LowPixel = PixelAt(ScreenMin);
    return mapping;
}

void OVCoordinateTransformerY::GetSection_Linear(SignalSection* signal, ModelSection* model) {
    MapSection(Linear(), signal, model);
}

void OVCoordinateTransformerY::GetSection_Linear_InScreen(SignalSection* signal, ModelSection* model) {
    MapSection(InScreen(Linear()), signal, model);
}

void OVCoordinateTransformerY::GetSection_Log(SignalSection* signal, ModelSection* model) {
    MapSection(Log(), signal, model);
}

void OVCoordinateTransformerY::GetSection_Log_InScreen(SignalSection* signal, ModelSection* model) {
    MapSection(InScreen(Log()), signal, model);
}

void OVCoordinateTransformerY::GetSection_Zero(SignalSection* signal, ModelSection* model) {
    MapSection(Zero(), signal, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Linear(SignalSection* signal, FilterSection* filter,
                                                       ModelSection* model) {
    MapSectionFilter(Linear(), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Linear_InScreen(SignalSection* signal, FilterSection* filter,
                                                                ModelSection* model) {
    MapSectionFilter(InScreen(Linear()), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Log(SignalSection* signal, FilterSection* filter,
                                                    ModelSection* model) {
    MapSectionFilter(Log(), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Log_InScreen(SignalSection* signal, FilterSection* filter,
                                                             ModelSection* model) {
    MapSectionFilter(InScreen(Log()), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Zero(SignalSection* signal, FilterSection* filter,
                                                     ModelSection* model) {
    MapSectionFilter(Zero(), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Linear_InTrue(SignalSection* signal, FilterSection* filter,
                                                              ModelSection* model) {
    MapSectionInTrue(Linear(), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Linear_InScreen_InTrue(SignalSection* signal,
                                                                       FilterSection* filter,
                                                                       ModelSection* model) {
    MapSectionInTrue(InScreen(Linear()), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Log_InTrue(SignalSection* signal, FilterSection* filter,
                                                           ModelSection* model) {
    MapSectionInTrue(Log(), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Log_InScreen_InTrue(SignalSection* signal,
                                                                    FilterSection* filter,
                                                                    ModelSection* model) {
    MapSectionInTrue(InScreen(Log()), signal, filter, model);
}

void OVCoordinateTransformerY::GetSectionFilter_Zero_InTrue(SignalSection* signal, FilterSection* filter,
                                                            ModelSection* model) {
    MapSectionInTrue(Zero(), signal, filter, model);
}

OVCoordinateTransformerY_Linear::OVCoordinateTransformerY_Linear(float screenMin, float screenMax,
                                                                 double worldMin, double worldMax,
                                                                 bool inScreen)
    : OVCoordinateTransformerY(screenMin, screenMax, worldMin, worldMax, 0.0) {
    using Base = OVCoordinateTransformerY;
    WorldValueFn = &Base::GetWorld_Linear;
    if (WorldMax - WorldMin < SmallestRange) {
        Choose(&Base::GetScreenValue_Zero, &Base::GetSection_Zero, &Base::GetSectionFilter_Zero,
               &Base::GetSectionFilter_Zero_InTrue);
    } else if (!inScreen) {
        Choose(&Base::GetScreen_Linear, &Base::GetSection_Linear, &Base::GetSectionFilter_Linear,
               &Base::GetSectionFilter_Linear_InTrue);
    } else {
        Choose(&Base::GetScreen_Linear_InScreen, &Base::GetSection_Linear_InScreen,
               &Base::GetSectionFilter_Linear_InScreen, &Base::GetSectionFilter_Linear_InScreen_InTrue);
    }
}

OVCoordinateTransformerY_Log::OVCoordinateTransformerY_Log(float screenMin, float screenMax, double worldMin,
                                                           double worldMax, double alpha, bool inScreen)
    : OVCoordinateTransformerY(screenMin, screenMax, worldMin, worldMax, alpha) {
    using Base = OVCoordinateTransformerY;
    WorldValueFn = &Base::GetWorld_Log;
    if (AsinhMax - AsinhMin < SmallestRange) {
        Choose(&Base::GetScreenValue_Zero, &Base::GetSection_Zero, &Base::GetSectionFilter_Zero,
               &Base::GetSectionFilter_Zero_InTrue);
    } else if (!inScreen) {
        Choose(&Base::GetScreen_Log, &Base::GetSection_Log, &Base::GetSectionFilter_Log,
               &Base::GetSectionFilter_Log_InTrue);
    } else {
        Choose(&Base::GetScreen_Log_InScreen, &Base::GetSection_Log_InScreen,
               &Base::GetSectionFilter_Log_InScreen, &Base::GetSectionFilter_Log_InScreen_InTrue);
    }
}

IOVCoordinateTransformerY* OVCoordinateTransformerYFactory::CreateTransformer(float screenMin,
                                                                              float screenMax,
                                                                              double worldMin,
                                                                              double worldMax, double alpha,
                                                                              bool isLog, bool inScreen) {
    if (isLog)
        return new OVCoordinateTransformerY_Log(screenMin, screenMax, worldMin, worldMax, alpha, inScreen);
    return new OVCoordinateTransformerY_Linear(screenMin, screenMax, worldMin, worldMax, inScreen);
}

}  // namespace Orvane
