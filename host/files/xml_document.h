// XML as the readers of documents need it: elements and attributes by their local names, whatever prefix a
// writer has chosen, and refusals that name the element, the id that it belongs to and its line.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "files/findings.h"

namespace Host {

class XmlDocument;

/// One element. It must not outlive its document.
class XmlElement {
public:
    XmlElement(pugi::xml_node node, const XmlDocument& document) : node_(node), document_(&document) {}

    /// The name without its prefix.
    std::string Name() const;
    /// What the document binds the element's prefix to; empty when it binds nothing.
    std::string Namespace() const;
    /// The text of an element that holds nothing else.
    std::string Text() const { return node_.child_value(); }

    /// The value of an attribute, by its local name.
    std::optional<std::string> Attribute(std::string_view name) const;
    /// The same for one that must be there and hold something.
    std::string Require(std::string_view name, const char* expected) const;
    std::optional<double> Number(std::string_view name) const;
    double RequireNumber(std::string_view name) const;
    /// An attribute that is true or false; false when it is missing.
    bool Flag(std::string_view name) const;

    /// Every element below this one. Throws Refusal when the local name of one is not among `allowed`, but
    /// leaves out custom_info, which is for other programs.
    std::vector<XmlElement> Children(std::initializer_list<std::string_view> allowed) const;
    /// Those of one name, in any company.
    std::vector<XmlElement> Named(std::string_view name) const;

    /// `gates.xml, line 12: dimension of RectangleGate "R1"`, for messages.
    std::string Place() const;

    /// What the attribute or element called `what` holds, or that it is missing, and what was expected.
    [[noreturn]] void Refuse(std::string_view what, std::optional<std::string> value,
                             std::string expected) const;
    /// The same for a number of elements.
    [[noreturn]] void RefuseCount(std::string_view what, std::size_t count, std::string expected) const;

private:
    pugi::xml_node node_;
    const XmlDocument* document_;
};

/// A whole document in memory.
class XmlDocument {
public:
    /// Throws Refusal when the file cannot be read, is not well-formed or holds text that is not UTF-8.
    explicit XmlDocument(const std::string& path);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;
    ~XmlDocument() = default;

    XmlElement Root() const { return {document_.document_element(), *this}; }

    /// `gates.xml, line 12` for a position in the text.
    std::string Line(std::ptrdiff_t offset) const;

private:
    std::string path_;
    std::string text_;
    std::vector<std::ptrdiff_t> lineEnds_;
    pugi::xml_document document_;
};

}  // namespace Host
