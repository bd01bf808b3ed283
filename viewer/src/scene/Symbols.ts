// Shapes of arrows and cones as triangles and lines, each of which moves with a place of the structure.
import type { Geometry } from './MotionActor';
import { add, cross, minus, scaled, unit, type Vec3 } from './Vectors';

/** Sides of a cone. */
const SIDES = 8;

/** A place of the structure, and how it moves. */
export interface Anchor {
    place: Vec3;
    motion: Vec3;
}

/** Collects symbols; all that belongs to a symbol has the motion of its anchor. */
export class SymbolBuilder {
    private readonly points: number[] = [];
    private readonly motion: number[] = [];
    private readonly lines: number[] = [];
    private readonly polys: number[] = [];

    /** Ends at the anchor, so that its point shows where the load acts; heads: 2 for a moment. */
    arrow(anchor: Anchor, direction: Vec3, length: number, headLength: number, heads = 1): void {
        const along = unit(direction);
        const tip = anchor.place;
        const head = Math.min(headLength, length / heads);
        const tail = this.point(anchor, minus(tip, scaled(along, length)));
        this.lines.push(2, tail, this.point(anchor, minus(tip, scaled(along, heads * head))));
        for (let i = 0; i < heads; ++i)
            this.coneAt(anchor, minus(tip, scaled(along, i * head)), along, head, 0.3 * head);
    }

    /** Through places that are this far from their anchors. */
    line(anchors: readonly Anchor[], offsets: readonly Vec3[]): void {
        this.lines.push(anchors.length);
        anchors.forEach((anchor, i) => this.lines.push(this.point(anchor, add(anchor.place, offsets[i]))));
    }

    /** With its tip at a distance behind the anchor. */
    cone(anchor: Anchor, direction: Vec3, length: number, radius: number, behind = 0): void {
        const along = unit(direction);
        this.coneAt(anchor, minus(anchor.place, scaled(along, behind)), along, length, radius);
    }

    lineGeometry(): Geometry {
        return { ...this.pointGeometry(), lines: Uint32Array.from(this.lines) };
    }

    faceGeometry(): Geometry {
        const geometry = this.pointGeometry();
        return {
            ...geometry,
            polys: Uint32Array.from(this.polys),
            values: new Float32Array((2 * geometry.points.length) / 3),
        };
    }

    private pointGeometry(): Geometry {
        return { points: Float32Array.from(this.points), motion: Float32Array.from(this.motion) };
    }

    private coneAt(anchor: Anchor, tip: Vec3, along: Vec3, length: number, radius: number): void {
        const [across, other] = perpendicular(along);
        const foot = minus(tip, scaled(along, length));
        const top = this.point(anchor, tip);
        const middle = this.point(anchor, foot);
        const ring: number[] = [];
        for (let i = 0; i < SIDES; ++i) {
            const angle = (2 * Math.PI * i) / SIDES;
            const out = add(scaled(across, radius * Math.cos(angle)), scaled(other, radius * Math.sin(angle)));
            ring.push(this.point(anchor, add(foot, out)));
        }
        for (let i = 0; i < SIDES; ++i) {
            this.polys.push(3, top, ring[i], ring[(i + 1) % SIDES], 3, middle, ring[(i + 1) % SIDES], ring[i]);
        }
    }

    private point({ motion }: Anchor, place: Vec3): number {
        this.points.push(...place);
        this.motion.push(...motion);
        return this.points.length / 3 - 1;
    }
}

function perpendicular(along: Vec3): [Vec3, Vec3] {
    const least = along.map(Math.abs);
    const axis = least.indexOf(Math.min(...least));
    const across = unit(cross(along, [axis === 0 ? 1 : 0, axis === 1 ? 1 : 0, axis === 2 ? 1 : 0]));
    return [across, cross(along, across)];
}
