// A result as it is shown at present, without the picture of it: what is visible, which values and places its corners
// have, and what can be asked about them. Whatever is dear is made when it is first asked for.
import { logarithmicLimits, niceLimits } from '../model/ColourScale';
import { isMotionField, type FacePair } from '../model/Fields';
import type { Result } from '../model/Result';
import { meshEdges, type MeshEdges } from '../model/Topology';
import { unitOf } from '../state/Units';
import type { ViewState } from '../state/ViewState';
import { shownValues } from './ShownValues';
import { coveredSquares } from './Coverage';
import { cutSurface, type CutLine } from './Cut';
import { shownPoints } from './Extent';
import { extremes } from './Extremes';
import { bounds, defaultScale, diagonal, place, translations, type Bounds } from './Motion';
import type { Projection, Ray } from './Projection';
import { RayTree, type Hit } from './RayTree';
import type { ElementKind, Extremes, Probe } from './SceneView';
import { Surface } from './Surface';
import { add, at, cross, dot, minus, norm, scaled, type Vec3 } from './Vectors';
import { clipPlane, isKept, shownElements, type ClipPlane } from './Visibility';

/** What is nearer to a point than this part of the size of the model does not hide it. */
const NEAR_PART = 1e-4;

export class ShownResult {
    readonly surface: Surface;
    /** Displacements, 3 per node. */
    readonly motion: Float32Array;
    readonly defaultScale: number;
    /** Diagonal of the undeformed model; never 0. */
    readonly size: number;
    /** 1 for each element that is shown. */
    visible: Uint8Array;
    /** At corners; nothing but 'not a number' where the field has none. */
    values: FacePair;
    clip?: ClipPlane;

    /** Whether elements that share a node have the same value there. */
    private areOfNodes: boolean;
    /** Factor on displacements at present, and where a swing of the structure ends. */
    private scale = 0;
    private restingScale = 0;
    private placed?: Float32Array;
    private tree?: RayTree;
    private treePlaces?: Float32Array;
    private meshed?: MeshEdges;
    private found?: Extremes;
    private decades?: [number, number];

    constructor(
        readonly result: Result,
        state: ViewState,
    ) {
        this.surface = new Surface(result);
        this.motion = translations(result);
        this.defaultScale = defaultScale(result);
        this.size = diagonal(bounds(result, 0)) || 1;
        this.visible = shownElements(this.surface, state);
        this.values = shownValues(this.surface, state);
        this.areOfNodes = isMotionField(state.field);
        this.clip = clipPlane(state.clip, result.coordinates);
    }

    updateVisible(state: ViewState): void {
        this.visible = shownElements(this.surface, state);
        this.forgetValues();
    }

    updateValues(state: ViewState): void {
        this.values = shownValues(this.surface, state);
        this.areOfNodes = isMotionField(state.field);
        this.forgetValues();
    }

    updateClip(state: ViewState): void {
        this.clip = clipPlane(state.clip, this.result.coordinates);
        this.forgetValues();
    }

    setScale(scale: number): void {
        this.swing(scale);
        if (scale === this.restingScale) return;
        this.restingScale = scale;
        if (this.clip) this.forgetValues();
    }

    /** For a moment: extremes and limits stay those of the structure at rest, as its colours do. */
    swing(scale: number): void {
        if (scale === this.scale) return;
        this.scale = scale;
        this.placed = undefined;
    }

    /** 3 per node. */
    places(): Float32Array {
        if (!this.placed) {
            this.placed = new Float32Array(this.motion.length);
            place(this.result.coordinates, this.motion, this.scale, this.placed);
        }
        return this.placed;
    }

    edges(): MeshEdges {
        this.meshed ??= meshEdges(this.result);
        return this.meshed;
    }

    /** That tell how far what is shown reaches, 3 coordinates each; of the whole structure if that is nothing. */
    points(): Float32Array {
        const points = shownPoints(this.surface, this.visible, this.places(), this.clip);
        return points.length > 0 ? points : this.places();
    }

    /** Middles of the squares of the picture that it covers; x and y each. */
    covered(projection: Projection): Float32Array {
        return coveredSquares(this.surface, this.visible, this.places(), this.clip, projection);
    }

    boxOf(nodes: Iterable<number>): Bounds {
        const box: Bounds = [Infinity, -Infinity, Infinity, -Infinity, Infinity, -Infinity];
        for (const node of nodes) extend(box, this.places(), node);
        return box;
    }

    extremes(): Extremes | undefined {
        this.found ??= extremes(
            this.surface,
            this.values,
            this.visible,
            this.restingPlaces(),
            this.clip,
            this.areOfNodes,
        );
        return this.found;
    }

    /** Limits of the colours: round numbers around the values shown; undefined where there are none. */
    range(state: ViewState): [number, number] | undefined {
        const found = this.extremes();
        if (!found) return undefined;
        if (!state.logarithmic) {
            // Round in the unit in which they are told.
            const { factor } = unitOf(state);
            const [low, high] = niceLimits(found.min.value / factor, found.max.value / factor, state.bandCount);
            return [low * factor, high * factor];
        }
        this.decades ??= this.findDecades();
        return this.decades;
    }

    cut(rays: [Ray, Ray]): CutLine[] {
        return cutSurface(this.surface, this.values, this.visible, this.places(), rays, this.clip);
    }

    /** parallel: the ray has no beginning. */
    probe(ray: Ray, parallel: boolean): Probe | undefined {
        const { surface, visible, clip } = this;
        const pointAt = (hit: Hit) => add(ray.origin, scaled(ray.direction, hit.distance));
        const hit = this.rayTree().cast(
            ray,
            (each) =>
                visible[surface.elementOfTriangle(each.triangle)] === 1 &&
                (parallel || each.distance > 0) &&
                isKept(clip, pointAt(each)),
        );
        return hit && this.probeAt(hit, pointAt(hit), ray.direction);
    }

    /** Whether something shown stands before a node; ray: from the eye through it. Elements at the node hide it not. */
    hides(node: number, ray: Ray, parallel: boolean): boolean {
        const { surface, visible, clip } = this;
        const distance = dot(minus(at(this.places(), node), ray.origin), ray.direction);
        // Where a plate and the walls of a beam, or those of two beams, meet they have nodes of their own at one place.
        const nearest = distance - NEAR_PART * this.size;
        const hit = this.rayTree().cast(
            ray,
            (each) =>
                each.distance < nearest &&
                (parallel || each.distance > 0) &&
                visible[surface.elementOfTriangle(each.triangle)] === 1 &&
                [0, 1, 2].every((i) => surface.cornerNode[surface.triangles[3 * each.triangle + i]] !== node) &&
                isKept(clip, add(ray.origin, scaled(ray.direction, each.distance))),
        );
        return hit !== undefined;
    }

    /** Of the shown field at the corner that was probed; not a number where there is none. */
    valueOf({ corner, face }: Probe): number {
        return corner < 0 ? NaN : this.values[face][corner];
    }

    /** What a probe tells: of a node for each pair of face stresses, of an element for each corner, of a beam where its
     * value is largest. */
    valuesOf(kind: 'node' | ElementKind | 'beam', number: number): Probe[] {
        const { surface, result } = this;
        const found = this.find(kind, number);
        if (!found) return [];
        if (kind === 'node') {
            const corners: number[] = [];
            const vertices = new Set<number>();
            for (let corner = 0; corner < surface.cornerNode.length; ++corner) {
                if (surface.cornerNode[corner] !== number || vertices.has(surface.cornerVertex[corner])) continue;
                vertices.add(surface.cornerVertex[corner]);
                corners.push(corner);
            }
            return corners.length > 0
                ? corners.map((corner) => this.probeOfCorner(corner))
                : [this.probeOfNode(number)];
        }
        if (kind === 'beam') {
            const [begin, end] = [result.beams.wallBegin[number], result.beams.wallBegin[number + 1]];
            let largest = 4 * begin;
            for (let corner = 4 * begin; corner < 4 * end; ++corner) {
                if (this.largerValue(corner) > this.largerValue(largest)) largest = corner;
            }
            return begin < end ? [this.probeOfCorner(largest)] : [];
        }
        const element = number + { quad: 0, wall: result.shellQuads, tri: surface.quadCount }[kind];
        const first = surface.cornerBegin(element);
        return Array.from({ length: surface.cornerCount(element) }, (_, i) => this.probeOfCorner(first + i));
    }

    /** Its nodes, and closed rings of nodes to mark; undefined: there is none of this number. */
    find(kind: 'node' | ElementKind | 'beam', number: number): { nodes: number[]; rings: number[][] } | undefined {
        const { result, surface } = this;
        const elementRing = (element: number) => {
            const begin = surface.cornerBegin(element);
            return Array.from(surface.cornerNode.subarray(begin, begin + surface.cornerCount(element)));
        };
        if (!Number.isInteger(number) || number < 0) return undefined;
        if (kind === 'node') return number < this.motion.length / 3 ? { nodes: [number], rings: [] } : undefined;
        if (kind === 'beam') {
            if (number >= result.beams.count) return undefined;
            const { wallBegin } = result.beams;
            const rings: number[][] = [];
            for (let wall = wallBegin[number]; wall < wallBegin[number + 1]; ++wall) rings.push(elementRing(wall));
            return { nodes: rings.flat(), rings };
        }
        const begin = { quad: 0, wall: result.shellQuads, tri: surface.quadCount }[kind];
        const end = { quad: result.shellQuads, wall: surface.quadCount, tri: surface.elementCount }[kind];
        if (begin + number >= end) return undefined;
        const ring = elementRing(begin + number);
        return { nodes: ring, rings: [ring] };
    }

    private forgetValues(): void {
        this.found = undefined;
        this.decades = undefined;
    }

    private restingPlaces(): Float32Array {
        if (this.scale === this.restingScale) return this.places();
        const places = new Float32Array(this.motion.length);
        place(this.result.coordinates, this.motion, this.restingScale, places);
        return places;
    }

    private findDecades(): [number, number] | undefined {
        const { positive, negative } = this.values;
        const shown = this.shownCorners();
        const one = logarithmicLimits(positive, shown);
        const other = negative === positive ? one : logarithmicLimits(negative, shown);
        return one && other ? [Math.min(one[0], other[0]), Math.max(one[1], other[1])] : (one ?? other);
    }

    /** 1 for each corner that is neither hidden nor cut away. */
    private shownCorners(): Uint8Array {
        const { surface, visible, clip } = this;
        const places = this.restingPlaces();
        return Uint8Array.from(surface.cornerNode, (node, corner) =>
            visible[surface.elementOfCorner(corner)] && isKept(clip, at(places, node)) ? 1 : 0,
        );
    }

    private largerValue(corner: number): number {
        return Math.max(this.values.positive[corner], this.values.negative[corner]);
    }

    private probeOfCorner(corner: number): Probe {
        const { surface, values } = this;
        const face = values.negative[corner] > values.positive[corner] ? 'negative' : 'positive';
        const node = surface.cornerNode[corner];
        return {
            ...this.elementNames(surface.elementOfCorner(corner)),
            ...this.placesOf(node),
            corner,
            vertex: surface.cornerVertex[corner],
            value: values[face][corner],
            cornerValue: values[face][corner],
            face,
        };
    }

    private probeOfNode(node: number): Probe {
        const nothing = { corner: -1, vertex: -1, value: NaN, cornerValue: NaN, face: 'positive' } as const;
        return { kind: 'node', element: node, ...this.placesOf(node), ...nothing };
    }

    private placesOf(node: number): Pick<Probe, 'node' | 'hit' | 'position'> {
        return { node, hit: at(this.places(), node), position: at(this.result.coordinates, node) };
    }

    private elementNames(element: number): Pick<Probe, 'kind' | 'element' | 'beam'> {
        const { surface } = this;
        const kind = surface.kind(element);
        const names = { kind, element: surface.numberInKind(element) };
        return kind === 'wall' ? { ...names, beam: surface.wallBeam[element - this.result.shellQuads] } : names;
    }

    private probeAt(hit: Hit, point: Vec3, direction: Vec3): Probe {
        const { surface, values } = this;
        const corners = [0, 1, 2].map((i) => surface.triangles[3 * hit.triangle + i]);
        const element = surface.elementOfTriangle(hit.triangle);
        const [a, b, c] = corners.map((corner) => at(this.places(), surface.cornerNode[corner]));
        const face = dot(cross(minus(b, a), minus(c, a)), direction) < 0 ? 'positive' : 'negative';
        const [p, q, r] = corners.map((corner) => values[face][corner]);
        const nearest = this.nearestCorner(element, point);
        return {
            ...this.elementNames(element),
            node: surface.cornerNode[nearest],
            corner: nearest,
            vertex: surface.cornerVertex[nearest],
            hit: point,
            position: at(this.result.coordinates, surface.cornerNode[nearest]),
            value: p + hit.u * (q - p) + hit.v * (r - p),
            cornerValue: values[face][nearest],
            face,
        };
    }

    private nearestCorner(element: number, point: Vec3): number {
        const begin = this.surface.cornerBegin(element);
        let nearest = begin;
        let least = Infinity;
        for (let corner = begin; corner < begin + this.surface.cornerCount(element); ++corner) {
            const distance = norm(minus(at(this.places(), this.surface.cornerNode[corner]), point));
            if (distance < least) [least, nearest] = [distance, corner];
        }
        return nearest;
    }

    private rayTree(): RayTree {
        const places = this.places();
        if (!this.tree) {
            const nodes = this.surface.triangles.map((corner) => this.surface.cornerNode[corner]);
            this.tree = new RayTree(nodes, places);
        } else if (this.treePlaces !== places) {
            this.tree.refit(places);
        }
        this.treePlaces = places;
        return this.tree;
    }
}

function extend(box: Bounds, places: Float32Array, node: number): void {
    for (let axis = 0; axis < 3; ++axis) {
        const x = places[3 * node + axis];
        if (x < box[2 * axis]) box[2 * axis] = x;
        if (x > box[2 * axis + 1]) box[2 * axis + 1] = x;
    }
}
