// A table for a terminal or a text file: columns as wide as their widest cell, two blanks between them, a line of
// dashes under the headings.
#pragma once

#include <string>
#include <vector>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvHost {

struct sTABLE_COLUMN {
    std::string heading;
    bool isRightAligned = false; // for numbers
};

class KCTextTable {
  public:
    explicit KCTextTable(std::vector<sTABLE_COLUMN> columns) : m_columns(std::move(columns)) {}

    /// One cell a column; missing cells are empty, cells too many are dropped.
    void AddRow(std::vector<std::string> cells);
    /// Lines that end in a newline and in no blank.
    std::string ToText() const;

  private:
    std::vector<size_t> Widths() const;
    std::string Line(const std::vector<std::string>& cells, const std::vector<size_t>& widths) const;

    std::vector<sTABLE_COLUMN> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace kvKorvoV12_9_0_320::kvHost
