// What stands over the picture at present, from the state of the view and what the scene shows.
import { cssColour, cssOf, OVER_COLOUR, positionOf, positionSlack, UNDER_COLOURS } from '../model/ColourScale';
import { isPropertyField, isStressField } from '../model/Fields';
import { appliedLoads, inertiaLoads, lineLoadRange, pressureRange } from '../model/Loads';
import type { Result } from '../model/Result';
import { marksBeyond, themeOf } from '../scene/Appearance';
import { categories, type Category } from '../scene/Categories';
import type { Extreme, Extremes, Probe, SceneView } from '../scene/SceneView';
import { unitOf, withUnit } from '../state/Units';
import { SYMBOL_KEYS, type Field, type PropertyField, type ViewState } from '../state/ViewState';
import type { CategoryLegend, LegendContent, ScaleLegend, SymbolShape } from '../ui/Legend';
import { nodeName } from '../ui/Names';
import { numberText, placeText } from '../ui/Numbers';
import type { Flag, OverlayContent } from '../ui/Overlay';
import { hasScale } from '../ui/panel/ColourSection';
import type { Texts } from '../ui/Texts';

type Point = [number, number];

const ROTATIONS: readonly Field[] = ['R', 'RX', 'RY', 'RZ'];

export interface OverlaySource {
    scene: SceneView;
    result: Result;
    state: Readonly<ViewState>;
    texts: Texts;
    probes: readonly Probe[];
    /** Lines of a section cut: 3 coordinates per point, as deformed when it was made. */
    cutLines: readonly Float32Array[];
    /** The point of them that the graph is read at. */
    cutPoint?: [number, number, number];
}

/** "larger face, nodal average" where the field has faces; walls: whether walls of beams are seen. */
export function fieldSubtitle(state: Readonly<ViewState>, texts: Texts, walls: boolean): string {
    if (!isStressField(state.field)) return '';
    const { nodal, element, elementButWalls } = texts.averageOf;
    const average = state.average === 'nodal' ? nodal : walls ? elementButWalls : element;
    return `${texts.faceOf[state.face]}, ${average}`;
}

/** "Equivalent stress SE (MPa)". */
export function fieldTitle(state: Readonly<ViewState>, texts: Texts): string {
    return withUnit(texts.fields[state.field], unitOf(state));
}

/** Of the axis of a graph, short and always with a unit: "DX (unit of the model)". */
export function axisTitle(state: Readonly<ViewState>, texts: Texts): string {
    const unit = unitOf(state);
    const known = ROTATIONS.includes(state.field) ? 'rad' : unit.name;
    return withUnit(state.field, { ...unit, name: known || texts.cut.unit });
}

/** Bands have the colour of their middle, as on the structure. */
export function scaleLegend(state: Readonly<ViewState>, range: [number, number], found?: Extremes): ScaleLegend {
    const { factor } = unitOf(state);
    const { logarithmic, colourMap } = state;
    const legend: ScaleLegend = {
        kind: 'scale',
        range: [range[0] / factor, range[1] / factor],
        bands: state.bands ? state.bandCount : undefined,
        logarithmic,
        colourAt: (position) => cssColour(colourMap, position),
    };
    if (!found || !marksBeyond(state)) return legend;
    const slack = positionSlack(range, logarithmic);
    const isUnder = !(positionOf(found.min.value, range, logarithmic) >= -slack); // zero has no logarithm
    const isOver = positionOf(found.max.value, range, logarithmic) > 1 + slack;
    if (isUnder) legend.under = cssOf(UNDER_COLOURS[colourMap]);
    if (isOver) legend.over = cssOf(OVER_COLOUR);
    return legend;
}

/** How large the loads of each kind are, which is dear to find in a large result; 0, undefined: there are none. */
interface LoadSizes {
    forces: number;
    moments: number;
    pressures?: [number, number];
    lineLoads?: [number, number];
    inertiaForces: number;
    inertiaMoments: number;
}

const knownLoads = new WeakMap<Result, LoadSizes>();

function loadSizes(result: Result): LoadSizes {
    let known = knownLoads.get(result);
    if (!known) {
        const applied = appliedLoads(result);
        const inertia = inertiaLoads(result);
        known = {
            forces: applied.forces.longest,
            moments: applied.moments.longest,
            pressures: pressureRange(result),
            lineLoads: lineLoadRange(result),
            inertiaForces: inertia.forces.longest,
            inertiaMoments: inertia.moments.longest,
        };
        knownLoads.set(result, known);
    }
    return known;
}

/** Of the arrows and cones that are shown. */
export function symbolKey(state: Readonly<ViewState>, result: Result, texts: Texts): LegendContent['symbols'] {
    if (!result.model || !SYMBOL_KEYS.some((key) => state[key])) return [];
    const { forces, moments, pressures, lineLoads, inertiaForces, inertiaMoments } = loadSizes(result);
    const theme = themeOf(state);
    const t = texts.legend;
    const key: LegendContent['symbols'] = [];
    const add = (colour: readonly number[], text: string, shape: SymbolShape): void => {
        key.push({ colour: cssOf(colour), text, shape });
    };
    const range = ([low, high]: [number, number]) =>
        low === high ? numberText(low) : t.range(numberText(low), numberText(high));
    if (state.showLoads && forces > 0) add(theme.force, t.forces(numberText(forces)), 'arrow');
    if (state.showLoads && moments > 0) add(theme.moment, t.moments(numberText(moments)), 'doubleArrow');
    if (state.showPressures && pressures) add(theme.pressure, t.pressures(range(pressures)), 'arrow');
    if (state.showLineLoads && lineLoads) add(theme.lineLoad, t.lineLoads(range(lineLoads)), 'arrow');
    if (state.showInertia && inertiaForces > 0) add(theme.inertia, t.inertia(numberText(inertiaForces)), 'arrow');
    if (state.showInertia && inertiaMoments > 0) {
        add(theme.inertia, t.inertiaMoments(numberText(inertiaMoments)), 'doubleArrow');
    }
    if (state.showSupports && result.model.supportNodes.length > 0) add(theme.support, t.supports, 'cone');
    return key;
}

function categoryText(field: PropertyField, value: number, { model }: Result, texts: Texts): string {
    switch (field) {
        case 'side':
            return value > 0 ? texts.faces.positive : texts.faces.negative;
        case 'thickness':
            return numberText(value);
        case 'section':
            return model?.sections[value] ?? '';
        case 'material': {
            const material = model?.materials[value];
            return material ? `E ${numberText(material.E)}, Mu ${numberText(material.Mu)}` : '';
        }
    }
}

/** Asked for with each drawing, and dear to find in a large result. */
const knownCategories = new WeakMap<Result, Map<PropertyField, Category[]>>();

function categoriesOf(result: Result, field: PropertyField): Category[] {
    let known = knownCategories.get(result);
    if (!known) knownCategories.set(result, (known = new Map()));
    let found = known.get(field);
    if (!found) known.set(field, (found = categories(result, field)));
    return found;
}

function categoryLegend(field: PropertyField, result: Result, texts: Texts): CategoryLegend {
    const entries = categoriesOf(result, field).map(({ value, colour }) => ({
        colour,
        text: categoryText(field, value, result, texts),
    }));
    return { kind: 'categories', entries };
}

/** Value and node on lines of their own: the legend stays narrow. */
function extremeNotes(name: string, extreme: Extreme, { result, texts, state }: OverlaySource): string[] {
    return [
        `${name} ${numberText(extreme.value / unitOf(state).factor)}`,
        texts.legend.node(nodeName(result, extreme.node, texts)),
    ];
}

export function legendContent(source: OverlaySource): LegendContent | undefined {
    const { scene, state, result, texts } = source;
    const notes: string[] = [];
    const content: LegendContent = {
        title: fieldTitle(state, texts),
        subtitle: fieldSubtitle(state, texts, scene.showsWalls()),
        notes,
        symbols: symbolKey(state, result, texts),
    };
    if (hasScale(state)) {
        const range = scene.range();
        const found = scene.extremes();
        if (range) content.key = scaleLegend(state, range, found);
        if (found) {
            notes.push(...extremeNotes(texts.legend.max, found.max, source));
            notes.push(...extremeNotes(texts.legend.min, found.min, source));
            if (found.notFinite > 0) notes.push(texts.legend.notFinite(found.notFinite));
        } else notes.push(texts.legend.noValues);
    } else if (isPropertyField(state.field)) content.key = categoryLegend(state.field, result, texts);
    if (state.deformed) notes.push(texts.legend.deformation(numberText(scene.scale())));
    return state.field === 'none' && notes.length === 0 && content.symbols.length === 0 ? undefined : content;
}

/** map: from the picture on the page to the one that is drawn. */
export function overlayContent(source: OverlaySource, map: (point: Point) => Point): OverlayContent {
    const { scene, state, result, texts, probes } = source;
    const content: OverlayContent = { legend: legendContent(source), flags: [], markers: [], curves: [] };
    for (const points of source.cutLines) content.curves.push(...projected(scene, points, map));
    const spot = source.cutPoint && scene.project(source.cutPoint);
    if (spot) content.spot = map(spot);
    const found = state.flags && hasScale(state) ? scene.extremes() : undefined;
    if (found) {
        const flag = (name: string, extreme: Extreme): void => {
            const at = scene.projectNode(extreme.node);
            if (!at) return;
            const flagged: Flag = {
                at: map(at),
                hidden: scene.isHidden(extreme.node),
                lines: [
                    `${name} ${numberText(extreme.value / unitOf(state).factor)}`,
                    `${texts.legend.node(nodeName(result, extreme.node, texts))} (${placeText(extreme.position, scene.size())})`,
                ],
            };
            content.flags.push(flagged);
        };
        flag(texts.legend.max, found.max);
        flag(texts.legend.min, found.min);
        content.covered = coveredIn(scene, map);
    }
    probes.forEach((probe, i) => {
        const at = scene.projectNode(probe.node);
        if (at) content.markers.push({ at: map(at), text: String(i + 1) });
    });
    return content;
}

/** The squares that the structure covers, in the picture that is drawn. */
function coveredIn(scene: SceneView, map: (point: Point) => Point): OverlayContent['covered'] {
    const { middles, side } = scene.covered();
    const mapped = new Float32Array(middles.length);
    for (let i = 0; i < middles.length; i += 2) mapped.set(map([middles[i], middles[i + 1]]), i);
    return { middles: mapped, side: map([side, 0])[0] - map([0, 0])[0] };
}

/** The parts of a line that are within the picture. */
function projected(scene: SceneView, points: Float32Array, map: (point: Point) => Point): Point[][] {
    const curves: Point[][] = [[]];
    for (let i = 0; i < points.length; i += 3) {
        const at = scene.project([points[i], points[i + 1], points[i + 2]]);
        if (at) curves[curves.length - 1].push(map(at));
        else if (curves[curves.length - 1].length > 0) curves.push([]);
    }
    return curves.filter((curve) => curve.length > 1);
}
