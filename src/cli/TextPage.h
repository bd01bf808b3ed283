// cli/TextPage.h
// Lays out a report as text: headings, rows of a label and right-aligned numbers, long texts broken at blanks.
// Columns are counted in characters, not in bytes of UTF-8.
//
//     LABEL                                      x             y             z
//       centre of gravity                      0.5      0.400476     0.0289683  m
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

class TextPage;

// A line of a summary, which has short labels and long texts.
void AddSummaryLine(TextPage& page, std::string_view label, std::string_view text);

class TextPage {
public:
    static constexpr std::size_t Width = 100;
    static constexpr std::size_t LabelWidth = 31;
    static constexpr std::size_t NumberWidth = 14;

    void Heading(std::string_view title); // a blank line before it, unless the page begins
    void ColumnTitles(const std::vector<std::string>& titles);
    // Label, numbers in columns, then a remark (a unit, a place), which is broken when it is long.
    void Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark = {});
    void Row(std::string_view label, double value, std::string_view remark = {});
    void Row(std::string_view label, const Vector3& value, std::string_view remark = {}); // x, y, z
    // Label and a text beside it.
    void Text(std::string_view label, std::string_view text);
    void Line(std::string_view text); // as it is, however long
    // A text of one or several lines, the first behind `begin`, the others as far to the right.
    void Paragraph(std::string_view begin, std::string_view text);

    const std::string& Result() const { return page; }

private:
    std::string page;
};

} // namespace tarnvexo
