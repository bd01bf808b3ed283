#include "app/ModelLoading.h"

#include "app/RunFailure.h"
#include "input/ModelFileReader.h"

#include <cerrno>
#include <cstring>
#include <optional>

namespace tarnvexo {

void LoadModel(ModelStore& model, const std::string& fileName)
{
    const std::optional<ModelReading> reading = TryReadModelFile(model, fileName.c_str());
    if (!reading) {
        throw RunFailure(ExitFile, fileName + ": error: the model file cannot be read: " + std::strerror(errno) +
                                       "\n"
                                       "  expected: a readable model file, or a directory that holds fem_solving.txt\n"
                                       "  to do:    correct the path");
    }
    if (reading->end != ModelReading::End::Complete || !reading->warnings.empty()) {
        const std::string fault = !reading->fault.empty()
                                      ? reading->fault
                                      : fileName + ": error: the text is not that of a model file\n"
                                                   "  expected: records as docs/formats/model-file.md has them\n"
                                                   "  to do:    mend the first place that is named above";
        throw RunFailure(ExitBadModel, reading->warnings + fault);
    }
}

} // namespace tarnvexo
