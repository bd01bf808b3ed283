#include "support/ProgramRun.h"

#include "support/TemporaryDirectory.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iconv.h>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvexo::test {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File UnnamedFile()
{
    File file(std::tmpfile(), std::fclose);
    if (!file) {
        throw std::runtime_error("program run: no temporary file to be had");
    }
    return file;
}

std::string Content(std::FILE* file)
{
    std::string text;
    std::rewind(file);
    char piece[4096];
    for (std::size_t got = 0; (got = std::fread(piece, 1, sizeof piece, file)) > 0;) { text.append(piece, got); }
    return text;
}

std::map<std::string, std::string> FilesOfCurrentDirectory()
{
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        if (entry.is_regular_file() && !entry.is_symlink()) {
            std::ifstream file(entry.path(), std::ios::binary);
            files[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(file), {});
        }
    }
    return files;
}

} // namespace

ProgramRun RunProgram(const ProgramStart& start)
{
    const TemporaryDirectory directory;
    for (const auto& [name, content] : start.files) { std::ofstream(name, std::ios::binary) << content; }
    if (start.prepare) {
        start.prepare();
    }

    const File input = UnnamedFile(), output = UnnamedFile(), error = UnnamedFile();
    std::fwrite(start.input.data(), 1, start.input.size(), input.get());
    std::rewind(input.get());
    std::vector<char*> words = {const_cast<char*>(start.program.c_str())};
    for (const std::string& argument : start.arguments) { words.push_back(const_cast<char*>(argument.c_str())); }
    words.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("program run: no process to be had");
    }
    if (child == 0) {
        dup2(fileno(input.get()), STDIN_FILENO);
        dup2(fileno(output.get()), STDOUT_FILENO);
        dup2(fileno((start.errorWithOutput ? output : error).get()), STDERR_FILENO);
        execv(words[0], words.data());
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {}

    ProgramRun run;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.inputTaken = static_cast<std::size_t>(lseek(fileno(input.get()), 0, SEEK_CUR));
    run.output = Content(output.get());
    run.error = Content(error.get());
    run.files = FilesOfCurrentDirectory();
    return run;
}

std::string GbkToUtf8(const std::string& bytes)
{
    const iconv_t converter = iconv_open("UTF-8", "GBK");
    if (converter == iconv_t(-1)) {
        throw std::runtime_error("program run: the system has no converter from GBK");
    }
    std::string source = bytes;
    std::string text(2 * bytes.size() + 1, '\0'); // two bytes of GBK become three of UTF-8
    char* from = source.data();
    char* to = text.data();
    std::size_t left = source.size();
    std::size_t room = text.size();
    const std::size_t result = iconv(converter, &from, &left, &to, &room);
    iconv_close(converter);
    if (result == std::size_t(-1)) {
        throw std::runtime_error("program run: byte " + std::to_string(from - source.data()) + " is not GBK");
    }
    text.resize(text.size() - room);
    return text;
}

} // namespace tarnvexo::test
