// The transformers of a plot's vertical axis: data values to screen rows, which count downward, and back.
#pragma once

#include <orvane/OVConvertLinearAndLog.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

struct PixelMapping;

/// World values are data values, screen coordinates are rows: `WorldMin` lies at `ScreenMax`, one past the
/// bottom row, `WorldMax` at `ScreenMin`, the top row. Built by OVCoordinateTransformerYFactory; immutable,
/// so that several threads may share one.
///
/// Column operations read the first `Count` values of the signal section and write 16-bit coordinates into
/// the model section, which must have room for as many. A coordinate is truncated toward zero to 64 bits, of
/// which the low 16 are stored: negative and large ones wrap (-1 becomes 65535), NaN and what exceeds 64 bits
/// become 0. A transformer that keeps values in the screen clamps before that. Null sections are not
/// detected, and nothing is thrown.
class ORVANE_API IOVCoordinateTransformerY {
public:
    virtual ~IOVCoordinateTransformerY() = default;

    /// The screen coordinate of one value.
    virtual void GetScreenValue(double world, float& screen) = 0;

    /// The coordinates of the events whose bit is set; 65535 for all others. The model section gets the count
    /// of the signal section.
    virtual void GetScreenSection(SignalSection* signal, FilterSection* filter, ModelSection* model) = 0;

    /// The coordinates of all events. The model section gets the count of the signal section.
    virtual void GetScreenSection(SignalSection* signal, ModelSection* model) = 0;

    /// The coordinates of the events whose bit is set, one after another from the start. The model section
    /// gets the filter's stored `TrueCount`.
    virtual void GetScreenSectionInTrue(SignalSection* signal, FilterSection* filter,
                                        ModelSection* model) = 0;

    /// The data value at a screen coordinate, also where the range is zero.
    virtual void GetWorldValue(float screen, double& world) = 0;

    /// The plain formulas, whatever this transformer's own scale is.
    virtual double GetWorld_Linear(float screen) = 0;
    virtual double GetWorld_Log(float screen) = 0;
    virtual float GetScreen_Linear(double world) = 0;
    virtual float GetScreen_Log(double world) = 0;
};

/// The state of an axis and every mapping routine; the derived classes choose among the routines, once, when
/// they are constructed.
///
/// `_InScreen` routines keep values in the screen, from `ScreenMin` to `ScreenLast`, the column forms after
/// adding half a pixel: values up to `WorldClamp`, one pixel above `WorldMin`, get the bottom row, values
/// from `WorldMax` on the top row, NaN follows the formula. All other forms truncate. `_Zero` routines map
/// every value, NaN included, to `ScreenMin`. Deliberately not the mirror image of the horizontal axis.
///
/// The scale is the integer part of `ScreenMax - ScreenMin` over the range of values.
class ORVANE_API OVCoordinateTransformerY : public IOVCoordinateTransformerY {
public:
    /// An axis without a choice of routines, whose first five operations must not be called. `alpha` is the
    /// asinh width in data units, 0 for a linear axis.
    OVCoordinateTransformerY(float screenMin, float screenMax, double worldMin, double worldMax,
                             double alpha);

    void GetScreenValue(double world, float& screen) override;
    void GetScreenSection(SignalSection* signal, FilterSection* filter, ModelSection* model) override;
    void GetScreenSection(SignalSection* signal, ModelSection* model) override;
    void GetScreenSectionInTrue(SignalSection* signal, FilterSection* filter, ModelSection* model) override;
    void GetWorldValue(float screen, double& world) override;
    double GetWorld_Linear(float screen) override;
    double GetWorld_Log(float screen) override;
    float GetScreen_Linear(double world) override;
    float GetScreen_Log(double world) override;

    /// Clamped to `ScreenMin` and `ScreenLast`; NaN passes.
    float GetScreen_Linear_InScreen(double world);
    float GetScreen_Log_InScreen(double world);
    float GetScreenValue_Zero(double world);

    /// GetScreenSection without a filter.
    void GetSection_Linear(SignalSection* signal, ModelSection* model);
    void GetSection_Linear_InScreen(SignalSection* signal, ModelSection* model);
    void GetSection_Log(SignalSection* signal, ModelSection* model);
    void GetSection_Log_InScreen(SignalSection* signal, ModelSection* model);
    void GetSection_Zero(SignalSection* signal, ModelSection* model);

    /// GetScreenSection with a filter.
    void GetSectionFilter_Linear(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Linear_InScreen(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Log(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Log_InScreen(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Zero(SignalSection* signal, FilterSection* filter, ModelSection* model);

    /// GetScreenSectionInTrue.
    void GetSectionFilter_Linear_InTrue(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Linear_InScreen_InTrue(SignalSection* signal, FilterSection* filter,
                                                 ModelSection* model);
    void GetSectionFilter_Log_InTrue(SignalSection* signal, FilterSection* filter, ModelSection* model);
    void GetSectionFilter_Log_InScreen_InTrue(SignalSection* signal, FilterSection* filter,
                                              ModelSection* model);
    void GetSectionFilter_Zero_InTrue(SignalSection* signal, FilterSection* filter, ModelSection* model);

protected:
    /// The routines that an axis chooses among: one for each kind of operation.
    using ScreenValueRoutine = float (OVCoordinateTransformerY::*)(double);
    using WorldValueRoutine = double (OVCoordinateTransformerY::*)(float);
    using SectionRoutine = void (OVCoordinateTransformerY::*)(SignalSection*, ModelSection*);
    using SectionFilterRoutine = void (OVCoordinateTransformerY::*)(SignalSection*, FilterSection*,
                                                                    ModelSection*);

    float ScreenMin;        ///< top row
    float ScreenMax;        ///< one past the bottom row
    float ScreenLast;       ///< `ScreenMax - 1`
    double WorldMin;        ///< the value at `ScreenMax`
    double WorldClamp;      ///< the value one pixel above `WorldMin`
    double WorldMax;        ///< the value at `ScreenMin`
    double AlphaInverse;    ///< 1 / alpha: infinite for a linear axis
    double PixelsPerWorld;  ///< the scale, as the class says
    double PixelsPerAsinh;  ///< this and the other asinh members are 0 for a linear axis
    double AsinhMin;        ///< `WorldMin` on the asinh scale
    double AsinhMax;        ///< `WorldMax` on the asinh scale
    double WorldPerPixel;   ///< the way back
    double AsinhPerPixel;   ///< the way back

    /// What the operations of the interface go through; null until a derived class chooses.
    ScreenValueRoutine ScreenValueFn = nullptr;
    WorldValueRoutine WorldValueFn = nullptr;
    SectionRoutine SectionFn = nullptr;
    SectionFilterRoutine SectionFilterFn = nullptr;
    SectionFilterRoutine SectionFilterInTrueFn = nullptr;

    OVConvertLinearAndLog Convert;  ///< asinh and its inverse

    /// Fixes the routines behind the screen operations.
    void Choose(ScreenValueRoutine value, SectionRoutine section, SectionFilterRoutine filtered,
                SectionFilterRoutine packed);

private:
    float Clamped(float screen) const;
    PixelMapping Linear() const;
    PixelMapping Log() const;
    PixelMapping Zero() const;
    PixelMapping InScreen(PixelMapping mapping) const;
};

/// A linear axis. Where `worldMax - worldMin` is below 1e-5, reversed ranges included, everything is mapped
/// to `screenMin`. `inScreen` keeps values in the screen; scalar values that are not kept go through the
/// virtual GetScreen_Linear.
class ORVANE_API OVCoordinateTransformerY_Linear : public OVCoordinateTransformerY {
public:
    /// Screen and range of the axis, in pixels and data units.
    OVCoordinateTransformerY_Linear(float screenMin, float screenMax, double worldMin, double worldMax,
                                    bool inScreen);
};

/// An asinh axis of width `alpha`. Where the range on the asinh scale is below 1e-5, and where `alpha` is 0,
/// everything is mapped to `screenMin`. `inScreen` keeps values in the screen; scalar values that are not
/// kept go through the virtual GetScreen_Log.
class ORVANE_API OVCoordinateTransformerY_Log : public OVCoordinateTransformerY {
public:
    /// Screen, range and width of the axis, in pixels and data units.
    OVCoordinateTransformerY_Log(float screenMin, float screenMax, double worldMin, double worldMax,
                                 double alpha, bool inScreen);
};

/// Makes the transformer that an axis needs.
class ORVANE_API OVCoordinateTransformerYFactory {
public:
    /// A new asinh axis, or a linear one, for which `alpha` is ignored. The caller deletes it.
    static IOVCoordinateTransformerY* CreateTransformer(float screenMin, float screenMax, double worldMin,
                                                        double worldMax, double alpha, bool isLog,
                                                        bool inScreen);
};

}  // namespace Orvane
