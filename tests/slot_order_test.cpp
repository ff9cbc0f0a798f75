// The order of the virtual operations is part of the surface that hosts are compiled against.
//
// In the Itanium C++ ABI a pointer to a virtual member function holds the offset of the function in the table
// of virtual functions, so the order can be read off without calling anything.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

#include <orvane/orvane.h>

#include "tests/support/custom_signals.h"

namespace Orvane {
namespace {

#if defined(_MSC_VER)

TEST(SlotOrder, IsTheStatedOne) {
    GTEST_SKIP() << "pointers to member functions do not show their slot in this ABI";
}

#else

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
struct With {
    template <class Result, class Class>
    static auto Of(Result (Class::*member)(Parameters...)) {
        return member;
    }
};

/// What would come behind the last operation.
template <class Interface>
struct Extended : Interface {
    virtual void Behind() = 0;
};

/// Expects the members, and no others, from table position `first` on.
template <class Interface, class... Members>
void ExpectTable(int first, Members... members) {
    const std::vector<int> positions{TableIndex(members)..., TableIndex(&Extended<Interface>::Behind)};
    std::vector<int> expected(positions.size());
    std::iota(expected.begin(), expected.end(), first);
    EXPECT_EQ(positions, expected);
}

/// The destructor, slot 0, takes two table positions.
template <class Interface, class... Members>
void ExpectSlotsFromOne(Members... members) {
    ExpectTable<Interface>(2, members...);
}

using Counts = std::vector<CountSection*>;
using Events = std::vector<EventSection*>;
using Filters = std::vector<FilterSection*>;
using Models = std::vector<ModelSection*>;
using Segments = std::vector<SegmentSection*>;
using Signals = std::vector<SignalSection*>;
using Flags = std::vector<bool>;
using Ints = std::vector<int>;

TEST(SlotOrder, Allocator) {
    ExpectTable<OVMemoryAligned>(0, &OVMemoryAligned::Malloc, &OVMemoryAligned::Free);
}

TEST(SlotOrder, SectionUtility) {
    using I = ISectionUtility;
    ExpectSlotsFromOne<I>(&I::FillSection, &I::FillSectionArray,
                          With<SignalSection*, float&, float&>::Of(&I::FindSectionMaxAndMin),
                          With<Signals&, float&, float&>::Of(&I::FindSectionMaxAndMin), &I::ConvertSection,
                          &I::ConvertSectionArray, &I::SectionArrayStatisticsMean,
                          &I::SectionArrayStatisticsSD, &I::SectionArrayConvertModelSection);
}

TEST(SlotOrder, EventSection) {
    using I = IOVEventSection;
    ExpectSlotsFromOne<I>(
        &I::ReleaseVectorSectionCompensation, With<Events&, Ints&>::Of(&I::ReleaseVectorSection),
        With<Events&>::Of(&I::ReleaseVectorSection), With<Events&, Events&>::Of(&I::ReleaseVectorSection),
        &I::ReleaseVectorSectionShare, &I::GetVectorSignalSection, &I::SynchronousEventSectionCompensation,
        With<Events&, Events&, int>::Of(&I::AppendEventSection),
        With<Events&, Events&>::Of(&I::AppendEventSection),
        With<Events&, Events&, Events&, Flags&, int>::Of(&I::AppendEventSectionCompensation),
        With<Events&, Events&, Events&, Flags&>::Of(&I::AppendEventSectionCompensation),
        &I::SynchronousSignalValue, &I::NewEventSection, &I::CopyEventSection, &I::CopyOneEventSection,
        &I::CopyEventSectionShareSignal, &I::CheckVectorReuseFlag, &I::CheckNoReuseCount,
        &I::RemoveEventSection, &I::GetTotalCount, &I::ClearVectorSection, &I::GetFirstValue,
        &I::GetLastValue, &I::GetValue, &I::GetNextSection, &I::SetCountLimit, &I::InitVectorEventSectionData,
        With<Events&, Events&, Ints&>::Of(&I::ExtractEventSection),
        With<Events&, Events&, Filters&, Ints&>::Of(&I::ExtractEventSection), &I::GetValueMaxAndMin,
        &I::VectorEventSection_Multi_Matrix, &I::CalcWidthSignalValue, &I::SignalValueAddValue, &I::DealEvent,
        &I::CheckValueEqual);
}

TEST(SlotOrder, SignalSection) {
    using I = IOVSignalSection;
    ExpectSlotsFromOne<I>(&I::GetTotalCount, &I::GetValue, &I::GetFirstValue, &I::GetLastValue,
                          &I::CopyVectorSignalSection, &I::ReleaseVectorSection,
                          &I::ReleaseVectorSectionShare, &I::NewCopyVectorSignalSection, &I::GetNextSection,
                          &I::GetValueMaxAndMin, &I::CalcAreaHeightRatio);
}

TEST(SlotOrder, ModelSection) {
    using I = IOVModelSection;
    ExpectSlotsFromOne<I>(&I::ConvertSignalToModel, &I::GetTotalCount,
                          With<ModelSection*, FilterSection*, CountSection&>::Of(&I::StatisticsCountSection),
                          With<ModelSection*, CountSection&>::Of(&I::StatisticsCountSection),
                          With<Models&, Filters&, CountSection&>::Of(&I::StatisticsCountSection),
                          With<Models&, CountSection&>::Of(&I::StatisticsCountSection),
                          &I::StatisticsCountSection_Virtual, &I::ReleaseVectorSection,
                          &I::SynchronousVectorSection);
}

TEST(SlotOrder, CountAndSegmentSection) {
    ExpectSlotsFromOne<IOVCountSection>(&IOVCountSection::NewVectorSection,
                                        &IOVCountSection::ReleaseVectorSection);
    ExpectSlotsFromOne<IOVSegmentSection>(&IOVSegmentSection::NewVectorSection,
                                          &IOVSegmentSection::ReleaseVectorSection);
}

TEST(SlotOrder, FilterSection) {
    using I = IOVFilterSection;
    ExpectSlotsFromOne<I>(
        &I::ReleaseVectorSection, With<Filters&, Ints&>::Of(&I::SynchronousVectorSection),
        With<Filters&, Events&>::Of(&I::SynchronousVectorSection),
        With<Filters&, Signals&>::Of(&I::SynchronousVectorSection),
        With<Filters&, Filters&>::Of(&I::SynchronousVectorSection), &I::GetTotalCount,
        With<Filters&, Filters&>::Of(&I::GetTrueTotalCount), With<Filters&>::Of(&I::GetTrueTotalCount),
        &I::CalcListSectionTrueCount, &I::GetValue, &I::And, &I::Or, &I::Copy, &I::SetAllTrue,
        &I::SetAllFalse, With<FilterSection*, Filters&, ModelSection*>::Of(&I::CalcFilterIndex),
        With<Filters&, ModelSection*>::Of(&I::CalcFilterIndex), &I::CalcFilterIndexInTrue,
        &I::ExtratTrueFilter, &I::GetNextSection, &I::Composite_Comp_Copy_RealAndParent,
        &I::Composite_Comp_Copy_NotRealAndParent, &I::Composite_Comp_Copy_NotReal,
        &I::Composite_Comp_Or_RealAndParent, &I::Composite_Comp_Or_NotRealAndParent,
        &I::Composite_Comp_And_NotRealAndParent, &I::Composite_Comp_Or_NotReal,
        &I::Composite_Comp_And_NotReal, &I::GetCountByTrueCount, &I::GetFilterSectionByPercent,
        &I::GetFilterSectionByCount, &I::GetFilterSectionByCountReverse);
}

TEST(SlotOrder, StatisticsSignalSection) {
    using I = IOVStatisticsSignalSection;
    using S = Signals&;
    using F = Filters&;
    using V = float&;
    ExpectSlotsFromOne<I>(
        With<S, F, int&, V, V>::Of(&I::Average), With<S, F, int&>::Of(&I::Average),
        With<S, int&, V, V>::Of(&I::Average), With<S, int&>::Of(&I::Average), With<S>::Of(&I::Average),
        &I::Average_BackupAndSeparateSection_2Part, &I::Average_BackupAndSeparateSection_4Part,
        &I::BackupAndSeparateSection, &I::BackupAndSeparateSection_4Part,
        &I::BackupSignalSection_LessMinValue, With<S, F, S>::Of(&I::BackupSignalSection),
        With<S, S>::Of(&I::BackupSignalSection), &I::CalcActual_4Part, &I::CalcMedian_2Part,
        &I::CalcMedian_4Part, With<S, F>::Of(&I::CalcRSDForQC), With<S>::Of(&I::CalcRSDForQC),
        With<S, F, V, V>::Of(&I::CalcStatistic_ActualMinMax),
        With<S, V, V>::Of(&I::CalcStatistic_ActualMinMax), With<S, F, V, V>::Of(&I::CalcStatistic_RealMinMax),
        With<S, V, V>::Of(&I::CalcStatistic_RealMinMax),
        With<S, F, V, V>::Of(&I::CalcStatistic_Average_Median),
        With<S, V, V>::Of(&I::CalcStatistic_Average_Median), &I::CalcStatistic_AverageMedian,
        &I::CalcStatistic_AverageMedianRCVRSD, With<S, F, V, V, V>::Of(&I::CalcStatistic_AverageCVSD),
        With<S, V, V, V>::Of(&I::CalcStatistic_AverageCVSD),
        With<S, F, OVSignalStatistics&>::Of(&I::CalcStatistic_MorePara),
        With<S, OVSignalStatistics&>::Of(&I::CalcStatistic_MorePara), &I::CalcStatistic_MorePara_4Part,
        With<S, F, float, OVSignalStatistics&, int&>::Of(&I::CalcStatistic_MoreParaQC),
        With<S, float, OVSignalStatistics&, int&>::Of(&I::CalcStatistic_MoreParaQC),
        &I::DifferenceMedianAndSeparateSection_4Part, &I::SeparateSection_4Part,
        With<S, F, V, V>::Of(&I::FindMinMax), With<S, V, V>::Of(&I::FindMinMax),
        With<S, F, double*, int, S>::Of(&I::GenerateVirtualVectorSignalSection),
        With<S, double*, int, S>::Of(&I::GenerateVirtualVectorSignalSection), &I::GetMaxValue,
        &I::GetMinValue, With<S, F, int, unsigned, S>::Of(&I::GetRandomDatas),
        With<S, int, unsigned, S>::Of(&I::GetRandomDatas), With<S, F>::Of(&I::CV), With<S>::Of(&I::CV),
        &I::Median, &I::RobustCV, With<S, float>::Of(&I::RobustSD), With<S, float, float>::Of(&I::RobustSD),
        &I::RobustSD_LessMinValue, With<S, F, float>::Of(&I::SD), With<S, float>::Of(&I::SD),
        With<S>::Of(&I::SD), With<S, F>::Of(&I::SD));
}

template <class I>
void ExpectTransformerSlots() {
    ExpectSlotsFromOne<I>(
        &I::GetScreenValue, With<SignalSection*, FilterSection*, ModelSection*>::Of(&I::GetScreenSection),
        With<SignalSection*, ModelSection*>::Of(&I::GetScreenSection), &I::GetScreenSectionInTrue,
        &I::GetWorldValue, &I::GetWorld_Linear, &I::GetWorld_Log, &I::GetScreen_Linear, &I::GetScreen_Log);
}

TEST(SlotOrder, CoordinateTransformers) {
    ExpectTransformerSlots<IOVCoordinateTransformerX>();
    ExpectTransformerSlots<IOVCoordinateTransformerY>();
}

TEST(SlotOrder, Compensation) {
    using I = IOVCompensation;
    ExpectSlotsFromOne<I>(&I::CalcCompensation, &I::CalcCompensation_Section);
}

TEST(SlotOrder, CustomSignal) {
    using I = IOVCustomSignal;
    ExpectSlotsFromOne<I>(ORVANE_CUSTOM_SIGNALS(A, B), ORVANE_CUSTOM_SIGNALS(E, B),
                          ORVANE_CUSTOM_SIGNALS(A, E), ORVANE_CUSTOM_SIGNALS(E, E));
}

/// Brings the private operations, whose slots are as fixed as the others, into the open.
struct OpenFCSWriteRead : IOVFCSWriteRead {
    void WriteFCSData_Double(Segments&, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Float(Segments&, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Int32(Segments&, EventSection&, OVFCSPara&) override = 0;
    void WriteFCSData_Int16(Segments&, EventSection&, OVFCSPara&) override = 0;
    void ReadFCSData_Double(EventSection&, Segments&, OVFCSPara&) override = 0;
    void ReadFCSData_Float(EventSection&, Segments&, OVFCSPara&) override = 0;
    void ReadFCSData_Int32(EventSection&, Segments&, OVFCSPara&) override = 0;
    void ReadFCSData_Int16(EventSection&, Segments&, OVFCSPara&) override = 0;
    void ReadFCSData_ASCII(EventSection&, Segments&, OVFCSPara&) override = 0;
    void CalcSegmentIndexByCount(Segments&, EventSection&) override = 0;
    void CalcSegmentIndexByLength(Segments&, EventSection&, OVFCSPara&) override = 0;
};

TEST(SlotOrder, Gates) {
    using P = IOVPloygon;
    ExpectSlotsFromOne<P>(&P::ConstructEigenValue, &P::GetMinRect, &P::IsInPloygon);
    using I = IOVFilter;
    ExpectSlotsFromOne<I>(&I::Filter_LineSegment, &I::Filter_Vertical, &I::Filter_Vertical_Fast,
                          &I::Filter_Rectangle, &I::Filter_Quadrant, &I::Filter_Quadrant_Fast,
                          &I::Filter_Hinged, &I::Filter_Hinged_Fast, &I::Filter_Ploygon);
}

TEST(SlotOrder, Histograms) {
    ExpectSlotsFromOne<IOVPlotViewHistogram>(&IOVPlotViewHistogram::ConvertSignalToCount);
    ExpectSlotsFromOne<IOVPlotViewHistogram_MultiSample>(
        &IOVPlotViewHistogram_MultiSample::ConvertSignalToCount);
}

TEST(SlotOrder, DotPlots) {
    ExpectSlotsFromOne<IOVPlotViewDot>(&IOVPlotViewDot::RenderPlot, &IOVPlotViewDot::SetBitmapColor);
    using I = IOVPlotViewDot_MultiSample;
    ExpectSlotsFromOne<I>(&I::RenderPlot, &I::SetBitmapColor);
}

TEST(SlotOrder, CountingPlots) {
    ExpectSlotsFromOne<IOVPlotViewDensity>(&IOVPlotViewDensity::RenderPlot,
                                           &IOVPlotViewDensity::SetBitmapColor);
    using X = IOVCoordinateTransformerX*;
    using Y = IOVCoordinateTransformerY*;
    using C = IOVPlotViewContour;
    ExpectSlotsFromOne<C>(With<OVPlotData&, OVBitmapData&, X, Y>::Of(&C::RenderPlot),
                          With<OVPlotData&, OVBitmapData&, OVBitmapData&, X, Y>::Of(&C::RenderPlot),
                          &C::RenderZeroLevelPos);
    using B = IOVBinConstructor;
    ExpectSlotsFromOne<B>(
        With<int*, int, Signals&, X, int&, int&>::Of(&B::ConstructBin_1D),
        With<int*, int, Signals&, Filters&, X, int&, int&>::Of(&B::ConstructBin_1D),
        With<int*, int, Signals&, Signals&, X, Y, int&, int&>::Of(&B::ConstructBin_2D),
        With<int*, int, Signals&, Signals&, Filters&, X, Y, int&, int&>::Of(&B::ConstructBin_2D));
}

TEST(SlotOrder, FCSWriteRead) {
    using I = OpenFCSWriteRead;
    ExpectSlotsFromOne<I>(&I::WriteFCSData, &I::ReadFCSData, &I::WriteFCSData_Double, &I::WriteFCSData_Float,
                          &I::WriteFCSData_Int32, &I::WriteFCSData_Int16, &I::ReadFCSData_Double,
                          &I::ReadFCSData_Float, &I::ReadFCSData_Int32, &I::ReadFCSData_Int16,
                          &I::ReadFCSData_ASCII, &I::CalcSegmentIndexByCount, &I::CalcSegmentIndexByLength);
}

#endif

}  // namespace
}  // namespace Orvane
