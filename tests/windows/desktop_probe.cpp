// What a user of Windows sees, read back through Windows itself: message boxes and console windows.
//
//     desktop_probe box                          waits for a message box; its caption and its text, a line each
//     desktop_probe own-console PROGRAM ARGS...  as a double click: a console window that is the program's own
//     desktop_probe console CODEPAGE PROGRAM ... in a console window of this program, with that code page
//     desktop_probe interrupted TEXT PROGRAM ... the same, and Ctrl-C as soon as the window shows the text
//
// The consoles: waits until the program has ended or asks for a key, then writes what the window shows. A program that
// asks gets its key. Then "key: yes|no" and "exit code: N". All output is UTF-8. Exit code 1: waited in vain.
#include "platform/Platform.h"
#include "platform/WindowsText.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using tarnvexo::platform::Utf8;
using tarnvexo::platform::Wide;

constexpr DWORD Step = 50;         // milliseconds
constexpr DWORD Patience = 30'000; // milliseconds

// A text of another program's window; empty when that does not answer at once.
std::string TextOf(HWND window)
{
    constexpr UINT patience = 500; // milliseconds
    wchar_t text[1024] = {};
    DWORD_PTR size = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, patience,
                        &size);
    return Utf8(text);
}

int ReadBox()
{
    for (DWORD waited = 0; waited < Patience; waited += Step) {
        HWND box = nullptr;
        while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr) {
            constexpr int textItem = 0xFFFF; // of a message box
            const HWND item = GetDlgItem(box, textItem);
            const std::string text = item != nullptr && IsWindowVisible(box) ? TextOf(item) : "";
            if (!text.empty()) {
                std::printf("%s\n%s\n", TextOf(box).c_str(), text.c_str());
                return 0;
            }
        }
        Sleep(Step);
    }
    return 1;
}

HANDLE OpenConsole(const wchar_t* name)
{
    return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       0, nullptr);
}

// The lines of the console that this process is attached to, down to the cursor's.
std::string ConsoleText()
{
    const HANDLE screen = OpenConsole(L"CONOUT$");
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    GetConsoleScreenBufferInfo(screen, &info);
    std::string text;
    for (SHORT row = 0; row <= info.dwCursorPosition.Y; ++row) {
        std::wstring line(static_cast<std::size_t>(info.dwSize.X), L' ');
        DWORD got = 0;
        ReadConsoleOutputCharacterW(screen, line.data(), static_cast<DWORD>(info.dwSize.X), {0, row}, &got);
        line.resize(got);
        while (!line.empty() && line.back() == L' ') { line.pop_back(); }
        text += Utf8(line) + "\n";
    }
    CloseHandle(screen);
    return text;
}

void PressKey()
{
    const HANDLE keyboard = OpenConsole(L"CONIN$");
    INPUT_RECORD key = {};
    key.EventType = KEY_EVENT;
    key.Event.KeyEvent.bKeyDown = TRUE;
    key.Event.KeyEvent.wRepeatCount = 1;
    key.Event.KeyEvent.wVirtualKeyCode = VK_SPACE;
    key.Event.KeyEvent.uChar.UnicodeChar = L' ';
    DWORD written = 0;
    WriteConsoleInputW(keyboard, &key, 1, &written);
    CloseHandle(keyboard);
}

PROCESS_INFORMATION Start(const std::vector<std::string>& words, DWORD flags)
{
    std::wstring line;
    for (const std::string& word : words) { line += L"\"" + Wide(word) + L"\" "; }
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr, &start, &started)) {
        std::printf("cannot be started: system error %lu\n", GetLastError());
        std::exit(1);
    }
    return started;
}

int Watch(const PROCESS_INFORMATION& program, const std::string& interruptAt = "")
{
    bool interrupted = interruptAt.empty();
    std::string text;
    bool asked = false;
    DWORD waited = 0;
    for (; waited < Patience; waited += Step) {
        const bool ended = WaitForSingleObject(program.hProcess, Step) == WAIT_OBJECT_0;
        text = ConsoleText();
        if (ended) {
            break;
        }
        if (!interrupted && text.find(interruptAt) != std::string::npos) {
            interrupted = true;
            constexpr DWORD allOfThisConsole = 0;
            SetConsoleCtrlHandler(nullptr, TRUE); // not this process
            GenerateConsoleCtrlEvent(CTRL_C_EVENT, allOfThisConsole);
        }
        if (!asked && text.find("Press any key") != std::string::npos) {
            asked = true;
            Sleep(10 * Step); // it would be gone by now if it did not wait
            if (WaitForSingleObject(program.hProcess, 0) == WAIT_OBJECT_0) {
                asked = false;
                break;
            }
            PressKey();
        }
    }
    DWORD exitCode = 0;
    GetExitCodeProcess(program.hProcess, &exitCode);
    std::printf("%skey: %s\nexit code: %lu\n", text.c_str(), asked ? "yes" : "no", exitCode);
    return waited < Patience ? 0 : 1;
}

int WatchOwnConsole(const std::vector<std::string>& words)
{
    const PROCESS_INFORMATION program = Start(words, CREATE_NEW_CONSOLE);
    FreeConsole();
    // From here on this process counts in that console too: the program has to see it alone first.
    Sleep(40 * Step);
    if (!AttachConsole(program.dwProcessId)) {
        DWORD exitCode = 0;
        WaitForSingleObject(program.hProcess, Patience);
        GetExitCodeProcess(program.hProcess, &exitCode);
        std::printf("key: no\nexit code: %lu\n", exitCode);
        return 0;
    }
    return Watch(program);
}

int WatchConsole(UINT codePage, const std::vector<std::string>& words, const std::string& interruptAt = "")
{
    FreeConsole();
    AllocConsole();
    SetConsoleOutputCP(codePage);
    SetConsoleCP(codePage);
    for (const auto& [stream, name] : {std::pair(STD_INPUT_HANDLE, L"CONIN$"), std::pair(STD_OUTPUT_HANDLE, L"CONOUT$"),
                                       std::pair(STD_ERROR_HANDLE, L"CONOUT$")}) {
        const HANDLE console = OpenConsole(name);
        SetHandleInformation(console, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        SetStdHandle(stream, console);
    }
    return Watch(Start(words, 0), interruptAt);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words = tarnvexo::platform::CommandLineWords(argc, argv);
    const std::string mode = words.empty() ? "" : words.front();
    if (mode == "own-console") {
        return WatchOwnConsole({words.begin() + 1, words.end()});
    }
    if (mode == "console" && words.size() > 2) {
        return WatchConsole(static_cast<UINT>(std::stoi(words[1])), {words.begin() + 2, words.end()});
    }
    if (mode == "interrupted" && words.size() > 2) {
        return WatchConsole(CP_UTF8, {words.begin() + 2, words.end()}, words[1]);
    }
    return mode == "box" ? ReadBox() : 2;
}
