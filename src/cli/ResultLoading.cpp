#include "cli/ResultLoading.h"

#include "app/AssemblyDriver.h"
#include "app/InertiaLoads.h"
#include "app/ModelCheck.h"
#include "app/ModelLoading.h"
#include "app/RunFailure.h"
#include "cli/CommandFiles.h"
#include "output/ContourFile.h"
#include "output/ShellStressFiles.h"
#include "platform/FilePath.h"
#include "view/Gzip.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;
using platform::PathOf;

std::string Beside(const std::string& file, const char* name)
{
    return (PathOf(file).parent_path() / PathOf(name)).string();
}

bool IsThere(const std::string& file)
{
    std::error_code ignored;
    return fs::exists(PathOf(file), ignored);
}

std::string ContourFileOf(const std::string& result)
{
    std::error_code ignored;
    if (!fs::exists(PathOf(result), ignored)) {
        throw RunFailure(ExitFile, result +
                                       ": error: there is no such file or directory\n"
                                       "  expected: a directory with results, or their " +
                                       ContourFileName + "\n  to do:    correct the path");
    }
    if (!fs::is_directory(PathOf(result), ignored)) {
        return result;
    }
    const std::string file = (PathOf(result) / ContourFileName).string();
    if (!fs::exists(PathOf(file), ignored)) {
        throw RunFailure(ExitFile, result + ": error: this directory holds no results: there is no " + ContourFileName +
                                       "\n  expected: a directory that tarnvexo solve or the console run has written "
                                       "into\n  to do:    solve the model first, tarnvexo solve MODEL -o DIR, or name "
                                       "another directory");
    }
    return file;
}

void ReadContour(ContourModel& contour, const std::string& file)
{
    const std::optional<std::string> fault = TryReadContourFile(contour, file.c_str());
    if (!fault) {
        throw RunFailure(ExitFile, file + ": error: the results cannot be read: " + platform::ReasonOfFile(errno) +
                                       "\n  expected: a contour file that may be read"
                                       "\n  to do:    look at its permissions, or name another one");
    }
    if (!fault->empty()) {
        throw RunFailure(ExitFile, *fault);
    }
}

// ---- do they belong together?

std::string CountMismatch(const char* what, std::size_t found, std::size_t expected)
{
    return found == expected
               ? ""
               : "it has " + std::to_string(found) + " " + what + ", the result " + std::to_string(expected);
}

template <class Shells> bool SameNodes(const Shells& one, const Shells& other)
{
    return one.connectivity == other.connectivity;
}

// Why not, or an empty text.
std::string Mismatch(const ShellStresses& own, const ContourModel& contour)
{
    for (const std::string& counts :
         {CountMismatch("quadrilaterals", own.quads.connectivity.size(), contour.quads.connectivity.size()),
          CountMismatch("triangles", own.tris.connectivity.size(), contour.tris.connectivity.size())}) {
        if (!counts.empty()) {
            return counts;
        }
    }
    return SameNodes(own.quads, contour.quads) && SameNodes(own.tris, contour.tris)
               ? ""
               : "its shells have other nodes than those of the result";
}

double LargestCoordinate(const std::vector<Vector3>& places)
{
    double largest = 0;
    for (const Vector3& place : places) {
        for (const double coordinate : place) { largest = std::max(largest, std::fabs(coordinate)); }
    }
    return largest;
}

// The contour file has six significant digits, after a shift to the centroid and back that leaves round-off of the
// model's size in coordinates next to zero.
bool SamePlaces(const std::vector<Vector3>& places, const std::vector<Vector3>& rounded)
{
    constexpr double roundOff = 1e-5;
    const double shiftRoundOff = 1e-14 * LargestCoordinate(places);
    for (std::size_t n = 0; n < places.size(); ++n) {
        for (std::size_t k = 0; k < 3; ++k) {
            const double size = std::max(std::fabs(places[n][k]), std::fabs(rounded[n][k]));
            if (!(std::fabs(places[n][k] - rounded[n][k]) <= roundOff * size + shiftRoundOff)) {
                return false;
            }
        }
    }
    return true;
}

std::string Mismatch(const ModelStore& model, const ContourModel& contour)
{
    for (const std::string& counts :
         {CountMismatch("nodes", model.NodeCoordinates.size(), contour.nodes.coordinates.size()),
          CountMismatch("quadrilaterals", model.QuadConnectivity.size(), contour.quads.connectivity.size()),
          CountMismatch("triangles", model.TriConnectivity.size(), contour.tris.connectivity.size()),
          CountMismatch("beams", model.BeamConnectivity.size(), contour.beams.size())}) {
        if (!counts.empty()) {
            return counts;
        }
    }
    if (model.QuadConnectivity != contour.quads.connectivity || model.TriConnectivity != contour.tris.connectivity) {
        return "its shells have other nodes than those of the result";
    }
    std::vector<Vector3> beamEnds, contourEnds;
    for (std::size_t b = 0; b < contour.beams.size(); ++b) {
        for (const int node : model.BeamConnectivity[b]) {
            beamEnds.push_back(model.NodeCoordinates[static_cast<std::size_t>(node)]);
        }
        contourEnds.push_back(contour.beams[b].end1);
        contourEnds.push_back(contour.beams[b].end2);
    }
    return SamePlaces(model.NodeCoordinates, contour.nodes.coordinates) && SamePlaces(beamEnds, contourEnds)
               ? ""
               : "its nodes stand elsewhere than those of the result";
}

// ---- what stands beside

// "error: what" of a message's first line.
std::string FirstLineWithoutPlace(const std::string& message)
{
    const std::string line = message.substr(0, message.find('\n'));
    const std::size_t error = line.find("error: ");
    return error == std::string::npos ? line : line.substr(error + std::strlen("error: "));
}

void AddOwnStresses(ResultParts& parts, const std::string& contourFile, std::vector<std::string>& notes)
{
    const std::string file = Beside(contourFile, ShellStressFileName);
    const std::optional<std::string> fault = TryReadShellStressFile(parts.ownStresses, file.c_str());
    const std::string reason = !fault            ? platform::ReasonOfFile(errno)
                               : !fault->empty() ? FirstLineWithoutPlace(*fault)
                                                 : Mismatch(parts.ownStresses, parts.contour);
    parts.hasOwnStresses = reason.empty();
    if (!reason.empty()) {
        notes.push_back(file + ": note: stresses of the elements themselves are not shown: " + reason);
    }
}

// Returns why the model is not taken, or an empty text.
std::string TryReadModel(ResultParts& parts, const std::string& file)
{
    try {
        LoadModel(parts.model, file);
        const std::string fault = ModelFault(parts.model, file);
        return fault.empty() ? Mismatch(parts.model, parts.contour) : FirstLineWithoutPlace(fault);
    } catch (const RunFailure& failure) {
        return FirstLineWithoutPlace(failure.what());
    }
}

void AddModel(ResultParts& parts, const ResultSource& source, const std::string& contourFile,
              std::vector<std::string>& notes)
{
    const bool isNamed = !source.modelFile.empty();
    const std::string file = isNamed ? ModelFileOf(source.modelFile) : Beside(contourFile, ModelFileName);
    const std::string reason =
        isNamed || IsThere(file) ? TryReadModel(parts, file) : "the model is not there, --model names it";
    parts.hasModel = reason.empty();
    if (!parts.hasModel) {
        const std::string what = "thicknesses, sections, supports and loads are not shown: " + reason;
        if (isNamed) {
            throw RunFailure(ExitFile, file + ": error: " + what +
                                           "\n  expected: the model file that the result comes from"
                                           "\n  to do:    name it, or leave --model out");
        }
        notes.push_back(file + ": note: " + what);
        return;
    }
    std::string fault;
    parts.inertiaForces = BalancingInertiaLoads(parts.model, file, fault);
    if (!fault.empty()) {
        notes.push_back(file + ": note: inertia loads are not shown: " + FirstLineWithoutPlace(fault));
    }
}

} // namespace

std::string TitleOf(const std::string& contourFile)
{
    std::error_code ignored;
    const fs::path path = fs::weakly_canonical(PathOf(contourFile), ignored);
    const bool hasUsualName = path.filename() == ContourFileName && path.has_parent_path();
    return (hasUsualName ? path.parent_path().filename() : path.filename()).string();
}

ShownResult LoadShownResult(const ResultSource& source, const std::string& view, StageClock& clock)
{
    ShownResult shown;
    ResultParts parts;
    clock.Next(); // read
    const std::string contourFile = ContourFileOf(source.result);
    ReadContour(parts.contour, contourFile);
    AddOwnStresses(parts, contourFile, shown.notes);
    clock.Next(); // model
    AddModel(parts, source, contourFile, shown.notes);
    clock.Next(); // pack
    parts.title = TitleOf(contourFile);
    parts.view = view;
    shown.packet = GzipCompressed(ResultPacket(parts));
    clock.End();
    return shown;
}

} // namespace tarnvexo
