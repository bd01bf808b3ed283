// Colours of everything in the picture.
import { colourAt, colourTable, MOST_BANDS, OVER_COLOUR, UNDER_COLOURS } from '../model/ColourScale';
import { isPropertyField } from '../model/Fields';
import type { ViewState } from '../state/ViewState';
import { categoryColours } from './Categories';
import type { Look } from './SurfaceActor';

export type Rgb = [number, number, number];
export type Rgba = [number, number, number, number];

export interface Theme {
    background: Rgb;
    /** Of a surface without a field. */
    plain: Rgb;
    /** Of elements that have no value. */
    none: Rgb;
    mesh: Rgba;
    feature: Rgba;
    outline: Rgba;
    mark: Rgba;
    force: Rgb;
    moment: Rgb;
    pressure: Rgb;
    lineLoad: Rgb;
    inertia: Rgb;
    support: Rgb;
}

const LIGHT: Theme = {
    background: [1, 1, 1],
    plain: [0.74, 0.77, 0.8],
    none: [0.62, 0.62, 0.62],
    mesh: [0, 0, 0, 0.3],
    feature: [0, 0, 0, 0.75],
    outline: [0.55, 0.55, 0.55, 1],
    mark: [0.85, 0, 0.45, 1],
    force: [0.75, 0.1, 0.1],
    moment: [0.55, 0.1, 0.55],
    pressure: [0.85, 0.4, 0],
    lineLoad: [0.75, 0.05, 0.4],
    inertia: [0.1, 0.35, 0.75],
    support: [0.15, 0.45, 0.2],
};

const DARK: Theme = {
    background: [0.098, 0.106, 0.118],
    plain: [0.55, 0.58, 0.62],
    none: [0.4, 0.4, 0.4],
    mesh: [0, 0, 0, 0.4],
    feature: [0.93, 0.93, 0.93, 0.6],
    outline: [0.6, 0.6, 0.6, 1],
    mark: [1, 0.35, 0.75, 1],
    force: [1, 0.45, 0.4],
    moment: [0.9, 0.5, 0.9],
    pressure: [1, 0.65, 0.25],
    lineLoad: [1, 0.45, 0.7],
    inertia: [0.45, 0.7, 1],
    support: [0.5, 0.85, 0.5],
};

export function themeOf(state: Pick<ViewState, 'dark'>): Theme {
    return state.dark ? DARK : LIGHT;
}

/** range: limits of the colours; undefined where the field has no values. */
export function surfaceLook(state: ViewState, range: [number, number] | undefined): Look {
    const theme = themeOf(state);
    const look = { limits: range ?? [0, 1], logarithmic: state.logarithmic, none: theme.none } satisfies Partial<Look>;
    if (isPropertyField(state.field)) return { ...look, mode: 'categories', colours: categoryColours() };
    if (!range) return { ...look, mode: 'plain', colours: Float32Array.from(theme.plain) };
    const beyond = marksBeyond(state) ? { under: UNDER_COLOURS[state.colourMap], over: OVER_COLOUR } : undefined;
    return state.bands
        ? { ...look, beyond, mode: 'bands', colours: colourTable(state.colourMap, state.bandCount) }
        : { ...look, beyond, mode: 'smooth', colours: smoothColours(state.colourMap) };
}

/** Automatic limits hold all values, but for those of zero and less on a logarithmic scale. */
export function marksBeyond(state: Pick<ViewState, 'limits' | 'logarithmic'>): boolean {
    return state.limits !== undefined || state.logarithmic;
}

function smoothColours(map: ViewState['colourMap']): Float32Array {
    const colours = new Float32Array(3 * MOST_BANDS);
    for (let i = 0; i < MOST_BANDS; ++i) colours.set(colourAt(map, i / (MOST_BANDS - 1)), 3 * i);
    return colours;
}
