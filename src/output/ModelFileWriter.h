// output/ModelFileWriter.h
// Writes the model of a store as a model file, release 3.0, with the formats of core/ModelFileFormats.h, one record a
// line. Numbers have the shortest text that reads back to the same double, so that reading the file gives the same
// tables, element for element, and writing these the same bytes.
// Not kept, since no reader keeps them: label numbers and the label lines of sections (records are labelled with their
// positions), text behind the last section.
#pragma once

#include "core/ModelStore.h"
#include "core/TextWriter.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

void WriteModelText(const ModelStore& model, TextWriter& text);

FileResult WriteModelFile(const ModelStore& model, const std::string& path);

} // namespace tarnvexo
