// Whole-column operations on signal and model sections.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Fills, measures and maps columns. Nothing here takes storage or throws. The array forms call the single
/// forms through the virtual table, so that overriding a single form changes the array form too.
class ORVANE_API ISectionUtility {
public:
    virtual ~ISectionUtility() = default;

    /// Gives every value its own index. Nothing without storage.
    virtual void FillSection(SignalSection* section) = 0;
    /// FillSection for every section.
    virtual void FillSectionArray(std::vector<SignalSection*>& sections) = 0;

    /// Raises `max` to every greater value and lowers `min` to every smaller one. Both carry in their
    /// starting values; NaN is passed over. Nothing without storage.
    virtual void FindSectionMaxAndMin(SignalSection* section, float& max, float& min) = 0;
    /// The single form for every section, with the same two references.
    virtual void FindSectionMaxAndMin(std::vector<SignalSection*>& sections, float& max, float& min) = 0;

    /// Takes the header over into `model` and stores for every value the low 16 bits of
    /// `(value - low) * ((high - low) / Capacity)`, computed in float and truncated toward zero: values below
    /// `low` wrap around, NaN and values beyond 64 bits give 0. Without storage only the
    /// header is taken over.
    virtual void ConvertSection(SignalSection* section, ModelSection* model, float high, float low) = 0;
    /// ConvertSection for every signal section into the model section at the same position.
    virtual void ConvertSectionArray(std::vector<SignalSection*>& signals, std::vector<ModelSection*>& models,
                                     float high, float low) = 0;

    /// The mean of all values, from one double sum per section; 0 when there are none.
    virtual float SectionArrayStatisticsMean(std::vector<SignalSection*>& sections) = 0;
    /// The standard deviation about `mean`: sqrt(outer / (n - 1)), with the squares formed in float and
    /// summed in double. The running sum of squares is added to `outer` after each section and never reset,
    /// so that squares of earlier sections count several times; with one section it is the ordinary sample
    /// standard deviation. 0 for fewer than two values.
    virtual float SectionArrayStatisticsSD(std::vector<SignalSection*>& sections, float mean) = 0;

    /// As ConvertSectionArray, with `levels` in place of the capacity. All sections must have storage.
    virtual void SectionArrayConvertModelSection(std::vector<SignalSection*>& signals,
                                                 std::vector<ModelSection*>& models, float high, float low,
                                                 int levels) = 0;
};

/// The operations of ISectionUtility. An object holds nothing; make one wherever it is needed.
class ORVANE_API SectionUtility : public ISectionUtility {
public:
    void FillSection(SignalSection* section) override;
    void FillSectionArray(std::vector<SignalSection*>& sections) override;
    void FindSectionMaxAndMin(SignalSection* section, float& max, float& min) override;
    void FindSectionMaxAndMin(std::vector<SignalSection*>& sections, float& max, float& min) override;
    void ConvertSection(SignalSection* section, ModelSection* model, float high, float low) override;
    void ConvertSectionArray(std::vector<SignalSection*>& signals, std::vector<ModelSection*>& models,
                             float high, float low) override;
    float SectionArrayStatisticsMean(std::vector<SignalSection*>& sections) override;
    float SectionArrayStatisticsSD(std::vector<SignalSection*>& sections, float mean) override;
    void SectionArrayConvertModelSection(std::vector<SignalSection*>& signals,
                                         std::vector<ModelSection*>& models, float high, float low,
                                         int levels) override;
};

}  // namespace Orvane
