#include "acquisition/blood.h"

namespace Host {
namespace {

/// One kind of cell: its share of the blood, its medians and how wide its scatter is spread.
struct Kind {
    int perMille;
    Cell median;
    double forwardSpread;
    double sideSpread;
};

constexpr std::array<Kind, 8> Kinds{{
    {180, {62000, 21000, {9000, 90, 14000, 60, 60, 30000}}, 0.10, 0.16},   // CD4 T cells
    {110, {60000, 22000, {8500, 26000, 90, 60, 60, 31000}}, 0.10, 0.16},   // CD8 T cells
    {20, {60000, 21000, {9500, 110, 100, 60, 60, 30000}}, 0.10, 0.16},     // T cells with neither
    {60, {58000, 20000, {70, 80, 80, 12000, 60, 27000}}, 0.10, 0.16},      // B cells
    {40, {63000, 24000, {80, 350, 80, 60, 60, 30000}}, 0.10, 0.16},        // NK cells
    {80, {98000, 52000, {200, 180, 900, 220, 16000, 24000}}, 0.11, 0.16},  // monocytes
    {460, {122000, 138000, {300, 280, 260, 300, 420, 9500}}, 0.10, 0.18},  // granulocytes
    {50, {14000, 8000, {50, 50, 50, 50, 50, 300}}, 0.35, 0.45},            // debris
}};

const Kind& DrawKind(Random& random) {
    int draw = random.Below(1000);
    for (const Kind& kind : Kinds) {
        draw -= kind.perMille;
        if (draw < 0) return kind;
    }
    return Kinds.back();
}

}  // namespace

Cell DrawCell(Random& random) {
    constexpr double DyeSpread = 0.35;
    const Kind& kind = DrawKind(random);
    Cell cell = kind.median;
    cell.forward *= random.Spread(kind.forwardSpread);
    cell.side *= random.Spread(kind.sideSpread);
    for (double& dye : cell.dyes)
        dye *= random.Spread(DyeSpread);
    return cell;
}

}  // namespace Host
