#include "app/ModelLoading.h"

#include "app/SolveDriver.h"
#include "input/ModelFileReader.h"

namespace tarnvexo {

void LoadModel(ModelStore& model, const std::string& fileName, std::string& warnings)
{
    platform::FileText file;
    std::string reason;
    if (!file.Open(fileName, reason)) {
        throw RunFailure(ExitFile, fileName + ": error: the model file cannot be read: " + reason +
                                       "\n"
                                       "  expected: a readable model file, or a directory that holds fem_solving.txt\n"
                                       "  to do:    correct the path");
    }
    const ModelReading reading = ReadModelText(model, file.Text(), fileName.c_str());
    warnings = reading.warnings;
    if (reading.end != ModelReading::End::Complete) {
        throw RunFailure(ExitBadModel, reading.warnings + reading.fault);
    }
}

} // namespace tarnvexo
