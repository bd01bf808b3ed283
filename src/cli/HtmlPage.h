// cli/HtmlPage.h
// A report as one HTML page without any other file: for a browser, for a mail, for paper. UTF-8.
#pragma once

#include "cli/ReportPage.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

// With &, <, > and quotation marks as HTML wants them; bytes that are no UTF-8 become U+FFFD.
std::string HtmlText(std::string_view text);

class HtmlPage final : public ReportPage {
public:
    // `title`: of the window and of the page.
    explicit HtmlPage(std::string_view title);

    using ReportPage::Row;
    void Heading(std::string_view title) override;
    void ColumnTitles(const std::vector<std::string>& titles) override;
    void Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark = {}) override;
    void Text(std::string_view label, std::string_view text) override;
    void Line(std::string_view text) override;
    // What stands under another in a text page does so here.
    void Paragraph(std::string_view begin, std::string_view text) override;
    void SummaryLine(std::string_view label, std::string_view text) override;

    // A picture with its width, in the format of a PNG file.
    void Picture(std::string_view caption, std::string_view png);

    std::string Result();

private:
    enum class Block { None, Table, Summary };
    void Begin(Block next);

    std::string page;
    Block block = Block::None;
};

} // namespace tarnvexo
