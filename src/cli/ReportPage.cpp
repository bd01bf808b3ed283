#include "cli/ReportPage.h"

#include "cli/Quantities.h"

#include <algorithm>

namespace tarnvexo {

std::size_t TextWidth(std::string_view text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string PaddedRight(std::string_view text, std::size_t width)
{
    return std::string(text) + std::string(width - std::min(width, TextWidth(text)), ' ');
}

std::string PaddedLeft(std::string_view text, std::size_t width)
{
    return std::string(width - std::min(width, TextWidth(text)), ' ') + std::string(text);
}

void ReportPage::Row(std::string_view label, double value, std::string_view remark)
{
    Row(label, std::vector<std::string>{NumberText(value)}, remark);
}

void ReportPage::Row(std::string_view label, const Vector3& value, std::string_view remark)
{
    Row(label, std::vector<std::string>{NumberText(value[0]), NumberText(value[1]), NumberText(value[2])}, remark);
}

} // namespace tarnvexo
