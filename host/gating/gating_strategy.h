// A gating strategy as a Gating-ML 2.0 document describes it: gates, the transformations and matrices that
// they refer to, and an order in which they can be evaluated. Nothing here knows a file or its events.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "gating/scales.h"

namespace Host {

/// What a gate looks at. References are names until they are looked up; `place` says where they stand.
struct Dimension {
    static constexpr const char* Uncompensated = "uncompensated";
    static constexpr const char* FileMatrix = "FCS";

    std::string place;
    std::string compensation;    ///< Uncompensated, FileMatrix or the id of a matrix
    std::string parameter;       ///< a $PnN, or a fluorochrome of the matrix; empty for a ratio
    std::string ratio;           ///< the id of a ratio; empty for a parameter
    std::string transformation;  ///< the id of a scale; empty for none
};

/// Values v with min <= v < max; a side that is missing is open.
struct Range {
    Dimension dimension;
    std::optional<double> min;
    std::optional<double> max;
};

/// Inside all of its ranges. A quadrant is one, too.
struct RectangleGate {
    std::vector<Range> ranges;
};

struct Vertex {
    float x;
    float y;
};

struct PolygonGate {
    Dimension x;
    Dimension y;
    std::vector<Vertex> vertices;
};

/// One gate, or all that is outside it.
struct Operand {
    std::string place;
    std::string gate;
    bool complement;
    std::size_t index = 0;  ///< of the gate
};

/// "Not" is an and of one complement.
struct BooleanGate {
    bool isAnd = true;
    std::vector<Operand> operands;
};

struct Gate {
    std::string place;
    std::string id;
    std::string parent;  ///< an id; empty for every event
    std::variant<RectangleGate, PolygonGate, BooleanGate> shape;
    std::optional<std::size_t> parentIndex;

    /// What its ranges or axes look at.
    std::vector<const Dimension*> Dimensions() const;
};

/// Row i: what one unit of fluorochrome i gives in each of as many detectors.
struct SpectrumMatrix {
    std::string place;
    std::vector<std::string> fluorochromes;
    std::vector<std::string> detectors;
    std::vector<double> coefficients;
};

/// A ratio of two parameters: a (x - b) / (y - c).
struct Ratio {
    std::array<std::string, 2> parameters;
    RatioScale scale;
};

struct Strategy {
    /// Stands for every event; no gate may have this name.
    static constexpr const char* Everything = "All";

    std::vector<Gate> gates;
    std::map<std::string, Scale> scales;
    std::map<std::string, Ratio> ratios;
    std::map<std::string, SpectrumMatrix> matrices;
    std::vector<std::size_t> evaluationOrder;  ///< indexes of gates, each behind those that it refers to
    std::vector<std::size_t> treeOrder;        ///< each behind its parent, with all below it before the next
};

/// Looks up every reference and fills in indexes and orders. Throws Refusal for a reference to something that
/// is not there, and for gates that refer to each other in a circle.
void Link(Strategy& strategy);

}  // namespace Host
