#include "app/ModelLoading.h"

#include "app/SolveDriver.h"
#include "input/ModelFileReader.h"

#include <cerrno>
#include <cstring>
#include <optional>

namespace tarnvexo {

std::string LoadModel(ModelStore& model, const std::string& fileName)
{
    const std::optional<ModelReading> reading = TryReadModelFile(model, fileName.c_str());
    if (!reading) {
        throw RunFailure(ExitFile, fileName + ": error: the model file cannot be read: " + std::strerror(errno) +
                                       "\n"
                                       "  expected: a readable model file, or a directory that holds fem_solving.txt\n"
                                       "  to do:    correct the path");
    }
    if (reading->end != ModelReading::End::Complete) {
        const std::string fault = !reading->fault.empty()
                                      ? reading->fault
                                      : fileName + ": error: this is no model file\n"
                                                   "  expected: a text that begins with its release\n"
                                                   "  to do:    see docs/formats/model-file.md";
        throw RunFailure(ExitBadModel, reading->warnings + fault);
    }
    return reading->warnings;
}

} // namespace tarnvexo
