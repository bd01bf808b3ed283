#include "inertia/InertiaRelief.h"

#include "core/Console.h"
#include "core/Messages.h"
#include "inertia/InertialLoads.h"
#include "inertia/MassProperties.h"
#include "inertia/Solve3x3.h"

#include <cstddef>

namespace tarnvexo {

namespace {

constexpr int ReportFieldWidth = 15;

// rows x columns values, one row a line, each value in a field of ReportFieldWidth.
void PrintMatrix(const double* values, std::size_t rows, std::size_t columns)
{
    for (std::size_t i = 0; i < rows; ++i) {
        for (std::size_t j = 0; j < columns; ++j) { Console().Number(values[i * columns + j], ReportFieldWidth); }
        Console().EndLine();
    }
    FlushConsole();
}

void PrintMatrix(const char* title, const Matrix3& matrix)
{
    PrintConsoleLine(title);
    PrintMatrix(&matrix[0][0], 3, 3);
}

void PrintVector(const char* title, const Vector3& vector)
{
    PrintConsoleLine(title);
    PrintMatrix(vector.data(), 3, 1);
}

void PrintLoads(const char* title, const std::vector<double>& loads)
{
    PrintConsoleLine(title);
    PrintMatrix(loads.data(), loads.size(), 1);
}

void PrintResultant(const char* title, const LoadResultant& resultant)
{
    PrintConsoleLine(title);
    const char* const forces[3] = {"sumFX=", "sumFY=", "sumFZ="};
    const char* const moments[3] = {"sumMX=", "sumMY=", "sumMZ="};
    for (int i = 0; i < 3; ++i) { Console().Text(forces[i]).Number(resultant.force[i]).EndLine(); }
    for (int i = 0; i < 3; ++i) { Console().Text(moments[i]).Number(resultant.moment[i]).EndLine(); }
    FlushConsole();
}

// Adds forces of an element's nodes, or all six loads of a beam's nodes, to a vector laid out like GLOAD.
template <std::size_t Nodes>
void AddNodalForces(const std::array<int, Nodes>& nodes, const Vector3* f, std::vector<double>& loads)
{
    for (std::size_t i = 0; i < Nodes; ++i) {
        for (int k = 0; k < 3; ++k) { loads[std::size_t(DofsPerNode) * nodes[i] + k] += f[i][k]; }
    }
}

void AddBeamLoads(const std::array<int, BeamNodeCount>& nodes, const double* f, std::vector<double>& loads)
{
    for (int i = 0; i < BeamNodeCount; ++i) {
        for (int k = 0; k < DofsPerNode; ++k) {
            loads[std::size_t(DofsPerNode) * nodes[i] + k] += f[DofsPerNode * i + k];
        }
    }
}

// Inertial loads of all elements for the acceleration a (into translational) and alpha (into rotational).
void AddInertialLoads(const ModelStore& model, const Vector3& a, const Vector3& alpha,
                      std::vector<double>& translational, std::vector<double>& rotational)
{
    for (int e = 0; e < model.NELEM_B; ++e) {
        double f[BeamDofCount];
        BeamTranslationalLoads(model.BeamElements[e], a, f);
        AddBeamLoads(model.BeamConnectivity[e], f, translational);
        BeamRotationalLoads(model.BeamElements[e], alpha, f);
        AddBeamLoads(model.BeamConnectivity[e], f, rotational);
    }
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        Vector3 f[QuadNodeCount];
        QuadTranslationalLoads(model.QuadElements[e], a, f);
        AddNodalForces(model.QuadConnectivity[e], f, translational);
        QuadRotationalLoads(model.QuadElements[e], alpha, f);
        AddNodalForces(model.QuadConnectivity[e], f, rotational);
    }
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        Vector3 f[TriNodeCount];
        TriTranslationalLoads(model.TriElements[e], a, f);
        AddNodalForces(model.TriConnectivity[e], f, translational);
        TriRotationalLoads(model.TriElements[e], alpha, f);
        AddNodalForces(model.TriConnectivity[e], f, rotational);
    }
}

} // namespace

LoadResultant ResultantOfLoads(const ModelStore& model)
{
    LoadResultant sum;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* load = &model.GLOAD[std::size_t(DofsPerNode) * n];
        const Vector3& r = model.NodeCoordinates[n];
        sum.force[0] += load[DX];
        sum.force[1] += load[DY];
        sum.force[2] += load[DZ];
        sum.moment[0] += r[1] * load[DZ] - r[2] * load[DY] + load[RX];
        sum.moment[1] += r[2] * load[DX] - r[0] * load[DZ] + load[RY];
        sum.moment[2] += r[0] * load[DY] - r[1] * load[DX] + load[RZ];
    }
    return sum;
}

void BalanceByInertiaRelief(ModelStore& model)
{
    const double mass = TotalMass(model);
    Console().Text(messages::TotalMass).Number(mass);
    EndConsoleLine();
    const Matrix3 translationalMass = {{{mass, 0.0, 0.0}, {0.0, mass, 0.0}, {0.0, 0.0, mass}}};
    const Matrix3 rotationalMass = RotationalMass(model);
    const LoadResultant applied = ResultantOfLoads(model);

    // Accelerations of the free structure.
    PrintMatrix(messages::TranslationalMass, translationalMass);
    PrintVector(messages::TranslationalLoad, applied.force);
    const Vector3 a = Solve3x3(translationalMass, applied.force);
    PrintVector(messages::TranslationalAcceleration, a);
    PrintMatrix(messages::RotationalMass, rotationalMass);
    PrintVector(messages::RotationalLoad, applied.moment);
    const Vector3 alpha = Solve3x3(rotationalMass, applied.moment);
    PrintVector(messages::RotationalAcceleration, alpha);

    // Their inertial loads.
    std::vector<double> translational(model.GLOAD.size(), 0.0);
    std::vector<double> rotational(model.GLOAD.size(), 0.0);
    AddInertialLoads(model, a, alpha, translational, rotational);

    PrintLoads(messages::LoadsBefore, model.GLOAD);
    PrintResultant(messages::ResultantBefore, applied);
    for (std::size_t i = 0; i < model.GLOAD.size(); ++i) { model.GLOAD[i] += translational[i] + rotational[i]; }
    PrintLoads(messages::LoadsAfter, model.GLOAD);
    PrintResultant(messages::ResultantAfter, ResultantOfLoads(model));
}

} // namespace tarnvexo
