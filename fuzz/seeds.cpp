// Writes the inputs from which fuzzing starts, a folder for each target.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/fcs_builder.h"

namespace {

namespace fs = std::filesystem;
using Orvane::Testing::FcsBuilder;

/// The seeds of one target, numbered.
class Folder {
public:
    explicit Folder(fs::path path) : path_(std::move(path)) { fs::create_directories(path_); }

    void Add(const std::string& bytes) {
        std::ofstream(path_ / std::to_string(count_++), std::ios::binary) << bytes;
    }

private:
    fs::path path_;
    int count_ = 0;
};

std::string RandomBytes(std::mt19937& random, std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// DATA close behind TEXT.
void AddCompact(Folder& folder, FcsBuilder builder) {
    builder.dataBegin = 0;
    builder.dataBegin = builder.Build().size() - builder.data.size() - builder.behindData.size() + 16;
    folder.Add(builder.Build());
}

FcsBuilder Stored(char type, const std::string& order, const std::vector<std::string>& widths,
                  std::size_t eventBytes) {
    constexpr int Events = 6;
    FcsBuilder builder(type, order, widths, Events);
    std::mt19937 random(1);
    builder.data = RandomBytes(random, Events * eventBytes);
    return builder;
}

FcsBuilder Ascii(const std::vector<std::string>& widths, const std::string& data, int events) {
    FcsBuilder builder('A', "", widths, events);
    builder.data = data;
    return builder;
}

void AddFcsFiles(Folder folder) {
    AddCompact(folder, FcsBuilder::Small());
    AddCompact(folder, Stored('F', "4,3,2,1", {"32", "32"}, 8));
    AddCompact(folder, Stored('D', "1,2,3,4,5,6,7,8", {"64", "64"}, 16));
    AddCompact(folder, Stored('I', "2,1", {"16", "16"}, 4).Set("$P1E", "4,0.1").Set("$P2R", "1000"));
    AddCompact(folder, Stored('I', "4,3,2,1", {"32", "8", "24", "16"}, 10).Set("$P2R", "200"));
    AddCompact(folder, Stored('I', "3,4,1,2", {"32", "32"}, 8).Set("$P1G", "2.5"));
    AddCompact(folder, Ascii({"4", "2"}, "  12 3  45 6 789 0", 3));
    AddCompact(folder, Ascii({"*", "*"}, "1,2\t3 4\r\n56 7", 3));
    AddCompact(folder, FcsBuilder::Small().Set("$SPILLOVER", "2,Par1,Par2,1,0.1,0.2,1"));
    AddCompact(folder, FcsBuilder::Small().Set("SPILL", "2,Par1,Par2,1,1,1,1").Set("EMPTY", "a//b"));
    FcsBuilder promises = FcsBuilder::Small().Set("$TOT", "1000000000");
    promises.header[3] = "99999999";
    AddCompact(folder, promises);
    AddCompact(folder, FcsBuilder::Small().Set("$PAR", "1000000000"));
    FcsBuilder moreData = FcsBuilder::Small().Set("$NEXTDATA", "900").Remove("$TOT");
    moreData.behindData = FcsBuilder::Small().Build().substr(0, 400);
    AddCompact(folder, moreData);
    FcsBuilder inText = FcsBuilder::Small().Set("$BEGINSTEXT", "600").Set("$ENDSTEXT", "640");
    inText.version = "FCS2.0";
    inText.header[2] = inText.header[3] = "       0";
    AddCompact(folder, inText);
}

void AddMatrices(Folder folder) {
    for (const char* text : {"2,A,B,1,0.1,0.2,1", "3,A,C,D,1,0.1,0,0.2,1,0.05,0,1e-3,1", "2,1,2,1,0,0,1",
                             "4,1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1", "2,A,B,1,1,1,1", "2,B,A,1,0.4,0,1",
                             "3,A,B,C,1,0,0.3,0,1,0,0,0.2,1"}) {
        folder.Add(std::string(1, '\0') + text);
    }
    for (const char* text :
         {"A,B\n1,0.1\n0.2,1\n", "\"\",\"A\",\"B\"\r\n\"A\",1,0.1\r\n\"B\",0.2,1\r\n",
          "\xEF\xBB\xBF,A,C,D\nA,1,0.1,0\nC,.2,1,0.05\nD,0,1e-3,1\n", "\"A\"\"\",B\n1,0\n0,1"}) {
        folder.Add(std::string(1, '\1') + text);
    }
}

/// A document with these elements.
std::string Document(const std::string& elements) {
    return R"(<g:Gating-ML xmlns:g="http://www.isac-net.org/std/Gating-ML/v2.0/gating" )"
           R"(xmlns:t="http://www.isac-net.org/std/Gating-ML/v2.0/transformations" )"
           R"(xmlns:d="http://www.isac-net.org/std/Gating-ML/v2.0/datatypes">)" +
           elements + "</g:Gating-ML>";
}

std::string Dimension(const std::string& attributes, const std::string& name = "PE-A") {
    return "<g:dimension g:compensation-ref=\"FCS\" " + attributes + "><d:fcs-dimension d:name=\"" + name +
           "\"/></g:dimension>";
}

std::string Transformation(const std::string& formula) {
    return Document("<t:transformation t:id=\"s\"><t:" + formula +
                    "/></t:transformation><g:RectangleGate g:id=\"R\">" +
                    Dimension(R"(g:transformation-ref="s" g:min="0.2" g:max="0.8")") + "</g:RectangleGate>");
}

std::string Rectangle(const std::string& id, const std::string& parent = "") {
    return "<g:RectangleGate g:id=\"" + id + "\"" + parent + ">" + Dimension("g:min=\"0\"") +
           Dimension("g:max=\"500\"", "FSC-A") + "</g:RectangleGate>";
}

void AddStrategies(Folder folder) {
    std::ifstream example(fs::path(ORVANE_EXAMPLES) / "strategy.xml", std::ios::binary);
    folder.Add(std::string(std::istreambuf_iterator<char>(example), {}));
    for (const char* formula : {R"(flin t:T="1000" t:A="0")", R"(flog t:T="10000" t:M="4.5")",
                                R"(fasinh t:T="262144" t:M="4" t:A="0.5")"}) {
        folder.Add(Transformation(formula));
    }
    folder.Add(Document(
        R"(<t:transformation t:id="q"><t:fratio t:A="1" t:B="0" t:C="2"><d:fcs-dimension d:name="FSC-A"/>)"
        R"(<d:fcs-dimension d:name="SSC-A"/></t:fratio></t:transformation><g:RectangleGate g:id="R">)"
        R"(<g:dimension g:compensation-ref="uncompensated" g:max="2"><d:new-dimension d:transformation-ref="q"/>)"
        R"(</g:dimension></g:RectangleGate>)"));
    folder.Add(
        Document(Rectangle("P") + Rectangle("C", " g:parent_id=\"P\"") +
                 R"(<g:BooleanGate g:id="B" g:parent_id="C"><g:or><g:gateReference g:ref="P"/>)"
                 R"(<g:gateReference g:ref="C" g:use-as-complement="true"/></g:or></g:BooleanGate>)"
                 R"(<g:BooleanGate g:id="N"><g:not><g:gateReference g:ref="B"/></g:not></g:BooleanGate>)"));
    std::string vertices;
    for (const char* value : {"0", "1000", "1e9"}) {
        vertices += "<g:vertex><g:coordinate d:value=\"" + std::string(value) +
                    "\"/><g:coordinate d:value=\"5\"/></g:vertex>";
    }
    folder.Add(Document("<g:PolygonGate g:id=\"Y\">" + Dimension("") + Dimension("", "FSC-W") + vertices +
                        "</g:PolygonGate>"));
    folder.Add(Document(
        R"(<t:spectrumMatrix t:id="M"><t:fluorochromes><d:fcs-dimension d:name="X"/><d:fcs-dimension d:name="Y"/>)"
        R"(</t:fluorochromes><t:detectors><d:fcs-dimension d:name="FITC-A"/><d:fcs-dimension d:name="PE-A"/>)"
        R"(</t:detectors><t:spectrum><t:coefficient t:value="1"/><t:coefficient t:value="0.2"/></t:spectrum>)"
        R"(<t:spectrum><t:coefficient t:value="0.1"/><t:coefficient t:value="1"/></t:spectrum></t:spectrumMatrix>)"
        R"(<g:RectangleGate g:id="R"><g:dimension g:compensation-ref="M" g:min="1"><d:fcs-dimension d:name="X"/>)"
        R"(</g:dimension></g:RectangleGate>)"));
}

/// For targets whose bytes are numbers; each first byte chooses another kind of input.
void AddRandom(Folder folder) {
    std::mt19937 random(2);
    for (char first = 0; first < 12; ++first) {
        for (const std::size_t size : {40U, 300U, 1500U})
            folder.Add(first + RandomBytes(random, size));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    const fs::path folder = argv[1];
    AddFcsFiles(Folder(folder / "fcs_reader"));
    AddMatrices(Folder(folder / "spillover"));
    AddStrategies(Folder(folder / "gating_ml"));
    for (const char* target : {"fcs_data", "pool", "gates"})
        AddRandom(Folder(folder / target));
}
