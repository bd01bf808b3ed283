import { describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { cornerVertex } from '../../../src/model/Fields';
import {
    FEATURE_EDGE,
    FREE_EDGE,
    edgeLines,
    elementNormals,
    elementOfCorner,
    meshEdges,
} from '../../../src/model/Topology';
import type { Result } from '../../../src/model/Result';
import { CONTOUR_FILE, SMALL_TEXT, bytesOf, caseFile, caseNames } from '../support/ContourTexts';
import { facts, shellResult } from '../support/Results';

/** Edges by their nodes, "0-1", in order. */
function named(result: Result, lines: Uint32Array): string[] {
    const names: string[] = [];
    for (let i = 0; i < lines.length; i += 2) {
        const nodes = [result.vertexNodes[lines[i]], result.vertexNodes[lines[i + 1]]];
        names.push(nodes.sort((a, b) => a - b).join('-'));
    }
    return names.sort();
}

/** Two squares with the common edge 1-2, the second one turned out of the plane of the first. */
function hinge(degrees: number, second = [1, 4, 5, 2]): Result {
    const x = 1 + Math.cos((degrees * Math.PI) / 180);
    const z = Math.sin((degrees * Math.PI) / 180);
    const places = [
        [0, 0, 0],
        [1, 0, 0],
        [1, 1, 0],
        [0, 1, 0],
        [x, 0, z],
        [x, 1, z],
    ];
    return shellResult(places, [[0, 1, 2, 3], second]);
}

const kindOf = (result: Result, edge: string) => {
    const edges = meshEdges(result);
    const at = Array.from({ length: edges.count }, (_, e) => e).find(
        (e) => named(result, edges.vertices.subarray(2 * e, 2 * e + 2))[0] === edge,
    );
    return at === undefined ? undefined : edges.kinds[at];
};

describe('edges', () => {
    test('are those of all elements, each once', () => {
        const result = hinge(0);
        const edges = meshEdges(result);
        expect(named(result, edgeLines(result, edges, 0))).toEqual(['0-1', '0-3', '1-2', '1-4', '2-3', '2-5', '4-5']);
        const free = edgeLines(result, edges, FREE_EDGE);
        expect(named(result, free)).toEqual(['0-1', '0-3', '1-4', '2-3', '2-5', '4-5']);
    });

    test.each(caseNames())('of the case %s are those that a table of names finds', (name) => {
        const result = parseContourText(caseFile(name, CONTOUR_FILE), name);
        const uses = new Map<string, number>();
        const add = (vertices: Uint32Array, nodes: number) => {
            for (let i = 0; i < vertices.length; ++i) {
                const next = i % nodes === nodes - 1 ? i + 1 - nodes : i + 1;
                const [edge] = named(result, Uint32Array.of(vertices[i], vertices[next]));
                if (edge.split('-')[0] !== edge.split('-')[1]) uses.set(edge, (uses.get(edge) ?? 0) + 1);
            }
        };
        add(result.quads, 4);
        add(result.tris, 3);
        const edges = meshEdges(result);
        expect(named(result, edgeLines(result, edges, 0))).toEqual([...uses.keys()].sort());
        const free = [...uses.keys()].filter((edge) => uses.get(edge) === 1).sort();
        expect(named(result, edgeLines(result, edges, FREE_EDGE))).toEqual(free);
    });

    test('know the corners from which elements go along them', () => {
        const result = parseContourText(bytesOf(SMALL_TEXT), 'small');
        const { count, vertices, corners } = meshEdges(result);
        for (let e = 0; e < count; ++e) {
            const [edge] = named(result, vertices.subarray(2 * e, 2 * e + 2));
            for (const corner of corners.items.subarray(corners.begin[e], corners.begin[e + 1])) {
                expect(edge.split('-').map(Number)).toContain(result.vertexNodes[cornerVertex(result, corner)]);
            }
        }
        const shared = corners.items.subarray(corners.begin[0], corners.begin[1]);
        expect([...shared].map((corner) => elementOfCorner(result, corner))).toEqual([0, 2]); // 0-1: quad and triangle
    });

    test('are drawn where one of their elements is shown', () => {
        const result = hinge(0);
        const lines = edgeLines(result, meshEdges(result), 0, Uint8Array.of(1, 0));
        expect(named(result, lines)).toEqual(['0-1', '0-3', '1-2', '2-3']);
    });
});

describe('an edge is a feature', () => {
    test.each([
        [20, 0],
        [30, 0],
        [32, FEATURE_EDGE],
        [90, FEATURE_EDGE],
        [179, FEATURE_EDGE],
    ])('where the surface turns by more than 30°: %s°', (degrees, kind) => {
        expect(kindOf(hinge(degrees), '1-2')).toBe(kind);
        // whichever way round the neighbour has its nodes
        expect(kindOf(hinge(degrees, [2, 5, 4, 1]), '1-2')).toBe(kind);
    });

    test('where three shells meet', () => {
        const { coordinates } = hinge(0);
        const places = Array.from({ length: 6 }, (_, n) => [...coordinates.subarray(3 * n, 3 * n + 3)]);
        const flat = shellResult(places, [
            [0, 1, 2, 3],
            [1, 4, 5, 2],
            [0, 1, 2, 3],
        ]);
        expect(kindOf(flat, '1-2')).toBe(FEATURE_EDGE);
    });

    test('where the thickness changes', () => {
        const result = hinge(0);
        result.model = facts(result);
        expect(kindOf(result, '1-2')).toBe(0);
        result.model.quadThickness[1] = 1;
        expect(kindOf(result, '1-2')).toBe(FEATURE_EDGE);
    });

    test('where it is free', () => {
        expect(kindOf(hinge(0), '0-1')).toBe(FEATURE_EDGE | FREE_EDGE);
    });

    test('of a tube only at its ends, though its walls turn by 30°', () => {
        const result = parseContourText(caseFile('tubes', CONTOUR_FILE), 'tubes');
        const edges = meshEdges(result);
        const features = edgeLines(result, edges, FEATURE_EDGE);
        expect(named(result, features)).toEqual(named(result, edgeLines(result, edges, FREE_EDGE)));
    });
});

test('normals are of unit length, on the side from which the nodes run anticlockwise', () => {
    const normals = elementNormals(hinge(90));
    [0, 0, 1, -1, 0, 0].forEach((value, i) => expect(normals[i]).toBeCloseTo(value, 6));
    const line = shellResult([[0, 0, 0], [1, 0, 0], [2, 0, 0]], [], [[0, 1, 2]]); // prettier-ignore
    expect([...elementNormals(line)]).toEqual([0, 0, 0]);
});
