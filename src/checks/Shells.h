// checks/Shells.h
// Shells of both kinds under one number: the quadrilaterals in their order, then the triangles. Values are those of the
// model's tables: the element records are a hundred times as large.
#pragma once

#include "core/ModelStore.h"

#include <span>
#include <string>

namespace tarnvexo {

inline int ShellCount(const ModelStore& model)
{
    return static_cast<int>(model.QuadConnectivity.size() + model.TriConnectivity.size());
}

inline bool IsQuad(const ModelStore& model, int shell)
{
    return shell < static_cast<int>(model.QuadConnectivity.size());
}

// Position in the table of its kind.
inline int ShellPosition(const ModelStore& model, int shell)
{
    return IsQuad(model, shell) ? shell : shell - static_cast<int>(model.QuadConnectivity.size());
}

inline std::span<const int> ShellNodes(const ModelStore& model, int shell)
{
    const int position = ShellPosition(model, shell);
    return IsQuad(model, shell) ? std::span<const int>(model.QuadConnectivity[position])
                                : std::span<const int>(model.TriConnectivity[position]);
}

inline const ShellPropertyRef& ShellProperty(const ModelStore& model, int shell)
{
    const int position = ShellPosition(model, shell);
    return IsQuad(model, shell) ? model.QuadProperties[position] : model.TriProperties[position];
}

inline double ShellThickness(const ModelStore& model, int shell)
{
    return model.Thicknesses[ShellProperty(model, shell).thickness];
}

inline double ShellDensity(const ModelStore& model, int shell)
{
    return model.Materials[ShellProperty(model, shell).material].Density;
}

// Across the shell, on the side from which its nodes run counter-clockwise; its length is twice the area. Of a warped
// quadrilateral, across both diagonals.
inline Vector3 ShellNormal(const ModelStore& model, int shell)
{
    const std::span<const int> nodes = ShellNodes(model, shell);
    const auto X = [&](std::size_t i) -> const Vector3& { return model.NodeCoordinates[nodes[i]]; };
    return nodes.size() == 3 ? Cross(X(1) - X(0), X(2) - X(0)) : Cross(X(2) - X(0), X(3) - X(1));
}

// "quad" or "tri", as in an Offender.
inline const char* ShellKind(const ModelStore& model, int shell)
{
    return IsQuad(model, shell) ? "quad" : "tri";
}

// "quad 17".
inline std::string ShellName(const ModelStore& model, int shell)
{
    return ShellKind(model, shell) + (" " + std::to_string(ShellPosition(model, shell)));
}

} // namespace tarnvexo
