// Arrows for loads and inertia loads, cones for supports.
//   force: arrow with one head, moment: with two; lengths in proportion within each kind, small ones not below a least
//   length. Support: a cone along each held displacement, a second one behind it along each held rotation.
import { DOFS, type ModelFacts, type Result } from '../model/Result';
import type { ViewState } from '../state/ViewState';
import { LineActor } from './LineActor';
import type { MotionActor } from './MotionActor';
import { SurfaceActor } from './SurfaceActor';
import { SymbolBuilder } from './Symbols';
import { norm, type Vec3 } from './Vectors';

/** Parts of the diagonal of the model. */
const LONGEST = 0.08;
const SHORTEST = 0.012;
const HEAD = 0.016;
const CONE = 0.014;
/** More arrows of a kind than this would hide the structure: of more, every second, third, ... node shows its own. */
const MOST_ARROWS = 3000;
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
    const { model } = result;
    const builder = () => new SymbolBuilder(result.coordinates, motion);
    const [forces, moments, inertia, supports] = [builder(), builder(), builder(), builder()];
    if (model) {
      const inertiaNodes = Uint32Array.from({ length: model.inertiaForces.length / DOFS }, (_, node) => node);
      arrows(forces, model.forceNodes, model.forces, 0, size, 1);
      arrows(moments, model.forceNodes, model.forces, 3, size, 2);
      arrows(inertia, inertiaNodes, model.inertiaForces, 0, size, 1);
      cones(supports, model, size);
    }
    this.forces.set(forces);
    this.moments.set(moments);
    this.inertia.set(inertia);
    this.supports.set(supports);
  }
}

/** first: of the three components among DOFS. */
function arrows(
  builder: SymbolBuilder,
  nodes: Uint32Array,
  components: Float32Array,
  first: number,
  size: number,
  heads: number,
): void {
  const vector = (i: number): Vec3 => [
    components[DOFS * i + first],
    components[DOFS * i + first + 1],
    components[DOFS * i + first + 2],
  ];
  let largest = 0;
  for (let i = 0; i < nodes.length; ++i) largest = Math.max(largest, norm(vector(i)));
  const drawn: number[] = [];
  for (let i = 0; i < nodes.length; ++i) if (norm(vector(i)) > LEAST_PART * largest) drawn.push(i);
  const step = Math.ceil(drawn.length / MOST_ARROWS) || 1;
  for (let i = 0; i < drawn.length; i += step) {
    const force = vector(drawn[i]);
    const length = Math.max(SHORTEST, (LONGEST * norm(force)) / largest) * size;
    builder.arrow(nodes[drawn[i]], force, length, HEAD * size, heads);
  }
}

function cones(builder: SymbolBuilder, model: ModelFacts, size: number): void {
  const length = CONE * size;
  const step = Math.ceil(model.supportNodes.length / MOST_ARROWS) || 1;
  for (let i = 0; i < model.supportNodes.length; i += step) {
    for (let axis = 0; axis < 3; ++axis) {
      const direction: Vec3 = [axis === 0 ? 1 : 0, axis === 1 ? 1 : 0, axis === 2 ? 1 : 0];
      const bits = model.supportBits[i];
      const node = model.supportNodes[i];
      if (bits & (1 << axis)) builder.cone(node, direction, length, 0.35 * length);
      if (bits & (8 << axis)) builder.cone(node, direction, 0.5 * length, 0.35 * length, length);
    }
  }
}
