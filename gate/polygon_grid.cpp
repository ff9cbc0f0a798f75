#include "gate/polygon_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace Orvane {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

// No event of a grid has such a height.
constexpr OVPloygonEigenValue NeverCrossed{0.0, 0.0, Infinity, -Infinity, 0.0F, 0.0F};

CellAxis AxisOver(float min, float max, int cells) {
    return {min, static_cast<float>(cells) / (max - min), static_cast<float>(cells - 1)};
}

bool HasFiniteLine(const OVPloygonEigenValue& edge) {
    return std::isfinite(edge.Slope) && std::isfinite(edge.Intercept);
}

}  // namespace

bool PolygonGrid::Suits(const OVRect& rect, std::span<const OVPloygonEigenValue> edges) {
    constexpr int MostCells = 256;
    const bool hasArea = std::isnormal(MostCells / (rect.MaxX - rect.MinX)) &&
                         std::isnormal(MostCells / (rect.MaxY - rect.MinY));
    return hasArea && edges.size() < CellGrid::Many && std::all_of(edges.begin(), edges.end(), HasFiniteLine);
}

PolygonGrid::PolygonGrid(const OVRect& rect, std::span<const OVPloygonEigenValue> edges, int size)
    : rect_(rect),
      x_(AxisOver(rect.MinX, rect.MaxX, size)),
      y_(AxisOver(rect.MinY, rect.MaxY, size)),
      size_(size),
      edges_(edges.begin(), edges.end()) {
    edges_.push_back(NeverCrossed);
    const auto cells = static_cast<std::size_t>(size) * static_cast<std::size_t>(size);
    const auto none = static_cast<std::uint16_t>(edges.size());
    states_.assign(cells, 0);
    few_.assign(cells, {{none, none}});
    for (int row = 0; row < size; ++row) {
        below_.push_back(HeightBelow(row));
        above_.push_back(HeightAbove(row));
    }
    ListRows();
    for (int i = 0; i < none; ++i)
        EnterEdge(i);
    SumParities();
    MarkUneven();
}

CellGrid PolygonGrid::View() const {
    return {x_, y_, size_, states_.data(), few_.data(), rowStarts_.data(), rowEdges_.data(), edges_.data()};
}

std::size_t PolygonGrid::CellAt(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(size_) + static_cast<std::size_t>(column);
}

float PolygonGrid::HeightBelow(int row) const {
    if (row == 0) return rect_.MinY;
    float height = rect_.MinY + static_cast<float>(row) / y_.CellsPerUnit;
    for (const float step = 0.001F / y_.CellsPerUnit; y_.CellOf(height) >= row;)
        height = std::min(std::nextafter(height, -Infinity), height - step);
    return height;
}

float PolygonGrid::HeightAbove(int row) const {
    if (row == size_ - 1) return rect_.MaxY;
    float height = rect_.MinY + static_cast<float>(row + 1) / y_.CellsPerUnit;
    for (const float step = 0.001F / y_.CellsPerUnit; y_.CellOf(height) <= row;)
        height = std::max(std::nextafter(height, Infinity), height + step);
    return height;
}

void PolygonGrid::ListRows() {
    const auto edges = std::span(edges_).first(edges_.size() - 1);
    rowStarts_.assign(static_cast<std::size_t>(size_) + 1, 0);
    for (const OVPloygonEigenValue& edge : edges)
        for (int row = y_.CellOf(edge.MinY); row <= y_.CellOf(edge.MaxY); ++row)
            ++rowStarts_[static_cast<std::size_t>(row) + 1];
    std::partial_sum(rowStarts_.begin(), rowStarts_.end(), rowStarts_.begin());
    rowEdges_.resize(static_cast<std::size_t>(rowStarts_.back()));
    std::vector<int> next = rowStarts_;
    for (std::size_t i = 0; i < edges.size(); ++i)
        for (int row = y_.CellOf(edges[i].MinY); row <= y_.CellOf(edges[i].MaxY); ++row)
            rowEdges_[static_cast<std::size_t>(next[static_cast<std::size_t>(row)]++)] =
                static_cast<std::uint16_t>(i);
}

PolygonGrid::Columns PolygonGrid::ColumnsOf(const OVPloygonEigenValue& edge, int row) const {
    const auto at = static_cast<std::size_t>(row);
    const auto columnAt = [&](float height) {
        const double x = static_cast<double>(height) * edge.Slope + edge.Intercept;
        const double inRange = std::clamp<double>(x, rect_.MinX, rect_.MaxX);
        return x_.CellOf(static_cast<float>(inRange));
    };
    const int a = columnAt(std::max(edge.MinY, below_[at]));
    const int b = columnAt(std::min(edge.MaxY, above_[at]));
    return {std::min(a, b), std::max(a, b)};
}

void PolygonGrid::EnterEdge(int index) {
    const OVPloygonEigenValue& edge = edges_[static_cast<std::size_t>(index)];
    const int first = y_.CellOf(edge.MinY);
    const int last = y_.CellOf(edge.MaxY);
    for (int row = first; row <= last; ++row) {
        const Columns columns = ColumnsOf(edge, row);
        for (int column = columns.First; column <= columns.Last; ++column)
            AddToCell(CellAt(row, column), index);
        if (row == first) ends_.push_back({edge.MinY, columns.First});
        if (row == last) ends_.push_back({edge.MaxY, columns.First});
        // Until SumParities, Inside marks the last of the columns before an odd number of edges that enter
        // the row from below.
        if (row > first && columns.First > 0) states_[CellAt(row, columns.First - 1)] ^= CellGrid::Inside;
    }
}

void PolygonGrid::AddToCell(std::size_t cell, int index) {
    const auto none = static_cast<std::uint16_t>(edges_.size() - 1);
    CellGrid::FewEdges& few = few_[cell];
    states_[cell] |= CellGrid::Undecided;
    if (few.Index[0] == CellGrid::Many) return;
    auto* free = std::find(std::begin(few.Index), std::end(few.Index), none);
    if (free == std::end(few.Index)) {
        few.Index[0] = CellGrid::Many;
    } else {
        *free = static_cast<std::uint16_t>(index);
    }
}

void PolygonGrid::SumParities() {
    for (auto row = states_.begin(); row != states_.end(); row += size_) {
        std::uint8_t parity = 0;
        for (int column = size_ - 1; column >= 0; --column) {
            parity = static_cast<std::uint8_t>(parity ^ (row[column] & CellGrid::Inside));
            row[column] = static_cast<std::uint8_t>((row[column] & CellGrid::Undecided) | parity);
        }
    }
}

void PolygonGrid::MarkUneven() {
    std::sort(ends_.begin(), ends_.end(), [](const End& a, const End& b) {
        return a.Height != b.Height ? a.Height < b.Height : a.Column > b.Column;
    });
    for (std::size_t i = 0; i < ends_.size();) {
        const End& end = ends_[i];
        // An edge may have lost its partner to NaN.
        const bool isPair = i + 1 < ends_.size() && ends_[i + 1].Height == end.Height;
        MarkBetween(y_.CellOf(end.Height), isPair ? ends_[i + 1].Column : 0, end.Column);
        i += isPair ? 2 : 1;
    }
}

void PolygonGrid::MarkBetween(int row, int from, int to) {
    for (int column = from; column < to; ++column) {
        const std::size_t cell = CellAt(row, column);
        states_[cell] |= CellGrid::Undecided;
        few_[cell].Index[0] = CellGrid::Many;
    }
}

}  // namespace Orvane
