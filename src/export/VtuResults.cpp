#include "export/VtuResults.h"

#include "elements/ShellNodeStress.h"
#include "export/VtuFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tarnvexo {

namespace {

constexpr std::size_t TensorComponents = 6;

// Order of the components of a symmetric tensor in VTK; ours has TZX before TYZ.
constexpr StressComponent TensorOrder[TensorComponents] = {SX, SY, SZ, TXY, TYZ, TZX};
const std::vector<const char*> TensorNames = {"XX", "YY", "ZZ", "XY", "YZ", "XZ"};

template <class StressOf> VtuArray TensorArray(const char* name, std::size_t count, StressOf stressOf)
{
    VtuArray array = MakeVtuArray<double, TensorComponents>(name, count, [=](std::size_t i, double* out) {
        const double* stress = stressOf(i);
        for (const StressComponent component : TensorOrder) { *out++ = stress[component]; }
    });
    array.componentNames = TensorNames;
    return array;
}

// stressesOf(i) gives the FaceStresses of point i.
template <class StressesOf> void AddStresses(VtuGrid& grid, std::size_t count, StressesOf stressesOf)
{
    const auto positive = [=](std::size_t i) { return stressesOf(i).positive; };
    const auto negative = [=](std::size_t i) { return stressesOf(i).negative; };
    const auto real = [&](const char* name, auto valueOf) {
        grid.pointData.push_back(
            MakeVtuArray<double>(name, count, [=](std::size_t i, double* out) { *out = valueOf(i); }));
    };
    grid.pointData.push_back(TensorArray("stress_positive_face", count, positive));
    grid.pointData.push_back(TensorArray("stress_negative_face", count, negative));
    real("equivalent_stress_positive_face", [=](std::size_t i) { return EquivalentStress(positive(i)); });
    real("equivalent_stress_negative_face", [=](std::size_t i) { return EquivalentStress(negative(i)); });
    real("equivalent_stress", [=](std::size_t i) { return LargerEquivalentStress(stressesOf(i)); });
    grid.scalars = "equivalent_stress";
}

// displacementOf(i) gives the [DofsPerNode] displacements of point i.
template <class DisplacementOf> void AddDisplacements(VtuGrid& grid, std::size_t count, DisplacementOf displacementOf)
{
    const auto part = [&](const char* name, Dof first) {
        grid.pointData.push_back(MakeVtuArray<double, 3>(
            name, count, [=](std::size_t i, double* out) { std::copy_n(displacementOf(i) + first, 3, out); }));
    };
    part("displacement", DX);
    part("rotation", RX);
    grid.vectors = "displacement";
}

template <class PlaceOf> VtuArray PlacesArray(std::size_t count, PlaceOf placeOf)
{
    return MakeVtuArray<double, 3>("Points", count, [=](std::size_t i, double* out) {
        const Vector3& place = placeOf(i);
        std::copy(place.begin(), place.end(), out);
    });
}

template <class NumberOf>
void AddIntegers(std::vector<VtuArray>& data, const char* name, std::size_t count, NumberOf numberOf)
{
    data.push_back(
        MakeVtuArray<std::int32_t>(name, count, [=](std::size_t i, std::int32_t* out) { *out = numberOf(i); }));
}

template <class ValueOf>
void AddReals(std::vector<VtuArray>& data, const char* name, std::size_t count, ValueOf valueOf)
{
    data.push_back(MakeVtuArray<double>(name, count, [=](std::size_t i, double* out) { *out = valueOf(i); }));
}

// Cells of one kind with `corners` points each.
void SetCells(VtuGrid& grid, std::size_t cells, std::uint8_t type, std::size_t corners)
{
    grid.offsets = MakeVtuArray<std::int64_t>("offsets", cells, [=](std::size_t i, std::int64_t* out) {
        *out = static_cast<std::int64_t>(corners * (i + 1));
    });
    grid.types = MakeVtuArray<std::uint8_t>("types", cells, [=](std::size_t, std::uint8_t* out) { *out = type; });
}

template <class PointOf> VtuArray ConnectivityArray(std::size_t entries, PointOf pointOf)
{
    return MakeVtuArray<std::int64_t>("connectivity", entries,
                                      [=](std::size_t i, std::int64_t* out) { *out = pointOf(i); });
}

// Quadrilaterals, then triangles.
void SetShellCells(VtuGrid& grid, const ShellPoints& shells)
{
    const std::size_t quads = shells.quads.size(), cells = quads + shells.triangles.size();
    const std::size_t quadEntries = QuadNodeCount * quads;
    const ShellPoints* from = &shells;
    grid.connectivity = ConnectivityArray(quadEntries + TriNodeCount * shells.triangles.size(), [=](std::size_t i) {
        return i < quadEntries ? from->quads[i / QuadNodeCount][i % QuadNodeCount]
                               : from->triangles[(i - quadEntries) / TriNodeCount][(i - quadEntries) % TriNodeCount];
    });
    grid.offsets = MakeVtuArray<std::int64_t>("offsets", cells, [=](std::size_t i, std::int64_t* out) {
        *out = static_cast<std::int64_t>(i < quads ? QuadNodeCount * (i + 1)
                                                   : quadEntries + TriNodeCount * (i + 1 - quads));
    });
    grid.types = MakeVtuArray<std::uint8_t>(
        "types", cells, [=](std::size_t i, std::uint8_t* out) { *out = i < quads ? VtkQuad : VtkTriangle; });
}

} // namespace

FileResult WriteVtuBlocks(const std::string& path)
{
    TextFile file;
    if (!file.Open(path, FileMode::Binary)) {
        return file.Close();
    }
    TextWriter& text = file.Text();
    text.Text("<?xml version=\"1.0\"?>\n"
              "<VTKFile type=\"vtkMultiBlockDataSet\" version=\"1.0\" byte_order=\"LittleEndian\" "
              "header_type=\"UInt64\">\n"
              "  <vtkMultiBlockDataSet>\n");
    const std::pair<const char*, const char*> blocks[] = {
        {"shells", VtuShellsFileName}, {"beams", VtuWallsFileName}, {"beam lines", VtuBeamLinesFileName}};
    int index = 0;
    for (const auto& [name, fileName] : blocks) {
        text.Text("    <DataSet index=\"").Integer(index++).Text("\" name=\"").Text(name);
        text.Text("\" file=\"").Text(fileName).Text("\"/>\n");
    }
    text.Text("  </vtkMultiBlockDataSet>\n"
              "</VTKFile>\n");
    return file.Close();
}

FileResult WriteVtuShells(const ModelStore& model, const ShellPoints& shells, const std::string& path)
{
    const ModelStore* store = &model;
    const ShellPoint* points = shells.points.data();
    const std::size_t count = shells.points.size();
    VtuGrid grid;
    grid.points =
        PlacesArray(count, [=](std::size_t i) -> const Vector3& { return store->NodeCoordinates[points[i].node]; });
    SetShellCells(grid, shells);
    AddDisplacements(grid, count,
                     [=](std::size_t i) { return &store->GlobalDisplacement[DofsPerNode * points[i].node]; });
    AddStresses(grid, count, [=](std::size_t i) { return points[i].averaged; });
    AddIntegers(grid.pointData, "node", count, [=](std::size_t i) { return points[i].node; });

    const std::size_t quads = shells.quads.size(), cells = quads + shells.triangles.size();
    AddIntegers(grid.cellData, "element", cells,
                [=](std::size_t i) { return static_cast<std::int32_t>(i < quads ? i : i - quads); });
    AddReals(grid.cellData, "thickness", cells, [=](std::size_t i) {
        return i < quads ? store->QuadElements[i].thickness : store->TriElements[i - quads].thickness;
    });
    AddIntegers(grid.cellData, "material", cells, [=](std::size_t i) {
        return i < quads ? store->QuadProperties[i].material : store->TriProperties[i - quads].material;
    });
    return WriteVtu(grid, path);
}

FileResult WriteVtuWalls(const ModelStore& model, const SectionPoints& sections, const std::string& path)
{
    const ModelStore* store = &model;
    const SectionPoint* points = sections.points.data();
    const SectionWall* walls = sections.walls.data();
    const std::size_t count = sections.points.size(), cells = sections.walls.size();
    VtuGrid grid;
    grid.points = PlacesArray(count, [=](std::size_t i) -> const Vector3& { return PlaceOf(*store, points[i]); });
    SetCells(grid, cells, VtkQuad, QuadNodeCount);
    grid.connectivity = ConnectivityArray(
        QuadNodeCount * cells, [=](std::size_t i) { return walls[i / QuadNodeCount].points[i % QuadNodeCount]; });
    AddDisplacements(grid, count, [=](std::size_t i) { return DisplacementOf(*store, points[i]); });
    AddStresses(grid, count, [=](std::size_t i) { return StressesAt(*store, points[i]); });
    AddIntegers(grid.pointData, "section_node", count, [=](std::size_t i) { return points[i].node; });

    AddIntegers(grid.cellData, "beam", cells, [=](std::size_t i) { return walls[i].beam; });
    AddIntegers(grid.cellData, "patch", cells, [=](std::size_t i) { return walls[i].patch; });
    AddIntegers(grid.cellData, "section_type", cells,
                [=](std::size_t i) { return store->BeamSectionRefs[walls[i].beam].BeamSecType; });
    AddIntegers(grid.cellData, "section", cells,
                [=](std::size_t i) { return store->BeamSectionRefs[walls[i].beam].BeamSecIndex; });
    AddReals(grid.cellData, "thickness", cells,
             [=](std::size_t i) { return store->BeamStressRecords[walls[i].beam].patches[walls[i].patch].thickness; });
    AddIntegers(grid.cellData, "material", cells,
                [=](std::size_t i) { return store->BeamProperties[walls[i].beam].material; });
    return WriteVtu(grid, path);
}

FileResult WriteVtuBeamLines(const ModelStore& model, const std::string& path)
{
    const ModelStore* store = &model;
    const std::size_t cells = model.BeamConnectivity.size(), count = BeamNodeCount * cells;
    const auto nodeOf = [=](std::size_t i) { return store->BeamConnectivity[i / BeamNodeCount][i % BeamNodeCount]; };
    VtuGrid grid;
    grid.points =
        PlacesArray(count, [=](std::size_t i) -> const Vector3& { return store->NodeCoordinates[nodeOf(i)]; });
    SetCells(grid, cells, VtkLine, BeamNodeCount);
    grid.connectivity = ConnectivityArray(count, [](std::size_t i) { return static_cast<std::int64_t>(i); });
    AddDisplacements(grid, count, [=](std::size_t i) { return &store->GlobalDisplacement[DofsPerNode * nodeOf(i)]; });
    AddIntegers(grid.pointData, "node", count, nodeOf);

    AddIntegers(grid.cellData, "beam", cells, [](std::size_t i) { return static_cast<std::int32_t>(i); });
    AddIntegers(grid.cellData, "section_type", cells,
                [=](std::size_t i) { return store->BeamSectionRefs[i].BeamSecType; });
    AddIntegers(grid.cellData, "section", cells, [=](std::size_t i) { return store->BeamSectionRefs[i].BeamSecIndex; });
    AddIntegers(grid.cellData, "material", cells, [=](std::size_t i) { return store->BeamProperties[i].material; });
    return WriteVtu(grid, path);
}

} // namespace tarnvexo
