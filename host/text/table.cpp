#include "text/table.h"

#include <algorithm>
#include <ostream>

#include "text/display.h"

namespace Host {

void Table::Print(std::ostream& out) const {
    std::vector<std::string> titles;
    std::vector<std::size_t> widths;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        titles.push_back(columns_[c].title);
        widths.push_back(CharacterCount(columns_[c].title));
        for (const auto& row : rows_)
            widths[c] = std::max(widths[c], CharacterCount(row[c]));
    }
    const auto print = [&](const std::vector<std::string>& row) {
        std::string line;
        for (std::size_t c = 0; c < row.size(); ++c) {
            const std::string padding(widths[c] - CharacterCount(row[c]), ' ');
            const bool left = columns_[c].align == Align::Left;
            line += "  " + (left ? row[c] + padding : padding + row[c]);
        }
        out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
    };
    print(titles);
    for (const auto& row : rows_)
        print(row);
}

}  // namespace Host
