#include "cli/ViewCommand.h"

#include "cli/CommandFiles.h"
#include "cli/HtmlPage.h"
#include "cli/ProgressDisplay.h"
#include "cli/Quantities.h"
#include "cli/ResultLoading.h"
#include "core/Failure.h"
#include "platform/Browser.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"
#include "view/ResultPage.h"

#include <chrono>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;

constexpr const char* PageSuffix = ".html";
constexpr std::chrono::hours PageLifetime(24);

void RemoveOldPages(const fs::path& directory)
{
    std::error_code ignored;
    const auto now = fs::file_time_type::clock::now();
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
        std::error_code error; // another run may have removed it
        const auto written = entry.last_write_time(error);
        if (!error && entry.path().extension() == PageSuffix && now - written > PageLifetime) {
            fs::remove(entry.path(), ignored);
        }
    }
}

// A name of its own for every page, so that one that is still shown stays.
std::string NewPageFile()
{
    std::string directory = platform::UserCacheDirectory();
    std::error_code error;
    if (!directory.empty()) {
        directory += "/tarnvexo";
        fs::create_directories(platform::PathOf(directory), error);
        platform::MakePrivate(directory);
        RemoveOldPages(platform::PathOf(directory));
    }
    if (directory.empty() || error) {
        std::string reason;
        directory = platform::MakePrivateDirectory("tarnvexo-", reason);
        if (directory.empty()) {
            throw RunFailure(ExitFile, "the page: error: no directory for it can be made: " + reason +
                                           "\n  expected: " + platform::CacheVariables +
                                           " with a directory that may be written to\n  to do:    name a file with "
                                           "--out");
        }
    }
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return directory + "/result-" + std::to_string(std::chrono::nanoseconds(now).count()) + "-" +
           std::to_string(platform::ProcessId()) + PageSuffix;
}

void OpenPage(const std::string& file, const char* toDo)
{
    const std::string address = FileAddress(file);
    std::string reason;
    if (!platform::OpenInBrowser(file, address, reason)) {
        throw RunFailure(ExitFile, address + ": error: the page cannot be opened: " + reason +
                                       "\n  expected: a display, and a browser that the system opens pages with"
                                       "\n  to do:    " +
                                       toDo);
    }
}

void ShowFile(const ViewCommand& command, const std::string& page)
{
    const bool isNamed = !command.outputFile.empty();
    const std::string file = isNamed ? command.outputFile : NewPageFile();
    WriteBytes(file, page);
    if (command.open && !isNamed) {
        OpenPage(file, "open the page where there is one; it stays for a day, --out FILE puts it elsewhere");
    }
    if (command.tell) {
        WriteOutput((isNamed ? file : FileAddress(file)) + "  " + FileSizeText(page.size()) + "\n");
    }
}

[[noreturn]] void Serve(const ViewCommand& command, ServedPage content)
{
    const std::string size = FileSizeText(content.packet.size());
    platform::EndOnInterrupt({ExitGood, "\nended: the page is not served any more\n", {}});
    const std::unique_ptr<PageServer> server = ServeOnThisMachine(std::move(content));
    WriteOutput(server->Address() + "  " + size + ", served to this machine until Ctrl-C\n");
    if (command.open) {
        try {
            const std::string start = NewPageFile();
            WriteStartPage(start, server->Address());
            OpenPage(start, "open it with a browser of this machine while this command runs");
        } catch (const RunFailure& failure) {
            Warn(failure.what());
        }
    }
    for (;;) { server->WaitForPicture(std::chrono::hours(1)); } // none comes: until an interruption ends the process
}

} // namespace

void RequireViewer(const std::string& page, const char* command)
{
    if (page.empty()) {
        throw RunFailure(ExitUsage, std::string(command) +
                                        ": error: this program was built without the viewer"
                                        "\n  expected: a program that was built with Node.js and npm at hand"
                                        "\n  to do:    install them and build again with -DTARNVEXO_VIEWER=ON");
    }
}

std::string FileAddress(const std::string& file)
{
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/:";
    constexpr char digits[] = "0123456789ABCDEF";
    const std::string path = platform::AbsoluteName(file);
    std::string address = path.starts_with("//") ? "file:" : path.starts_with('/') ? "file://" : "file:///";
    for (const char byte : path) {
        if (plain.find(byte) != std::string_view::npos) {
            address += byte;
        } else {
            const auto bits = static_cast<unsigned char>(byte);
            address += {'%', digits[bits >> 4], digits[bits & 15]};
        }
    }
    return address;
}

std::string WriteStartPage(const std::string& file, const std::string& address)
{
    WriteBytes(file, "<!doctype html><meta charset=\"utf-8\"><meta http-equiv=\"refresh\" content=\"0;url=" +
                         HtmlText(address) + "\">\n");
    return FileAddress(file);
}

std::unique_ptr<PageServer> ServeOnThisMachine(ServedPage page)
{
    try {
        return StartPageServer(std::move(page));
    } catch (const PageNotServed& fault) {
        throw RunFailure(ExitFile, fault.what());
    }
}

int RunViewCommand(const ViewCommand& command, const std::string& page, std::size_t largestInPage)
{
    RequireViewer(page, "tarnvexo view");
    if (!command.outputFile.empty()) {
        RequirePlaceOf(command.outputFile);
    }
    platform::ExitOnInterrupt();
    ShownResult shown;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        StageClock clock({std::begin(LoadingStages), std::end(LoadingStages)},
                         [&](const Progress& progress) { display.Show(progress); });
        shown = LoadShownResult({command.result, command.modelFile}, command.view, clock);
    }
    const auto tellNotes = [&] {
        for (const std::string& note : shown.notes) { Warn(note); }
    };
    if (command.outputFile.empty() && !command.alwaysFile && shown.packet.size() > largestInPage) {
        tellNotes();
        Serve(command, {PageWithPacketAddress(page, PacketAddress), std::move(shown.packet), false});
    }
    ShowFile(command, PageWithPacket(page, shown.packet));
    tellNotes(); // a page that is not shown has its own message alone
    return ExitGood;
}

} // namespace tarnvexo
