#include "cli/PictureDrawing.h"

#include "app/RunFailure.h"
#include "cli/Quantities.h"
#include "cli/ViewCommand.h"
#include "core/Failure.h"
#include "platform/Browser.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"
#include "view/PageServer.h"
#include "view/ResultPage.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace tarnvexo {

namespace {

constexpr const char* BrowserVariable = "TARNVEXO_BROWSER";
constexpr std::string_view PngBegin = "\x89PNG\r\n\x1a\n";

// Removed with all that is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        std::string reason;
        path = platform::MakePrivateDirectory("tarnvexo-picture-", reason);
        if (path.empty()) {
            throw RunFailure(ExitFile, "tarnvexo picture: error: the browser gets no directory: " + reason +
                                           "\n  expected: a directory for temporary files that may be written to"
                                           "\n  to do:    set " +
                                           platform::TemporaryVariable + " to one");
        }
    }
    ~TemporaryDirectory() { Remove(); }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    void Remove() const
    {
        std::error_code ignored;
        std::filesystem::remove_all(platform::PathOf(path), ignored);
    }
    const std::string& Path() const { return path; }

private:
    std::string path;
};

std::vector<std::string> BrowserWords(const std::string& browser, const std::string& profile,
                                      const std::string& address, const PictureRequest& request)
{
    std::vector<std::string> words = {
        browser, "--headless=new", "--user-data-dir=" + profile,
        "--window-size=" + std::to_string(request.width) + "," + std::to_string(request.height),
        // WebGL by the processor: pictures do not depend on graphics hardware; slow, but not taken for hung
        "--use-angle=swiftshader", "--enable-unsafe-swiftshader", "--ignore-gpu-blocklist", "--disable-gpu-watchdog",
        // no window of a first start, nothing from or to other machines
        "--no-first-run", "--no-default-browser-check", "--disable-background-networking", "--disable-component-update",
        "--disable-sync", "--disable-extensions", "--disable-dev-shm-usage", "--mute-audio"};
    if (platform::IsAdministrator()) {
        words.push_back("--no-sandbox"); // the browser refuses to start for root with it
    }
    words.push_back(address);
    return words;
}

// The last lines that the browser has written, for a message.
std::string LastLines(const std::string& file)
{
    constexpr std::size_t most = 400;
    std::ifstream stream(platform::PathOf(file), std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    while (text.ends_with('\n')) { text.pop_back(); }
    if (text.size() > most) {
        const std::size_t lineEnd = text.find('\n', text.size() - most);
        text = lineEnd == std::string::npos ? text.substr(text.size() - most) : text.substr(lineEnd + 1);
    }
    std::string indented;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        indented += "\n  it said:  " + text.substr(begin, end - begin);
        begin = end + 1;
    }
    return indented;
}

// Waits for the picture, the end of the browser or the end of patience.
std::string DrawnPicture(PageServer& server, platform::ChildProgram& browser, const std::string& name,
                         const std::string& log, const PicturePatience& patience)
{
    constexpr std::chrono::milliseconds step(100);
    const auto begin = std::chrono::steady_clock::now();
    std::optional<PostedPicture> posted;
    bool hasEnded = false;
    const auto limit = [&] { return server.HasGivenPage() ? patience.untilDrawn : patience.untilAsked; };
    while (!posted && !hasEnded && std::chrono::steady_clock::now() - begin < limit()) {
        hasEnded = browser.HasEnded();
        posted = server.WaitForPicture(step);
    }
    if (!posted) {
        browser.EndAll();
        const std::string what = hasEnded
                                     ? ": error: the browser has ended without a picture"
                                     : std::string(": error: the browser has ") +
                                           (server.HasGivenPage() ? "drawn no picture" : "not asked for the page") +
                                           " within " + DurationText(std::chrono::duration<double>(limit()).count());
        throw RunFailure(ExitNumerical, name + what + LastLines(log) +
                                            "\n  expected: Chromium or Chrome, version 112 or later, with WebGL 2"
                                            "\n  to do:    name another one in TARNVEXO_BROWSER; on a busy machine "
                                            "try again;\n            for one that may read files of your home "
                                            "directory only set " +
                                            platform::TemporaryVariable + " to a place there");
    }
    if (!posted->error.empty()) {
        throw RunFailure(ExitNumerical,
                         "tarnvexo picture: error: the page could not draw the picture: " + posted->error +
                             "\n  expected: a view of the result that can be drawn"
                             "\n  to do:    look at it with tarnvexo view");
    }
    if (!posted->png.starts_with(PngBegin)) {
        throw RunFailure(ExitNumerical, "tarnvexo picture: error: what the page has sent is no PNG picture"
                                        "\n  expected: a picture from the viewer of this program"
                                        "\n  to do:    run again; name another browser in TARNVEXO_BROWSER");
    }
    return posted->png;
}

void OnInterrupt(std::function<void()> cleanUp)
{
    platform::EndOnInterrupt({ExitInterrupted, "\ninterrupted: no picture was written\n", std::move(cleanUp)});
}

// One picture. All that the browser keeps goes into the directory.
std::string Draw(const PictureRequest& request, const std::string& page, const std::string& packet,
                 const std::string& browserProgram, const TemporaryDirectory& directory,
                 const PicturePatience& patience)
{
    const std::unique_ptr<PageServer> server =
        ServeOnThisMachine({PageWithPacketAddress(page, PacketAddress), packet, true});
    const std::string address = server->Address() + "#" + request.state + (request.state.empty() ? "" : "&") +
                                "picture=" + std::to_string(request.width) + "x" + std::to_string(request.height);
    const std::string log = directory.Path() + "/browser.log";
    std::optional<platform::InterruptionHold> hold(std::in_place); // until it knows what to clear away
    const std::string start = WriteStartPage(directory.Path() + "/start.html", address);
    platform::ChildProgram browser(BrowserWords(browserProgram, directory.Path(), start, request), log);
    if (!browser.Reason().empty()) {
        throw RunFailure(ExitFile, browserProgram + ": error: the browser cannot be started: " + browser.Reason() +
                                       "\n  expected: a program that may be run"
                                       "\n  to do:    name another one in TARNVEXO_BROWSER");
    }
    OnInterrupt([&] {
        browser.EndAll();
        directory.Remove();
    });
    struct WithoutBrowser { // what the browser is ended by refers to objects of this procedure
        const TemporaryDirectory& directory;
        ~WithoutBrowser()
        {
            OnInterrupt([&kept = directory] { kept.Remove(); });
        }
    } const atTheEnd{directory};
    hold.reset();
    std::string png = DrawnPicture(*server, browser, browserProgram, log, patience);
    browser.EndAll();
    return png;
}

} // namespace

std::string FindPictureBrowser()
{
    const std::string named = platform::EnvironmentValue(BrowserVariable);
    const bool isNamed = !named.empty();
    const std::string browser = platform::FindProgram(
        isNamed ? std::vector<std::string>{named}
                : std::vector<std::string>{"chromium", "chromium-browser", "google-chrome", "chrome", "msedge"});
    if (!browser.empty()) {
        return browser;
    }
    throw RunFailure(ExitFile, std::string("tarnvexo picture: error: ") +
                                   (isNamed ? "there is no program \"" + named + "\", which TARNVEXO_BROWSER names"
                                            : "there is no browser that draws the picture") +
                                   "\n  expected: " + platform::PictureBrowsers +
                                   "\n  to do:    install one, or set TARNVEXO_BROWSER to its path");
}

std::vector<std::string> DrawPictures(const std::vector<PictureRequest>& requests, const std::string& page,
                                      const std::string& packet, const std::string& browser,
                                      const PicturePatience& patience)
{
    std::optional<platform::InterruptionHold> hold(std::in_place);
    const TemporaryDirectory directory;
    OnInterrupt([&] { directory.Remove(); });
    struct NoLongerInterrupted {
        ~NoLongerInterrupted() { platform::EndOnInterrupt({ExitInterrupted, "\ninterrupted\n", {}}); }
    } const atTheEnd;
    hold.reset();
    // All that the browser keeps goes there. Nothing of this program is temporary from here on, and no thread reads
    // variables yet.
    for (const char* variable : {"TMPDIR", "TMP", "TEMP"}) {
        platform::SetEnvironment(variable, directory.Path().c_str());
    }
    std::vector<std::string> pictures;
    for (const PictureRequest& request : requests) {
        pictures.push_back(Draw(request, page, packet, browser, directory, patience));
    }
    return pictures;
}

} // namespace tarnvexo
