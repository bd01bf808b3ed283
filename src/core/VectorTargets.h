// core/VectorTargets.h
// Vector units that sources with Highway are compiled for: included before Highway's own headers. Left out are two that
// would give the same instructions as their smaller neighbours, and those whose vectors have no length before the
// program runs: of such no arrays can be made, and sums in a row of registers are arrays.
#pragma once

#define HWY_DISABLED_TARGETS (HWY_AVX3_DL | HWY_SSE4 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
