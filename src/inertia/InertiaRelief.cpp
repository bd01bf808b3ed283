#include "inertia/InertiaRelief.h"

#include "core/Console.h"
#include "core/Messages.h"
#include "inertia/InertialLoads.h"
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

Matrix3 TranslationalMass(double mass)
{
    return {{{mass, 0.0, 0.0}, {0.0, mass, 0.0}, {0.0, 0.0, mass}}};
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

RigidAcceleration ClassicAcceleration(double mass, const Matrix3& rotationalMass, const LoadResultant& applied)
{
    return {Solve3x3(TranslationalMass(mass), applied.force), Solve3x3(rotationalMass, applied.moment)};
}

void BalanceByInertiaRelief(ModelStore& model)
{
    const double mass = TotalMass(model);
    Console().Text(messages::TotalMass).Number(mass);
    EndConsoleLine();
    const std::vector<NodeInertia> shellInertia = ShellInertia(model);
    const Matrix3 rotationalMass = RotationalMass(model, shellInertia);
    const LoadResultant applied = ResultantOfLoads(model);

    // Accelerations of the free structure.
    const RigidAcceleration acceleration = ClassicAcceleration(mass, rotationalMass, applied);
    PrintMatrix(messages::TranslationalMass, TranslationalMass(mass));
    PrintVector(messages::TranslationalLoad, applied.force);
    PrintVector(messages::TranslationalAcceleration, acceleration.a);
    PrintMatrix(messages::RotationalMass, rotationalMass);
    PrintVector(messages::RotationalLoad, applied.moment);
    PrintVector(messages::RotationalAcceleration, acceleration.alpha);

    // Their inertial loads.
    PrintLoads(messages::LoadsBefore, model.GLOAD);
    PrintResultant(messages::ResultantBefore, applied);
    AddInertialLoads(model, shellInertia, acceleration, model.GLOAD);
    PrintLoads(messages::LoadsAfter, model.GLOAD);
    PrintResultant(messages::ResultantAfter, ResultantOfLoads(model));
}

} // namespace tarnvexo
