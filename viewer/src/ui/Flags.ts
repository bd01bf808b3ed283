// Labels with leader lines that overlap neither each other nor what else stands on the picture, nor leave it.

export interface Rectangle {
    x: number;
    y: number;
    width: number;
    height: number;
}

export interface Anchor {
    /** Where the leader line ends, in pixels of the picture. */
    x: number;
    y: number;
    /** Size of the label. */
    width: number;
    height: number;
}

/** Squares of the picture that the structure covers. */
export interface Covered {
    /** x and y of each. */
    middles: Float32Array;
    side: number;
}

/** So much farther from its anchor a label may stand if it covers nothing there, and all of its ground nearer to it. */
const COVER_COST = 400;

/** Distance between labels, and from the border of the picture. */
const GAP = 6;

/**
 * A place for the label of each anchor, of the free ones in rings around it one that is near and covers little of the
 * structure; undefined where the anchor is outside the picture or no place is free.
 */
export function placeFlags(
    anchors: readonly Anchor[],
    picture: { width: number; height: number },
    taken: readonly Rectangle[],
    covered?: Covered,
): (Rectangle | undefined)[] {
    const placed: Rectangle[] = [...taken];
    // Anchors themselves stay visible: a small square around each is taken too.
    for (const anchor of anchors) placed.push({ x: anchor.x - 4, y: anchor.y - 4, width: 8, height: 8 });
    return anchors.map((anchor) => {
        const outside = anchor.x < 0 || anchor.y < 0 || anchor.x > picture.width || anchor.y > picture.height;
        if (outside) return undefined;
        let best: Rectangle | undefined;
        let least = Infinity;
        for (const distance of [26, 48, 80, 120, 170, 230, 300]) {
            for (const direction of directions(anchor, picture)) {
                const label = labelAt(anchor, direction, distance);
                const inside =
                    label.x >= GAP &&
                    label.y >= GAP &&
                    label.x + label.width <= picture.width - GAP &&
                    label.y + label.height <= picture.height - GAP;
                if (distance >= least || !inside || placed.some((other) => overlap(label, other))) continue;
                const cost = distance + (covered ? COVER_COST * coveredPart(label, covered) : 0);
                if (cost < least) [best, least] = [label, cost];
            }
        }
        if (best) placed.push(best);
        return best;
    });
}

/** Part of a label that is over the structure, 0 to about 1. */
function coveredPart(label: Rectangle, { middles, side }: Covered): number {
    let count = 0;
    for (let i = 0; i < middles.length; i += 2) {
        const [x, y] = [middles[i] - label.x, middles[i + 1] - label.y];
        if (x >= 0 && y >= 0 && x <= label.width && y <= label.height) count++;
    }
    return (count * side * side) / (label.width * label.height);
}

/** Sixteen directions, those away from the middle of the picture first: there the structure hides least. */
function directions(anchor: Anchor, picture: { width: number; height: number }): [number, number][] {
    const outward = Math.atan2(anchor.y - picture.height / 2, anchor.x - picture.width / 2);
    const all: [number, number][] = [];
    for (let i = 0; i < 16; ++i) {
        const turn = ((i + 1) >> 1) * (i % 2 === 0 ? 1 : -1) * (Math.PI / 8);
        all.push([Math.cos(outward + turn), Math.sin(outward + turn)]);
    }
    return all;
}

/** The label touches the end of a leader line of that length with the side that faces the anchor. */
function labelAt(anchor: Anchor, [dx, dy]: [number, number], distance: number): Rectangle {
    return {
        x: anchor.x + dx * distance + ((dx - 1) / 2) * anchor.width,
        y: anchor.y + dy * distance + ((dy - 1) / 2) * anchor.height,
        width: anchor.width,
        height: anchor.height,
    };
}

export function overlap(a: Rectangle, b: Rectangle): boolean {
    return (
        a.x < b.x + b.width + GAP &&
        b.x < a.x + a.width + GAP &&
        a.y < b.y + b.height + GAP &&
        b.y < a.y + a.height + GAP
    );
}

/** The point of the border of the label that is nearest to the anchor: there the leader line begins. */
export function leaderStart(label: Rectangle, anchor: { x: number; y: number }): [number, number] {
    return [
        Math.min(Math.max(anchor.x, label.x), label.x + label.width),
        Math.min(Math.max(anchor.y, label.y), label.y + label.height),
    ];
}
