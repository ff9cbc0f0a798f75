// Gates: bytes are what is drawn, then points. Plain forms, fast forms and the models of the tests agree
// under every instruction set.
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/gate_models.h"

namespace {

using namespace Orvane::Testing;
using Fuzz::Input;

constexpr std::size_t MostPoints = 200;

Orvane::OVPoint TakePoint(Input& input) {
    const float x = input.TakeFloat();
    return {x, input.TakeFloat()};
}

Points TakePoints(Input& input, std::size_t count) {
    Points points;
    while (points.size() < count)
        points.push_back(TakePoint(input));
    return points;
}

/// One at least, so that there is a sample.
Points TakeSample(Input& input) {
    Points points{{0, 0}};
    while (!input.IsEmpty() && points.size() < MostPoints)
        points.push_back(TakePoint(input));
    return points;
}

Axis TakeAxis(Input& input) {
    Axis axis{};
    axis[0] = static_cast<float>(input.Below(2));
    for (std::size_t i = 1; i < axis.size(); ++i)
        axis[i] = 16 * input.TakeFloat();
    return axis;
}

void RunThresholds(Input& input) {
    const Points cuts = TakePoints(input, 2);
    ExpectThresholds(TakeSample(input), cuts[0].x, cuts[0].y, cuts[1].x, cuts[1].y);
}

void RunPolygon(Input& input) {
    constexpr std::array Grids = {0, 1, 2, 13, 64};
    const int grid = Grids[static_cast<std::size_t>(input.Below(5))];
    const Points vertices = TakePoints(input, std::size_t{1} + static_cast<std::size_t>(input.Below(40)));
    Points points = TakeSample(input);
    points.insert(points.end(), vertices.begin(), vertices.end());
    ExpectPolygon(vertices, points, {grid});
}

void RunHinged(Input& input) {
    const int wanted = input.Below(6) - 1;
    const Axis x = TakeAxis(input);
    const Axis y = TakeAxis(input);
    const Points drawn = TakePoints(input, 5);
    const HingedModel model{ScreenAxis<Orvane::OVCoordinateTransformerXFactory>(x),
                            ScreenAxis<Orvane::OVCoordinateTransformerYFactory>(y),
                            drawn[0],
                            {drawn[1], drawn[2], drawn[3], drawn[4]}};
    ExpectHinged(model, TakeSample(input), wanted);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::array Shapes = {RunThresholds, RunPolygon, RunHinged};
    const SmallPool pool(128);
    for (const Orvane::InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet scope(set);
        Input input(data, size);
        Shapes[static_cast<std::size_t>(input.Below(3))](input);
    }
    return 0;
}
