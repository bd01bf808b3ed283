#include "cli/HtmlPage.h"

#include "core/Base64.h"

namespace tarnvexo {

namespace {

constexpr const char* Columns = "6"; // of a table: label, four numbers, remark

constexpr const char* Style = R"(
:root { color-scheme: light dark; }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2rem auto; max-width: 62rem; padding: 0 1rem; }
h1 { font-size: 1.5rem; margin: 0 0 1rem; overflow-wrap: anywhere; }
h2 { font-size: 1.05rem; margin: 1.8rem 0 .4rem; border-bottom: 1px solid #8886; padding-bottom: .2rem; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; }
th, td { padding: .12rem .6rem .12rem 0; vertical-align: baseline; }
th { font-weight: normal; text-align: left; min-width: 14rem; }
td { text-align: right; white-space: nowrap; min-width: 5.5rem; }
td.remark, td.text { text-align: left; white-space: normal; overflow-wrap: anywhere; }
tr.titles td, tr.titles th { color: #777; }
table.summary { background: #8881; margin: .4rem 0; width: 100%; }
table.summary th { min-width: 11rem; width: 11rem; padding-left: .6rem; color: #777; }
p.line { white-space: pre-wrap; overflow-wrap: anywhere; margin: .1rem 0; font: 13px/1.4 ui-monospace, monospace; }
p.aligned { white-space: pre-wrap; overflow-wrap: anywhere; margin: .1rem 0; font: 13px/1.4 ui-monospace, monospace; }
figure { margin: 1rem 0; break-inside: avoid; }
figure img { max-width: 100%; height: auto; border: 1px solid #8886; }
figcaption { color: #777; font-size: .9rem; }
@media print {
  body { margin: 0; max-width: none; font-size: 10pt; }
  h2 { break-after: avoid; }
  tr, p { break-inside: avoid; }
}
)";

// Length of the UTF-8 character that begins a text; 0 where none does.
std::size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = byte(0) < 0x80                      ? 1
                               : byte(0) >= 0xC2 && byte(0) < 0xE0 ? 2
                               : byte(0) >= 0xE0 && byte(0) < 0xF0 ? 3
                               : byte(0) >= 0xF0 && byte(0) < 0xF5 ? 4
                                                                   : 0;
    if (length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

std::string Element(std::string_view tag, std::string_view text)
{
    return "<" + std::string(tag) + ">" + HtmlText(text) + "</" + std::string(tag.substr(0, tag.find(' '))) + ">";
}

std::string WithoutBlanksAround(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string_view::npos ? std::string()
                                           : std::string(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
}

} // namespace

std::string HtmlText(std::string_view text)
{
    std::string html;
    html.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        switch (text.front()) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            if (length == 0) {
                html += "\uFFFD";
            } else {
                html += text.substr(0, length);
            }
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return html;
}

HtmlPage::HtmlPage(std::string_view title)
{
    page = "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n" +
           Element("title", title) + "\n<style>" + Style + "</style>\n</head>\n<body>\n" + Element("h1", title) + "\n";
}

// Ends what is open unless it goes on.
void HtmlPage::Begin(Block next)
{
    if (block == next) {
        return;
    }
    if (block != Block::None) {
        page += "</table>\n";
    }
    page += next == Block::Table ? "<table>\n" : next == Block::Summary ? "<table class=\"summary\">\n" : "";
    block = next;
}

void HtmlPage::Heading(std::string_view title)
{
    Begin(Block::None);
    const std::size_t end = title.find("   "); // titles of columns stand behind
    page += Element("h2", title.substr(0, end)) + "\n";
    if (end != std::string_view::npos) {
        Line(std::string(TextWidth(title.substr(0, end)), ' ') + std::string(title.substr(end)));
    }
}

void HtmlPage::ColumnTitles(const std::vector<std::string>& titles)
{
    Begin(Block::Table);
    page += "<tr class=\"titles\"><th></th>";
    for (const std::string& title : titles) { page += Element("td", title); }
    page += "</tr>\n";
}

void HtmlPage::Row(std::string_view label, const std::vector<std::string>& columns, std::string_view remark)
{
    Begin(Block::Table);
    page += "<tr>" + Element("th", WithoutBlanksAround(label));
    for (const std::string& column : columns) { page += Element("td", column); }
    if (!remark.empty()) {
        page += "<td class=\"remark\" colspan=\"" + std::string(Columns) + "\">" + HtmlText(remark) + "</td>";
    }
    page += "</tr>\n";
}

void HtmlPage::Text(std::string_view label, std::string_view text)
{
    Begin(Block::Table);
    page += "<tr>" + Element("th", label) + "<td class=\"text\" colspan=\"" + Columns + "\">" + HtmlText(text) +
            "</td></tr>\n";
}

void HtmlPage::Line(std::string_view text)
{
    Begin(Block::None);
    page += "<p class=\"line\">" + HtmlText(text) + "</p>\n";
}

void HtmlPage::Paragraph(std::string_view begin, std::string_view text)
{
    Begin(Block::None);
    const std::string indent = std::to_string(TextWidth(begin)) + "ch";
    page += "<p class=\"aligned\" style=\"padding-left:" + indent + ";text-indent:-" + indent + "\">" +
            HtmlText(begin) + HtmlText(text) + "</p>\n";
}

void HtmlPage::SummaryLine(std::string_view label, std::string_view text)
{
    Begin(Block::Summary);
    page += "<tr>" + Element("th", label) + "<td class=\"text\">" + HtmlText(text) + "</td></tr>\n";
}

void HtmlPage::Picture(std::string_view caption, std::string_view png)
{
    Begin(Block::None);
    page += "<figure><img alt=\"" + HtmlText(caption) + "\" src=\"data:image/png;base64," + Base64(png) + "\">" +
            Element("figcaption", caption) + "</figure>\n";
}

std::string HtmlPage::Result()
{
    Begin(Block::None);
    return page + "</body>\n</html>\n";
}

} // namespace tarnvexo
