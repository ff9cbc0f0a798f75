// Pictures of events by the host program: what is drawn, what is refused, and the geometry underneath.
#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "host/plots/contour_lines.h"
#include "host/plots/gate_outlines.h"
#include "host/plots/plot_axes.h"
#include "host/plots/plot_canvas.h"
#include "support/gating_ml.h"
#include "support/host_program.h"
#include "support/pool.h"
#include "support/population.h"

namespace Orvane::Testing {
namespace {

struct Picture {
    int width;
    int height;
    std::vector<std::uint32_t> pixels;  ///< their colors, row by row
    std::string bytes;                  ///< of the PNG file
};

Picture ReadPicture(const std::string& path) {
    cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
    const auto* first = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface));
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    Picture picture{width, height, {first, first + std::ptrdiff_t{width} * height}, ReadFile(path)};
    cairo_surface_destroy(surface);
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFFU;
    return picture;
}

class HostPlot : public HostTest {
protected:
    /// Two clouds over two parameters and a third parameter without a value that could be drawn.
    std::string Clouds(const std::string& name = "a.fcs", int events = 600, float shift = 0) const {
        constexpr float Infinity = std::numeric_limits<float>::infinity();
        std::vector<float> values;
        std::mt19937 random(5);
        std::normal_distribution<float> spread;
        for (int event = 0; event < events; ++event) {
            const float center = event % 3 == 0 ? 0.0F : 5000.0F + shift;
            const float x = center + 300 * spread(random);
            const float y = 3000 - center / 4 + 200 * spread(random);
            values.insert(values.end(), {x, y, event % 2 == 0 ? std::nanf("") : Infinity});
        }
        return Write(FcsBuilder::Floats(3, values), name);
    }

    std::string Gates() const {
        return Write(Document(Rectangle("right", On("Par1", "min='2500'"))), "gates.xml");
    }

    /// Draws into a file of its own and returns the picture.
    Picture Draw(Strings options) const {
        const std::string path = Path("picture.png");
        std::filesystem::remove(path);
        options.insert(options.begin(), "plot");
        options.insert(options.end(), {"-o", path});
        const HostRun run = Run(options);
        EXPECT_EQ(run.status, 0) << run.err;
        said_ = run.out;
        return ReadPicture(path);
    }

    mutable std::string said_;
};

TEST_F(HostPlot, ContoursPutOutliersOnThePixelsThatDotPlotsPutThemOn) {
    Strings options{Clouds(), "--x", "Par1", "--y", "Par2", "--kind", "dot"};
    const std::vector<std::uint32_t> dots = Draw(options).pixels;
    options.back() = "contour";
    const std::vector<std::uint32_t> contours = Draw(options).pixels;
    int outliers = 0;
    for (std::size_t i = 0; i < dots.size(); ++i) {
        if (contours[i] != 0x464646 || dots[i] == 0x464646) continue;
        EXPECT_EQ(dots[i], 0x0072B2U) << i;
        ++outliers;
    }
    EXPECT_GT(outliers, 10);
}

TEST_F(HostPlot, DrawsEveryKindTheSameEveryTimeAndWithItsGates) {
    const std::string sample = Clouds();
    const std::string other = Clouds("b.fcs", 6000, 3000);
    const Strings kinds[] = {{"--x", "Par1"},
                             {"--x", "Par1", "--overlay", other},
                             {"--x", "Par1", "--y", "Par2"},
                             {"--x", "Par1", "--y", "Par2", "--kind", "dot"},
                             {"--x", "Par1", "--y", "Par2", "--kind", "contour", "--x-range", "-200,6000"},
                             {"--x", "Par1", "--y", "Par2", "--overlay", other}};
    std::set<std::string> pictures;
    for (Strings options : kinds) {
        const bool overlaid = std::count(options.begin(), options.end(), "--overlay") > 0;
        options.insert(options.begin(), sample);
        options.insert(options.end(), {"--size", "240x200", "--scale", "2"});
        const Picture picture = Draw(options);
        EXPECT_EQ(picture.width, 480);
        EXPECT_EQ(picture.height, 400);
        EXPECT_TRUE(Draw(options).bytes == picture.bytes);
        pictures.insert(picture.bytes);
        options.insert(options.end(), {"--gates", Gates()});
        if (!overlaid) pictures.insert(Draw(options).bytes);
        options.insert(options.end(), {"--population", "right"});
        pictures.insert(Draw(options).bytes);
        EXPECT_NE(said_.find(overlaid ? "\n4,400 of 6,600 events in 2 files\n" : "\n400 of 600 events\n"),
                  std::string::npos)
            << said_;
    }
    EXPECT_EQ(pictures.size(), 16U);
}

/// Nothing to see, or nothing to scale an axis by, is a picture, too.
TEST_F(HostPlot, DrawsValuesThatAreFewOrNoNumbers) {
    const std::string some = Clouds();
    const std::string none = Clouds("none.fcs", 0);
    const std::string one = Clouds("one.fcs", 1);
    const Strings kinds[] = {{"--x", "Par3"},
                             {"--x", "Par3", "--y", "Par1"},
                             {"--x", "Par1", "--y", "Par3", "--kind", "dot", "--y-scale", "asinh"},
                             {"--x", "Par1", "--y", "Par3", "--kind", "contour"},
                             {"--x", "Par1", "--y", "Par2", "--kind", "contour", "--x-range", "1e30,2e30"}};
    for (const std::string& sample : {some, none, one}) {
        for (Strings options : kinds) {
            const bool numbers = options.back() == "1e30,2e30" || sample == none;
            options.insert(options.end(), {sample, "--size", "160x160"});
            EXPECT_EQ(Draw(options).width, 160);
            EXPECT_EQ(said_.find("without a number") == std::string::npos, numbers) << said_;
        }
    }
}

TEST_F(HostPlot, RefusesWithoutTouchingWhatWasThere) {
    const std::string sample = Clouds();
    const std::string old = Write("old", "old.png");
    const std::string damaged = Write("FCS3.1", "damaged.fcs");
    for (const auto& [options, reason] : std::vector<std::pair<Strings, std::string>>{
             {{"--x", "Par9"}, "a.fcs: --x is \"Par9\", expected one of Par1, Par2, Par3"},
             {{"--x", "Par1", "--y", "Par0"}, "a.fcs: --y is \"Par0\""},
             {{"--x", "Par1", "--overlay", damaged}, "damaged.fcs: "},
             {{"--x", "Par1", "--gates", Gates(), "--population", "left"}, "expected one of All, right"}}) {
        Strings command{"plot", sample, "-o", old};
        command.insert(command.end(), options.begin(), options.end());
        ExpectRefused(command, reason);
        EXPECT_EQ(ReadFile(old), "old");
    }
    ExpectRefused({"plot", sample, "--x", "Par1", "-o", ""}, "", 2);
}

/// Few values far off do not squeeze the others unless a gate lies there.
TEST(PlotAxes, ShowMostValues) {
    using Host::ScaleChoice;
    const struct {
        ScaleChoice scale;
        float first;
        float last;
        float outlier;  ///< every hundred and fiftieth value
        double gate;
        bool isAsinh;
        double highFrom, highTo;
    } cases[] = {{ScaleChoice::Auto, 0, 1000, 1000, 0, false, 1000, 1100},
                 {ScaleChoice::Linear, 0, 1000, 1e6, 0, false, 1300, 1700},   // narrowed
                 {ScaleChoice::Linear, 0, 1000, 1e6, 9e5, false, 9e5, 1e6},   // as far as the gate
                 {ScaleChoice::Linear, 0, 1000, 1300, 0, false, 1300, 1400},  // not worth narrowing
                 {ScaleChoice::Auto, 0, 1000, 1e6, 0, true, 1e6, 2e6},
                 {ScaleChoice::Auto, 5e4, 1e5, -1, 0, true, 1e5, 2e5}};
    const SmallPool pool(4096);
    for (const auto& row : cases) {
        Floats values(6000);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = i % 150 == 0 ? row.outlier
                                     : std::lerp(row.first, row.last, static_cast<float>(i % 101) / 100);
        Sample sample(values);
        Host::AxisChoice choice;
        choice.scale = row.scale;
        choice.include = {row.gate};
        const Host::Axis axis = Host::ChooseAxis({{&sample.Sections, nullptr}}, choice, "");
        EXPECT_EQ(axis.alpha > 0, row.isAsinh);
        EXPECT_TRUE(axis.max >= row.highFrom && axis.max <= row.highTo) << axis.max;
    }
}

TEST(PlotAxes, AreLinearForScatterWidthAndTimeAndLeftToTheValuesForFluorescence) {
    Host::Parameter parameter;
    for (const char* name : {"FSC-A", "SSC-B-H", "fsc", "FS", "SS INT", "VSSC-A", "FL1-W", "Width", "Time"}) {
        parameter.name = name;
        EXPECT_EQ(Host::UsualScale(parameter), Host::ScaleChoice::Linear) << name;
    }
    for (const char* name : {"FITC-A", "FS1-A", "PE-Wide", "B530-H", "Lifetime"}) {
        parameter.name = name;
        EXPECT_EQ(Host::UsualScale(parameter), Host::ScaleChoice::Auto) << name;
    }
}

/// A pixel holds what lies between its edges, on either axis and scale.
TEST(PlotCanvas, PutsValuesOnThePixelThatTheyLieOn) {
    constexpr int Pixels = 50;
    for (const Host::Axis& axis : {Host::Axis{"", -10, 90, 0}, Host::Axis{"", -500, 2e5, 300}}) {
        const auto position = [&](double value) {
            return axis.alpha > 0 ? std::asinh(value / axis.alpha) : value;
        };
        const double width = (position(axis.max) - position(axis.min)) / Pixels;
        std::vector<float> values;
        std::vector<int> expected;
        for (double pixel = -1; pixel <= Pixels; ++pixel) {
            for (const double part : {0.03, 0.5, 0.97}) {
                const double place = position(axis.min) + (pixel + part) * width;
                values.push_back(static_cast<float>(axis.alpha > 0 ? std::sinh(place) * axis.alpha : place));
                expected.push_back(static_cast<int>(pixel) + 1);
            }
        }
        values.insert(values.end(),
                      {static_cast<float>(axis.min), static_cast<float>(axis.max), -1e30F, 1e30F});
        expected.insert(expected.end(), {1, Pixels + 1, 0, Pixels + 1});
        SignalSection signal;
        signal.Values = values.data();
        signal.Count = static_cast<int>(values.size());
        std::vector<unsigned short> xs(values.size());
        std::vector<unsigned short> ys(values.size());
        ModelSection model;
        model.Values = xs.data();
        Host::MakeTransformerX(axis, Pixels)->GetScreenSection(&signal, &model);
        model.Values = ys.data();
        Host::MakeTransformerY(axis, Pixels)->GetScreenSection(&signal, &model);
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(xs[i], expected[i]) << values[i];
            EXPECT_EQ(ys[i], Pixels + 1 - expected[i]) << values[i];
        }
    }
}

/// Lines part what is high from what is low, saddles and the border of the grid included.
TEST(ContourLines, EncloseExactlyTheCellsAboveTheLevel) {
    std::mt19937 random(3);
    for (int round = 0; round < 20; ++round) {
        Host::DensityGrid grid{9, 7, std::vector<float>(63)};
        for (float& cell : grid.cells)
            cell = static_cast<float>(random() % 8);
        const std::vector<Host::ContourLine> lines = Host::TraceContour(grid, 3.5F, {});
        for (int y = 0; y < grid.height; ++y) {
            for (int x = 0; x < grid.width; ++x) {
                bool inside = false;
                for (const Host::ContourLine& line : lines) {
                    for (std::size_t i = 0; i < line.points.size(); ++i) {
                        const Host::AreaPoint a = line.points[i];
                        const Host::AreaPoint b = line.points[(i + 1) % line.points.size()];
                        const double row = y + 0.5;
                        if ((a.y > row) == (b.y > row)) continue;
                        if (a.x + (row - a.y) / (b.y - a.y) * (b.x - a.x) > x + 0.5) inside = !inside;
                    }
                }
                EXPECT_EQ(inside, grid.cells[grid.Place(x, y)] > 3.5F);
            }
        }
    }
}

TEST(GateOutlines, FindTheValuesThatScalesMap) {
    for (const Host::Scale::Kind kind :
         {Host::Scale::Kind::Linear, Host::Scale::Kind::Log, Host::Scale::Kind::Asinh}) {
        const Host::Scale scale{kind, 262144, 4.5, 0.5, -0.25, 1.25};
        for (const float value : {30.0F, 4000.0F, 2e5F}) {
            float scaled = 0;
            Host::ApplyScale(scale, &value, &scaled, 1);
            EXPECT_NEAR(Host::InvertScale(scale, scaled), value, 2e-5 * value);
        }
        EXPECT_EQ(Host::InvertScale(scale, -0.25), -std::numeric_limits<double>::infinity());
        EXPECT_EQ(Host::InvertScale(scale, 1.5), std::numeric_limits<double>::infinity());
    }
}

}  // namespace
}  // namespace Orvane::Testing
