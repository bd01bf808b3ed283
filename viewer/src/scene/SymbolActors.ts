// Arrows for loads and inertia loads, cones for supports.
//   force: arrow with one head, moment: with two; lengths in proportion within each kind, small ones not below a least
//   length. Support: a cone along each held displacement, a second one behind it along each held rotation.
import { appliedLoads, inertiaLoads, supports, type Arrows, type Supports } from '../model/Loads';
import type { Result } from '../model/Result';
import type { ViewState } from '../state/ViewState';
import { themeOf, type Rgb } from './Appearance';
import { LineActor } from './LineActor';
import type { MotionActor } from './MotionActor';
import { SurfaceActor } from './SurfaceActor';
import { SymbolBuilder } from './Symbols';
import { at, norm, type Vec3 } from './Vectors';

/** Parts of the diagonal of the model. */
const LONGEST = 0.08;
const SHORTEST = 0.012;
const HEAD = 0.016;
const CONE = 0.011;
/** More symbols of a kind than this would hide the structure: of more, those of every second, third, ... are drawn. */
const MOST_SYMBOLS = 3000;
/** Components below this part of the largest are round-off and not drawn. */
const LEAST_PART = 1e-9;

/** How far arrows and cones that are shown may stand out of the structure, as part of the diagonal of the model. */
export function symbolReach({ showLoads, showInertia, showSupports }: ViewState): number {
    if (showLoads || showInertia) return LONGEST;
    return showSupports ? 1.5 * CONE : 0;
}

class Symbols {
    readonly faces = new SurfaceActor();
    readonly lines = new LineActor(2);

    set(builder: SymbolBuilder): void {
        this.faces.setGeometry(builder.faceGeometry());
        this.lines.setGeometry(builder.lineGeometry());
    }

    show(visible: boolean, colour: Rgb): void {
        this.faces.look = { ...this.faces.look, mode: 'plain', colours: Float32Array.from(colour) };
        this.lines.setColour([...colour, 1]);
        this.faces.setVisible(visible);
        this.lines.setVisible(visible);
    }
}

export class SymbolActors {
    private readonly forces = new Symbols();
    private readonly moments = new Symbols();
    private readonly inertia = new Symbols();
    private readonly supports = new Symbols();

    get actors(): MotionActor[] {
        return [this.forces, this.moments, this.inertia, this.supports].flatMap((each) => [each.lines, each.faces]);
    }

    apply(state: ViewState): void {
        const theme = themeOf(state);
        this.forces.show(state.showLoads, theme.force);
        this.moments.show(state.showLoads, theme.moment);
        this.inertia.show(state.showInertia, theme.inertia);
        this.supports.show(state.showSupports, theme.support);
    }

    /** motion: 3 per node; size: diagonal of the model. */
    show(result: Result, motion: Float32Array, size: number): void {
        const builder = () => new SymbolBuilder(result.coordinates, motion);
        const applied = appliedLoads(result);
        this.forces.set(arrows(builder(), applied.forces, size, 1));
        this.moments.set(arrows(builder(), applied.moments, size, 2));
        this.inertia.set(arrows(builder(), inertiaLoads(result).forces, size, 1));
        this.supports.set(cones(builder(), supports(result), size));
    }
}

function arrows(
    builder: SymbolBuilder,
    { nodes, vectors, longest }: Arrows,
    size: number,
    heads: number,
): SymbolBuilder {
    const step = Math.ceil(nodes.length / MOST_SYMBOLS) || 1;
    for (let i = 0; i < nodes.length; i += step) {
        const vector = at(vectors, i);
        if (norm(vector) < LEAST_PART * longest) continue;
        const length = Math.max(SHORTEST, (LONGEST * norm(vector)) / longest) * size;
        builder.arrow(nodes[i], vector, length, HEAD * size, heads);
    }
    return builder;
}

function cones(builder: SymbolBuilder, { nodes, bits }: Supports, size: number): SymbolBuilder {
    const length = CONE * size;
    const step = Math.ceil(nodes.length / MOST_SYMBOLS) || 1;
    for (let i = 0; i < nodes.length; i += step) {
        for (let axis = 0; axis < 3; ++axis) {
            const direction: Vec3 = [axis === 0 ? 1 : 0, axis === 1 ? 1 : 0, axis === 2 ? 1 : 0];
            if (bits[i] & (1 << axis)) builder.cone(nodes[i], direction, length, 0.35 * length);
            if (bits[i] & (8 << axis)) builder.cone(nodes[i], direction, 0.5 * length, 0.35 * length, length);
        }
    }
    return builder;
}
