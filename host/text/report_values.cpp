#include "text/report_values.h"

#include "text/numbers.h"

namespace Host {

FloatJson OrNull(const std::optional<float>& value) {
    return value ? FloatJson(*value) : FloatJson(nullptr);
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string CsvNumber(const std::optional<float>& value) {
    return value ? Shortest(*value) : std::string();
}

}  // namespace Host
