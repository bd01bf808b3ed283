// cli/ReportPage.h
// What a report is made of, whatever it is shown on (cli/TextPage, cli/HtmlPage): headings, rows of a label and numbers
// in columns, texts. Reports are written once against it.
#pragma once

#include "core/Vector3.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

// Characters of a UTF-8 text.
std::size_t TextWidth(std::string_view text);

// Blanks in front or behind, up to a width.
std::string PaddedLeft(std::string_view text, std::size_t width);
std::string PaddedRight(std::string_view text, std::size_t width);

class ReportPage {
public:
    virtual ~ReportPage() = default;

    virtual void Heading(std::string_view title) = 0;
    virtual void ColumnTitles(const std::vector<std::string>& titles) = 0;
    // Label, numbers in columns, then a remark (a unit, a place).
    virtual void Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark = {}) = 0;
    void Row(std::string_view label, double value, std::string_view remark = {});
    void Row(std::string_view label, const Vector3& value, std::string_view remark = {}); // x, y, z
    // Label and a text beside it.
    virtual void Text(std::string_view label, std::string_view text) = 0;
    virtual void Line(std::string_view text) = 0; // as it is, however long
    // A text of one or several lines, the first behind `begin`, the others as far to the right.
    virtual void Paragraph(std::string_view begin, std::string_view text) = 0;
    // A line of a summary, which has short labels and long texts.
    virtual void SummaryLine(std::string_view label, std::string_view text) = 0;
};

} // namespace tarnvexo
