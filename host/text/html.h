// Writing HTML: everything that is not a tag is escaped, and every element that is opened is closed.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace Host {

/// `bytes` from anywhere as text of an element or of a quoted attribute: UTF-8, control characters shown as
/// escapes, nothing left that is markup.
std::string Escape(std::string_view bytes);

class Html {
public:
    using Attributes = std::initializer_list<std::pair<const char*, std::string_view>>;

    /// An element that lasts as long as this object: what is added meanwhile is inside it.
    class Element {
    public:
        Element(Html& html, const char* tag, Attributes attributes = {}) : html_(html), tag_(tag) {
            html_.OpenTag(tag, attributes);
        }
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        ~Element() { html_.CloseTag(tag_); }

    private:
        Html& html_;
        const char* tag_;
    };

    void Text(std::string_view text) { out_ += Escape(text); }

    /// An element that holds nothing but `text`.
    void Leaf(const char* tag, std::string_view text, Attributes attributes = {});

    /// An element without content or end tag.
    void Void(const char* tag, Attributes attributes) { OpenTag(tag, attributes); }

    /// Markup that the program itself is made of.
    void Raw(std::string_view markup) { out_ += markup; }

    const std::string& Markup() const { return out_; }

private:
    void OpenTag(const char* tag, Attributes attributes);
    void CloseTag(const char* tag);

    std::string out_;
};

}  // namespace Host
