// cli/ContourProgram.h
// The program Tarn+Vexo_Contour.exe, which the console run starts when it stands in the directory of its results.
// Without arguments it shows the contour file of its working directory or, where there is none, of the directory that
// it stands in itself, and returns as soon as the page has been opened. With arguments it does what `tarnvexo view`
// does with them. It writes nothing to standard output, which it shares with the console run.
#pragma once

namespace tarnvexo {

int RunContourProgram(int argc, char** argv);

} // namespace tarnvexo
