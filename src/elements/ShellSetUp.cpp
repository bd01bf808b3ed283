#include "elements/ShellSetUp.h"

#include "core/Console.h"
#include "core/Messages.h"

namespace tarnvexo {

namespace {

template <class Element>
void SetUp(Element& element, const Vector3* nodes, int nodeCount, double E, double Mu, double Density, double TK)
{
    if (nodeCount != Element::NodeCount) {
        PrintConsoleLine(messages::NodeCountError);
    }
    for (int i = 0; i < Element::NodeCount; ++i) { element.coordinates[i] = nodes[i]; }
    element.E = E;
    element.Mu = Mu;
    element.thickness = TK;
    element.Density = Density;

    const Vector3 edge12 = nodes[1] - nodes[0];
    const Vector3 edge13 = nodes[2] - nodes[0];
    element.axes[0] = Normalised(edge12);
    element.axes[2] = Normalised(Cross(edge12, edge13));
    element.axes[1] = Normalised(Cross(element.axes[2], element.axes[0]));
}

} // namespace

void QuadShellSetUp(QuadShellElement& element, const Vector3 nodes[QuadNodeCount], int nodeCount, double E, double Mu,
                    double Density, double TK)
{
    SetUp(element, nodes, nodeCount, E, Mu, Density, TK);
}

void TriShellSetUp(TriShellElement& element, const Vector3 nodes[TriNodeCount], int nodeCount, double E, double Mu,
                   double TK, double Density)
{
    SetUp(element, nodes, nodeCount, E, Mu, Density, TK);
}

} // namespace tarnvexo
