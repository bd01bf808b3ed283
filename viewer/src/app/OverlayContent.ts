// What stands over the picture at present, from the state of the view and what the scene shows.
import { cssColour } from '../model/ColourScale';
import { isPropertyField, isStressField } from '../model/Fields';
import type { Result } from '../model/Result';
import { categories, type Category } from '../scene/Categories';
import type { Extreme, Probe, SceneView } from '../scene/SceneView';
import type { PropertyField, ViewState } from '../state/ViewState';
import type { CategoryLegend, LegendContent, ScaleLegend } from '../ui/Legend';
import { nodeName } from '../ui/Names';
import { numberText, placeText } from '../ui/Numbers';
import type { Flag, OverlayContent } from '../ui/Overlay';
import { hasScale } from '../ui/panel/ColourSection';
import type { Texts } from '../ui/Texts';

type Point = [number, number];

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

/** "larger face, nodal average" where the field has faces. */
export function fieldSubtitle(state: Readonly<ViewState>, texts: Texts): string {
    if (!isStressField(state.field)) return '';
    return `${texts.faceOf[state.face]}, ${texts.averageOf[state.average]}`;
}

/** Bands have the colour of their middle, as on the structure. */
function scaleLegend(state: Readonly<ViewState>, range: [number, number]): ScaleLegend {
    return {
        kind: 'scale',
        range,
        bands: state.bands ? state.bandCount : undefined,
        logarithmic: state.logarithmic,
        colourAt: (position) => cssColour(state.colourMap, position),
    };
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
function extremeNotes(name: string, extreme: Extreme, { result, texts }: OverlaySource): string[] {
    return [`${name} ${numberText(extreme.value)}`, texts.legend.node(nodeName(result, extreme.node, texts))];
}

export function legendContent(source: OverlaySource): LegendContent | undefined {
    const { scene, state, result, texts } = source;
    const notes: string[] = [];
    const content: LegendContent = {
        title: texts.fields[state.field],
        subtitle: fieldSubtitle(state, texts),
        notes,
    };
    if (hasScale(state)) {
        const range = scene.range();
        const found = scene.extremes();
        if (range) content.key = scaleLegend(state, range);
        if (found) {
            notes.push(...extremeNotes(texts.legend.max, found.max, source));
            notes.push(...extremeNotes(texts.legend.min, found.min, source));
            if (found.notFinite > 0) notes.push(texts.legend.notFinite(found.notFinite));
        } else notes.push(texts.legend.noValues);
    } else if (isPropertyField(state.field)) content.key = categoryLegend(state.field, result, texts);
    if (state.deformed) notes.push(texts.legend.deformation(numberText(scene.scale(), 4)));
    return state.field === 'none' && notes.length === 0 ? undefined : content;
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
                lines: [
                    `${name} ${numberText(extreme.value)}`,
                    `${texts.legend.node(nodeName(result, extreme.node, texts))} (${placeText(extreme.position, 5)})`,
                ],
            };
            content.flags.push(flagged);
        };
        flag(texts.legend.max, found.max);
        flag(texts.legend.min, found.min);
    }
    probes.forEach((probe, i) => {
        const at = scene.projectNode(probe.node);
        if (at) content.markers.push({ at: map(at), text: String(i + 1) });
    });
    return content;
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
