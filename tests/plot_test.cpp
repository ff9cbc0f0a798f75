// Rasters and dot plots against naive models.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include <orvane/orvane.h>

#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"

namespace Orvane::Testing {
namespace {

TEST(Bitmap, LevelsOfCounts) {
    Raster raster(5, 1);
    raster.Storage = {200, 1, 0, 100, 101, 0, 0, 0};
    raster.Bits = raster.Storage.data();
    raster.SetDataIndexByMaxAndLevel(200, 0.1F);
    EXPECT_EQ(raster.Storage, (Cells{10, 1, 0, 5, 6, 0, 0, 0}));
}

}  // namespace
}  // namespace Orvane::Testing
