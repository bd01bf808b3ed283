// cli/TextPage.h
// Lays out a report as text: headings, rows of a label and right-aligned numbers, long texts broken at blanks.
// Columns are counted in characters, not in bytes of UTF-8.
//
//     LABEL                                      x             y             z
//       centre of gravity                      0.5      0.400476     0.0289683  m
#pragma once

#include "cli/ReportPage.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

class TextPage final : public ReportPage {
public:
    static constexpr std::size_t Width = 100;
    static constexpr std::size_t SummaryWidth = 80; // of a window that was not made wider
    static constexpr std::size_t LabelWidth = 31;
    static constexpr std::size_t NumberWidth = 14;

    using ReportPage::Row;
    void Heading(std::string_view title) override; // a blank line before it, unless the page begins
    void ColumnTitles(const std::vector<std::string>& titles) override;
    // The remark is broken when it is long.
    void Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark = {}) override;
    void Text(std::string_view label, std::string_view text) override;
    void Line(std::string_view text) override;
    void Paragraph(std::string_view begin, std::string_view text) override;
    void SummaryLine(std::string_view label, std::string_view text) override;

    const std::string& Result() const { return page; }

private:
    // A paragraph of lines of at most `width` characters.
    void AddBroken(std::string_view begin, std::string_view text, std::size_t width);

    std::string page;
};

} // namespace tarnvexo
