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

/** Distance between labels, and from the border of the picture. */
const GAP = 6;

/**
 * A place for the label of each anchor, the nearest free one of rings around it; undefined where the anchor is outside
 * the picture or no place is free.
 */
export function placeFlags(
    anchors: readonly Anchor[],
    picture: { width: number; height: number },
    taken: readonly Rectangle[],
): (Rectangle | undefined)[] {
    const placed: Rectangle[] = [...taken];
    // Anchors themselves stay visible: a small square around each is taken too.
    for (const anchor of anchors) placed.push({ x: anchor.x - 4, y: anchor.y - 4, width: 8, height: 8 });
    return anchors.map((anchor) => {
        const outside = anchor.x < 0 || anchor.y < 0 || anchor.x > picture.width || anchor.y > picture.height;
        if (outside) return undefined;
        for (const distance of [26, 48, 80, 120, 170, 230, 300]) {
            for (const direction of directions(anchor, picture)) {
                const label = labelAt(anchor, direction, distance);
                const inside =
                    label.x >= GAP &&
                    label.y >= GAP &&
                    label.x + label.width <= picture.width - GAP &&
                    label.y + label.height <= picture.height - GAP;
                if (inside && !placed.some((other) => overlap(label, other))) {
                    placed.push(label);
                    return label;
                }
            }
        }
        return undefined;
    });
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
