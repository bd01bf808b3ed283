// input/ModelFileReader.h
// Reads the model file into the store and sets up every element on the way. The grammar is in
// core/ModelFileFormats.h; sections come in one fixed order, text after the last one is not looked at.
//
// A scan that does not match stops there, its remaining destinations keep what they had (a field never stored is 0),
// the next scan goes on from that place, and a warning is written. Material, thickness, orientation and mirrored flag
// of an element record keep the values of the record before. Errors end the run before anything is written: a release
// other than 3.0, a negative count, a count of more records than the rest of the file can hold, an index outside its
// table. Material and section of a beam are looked up only for the section types 0 to 2; any other type is read
// silently and its beam stays as constructed.
#pragma once

#include "core/ModelStore.h"

#include <string>
#include <string_view>

namespace tarnvexo {

// How reading a model text ended.
struct ModelReading {
    enum class End { Complete, WrongRelease, Fault };

    End end = End::Complete;
    std::string warnings; // lines about scans that did not match, each with its line end
    std::string fault;    // with End::Fault, and for a release that was read: the message, without a line end behind it
};

// Fills the model from a text in memory. Writes and ends nothing. After another end than Complete the model is filled
// only in part.
ModelReading ReadModelText(ModelStore& model, std::string_view text, const char* fileName);

// Fills the model from a file. Warnings go to standard error; every other end than Complete ends the process.
void ReadModelFile(ModelStore& model, const char* fileName);

// Reminder for the end of a run that went on after warnings, without a line end behind it; empty without warnings.
std::string ReadingReminder(const ModelStore& model, const char* fileName);

} // namespace tarnvexo
