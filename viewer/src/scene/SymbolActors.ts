// Arrows for loads and inertia loads, cones for supports.
//   force: arrow with one head, moment: with two; lengths in proportion within each kind, small ones not below a least
//   length. Support: a cone along each held displacement, a second one behind it along each held rotation.
import { appliedLoads, inertiaLoads, supports, type Arrows, type Supports } from '../model/Loads';
import type { Result } from '../model/Result';
import type { ViewState } from '../state/ViewState';
import { LineActor } from './LineActor';
import type { MotionActor } from './MotionActor';
import { SurfaceActor } from './SurfaceActor';
import { SymbolBuilder } from './Symbols';
import { at, norm, type Vec3 } from './Vectors';

/** Parts of the diagonal of the model. */
const LONGEST = 0.08;
const SHORTEST = 0.012;
const HEAD = 0.016;
const CONE = 0.014;
/** More symbols of a kind than this would hide the structure: of more, those of every second, third, ... are drawn. */
const MOST_SYMBOLS = 3000;
/** Components below this part of the largest are round-off and not drawn. */
const LEAST_PART = 1e-9;

type Rgb = [number, number, number];
const COLOURS: Record<'force' | 'moment' | 'inertia' | 'support', { light: Rgb; dark: Rgb }> = {
  force: { light: [0.75, 0.1, 0.1], dark: [1, 0.45, 0.4] },
  moment: { light: [0.55, 0.1, 0.55], dark: [0.9, 0.5, 0.9] },
  inertia: { light: [0.1, 0.35, 0.75], dark: [0.45, 0.7, 1] },
  support: { light: [0.15, 0.45, 0.2], dark: [0.5, 0.85, 0.5] },
};

class Symbols {
  readonly faces = new SurfaceActor();
  readonly lines = new LineActor(2);

  constructor(private readonly colour: { light: Rgb; dark: Rgb }) {}

  set(builder: SymbolBuilder): void {
    this.faces.setGeometry(builder.faceGeometry());
    this.lines.setGeometry(builder.lineGeometry());
  }

  show(visible: boolean, dark: boolean): void {
    const colour = dark ? this.colour.dark : this.colour.light;
    this.faces.look = { ...this.faces.look, mode: 'plain', colours: Float32Array.from(colour) };
    this.lines.setColour([...colour, 1]);
    this.faces.setVisible(visible);
    this.lines.setVisible(visible);
  }
}

export class SymbolActors {
  private readonly forces = new Symbols(COLOURS.force);
  private readonly moments = new Symbols(COLOURS.moment);
  private readonly inertia = new Symbols(COLOURS.inertia);
  private readonly supports = new Symbols(COLOURS.support);

  get actors(): MotionActor[] {
    return [this.forces, this.moments, this.inertia, this.supports].flatMap((each) => [each.lines, each.faces]);
  }

  apply(state: ViewState): void {
    this.forces.show(state.showLoads, state.dark);
    this.moments.show(state.showLoads, state.dark);
    this.inertia.show(state.showInertia, state.dark);
    this.supports.show(state.showSupports, state.dark);
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

function arrows(builder: SymbolBuilder, { nodes, vectors, longest }: Arrows, size: number, heads: number): SymbolBuilder {
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
