// The order of the virtual operations is part of the surface that hosts are compiled against.
//
// In the Itanium C++ ABI a pointer to a virtual member function holds the offset of the function in the table
// of virtual functions, so the order can be read off without calling anything.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <typeinfo>
#include <vector>

#include <orvane/orvane.h>

#include "tests/support/custom_signals.h"

namespace Orvane {
namespace {

// In that of MSVC pointers to member functions do not show their slot.
#if !defined(_MSC_VER)

/// The position in the table of virtual functions; -1 for a function that is not virtual. The mark of a
/// virtual one is the lowest bit of the first word on x86 and of the second on ARM.
template <class Member>
int TableIndex(Member member) {
    std::ptrdiff_t words[2];
    static_assert(sizeof(words) == sizeof(member));
    std::memcpy(words, &member, sizeof(words));
    if (((words[0] | words[1]) & 1) == 0) return -1;
    return static_cast<int>((words[0] & ~std::ptrdiff_t{1}) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

/// Picks the overload with exactly these parameters.
template <class... Parameters>
constexpr auto Of = []<class Result, class Class>(Result (Class::*member)(Parameters...)) { return member; };

/// What would come behind the last operation.
template <class Interface>
struct Extended : Interface {
    virtual void Behind() = 0;
};

/// Expects the members, and no others, from table position `First` on. The destructor, slot 0, takes two.
template <class Interface, int First = 2, class... Members>
void ExpectSlots(Members... members) {
    const std::vector<int> positions{TableIndex(members)..., TableIndex(&Extended<Interface>::Behind)};
    std::vector<int> expected(positions.size());
    std::iota(expected.begin(), expected.end(), First);
    EXPECT_EQ(positions, expected) << typeid(Interface).name();
}

using Events = std::vector<EventSection*>&;
using Filters = std::vector<FilterSection*>&;
using Models = std::vector<ModelSection*>&;
using Segments = std::vector<SegmentSection*>&;
using Signals = std::vector<SignalSection*>&;
using Flags = std::vector<bool>&;
using Ints = std::vector<int>&;
using V = float&;

TEST(SlotOrder, EventSection) {
    using I = IOVEventSection;
    ExpectSlots<I>(
        &I::ReleaseVectorSectionCompensation, Of<Events, Ints>(&I::ReleaseVectorSection),
        Of<Events>(&I::ReleaseVectorSection), Of<Events, Events>(&I::ReleaseVectorSection),
        &I::ReleaseVectorSectionShare, &I::GetVectorSignalSection, &I::SynchronousEventSectionCompensation,
        Of<Events, Events, int>(&I::AppendEventSection), Of<Events, Events>(&I::AppendEventSection),
        Of<Events, Events, Events, Flags, int>(&I::AppendEventSectionCompensation),
        Of<Events, Events, Events, Flags>(&I::AppendEventSectionCompensation), &I::SynchronousSignalValue,
        &I::NewEventSection, &I::CopyEventSection, &I::CopyOneEventSection, &I::CopyEventSectionShareSignal,
        &I::CheckVectorReuseFlag, &I::CheckNoReuseCount, &I::RemoveEventSection, &I::GetTotalCount,
        &I::ClearVectorSection, &I::GetFirstValue, &I::GetLastValue, &I::GetValue, &I::GetNextSection,
        &I::SetCountLimit, &I::InitVectorEventSectionData, Of<Events, Events, Ints>(&I::ExtractEventSection),
        Of<Events, Events, Filters, Ints>(&I::ExtractEventSection), &I::GetValueMaxAndMin,
        &I::VectorEventSection_Multi_Matrix, &I::CalcWidthSignalValue, &I::SignalValueAddValue, &I::DealEvent,
        &I::CheckValueEqual);
}

TEST(SlotOrder, AllocatorAndOtherSections) {
    ExpectSlots<OVMemoryAligned, 0>(&OVMemoryAligned::Malloc, &OVMemoryAligned::Free);
    using U = ISectionUtility;
    ExpectSlots<U>(&U::FillSection, &U::FillSectionArray, Of<SignalSection*, V, V>(&U::FindSectionMaxAndMin),
                   Of<Signals, V, V>(&U::FindSectionMaxAndMin), &U::ConvertSection, &U::ConvertSectionArray,
                   &U::SectionArrayStatisticsMean, &U::SectionArrayStatisticsSD,
                   &U::SectionArrayConvertModelSection);
    using I = IOVSignalSection;
    ExpectSlots<I>(&I::GetTotalCount, &I::GetValue, &I::GetFirstValue, &I::GetLastValue,
                   &I::CopyVectorSignalSection, &I::ReleaseVectorSection, &I::ReleaseVectorSectionShare,
                   &I::NewCopyVectorSignalSection, &I::GetNextSection, &I::GetValueMaxAndMin,
                   &I::CalcAreaHeightRatio);
    using M = IOVModelSection;
    ExpectSlots<M>(&M::ConvertSignalToModel, &M::GetTotalCount,
                   Of<ModelSection*, FilterSection*, CountSection&>(&M::StatisticsCountSection),
                   Of<ModelSection*, CountSection&>(&M::StatisticsCountSection),
                   Of<Models, Filters, CountSection&>(&M::StatisticsCountSection),
                   Of<Models, CountSection&>(&M::StatisticsCountSection), &M::StatisticsCountSection_Virtual,
                   &M::ReleaseVectorSection, &M::SynchronousVectorSection);
    ExpectSlots<IOVCountSection>(&IOVCountSection::NewVectorSection, &IOVCountSection::ReleaseVectorSection);
    ExpectSlots<IOVSegmentSection>(&IOVSegmentSection::NewVectorSection,
                                   &IOVSegmentSection::ReleaseVectorSection);
}

TEST(SlotOrder, FilterSection) {
    using I = IOVFilterSection;
    ExpectSlots<I>(
        &I::ReleaseVectorSection, Of<Filters, Ints>(&I::SynchronousVectorSection),
        Of<Filters, Events>(&I::SynchronousVectorSection), Of<Filters, Signals>(&I::SynchronousVectorSection),
        Of<Filters, Filters>(&I::SynchronousVectorSection), &I::GetTotalCount,
        Of<Filters, Filters>(&I::GetTrueTotalCount), Of<Filters>(&I::GetTrueTotalCount),
        &I::CalcListSectionTrueCount, &I::GetValue, &I::And, &I::Or, &I::Copy, &I::SetAllTrue,
        &I::SetAllFalse, Of<FilterSection*, Filters, ModelSection*>(&I::CalcFilterIndex),
        Of<Filters, ModelSection*>(&I::CalcFilterIndex), &I::CalcFilterIndexInTrue, &I::ExtratTrueFilter,
        &I::GetNextSection, &I::Composite_Comp_Copy_RealAndParent, &I::Composite_Comp_Copy_NotRealAndParent,
        &I::Composite_Comp_Copy_NotReal, &I::Composite_Comp_Or_RealAndParent,
        &I::Composite_Comp_Or_NotRealAndParent, &I::Composite_Comp_And_NotRealAndParent,
        &I::Composite_Comp_Or_NotReal, &I::Composite_Comp_And_NotReal, &I::GetCountByTrueCount,
        &I::GetFilterSectionByPercent, &I::GetFilterSectionByCount, &I::GetFilterSectionByCountReverse);
}

TEST(SlotOrder, StatisticsSignalSection) {
    using I = IOVStatisticsSignalSection;
    using S = Signals;
    using F = Filters;
    ExpectSlots<I>(
        Of<S, F, int&, V, V>(&I::Average), Of<S, F, int&>(&I::Average), Of<S, int&, V, V>(&I::Average),
        Of<S, int&>(&I::Average), Of<S>(&I::Average), &I::Average_BackupAndSeparateSection_2Part,
        &I::Average_BackupAndSeparateSection_4Part, &I::BackupAndSeparateSection,
        &I::BackupAndSeparateSection_4Part, &I::BackupSignalSection_LessMinValue,
        Of<S, F, S>(&I::BackupSignalSection), Of<S, S>(&I::BackupSignalSection), &I::CalcActual_4Part,
        &I::CalcMedian_2Part, &I::CalcMedian_4Part, Of<S, F>(&I::CalcRSDForQC), Of<S>(&I::CalcRSDForQC),
        Of<S, F, V, V>(&I::CalcStatistic_ActualMinMax), Of<S, V, V>(&I::CalcStatistic_ActualMinMax),
        Of<S, F, V, V>(&I::CalcStatistic_RealMinMax), Of<S, V, V>(&I::CalcStatistic_RealMinMax),
        Of<S, F, V, V>(&I::CalcStatistic_Average_Median), Of<S, V, V>(&I::CalcStatistic_Average_Median),
        &I::CalcStatistic_AverageMedian, &I::CalcStatistic_AverageMedianRCVRSD,
        Of<S, F, V, V, V>(&I::CalcStatistic_AverageCVSD), Of<S, V, V, V>(&I::CalcStatistic_AverageCVSD),
        Of<S, F, OVSignalStatistics&>(&I::CalcStatistic_MorePara),
        Of<S, OVSignalStatistics&>(&I::CalcStatistic_MorePara), &I::CalcStatistic_MorePara_4Part,
        Of<S, F, float, OVSignalStatistics&, int&>(&I::CalcStatistic_MoreParaQC),
        Of<S, float, OVSignalStatistics&, int&>(&I::CalcStatistic_MoreParaQC),
        &I::DifferenceMedianAndSeparateSection_4Part, &I::SeparateSection_4Part,
        Of<S, F, V, V>(&I::FindMinMax), Of<S, V, V>(&I::FindMinMax),
        Of<S, F, double*, int, S>(&I::GenerateVirtualVectorSignalSection),
        Of<S, double*, int, S>(&I::GenerateVirtualVectorSignalSection), &I::GetMaxValue, &I::GetMinValue,
        Of<S, F, int, unsigned, S>(&I::GetRandomDatas), Of<S, int, unsigned, S>(&I::GetRandomDatas),
        Of<S, F>(&I::CV), Of<S>(&I::CV), &I::Median, &I::RobustCV, Of<S, float>(&I::RobustSD),
        Of<S, float, float>(&I::RobustSD), &I::RobustSD_LessMinValue, Of<S, F, float>(&I::SD),
        Of<S, float>(&I::SD), Of<S>(&I::SD), Of<S, F>(&I::SD));
}

template <class I>
void ExpectTransformerSlots() {
    ExpectSlots<I>(
        &I::GetScreenValue, Of<SignalSection*, FilterSection*, ModelSection*>(&I::GetScreenSection),
        Of<SignalSection*, ModelSection*>(&I::GetScreenSection), &I::GetScreenSectionInTrue,
        &I::GetWorldValue, &I::GetWorld_Linear, &I::GetWorld_Log, &I::GetScreen_Linear, &I::GetScreen_Log);
}

TEST(SlotOrder, ComputedValues) {
    ExpectTransformerSlots<IOVCoordinateTransformerX>();
    ExpectTransformerSlots<IOVCoordinateTransformerY>();
    ExpectSlots<IOVCompensation>(&IOVCompensation::CalcCompensation,
                                 &IOVCompensation::CalcCompensation_Section);
    using I = IOVCustomSignal;
    ExpectSlots<I>(ORVANE_CUSTOM_SIGNALS(A, B), ORVANE_CUSTOM_SIGNALS(E, B), ORVANE_CUSTOM_SIGNALS(A, E),
                   ORVANE_CUSTOM_SIGNALS(E, E));
}

/// Brings the private operations, whose slots are as fixed as the others, into the open.
struct OpenFCSWriteRead : IOVFCSWriteRead {
    void WriteFCSData_Double(Segments, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Float(Segments, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Int32(Segments, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Int16(Segments, EventSection&, OVFCSPara&) override = 0;
    void ReadFCSData_Double(EventSection&, Segments, OVFCSPara&) override = 0;
    void ReadFCSData_Float(EventSection&, Segments, OVFCSPara&) override = 0;
    void ReadFCSData_Int32(EventSection&, Segments, OVFCSPara&) override = 0;
    void ReadFCSData_Int16(EventSection&, Segments, OVFCSPara&) override = 0;
    void ReadFCSData_ASCII(EventSection&, Segments, OVFCSPara&) override = 0;
    void CalcSegmentIndexByCount(Segments, EventSection&) override = 0;
    void CalcSegmentIndexByLength(Segments, EventSection&, OVFCSPara&) override = 0;
};

TEST(SlotOrder, GatesAndPlots) {
    using P = IOVPloygon;
    ExpectSlots<P>(&P::ConstructEigenValue, &P::GetMinRect, &P::IsInPloygon);
    using I = IOVFilter;
    ExpectSlots<I>(&I::Filter_LineSegment, &I::Filter_Vertical, &I::Filter_Vertical_Fast,
                   &I::Filter_Rectangle, &I::Filter_Quadrant, &I::Filter_Quadrant_Fast, &I::Filter_Hinged,
                   &I::Filter_Hinged_Fast, &I::Filter_Ploygon);
    ExpectSlots<IOVPlotViewHistogram>(&IOVPlotViewHistogram::ConvertSignalToCount);
    ExpectSlots<IOVPlotViewHistogram_MultiSample>(&IOVPlotViewHistogram_MultiSample::ConvertSignalToCount);
    ExpectSlots<IOVPlotViewDot>(&IOVPlotViewDot::RenderPlot, &IOVPlotViewDot::SetBitmapColor);
    using D = IOVPlotViewDot_MultiSample;
    ExpectSlots<D>(&D::RenderPlot, &D::SetBitmapColor);
    ExpectSlots<IOVPlotViewDensity>(&IOVPlotViewDensity::RenderPlot, &IOVPlotViewDensity::SetBitmapColor);
    using X = IOVCoordinateTransformerX*;
    using Y = IOVCoordinateTransformerY*;
    using C = IOVPlotViewContour;
    ExpectSlots<C>(Of<OVPlotData&, OVBitmapData&, X, Y>(&C::RenderPlot),
                   Of<OVPlotData&, OVBitmapData&, OVBitmapData&, X, Y>(&C::RenderPlot),
                   &C::RenderZeroLevelPos);
    using B = IOVBinConstructor;
    ExpectSlots<B>(Of<int*, int, Signals, X, int&, int&>(&B::ConstructBin_1D),
                   Of<int*, int, Signals, Filters, X, int&, int&>(&B::ConstructBin_1D),
                   Of<int*, int, Signals, Signals, X, Y, int&, int&>(&B::ConstructBin_2D),
                   Of<int*, int, Signals, Signals, Filters, X, Y, int&, int&>(&B::ConstructBin_2D));
}

TEST(SlotOrder, FCSWriteRead) {
    using I = OpenFCSWriteRead;
    ExpectSlots<I>(&I::WriteFCSData, &I::ReadFCSData, &I::WriteFCSData_Double, &I::WriteFCSData_Float,
                   &I::WriteFCSData_Int32, &I::WriteFCSData_Int16, &I::ReadFCSData_Double,
                   &I::ReadFCSData_Float, &I::ReadFCSData_Int32, &I::ReadFCSData_Int16, &I::ReadFCSData_ASCII,
                   &I::CalcSegmentIndexByCount, &I::CalcSegmentIndexByLength);
}

#endif

}  // namespace
}  // namespace Orvane
