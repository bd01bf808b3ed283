// support/CheckedModels.h
// Models for the tests of the rules: nodes and elements without further care, as faulty as a test wants them.
#pragma once

#include "checks/Finding.h"
#include "core/ModelStore.h"

#include <array>
#include <vector>

namespace tarnvexo::test {

// Steel (N, m, kg), a thickness and a tube, for every element; sizes that fit models of 1 to 100 m.
ModelStore EmptyModel();

int AddNode(ModelStore& model, const Vector3& position);
void AddQuad(ModelStore& model, const std::array<int, QuadNodeCount>& nodes, int material = 0, int thickness = 0);
void AddTri(ModelStore& model, const std::array<int, TriNodeCount>& nodes, int material = 0, int thickness = 0);
void AddBeam(ModelStore& model, const std::array<int, BeamNodeCount>& nodes, int material = 0);

// One element alone on its corners.
ModelStore QuadModel(const std::array<Vector3, QuadNodeCount>& corners);
ModelStore TriModel(const std::array<Vector3, TriNodeCount>& corners);

// The finding of the rule; nullptr: none.
const Finding* FindingOf(const std::vector<Finding>& findings, RuleId rule);

// Rules that found something, in their order.
std::vector<RuleId> RulesOf(const std::vector<Finding>& findings);

} // namespace tarnvexo::test
