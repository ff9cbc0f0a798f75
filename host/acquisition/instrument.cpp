#include "acquisition/instrument.h"

#include <algorithm>
#include <cmath>

namespace Host {
namespace {

enum Channel : int {
    Ratio = -1,
    ForwardArea = 0,
    ForwardHeight = 2,
    SideArea = 4,
    FirstDyeArea = 6,
    Time = FirstDyeArea + 2 * static_cast<int>(DyeCount),
    ChannelCount
};

constexpr int DyeArea(int dye) {
    return FirstDyeArea + 2 * dye;
}

constexpr double SpilloverOfDyes[DyeCount][DyeCount] = {
    {1, 0.18, 0.03, 0, 0, 0},    {0.01, 1, 0.21, 0, 0.02, 0},    {0, 0.01, 1, 0.02, 0.14, 0.01},
    {0, 0, 0.01, 1, 0.01, 0.12}, {0.01, 0.04, 0.02, 0, 1, 0.01}, {0, 0, 0, 0.09, 0.04, 1}};

int Digitize(double value) {
    constexpr double Largest = Instrument::Range * 10 - 1;
    return static_cast<int>(std::clamp(std::floor(value * 10 + 0.5), -Largest, Largest));
}

/// The light that all dyes of a cell give in one detector.
double Collect(const Cell& cell, int detector) {
    double light = 0;
    for (std::size_t dye = 0; dye < DyeCount; ++dye)
        light += cell.dyes[dye] * SpilloverOfDyes[dye][detector];
    return light;
}

/// The SD of what a detector of dyes measures: that of its electronics, and that of the number of photons.
double Noise(double light) {
    constexpr double Electronics = 60;
    constexpr double UnitsPerPhoton = 12;
    return std::sqrt(Electronics * Electronics + UnitsPerPhoton * light);
}

}  // namespace

const std::vector<Instrument::Signal>& Instrument::Signals() {
    static const std::vector<Signal> signals{{"FSC-A", "", ForwardArea},
                                             {"FSC-H", "", ForwardHeight},
                                             {"FSC-W", "", Ratio},
                                             {"SSC-A", "", SideArea},
                                             {"FITC-A", "CD3", DyeArea(0)},
                                             {"PE-A", "CD8", DyeArea(1)},
                                             {"PerCP-Cy5-5-A", "CD4", DyeArea(2)},
                                             {"APC-A", "CD19", DyeArea(3)},
                                             {"PE-Cy7-A", "CD14", DyeArea(4)},
                                             {"APC-H7-A", "CD45", DyeArea(5)},
                                             {"Time", "", Channel::Time}};
    return signals;
}

std::vector<double> Instrument::Spillover() {
    std::vector<double> coefficients;
    for (const auto& row : SpilloverOfDyes)
        coefficients.insert(coefficients.end(), std::begin(row), std::end(row));
    return coefficients;
}

int Instrument::Ticks() const {
    return static_cast<int>(microseconds_ / 10000);
}

/// The ratio is the width of the pulse, area by height; a rectangular one has 65536.
Orvane::OVCollectData Instrument::Measure(int events) {
    const int begin = Ticks();
    buffer_.assign(static_cast<std::size_t>(events) * ChannelCount, 0);
    for (std::size_t event = 0; event < buffer_.size(); event += ChannelCount) {
        MeasureEvent(&buffer_[event]);
        buffer_[event + Channel::Time] = Ticks() - begin;
    }
    Orvane::OVCollectData data;
    data.data = buffer_.data();
    data.dataCount = static_cast<int>(buffer_.size());
    data.channelCount = ChannelCount;
    data.ratioNumeratorChannel = ForwardArea;
    data.ratioDenominatorChannel = ForwardHeight;
    data.numeratorScale = 1;
    data.denominatorScale = 1.0F / 64;
    data.lastChannelOffset = static_cast<float>(begin);
    return data;
}

/// Now and then two cells pass as one, side by side in time: their light adds up, their peaks do not.
Cell Instrument::DrawPulse(double& height) {
    constexpr int DoubletsPerMille = 25;
    constexpr double HeightOfArea = 0.82;
    Cell cell = DrawCell(random_);
    height = cell.forward;
    if (random_.Below(1000) < DoubletsPerMille) {
        const Cell other = DrawCell(random_);
        height = std::max(height, other.forward);
        cell.forward += other.forward;
        cell.side += other.side;
        for (std::size_t dye = 0; dye < DyeCount; ++dye)
            cell.dyes[dye] += other.dyes[dye];
    }
    height *= HeightOfArea * (1 + 0.02 * random_.Normal());
    return cell;
}

/// Cells come at random, about 2000 in a second.
void Instrument::MeasureEvent(int* channels) {
    constexpr int LongestGap = 1000;
    microseconds_ += random_.Below(LongestGap + 1);
    double height = 0;
    const Cell cell = DrawPulse(height);
    channels[ForwardArea] = Digitize(cell.forward);
    channels[ForwardHeight] = Digitize(height);
    channels[SideArea] = Digitize(cell.side);
    for (int dye = 0; dye < static_cast<int>(DyeCount); ++dye) {
        const double light = Collect(cell, dye);
        channels[DyeArea(dye)] = Digitize(light + Noise(light) * random_.Normal());
    }
}

}  // namespace Host
