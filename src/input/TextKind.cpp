#include "input/TextKind.h"

#include "input/FormatScanner.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// Bytes that show whether a stream begins as a model file.
constexpr std::size_t EnoughToJudge = 4096;

bool IsUtf16(std::string_view text)
{
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           text.starts_with(std::string_view("#\0", 2)) || text.starts_with(std::string_view("\0#", 2));
}

} // namespace

TextFault FaultOfTextKind(std::string_view text)
{
    constexpr const char* aModel = "a model file, which is text from its first line \"### Quor_Tarn+Vexo ...\" on";
    if (std::all_of(text.begin(), text.end(), IsSpace)) {
        return {0, "the file is empty", aModel, "name another file, or write this one again"};
    }
    if (IsUtf16(text)) {
        return {0, "the file is written in UTF-16", "UTF-8 or plain ASCII", "save it as UTF-8"};
    }
    if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos) {
        return {zero, "the file is binary: it holds zero bytes", aModel, "name another file, or write this one again"};
    }
    return {};
}

bool MayBeModelText(std::string_view text, std::size_t newBytes)
{
    if (text.size() > LongestStream || text.substr(text.size() - newBytes).find('\0') != std::string_view::npos) {
        return false;
    }
    if (text.size() - newBytes >= EnoughToJudge || text.size() < EnoughToJudge) {
        return true;
    }
    const std::string_view begin = text.substr(0, EnoughToJudge);
    return begin.find("release=") != std::string_view::npos || begin.find("NMT=") != std::string_view::npos;
}

} // namespace tarnvexo
