// elements/ModelSetUp.h
// The last step of making a model in memory: from the tables of a model file to a store as the reader leaves it.
#pragma once

#include "core/ModelStore.h"

#include <cstddef>

namespace tarnvexo {

// One shell from its connectivity and properties.
void SetUpQuad(ModelStore& model, std::size_t e);
void SetUpTri(ModelStore& model, std::size_t e);

// One beam from its connectivity, properties and section reference. Of an unknown section type it stays as constructed.
void SetUpBeam(ModelStore& model, std::size_t e);

// Every count from the size of its table, every element from connectivity and properties. A beam of an unknown section
// type stays as constructed.
// Errors: none reported; indices must lie in their tables.
void SetUpModel(ModelStore& model);

} // namespace tarnvexo
