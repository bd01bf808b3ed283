#include "input/StrictTables.h"

#include "core/ModelFileFormats.h"
#include "input/FormatFaults.h"
#include "input/TextPlaces.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// By TableId, as a user writes them.
constexpr const char* RecordLayouts[TableCount] = {
    "#number: E=... Mu=... Density=...",
    "#number: TK=...",
    "a label line, Hw=... Tw=... Bf=... Tf=...",
    "a label line, Hw=... Tw=... Bf=... Tf=...",
    "a label line, R=... T=...",
    "number:x,y,z",
    "number:n1,n2,n3,n4[material,thickness]",
    "number:n1,n2,n3[material,thickness]",
    "number:n1,n2<vx,vy,vz>[material,BeamSecType=...,BeamSecIndex=...,BeamSecOz=...,BeamSecMirrored=...]",
    "node:dx dy dz rx ry rz",
    "node<Fx,Fy,Fz,Mx,My,Mz>",
    "element:q1,q2,q3",
    "element:q1,q2,q3",
    "element:q1,q2",
};

} // namespace

StrictTables::StrictTables(std::string_view text, SourceDiagnostics& diagnostics)
    : text(text), scanner(text), diagnostics(diagnostics), headerAheadOf(text.size() + 1)
{
    for (int t = 0; t < TableCount; ++t) { tables[t] = TableReading(ModelTables[t]); }
}

// The count of a table. False: the table is not there.
bool StrictTables::OpenTable(TableId id, const char* countFormat)
{
    if (hasEnded) {
        return false;
    }
    int count = 0;
    const std::size_t begin = scanner.Position();
    const ScanResult scan = scanner.Scan(countFormat, count);
    if (!scan.Matched()) {
        scanner.Seek(begin);
        return OpenBehindFault(id, countFormat, scan);
    }
    TakeCount(id, scan, count);
    return true;
}

// The text is not the header of the section: it stands further on, is written otherwise, or is not there.
bool StrictTables::OpenBehindFault(TableId id, const char* countFormat, ScanResult scan)
{
    if (id < firstTold) {
        return false;
    }
    const std::string key = tables[id].key;
    std::size_t begin = Ahead(scanner.Position());
    if (Ahead(scan.stoppedAt) == text.size()) {
        ReportEnd(begin == text.size() ? "before the section " + key : "within the header of the section " + key,
                  Joined({ExpectedText(countFormat), " and what follows it"}));
        hasEnded = true;
        return false;
    }
    SectionHeader header = NextHeader(text, begin);
    while (header.IsThere() && header.table < id) { // one that has its place further up
        if (tables[header.table].isThere) {
            diagnostics.Report(RuleId::Format,
                               {header.begin, Joined({"the section ", tables[header.table].key, " stands here again"}),
                                Joined({"the section ", key}), "keep one of the two"});
        }
        header = NextHeader(text, header.count);
        begin = header.begin;
    }
    if (header.table != id) {
        diagnostics.Report(RuleId::Format,
                           {begin, Joined({"the section ", key, " is missing, or its header is damaged"}),
                            ExpectedText(countFormat) + " and its records",
                            "add the section in its place, with a count of 0 if it is empty"});
        firstTold = header.IsThere() ? header.table : TableCount;
        hasEnded = !header.IsThere();
        scanner.Seek(header.begin);
        return false;
    }
    if (header.begin > begin && id == 0) {
        diagnostics.Report(RuleId::Format, TextBehindFault(text, begin, "the first line"));
    } else if (header.begin > begin && tables[id - 1].isThere) {
        ReportTextBetween(static_cast<TableId>(id - 1), begin, header.begin, countFormat);
    }
    scanner.Seek(header.begin);
    int count = 0;
    scan = scanner.Scan(countFormat, count);
    if (!scan.Matched()) {
        diagnostics.Report(RuleId::Format, MismatchFault(text, scan, header.begin, "the header of the section " + key,
                                                         ExpectedText(countFormat) + " and the number of records"));
        scanner.Seek(header.count);
        scan = scanner.Scan("%d\n", count);
        if (!scan.Matched()) {
            scanner.Seek(NextLine(text, header.count));
        }
    }
    TakeCount(id, scan, count);
    return true;
}

// What stands between the records of a table, as many as counted, and the header of the next section.
void StrictTables::ReportTextBetween(TableId last, std::size_t begin, std::size_t end, const char* countFormat)
{
    if (!IsFirstOfLine(text, begin) && !BeginsRecord(text, begin, last)) {
        diagnostics.Report(RuleId::Format, TextBehindFault(text, begin, NameOfPrevious(last)));
        begin = std::min(end, Ahead(NextLine(text, begin)));
    }
    const long long more =
        begin < end && BeginsRecord(text, begin, last) ? CountRecords(text.substr(begin, end - begin), last) : 0;
    if (more > 0) {
        ReportMore(last, more);
    } else if (begin < end) {
        diagnostics.Report(RuleId::Format,
                           {begin, Joined({"text between the ", tables[last].records, " and the next section"}),
                            ExpectedText(countFormat), "take the text away"});
    }
}

void StrictTables::TakeCount(TableId id, const ScanResult& scan, int count)
{
    TableReading& table = tables[id];
    table.isThere = true;
    table.countPosition = scan.stored == 1 ? scan.fieldBegin[0] : scan.stoppedAt;
    if (scan.stored != 1) {
        return; // already told
    }
    const std::size_t behind = text.find_first_not_of("+-0123456789", table.countPosition);
    if (behind != std::string_view::npos &&
        std::string_view(".,:;<[eExX").find(text[behind]) != std::string_view::npos) {
        const bool isMissing = IsFirstOfLine(text, table.countPosition); // and what was read is that of a record
        diagnostics.Report(RuleId::Format,
                           {isMissing ? BeforeSpace(text, table.countPosition) : table.countPosition,
                            Joined({table.key, " has no whole number as its count"}),
                            Joined({"the number of ", table.records, " that follow, as ", table.key, "=12"}),
                            Joined({"correct ", table.key})});
        scanner.Seek(isMissing ? LineAround(text, table.countPosition).begin : NextLine(text, behind));
        return;
    }
    if (scan.oddField >= 0) {
        diagnostics.Report(
            RuleId::Format,
            {table.countPosition,
             Joined({table.key, "=", WrittenNumber(text, table.countPosition), " is beyond all integers"}),
             Joined({"the number of ", table.records, " that follow"}), Joined({"correct ", table.key})});
        return;
    }
    table.count = count;
    table.isCounted = table.isSound = count >= 0;
    SkipTextBehindCount(id, behind);
}

// Behind a count stands the end of its line, a record or the next section. (The label line of a section is any text.)
void StrictTables::SkipTextBehindCount(TableId id, std::size_t behind)
{
    const std::size_t at = Ahead(behind);
    const bool isLabel = id == TSections || id == LSections || id == CSections;
    if (at < text.size() && !isLabel && !IsFirstOfLine(text, at) && !BeginsRecord(text, at, id) &&
        !IsAtHeader(text, at)) {
        diagnostics.Report(RuleId::Format, TextBehindFault(text, at, NameOfPrevious(id)));
        SeekRecordWithinLine(id, at);
    }
}

// To the first record in the rest of the line that holds a position: where a line end was lost, the record of the next
// line stands behind the text. Without one to the next line.
void StrictTables::SeekRecordWithinLine(TableId id, std::size_t position)
{
    constexpr std::size_t enough = 24; // for the number of a record and the character behind it
    const std::size_t nextLine = NextLine(text, position);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t at = position + 1; at < nextLine; ++at) {
        const bool mayBegin = text[at] == '#' || (isDigit(text[at]) && !isDigit(text[at - 1]));
        if (mayBegin && BeginsRecord(text.substr(at, std::min(enough, nextLine - at)), 0, id)) {
            scanner.Seek(at);
            return;
        }
    }
    scanner.Seek(nextLine);
}

void StrictTables::CloseTable(TableId id, long long doubtful)
{
    TableReading& table = tables[id];
    if (!table.isCounted) {
        if (table.count < 0) {
            ReportCount(id, table.recordCount);
        }
        return; // any index may be right
    }
    table.limit = table.count;
    if (table.recordCount < table.count) {
        table.isSound = false;
        if (!hasEnded && table.recordCount + table.damages + doubtful < table.count) {
            ReportCount(id, table.recordCount);
        }
    }
}

StrictTables::Recovery StrictTables::Recover(TableId id)
{
    TableReading& table = tables[id];
    const std::size_t begin = Ahead(recordBegin);
    if (begin == text.size()) {
        if (id != BeamLoads && table.isCounted) {
            const std::string count = std::to_string(table.count);
            ReportEnd(
                Joined({"after ", std::to_string(table.recordCount), " of ", count, " ", table.record, " records"}),
                Joined({table.key, "=", count, " records and the sections behind them"}));
            hasEnded = true;
        }
        return {0, 0, true};
    }
    if (IsAtHeader(text, begin)) {
        return {0, 0, true};
    }
    table.isSound = false;
    const std::size_t at = failed.stoppedAt;
    if (Ahead(at) == text.size()) {
        ReportEnd("within " + NameOf(NameOfRecord(id)), Joined({"a whole record, ", RecordLayouts[id]}));
        hasEnded = true;
        return {1, 0, true};
    }

    // A record that is too short takes what it misses from the next one: the line of that one begins behind its own.
    const bool beginsWithinLine = at == begin && !IsFirstOfLine(text, begin);
    const std::size_t spanBegin = beginsWithinLine ? Ahead(previousBegin) : begin;
    const std::size_t lineBegin = LineAround(text, at).begin;
    Recovery recovery = {1, 0, false};
    std::size_t resume = NextLine(text, at);
    // (Not if the fault is right behind a label line, which nothing can tell from the line of another record.)
    const bool isBehindLabel = failed.expected == formats::SectionHw || failed.expected == formats::SectionR;
    if (lineBegin > spanBegin && !isBehindLabel && BeginsRecord(text, lineBegin, id)) {
        const std::string subject = beginsWithinLine ? NameOfPrevious(id) : NameOf(NameOfRecord(id));
        if (id <= CSections) { // records of several lines
            diagnostics.Report(RuleId::Format, MismatchFault(text, failed, begin, subject, RecordLayouts[id]));
        } else {
            diagnostics.Report(RuleId::Format, {BeforeSpace(text, lineBegin), subject + ": the line ends too early",
                                                RecordLayouts[id], "complete the record"});
        }
        recovery.records = beginsWithinLine ? 0 : 1;
        resume = lineBegin;
    } else if (beginsWithinLine) {
        diagnostics.Report(RuleId::Format, TextBehindFault(text, begin, NameOfPrevious(id)));
        recovery.records = 0;
    } else {
        diagnostics.Report(RuleId::Format,
                           MismatchFault(text, failed, begin, NameOf(NameOfRecord(id)), RecordLayouts[id]));
        if (IsFirstOfLine(text, at) && at > begin && IsAtHeader(text, at)) {
            resume = lineBegin;
        }
    }
    scanner.Seek(NextRecord(resume, id, recovery.doubtful));
    return recovery;
}

// The next line, from the one that begins at a position on, with a record of the table or a header in it.
std::size_t StrictTables::NextRecord(std::size_t lineBegin, TableId id, long long& doubtful)
{
    // Looked for once, not behind every fault on the way to it.
    if (lineBegin < headerAheadOf || lineBegin > headerAhead.begin) {
        headerAhead = NextHeader(text, lineBegin);
        headerAheadOf = lineBegin;
    }
    while (lineBegin < headerAhead.begin && !BeginsRecord(text, lineBegin, id)) {
        const std::size_t nextLine = NextLine(text, lineBegin);
        const std::size_t visible = BehindBlanks(text, lineBegin);
        if (visible < nextLine && text[visible] != '\n') {
            ++doubtful;
        }
        lineBegin = nextLine;
    }
    return std::min(lineBegin, headerAhead.begin);
}

void StrictTables::ReadEnd()
{
    const std::size_t rest = Ahead(scanner.Position());
    const TableReading& last = tables[BeamLoads];
    if (hasEnded || !last.isThere || rest == text.size()) {
        return;
    }
    if (last.isCounted && BeginsRecord(text, rest, BeamLoads)) {
        ReportMore(BeamLoads, CountRecords(text.substr(rest), BeamLoads));
    } else if (last.recordCount > 0 && !IsFirstOfLine(text, rest)) {
        diagnostics.Report(RuleId::Format, TextBehindFault(text, rest, NameOfPrevious(BeamLoads)));
    } else {
        diagnostics.Report(RuleId::TrailingText,
                           {rest, "text behind the last section, which is not read", "the end of the file",
                            "take the text away, or correct the counts above it"});
    }
}

bool StrictTables::FitsOddly(const ScanResult& scan, const RecordName& record)
{
    if (!scan.Matched()) {
        failed = scan;
        return false;
    }
    const std::size_t position = scan.fieldBegin[scan.oddField];
    diagnostics.Report(
        RuleId::Format,
        {position, Joined({NameOf(record), ": \"", WrittenNumber(text, position), "\" is no number that can be used"}),
         "an integer of 32 bits, or a complete number", "correct the number"});
    return true;
}

// Without a label line in front, a section would lose its first size, and the last table its next header. What stands
// behind the last size of the section before is no label.
bool StrictTables::SkipLabelLine(TableId id)
{
    const bool isBehindRecord = tables[id].recordCount > 0 && !IsFirstOfLine(text, Ahead(scanner.Position()));
    if (!isBehindRecord && !IsAtHeader(text, scanner.Position()) && scanner.SkipLine()) {
        return true;
    }
    failed = ScanResult();
    failed.expected = formats::LabelCharacter;
    failed.stoppedAt = scanner.Position();
    return false;
}

void StrictTables::KeepLabel(int label, TableId id, const ScanResult& scan)
{
    TableReading& table = tables[id];
    table.oddRecord = table.recordCount;
    table.oddLabel = label;
    table.oddLabelPosition = scan.fieldBegin[0];
    if (table.CountsFromOne()) {
        diagnostics.Report(
            RuleId::LabelsFromOne,
            {table.oddLabelPosition,
             Joined({"the ", table.records, " are numbered from 1, but references to them count from 0"}),
             Joined({"the ", table.records, " numbered 0, 1, 2, ..."}),
             "number them from 0, and lower the references by 1 if they count from 1 as well"});
        return;
    }
    const std::string name = NameOf(NameOfRecord(id));
    if (table.HasGap() || table.HasRepeat()) {
        const std::string number = std::to_string(table.HasGap() ? table.oddRecord : label);
        diagnostics.Report(RuleId::LabelGap,
                           {table.oddLabelPosition,
                            Joined({"the number ", number, table.HasGap() ? " is left out" : " stands again", ": ",
                                    name, " carries the number ", std::to_string(label)}),
                            Joined({"the ", table.records, " numbered 0, 1, 2, ..."}),
                            Joined({"look whether a ", table.record, table.HasGap() ? " is missing" : " stands twice",
                                    ": references count positions, so those behind it have moved"})});
        return;
    }
    diagnostics.Report(
        RuleId::LabelOrder,
        {table.oddLabelPosition, Joined({name, " carries the number ", std::to_string(label), ", which means nothing"}),
         Joined({"the ", table.records, " numbered 0, 1, 2, ...: references count positions in the table"}),
         "nothing, if references count positions from 0; else number the records by position"});
}

void StrictTables::ReportCount(TableId id, long long records)
{
    TableReading& table = tables[id];
    table.isSound = false;
    table.limit = static_cast<int>(std::clamp<long long>(records, table.limit, INT_MAX));
    TextFault fault = CountFault(table, records);
    const bool explains = (table.HasGap() && records < table.count) || (table.HasRepeat() && records > table.count);
    if (explains) {
        const std::string line = std::to_string(PlaceInText(text, table.oddLabelPosition).line);
        fault.toDo +=
            table.HasGap()
                ? Joined({": number ", std::to_string(table.oddRecord), " is missing in front of line ", line})
                : Joined({": number ", std::to_string(table.oddLabel), " stands again in line ", line});
    }
    diagnostics.Report(RuleId::Format, std::move(fault));
}

// Records behind as many as counted. What damages explain is not the fault of the count.
void StrictTables::ReportMore(TableId id, long long more)
{
    TableReading& table = tables[id];
    const long long records = table.recordCount + more;
    if (table.isCounted && more > table.damages) {
        ReportCount(id, records);
    }
    table.limit = static_cast<int>(std::clamp<long long>(records, table.limit, INT_MAX));
}

void StrictTables::ReportEnd(const std::string& where, const std::string& expected)
{
    diagnostics.Report(RuleId::Format, EndFault(text, where, expected));
}

// The record in front of the one that is read, or the count.
std::string StrictTables::NameOfPrevious(TableId id) const
{
    const TableReading& table = tables[id];
    return table.recordCount == 0 ? std::string("the count ") + table.key
                                  : NameOf({table.record, table.recordCount - 1});
}

std::size_t StrictTables::Ahead(std::size_t position) const
{
    return BehindSpace(text, position);
}

} // namespace tarnvexo
