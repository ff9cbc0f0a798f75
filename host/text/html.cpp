#include "text/html.h"

#include "text/display.h"

namespace Host {

std::string Escape(std::string_view bytes) {
    std::string text;
    for (const char c : Printable(bytes)) {
        switch (c) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            case '\'':
                text += "&#39;";
                break;
            default:
                text += c;
        }
    }
    return text;
}

void Html::Leaf(const char* tag, std::string_view text, Attributes attributes) {
    OpenTag(tag, attributes);
    Text(text);
    CloseTag(tag);
}

void Html::OpenTag(const char* tag, Attributes attributes) {
    out_ += '<';
    out_ += tag;
    for (const auto& [name, value] : attributes) {
        out_ += ' ';
        out_ += name;
        out_ += "=\"" + Escape(value) + '"';
    }
    out_ += '>';
}

void Html::CloseTag(const char* tag) {
    out_ += "</";
    out_ += tag;
    out_ += '>';
}

}  // namespace Host
