#include "platform/Browser.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"
#include "platform/WindowsText.h"

#include <cstdint>
#include <shellapi.h>

namespace tarnvexo::platform {

namespace {

namespace fs = std::filesystem;

constexpr DWORD PollStep = 5; // milliseconds

// As the started program takes its command line apart again: a quotation mark and the backslashes before it are marked
// by backslashes.
std::wstring Quoted(const std::wstring& word)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        quoted.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(2 * backslashes, L'\\');
    return quoted + L"\"";
}

} // namespace

const char* const CacheVariables = "LOCALAPPDATA or TMP";
const char* const TemporaryVariable = "TMP";
const char* const PictureBrowsers = "Chrome or Edge, installed for this user or for all";

// By its name: in addresses Windows does not take %E9 and the like for letters.
bool OpenInBrowser(const std::string& file, const std::string&, std::string& reason)
{
    constexpr std::intptr_t lastError = 32; // of ShellExecute
    const std::wstring path = fs::path(Wide(AbsoluteName(file))).make_preferred().wstring();
    const auto result =
        reinterpret_cast<std::intptr_t>(ShellExecuteW(nullptr, L"open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (result <= lastError) {
        reason = "no program opens it (system error " + std::to_string(result) + ")";
        return false;
    }
    return true;
}

std::string UserCacheDirectory()
{
    return EnvironmentValue("LOCALAPPDATA");
}

// The directory of temporary files is the user's own.
std::string MakePrivateDirectory(const std::string& prefix, std::string& reason)
{
    std::error_code error;
    const fs::path temporary = fs::temp_directory_path(error);
    LARGE_INTEGER count = {};
    QueryPerformanceCounter(&count);
    const std::string own = std::to_string(GetCurrentProcessId()) + "-" + std::to_string(count.QuadPart);
    const fs::path path = temporary / Wide(prefix + own);
    if (error || !fs::create_directory(path, error)) {
        reason = ReasonOf(error);
        return "";
    }
    return Utf8(path.wstring());
}

void MakePrivate(const std::string&) {}

std::string ProgramDirectory()
{
    std::wstring path(32768, L'\0'); // the longest path
    const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    path.resize(size);
    return Utf8(fs::path(path).parent_path().wstring());
}

// Browsers do not stand along the search path here, but where the system has noted them under their file names. The
// current directory is not looked into: it may be somebody's model with a program of theirs in it.
std::string FindProgram(const std::vector<std::string>& names)
{
    constexpr DWORD longest = 32768; // characters of a path or a variable
    const std::wstring searchPath = Wide(EnvironmentValue("PATH"));
    for (const std::string& name : names) {
        std::wstring path(longest, L'\0');
        if (name.find_first_of("/\\") != std::string::npos) {
            std::error_code ignored;
            if (fs::is_regular_file(Wide(name), ignored)) {
                return name;
            }
            continue;
        }
        const std::wstring key = L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + Wide(name) + L".exe";
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            DWORD size = longest * sizeof(wchar_t);
            if (RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path.data(), &size) == ERROR_SUCCESS) {
                std::string found = Utf8(path.c_str());
                std::erase(found, '"');
                return found;
            }
        }
        const DWORD size = SearchPathW(searchPath.c_str(), Wide(name).c_str(), L".exe", longest, path.data(), nullptr);
        if (size > 0 && size < longest) {
            return Utf8(path.c_str());
        }
    }
    return "";
}

// Browsers start for every user here.
bool IsAdministrator()
{
    return false;
}

// A job: what the program starts belongs to it as well.
struct ChildProgram::Process {
    HANDLE job = nullptr;
    HANDLE process = nullptr;
    bool isInJob = false;

    bool HasMembers() const
    {
        JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts = {};
        return QueryInformationJobObject(job, JobObjectBasicAccountingInformation, &counts, sizeof counts, nullptr) &&
               counts.ActiveProcesses > 0;
    }
};

ChildProgram::ChildProgram(const std::vector<std::string>& words, const std::string& outputFile)
    : process(std::make_unique<Process>())
{
    std::wstring line;
    for (const std::string& word : words) { line += (line.empty() ? L"" : L" ") + Quoted(Wide(word)); }
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE output = CreateFileW(Wide(outputFile).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const HANDLE input = CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input;
    start.hStdOutput = output;
    start.hStdError = output;
    PROCESS_INFORMATION started = {};
    process->job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(process->job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    if (CreateProcessW(Wide(words.front()).c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP | CREATE_NO_WINDOW, nullptr, nullptr, &start,
                       &started)) {
        process->isInJob = AssignProcessToJobObject(process->job, started.hProcess);
        ResumeThread(started.hThread);
        CloseHandle(started.hThread);
        process->process = started.hProcess;
    } else {
        reason = ReasonOfSystemError(GetLastError());
    }
    CloseHandle(input);
    CloseHandle(output);
}

ChildProgram::~ChildProgram()
{
    EndAll();
    if (process->process != nullptr) {
        CloseHandle(process->process);
    }
    CloseHandle(process->job);
}

bool ChildProgram::HasEnded()
{
    return process->process == nullptr || WaitForSingleObject(process->process, 0) == WAIT_OBJECT_0;
}

void ChildProgram::EndAll()
{
    if (process->process == nullptr) {
        return;
    }
    if (process->isInJob) {
        TerminateJobObject(process->job, 1);
        while (process->HasMembers()) { Sleep(PollStep); }
    } else {
        TerminateProcess(process->process, 1);
    }
    WaitForSingleObject(process->process, INFINITE);
}

} // namespace tarnvexo::platform
