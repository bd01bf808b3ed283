// cli/CommandParser.h
// From the words of a command line to plain data: which command, with which options. Nothing is run and no file is
// looked at.
#pragma once

#include "app/CheckDriver.h"
#include "app/SolveDriver.h"
#include "cli/Quantities.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace tarnvexo {

// `tarnvexo solve`. solve.modelFile holds the MODEL as given: a file, or a directory with fem_solving.txt in it.
struct SolveCommand {
    SolveOptions solve;
    int threads = 0; // 0: all processors
    UnitSystem units = UnitSystem::Unnamed;
    std::string jsonFile;   // empty: none; "-": standard output, in place of the text
    std::string reportFile; // HTML; empty: none
    bool quiet = false;
};

// `tarnvexo info`
struct InfoCommand {
    CheckOptions info; // modelFile holds the MODEL as given
    UnitSystem units = UnitSystem::Unnamed;
    std::string jsonFile;
    bool quiet = false;
};

// `tarnvexo check`
struct CheckCommand {
    CheckOptions check; // modelFile holds the MODEL as given
    UnitSystem units = UnitSystem::Unnamed;
    std::string jsonFile;
    bool quiet = false;
    bool verbose = false;
};

// `tarnvexo refine`
struct RefineCommand {
    std::string model;
    int k = 2; // parts of an edge
    std::string outputFile;
    bool renumber = true;
};

// `tarnvexo renumber`
struct RenumberCommand {
    std::string model;
    std::string outputFile;
};

// `tarnvexo view`
struct ViewCommand {
    std::string result = "."; // directory, or contour file
    std::string modelFile;    // empty: the one beside the result
    std::string outputFile;   // empty: a file that is opened, or a page that is served
    std::string view;         // state of the view to begin with, as the address of the page has it
    bool open = true;
    bool quiet = false;
    bool alwaysFile = false; // never served, however large
    bool tell = true;        // where the page is, on standard output
};

// `tarnvexo picture`
struct PictureCommand {
    std::string result = ".";
    std::string modelFile;
    std::string outputFile;
    std::string state; // of the view, as the address of the page has it
    int width = 1600;  // pixels
    int height = 1000;
    bool quiet = false;
};

// Nothing to run: help, version or the table of rules on standard output, or a usage error on standard error. Each with
// its line end.
struct MessageCommand {
    std::string output;
    std::string error;
    int exitCode = ExitGood;
};

using Command = std::variant<SolveCommand, InfoCommand, CheckCommand, RefineCommand, RenumberCommand, ViewCommand,
                             PictureCommand, MessageCommand>;

// arguments: the words behind the program's name. versionText: gives what --version prints; called only for that.
// A usage error says which command, what is wrong, what was expected, and the nearest name to a misspelt one.
Command ParseCommandLine(const std::vector<std::string>& arguments, const std::function<std::string()>& versionText);

} // namespace tarnvexo
