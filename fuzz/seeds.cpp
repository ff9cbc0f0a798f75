// Writes the inputs from which fuzzing starts, a folder for each target.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/fcs_builder.h"
#include "tests/support/gating_ml.h"

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
    std::mt19937 random(1);
    return {type, order, widths, Events, RandomBytes(random, Events * eventBytes)};
}

/// Files cut short, and files whose HEADER or TEXT has other bytes.
void AddDamaged(Folder& folder, const std::string& file) {
    for (std::size_t size = 0; size < file.size(); size += size < 400 ? 5 : 97)
        folder.Add(file.substr(0, size));
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        std::string bytes = file;
        for (unsigned k = 0; k < 1 + random() % 4; ++k)
            bytes[random() % (random() % 2 == 0 ? 58 : 400)] = static_cast<char>(random());
        folder.Add(bytes);
    }
}

void AddFcsFiles(Folder folder) {
    AddCompact(folder, FcsBuilder::Small());
    AddCompact(folder, Stored('F', "4,3,2,1", {"32", "32"}, 8));
    AddCompact(folder, Stored('D', "1,2,3,4,5,6,7,8", {"64", "64"}, 16));
    AddCompact(folder, Stored('I', "2,1", {"16", "16"}, 4).Set("$P1E", "4,0.1").Set("$P2R", "1000"));
    AddCompact(folder, Stored('I', "4,3,2,1", {"32", "8", "24", "16"}, 10).Set("$P2R", "200"));
    AddCompact(folder, Stored('I', "3,4,1,2", {"32", "32"}, 8).Set("$P1G", "2.5"));
    AddCompact(folder, FcsBuilder('A', "", {"4", "2"}, 3, "  12 3  45 6 789 0"));
    AddCompact(folder, FcsBuilder('A', "", {"*", "*"}, 3, "1,2\t3 4\r\n56 7"));
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
    FcsBuilder supplemented = FcsBuilder::Small().Set("$P1G", "2").Remove("$P2N");
    supplemented.behindData = "|$P2N|Par2|";
    AddDamaged(folder, supplemented.Set("$BEGINSTEXT", "4120").Set("$ENDSTEXT", "4130").Build());
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

void AddStrategies(Folder folder) {
    std::ifstream example(fs::path(ORVANE_EXAMPLES) / "strategy.xml", std::ios::binary);
    folder.Add(std::string(std::istreambuf_iterator<char>(example), {}));
    folder.Add(Orvane::Testing::Document(Orvane::Testing::EveryKind));
}

/// For targets whose bytes are numbers; each first byte chooses another kind of input.
void AddRandom(Folder folder) {
    std::mt19937 random(2);
    for (char first = 0; first < 16; ++first) {
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
