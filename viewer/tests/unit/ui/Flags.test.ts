import { expect, test } from 'vitest';
import { leaderStart, overlap, placeFlags, type Anchor, type Rectangle } from '../../../src/ui/Flags';

const picture = { width: 800, height: 600 };
const label = { width: 150, height: 40 };

function anchorsAt(...points: [number, number][]): Anchor[] {
    return points.map(([x, y]) => ({ x, y, ...label }));
}

test('labels of anchors at one place overlap neither each other nor what is taken', () => {
    const legend: Rectangle = { x: 600, y: 0, width: 200, height: 400 };
    const places = placeFlags(anchorsAt([590, 300], [592, 301], [588, 299]), picture, [legend]);
    const boxes = [legend, ...places.map((place) => place!)];
    for (let i = 0; i < boxes.length; ++i) {
        for (let j = 0; j < i; ++j) expect(overlap(boxes[i], boxes[j])).toBe(false);
    }
});

test('labels of anchors in the corners stay within the picture', () => {
    const corners = anchorsAt([0, 0], [800, 0], [0, 600], [800, 600]);
    for (const place of placeFlags(corners, picture, [])) {
        expect(place!.x).toBeGreaterThanOrEqual(0);
        expect(place!.y).toBeGreaterThanOrEqual(0);
        expect(place!.x + place!.width).toBeLessThanOrEqual(picture.width);
        expect(place!.y + place!.height).toBeLessThanOrEqual(picture.height);
    }
});

test('an anchor outside the picture gets no label', () => {
    expect(placeFlags(anchorsAt([-1, 300], [400, 601]), picture, [])).toEqual([undefined, undefined]);
});

test('an anchor gets no label where all the picture is taken', () => {
    expect(placeFlags(anchorsAt([400, 300]), picture, [{ x: 0, y: 0, ...picture }])).toEqual([undefined]);
});

test('a leader line begins at the border of its label', () => {
    expect(leaderStart({ x: 100, y: 100, width: 50, height: 20 }, { x: 400, y: 110 })).toEqual([150, 110]);
});

test('a label stands beside the structure where there is place, and over it where there is none', () => {
    const squares = (from: number, to: number): Float32Array => {
        const middles: number[] = [];
        for (let x = from + 5; x < to; x += 10) for (let y = 5; y < 600; y += 10) middles.push(x, y);
        return Float32Array.from(middles);
    };
    const [beside] = placeFlags(anchorsAt([300, 300]), picture, [], { middles: squares(0, 400), side: 10 });
    expect(beside!.x).toBeGreaterThanOrEqual(400);
    const everywhere = { middles: squares(0, 800), side: 10 };
    expect(placeFlags(anchorsAt([300, 300]), picture, [], everywhere)).toEqual(
        placeFlags(anchorsAt([300, 300]), picture, []),
    );
});
