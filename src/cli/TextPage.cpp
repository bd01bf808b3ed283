#include "cli/TextPage.h"

#include "cli/Quantities.h"

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

} // namespace

std::size_t TextWidth(std::string_view text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string PaddedRight(std::string_view text, std::size_t width)
{
    return std::string(text) + Blanks(width - std::min(width, TextWidth(text)));
}

std::string PaddedLeft(std::string_view text, std::size_t width)
{
    return Blanks(width - std::min(width, TextWidth(text))) + std::string(text);
}

void AddSummaryLine(TextPage& page, std::string_view label, std::string_view text)
{
    constexpr std::size_t labelWidth = 22;
    page.Paragraph("  " + PaddedRight(label, labelWidth), text);
}

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

void TextPage::Row(std::string_view label, double value, std::string_view remark)
{
    Row(label, std::vector<std::string>{NumberText(value)}, remark);
}

void TextPage::Row(std::string_view label, const Vector3& value, std::string_view remark)
{
    Row(label, std::vector<std::string>{NumberText(value[0]), NumberText(value[1]), NumberText(value[2])}, remark);
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
    const std::size_t indent = TextWidth(begin);
    page += begin;
    bool first = true;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        for (const std::string& piece : BrokenLine(text.substr(at, end - at), Width - indent)) {
            page += (first ? "" : Blanks(indent)) + piece + "\n";
            first = false;
        }
        at = end + 1;
    }
}

} // namespace tarnvexo
