#!/usr/bin/python3
"""The open formats say what the text files of the same run say.

    /usr/bin/python3 compare_formats.py vtu|csv PROGRAM DIRECTORY CASE ...

Solves the model of every CASE with --format text,vtu,csv into a directory below DIRECTORY and compares every value:
vtu through VTK's own reader, csv through Python's. Numbers of the text files have six significant digits. Exit code 0
when all agree; 77, with the reason, when VTK is not there.
"""
import csv
import math
import os
import re
import subprocess
import sys

SKIPPED = 77
CONTOURS = 'Tarn+Vexo_AverageStrs.txt'
OWN_STRESSES = 'Shell element node stress.txt'

# Where SX SY SZ TXY TZX TYZ of the text files stand in VTK's tensors XX YY ZZ XY YZ XZ.
TENSOR = [0, 1, 2, 3, 5, 4]

# Elements share a point of shells.vtu when their averages agree within 1e-10 of the largest component.
SHARED = 1e-9

compared = 0


def expect(what, texts, values, noise=0.0):
    """Numbers as the text file has them against full or nine-digit ones; noise relative to the largest."""
    global compared
    assert len(texts) == len(values), '%s: %d numbers in the text file, %d here' % (what, len(texts), len(values))
    largest = max([abs(float(t)) for t in texts], default=0.0)
    for text, value in zip(texts, values):
        number = float(text)
        unit = 10.0 ** (math.floor(math.log10(abs(number))) - 5) if number else 0.0
        allowed = 0.501 * unit + noise * largest
        assert abs(number - value) <= allowed, '%s: %s in the text file, %r here' % (what, text, value)
        compared += 1


def expect_same(what, expected, found):
    global compared
    assert expected == found, '%s: expected %r, found %r' % (what, expected, found)
    compared += 1


# ---- the text files

class Lines:
    def __init__(self, path):
        self.lines = iter(open(path).read().splitlines())

    def next(self):
        return next(self.lines)

    def count(self, key):
        line = self.next()
        assert line.startswith(key), line
        return int(line[len(key):])

    def fields(self):
        return self.next().split(',')

    def integers(self):
        return [int(field) for field in self.fields()]

    def elements(self, count):
        """Nodes of each element, and its stresses: per node positive, then negative face."""
        elements = []
        for _ in range(count):
            nodes = self.integers()
            elements.append((nodes, [(self.fields(), self.fields()) for _ in nodes]))
        return elements


class ContourFile:
    def __init__(self, path):
        lines = Lines(path)
        count = lines.count('NPOIN=')
        self.places = [lines.fields() for _ in range(count)]
        self.displacements = [lines.fields() for _ in range(count)]
        self.quads = lines.elements(lines.count('NELEM_S_4ND='))
        self.tris = lines.elements(lines.count('NELEM_S_3ND='))
        self.beams = []
        for beam in range(lines.count('NELEM_B=')):
            expect_same('beam', beam, lines.count('BEI='))
            lines.next(), lines.next()
            nodes = lines.count('NPOIN=')
            places = [lines.fields() for _ in range(nodes)]
            displacements = [lines.fields() for _ in range(nodes)]
            self.beams.append((places, displacements, lines.elements(lines.count('NELEM='))))


class ModelFile:
    """What the results name of the model: nodes of beams, properties of elements."""

    def __init__(self, path):
        text = open(path).read()
        self.thicknesses = [float(t) for t in re.findall(r'^\s*TK\s*=\s*(\S+)', text, re.M)]
        shells = re.findall(r'^\s*\d+\s*:((?:\s*\d+\s*,?){3,4})\[\s*(\d+)\s*,\s*(\d+)\s*\]', text, re.M)
        shells = [(len(re.findall(r'\d+', nodes)), int(m), int(t)) for nodes, m, t in shells]
        self.quads = [(m, self.thicknesses[t]) for count, m, t in shells if count == 4]
        self.tris = [(m, self.thicknesses[t]) for count, m, t in shells if count == 3]
        beams = re.findall(r'^\s*\d+\s*:\s*(\d+)\s*,\s*(\d+)\s*<[^>]*>\s*\[\s*(\d+)\s*,\s*BeamSecType\s*=\s*(\d+)\s*,'
                           r'\s*BeamSecIndex\s*=\s*(\d+)', text, re.M)
        self.beams = [[int(v) for v in beam] for beam in beams]  # node, node, material, section type, section


# ---- VTU

def point_data(grid, name, point):
    return grid.GetPointData().GetArray(name).GetTuple(point)


def cell_data(grid, name, cell):
    return grid.GetCellData().GetArray(name).GetTuple1(cell)


def points_of(grid, cell):
    ids = grid.GetCell(cell).GetPointIds()
    return [ids.GetId(i) for i in range(ids.GetNumberOfIds())]


def compare_point(what, grid, point, place, displacement):
    expect(what + ' place', place, grid.GetPoint(point))
    expect(what + ' displacement', displacement[:3], point_data(grid, 'displacement', point))
    expect(what + ' rotation', displacement[3:], point_data(grid, 'rotation', point))


def compare_stresses(what, grid, point, faces, noise):
    equivalents = []
    for face, line in zip(('positive', 'negative'), faces):
        tensor = point_data(grid, 'stress_%s_face' % face, point)
        equivalents += point_data(grid, 'equivalent_stress_%s_face' % face, point)
        expect('%s %s stress' % (what, face), line, [tensor[k] for k in TENSOR] + equivalents[-1:], noise)
    expect_same(what + ' equivalent stress', max(equivalents), point_data(grid, 'equivalent_stress', point)[0])


def compare_shells(grid, text, model):
    from vtkmodules.vtkCommonDataModel import VTK_QUAD, VTK_TRIANGLE
    shells = [('quad', VTK_QUAD, e) for e in range(len(text.quads))]
    shells += [('tri', VTK_TRIANGLE, e) for e in range(len(text.tris))]
    expect_same('shells', len(shells), grid.GetNumberOfCells())
    for cell, (kind, cell_type, number) in enumerate(shells):
        what = '%s %d' % (kind, number)
        nodes, stresses = (text.quads if kind == 'quad' else text.tris)[number]
        material, thickness = (model.quads if kind == 'quad' else model.tris)[number]
        expect_same(what + ' cell type', cell_type, grid.GetCellType(cell))
        expect_same(what + ' number', number, cell_data(grid, 'element', cell))
        expect_same(what + ' material', material, cell_data(grid, 'material', cell))
        expect_same(what + ' thickness', thickness, cell_data(grid, 'thickness', cell))
        points = points_of(grid, cell)
        expect_same(what + ' nodes', nodes, [point_data(grid, 'node', point)[0] for point in points])
        for node, point, faces in zip(nodes, points, stresses):
            compare_point(what, grid, point, text.places[node], text.displacements[node])
            compare_stresses('%s node %d' % (what, node), grid, point, faces, SHARED)


def compare_walls(grid, text, model):
    cell = 0
    for beam, (places, displacements, patches) in enumerate(text.beams):
        for patch, (nodes, stresses) in enumerate(patches):
            what = 'beam %d patch %d' % (beam, patch)
            expect_same(what + ' beam', beam, cell_data(grid, 'beam', cell))
            expect_same(what + ' patch', patch, cell_data(grid, 'patch', cell))
            properties = [cell_data(grid, name, cell) for name in ('material', 'section_type', 'section')]
            expect_same(what + ' properties', model.beams[beam][2:], properties)
            points = points_of(grid, cell)
            expect_same(what + ' nodes', nodes, [point_data(grid, 'section_node', point)[0] for point in points])
            for node, point, faces in zip(nodes, points, stresses):
                compare_point(what, grid, point, places[node], displacements[node])
                compare_stresses('%s node %d' % (what, node), grid, point, faces, 0.0)
            cell += 1
    expect_same('walls', cell, grid.GetNumberOfCells())


def compare_beam_lines(grid, text, model):
    from vtkmodules.vtkCommonDataModel import VTK_LINE
    expect_same('beam lines', len(text.beams), grid.GetNumberOfCells())
    for beam, (first, second, *properties) in enumerate(model.beams):
        what = 'beam %d' % beam
        expect_same(what + ' cell type', VTK_LINE, grid.GetCellType(beam))
        expect_same(what + ' number', beam, cell_data(grid, 'beam', beam))
        names = ('material', 'section_type', 'section')
        expect_same(what + ' properties', properties, [cell_data(grid, name, beam) for name in names])
        points = points_of(grid, beam)
        expect_same(what + ' nodes', [first, second], [point_data(grid, 'node', point)[0] for point in points])
        for node, point in zip((first, second), points):
            compare_point(what, grid, point, text.places[node], text.displacements[node])


def read_grid(path):
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    expect_same(path + ' error code', 0, reader.GetErrorCode())
    return reader.GetOutput()


def compare_vtu(run, text, model):
    from vtkmodules.vtkCommonDataModel import vtkCompositeDataSet
    from vtkmodules.vtkIOXML import vtkXMLMultiBlockDataReader
    reader = vtkXMLMultiBlockDataReader()
    reader.SetFileName(os.path.join(run, 'results.vtm'))
    reader.Update()
    blocks = reader.GetOutput()
    names = [blocks.GetMetaData(i).Get(vtkCompositeDataSet.NAME()) for i in range(blocks.GetNumberOfBlocks())]
    expect_same('blocks', ['shells', 'beams', 'beam lines'], names)
    grids = [blocks.GetBlock(i) for i in range(3)]
    for grid, name in zip(grids, ('shells.vtu', 'beams.vtu', 'beam_lines.vtu')):
        alone = read_grid(os.path.join(run, name))
        expect_same(name + ' points', alone.GetNumberOfPoints(), grid.GetNumberOfPoints())
        expect_same(name + ' cells', alone.GetNumberOfCells(), grid.GetNumberOfCells())
    compare_shells(grids[0], text, model)
    compare_walls(grids[1], text, model)
    compare_beam_lines(grids[2], text, model)


# ---- CSV

def read_csv(run, name, columns):
    with open(os.path.join(run, name), newline='', encoding='utf-8') as file:
        text = file.read()
    expect_same(name + ' line ends', text.count('\n'), text.count('\r\n'))
    rows = list(csv.reader(text.splitlines(True), strict=True))
    expect_same(name + ' columns', columns, ','.join(rows[0]))
    return rows[1:]


NODE_COLUMNS = 'x,y,z,dx,dy,dz,rx,ry,rz'
STRESS_COLUMNS = 'face,SX,SY,SZ,TXY,TXZ,TYZ,SE,own_SX,own_SY,own_SZ,own_TXY,own_TXZ,own_TYZ,own_SE'


def numbers(fields):
    return [float(field) for field in fields]


def compare_csv_stresses(name, head, rows, expected):
    """expected: identifying integers, face, averaged stresses, own stresses or None."""
    expect_same(name + ' rows', len(expected), len(rows))
    for row, (identity, face, averaged, own) in zip(rows, expected):
        what = '%s %s' % (name, identity)
        expect_same(what, [str(number) for number in identity] + [face], row[:head + 1])
        expect(what + ' averaged', averaged, numbers(row[head + 1:head + 8]))
        if own:
            expect(what + ' own', own, numbers(row[head + 8:]))


def own_stresses(path):
    """Per element in order: a line of stresses per node and face."""
    elements = []
    for line in open(path):
        if 'element:' in line:
            elements.append([])
        elif ':' in line:
            elements[-1].append(line.split(':')[1].split())
    return elements


def shell_rows(elements, own):
    rows = []
    for number, (nodes, stresses) in enumerate(elements):
        for i, (node, faces) in enumerate(zip(nodes, stresses)):
            for k, face in enumerate(('positive', 'negative')):
                rows.append(((number, node), face, faces[k], own[number][2 * i + k]))
    return rows


def compare_csv(run, text, model):
    del model
    rows = read_csv(run, 'nodes.csv', 'node,' + NODE_COLUMNS)
    expect_same('nodes', [str(n) for n in range(len(text.places))], [row[0] for row in rows])
    for row, place, displacement in zip(rows, text.places, text.displacements):
        expect('node ' + row[0], place + displacement, numbers(row[1:]))

    own = own_stresses(os.path.join(run, OWN_STRESSES))
    for name, elements, first in (('quads.csv', text.quads, 0), ('tris.csv', text.tris, len(text.quads))):
        compare_csv_stresses(name, 2, read_csv(run, name, 'element,node,' + STRESS_COLUMNS),
                             shell_rows(elements, own[first:]))

    rows = iter(read_csv(run, 'beam_nodes.csv', 'beam,section_node,' + NODE_COLUMNS))
    expected = []
    for beam, (places, displacements, patches) in enumerate(text.beams):
        for node, (place, displacement) in enumerate(zip(places, displacements)):
            row = next(rows)
            expect_same('beam_nodes.csv', [str(beam), str(node)], row[:2])
            expect('beam %d section node %d' % (beam, node), place + displacement, numbers(row[2:]))
        for patch, (nodes, stresses) in enumerate(patches):
            for node, faces in zip(nodes, stresses):
                for k, face in enumerate(('positive', 'negative')):
                    expected.append(((beam, patch, node), face, faces[k], None))
    expect_same('beam_nodes.csv end', None, next(rows, None))
    compare_csv_stresses('beams.csv', 3, read_csv(run, 'beams.csv', 'beam,patch,section_node,' + STRESS_COLUMNS),
                         expected)


def main():
    what, program, directory, *cases = sys.argv[1:]
    if what == 'vtu':
        try:
            import vtkmodules.vtkIOXML  # noqa: F401
        except ImportError as reason:
            print('SKIPPED: VTK for Python is not there (%s); make deps installs the package python3-vtk9' % reason)
            return SKIPPED
    compare = {'vtu': compare_vtu, 'csv': compare_csv}[what]
    for case in cases:
        run = os.path.join(directory, os.path.basename(case))
        subprocess.run([program, 'solve', case, '-o', run, '--format', 'text,vtu,csv', '-q'], check=True,
                       stdout=subprocess.DEVNULL)
        before = compared
        compare(run, ContourFile(os.path.join(run, CONTOURS)), ModelFile(os.path.join(case, 'fem_solving.txt')))
        print('%s: %d values agree' % (os.path.basename(case), compared - before))
    return 0


sys.exit(main())
