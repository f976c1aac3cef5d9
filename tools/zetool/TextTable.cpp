#include "tools/zetool/TextTable.h"

#include <algorithm>

TextTable::TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {
    std::vector<std::string>& heads = m_rows.emplace_back();
    for (const Column& column : m_columns)
        heads.emplace_back(column.head);
}

void TextTable::add(std::vector<std::string> cells) {
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

void TextTable::write(OutputFile& output) const {
    std::vector<std::size_t> widths(m_columns.size());
    for (const auto& row : m_rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    std::string line;
    for (const auto& row : m_rows) {
        line.clear();
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string padding(widths[column] - row[column].size(), ' ');
            line += column > 0 ? "  " : "";
            line += m_columns[column].align == Align::Right ? padding + row[column] : row[column] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        output.write(line + "\n");
    }
}
