// Makes a list-mode file to try things on: blood stained in six colours, 20 000 events of lymphocytes,
// monocytes and granulocytes, FCS 3.1 with 32-bit floats and a spill-over matrix. The bytes are the same on
// every machine: whole-number randomness, and nothing but sums and products of doubles.
//
// Usage: make_sample OUT.fcs
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int EventCount = 20000;
constexpr int ColourCount = 6;
constexpr int ScatterCount = 3;
constexpr std::array<const char*, ColourCount> Dyes = {"FITC-A", "PE-A",     "PerCP-Cy5-5-A",
                                                       "APC-A",  "PE-Cy7-A", "APC-H7-A"};
constexpr std::array<const char*, ColourCount> Markers = {"CD3", "CD8", "CD4", "CD19", "CD14", "CD45"};

/// Row: what one unit of this dye adds to each detector.
constexpr double Spillover[ColourCount][ColourCount] = {
    {1, 0.18, 0.03, 0, 0, 0},    {0.01, 1, 0.21, 0, 0.02, 0},    {0, 0.01, 1, 0.02, 0.14, 0.01},
    {0, 0, 0.01, 1, 0.01, 0.12}, {0.01, 0.04, 0.02, 0, 1, 0.01}, {0, 0, 0, 0.09, 0.04, 1}};

/// One kind of cell: its share of the events, and the medians of forward and side scatter and of every
/// colour.
struct Cell {
    int perMille;
    double forward;
    double side;
    double colours[ColourCount];
};

constexpr std::array<Cell, 6> Cells{{
    {240, 62000, 21000, {9000, 120, 14000, 90, 80, 30000}},  // CD4 T cells
    {150, 60000, 22000, {8500, 26000, 150, 90, 80, 31000}},  // CD8 T cells
    {70, 58000, 20000, {110, 130, 140, 12000, 90, 27000}},   // B cells
    {90, 98000, 52000, {220, 210, 900, 260, 16000, 24000}},  // monocytes
    {410, 122000, 138000, {320, 300, 280, 310, 420, 9500}},  // granulocytes
    {40, 14000, 9000, {90, 90, 90, 90, 90, 300}},            // debris
}};

class Random {
public:
    /// 32 random bits.
    std::uint32_t Next() {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state_ >> 32U);
    }

    /// Nearly normal, mean 0 and SD 1: a sum of twelve uniform numbers.
    double Normal() {
        double sum = -6;
        for (int i = 0; i < 12; ++i)
            sum += Next() / 4294967296.0;
        return sum;
    }

    /// Nearly e to the power of `width` times a normal number, as brightness is spread: always positive.
    double Spread(double width) {
        double factor = 1 + width * Normal() / 8;
        for (int i = 0; i < 3; ++i)
            factor *= factor;
        return factor;
    }

private:
    std::uint64_t state_ = 20000;
};

const Cell& ChooseCell(Random& random) {
    auto draw = static_cast<int>(random.Next() % 1000);
    for (const Cell& cell : Cells) {
        draw -= cell.perMille;
        if (draw < 0) return cell;
    }
    return Cells.back();
}

/// The values of one event in the order of the parameters.
std::vector<float> MakeEvent(Random& random, int index) {
    const Cell& cell = ChooseCell(random);
    const double forward = cell.forward * random.Spread(0.12);
    std::vector<double> values{forward, forward * (0.82 + 0.02 * random.Normal()),
                               cell.side * random.Spread(0.18)};
    double dyes[ColourCount];
    for (int dye = 0; dye < ColourCount; ++dye)
        dyes[dye] = cell.colours[dye] * random.Spread(0.35);
    for (int detector = 0; detector < ColourCount; ++detector) {
        double sum = 40 * random.Normal();
        for (int dye = 0; dye < ColourCount; ++dye)
            sum += dyes[dye] * Spillover[dye][detector];
        values.push_back(sum);
    }
    values.push_back(index * 0.05);
    return {values.begin(), values.end()};
}

void Append(std::string& data, float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    for (unsigned shift = 0; shift < 32; shift += 8)
        data += static_cast<char>(bits >> shift & 0xFFU);
}

std::string MakeData() {
    Random random;
    std::string data;
    for (int event = 0; event < EventCount; ++event) {
        for (const float value : MakeEvent(random, event))
            Append(data, value);
    }
    return data;
}

std::string SpilloverText() {
    std::string text = std::to_string(ColourCount);
    for (const char* dye : Dyes)
        text += std::string(",") + dye;
    char number[32];
    for (const auto& row : Spillover) {
        for (const double coefficient : row) {
            std::snprintf(number, sizeof number, ",%g", coefficient);
            text += number;
        }
    }
    return text;
}

void AppendParameter(std::string& text, int index, const std::string& name, const std::string& stain) {
    const std::string prefix = "|$P" + std::to_string(index);
    text += prefix + "N|" + name + prefix + "B|32" + prefix + "E|0,0" + prefix + "R|262144" + prefix + "G|1";
    if (!stain.empty()) text += prefix + "S|" + stain;
}

std::string MakeText(std::size_t dataBegin, std::size_t dataEnd) {
    std::string text = "|$BEGINANALYSIS|0|$ENDANALYSIS|0|$BEGINSTEXT|0|$ENDSTEXT|0|$NEXTDATA|0|$MODE|L";
    text += "|$DATATYPE|F|$BYTEORD|1,2,3,4|$CYT|Orvane sample|$TIMESTEP|0.01";
    text += "|$BEGINDATA|" + std::to_string(dataBegin) + "|$ENDDATA|" + std::to_string(dataEnd);
    text += "|$PAR|" + std::to_string(ScatterCount + ColourCount + 1) + "|$TOT|" + std::to_string(EventCount);
    int index = 0;
    for (const char* scatter : {"FSC-A", "FSC-H", "SSC-A"})
        AppendParameter(text, ++index, scatter, "");
    for (int colour = 0; colour < ColourCount; ++colour) {
        AppendParameter(text, ++index, Dyes[static_cast<std::size_t>(colour)],
                        Markers[static_cast<std::size_t>(colour)]);
    }
    AppendParameter(text, ++index, "Time", "");
    return text + "|$SPILLOVER|" + SpilloverText() + "|";
}

std::string MakeFile() {
    constexpr std::size_t TextBegin = 58;
    constexpr std::size_t DataBegin = 2048;
    const std::string data = MakeData();
    const std::size_t dataEnd = DataBegin + data.size() - 1;
    std::string text = MakeText(DataBegin, dataEnd);
    char header[TextBegin + 1];
    std::snprintf(header, sizeof header, "FCS3.1    %8zu%8zu%8zu%8zu%8d%8d", TextBegin,
                  TextBegin + text.size() - 1, DataBegin, dataEnd, 0, 0);
    text.resize(DataBegin - TextBegin, ' ');
    return header + text + data;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_sample OUT.fcs\n";
        return 2;
    }
    std::ofstream file(argv[1], std::ios::binary);
    file << MakeFile();
    file.close();
    if (!file) {
        std::cerr << "make_sample: " << argv[1] << " cannot be written\n";
        return 1;
    }
    return 0;
}
