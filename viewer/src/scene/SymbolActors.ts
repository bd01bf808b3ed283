// Arrows for loads and inertia loads, cones for supports.
//   force, pressure: arrow with one head, moment: with two; line load: a row of arrows whose tails a line joins. Lengths
//   in proportion within each kind, small ones not below a least length. Support: a cone along each held displacement, a
//   second one behind it along each held rotation.
import { appliedLoads, inertiaLoads, LEAST_PART, supports, type Arrows, type Supports } from '../model/Loads';
import type { Result } from '../model/Result';
import type { ViewState } from '../state/ViewState';
import { themeOf, type Rgb } from './Appearance';
import { LineActor } from './LineActor';
import { lineLoadArrows, nodalArrows, ofNodes, pressureArrows, type ArrowRows, type ArrowSet } from './LoadArrows';
import type { MotionActor } from './MotionActor';
import { SurfaceActor } from './SurfaceActor';
import { SymbolBuilder, type Anchor } from './Symbols';
import { thinned } from './Thinning';
import { at, norm, scaled, unit, type Vec3 } from './Vectors';

/** Parts of the diagonal of the model. */
const LONGEST = 0.08;
const SHORTEST = 0.012;
const HEAD = 0.016;
const CONE = 0.011;
/** Between arrows of a load that is spread over an element. */
const SPACING = 0.045;
/** Places that are so far apart never share a cube of this side. */
const cubeOf = (spacing: number) => spacing / Math.sqrt(3);
/** More symbols of a kind than this would hide the structure. */
const MOST_SYMBOLS = 3000;

/** How far arrows and cones that are shown may stand out of the structure, as part of the diagonal of the model. */
export function symbolReach(state: ViewState): number {
    if (state.showLoads || state.showPressures || state.showLineLoads || state.showInertia) return LONGEST;
    return state.showSupports ? 1.5 * CONE : 0;
}

/** One kind of them, made when it is first seen. */
class Symbols {
    readonly faces = new SurfaceActor();
    readonly lines = new LineActor(2);
    private build?: () => SymbolBuilder;
    private visible = false;

    set(build: () => SymbolBuilder): void {
        this.build = build;
        if (this.visible) this.make();
    }

    show(visible: boolean, colour: Rgb): void {
        this.visible = visible;
        if (visible) this.make();
        this.faces.look = { ...this.faces.look, mode: 'plain', colours: Float32Array.from(colour) };
        this.lines.setColour([...colour, 1]);
        this.faces.setVisible(visible);
        this.lines.setVisible(visible);
    }

    private make(): void {
        const builder = this.build?.();
        this.build = undefined;
        if (!builder) return;
        this.faces.setGeometry(builder.faceGeometry());
        this.lines.setGeometry(builder.lineGeometry());
    }
}

export class SymbolActors {
    private readonly forces = new Symbols();
    private readonly moments = new Symbols();
    private readonly pressures = new Symbols();
    private readonly lineLoads = new Symbols();
    private readonly inertiaForces = new Symbols();
    private readonly inertiaMoments = new Symbols();
    private readonly supports = new Symbols();

    get actors(): MotionActor[] {
        return [
            this.forces,
            this.moments,
            this.pressures,
            this.lineLoads,
            this.inertiaForces,
            this.inertiaMoments,
            this.supports,
        ].flatMap((each) => [each.lines, each.faces]);
    }

    apply(state: ViewState): void {
        const theme = themeOf(state);
        this.forces.show(state.showLoads, theme.force);
        this.moments.show(state.showLoads, theme.moment);
        this.pressures.show(state.showPressures, theme.pressure);
        this.lineLoads.show(state.showLineLoads, theme.lineLoad);
        this.inertiaForces.show(state.showInertia, theme.inertia);
        this.inertiaMoments.show(state.showInertia, theme.inertia);
        this.supports.show(state.showSupports, theme.support);
    }

    /** motion: 3 per node; size: diagonal of the model. */
    show(result: Result, motion: Float32Array, size: number): void {
        const nodal = (loads: () => Arrows, heads: number) => () =>
            arrows(new SymbolBuilder(), nodalArrows(loads(), result.coordinates, motion), size, heads);
        this.forces.set(nodal(() => appliedLoads(result).forces, 1));
        this.moments.set(nodal(() => appliedLoads(result).moments, 2));
        this.inertiaForces.set(nodal(() => inertiaLoads(result).forces, 1));
        this.inertiaMoments.set(nodal(() => inertiaLoads(result).moments, 2));
        this.supports.set(() => cones(supports(result), result.coordinates, motion, size));
    }

    /** Loads on elements are shown where these are; visible: 1 for each element of the surface that is. */
    showOnElements(result: Result, motion: Float32Array, size: number, visible: Uint8Array): void {
        const spacing = SPACING * size;
        this.pressures.set(() =>
            arrows(new SymbolBuilder(), pressureArrows(result, motion, visible, spacing), size, 1, spacing),
        );
        this.lineLoads.set(() => {
            const rows = lineLoadArrows(result, motion, visible, spacing);
            return arrows(joined(rows, size), rows, size, 1, spacing);
        });
    }
}

/** 0 for what is but round-off. */
function lengthOf(vector: Vec3, longest: number, size: number): number {
    const length = norm(vector);
    if (!(length >= LEAST_PART * longest) || length === 0) return 0;
    return Math.max(SHORTEST, (LONGEST * length) / longest) * size;
}

function anchorOf(places: Float32Array, motions: Float32Array, i: number): Anchor {
    return { place: at(places, i), motion: at(motions, i) };
}

/** spacing: between arrows; 0: only thinned where they are too many. */
function arrows(builder: SymbolBuilder, set: ArrowSet, size: number, heads: number, spacing = 0): SymbolBuilder {
    const { places, motions, vectors, longest } = set;
    for (const i of thinned(places, vectors, MOST_SYMBOLS, cubeOf(spacing))) {
        const vector = at(vectors, i);
        const length = lengthOf(vector, longest, size);
        if (length > 0) builder.arrow(anchorOf(places, motions, i), vector, length, HEAD * size, heads);
    }
    return builder;
}

/** The line through the tails of each row. */
function joined({ places, motions, vectors, longest, rowBegin }: ArrowRows, size: number): SymbolBuilder {
    const builder = new SymbolBuilder();
    for (let row = 0; row + 1 < rowBegin.length; ++row) {
        const anchors: Anchor[] = [];
        const tails: Vec3[] = [];
        for (let i = rowBegin[row]; i < rowBegin[row + 1]; ++i) {
            const vector = at(vectors, i);
            const length = lengthOf(vector, longest, size);
            anchors.push(anchorOf(places, motions, i));
            tails.push(length > 0 ? scaled(unit(vector), -length) : [0, 0, 0]);
        }
        builder.line(anchors, tails);
    }
    return builder;
}

function cones(
    { nodes, bits }: Supports,
    coordinates: Float32Array,
    motion: Float32Array,
    size: number,
): SymbolBuilder {
    const builder = new SymbolBuilder();
    const length = CONE * size;
    const [places, motions] = [ofNodes(coordinates, nodes), ofNodes(motion, nodes)];
    for (const i of thinned(places, new Float32Array(places.length), MOST_SYMBOLS, 0)) {
        const anchor = anchorOf(places, motions, i);
        for (let axis = 0; axis < 3; ++axis) {
            const direction: Vec3 = [axis === 0 ? 1 : 0, axis === 1 ? 1 : 0, axis === 2 ? 1 : 0];
            if (bits[i] & (1 << axis)) builder.cone(anchor, direction, length, 0.35 * length);
            if (bits[i] & (8 << axis)) builder.cone(anchor, direction, 0.5 * length, 0.35 * length, length);
        }
    }
    return builder;
}
