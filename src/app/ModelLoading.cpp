#include "app/ModelLoading.h"

#include "app/RunFailure.h"
#include "platform/FilePath.h"

#include <cerrno>
#include <optional>

namespace tarnvexo {

StrictReading TryLoadModel(ModelStore& model, const std::string& fileName, const RuleBook& rules)
{
    const std::optional<StrictReading> reading = ReadModelFileStrictly(model, fileName.c_str(), rules);
    if (!reading && errno == ETIMEDOUT) {
        throw RunFailure(ExitFile, fileName + ": error: nothing has come from it for " +
                                       std::to_string(SilenceSeconds) +
                                       " seconds\n"
                                       "  expected: a file, or a pipe that a program writes a model into\n"
                                       "  to do:    write the model to a file first");
    }
    if (!reading) {
        const std::string reason = platform::ReasonOfFile(errno);
        throw RunFailure(ExitFile,
                         fileName + ": error: the model file cannot be read: " + reason +
                             "\n"
                             "  expected: a readable model file, or a directory that holds fem_solving.txt\n"
                             "  to do:    " +
                             (reason == platform::FileIsOpenElsewhere ? "close it there" : "correct the path"));
    }
    return *reading;
}

std::vector<std::string> LoadModel(ModelStore& model, const std::string& fileName, const RuleBook& rules)
{
    const StrictReading reading = TryLoadModel(model, fileName, rules);
    if (!reading.IsUsable()) {
        throw RunFailure(ExitBadModel, ErrorText(reading, fileName));
    }
    return WarningTexts(reading, fileName);
}

} // namespace tarnvexo
