#include "input/StrictReader.h"

#include "core/ModelFileFormats.h"
#include "input/FileText.h"
#include "input/FormatFaults.h"
#include "input/RecordChecks.h"
#include "input/SectionHeaders.h"
#include "input/StrictLoads.h"
#include "input/StrictMesh.h"
#include "input/StrictProperties.h"
#include "input/StrictTables.h"
#include "input/TextKind.h"
#include "input/TextPlaces.h"

#include <algorithm>
#include <string>

namespace tarnvexo {

namespace {

constexpr const char* ReleaseLine = "### Quor_Tarn+Vexo release=3.0 ###";

// False: nothing more can be read.
bool ReadRelease(std::string_view text, StrictTables& tables, SourceDiagnostics& diagnostics)
{
    constexpr std::size_t farEnough = 10000; // for the first section of a file whose first line is damaged
    FormatScanner& scanner = tables.Scanner();
    double release = 0.0;
    const ScanResult scan = scanner.Scan(formats::Release, release);
    if (scan.stored == 1 && release != formats::SupportedRelease) {
        diagnostics.Report(RuleId::Format,
                           {scan.fieldBegin[0], "the file is of another release than this program reads",
                            Joined({"release=", formats::SupportedReleaseText}),
                            "write the model again with a pre-processor of that release"});
        return false;
    }
    if (tables.Fits(scan, {"release"})) {
        return true;
    }
    const SectionHeader first = NextHeader(text.substr(0, std::min(text.size(), farEnough)), 0);
    if (first.IsThere()) {
        diagnostics.Report(RuleId::Format, MismatchFault(text, scan, 0, "the first line", ReleaseLine));
        scanner.Seek(first.begin);
        return true;
    }
    if (BehindSpace(text, scan.stoppedAt) == text.size()) {
        diagnostics.Report(RuleId::Format,
                           EndFault(text, "within its first line", "a model file from its first line to its last"));
        return false;
    }
    diagnostics.Report(RuleId::Format, {BehindSpace(text, 0), "the file does not begin as a model file does",
                                        ReleaseLine, "name a model file; this seems to be something else"});
    return false;
}

} // namespace

StrictReading ReadModelStrictly(ModelStore& model, std::string_view text, const char* fileName, const RuleBook& rules)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    SourceDiagnostics diagnostics({text, fileName}, rules);
    if (const TextFault fault = FaultOfTextKind(text); !fault.what.empty()) {
        diagnostics.Adds(RuleId::Format, fault.position);
        diagnostics.KeepWithoutLine(RuleId::Format, fault);
        return diagnostics.Result();
    }
    StrictTables tables(text, diagnostics);
    RecordChecks checks(text, tables.All(), diagnostics);
    if (ReadRelease(text, tables, diagnostics)) {
        for (const auto read : {ReadMaterials, ReadThicknesses, ReadTSections, ReadLSections, ReadTubeSections, //
                                ReadNodes, ReadQuads, ReadTris, ReadBeams,                                      //
                                ReadRestraints, ReadForces, ReadQuadLoads, ReadTriLoads, ReadBeamLoads}) {
            read(model, tables, checks);
        }
        tables.ReadEnd();
    }
    return diagnostics.Result();
}

std::optional<StrictReading> ReadModelFileStrictly(ModelStore& model, const char* fileName, const RuleBook& rules)
{
    const FileText file(fileName, SilenceSeconds, MayBeModelText);
    if (!file.IsRead()) {
        return std::nullopt;
    }
    if (!file.IsMapped() && file.Bytes().size() > LongestStream) {
        SourceDiagnostics endless({"", fileName}, rules);
        endless.Adds(RuleId::Format, 0);
        endless.KeepWithoutLine(RuleId::Format, {0, "the stream does not end",
                                                 Joined({"at most ", std::to_string(LongestStream >> 20), " MB"}),
                                                 "write the model to a file first"});
        return endless.Result();
    }
    return ReadModelStrictly(model, file.Bytes(), fileName, rules);
}

} // namespace tarnvexo
