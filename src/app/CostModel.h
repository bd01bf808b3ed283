// app/CostModel.h
// How long a run will take, from its sizes: for the progress display and `tarnvexo info`. Rates are those of two cores
// of a 2.3 GHz server processor with AVX-512; other machines differ by a factor of two or three, which is good enough
// to decide whether to wait or to fetch a coffee.
#pragma once

#include "app/ResultFormats.h"
#include "core/ModelStore.h"
#include "solver/SparseEngine.h"

namespace tarnvexo {

// Seconds per stage.
double ReadingSeconds(std::size_t fileBytes);
double OrderingSeconds(std::size_t nodes);
double AssemblySeconds(const ModelStore& model);
double FactorisationSeconds(const FactorSize& size);
double SolutionSeconds(const FactorSize& size);
double StressSeconds(const ModelStore& model);
double BeamSectionSeconds(double sectionPatches);
double WritingSeconds(const ModelStore& model, double sectionPatches, const ResultFormats& formats);
double SkylineSeconds(double operations); // of the console run's solution

} // namespace tarnvexo
