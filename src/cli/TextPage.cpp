#include "cli/TextPage.h"

#include <algorithm>

namespace tarnvexo {

namespace {

constexpr const char* Margin = "  ";

std::string Blanks(std::size_t count)
{
    return std::string(count, ' ');
}

// One line in pieces of at most `width` characters, cut at blanks; a longer word stays whole.
std::vector<std::string> BrokenLine(std::string_view line, std::size_t width)
{
    std::vector<std::string> pieces;
    while (TextWidth(line) > width) {
        // The last blank within the width that has a word before it, else the first one behind it.
        const std::size_t wordBegin = std::min(line.find_first_not_of(' '), line.size());
        std::size_t cut = std::string_view::npos;
        for (std::size_t blank = line.find(' ', wordBegin); blank != std::string_view::npos;
             blank = line.find(' ', blank + 1)) {
            if (cut != std::string_view::npos && TextWidth(line.substr(0, blank)) > width) {
                break;
            }
            cut = blank;
        }
        if (cut == std::string_view::npos) {
            break;
        }
        pieces.emplace_back(line.substr(0, cut));
        line.remove_prefix(std::min(line.find_first_not_of(' ', cut), line.size()));
    }
    pieces.emplace_back(line);
    return pieces;
}

// Size of the first item of a list, with its comma or semicolon; those within brackets separate nothing.
std::size_t FirstItem(std::string_view list)
{
    int depth = 0;
    for (std::size_t i = 0; i + 1 < list.size(); ++i) {
        depth += list[i] == '(' ? 1 : list[i] == ')' ? -1 : 0;
        if (depth == 0 && (list[i] == ',' || list[i] == ';') && list[i + 1] == ' ') {
            return i + 1;
        }
    }
    return list.size();
}

// A list in lines of as many items as `width` characters hold.
std::string ListInLines(std::string_view list, std::size_t width)
{
    std::string lines;
    std::size_t used = 0; // characters of the last line
    while (!list.empty()) {
        const std::string_view item = list.substr(0, FirstItem(list));
        list.remove_prefix(std::min(item.size() + 1, list.size()));
        const bool fits = used + 1 + TextWidth(item) <= width;
        lines += used == 0 ? "" : fits ? " " : "\n";
        lines += item;
        used = (used > 0 && fits ? used + 1 : 0) + TextWidth(item);
    }
    return lines;
}

} // namespace

void TextPage::Heading(std::string_view title)
{
    page += page.empty() ? "" : "\n";
    page += title;
    page += "\n";
}

void TextPage::ColumnTitles(const std::vector<std::string>& titles)
{
    Row("", titles);
}

void TextPage::Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark)
{
    std::string line = Margin + PaddedRight(label, LabelWidth);
    for (const std::string& column : columns) { line += PaddedLeft(column, NumberWidth); }
    if (remark.empty()) {
        page += line + "\n";
    } else {
        Paragraph(line + Margin, remark);
    }
}

void TextPage::SummaryLine(std::string_view label, std::string_view text)
{
    constexpr std::size_t labelWidth = 22;
    const std::string begin = Margin + PaddedRight(label, labelWidth);
    AddBroken(begin, ListInLines(text, SummaryWidth - TextWidth(begin)), SummaryWidth);
}

void TextPage::Text(std::string_view label, std::string_view text)
{
    Paragraph(Margin + PaddedRight(label, LabelWidth) + Margin, text);
}

void TextPage::Line(std::string_view text)
{
    page += Margin;
    page += text;
    page += "\n";
}

void TextPage::Paragraph(std::string_view begin, std::string_view text)
{
    AddBroken(begin, text, Width);
}

void TextPage::AddBroken(std::string_view begin, std::string_view text, std::size_t width)
{
    const std::size_t indent = TextWidth(begin);
    page += begin;
    bool first = true;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        for (const std::string& piece : BrokenLine(text.substr(at, end - at), width - indent)) {
            page += (first ? "" : Blanks(indent)) + piece + "\n";
            first = false;
        }
        at = end + 1;
    }
}

} // namespace tarnvexo
