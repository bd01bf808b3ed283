// input/StrictTables.h
// The counted tables of a model file, read strictly: finds the header of each, takes its count and its records, and
// behind a fault goes on at the next record or section, so that one fault gives one message.
#pragma once

#include "input/FormatScanner.h"
#include "input/SectionHeaders.h"
#include "input/SourceDiagnostics.h"
#include "input/TableReading.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvexo {

class StrictTables {
public:
    // The text and the diagnostics must outlive the tables.
    StrictTables(std::string_view text, SourceDiagnostics& diagnostics);

    FormatScanner& Scanner() { return scanner; }
    const TableReading& operator[](TableId id) const { return tables[id]; }
    const TableReading* All() const { return tables; }
    bool IsSoundSoFar() const { return diagnostics.Errors() == 0; }

    // A table: its count, then its records with readRecord(), which returns whether the text of one fitted. The arrays
    // are emptied and get room for as many as the text can hold; readRecord appends to them.
    template <class ReadRecord, class... Records>
    void ReadTable(TableId id, const char* countFormat, std::size_t shortestRecord, int& count,
                   const ReadRecord& readRecord, std::vector<Records>&... arrays);

    // Text behind the last table.
    void ReadEnd();

    // For readRecord: the record that is being read.
    RecordName NameOfRecord(TableId id) const { return {tables[id].record, tables[id].recordCount}; }

    // For readRecord. True: the scan matched. Its values may still be none that the text says, which is told.
    bool Fits(const ScanResult& scan, const RecordName& record)
    {
        return (scan.Matched() && scan.oddField < 0) || FitsOddly(scan, record);
    }
    // For readRecord: the number that the record carries. It means nothing, but tells what the references may mean.
    void CheckLabel(int label, TableId id, const ScanResult& scan)
    {
        if (label != tables[id].recordCount && tables[id].oddRecord < 0) {
            KeepLabel(label, id, scan);
        }
    }

    // For readRecord: values of the record are none that can be used, so that nothing follows from them.
    void Doubt(TableId id) { tables[id].isSound = false; }
    bool SkipLabelLine(TableId id);

private:
    struct Recovery {
        int records;        // that the fault used up
        long long doubtful; // lines skipped that may be records
        bool isEnd;         // of the table
    };

    bool OpenTable(TableId id, const char* countFormat);
    bool OpenBehindFault(TableId id, const char* countFormat, ScanResult scan);
    void ReportTextBetween(TableId last, std::size_t begin, std::size_t end, const char* countFormat);
    void TakeCount(TableId id, const ScanResult& scan, int count);
    void SkipTextBehindCount(TableId id, std::size_t behind);
    void SeekRecordWithinLine(TableId id, std::size_t position);
    void CloseTable(TableId id, long long doubtful);
    Recovery Recover(TableId id);
    std::size_t NextRecord(std::size_t lineBegin, TableId id, long long& doubtful);
    bool FitsOddly(const ScanResult& scan, const RecordName& record);
    void KeepLabel(int label, TableId id, const ScanResult& scan);
    void ReportCount(TableId id, long long records);
    void ReportMore(TableId id, long long more);
    void ReportEnd(const std::string& where, const std::string& expected);
    std::string NameOfPrevious(TableId id) const;
    std::size_t Ahead(std::size_t position) const;

    std::string_view text;
    FormatScanner scanner;
    SourceDiagnostics& diagnostics;
    TableReading tables[TableCount];
    bool hasEnded = false; // nothing more can be read
    int firstTold = 0;     // tables before this one are known to be missing
    ScanResult failed;     // the last scan that did not match
    std::size_t recordBegin = 0, previousBegin = 0;
    SectionHeader headerAhead; // the first one from headerAheadOf on
    std::size_t headerAheadOf;
};

template <class ReadRecord, class... Records>
void StrictTables::ReadTable(TableId id, const char* countFormat, std::size_t shortestRecord, int& count,
                             const ReadRecord& readRecord, std::vector<Records>&... arrays)
{
    (arrays.clear(), ...);
    count = 0;
    if (!OpenTable(id, countFormat)) {
        return;
    }
    TableReading& table = tables[id];
    const int announced = table.isCounted ? table.count : INT_MAX;
    if (table.isCounted) {
        const std::size_t room = std::min(static_cast<std::size_t>(announced), scanner.BytesLeft() / shortestRecord);
        (Reserve(arrays, room), ...);
    }
    long long doubtful = 0;
    previousBegin = table.countPosition;
    while (table.recordCount < announced) {
        recordBegin = scanner.Position();
        if (readRecord()) {
            previousBegin = recordBegin;
            ++table.recordCount;
            continue;
        }
        const Recovery recovery = Recover(id);
        table.recordCount += recovery.records;
        table.damages += recovery.isEnd ? 0 : 1;
        doubtful += recovery.doubtful;
        if (recovery.isEnd) {
            break;
        }
    }
    CloseTable(id, doubtful);
    count = table.count;
}

} // namespace tarnvexo
