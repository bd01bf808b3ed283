// What the rest of the page may ask of the three-dimensional picture.
import type { Result } from '../model/Result';
import type { CutLine } from './Cut';
import type { StandardView, ViewState } from '../state/ViewState';

export type ElementKind = 'quad' | 'tri' | 'wall';

/** What stands under a point of the picture. */
export interface Probe {
    /** 'node': it belongs to no shell or wall, and has no stresses. */
    kind: ElementKind | 'node';
    /** Number within its kind, as in the model file; of a wall: within its beam. */
    element: number;
    /** Of a wall: the number of its beam. */
    beam?: number;
    /** The nearest corner. Nodes from Result.structureNodes on are those of section walls. */
    node: number;
    vertex: number;
    /** Of the surface; -1: none. */
    corner: number;
    /** Where the deformed surface was hit, and where that corner stands undeformed. */
    hit: [number, number, number];
    position: [number, number, number];
    /** Of the field that is shown, at the hit point and at the corner. */
    value: number;
    cornerValue: number;
    face: 'positive' | 'negative';
}

export interface Extreme {
    value: number;
    vertex: number;
    node: number;
    /** Corner of the undeformed structure. */
    position: [number, number, number];
}

export interface Extremes {
    min: Extreme;
    max: Extreme;
    /** Corners at which the value is infinite or no number at all. */
    notFinite: number;
}

export interface SceneView {
    show(result: Result): void;
    /** Takes over what has changed. */
    apply(state: ViewState, changed: ReadonlySet<keyof ViewState>): void;
    fit(): void;
    setStandardView(view: StandardView): void;
    /** Turns the camera to a node or element and marks it. */
    goTo(kind: 'node' | ElementKind | 'beam', number: number): boolean;
    /** x, y: CSS pixels within the picture. */
    probe(x: number, y: number): Probe | undefined;
    /** Of what is visible; undefined for fields without values. */
    extremes(): Extremes | undefined;
    /** Values at a node, at the corners of an element, or where they are largest on a beam. */
    valuesOf(kind: 'node' | ElementKind | 'beam', number: number): Probe[];
    /** Of the field that is shown now, at the corner that was probed; not a number where it has none. */
    valueOf(probe: Probe): number;
    /** Whether section walls of beams are among what is visible. */
    showsWalls(): boolean;
    /** Whether a node, as it is deformed, stands behind the structure; never while that swings. */
    isHidden(node: number): boolean;
    /** Where in the picture the structure is, coarsely: squares of that side, x and y of the middle of each. CSS pixels. */
    covered(): { middles: Float32Array; side: number };
    /** Diagonal of the undeformed model. */
    size(): number;
    /** The limits of the colours in use. */
    range(): [number, number] | undefined;
    /** Factor on displacements in use. */
    scale(): number;
    /**
     * PNG, in pixels of the picture; rejected with a RangeError where the graphics card cannot draw so many. factor: on
     * widths of lines and the directions of the axes, which are those of the page for 1.
     */
    picture(width: number, height: number, factor?: number): Promise<Blob>;
    /** Takes away the mark that goTo has set. */
    unmark(): void;
    /** CSS pixels of a place of the model, and of a node as it is deformed; undefined: outside of the picture. */
    project(point: [number, number, number]): [number, number] | undefined;
    projectNode(node: number): [number, number] | undefined;
    /** After each drawing: labels over the picture can take their places. */
    onDraw(listener: () => void): void;
    /** When the camera has come to rest. */
    onCamera(listener: (camera: NonNullable<ViewState['camera']>) => void): void;
    /** Values of the shown field along the cut of the surface with a plane through two picture points. */
    cut(from: [number, number], to: [number, number]): CutLine[];
    /** CSS pixels at the right of the picture that the structure is fitted beside: there stands the legend. */
    rightInset: number;
}
