// How cost grows: the steps from DATA to a picture for samples of ten thousand to ten million events, and of
// five to fifty parameters. There is no plain form here; `per_event` is what to compare.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <orvane/orvane.h>

#include "bench/support.h"
#include "operations/section_vectors.h"

namespace Orvane::Bench {
namespace {

constexpr int Size = 512;
constexpr int Vertices = 10;
constexpr int BlockEvents = 65536;

/// A sample, its compensated twin, two of its parameters and a gate on them.
class Sample {
public:
    Sample(int events, int parameters)
        : Events(events),
          Parameters(parameters),
          Data(MakeData(parameters)),
          Spill(parameters, parameters),
          Baselines(static_cast<std::size_t>(parameters), 0.0F),
          Channels(static_cast<std::size_t>(parameters)) {
        std::iota(Channels.begin(), Channels.end(), 0);
        for (int i = 0; i < parameters; ++i) {
            for (int j = 0; j < parameters; ++j)
                Spill.SetValue(i, j, i == j ? 1.02 : 0.01);
        }
        OVEventSection operations;
        operations.NewEventSection(Raw, events, parameters);
        operations.NewEventSection(Compensated, events, parameters);
        Read();
        for (std::size_t i = 0; i < Raw.size(); ++i)
            Compensated[i]->Count = Raw[i]->Count;
        Compensate();
        operations.GetVectorSignalSection(Compensated, 0, Xs);
        operations.GetVectorSignalSection(Compensated, 1, Ys);
    }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;
    ~Sample() {
        OVFilterSection().ReleaseVectorSection(Gated);
        OVSignalSection().ReleaseVectorSectionShare(Xs);
        OVSignalSection().ReleaseVectorSectionShare(Ys);
        ReleaseFromLast(Compensated);
        ReleaseFromLast(Raw);
    }

    /// Every section reads the same bytes, as many as it takes events.
    void Read() {
        OVFCSPara para;
        para.ParCount = Parameters;
        para.DataType = 2;
        para.ByteWidth = 4;
        para.LittleEndian = true;
        SegmentSection bytes;
        bytes.Data = Data.data();
        std::vector<SegmentSection*> segments{&bytes};
        int left = Events;
        for (EventSection* section : Raw) {
            const int count = std::min(left, section->Capacity);
            left -= count;
            bytes.Count = count * Parameters * static_cast<int>(sizeof(float));
            OVFCSWriteRead().ReadFCSData(*section, segments, para);
        }
    }

    void Compensate() {
        OVMatrix noMatrix;
        std::vector<float> noBaselines;
        std::vector<int> noChannels;
        OVCompensation().CalcCompensation(Compensated, Raw, Spill, Baselines, Channels, noMatrix, noBaselines,
                                          noChannels);
    }

    void Gate() {
        std::array<OVPoint, Vertices> ring;
        for (int i = 0; i < Vertices; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / Vertices;
            ring[static_cast<std::size_t>(i)] =
                OVPoint(static_cast<float>(2000.0 + 1000.0 * std::cos(angle)),
                        static_cast<float>(2000.0 + 1000.0 * std::sin(angle)));
        }
        OVFilter().Filter_Ploygon(Xs, Ys, Gated, ring.data(), Vertices);
    }

    void Draw() {
        const std::unique_ptr<IOVCoordinateTransformerX> x(OVCoordinateTransformerXFactory::CreateTransformer(
            0.0F, Size, -500.0, 50000.0, 150.0, true, true));
        const std::unique_ptr<IOVCoordinateTransformerY> y(OVCoordinateTransformerYFactory::CreateTransformer(
            0.0F, Size, -500.0, 50000.0, 150.0, true, true));
        std::vector<int> cells(std::size_t{Size} * Size);
        OVBitmapData raster;
        raster.Width = raster.Height = Size;
        raster.Stride = 4 * Size;
        raster.Bits = cells.data();
        OVPlotData data;
        data.XSections = &Xs;
        data.YSections = &Ys;
        OVPlotViewDensity().RenderPlot(data, raster, x.get(), y.get());
        benchmark::DoNotOptimize(cells.data());
    }

    /// Of one parameter.
    void Describe() {
        float average = 0;
        float median = 0;
        OVStatisticsSignalSection().CalcStatistic_Average_Median(Xs, average, median);
        benchmark::DoNotOptimize(median);
    }

    const int Events;
    const int Parameters;

private:
    static std::vector<float> MakeData(int parameters) {
        std::mt19937 random(1);
        std::lognormal_distribution<float> value(7.5F, 0.8F);
        std::vector<float> data(static_cast<std::size_t>(BlockEvents * parameters));
        std::generate(data.begin(), data.end(), [&] { return value(random); });
        return data;
    }

    std::vector<float> Data;
    OVMatrix Spill;
    std::vector<float> Baselines;
    std::vector<int> Channels;
    std::vector<EventSection*> Raw, Compensated;
    std::vector<SignalSection*> Xs, Ys;
    std::vector<FilterSection*> Gated;
};

/// The sample of that size; the one before goes.
Sample& SampleOf(int events, int parameters) {
    static std::unique_ptr<Sample> sample;
    if (sample == nullptr || sample->Events != events || sample->Parameters != parameters) {
        sample.reset();
        sample = std::make_unique<Sample>(events, parameters);
    }
    return *sample;
}

void RegisterSize(int events, int parameters) {
    struct Step {
        const char* Name;
        void (Sample::*Run)();
    };
    static constexpr Step Steps[] = {{"GrowthRead", &Sample::Read},
                                     {"GrowthCompensate", &Sample::Compensate},
                                     {"GrowthGate", &Sample::Gate},
                                     {"GrowthDraw", &Sample::Draw},
                                     {"GrowthDescribe", &Sample::Describe}};
    for (const Step& step : Steps) {
        const std::string size = std::to_string(events) + "x" + std::to_string(parameters);
        Register(step.Name, size, [=](benchmark::State& state) {
            Sample& sample = SampleOf(events, parameters);
            for (auto _ : state)
                (sample.*step.Run)();
            state.counters["per_event"] = benchmark::Counter(
                events, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
        });
    }
}

const bool Registered = [] {
    for (const int events : {10000, 100000, 1000000, 10000000})
        RegisterSize(events, 10);
    for (const int parameters : {5, 20, 50})
        RegisterSize(1000000, parameters);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
