#include "gating/gating_ml_transformations.h"

#include <set>
#include <utility>

namespace Host {
namespace {

std::string RequireId(const XmlElement& element) {
    return element.Require("id", "a name to refer to it");
}

double RequirePositive(const XmlElement& element, std::string_view name) {
    const double value = element.RequireNumber(name);
    if (value <= 0) element.Refuse(name, element.Attribute(name), "a number above 0");
    return value;
}

/// From 0 to `top`, which is the parameter called `topName`.
double RequireUpTo(const XmlElement& element, std::string_view name, double top, const char* topName) {
    const double value = element.RequireNumber(name);
    if (value < 0 || value > top) {
        element.Refuse(name, element.Attribute(name), std::string("a number from 0 to ") + topName);
    }
    return value;
}

Scale ReadScale(const XmlElement& element) {
    Scale scale;
    scale.t = RequirePositive(element, "T");
    if (element.Name() == "flin") {
        scale.a = RequireUpTo(element, "A", scale.t, "T");
        return scale;
    }
    scale.m = RequirePositive(element, "M");
    scale.kind = Scale::Kind::Log;
    if (element.Name() == "fasinh") {
        scale.kind = Scale::Kind::Asinh;
        scale.a = RequireUpTo(element, "A", scale.m, "M");
    }
    return scale;
}

Ratio ReadRatio(const XmlElement& element) {
    const std::vector<XmlElement> names = element.Children({"fcs-dimension"});
    if (names.size() != 2) element.RefuseCount("fcs-dimension", names.size(), "two");
    Ratio ratio;
    ratio.parameters = {ReadParameterName(names[0]), ReadParameterName(names[1])};
    ratio.scale.a = element.RequireNumber("A");
    ratio.scale.b = element.RequireNumber("B");
    ratio.scale.c = element.RequireNumber("C");
    return ratio;
}

template <class Bounded>
void ReadBounds(const XmlElement& element, Bounded& scale) {
    scale.boundMin = element.Number("boundMin");
    scale.boundMax = element.Number("boundMax");
    if (scale.boundMin && scale.boundMax && *scale.boundMin > *scale.boundMax) {
        element.Refuse("boundMax", element.Attribute("boundMax"), "at least boundMin");
    }
}

std::vector<std::string> ReadNames(const XmlElement& matrix, std::string_view list) {
    std::vector<std::string> names;
    std::set<std::string> seen;
    for (const XmlElement& element : matrix.Named(list)) {
        for (const XmlElement& dimension : element.Children({"fcs-dimension"})) {
            names.push_back(ReadParameterName(dimension));
            if (!seen.insert(names.back()).second) {
                dimension.Refuse("name", names.back(), "a name that the list does not hold already");
            }
        }
    }
    if (names.empty()) matrix.Refuse(list, std::nullopt, "a list of fcs-dimension");
    return names;
}

void RequireCount(const XmlElement& element, const char* what, std::size_t count, std::size_t expected) {
    if (count == expected) return;
    element.RefuseCount(what, count, std::to_string(expected) + ", as many as fluorochromes");
}

}  // namespace

std::string ReadParameterName(const XmlElement& fcsDimension) {
    return fcsDimension.Require("name", "the name of a parameter");
}

void ReadTransformation(const XmlElement& element, Strategy& strategy) {
    constexpr const char* Known = "flin, flog, fasinh or fratio";
    const std::string id = RequireId(element);
    if (strategy.scales.contains(id) || strategy.ratios.contains(id)) {
        element.Refuse("id", id, "an id that no other transformation has");
    }
    const std::vector<XmlElement> kinds =
        element.Children({"flin", "flog", "fasinh", "fratio", "logicle", "hyperlog"});
    if (kinds.size() != 1) {
        element.RefuseCount("formula", kinds.size(), std::string("one of ") + Known);
    }
    const std::string kind = kinds[0].Name();
    if (kind == "logicle" || kind == "hyperlog") {
        kinds[0].Refuse("transformation", kind, std::string(Known) + "; this one is not supported");
    }
    if (kind == "fratio") {
        Ratio ratio = ReadRatio(kinds[0]);
        ReadBounds(element, ratio.scale);
        strategy.ratios.emplace(id, std::move(ratio));
        return;
    }
    Scale scale = ReadScale(kinds[0]);
    ReadBounds(element, scale);
    strategy.scales.emplace(id, scale);
}

void ReadSpectrumMatrix(const XmlElement& element, Strategy& strategy) {
    SpectrumMatrix matrix;
    matrix.place = element.Place();
    const std::string id = RequireId(element);
    if (id == Dimension::Uncompensated || id == Dimension::FileMatrix || strategy.matrices.contains(id)) {
        element.Refuse("id", id, "an id that no other matrix has");
    }
    if (element.Flag("matrix-inverted-already")) {
        element.Refuse("matrix-inverted-already", "true", "false; an inverted matrix is not supported");
    }
    element.Children({"fluorochromes", "detectors", "spectrum"});
    matrix.fluorochromes = ReadNames(element, "fluorochromes");
    matrix.detectors = ReadNames(element, "detectors");
    const std::size_t size = matrix.fluorochromes.size();
    RequireCount(element, "detectors", matrix.detectors.size(), size);
    const std::vector<XmlElement> rows = element.Named("spectrum");
    RequireCount(element, "spectrum", rows.size(), size);
    for (const XmlElement& row : rows) {
        const std::vector<XmlElement> coefficients = row.Children({"coefficient"});
        RequireCount(row, "coefficient", coefficients.size(), size);
        for (const XmlElement& coefficient : coefficients)
            matrix.coefficients.push_back(coefficient.RequireNumber("value"));
    }
    strategy.matrices.emplace(id, std::move(matrix));
}

}  // namespace Host
