#include "cli/CommandParser.h"

#include "cli/CheckText.h"
#include "cli/NearestName.h"
#include "cli/RuleSettings.h"
#include "cli/UsageFault.h"
#include "solver/SparseEngine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace tarnvexo {

namespace {

// Values as the command line gives them; the Parsed... procedures turn them into numbers and choices.
struct OptionTexts {
    std::string model;
    std::string output = ".";
    std::string threads;
    std::string solver = "auto";
    std::string factor = "auto";
    std::string balance = "exact";
    std::string displacements = "mass-orthogonal";
    std::string units;
    std::vector<std::string> formats;
    std::string json;
    std::string report;
    std::string parts;
    std::vector<std::string> rules;
    bool listRules = false;
    bool quiet = false;
    bool verbose = false;
    bool keepNumbers = false;
    std::string result = ".";
    std::string modelFile;
    std::string page; // or picture: the file to write
    std::string view;
    bool noOpen = false;
    std::string field = "SE";
    std::string face = "larger";
    std::string deformed = "5%";
    std::string size = "1600x1000";
    std::string state;
    bool dark = false;
};

template <typename Value> using Choices = std::vector<std::pair<const char*, Value>>;

const Choices<SolverKind> Solvers = {{"auto", SolverKind::Automatic},
                                     {"sparse", SolverKind::Sparse},
                                     {"cholmod", SolverKind::Cholmod},
                                     {"skyline", SolverKind::Skyline}};
const Choices<FactorPlace> FactorPlaces = {
    {"auto", FactorPlace::Automatic}, {"memory", FactorPlace::Memory}, {"disk", FactorPlace::Disk}};
const Choices<BalanceKind> Balances = {{"exact", BalanceKind::Exact}, {"classic", BalanceKind::Classic}};
const Choices<DisplacementKind> Displacements = {{"mass-orthogonal", DisplacementKind::MassOrthogonal},
                                                 {"held", DisplacementKind::Held}};
const Choices<UnitSystem> Units = {{"SI", UnitSystem::SI}, {"mm-t-s", UnitSystem::MillimetreTonneSecond}};
const Choices<std::optional<ResultFormat>> Formats = {{"text", ResultFormat::Text}, {"vtu", ResultFormat::Vtu},
                                                      {"gltf", ResultFormat::Gltf}, {"csv", ResultFormat::Csv},
                                                      {"json", ResultFormat::Json}, {"none", std::nullopt}};

// Names as the viewer has them (viewer/src/model/Result.ts, viewer/src/state/ViewState.ts).
using Names = std::vector<std::string>;
const Names Fields = {"SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "SE",        "S1",      "S2",       "S3",   "U",   "DX",
                      "DY", "DZ", "R",  "RX",  "RY",  "RZ",  "thickness", "section", "material", "side", "none"};
const Names Faces = {"positive", "negative", "larger", "viewed"};
const Names StandardViews = {"iso", "front", "back", "left", "right", "top", "bottom"};

constexpr const char* ListRules = "--rules";
constexpr int MostThreads = 1024;
constexpr int MostParts = 1000; // of an edge

// ---- values

template <typename Value> Value ParsedChoice(const char* option, const std::string& text, const Choices<Value>& choices)
{
    std::vector<std::string> names;
    for (const auto& [name, value] : choices) {
        if (CLI::detail::to_lower(text) == CLI::detail::to_lower(name)) {
            return value;
        }
        names.emplace_back(name);
    }
    throw UsageFault{std::string(option) + " cannot be \"" + text + "\"", CLI::detail::join(names, " or "),
                     NearestName(text, names)};
}

// The name in the spelling of the list.
std::string ParsedName(const char* option, const std::string& text, const Names& names)
{
    Choices<std::string> choices;
    for (const std::string& name : names) { choices.emplace_back(name.c_str(), name); }
    return ParsedChoice(option, text, choices);
}

int ParsedInteger(const char* option, const std::string& text, int least, int most)
{
    int value = 0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, value);
    if (error != std::errc() || end != textEnd || value < least || value > most) {
        throw UsageFault{std::string(option) + " cannot be \"" + text + "\"",
                         "a whole number from " + std::to_string(least) + " to " + std::to_string(most), ""};
    }
    return value;
}

int ParsedThreads(const std::string& text)
{
    return text.empty() ? 0 : ParsedInteger("--threads", text, 1, MostThreads);
}

// Not offered where it is not there; asked for all the same, the solver says why.
SolverKind ParsedSolver(const std::string& text)
{
    Choices<SolverKind> offered;
    for (const auto& solver : Solvers) {
        if (solver.second != SolverKind::Cholmod || HasCholmod() || text == solver.first) {
            offered.push_back(solver);
        }
    }
    return ParsedChoice("--solver", text, offered);
}

UnitSystem ParsedUnits(const std::string& text)
{
    return text.empty() ? UnitSystem::Unnamed : ParsedChoice("--units", text, Units);
}

// Formats may be given several times and with commas between them.
ResultFormats ParsedFormats(const std::vector<std::string>& texts)
{
    ResultFormats formats;
    bool none = false;
    for (const std::string& given : texts) {
        for (const std::string& name : CLI::detail::split(given, ',')) {
            const std::optional<ResultFormat> format = ParsedChoice("--format", name, Formats);
            none = none || !format;
            if (format) {
                formats.insert(*format);
            }
        }
    }
    if (!formats.empty() && none) {
        throw UsageFault{"--format cannot be \"none\" together with another format",
                         "none alone, or the formats that are wanted", ""};
    }
    return texts.empty() ? ResultFormats{ResultFormat::Text} : formats;
}

// "1600x1000"
void ParseSize(const std::string& text, PictureCommand& command)
{
    constexpr int least = 16;
    constexpr int most = 8192;
    const std::size_t cross = text.find('x');
    try {
        command.width = ParsedInteger("--size", text.substr(0, cross), least, most);
        command.height = ParsedInteger("--size", cross == std::string::npos ? "" : text.substr(cross + 1), least, most);
    } catch (const UsageFault&) {
        throw UsageFault{"--size cannot be \"" + text + "\"",
                         "width and height in pixels, from 16x16 to 8192x8192, such as 1600x1000", ""};
    }
}

// "5%", "true", "20", "off": as an address has them, where "%" and "+" mean something else.
std::string ParsedDeformation(const std::string& text)
{
    double value = 0.0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, value);
    const bool isNumber = error == std::errc() && value >= 0.0 && value <= 1e30 &&
                          (end == textEnd || (*end == '%' && end + 1 == textEnd));
    if (!isNumber && text != "true" && text != "off") {
        throw UsageFault{"--deformed cannot be \"" + text + "\"",
                         "5% or another share of the model's size, true, a factor such as 20, or off", ""};
    }
    std::string inAddress;
    for (const char c : text) { inAddress += c == '%' ? "%25" : c == '+' ? "%2B" : std::string(1, c); }
    return inAddress;
}

// What stands behind "#" in an address; with it or without.
std::string ParsedState(const std::string& text)
{
    return text.starts_with('#') ? text.substr(1) : text;
}

// ---- options

CLI::App& AddCommand(CLI::App& app, const char* name, const char* description, const char* footer)
{
    CLI::App& command = *app.add_subcommand(name, description);
    command.footer(footer);
    command.set_help_flag("-h,--help", "this text");
    return command;
}

// An option with one value; given twice, the last one counts.
void AddValue(CLI::App& command, const char* names, std::string& text, const char* form, const char* help)
{
    command.add_option(names, text, help)->option_text(form)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

void AddModel(CLI::App& command, OptionTexts& texts)
{
    command.add_option("MODEL", texts.model, "model file, or a directory with fem_solving.txt in it")
        ->option_text(" ")
        ->required();
}

void AddModelOutput(CLI::App& command, OptionTexts& texts)
{
    command.add_option("-o,--output", texts.output, "the model file to write")->option_text("OUT")->required();
}

void AddRuleOptions(CLI::App& command, OptionTexts& texts)
{
    command
        .add_option("--rule", texts.rules,
                    "set a rule of the model checks, several times or with commas\n"
                    "between: its severity, off, note, warning or error, or its limit")
        ->option_text("NAME=SETTING")
        ->allow_extra_args(false);
    command.add_flag(ListRules, texts.listRules, "list all rules as they are set; needs no MODEL");
}

void AddReportOptions(CLI::App& command, OptionTexts& texts)
{
    AddValue(command, "--units", texts.units, "SI|mm-t-s",
             "what the model's units are: the report names them and gives\n"
             "accelerations in g too. Nothing is converted");
    AddValue(command, "--json", texts.json, "FILE",
             "write the report as JSON as well; - for standard output, where\n"
             "it then stands in place of the text");
    command.add_flag("-q,--quiet", texts.quiet, "no progress on standard error; the report stays");
}

void AddSolve(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "solve", "Balance the loads, solve, write results and a report",
                                   "Examples:\n"
                                   "  tarnvexo solve examples/midship -o run\n"
                                   "      solve examples/midship/fem_solving.txt, result files into run/\n"
                                   "  tarnvexo solve wing.txt -o run --units mm-t-s\n"
                                   "      the same with units and accelerations in g in the report\n"
                                   "  tarnvexo solve wing.txt -o run --report wing.html\n"
                                   "      and a page with pictures to read, print or send\n"
                                   "  tarnvexo solve wing.txt -o run --format text,vtu && paraview run/results.vtm\n"
                                   "      the text files, and the results in ParaView\n"
                                   "  tarnvexo solve wing.txt --format none --json - -q | jq .extremes\n"
                                   "      no files, the report as JSON for another program");
    AddModel(command, texts);
    AddValue(command, "-o,--output", texts.output, "DIR",
             "directory of the result files, made if it is missing;\n"
             "the current directory without this option");
    command
        .add_option("--format", texts.formats,
                    "result files to write, several times or with commas between:\n"
                    "text (the six text and DXF files; the default), vtu (ParaView),\n"
                    "gltf (a picture in space), csv (tables), json (the report), none")
        ->option_text("LIST")
        ->allow_extra_args(false);
    AddValue(command, "--balance", texts.balance, "exact|classic",
             "inertia relief: exact leaves nothing over, whatever the structure\n"
             "(the default); classic is that of the console run");
    AddValue(command, "--displacements", texts.displacements, "mass-orthogonal|held",
             "displacements of a free part: mass-orthogonal to its rigid motions\n"
             "(the default), or as held at a few nodes while solving");
    AddValue(command, "--solver", texts.solver, HasCholmod() ? "auto|sparse|cholmod|skyline" : "auto|sparse|skyline",
             HasCholmod() ? "equation solver: sparse is the program's own multifrontal one,\n"
                            "cholmod a library's, skyline that of the console run; auto (the\n"
                            "default) takes sparse, and skyline for small models"
                          : "equation solver: sparse is the program's own multifrontal one,\n"
                            "skyline that of the console run; auto (the default) takes sparse,\n"
                            "and skyline for small models");
    AddValue(command, "--factor", texts.factor, "auto|memory|disk",
             "where the sparse solver keeps the factor of the equations: on disk,\n"
             "in the directory of the results, where memory does not hold it\n"
             "(the default), or always one of the two");
    AddValue(command, "--threads", texts.threads, "N", "threads to use; all processors without this option");
    AddRuleOptions(command, texts);
    AddValue(command, "--report", texts.report, "FILE",
             "write the report as an HTML page too, with the extreme values of\n"
             "every component and two pictures (these need Chromium, and text\n"
             "among the formats)");
    AddReportOptions(command, texts);
}

void AddInfo(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "info", "Check parts, mass and balance; tell time and memory",
                                   "Examples:\n"
                                   "  tarnvexo info examples/wing --units mm-t-s\n"
                                   "      is the mass right, are the loads right, how long will it take?\n"
                                   "  tarnvexo info wing.txt --json wing-info.json");
    AddModel(command, texts);
    AddRuleOptions(command, texts);
    AddReportOptions(command, texts);
}

void AddCheck(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "check", "Look for all that is wrong or odd in a model, solve nothing",
                                   "Examples:\n"
                                   "  tarnvexo check examples/wing\n"
                                   "      can it be solved, and if not, what is to be mended first?\n"
                                   "  tarnvexo check wing.txt --rule warping=5,free-edge=off\n"
                                   "      shells warped by more than 5 degrees; nothing of free edges\n"
                                   "  tarnvexo check wing.txt -q >check.log && tarnvexo solve wing.txt -o run\n"
                                   "      solve it when the checks find no error");
    AddModel(command, texts);
    AddRuleOptions(command, texts);
    command.add_flag("-v,--verbose", texts.verbose, "name up to 10 offenders of every finding, of notes too");
    AddReportOptions(command, texts);
}

void AddRefine(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "refine", "Write the model with every element cut into k parts per edge",
                                   "Examples:\n"
                                   "  tarnvexo refine examples/wing -k 2 -o wing2.txt\n"
                                   "      four shells for one: how much do the stresses still move?\n"
                                   "  tarnvexo refine wing.txt -k 3 -o wing3.txt --no-renumber\n"
                                   "      the old nodes keep their numbers, new ones follow them");
    AddModel(command, texts);
    command.add_option("-k", texts.parts, "parts of every edge, from 2 on")->option_text("N")->required();
    AddModelOutput(command, texts);
    command.add_flag("--no-renumber", texts.keepNumbers,
                     "leave the node numbers as they come; without this option nodes are\n"
                     "renumbered for a small skyline");
}

void AddRenumber(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "renumber", "Write the model with its nodes renumbered for a small skyline",
                                   "Examples:\n"
                                   "  tarnvexo renumber examples/jib -o jib.txt\n"
                                   "      the console run needs less time and memory for jib.txt");
    AddModel(command, texts);
    AddModelOutput(command, texts);
}

void AddResult(CLI::App& command, OptionTexts& texts)
{
    command
        .add_option("RESULT", texts.result,
                    "directory of results, or its Tarn+Vexo_AverageStrs.txt; the\n"
                    "current directory without it")
        ->option_text(" ");
    AddValue(command, "--model", texts.modelFile, "MODEL",
             "the model that the results come from; without this option\n"
             "fem_solving.txt beside them");
}

void AddView(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "view", "Show results in the browser",
                                   "Examples:\n"
                                   "  tarnvexo view run --model examples/wing\n"
                                   "      results in run/, thicknesses, loads and supports of the model\n"
                                   "  tarnvexo view run --out wing.html\n"
                                   "      one file for a colleague, who needs a browser and nothing else\n"
                                   "  tarnvexo view run --view 'field=U&view=top'\n"
                                   "      displacements, seen from above");
    AddResult(command, texts);
    AddValue(command, "--out", texts.page, "FILE", "write the page into this file and do not open it");
    command.add_flag("--no-open", texts.noOpen, "open no browser, only tell the address of the page");
    AddValue(command, "--view", texts.view, "STATE",
             "how it is shown first: what stands behind # in the page's address");
    command.add_flag("-q,--quiet", texts.quiet, "no progress on standard error");
}

void AddPicture(CLI::App& app, OptionTexts& texts)
{
    CLI::App& command = AddCommand(app, "picture", "Draw a picture of results as a PNG file",
                                   "Examples:\n"
                                   "  tarnvexo picture run --out se.png\n"
                                   "      equivalent stress, the larger of both faces, deformed\n"
                                   "  tarnvexo picture run --field U --view top --deformed off --out u.png\n"
                                   "      displacements on the undeformed structure, from above\n"
                                   "  tarnvexo picture run --size 3200x2000 --dark --out slide.png\n"
                                   "      larger, for a dark slide");
    AddResult(command, texts);
    command.add_option("--out", texts.page, "the PNG file to write")->option_text("FILE")->required();
    AddValue(command, "--field", texts.field, "NAME",
             "what the colours show: SX SY SZ TXY TXZ TYZ SE S1 S2 S3,\n"
             "U DX DY DZ R RX RY RZ, thickness, section, material, side, none;\n"
             "SE without this option");
    AddValue(command, "--face", texts.face, "positive|negative|larger|viewed",
             "which face's stresses; the larger without this option");
    AddValue(command, "--view", texts.view, "iso|front|back|left|right|top|bottom",
             "from where; iso without this option");
    AddValue(command, "--deformed", texts.deformed, "P%|true|N|off",
             "displacements: the largest shown as P % of the model's size (5%\n"
             "without this option), true to scale, N times, or not at all");
    AddValue(command, "--size", texts.size, "WIDTHxHEIGHT", "in pixels; 1600x1000 without this option");
    command.add_flag("--dark", texts.dark, "dark background");
    AddValue(command, "--state", texts.state, "STATE",
             "more of the view: what stands behind # in the address of a page\n"
             "of tarnvexo view");
    command.add_flag("-q,--quiet", texts.quiet, "no progress on standard error");
}

std::unique_ptr<CLI::App> MakeApp(OptionTexts& texts)
{
    auto app =
        std::make_unique<CLI::App>("Linear static analysis of shells and beams with inertia relief.", "tarnvexo");
    app->allow_windows_style_options(false); // what begins with "/" is a path on every system
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->column_width(32);
    formatter->label("Positionals", "Arguments");
    formatter->label("OPTIONS", "options");
    formatter->label("SUBCOMMAND", "COMMAND ...");
    app->formatter(formatter);
    app->set_help_flag("-h,--help",
                       "this text; tarnvexo COMMAND --help, or\ntarnvexo help COMMAND, for a command's options");
    app->set_version_flag("--version", "", "version, compiler, vector unit in use, equation solvers");
    app->require_subcommand(1);
    app->footer("Examples:\n"
                "  tarnvexo check examples/wing           can the model be solved?\n"
                "  tarnvexo info examples/wing            mass, loads, balance; time and memory of a solution\n"
                "  tarnvexo solve examples/wing -o run    solve it, result files into run/\n"
                "  tarnvexo view run                      look at the results in the browser\n"
                "  tarnvexo                               the console run on ./fem_solving.txt\n\n"
                "Exit codes: 0 good, 1 fault in the model, 2 fault in the command line, 3 numerical failure or\n"
                "out of memory, 4 a file cannot be read or written, 130 interrupted.");
    AddSolve(*app, texts);
    AddInfo(*app, texts);
    AddCheck(*app, texts);
    AddRefine(*app, texts);
    AddRenumber(*app, texts);
    AddView(*app, texts);
    AddPicture(*app, texts);
    for (CLI::App* command : app->get_subcommands(nullptr)) { command->group("Commands"); }
    return app;
}

// ---- faults

std::vector<std::string> CommandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands(nullptr)) { names.push_back(command->get_name()); }
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        if (option->nonpositional()) {
            names.push_back(option->get_name());
        }
    }
    return names;
}

// "--output DIR", "MODEL"
std::string OptionForm(const CLI::Option& option)
{
    return option.get_positional() ? option.get_name(true) : option.get_name() + " " + option.get_option_text();
}

UsageFault UnknownWord(const CLI::App& command, const std::string& word)
{
    if (word.starts_with("-")) {
        for (const CLI::App* inner : command.get_subcommands({})) {
            if (inner->get_option_no_throw(word)) {
                return {"there is no option \"" + word + "\" without a command", "a command in front of it",
                        "tarnvexo " + inner->get_name() + " " + word};
            }
        }
        const std::vector<std::string> names = OptionNames(command);
        return {"there is no option \"" + word + "\"", CLI::detail::join(names, " "), NearestName(word, names)};
    }
    return {"\"" + word + "\" is one argument too many",
            command.get_option_no_throw("RESULT") ? "one RESULT, and options" : "one MODEL, and options", ""};
}

// What the parser met, in words of ours. Unknown words come first: they are often the reason for what is missing.
UsageFault FaultOf(const CLI::ParseError& error, const CLI::App& command)
{
    const std::vector<std::string> unknown = command.remaining();
    if (!unknown.empty()) {
        return UnknownWord(command, unknown.front());
    }
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_required() && option->count() == 0 && error.get_name() == "RequiredError") {
            return {OptionForm(*option) + " is missing", option->get_description(), ""};
        }
        // The parser's text begins with or contains the name of the option that lacks its value.
        if (error.get_name() == "ArgumentMismatch" && option->nonpositional() &&
            std::string(error.what()).find(option->get_name() + ":") != std::string::npos) {
            return {option->get_name() + " needs a value", OptionForm(*option), ""};
        }
    }
    return {error.what(), "see --help", ""};
}

MessageCommand UsageMessage(const std::string& command, const UsageFault& fault)
{
    MessageCommand message;
    message.error = command + ": error: " + fault.what + "\n  expected: " + fault.expected +
                    (fault.meant.empty() ? "" : "\n  did you mean: " + fault.meant) + "\n  to do:    see " + command +
                    " --help\n";
    message.exitCode = ExitUsage;
    return message;
}

// A value that is there but empty, from a variable of a script that is not set, say.
void RefuseEmptyValues(const CLI::App& command)
{
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& value : option->results()) {
            if (value.empty()) {
                throw UsageFault{OptionForm(*option) + " is empty", "a value of at least one character", ""};
            }
        }
    }
}

// ---- commands

// The rules, and the units that they hold the model's materials to.
RuleBook ParsedRules(const OptionTexts& texts)
{
    RuleBook rules;
    ApplyRuleSettings(texts.rules, rules);
    rules.DeclareUnits(TextsOfUnits(ParsedUnits(texts.units)).system);
    return rules;
}

Command SolveOf(const OptionTexts& texts)
{
    SolveCommand command;
    command.solve.modelFile = texts.model;
    command.solve.outputDirectory = texts.output;
    command.solve.solver = ParsedSolver(texts.solver);
    command.solve.factor = ParsedChoice("--factor", texts.factor, FactorPlaces);
    command.solve.balance = ParsedChoice("--balance", texts.balance, Balances);
    command.solve.displacements = ParsedChoice("--displacements", texts.displacements, Displacements);
    command.solve.formats = ParsedFormats(texts.formats);
    command.solve.rules = ParsedRules(texts);
    command.threads = ParsedThreads(texts.threads);
    command.units = ParsedUnits(texts.units);
    command.jsonFile = texts.json;
    command.reportFile = texts.report;
    command.quiet = texts.quiet;
    return command;
}

Command InfoOf(const OptionTexts& texts)
{
    return InfoCommand{{texts.model, ParsedRules(texts)}, ParsedUnits(texts.units), texts.json, texts.quiet};
}

Command CheckOf(const OptionTexts& texts)
{
    return CheckCommand{
        {texts.model, ParsedRules(texts)}, ParsedUnits(texts.units), texts.json, texts.quiet, texts.verbose};
}

Command RefineOf(const OptionTexts& texts)
{
    return RefineCommand{texts.model, ParsedInteger("-k", texts.parts, 2, MostParts), texts.output, !texts.keepNumbers};
}

Command RenumberOf(const OptionTexts& texts)
{
    return RenumberCommand{texts.model, texts.output};
}

Command ViewOf(const OptionTexts& texts)
{
    ViewCommand command;
    command.result = texts.result;
    command.modelFile = texts.modelFile;
    command.outputFile = texts.page;
    command.view = ParsedState(texts.view);
    command.open = !texts.noOpen;
    command.quiet = texts.quiet;
    return command;
}

// The state of the view as the page's address has it: names of the viewer with "&" between.
Command PictureOf(const OptionTexts& texts)
{
    PictureCommand command;
    command.result = texts.result;
    command.modelFile = texts.modelFile;
    command.outputFile = texts.page;
    if (!command.outputFile.ends_with(".png") && !command.outputFile.ends_with(".PNG")) {
        throw UsageFault{"--out cannot be \"" + texts.page + "\"", "a name that ends in .png", ""};
    }
    ParseSize(texts.size, command);
    command.state = "field=" + ParsedName("--field", texts.field, Fields) +
                    "&face=" + ParsedName("--face", texts.face, Faces) +
                    "&view=" + ParsedName("--view", texts.view.empty() ? "iso" : texts.view, StandardViews) +
                    "&deformed=" + ParsedDeformation(texts.deformed) + (texts.dark ? "&dark=1" : "") +
                    (texts.state.empty() ? "" : "&" + ParsedState(texts.state));
    command.quiet = texts.quiet;
    return command;
}

Command CommandOf(const std::string& name, const OptionTexts& texts)
{
    if (texts.listRules) {
        return MessageCommand{RuleTableText(ParsedRules(texts)), "", ExitGood};
    }
    return name == "solve"      ? SolveOf(texts)
           : name == "info"     ? InfoOf(texts)
           : name == "check"    ? CheckOf(texts)
           : name == "refine"   ? RefineOf(texts)
           : name == "renumber" ? RenumberOf(texts)
           : name == "view"     ? ViewOf(texts)
                                : PictureOf(texts);
}

} // namespace

Command ParseCommandLine(const std::vector<std::string>& arguments, const std::function<std::string()>& versionText)
{
    if (!arguments.empty() && arguments.front() == "help") {
        return ParseCommandLine(arguments.size() == 1 ? std::vector<std::string>{"--help"}
                                                      : std::vector<std::string>{arguments[1], "--help"},
                                versionText);
    }
    OptionTexts texts;
    const std::unique_ptr<CLI::App> app = MakeApp(texts);
    const std::vector<std::string> commandNames = CommandNames(*app);

    // A misspelt command is found before its options are looked at.
    const std::string first = arguments.empty() ? "" : arguments.front();
    if (!first.starts_with("-") && std::find(commandNames.begin(), commandNames.end(), first) == commandNames.end()) {
        const bool isPath = first.find_first_of("/\\.") != std::string::npos;
        return UsageMessage(
            "tarnvexo",
            {first.empty() ? "a command is missing" : "there is no command \"" + first + "\"",
             CLI::detail::join(commandNames, ", "),
             isPath ? "tarnvexo check " + first + ", or solve " + first : NearestName(first, commandNames)});
    }
    if (std::find(arguments.begin(), arguments.end(), ListRules) != arguments.end() && !first.starts_with("-")) {
        if (CLI::Option* model = app->get_subcommand(first)->get_option_no_throw("MODEL")) {
            model->required(false);
        }
    }
    try {
        app->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // last word first
        RefuseEmptyValues(*app->get_subcommands().front());
        return CommandOf(first, texts);
    } catch (const CLI::CallForHelp&) {
        return MessageCommand{app->help(), "", ExitGood};
    } catch (const CLI::CallForVersion&) {
        return MessageCommand{versionText(), "", ExitGood};
    } catch (const CLI::ParseError& error) {
        const CLI::App* command = app->get_subcommands().empty() ? app.get() : app->get_subcommands().front();
        const std::string name = command == app.get() ? "tarnvexo" : "tarnvexo " + command->get_name();
        return UsageMessage(name, FaultOf(error, *command));
    } catch (const UsageFault& fault) {
        return UsageMessage("tarnvexo " + first, fault);
    }
}

} // namespace tarnvexo
