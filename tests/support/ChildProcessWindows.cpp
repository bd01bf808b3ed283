// Windows starts programs, it does not fork them. So the test program is started once more for the test that runs, as
// GoogleTest does for its death tests of the style "threadsafe": it comes to the same call and does there what the
// child shall do, in the directory of the first one. Everything before that call happens twice.
#include "platform/Browser.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/StartedProgram.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <io.h>
#include <stdexcept>
#include <sys/stat.h>

namespace tarnvexo::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* CallVariable = "TARNVEXO_TEST_CALL"; // number of the call that the child is there for
constexpr const char* PlaceVariable = "TARNVEXO_TEST_PLACE";
constexpr const char* StreamsVariable = "TARNVEXO_TEST_STREAMS"; // directory of the files that the streams go to

// The number of this call in the test that runs.
int CallNumber()
{
    static const testing::TestInfo* counted = nullptr;
    static int calls = 0;
    const testing::TestInfo* const current = testing::UnitTest::GetInstance()->current_test_info();
    if (current != counted) {
        counted = current;
        calls = 0;
    }
    return ++calls;
}

void Redirect(int stream, const fs::path& file)
{
    const int descriptor = _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_TEXT, _S_IREAD | _S_IWRITE);
    if (descriptor < 0 || _dup2(descriptor, stream) != 0) {
        std::_Exit(125);
    }
    _close(descriptor);
}

[[noreturn]] void BeChild(const std::function<void()>& action)
{
    std::fflush(nullptr);
    const fs::path streams = platform::PathOf(platform::EnvironmentValue(StreamsVariable));
    Redirect(1, streams / "output");
    Redirect(2, streams / "error");
    fs::current_path(platform::PathOf(platform::EnvironmentValue(PlaceVariable)));
    action();
    std::exit(0);
}

} // namespace

ChildResult RunInChild(const std::function<void()>& action, const std::string& input, ChildOutput)
{
    const int call = CallNumber();
    const std::string wanted = platform::EnvironmentValue(CallVariable);
    if (wanted == std::to_string(call)) {
        BeChild(action);
    }
    if (!wanted.empty()) {
        return {}; // an earlier call of the child's test
    }
    std::string reason;
    const std::string streams = platform::MakePrivateDirectory("tarnvexo-child-", reason);
    if (streams.empty()) {
        throw std::runtime_error("child process: no directory for its streams: " + reason);
    }
    const fs::path directory = platform::PathOf(streams);
    std::ofstream(directory / "input", std::ios::binary) << input;
    platform::SetEnvironment(CallVariable, std::to_string(call).c_str());
    platform::SetEnvironment(PlaceVariable, fs::current_path().string().c_str());
    platform::SetEnvironment(StreamsVariable, streams.c_str());
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    ChildResult result;
    result.exitCode =
        RunStarted({ProgramPath(), std::string("--gtest_filter=") + test.test_suite_name() + "." + test.name()},
                   {(directory / "input").string(), "NUL", "NUL"});
    platform::SetEnvironment(CallVariable, "");
    result.output = TextOfStream((directory / "output").string());
    result.error = TextOfStream((directory / "error").string());
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    return result;
}

bool TerminalsAreAvailable()
{
    return false;
}

} // namespace tarnvexo::test
