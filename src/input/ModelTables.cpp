#include "input/ModelTables.h"

#include <string>

namespace tarnvexo {

TextFault OutsideTable(std::string_view text, const Table& table, int index, std::size_t position,
                       const RecordName& user)
{
    const std::string count = std::to_string(table.count);
    std::string size = Joined({count, " ", table.records});
    std::string range = Joined({"a ", table.record, " number from 0 to ", std::to_string(table.count - 1)});
    if (table.count == 0) {
        size = Joined({"no ", table.records});
        range = Joined({"a model that has ", table.records});
    } else if (table.count == 1) {
        size = Joined({"1 ", table.record});
        range = Joined({"0, the number of the only ", table.record});
    }
    const std::size_t countLine = PlaceInText(text, table.countPosition).line;
    return {position,
            Joined({NameOf(user), " uses ", table.record, " ", std::to_string(index), ", but the model has ", size}),
            Joined({range, " (", table.key, "=", count, ", line ", std::to_string(countLine), ")"}),
            Joined({"correct the number, or add the ", table.records, " and raise ", table.key})};
}

} // namespace tarnvexo
