// The three-dimensional picture of a result: brings together what is shown, its actors and the camera.
import { positiveLimits } from '../model/ColourScale';
import { isMotionField, isPropertyField, isStressField } from '../model/Fields';
import type { Result } from '../model/Result';
import { SYMBOL_KEYS, type Camera, type StandardView, type ViewState } from '../state/ViewState';
import { surfaceLook, themeOf } from './Appearance';
import { Axes } from './Axes';
import { CameraControl } from './CameraControl';
import { Canvas } from './Canvas';
import { categories } from './Categories';
import { SQUARE } from './Coverage';
import { outline, shownEdges } from './Edges';
import { LineActor } from './LineActor';
import { bounds, diagonal, union, widened, type Bounds } from './Motion';
import type { CutLine } from './Cut';
import type { MotionActor } from './MotionActor';
import { Projection } from './Projection';
import type { ElementKind, Extremes, Probe, SceneView } from './SceneView';
import { ShownResult } from './ShownResult';
import { NO_VALUE, SurfaceActor } from './SurfaceActor';
import { SymbolActors, symbolReach } from './SymbolActors';
import { at, type Vec3 } from './Vectors';
import { centred, fitted, panned, standardView, type Content } from './Views';
import { VISIBILITY_KEYS } from './Visibility';

/** Seconds of a full swing. */
const PERIOD = 2;
/** Milliseconds of a drawing beyond which it is made simpler while the camera moves, and after which it rests. */
const SLOW = 150;
const REST = 250;
/** What is found is shown in a picture that is at least this part of the model high. */
const FOUND_PART = 0.08;

/** Parts of the state, besides those of values and visibility, that change colours or their limits. */
const LOOK_KEYS = [
    'limits',
    'bands',
    'bandCount',
    'colourMap',
    'logarithmic',
    'unitFactor',
    'dark',
    'clip',
    'deformed',
    'scale',
] as const satisfies readonly (keyof ViewState)[];

export class Scene implements SceneView {
    rightInset = 0;
    private readonly canvas: Canvas;
    private readonly control: CameraControl;
    private readonly axes: Axes;
    private readonly shells = new SurfaceActor();
    /** Walls end next to the middle of plates, and bend within an element as plates do not: they shall not come through. */
    private readonly walls = new SurfaceActor(0.0004);
    private readonly edges = new LineActor(1);
    private readonly outline = new LineActor(1);
    private readonly mark = new LineActor(11, { onTop: true, discs: true });
    private readonly markRings = new LineActor(3, { onTop: true });
    private readonly symbols = new SymbolActors();
    /** All that moves with the structure; the outline does not. */
    private readonly moving: MotionActor[];
    private readonly cameraListeners: ((camera: Camera) => void)[] = [];
    private readonly drawListeners: (() => void)[] = [];
    private readonly ending = new AbortController();
    private camera: Camera = { position: [0, -1, 0], focalPoint: [0, 0, 0], viewUp: [0, 0, 1], parallelScale: 1 };
    private shown?: ShownResult;
    /** Whatever is drawn is within. */
    private reach: Bounds = [0, 1, 0, 1, 0, 1];
    /** Whether the camera stands where it was put to show the whole; a picture of another size is fitted anew then. */
    private fits = false;
    private animation = 0;
    private telling = 0;
    private resting = 0;

    constructor(
        container: HTMLElement,
        private state: ViewState,
    ) {
        this.canvas = new Canvas(container);
        this.moving = [this.shells, this.walls, this.edges, ...this.symbols.actors, this.markRings, this.mark];
        for (const actor of [...this.moving, this.outline]) this.canvas.add(actor);
        this.axes = new Axes(container);
        if (!container.hasAttribute('tabindex')) container.tabIndex = 0;
        this.control = new CameraControl(container, (change) => this.dragCamera(change(this.camera)));
        this.canvas.beforeDrawing = () => this.placeCamera();
        this.canvas.afterResize = () => this.fits && this.fit();
        this.canvas.afterDrawing = () => {
            this.axes.draw(this.projection());
            for (const listener of this.drawListeners) listener();
        };
        document.addEventListener('visibilitychange', () => this.animate(), { signal: this.ending.signal });
        this.applyTheme();
    }

    dispose(): void {
        this.ending.abort();
        cancelAnimationFrame(this.animation);
        clearTimeout(this.telling);
        clearTimeout(this.resting);
        this.control.dispose();
        this.axes.dispose();
        this.canvas.dispose();
    }

    show(result: Result): void {
        const shown = new ShownResult(result, this.state);
        this.shown = shown;
        this.unmark();
        this.symbols.show(result, shown.motion, shown.size);
        this.updateElementLoads();
        this.symbols.apply(this.state);
        shown.setScale(this.scale());
        this.updateSurface();
        this.updateEdges();
        this.updateOutline();
        this.updateClip();
        this.updateScale();
        this.updateLook();
        if (this.state.camera) {
            this.camera = this.state.camera;
            this.fits = false;
        } else this.setStandardView('iso');
        this.canvas.draw();
    }

    apply(state: ViewState, changed: ReadonlySet<keyof ViewState>): void {
        this.state = state;
        const any = (...keys: (keyof ViewState)[]) => keys.some((key) => changed.has(key));
        if (changed.has('dark')) this.applyTheme();
        if (any(...SYMBOL_KEYS, 'dark')) this.symbols.apply(state);
        if (this.shown) {
            const visibility = any(...VISIBILITY_KEYS);
            const values = any('field', 'face', 'average');
            if (visibility) this.shown.updateVisible(state);
            if (visibility) this.updateElementLoads();
            if (values) this.shown.updateValues(state);
            if (visibility || values) this.updateSurface();
            if (visibility || any('edges', 'dark')) this.updateEdges();
            if (any('undeformedOutline', 'deformed')) this.updateOutline();
            if (changed.has('clip')) this.updateClip();
            if (any('deformed', 'scale', 'animated')) this.updateScale();
            if (visibility || values || any(...LOOK_KEYS)) this.updateLook();
            // Not told to those who listen: it is they who have set it.
            if (changed.has('camera') && state.camera && state.camera !== this.camera) {
                this.camera = state.camera;
                this.fits = false;
            }
        }
        this.canvas.draw();
    }

    fit(): void {
        if (!this.shown) return;
        this.fits = true;
        this.moveCamera(this.beside(fitted(this.camera, this.content(), this.aspect(), this.state.parallel)));
    }

    setStandardView(view: StandardView): void {
        if (!this.shown) return;
        this.fits = true;
        this.moveCamera(this.beside(standardView(view, this.content(), this.aspect(), this.state.parallel)));
    }

    goTo(kind: 'node' | ElementKind | 'beam', number: number): boolean {
        const found = this.shown?.find(kind, number);
        if (!this.shown || !found) return false;
        this.markUp(found);
        this.fits = false;
        const box = this.shown.boxOf(found.nodes);
        const centre: Vec3 = [(box[0] + box[1]) / 2, (box[2] + box[3]) / 2, (box[4] + box[5]) / 2];
        const half = Math.max(FOUND_PART * this.shown.size, 2 * diagonal(box)) / 2;
        this.moveCamera(centred(this.camera, centre, half));
        return true;
    }

    unmark(): void {
        this.mark.setVisible(false);
        this.markRings.setVisible(false);
        this.canvas.draw();
    }

    probe(x: number, y: number): Probe | undefined {
        return this.shown?.probe(this.projection().ray(x, y), this.state.parallel);
    }

    extremes(): Extremes | undefined {
        return this.hasRange() ? this.shown?.extremes() : undefined;
    }

    range(): [number, number] | undefined {
        if (!this.hasRange()) return undefined;
        const { limits, logarithmic } = this.state;
        // Zero has no place on a logarithmic scale.
        const own = limits && logarithmic ? positiveLimits(limits) : limits;
        return own ?? this.shown?.range(this.state);
    }

    valuesOf(kind: 'node' | ElementKind | 'beam', number: number): Probe[] {
        return this.shown?.valuesOf(kind, number) ?? [];
    }

    valueOf(probe: Probe): number {
        return this.shown?.valueOf(probe) ?? NaN;
    }

    showsWalls(): boolean {
        if (!this.shown) return false;
        const { visible, surface } = this.shown;
        return visible.subarray(surface.result.shellQuads, surface.quadCount).includes(1);
    }

    isHidden(node: number): boolean {
        if (!this.shown || (this.state.animated && this.state.deformed)) return false;
        const projection = this.projection();
        const pixel = projection.toPixel(at(this.shown.places(), node));
        return pixel !== undefined && this.shown.hides(node, projection.ray(...pixel), this.state.parallel);
    }

    covered(): { middles: Float32Array; side: number } {
        return { middles: this.shown?.covered(this.projection()) ?? new Float32Array(0), side: SQUARE };
    }

    size(): number {
        return this.shown?.size ?? 0;
    }

    scale(): number {
        return this.state.deformed ? (this.state.scale ?? this.shown?.defaultScale ?? 1) : 0;
    }

    cut(from: [number, number], to: [number, number]): CutLine[] {
        if (!this.shown || !this.hasRange()) return [];
        const projection = this.projection();
        return this.shown.cut([projection.ray(...from), projection.ray(...to)]);
    }

    project(point: Vec3): [number, number] | undefined {
        const projection = this.projection();
        const pixel = projection.toPixel(point);
        const within =
            pixel && pixel[0] >= 0 && pixel[1] >= 0 && pixel[0] <= projection.width && pixel[1] <= projection.height;
        return within ? pixel : undefined;
    }

    projectNode(node: number): [number, number] | undefined {
        return this.shown && this.project(at(this.shown.places(), node));
    }

    onCamera(listener: (camera: Camera) => void): void {
        this.cameraListeners.push(listener);
    }

    onDraw(listener: () => void): void {
        this.drawListeners.push(listener);
    }

    async picture(width: number, height: number, factor = 1): Promise<Blob> {
        await this.canvas.whenDrawable();
        this.canvas.requireSize(width, height);
        this.rest();
        for (const lines of this.lines()) lines.setFactor(factor);
        const copy = this.canvas.copy(width, height, () => this.lines().forEach((lines) => lines.setFactor(1)));
        const context = copy.getContext('2d')!;
        this.axes.drawInto(context, this.projection(), 4 * factor, height - (4 + Axes.size) * factor, factor);
        return new Promise((resolve, reject) =>
            copy.toBlob(
                (blob) => (blob ? resolve(blob) : reject(new Error('the browser cannot write a PNG'))),
                'image/png',
            ),
        );
    }

    private lines(): LineActor[] {
        return [...this.moving, this.outline].filter((actor) => actor instanceof LineActor);
    }

    private hasRange(): boolean {
        return isStressField(this.state.field) || isMotionField(this.state.field);
    }

    private content(): Content {
        const { size } = this.shown!;
        return { points: this.shown!.points(), around: symbolReach(this.state) * size };
    }

    private aspect(): number {
        const [width, height] = this.canvas.size;
        return Math.max(0.5 * width, width - this.rightInset) / height;
    }

    private beside(camera: Camera): Camera {
        const [width, height] = this.canvas.size;
        return panned(camera, -Math.min(0.5 * width, this.rightInset) / height, 0);
    }

    private projection(): Projection {
        return new Projection(this.camera, this.state.parallel, ...this.canvas.size);
    }

    private moveCamera(camera: Camera): void {
        this.camera = camera;
        this.canvas.draw();
        clearTimeout(this.telling);
        // Only when it rests: the state of the view need not follow every step of a drag.
        this.telling = window.setTimeout(() => this.cameraListeners.forEach((listener) => listener(this.camera)), REST);
    }

    /** While it moves, a picture that takes long is drawn without lines, and without walls where there are shells. */
    private dragCamera(camera: Camera): void {
        const { visible, surface } = this.shown ?? {};
        if (visible && surface && this.canvas.drawingTime > SLOW) {
            this.edges.setVisible(false);
            const { shellQuads } = surface.result;
            this.walls.setVisible(
                !visible.subarray(0, shellQuads).includes(1) && !visible.subarray(surface.quadCount).includes(1),
            );
        }
        clearTimeout(this.resting);
        this.resting = window.setTimeout(() => this.rest(), REST);
        this.fits = false;
        this.moveCamera(camera);
    }

    private rest(): void {
        clearTimeout(this.resting);
        this.edges.setVisible(this.state.edges !== 'none');
        this.walls.setVisible(true);
        this.canvas.draw();
    }

    private placeCamera(): void {
        if (this.shown) this.canvas.setCamera(this.camera, this.state.parallel, this.reach);
    }

    private updateSurface(): void {
        const { surface, motion, visible, result } = this.shown!;
        const { positive, negative } = this.shown!.values;
        const colouring = this.colouring();
        const corners = surface.cornerNode.length;
        const points = new Float32Array(3 * corners);
        const motions = new Float32Array(3 * corners);
        const pairs = new Float32Array(2 * corners);
        for (let corner = 0; corner < corners; ++corner) {
            const node = 3 * surface.cornerNode[corner];
            for (let axis = 0; axis < 3; ++axis) {
                points[3 * corner + axis] = result.coordinates[node + axis];
                motions[3 * corner + axis] = motion[node + axis];
            }
            pairs[2 * corner] = colouring(positive[corner]);
            pairs[2 * corner + 1] = colouring(negative[corner]);
        }
        const geometry = { points, motion: motions, values: pairs };
        this.shells.setGeometry({ ...geometry, polys: surface.cells(visible, (kind) => kind !== 'wall') });
        this.walls.setGeometry({ ...geometry, polys: surface.cells(visible, (kind) => kind === 'wall') });
    }

    /** What the shader shall get for a value. */
    private colouring(): (value: number) => number {
        if (!isPropertyField(this.state.field)) return (value) => (Number.isFinite(value) ? value : NO_VALUE);
        const numbers = new Map(categories(this.shown!.result, this.state.field).map(({ value }, i) => [value, i]));
        return (value) => numbers.get(value) ?? NO_VALUE;
    }

    private updateElementLoads(): void {
        const { result, motion, size, visible } = this.shown!;
        this.symbols.showOnElements(result, motion, size, visible);
    }

    private updateEdges(): void {
        const { result, visible } = this.shown!;
        const { edges } = this.state;
        const theme = themeOf(this.state);
        this.edges.setColour(edges === 'mesh' ? theme.mesh : theme.feature);
        this.edges.setWidth(edges === 'free' ? 2 : 1);
        this.edges.setVisible(edges !== 'none');
        if (edges !== 'none') this.setLines(this.edges, shownEdges(result, this.shown!.edges(), edges, visible));
    }

    private updateOutline(): void {
        const { result } = this.shown!;
        const drawn = this.state.undeformedOutline && this.state.deformed;
        this.outline.setVisible(drawn);
        if (!drawn) return;
        this.setLines(this.outline, outline(result, this.shown!.edges()));
    }

    private setLines(actor: LineActor, ends: Uint32Array): void {
        const lines = new Uint32Array((3 * ends.length) / 2);
        for (let from = 0, out = 0; from < ends.length; from += 2) {
            lines[out++] = 2;
            lines[out++] = ends[from];
            lines[out++] = ends[from + 1];
        }
        actor.setGeometry({ points: this.shown!.result.coordinates, motion: this.shown!.motion, lines });
    }

    private markUp(found: { nodes: number[]; rings: number[][] }): void {
        const { result, motion } = this.shown!;
        const lines = found.rings.flatMap((ring) => [ring.length + 1, ...ring, ring[0]]);
        const geometry = { points: result.coordinates, motion };
        this.markRings.setGeometry({ ...geometry, lines: Uint32Array.from(lines) });
        this.markRings.setVisible(lines.length > 0);
        const discs = found.rings.length === 0 ? found.nodes.flatMap((node) => [1, node]) : [];
        this.mark.setGeometry({ ...geometry, verts: Uint32Array.from(discs) });
        this.mark.setVisible(discs.length > 0);
    }

    private updateClip(): void {
        this.shown!.updateClip(this.state);
        for (const actor of this.moving) actor.setClip(this.shown!.clip);
    }

    private updateScale(): void {
        const { result, size } = this.shown!;
        const scale = this.scale();
        const swing = union(bounds(result, scale), bounds(result, this.state.animated ? -scale : 0));
        // Arrows stand out of the structure.
        this.reach = widened(swing, 0.1 * size);
        this.shown!.setScale(scale);
        this.moveActors(scale);
        this.animate();
    }

    private moveActors(scale: number): void {
        for (const actor of this.moving) actor.scale = scale;
    }

    /** Starts or ends the animation, as the state and the page have it. */
    private animate(): void {
        cancelAnimationFrame(this.animation);
        if (!this.shown || !this.state.animated || !this.state.deformed || document.hidden) return;
        const begin = performance.now();
        const step = (now: number) => {
            const scale = this.scale() * Math.sin((2 * Math.PI * (now - begin)) / 1000 / PERIOD);
            this.shown!.swing(scale);
            this.moveActors(scale);
            this.canvas.drawNow();
            this.animation = requestAnimationFrame(step);
        };
        this.animation = requestAnimationFrame(step);
    }

    private updateLook(): void {
        this.shells.look = this.walls.look = surfaceLook(this.state, this.range());
    }

    private applyTheme(): void {
        const theme = themeOf(this.state);
        this.axes.dark = this.state.dark;
        this.canvas.setBackground(...theme.background);
        this.outline.setColour(theme.outline);
        this.mark.setColour(theme.mark);
        this.markRings.setColour(theme.mark);
    }
}
