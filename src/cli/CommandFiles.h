// cli/CommandFiles.h
// Files and streams that commands name: the model to read, texts to write. Errors: RunFailure with ExitFile.
#pragma once

#include <string>
#include <string_view>

namespace tarnvexo {

// The file that MODEL means: itself, or fem_solving.txt in it when it is a directory. It must exist. "-" is
// refused as a usage error: reports, JSON and messages name the model by its path.
std::string ModelFileOf(const std::string& model);

// Fails early, before a long run, when a file cannot have this name or the directory that it is to stand in does not
// exist.
void RequirePlaceOf(const std::string& file);

// Writes a text of a format that has "\n" on every system (JSON, HTML) into a file, in place of what was there once it
// is complete.
void WriteTextFile(const std::string& file, const std::string& text);

// Writes bytes that are no text into a file, in the same way.
void WriteBytes(const std::string& file, std::string_view bytes);

// Writes a text to standard output.
void WriteOutput(const std::string& text);

} // namespace tarnvexo
