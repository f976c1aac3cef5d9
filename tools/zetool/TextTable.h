#pragma once

#include "tools/zetool/OutputFile.h"

#include <string>
#include <vector>

// Rows of text whose columns stand below each other, two blanks apart, under a row of heads. What commands
// show without `--json`.
class TextTable {
public:
    enum class Align { Left, Right };

    struct Column {
        const char* head;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns);

    // As many cells as there are columns. Cells that are missing are empty.
    void add(std::vector<std::string> cells);

    void write(OutputFile& output) const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};
