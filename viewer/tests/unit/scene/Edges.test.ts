import { expect, test } from 'vitest';
import { meshEdges } from '../../../src/model/Topology';
import { outline, shownEdges } from '../../../src/scene/Edges';
import { Surface } from '../../../src/scene/Surface';
import { plateStrip, stiffenedPlate } from './models';

test('free edges of a plate are its border, those of section walls are left out', () => {
    const result = stiffenedPlate(4, 2, 2, 3);
    const all = new Uint8Array(result.quads.length / 4).fill(1);
    const lines = shownEdges(result, meshEdges(result), 'free', all);
    expect(lines.length / 2).toBe(2 * (4 + 2));
    expect(Math.max(...lines)).toBeLessThan(result.structureNodes);
});

test('features of a beam run along it and not on its axis', () => {
    const result = stiffenedPlate(4, 2, 1, 3);
    const onlyBeam = new Uint8Array(result.quads.length / 4).fill(1, result.shellQuads);
    const lines = shownEdges(result, meshEdges(result), 'feature', onlyBeam);
    // Where web and flange meet, and both tips of the flange, in 3 slices each.
    expect(lines.length / 2).toBe(9);
    for (const node of lines) expect(result.coordinates[3 * node + 2]).toBe(-1);
});

test('the outline of a structure without shells is the axes of its beams', () => {
    const result = stiffenedPlate(4, 2, 2, 3);
    const beams = { ...result, shellQuads: 0, quads: result.quads.slice(4 * result.shellQuads) };
    beams.beams = { ...result.beams, wallBegin: result.beams.wallBegin.map((wall) => wall - result.shellQuads) };
    expect(outline(beams, meshEdges(beams)).length / 2).toBe(2);
});

test('a warped quadrilateral is split along its shorter diagonal, and keeps its winding', () => {
    const result = plateStrip(1, 1);
    expect(Array.from(new Surface(result).triangles)).toEqual([0, 1, 2, 0, 2, 3]);
    result.coordinates.set([2, 2, 0], 3 * result.quads[2]);
    expect(Array.from(new Surface(result).triangles)).toEqual([0, 1, 3, 1, 2, 3]);
});
