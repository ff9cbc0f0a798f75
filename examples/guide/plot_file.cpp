// From a list-mode file to a picture: load, compensate, gate, plot. The host guide goes through it step by
// step. Usage: plot_file SAMPLE.fcs PICTURE.ppm
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <orvane/orvane.h>

using namespace Orvane;

using Keywords = std::map<std::string, std::string>;

Keywords ReadKeywords(std::istream& file) {
    std::string header(58, ' ');
    file.read(header.data(), 58);
    if (header.compare(0, 3, "FCS") != 0) throw std::runtime_error("this is no FCS file");
    const int begin = std::stoi(header.substr(10, 8));
    const int end = std::stoi(header.substr(18, 8));

    file.seekg(begin);
    const char delimiter = static_cast<char>(file.get());
    std::string text(static_cast<std::size_t>(end - begin), ' ');
    if (!file.read(text.data(), end - begin)) throw std::runtime_error("TEXT is not complete");

    Keywords keywords;
    std::istringstream rest(text);
    for (std::string name, value;
         std::getline(rest, name, delimiter) && std::getline(rest, value, delimiter);)
        keywords[name] = value;
    return keywords;
}

const std::string& ValueOf(const Keywords& keywords, const std::string& name) {
    const auto place = keywords.find(name);
    if (place == keywords.end()) throw std::runtime_error("there is no keyword " + name);
    return place->second;
}

OVFCSPara ReadLayout(const Keywords& keywords) {
    const std::string& type = ValueOf(keywords, "$DATATYPE");
    if (ValueOf(keywords, "$MODE") != "L" || (type != "F" && type != "D"))
        throw std::runtime_error("only lists of floats or doubles are read here");
    OVFCSPara layout;
    layout.ParCount = std::stoi(ValueOf(keywords, "$PAR"));
    layout.DataType = type == "F" ? 2 : 3;
    layout.ByteWidth = type == "F" ? 4 : 8;
    layout.LittleEndian = ValueOf(keywords, "$BYTEORD") == "1,2,3,4";
    if (layout.ParCount < 1 || layout.ParCount > 1000) throw std::runtime_error("$PAR must be 1 to 1000");
    return layout;
}

struct Sample {
    std::vector<EventSection*> Raw;
    std::vector<EventSection*> Compensated;

    Sample() = default;
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;
    ~Sample() { OVEventSection().ReleaseVectorSection(Raw, Compensated); }
};

struct Signal {
    std::vector<SignalSection*> Sections;

    Signal() = default;
    Signal(std::vector<EventSection*>& events, int signal) : Signal() {
        OVEventSection().GetVectorSignalSection(events, signal, Sections);
    }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal() { OVSignalSection().ReleaseVectorSectionShare(Sections); }
};

struct Gate {
    std::vector<FilterSection*> Sections;

    Gate() = default;
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate() { OVFilterSection().ReleaseVectorSection(Sections); }
};

void Load(std::istream& file, const Keywords& keywords, std::vector<EventSection*>& events) {
    OVFCSPara layout = ReadLayout(keywords);
    int left = std::stoi(ValueOf(keywords, "$TOT"));
    OVEventSection().NewEventSection(events, left, layout.ParCount);
    file.seekg(std::stoll(ValueOf(keywords, "$BEGINDATA")));
    std::vector<char> bytes;
    for (EventSection* section : events) {
        const int count = std::min(left, section->Capacity);
        const int size = count * layout.ParCount * layout.ByteWidth;
        bytes.resize(static_cast<std::size_t>(size));
        if (!file.read(bytes.data(), size)) throw std::runtime_error("DATA is not complete");
        SegmentSection segment;
        segment.Data = bytes.data();
        segment.Count = size;
        std::vector<SegmentSection*> segments{&segment};
        OVFCSWriteRead().ReadFCSData(*section, segments, layout);
        left -= count;
    }
}

int FindSignal(const Keywords& keywords, const std::string& name) {
    const int count = std::stoi(ValueOf(keywords, "$PAR"));
    for (int signal = 0; signal < count; ++signal) {
        if (ValueOf(keywords, "$P" + std::to_string(signal + 1) + "N") == name) return signal;
    }
    throw std::runtime_error("there is no parameter " + name);
}

struct Spillover {
    std::vector<int> Channels;
    OVMatrix Matrix;
};

std::string NextField(std::istream& text) {
    std::string field;
    if (!std::getline(text, field, ',')) throw std::runtime_error("$SPILLOVER is not complete");
    return field;
}

Spillover ReadSpillover(const Keywords& keywords) {
    std::istringstream text(ValueOf(keywords, "$SPILLOVER"));
    const int n = std::stoi(NextField(text));
    Spillover spillover;
    for (int i = 0; i < n; ++i)
        spillover.Channels.push_back(FindSignal(keywords, NextField(text)));
    spillover.Matrix.InitMatrix(n, n);
    for (int i = 0; i < n * n; ++i)
        spillover.Matrix.SetValue(i / n, i % n, std::stod(NextField(text)));
    return spillover;
}

OVMatrix CompensationMatrix(const OVMatrix& spillover) {
    const int n = spillover.GetRowNum();
    const OVMatrix inverse = spillover.Invert();
    OVMatrix matrix(n, n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const double value = inverse.GetValue(j, i);
            if (!std::isfinite(value)) throw std::runtime_error("the spill-over matrix is singular");
            matrix.SetValue(i, j, i == j ? value : -value);
        }
    }
    return matrix;
}

void Compensate(Sample& sample, Spillover& spillover) {
    if (sample.Raw.empty()) return;
    std::vector<bool> shared(static_cast<std::size_t>(sample.Raw[0]->SignalCount), true);
    for (int channel : spillover.Channels)
        shared[static_cast<std::size_t>(channel)] = false;
    OVEventSection().SynchronousEventSectionCompensation(sample.Compensated, sample.Raw, shared);

    std::vector<float> baselines(spillover.Channels.size(), 0.0F);
    std::vector<int> none;
    OVCompensation().CalcCompensation(sample.Compensated, sample.Raw, CompensationMatrix(spillover.Matrix),
                                      baselines, spillover.Channels, OVMatrix(), baselines, none);
}

void GateLymphocytes(Sample& sample, const Keywords& keywords, Gate& lymphocytes) {
    Signal area(sample.Raw, FindSignal(keywords, "FSC-A"));
    Signal width(sample.Raw, FindSignal(keywords, "FSC-W"));
    Signal side(sample.Raw, FindSignal(keywords, "SSC-A"));

    Gate singlets;
    OVFilter().Filter_Rectangle(area.Sections, width.Sections, singlets.Sections, 0, 262144, 70000, 92000);
    OVPoint outline[] = {{35000, 10000}, {85000, 10000}, {90000, 34000}, {70000, 42000}, {35000, 36000}};
    OVFilter().Filter_Ploygon(area.Sections, side.Sections, lymphocytes.Sections, outline, 5);

    OVFilterSection().And(lymphocytes.Sections, singlets.Sections);
    for (FilterSection* section : lymphocytes.Sections)
        section->CalcTrueCount();
}

struct Picture {
    static constexpr int Size = 256;
    static constexpr int Pixels = Size * Size;
    std::vector<int> Cells = std::vector<int>(Pixels);

    OVBitmapData Raster() {
        OVBitmapData raster;
        raster.Height = Size;
        raster.Width = Size;
        raster.Stride = Size * 4;
        raster.Bits = Cells.data();
        return raster;
    }
};

int Draw(Signal& x, Signal& y, Gate& gate, Picture& picture) {
    const double alphaX = OVCalculateAlpha().CalculateAlpha(x.Sections, 0);
    const double alphaY = OVCalculateAlpha().CalculateAlpha(y.Sections, 0);
    std::unique_ptr<IOVCoordinateTransformerX> across(OVCoordinateTransformerXFactory::CreateTransformer(
        0, Picture::Size, -2000, 262144, alphaX, true, true));
    std::unique_ptr<IOVCoordinateTransformerY> upward(OVCoordinateTransformerYFactory::CreateTransformer(
        0, Picture::Size, -2000, 262144, alphaY, true, true));

    OVPlotData plot;
    plot.XSections = &x.Sections;
    plot.YSections = &y.Sections;
    plot.PopulationFilters = &gate.Sections;
    OVBitmapData raster = picture.Raster();
    OVPlotViewDensity().RenderPlot(plot, raster, across.get(), upward.get());
    return raster.GetDataMax();
}

void Color(Picture& picture) {
    constexpr int Levels = 16;
    std::vector<int> colors{0xFFFFFF};
    for (int level = 1; level <= Levels; ++level)
        colors.push_back(level * 15 << 16 | 0x40 << 8 | (Levels - level) * 15);
    OVBitmapData raster = picture.Raster();
    OVPlotViewDensity().SetBitmapColor(raster, 1.0F / Levels, colors.data(), static_cast<int>(colors.size()));
}

void Save(const Picture& picture, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file << "P6 " << Picture::Size << ' ' << Picture::Size << " 255\n";
    for (int color : picture.Cells)
        file.put(static_cast<char>(color >> 16))
            .put(static_cast<char>(color >> 8))
            .put(static_cast<char>(color));
    if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

void PlotFile(const std::string& source, const std::string& target) {
    std::ifstream file(source, std::ios::binary);
    const Keywords keywords = ReadKeywords(file);
    Sample sample;
    Load(file, keywords, sample.Raw);
    Spillover spillover = ReadSpillover(keywords);
    Compensate(sample, spillover);

    Gate lymphocytes;
    GateLymphocytes(sample, keywords, lymphocytes);
    std::cout << OVFilterSection().GetTrueTotalCount(lymphocytes.Sections) << " of "
              << OVEventSection().GetTotalCount(sample.Raw) << " events are lymphocytes\n";

    Signal cd4(sample.Compensated, FindSignal(keywords, "PerCP-Cy5-5-A"));
    Signal cd8(sample.Compensated, FindSignal(keywords, "PE-A"));
    Picture picture;
    const int densest = Draw(cd4, cd8, lymphocytes, picture);
    std::cout << densest << " of them on the densest pixel\n";
    Color(picture);
    Save(picture, target);
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: plot_file SAMPLE.fcs PICTURE.ppm\n";
        return 2;
    }
    try {
        PlotFile(argv[1], argv[2]);
        MemoryManage::ReleaseAll();
        return 0;
    } catch (OutOfMemoryException* error) {
        std::cerr << error->GetMessageException() << '\n';
        delete error;
    } catch (const char* text) {
        std::cerr << text << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    MemoryManage::ReleaseAll();
    return 1;
}
