// What stands over the picture at present, from the state of the view and what the scene shows.
import type { Result } from '../model/Result';
import { look } from '../scene/Appearance';
import type { Extreme, Probe } from '../scene/SceneView';
import type { ViewState } from '../state/ViewState';
import type { CategoryLegend, LegendContent, ScaleLegend } from '../ui/Legend';
import { nodeName } from '../ui/Names';
import { numberText } from '../ui/Numbers';
import type { Flag, OverlayContent } from '../ui/Overlay';
import { hasScale } from '../ui/panel/ColourSection';
import { isStress } from '../ui/panel/FieldSection';
import type { Texts } from '../ui/Texts';
import type { PictureScene } from './PictureScene';

type Point = [number, number];

export interface OverlaySource {
    scene: PictureScene;
    result: Result;
    state: Readonly<ViewState>;
    texts: Texts;
    probes: readonly Probe[];
}

/** "larger face, nodal average" where the field has faces. */
export function fieldSubtitle(state: Readonly<ViewState>, texts: Texts): string {
    if (!isStress(state)) return '';
    return `${texts.faceOf[state.face]}, ${texts.averageOf[state.average]}`;
}

function colourStyle(colours: Float32Array, index: number): string {
    const part = (axis: number): number => Math.round(255 * colours[3 * index + axis]);
    return `rgb(${part(0)}, ${part(1)}, ${part(2)})`;
}

/** Colours as the scene has them, so that legend and structure cannot differ. */
function scaleLegend(state: Readonly<ViewState>, range: [number, number]): ScaleLegend {
    const { colours, logarithmic, mode } = look(state, range);
    const count = colours.length / 3;
    return {
        kind: 'scale',
        range,
        bands: mode === 'bands' ? count : undefined,
        logarithmic,
        colourAt(position) {
            if (mode === 'bands') return colourStyle(colours, Math.min(count - 1, Math.floor(position * count)));
            const place = Math.min(Math.max(position, 0), 1) * (count - 1);
            const low = Math.min(count - 2, Math.floor(place));
            const between = new Float32Array(3);
            for (let i = 0; i < 3; ++i) {
                between[i] = colours[3 * low + i] * (1 - place + low) + colours[3 * low + 3 + i] * (place - low);
            }
            return colourStyle(between, 0);
        },
    };
}

/** Colour of the number of a property; the last ones of many repeat as the scene repeats them. */
export function categoryColour(state: Readonly<ViewState>, field: ViewState['field'], number: number): string {
    const { colours } = look({ ...state, field }, undefined);
    return colourStyle(colours, number % (colours.length / 3));
}

function categories(state: Readonly<ViewState>, result: Result, texts: Texts): CategoryLegend {
    const { field } = state;
    const names: string[] = [];
    if (field === 'side') names.push(texts.faces.positive, texts.faces.negative);
    if (field === 'thickness') names.push(...(result.model?.thicknesses.map((value) => numberText(value)) ?? []));
    if (field === 'section') names.push(...(result.model?.sections ?? []));
    if (field === 'material') {
        names.push(...(result.model?.materials.map(({ E, Mu }) => `E ${numberText(E)}, Mu ${numberText(Mu)}`) ?? []));
    }
    return {
        kind: 'categories',
        entries: names.map((text, number) => ({ text, colour: categoryColour(state, field, number) })),
    };
}

function extremeText(name: string, extreme: Extreme, { result, texts }: OverlaySource): string {
    return `${name} ${numberText(extreme.value)}  ${texts.legend.node(nodeName(result, extreme.node, texts))}`;
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
            notes.push(extremeText(texts.legend.max, found.max, source));
            notes.push(extremeText(texts.legend.min, found.min, source));
        } else notes.push(texts.legend.noValues);
    } else if (state.field !== 'none') content.key = categories(state, result, texts);
    if (state.deformed) notes.push(texts.legend.deformation(numberText(scene.scale(), 4)));
    return state.field === 'none' && notes.length === 0 ? undefined : content;
}

/** map: from the picture on the page to the one that is drawn. */
export function overlayContent(source: OverlaySource, map: (point: Point) => Point): OverlayContent {
    const { scene, state, result, texts, probes } = source;
    const content: OverlayContent = { legend: legendContent(source), flags: [], markers: [] };
    const found = state.flags && hasScale(state) ? scene.extremes() : undefined;
    if (found) {
        const flag = (name: string, extreme: Extreme): void => {
            const at = scene.projectNode(extreme.node);
            if (!at) return;
            const place = extreme.position.map((value) => numberText(value, 5)).join(', ');
            const flagged: Flag = {
                at: map(at),
                lines: [
                    `${name} ${numberText(extreme.value)}`,
                    `${texts.legend.node(nodeName(result, extreme.node, texts))} (${place})`,
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
