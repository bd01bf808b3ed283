#include "platform/Browser.h"
#include "platform/FilePath.h"
#include "platform/WindowsText.h"
#include "support/ProgramRun.h"
#include "support/StartedProgram.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace tarnvexo::test {

namespace fs = std::filesystem;

ProgramRun RunProgram(const ProgramStart& start)
{
    const TemporaryDirectory directory;
    for (const auto& [name, content] : start.files) {
        std::ofstream(platform::PathOf(name), std::ios::binary) << content;
    }
    if (start.prepare) {
        start.prepare();
    }
    const TemporaryDirectory streams; // the current one from here on
    std::ofstream("input", std::ios::binary) << start.input;
    fs::current_path(directory.Path());
    const auto stream = [&](const char* name) { return (streams.Path() / name).string(); };
    std::vector<std::string> words = {start.program};
    words.insert(words.end(), start.arguments.begin(), start.arguments.end());
    ProgramRun run;
    run.exitCode =
        RunStarted(words, {stream("input"), stream("output"), stream(start.errorWithOutput ? "output" : "error")});
    run.inputTaken = start.input.size(); // Windows does not tell
    run.output = TextOfStream(stream("output"));
    run.error = start.errorWithOutput ? "" : TextOfStream(stream("error"));
    for (const auto& entry : fs::directory_iterator(".")) {
        if (entry.is_regular_file()) {
            run.files[entry.path().filename().string()] = TextOfStream(entry.path().string());
        }
    }
    return run;
}

std::string GbkToUtf8(const std::string& bytes)
{
    constexpr UINT gbk = 936;
    const int size = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(gbk, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    if (units == 0 && size > 0) {
        throw std::runtime_error("program run: the text is not GBK");
    }
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(gbk, 0, bytes.data(), size, wide.data(), units);
    return platform::Utf8(wide);
}

} // namespace tarnvexo::test
