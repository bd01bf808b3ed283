// input/ShellStressFileReader.h
// Reads "Shell element node stress.txt", every shell's own stresses at its nodes, which output/ShellStressFiles writes.
// The grammar is in docs/formats/shell-stress.md.
//
// The reader is strict: it takes what the writer writes and nothing else, column for column. Lines end with "\n", or
// with "\r\n" as on Windows. The file holds no counts and no nodes: whether it belongs to a contour file is for the
// caller to see.
// Units: those of the model file; nothing is converted.
#pragma once

#include "input/ContourFileReader.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnvexo {

struct ShellStresses {
    ContourShells<QuadNodeCount> quads;
    ContourShells<TriNodeCount> tris;
};

// Fills the stresses from a text in memory. Returns the message of the first fault, without a line end behind it, or an
// empty text; after a fault the stresses are filled only in part.
std::string ReadShellStressText(ShellStresses& stresses, std::string_view text, const char* fileName);

// Fills the stresses from a file and returns what ReadShellStressText does. Without value: the file cannot be read,
// errno tells why.
std::optional<std::string> TryReadShellStressFile(ShellStresses& stresses, const char* fileName);

} // namespace tarnvexo
