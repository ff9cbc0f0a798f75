// Compensation by the host program: where matrices come from, and which are refused.
#include <gtest/gtest.h>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

using HostCompensation = HostTest;

/// Of 1, 2, 3 in Par1 and 10, 20, 30 in Par2, half of Par1 is found in Par2 as well.
void ExpectCompensated(const json& file, double par1 = 3) {
    EXPECT_EQ(Row(file, "Par1")["max"], par1);
    EXPECT_EQ(Row(file, "Par2")["min"], 9.5);
    EXPECT_EQ(Row(file, "Par2")["max"], 28.5);
}

TEST_F(HostCompensation, FindsTheMatrixOfAFile) {
    for (const auto& [keyword, text] : Pairs{{"$SPILLOVER", "2,Par1,Par2,1,0.5,0,1"},
                                             {"SPILL", "2,Par2,Par1,1,0,.5,1"},
                                             {"SPILLOVER", "2,1,2,1,0.5,0,1"},
                                             {"Spill", "2, 2,Par1,1,0,5e-1,1"},
                                             {"$COMP", "2,1,0.5,0,1"},
                                             {"COMP", "2,Par1,Par2,2,1,0,1"}}) {
        SCOPED_TRACE(::testing::Message() << keyword << ": " << text);
        const std::string path = Write(FcsBuilder::Small().Set(keyword, text));
        for (const Strings& raw : {Strings{"--compensate", "none"}, Strings{"--values", "channel"}})
            EXPECT_EQ(Row(Stats(path, raw), "Par2")["max"], 30);
        ExpectCompensated(Stats(path), keyword == "COMP" ? 1.5 : 3);
    }
}

TEST_F(HostCompensation, ReadsAMatrixFromCommaSeparatedValues) {
    const std::string path = Write(FcsBuilder::Small().Set("SPILL", "2,Par1,Par2,1,0,0.5,1"));
    for (const char* text :
         {"\xEF\xBB\xBFPar1,Par2\n1,0.5\n0,1\n", ",\"Par1\",\"Par2\"\r\nPar1,1,0.5\r\n\"a,b\",0,1",
          "\n Par2 , Par1 \n\n1,0\n+0.5,1\n\n"}) {
        SCOPED_TRACE(text);
        ExpectCompensated(Stats(path, {"--compensate", Write(text, "matrix.csv")}));
    }
}

/// -0 has no business with a matrix that leaves its channel alone.
TEST_F(HostCompensation, LeavesUnchangedChannelsAsTheyAre) {
    FcsBuilder builder = FcsBuilder::Floats(3, {-0.0F, 4.0F, -0.0F});
    builder.Set("SPILL", "3,Par1,Par2,Par3,1,0.5,0,0,1,0,0,0,1");
    const std::string table = Run({"stats", Write(builder), "--format", "csv"}).out;
    for (const char* row : {"Par1,1,-0,-0,", "Par3,1,-0,-0,"})
        EXPECT_NE(table.find(row), std::string::npos) << table;
}

TEST_F(HostCompensation, UsesAMatrixOfAFileOnlyWhereItCan) {
    for (const auto& [text, expected] :
         Pairs{{"2,Par1,Par9,1,0.5,0,1", ": SPILL is \"Par9\""},
               {"2,Par1,3,1,0.5,0,1", ": SPILL is \"3\""},
               {"2,Par1,Par2,1,1,1,1", ": SPILL: condition number is \"inf"},
               {"2,Par1,Par2,1,1,1,1.0000001", ": SPILL: condition number is \"4"},
               {"2,Par1,1,1,0.5,0,1", ": SPILL is \"parameter 1 twice\""},
               {"2,Par1,Par2,1,0.5,x,1", ": spill-over matrix is missing"},
               {"2,Par1,Par2,1,0.5,0", ": spill-over matrix is missing"}}) {
        SCOPED_TRACE(text);
        const std::string path = Write(FcsBuilder::Small().Set("SPILL", text));
        const json file = Stats(path);
        EXPECT_EQ(Row(file, "Par2")["max"], 30);
        ASSERT_EQ(file["warnings"].size(), 1U) << file["warnings"];
        ExpectRefused({"stats", path, "--compensate", "file"}, expected);
        EXPECT_EQ(Run({"stats", path, "--strict"}).status, 1);
    }
}

TEST_F(HostCompensation, RefusesFilesThatHoldNoMatrix) {
    const std::string path = Write(FcsBuilder::Small());
    for (const auto& [text, expected] : Pairs{{"", "line 1 is missing"},
                                              {"Par1,Par2\n1,0.5\n", "the matrix is \"2 names and 1 lines"},
                                              {"Par1,Par2\n1,0.5\n0\n", "line 3 is \"1 fields\""},
                                              {"Par1,Par2\n\n1,0.5\n0,nan\n", "line 4, field 2 is \"nan\""},
                                              {"Par1,Par9\n1,0.5\n0,1\n", "matrix.csv is \"Par9\""},
                                              {"Par1,Par2\n1,2\n2,4\n", "matrix.csv: condition number is"}}) {
        ExpectRefused({"stats", path, "--compensate", Write(text, "matrix.csv")}, expected);
    }
    ExpectRefused({"stats", path, "--compensate", Path("missing.csv")}, "a file that exists");
}

}  // namespace
}  // namespace Orvane::Testing
