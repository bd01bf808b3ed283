#include "core/Failure.h"

#include "core/Console.h"
#include "platform/Platform.h"

#include <cstdlib>

namespace tarnvexo {

void FailWithPause(const char* message)
{
    PrintConsoleLine(message);
    platform::Pause();
    std::exit(1);
}

void FailWithKey(const char* message)
{
    PrintConsoleLine(message);
    platform::WaitForKey();
    std::exit(1);
}

void FailWithDiagnostic(const char* text)
{
    FlushConsole();
    platform::WriteErrorOutput(std::string(text) + "\n");
    std::exit(1);
}

void Warn(const std::string& text)
{
    if (!text.empty()) {
        FlushConsole();
        platform::WriteErrorOutput(text + "\n");
    }
}

} // namespace tarnvexo
