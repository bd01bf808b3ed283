// Small and large results made by formulas, for tests.
import { DOFS, STRESS_COLUMNS, type Result } from '../../../src/model/Result';

/** columns x rows quadrilaterals of side 1 in the plane z = 0, positive face upwards; SE = x of the node, below 100 + x. */
export function plateStrip(columns: number, rows: number): Result {
    const nodes = (columns + 1) * (rows + 1);
    const result = emptyResult(nodes);
    result.shellQuads = columns * rows;
    result.quads = new Uint32Array(4 * columns * rows);
    for (let row = 0, node = 0; row <= rows; ++row) {
        for (let column = 0; column <= columns; ++column, ++node) {
            result.coordinates.set([column, row, 0], 3 * node);
            result.displacements[DOFS * node + 2] = (column / columns) ** 2;
            result.positiveFace[STRESS_COLUMNS * node + 6] = column;
            result.negativeFace[STRESS_COLUMNS * node + 6] = 100 + column;
        }
    }
    for (let row = 0, quad = 0; row < rows; ++row) {
        for (let column = 0; column < columns; ++column, ++quad) {
            const corner = row * (columns + 1) + column;
            result.quads.set([corner, corner + 1, corner + columns + 2, corner + columns + 1], 4 * quad);
        }
    }
    return result;
}

/** plateStrip with a web of walls, height 1, under every beam-th row: one beam of slices x 5 walls per column. */
export function stiffenedPlate(columns: number, rows: number, beams: number, slices: number): Result {
    const plate = plateStrip(columns, rows);
    const ring = 6;
    const nodesPerBeam = ring * (slices + 1);
    const wallsPerBeam = (ring - 1) * slices;
    const wallNodes = beams * nodesPerBeam;
    const result = emptyResult(plate.structureNodes, wallNodes);
    result.shellQuads = plate.shellQuads;
    result.coordinates.set(plate.coordinates);
    result.displacements.set(plate.displacements);
    result.positiveFace.set(plate.positiveFace);
    result.negativeFace.set(plate.negativeFace);
    result.quads = new Uint32Array(plate.quads.length + 4 * beams * wallsPerBeam);
    result.quads.set(plate.quads);
    result.beams = {
        count: beams,
        ends: new Float32Array(6 * beams),
        wallBegin: Uint32Array.from({ length: beams + 1 }, (_, beam) => plate.shellQuads + beam * wallsPerBeam),
        nodeBegin: Uint32Array.from({ length: beams + 1 }, (_, beam) => plate.structureNodes + beam * nodesPerBeam),
    };
    // A T section: three parts of web, two of flange.
    const outline = [
        [0, 0],
        [0, -0.33],
        [0, -0.67],
        [0, -1],
        [-0.4, -1],
        [0.4, -1],
    ];
    const walls = [
        [0, 1],
        [1, 2],
        [2, 3],
        [3, 4],
        [3, 5],
    ];
    for (let beam = 0; beam < beams; ++beam) {
        const column = beam % columns;
        const row = (5 * Math.floor(beam / columns)) % (rows + 1);
        result.beams.ends.set([column, row, 0, column + 1, row, 0], 6 * beam);
        for (let slice = 0; slice <= slices; ++slice) {
            for (let i = 0; i < ring; ++i) {
                const node = result.beams.nodeBegin[beam] + slice * ring + i;
                const x = column + slice / slices;
                result.coordinates.set([x, row + outline[i][0], outline[i][1]], 3 * node);
                result.displacements[DOFS * node + 2] = (x / columns) ** 2;
                result.positiveFace[STRESS_COLUMNS * node + 6] = result.negativeFace[STRESS_COLUMNS * node + 6] = x;
            }
        }
        for (let slice = 0; slice < slices; ++slice) {
            walls.forEach(([a, b], i) => {
                const first = result.beams.nodeBegin[beam] + slice * ring;
                const quad = result.beams.wallBegin[beam] + slice * walls.length + i;
                result.quads.set([first + a, first + ring + a, first + ring + b, first + b], 4 * quad);
            });
        }
    }
    return result;
}

/** Each node has a vertex. */
export function emptyResult(structureNodes: number, wallNodes = 0): Result {
    const nodes = structureNodes + wallNodes;
    return {
        title: 'test',
        structureNodes,
        coordinates: new Float32Array(3 * nodes),
        displacements: new Float32Array(DOFS * nodes),
        vertexNodes: Uint32Array.from({ length: nodes }, (_, node) => node),
        positiveFace: new Float32Array(STRESS_COLUMNS * nodes),
        negativeFace: new Float32Array(STRESS_COLUMNS * nodes),
        shellQuads: 0,
        quads: new Uint32Array(0),
        tris: new Uint32Array(0),
        beams: {
            count: 0,
            ends: new Float32Array(0),
            wallBegin: new Uint32Array(1),
            nodeBegin: Uint32Array.of(structureNodes),
        },
    };
}
