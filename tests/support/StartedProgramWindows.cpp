#include "platform/FilePath.h"
#include "platform/WindowsText.h"
#include "support/StartedProgram.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace tarnvexo::test {

namespace {

HANDLE OpenStream(const std::string& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(platform::Wide(file).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       &inherited, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

int RunStarted(const std::vector<std::string>& words, const StreamFiles& streams)
{
    std::wstring line;
    for (const std::string& word : words) {
        line += L"\"" + platform::Wide(word) + L"\" ";
    } // of tests: no quotes in it
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = OpenStream(streams.input, GENERIC_READ, OPEN_EXISTING);
    start.hStdOutput = OpenStream(streams.output, GENERIC_WRITE, CREATE_ALWAYS);
    start.hStdError =
        streams.error == streams.output ? start.hStdOutput : OpenStream(streams.error, GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION started = {};
    const bool isStarted =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started);
    DWORD exitCode = 0;
    if (isStarted) {
        WaitForSingleObject(started.hProcess, INFINITE);
        GetExitCodeProcess(started.hProcess, &exitCode);
        CloseHandle(started.hThread);
        CloseHandle(started.hProcess);
    }
    CloseHandle(start.hStdInput);
    CloseHandle(start.hStdOutput);
    if (start.hStdError != start.hStdOutput) {
        CloseHandle(start.hStdError);
    }
    if (!isStarted) {
        throw std::runtime_error(words.front() + " cannot be started: system error " + std::to_string(GetLastError()));
    }
    return static_cast<int>(exitCode);
}

std::string TextOfStream(const std::string& file)
{
    std::ifstream stream(platform::PathOf(file)); // in text mode
    std::string text(std::istreambuf_iterator<char>(stream), {});
    constexpr std::string_view wine = "Press any key to continue... "; // its words for "pause"; Windows has those:
    if (const std::size_t at = text.find(wine); at != std::string::npos) {
        text.replace(at, wine.size(), "Press any key to continue . . . ");
    }
    return text;
}

std::string ProgramPath()
{
    std::wstring path(32768, L'\0'); // the longest path
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return platform::Utf8(path);
}

} // namespace tarnvexo::test
