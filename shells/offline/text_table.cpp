#include "text_table.h"

#include <algorithm>

#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {

void KCTextTable::AddRow(std::vector<std::string> cells) {
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

std::vector<size_t> KCTextTable::Widths() const {
    std::vector<size_t> widths;
    for (size_t column = 0; column < m_columns.size(); ++column) {
        size_t width = TextWidth(m_columns[column].heading);
        for (const std::vector<std::string>& row : m_rows)
            width = std::max(width, TextWidth(row[column]));
        widths.push_back(width);
    }
    return widths;
}

std::string KCTextTable::Line(const std::vector<std::string>& cells, const std::vector<size_t>& widths) const {
    std::string line;
    for (size_t column = 0; column < cells.size(); ++column) {
        const std::string padding(widths[column] - TextWidth(cells[column]), ' ');
        line += column > 0 ? "  " : "";
        line += m_columns[column].isRightAligned ? padding + cells[column] : cells[column] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string KCTextTable::ToText() const {
    const std::vector<size_t> widths = Widths();
    std::vector<std::string> headings;
    std::vector<std::string> dashes;
    for (size_t column = 0; column < m_columns.size(); ++column) {
        headings.push_back(m_columns[column].heading);
        dashes.emplace_back(widths[column], '-');
    }
    std::string text = Line(headings, widths) + Line(dashes, widths);
    for (const std::vector<std::string>& row : m_rows)
        text += Line(row, widths);
    return text;
}

} // namespace kvKorvoV12_9_0_320::kvHost
