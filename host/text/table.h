// Tables of aligned columns for people.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Host {

class Table {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string title;
        Align align;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// One cell per column, UTF-8 without control characters.
    void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

    void Print(std::ostream& out) const;

    const std::vector<Column>& Columns() const { return columns_; }
    const std::vector<std::vector<std::string>>& Rows() const { return rows_; }

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace Host
