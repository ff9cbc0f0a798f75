#include "files/xml_document.h"

#include <algorithm>
#include <utility>

#include "files/input_file.h"
#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::optional<std::string> FindAttribute(pugi::xml_node node, std::string_view name) {
    for (const pugi::xml_attribute attribute : node.attributes()) {
        const std::string_view full = attribute.name();
        if (LocalName(full) == name && !full.starts_with("xmlns")) return attribute.value();
    }
    return std::nullopt;
}

/// Refuses text that is not UTF-8 once the document's encoding is undone: wrong bytes, and references to
/// characters that there are not. The parser lets both through.
class UnicodeCheck : public pugi::xml_tree_walker {
public:
    explicit UnicodeCheck(const XmlDocument& document) : document_(document) {}

    bool for_each(pugi::xml_node& node) override {
        Check(node, node.name());
        Check(node, node.value());
        for (const pugi::xml_attribute attribute : node.attributes()) {
            Check(node, attribute.name());
            Check(node, attribute.value());
        }
        return true;
    }

private:
    void Check(pugi::xml_node node, std::string_view text) const {
        if (!IsUtf8(text)) Refuse(document_.Line(node.offset_debug()), text, "text in UTF-8");
    }

    const XmlDocument& document_;
};

}  // namespace

std::string XmlElement::Name() const {
    return std::string(LocalName(node_.name()));
}

std::string XmlElement::Namespace() const {
    const std::string_view name = node_.name();
    const std::size_t colon = name.find(':');
    const std::string key =
        colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    return node_.attribute(key.c_str()).value();
}

std::optional<std::string> XmlElement::Attribute(std::string_view name) const {
    return FindAttribute(node_, name);
}

std::string XmlElement::Require(std::string_view name, const char* expected) const {
    std::optional<std::string> value = Attribute(name);
    if (!value || value->empty()) Refuse(name, value, expected);
    return *std::move(value);
}

std::optional<double> XmlElement::Number(std::string_view name) const {
    const std::optional<std::string> text = Attribute(name);
    if (!text) return std::nullopt;
    const std::optional<double> number = ParseNumber(*text);
    if (!number) Refuse(name, text, "a number");
    return number;
}

double XmlElement::RequireNumber(std::string_view name) const {
    const std::optional<double> number = Number(name);
    if (!number) Refuse(name, std::nullopt, "a number");
    return *number;
}

bool XmlElement::Flag(std::string_view name) const {
    const std::string text = Attribute(name).value_or("false");
    const bool set = text == "true" || text == "1";
    if (!set && text != "false" && text != "0") Refuse(name, text, "true or false");
    return set;
}

std::vector<XmlElement> XmlElement::Children(std::initializer_list<std::string_view> allowed) const {
    std::vector<XmlElement> children;
    for (const pugi::xml_node node : node_.children()) {
        if (node.type() != pugi::node_element) continue;
        const XmlElement child(node, *document_);
        const std::string name = child.Name();
        if (name == "custom_info") continue;
        if (std::find(allowed.begin(), allowed.end(), name) == allowed.end()) {
            std::string expected;
            for (const std::string_view one : allowed)
                expected += (expected.empty() ? "" : ", ") + std::string(one);
            child.Refuse("element", name, expected.empty() ? "nothing" : "one of " + expected);
        }
        children.push_back(child);
    }
    return children;
}

std::vector<XmlElement> XmlElement::Named(std::string_view name) const {
    std::vector<XmlElement> children;
    for (const pugi::xml_node node : node_.children()) {
        if (node.type() == pugi::node_element && LocalName(node.name()) == name) {
            children.emplace_back(node, *document_);
        }
    }
    return children;
}

std::string XmlElement::Place() const {
    std::string place = document_->Line(node_.offset_debug()) + ": " + Name();
    for (pugi::xml_node node = node_; node.type() == pugi::node_element; node = node.parent()) {
        const std::optional<std::string> id = FindAttribute(node, "id");
        if (!id) continue;
        if (node != node_) place += " of " + std::string(LocalName(node.name()));
        return place + " \"" + *id + '"';
    }
    return place;
}

void XmlElement::Refuse(std::string_view what, std::optional<std::string> value, std::string expected) const {
    throw Refusal({Place() + ": " + std::string(what), std::move(value), std::move(expected)});
}

void XmlElement::RefuseCount(std::string_view what, std::size_t count, std::string expected) const {
    Refuse(what, std::to_string(count) + " elements", std::move(expected));
}

XmlDocument::XmlDocument(const std::string& path) : path_(path) {
    InputFile file(path);
    text_ = file.ReadWhole();
    for (std::size_t i = text_.find('\n'); i != std::string::npos; i = text_.find('\n', i + 1))
        lineEnds_.push_back(static_cast<std::ptrdiff_t>(i));
    const pugi::xml_parse_result result = document_.load_buffer(text_.data(), text_.size());
    if (!result) {
        const auto offset = std::min(static_cast<std::size_t>(result.offset), text_.size());
        Host::Refuse(Line(result.offset), text_.substr(offset),
                     std::string("well-formed XML (") + result.description() + ")");
    }
    UnicodeCheck check(*this);
    document_.traverse(check);
}

std::string XmlDocument::Line(std::ptrdiff_t offset) const {
    const auto end = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), offset);
    const auto line = 1 + (end - lineEnds_.begin());
    return path_ + ", line " + std::to_string(line);
}

}  // namespace Host
