#include <orvane/OVCoordinateTransformerX.h>

#include "transform/axis_scales.h"
#include "transform/section_mapping.h"

namespace Orvane {

OVCoordinateTransformerX::OVCoordinateTransformerX(float screenMin, float screenMax, double worldMin,
                                                   double worldMax, double alpha)
    : ScreenMin(screenMin),
      ScreenMax(screenMax),
      ScreenLast(screenMax - 1.0F),
      WorldMin(worldMin),
      WorldMax(worldMax),
      AlphaInverse(1.0 / alpha) {
    const AxisScales scales(screenMax - screenMin, (screenMax - 1.0F) - screenMin, worldMin, worldMax, alpha);
    WorldClamp = scales.WorldClamp;
    PixelsPerWorld = scales.PixelsPerWorld;
    PixelsPerAsinh = scales.PixelsPerAsinh;
    AsinhMin = scales.AsinhMin;
    AsinhMax = scales.AsinhMax;
    WorldPerPixel = scales.WorldPerPixel;
    AsinhPerPixel = scales.AsinhPerPixel;
}

void OVCoordinateTransformerX::Choose(ScreenValueRoutine value, SectionRoutine section,
                                      SectionFilterRoutine filtered, SectionFilterRoutine packed) {
    ScreenValueFn = value;
    SectionFn = section;
    SectionFilterFn = filtered;
    SectionFilterInTrueFn = packed;
}

void OVCoordinateTransformerX::GetScreenValue(double world, float& screen) {
    screen = (this->*ScreenValueFn)(world);
}

void OVCoordinateTransformerX::GetScreenSection(SignalSection* signal, FilterSection* filter,
                                                ModelSection* model) {
    (this->*SectionFilterFn)(signal, filter, model);
}

void OVCoordinateTransformerX::GetScreenSection(SignalSection* signal, ModelSection* model) {
    (this->*SectionFn)(signal, model);
}

void OVCoordinateTransformerX::GetScreenSectionInTrue(SignalSection* signal, FilterSection* filter,
                                                      ModelSection* model) {
    (this->*SectionFilterInTrueFn)(signal, filter, model);
}

void OVCoordinateTransformerX::GetWorldValue(float screen, double& world) {
    world = (this->*WorldValueFn)(screen);
}

double OVCoordinateTransformerX::GetWorld_Linear(float screen) {
    return static_cast<double>(screen - ScreenMin) * WorldPerPixel + WorldMin;
}

double OVCoordinateTransformerX::GetWorld_Log(float screen) {
    const double asinh = static_cast<double>(screen - ScreenMin) * AsinhPerPixel + AsinhMin;
    return Convert.AsinhConvertToLinear(asinh, AlphaInverse);
}

float OVCoordinateTransformerX::GetScreen_Linear(double world) {
    return static_cast<float>((world - WorldMin) * PixelsPerWorld) + ScreenMin;
}

float OVCoordinateTransformerX::GetScreen_Log(double world) {
    const double asinh = Convert.LinearConvertToAsinh(world, AlphaInverse);
    return static_cast<float>((asinh - AsinhMin) * PixelsPerAsinh) + ScreenMin;
}

float OVCoordinateTransformerX::Clamped(float screen) const {
    if (screen > ScreenLast) return ScreenLast;
    return ScreenMin > screen ? ScreenMin : screen;
}

// The class's own formula, even where a further subclass overrides the virtual one.
float OVCoordinateTransformerX::GetScreen_Linear_InScreen(double world) {
    return Clamped(OVCoordinateTransformerX::GetScreen_Linear(world));
}

float OVCoordinateTransformerX::GetScreen_Log_InScreen(double world) {
    return Clamped(OVCoordinateTransformerX::GetScreen_Log(world));
}

float OVCoordinateTransformerX::GetScreenValue_Zero(double /*world*/) {
    return ScreenMin;
}

PixelMapping OVCoordinateTransformerX::Linear() const {
    PixelMapping mapping;
    mapping.Kind = PixelMapping::Form::Linear;
    mapping.Scale = PixelsPerWorld;
    mapping.Constant = ScreenMin - WorldMin * PixelsPerWorld;
    return mapping;
}

PixelMapping OVCoordinateTransformerX::Log() const {
    PixelMapping mapping;
    mapping.Kind = PixelMapping::Form::Asinh;
    mapping.Factor = AlphaInverse;
    mapping.Scale = PixelsPerAsinh;
    mapping.Constant = ScreenMin - AsinhMin * PixelsPerAsinh;
    return mapping;
}

PixelMapping OVCoordinateTransformerX::InScreen(PixelMapping mapping) const {
    mapping.Constant += 0.5;
    mapping.Low = WorldMin;
    mapping.LowPixel = PixelAt(ScreenMin);
    mapping.High = WorldClamp;
    mapping.HighPixel = PixelAt(ScreenLast);
    return mapping;
}

PixelMapping OVCoordinateTransformerX::Zero() const {
    PixelMapping mapping;
    mapping.LowPixel = PixelAt(ScreenMin);
    return mapping;
}

void OVCoordinateTransformerX::GetSection_Linear(SignalSection* signal, ModelSection* model) {
    MapSection(Linear(), signal, model);
}

void OVCoordinateTransformerX::GetSection_Linear_InScreen(SignalSection* signal, ModelSection* model) {
    MapSection(InScreen(Linear()), signal, model);
}

void OVCoordinateTransformerX::GetSection_Log(SignalSection* signal, ModelSection* model) {
    MapSection(Log(), signal, model);
}

void OVCoordinateTransformerX::GetSection_Log_InScreen(SignalSection* signal, ModelSection* model) {
    MapSection(InScreen(Log()), signal, model);
}

void OVCoordinateTransformerX::GetSection_Zero(SignalSection* signal, ModelSection* model) {
    MapSection(Zero(), signal, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Linear(SignalSection* signal, FilterSection* filter,
                                                       ModelSection* model) {
    MapSectionFilter(Linear(), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Linear_InScreen(SignalSection* signal, FilterSection* filter,
                                                                ModelSection* model) {
    MapSectionFilter(InScreen(Linear()), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Log(SignalSection* signal, FilterSection* filter,
                                                    ModelSection* model) {
    MapSectionFilter(Log(), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Log_InScreen(SignalSection* signal, FilterSection* filter,
                                                             ModelSection* model) {
    MapSectionFilter(InScreen(Log()), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Zero(SignalSection* signal, FilterSection* filter,
                                                     ModelSection* model) {
    MapSectionFilter(Zero(), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Linear_InTrue(SignalSection* signal, FilterSection* filter,
                                                              ModelSection* model) {
    MapSectionInTrue(Linear(), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Linear_InScreen_InTrue(SignalSection* signal,
                                                                       FilterSection* filter,
                                                                       ModelSection* model) {
    MapSectionInTrue(InScreen(Linear()), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Log_InTrue(SignalSection* signal, FilterSection* filter,
                                                           ModelSection* model) {
    MapSectionInTrue(Log(), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Log_InScreen_InTrue(SignalSection* signal,
                                                                    FilterSection* filter,
                                                                    ModelSection* model) {
    MapSectionInTrue(InScreen(Log()), signal, filter, model);
}

void OVCoordinateTransformerX::GetSectionFilter_Zero_InTrue(SignalSection* signal, FilterSection* filter,
                                                            ModelSection* model) {
    MapSectionInTrue(Zero(), signal, filter, model);
}

OVCoordinateTransformerX_Linear::OVCoordinateTransformerX_Linear(float screenMin, float screenMax,
                                                                 double worldMin, double worldMax,
                                                                 bool inScreen)
    : OVCoordinateTransformerX(screenMin, screenMax, worldMin, worldMax, 0.0) {
    using Base = OVCoordinateTransformerX;
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

OVCoordinateTransformerX_Log::OVCoordinateTransformerX_Log(float screenMin, float screenMax, double worldMin,
                                                           double worldMax, double alpha, bool inScreen)
    : OVCoordinateTransformerX(screenMin, screenMax, worldMin, worldMax, alpha) {
    using Base = OVCoordinateTransformerX;
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

IOVCoordinateTransformerX* OVCoordinateTransformerXFactory::CreateTransformer(float screenMin,
                                                                              float screenMax,
                                                                              double worldMin,
                                                                              double worldMax, double alpha,
                                                                              bool isLog, bool inScreen) {
    if (isLog)
        return new OVCoordinateTransformerX_Log(screenMin, screenMax, worldMin, worldMax, alpha, inScreen);
    return new OVCoordinateTransformerX_Linear(screenMin, screenMax, worldMin, worldMax, inScreen);
}

}  // namespace Orvane
