// platform/Browser.h
// Other programs and the places that users keep things in: the browser that shows a page or draws a picture of it. One
// source per system, like Platform.h.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tarnvexo::platform {

// Opens a page in the user's browser and returns without waiting for it to be closed. The page is a file that is named
// in both ways, of which a system takes the one that it is sure to understand. False, with the reason, when there is no
// display or no browser.
bool OpenInBrowser(const std::string& file, const std::string& address, std::string& reason);

// A directory for what may be made again at any time; empty: the system has none for this user.
std::string UserCacheDirectory();

// Makes a directory beneath that for temporary files, which no other user may enter, with a name that begins with
// `prefix`. Empty, with the reason, when it cannot be made.
std::string MakePrivateDirectory(const std::string& prefix, std::string& reason);

// For messages: the variables that these two directories follow, and those of the second alone.
extern const char* const CacheVariables;
extern const char* const TemporaryVariable;

// From now on no other user may enter the directory, where the system can do that.
void MakePrivate(const std::string& directory);

// Directory of the program that is running; empty when the system does not tell.
std::string ProgramDirectory();

// The first of these programs that the system finds, a name along the search path or a path; empty: none.
std::string FindProgram(const std::vector<std::string>& names);

// For messages: browsers that draw pictures, and where FindProgram finds them.
extern const char* const PictureBrowsers;

// True for a user who may do everything. Browsers ask for more care then.
bool IsAdministrator();

// A program with all that it starts. Its standard output and standard error go into a file, its standard input is
// empty.
class ChildProgram {
public:
    // words: the program and its arguments. Where it cannot be started it has ended, and Reason tells why.
    ChildProgram(const std::vector<std::string>& words, const std::string& outputFile);
    ~ChildProgram(); // EndAll

    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    bool HasEnded();

    // Ends it and what it has started, and returns when they are gone. May be called from another thread, and twice.
    void EndAll();

    // Why it could not be started; empty: it was.
    const std::string& Reason() const { return reason; }

private:
    struct Process;
    std::unique_ptr<Process> process;
    std::string reason;
};

} // namespace tarnvexo::platform
