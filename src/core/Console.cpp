#include "core/Console.h"

#include "platform/Platform.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace tarnvexo {

TextWriter& Console()
{
    // Small, so that a counter which is never flushed still moves before the user's eyes. The destructor hands on what
    // is left when main returns or std::exit is called.
    static TextWriter console(platform::WriteStandardOutput, 4096);
    return console;
}

void EndConsoleLine()
{
    Console().EndLine();
    FlushConsole();
}

void FlushConsole()
{
    Console().Flush();
}

void PrintConsole(const char* format, ...)
{
    va_list values;
    va_start(values, format);
    char shortText[256];
    va_list again;
    va_copy(again, values);
    const int size = std::vsnprintf(shortText, sizeof shortText, format, values);
    va_end(values);
    if (size >= 0 && static_cast<std::size_t>(size) < sizeof shortText) {
        Console().Text(std::string_view(shortText, static_cast<std::size_t>(size)));
    } else if (size > 0) {
        std::string longText(static_cast<std::size_t>(size), '\0');
        std::vsnprintf(longText.data(), longText.size() + 1, format, again);
        Console().Text(longText);
    }
    va_end(again);
}

void PrintConsoleLine(const char* text)
{
    Console().Text(text);
    EndConsoleLine();
}

} // namespace tarnvexo
