#include "support/CheckedModels.h"

#include <algorithm>

namespace tarnvexo::test {

ModelStore EmptyModel()
{
    ModelStore model;
    model.Materials = {{2.1e11, 0.3, 7850.0}};
    model.Thicknesses = {0.01};
    model.CBeamSections = {{0.05, 0.004}};
    return model;
}

int AddNode(ModelStore& model, const Vector3& position)
{
    model.NodeCoordinates.push_back(position);
    return model.NPOIN++;
}

void AddQuad(ModelStore& model, const std::array<int, QuadNodeCount>& nodes, int material, int thickness)
{
    model.QuadConnectivity.push_back(nodes);
    model.QuadProperties.push_back({material, thickness});
    model.QuadElements.emplace_back();
    ++model.NELEM_S_4ND;
}

void AddTri(ModelStore& model, const std::array<int, TriNodeCount>& nodes, int material, int thickness)
{
    model.TriConnectivity.push_back(nodes);
    model.TriProperties.push_back({material, thickness});
    model.TriElements.emplace_back();
    ++model.NELEM_S_3ND;
}

void AddBeam(ModelStore& model, const std::array<int, BeamNodeCount>& nodes, int material)
{
    model.BeamConnectivity.push_back(nodes);
    model.BeamProperties.push_back({material, {0.0, 0.0, 1.0}});
    model.BeamSectionRefs.push_back({CSection, 0, 0.0, false});
    model.BeamElements.emplace_back();
    ++model.NELEM_B;
}

ModelStore QuadModel(const std::array<Vector3, QuadNodeCount>& corners)
{
    ModelStore model = EmptyModel();
    for (const Vector3& corner : corners) { AddNode(model, corner); }
    AddQuad(model, {0, 1, 2, 3});
    return model;
}

ModelStore TriModel(const std::array<Vector3, TriNodeCount>& corners)
{
    ModelStore model = EmptyModel();
    for (const Vector3& corner : corners) { AddNode(model, corner); }
    AddTri(model, {0, 1, 2});
    return model;
}

const Finding* FindingOf(const std::vector<Finding>& findings, RuleId rule)
{
    const auto found =
        std::find_if(findings.begin(), findings.end(), [rule](const Finding& finding) { return finding.rule == rule; });
    return found == findings.end() ? nullptr : &*found;
}

std::vector<RuleId> RulesOf(const std::vector<Finding>& findings)
{
    std::vector<RuleId> rules;
    for (const Finding& finding : findings) { rules.push_back(finding.rule); }
    return rules;
}

} // namespace tarnvexo::test
