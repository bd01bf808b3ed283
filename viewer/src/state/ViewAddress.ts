// The state of the view as text behind the "#" of the page's address: "v=1&field=SX&limits=0,2e6". Only what differs
// from the state that a page begins with. Keys that are not known and values that make no sense are passed over, so
// that a link of another version still shows what it can.
import { COLOUR_MAPS, MOST_BANDS } from '../model/ColourScale';
import { DEFAULT_STATE, MOTION_FIELDS, PROPERTY_FIELDS, STRESS_FIELDS, type Camera, type ViewState } from './ViewState';

const VERSION = '1';

/** undefined: the text is none of these. */
interface Codec<T> {
    write(value: T): string;
    read(text: string): T | undefined;
}

type Triple = [number, number, number];

const flag: Codec<boolean> = {
    write: (value) => (value ? '1' : '0'),
    read: (text) => (text === '1' ? true : text === '0' ? false : undefined),
};

function choice<T extends string>(values: readonly T[]): Codec<T> {
    return { write: (value) => value, read: (text) => values.find((value) => value === text) };
}

/** Seven digits place a camera; they keep addresses short. */
const short = (value: number) => Number(value.toPrecision(7));

function numbers(isValid: (values: number[]) => boolean): Codec<number[]> {
    return {
        write: (values) => values.join(','),
        read: (text) => {
            const values = text.split(',').map((part) => (part.trim() === '' ? NaN : Number(part)));
            return values.every(Number.isFinite) && isValid(values) ? values : undefined;
        },
    };
}

function converted<A, B>(codec: Codec<A>, to: (value: B) => A, from: (value: A) => B): Codec<B> {
    return {
        write: (value) => codec.write(to(value)),
        read: (text) => {
            const value = codec.read(text);
            return value === undefined ? undefined : from(value);
        },
    };
}

function number(isValid: (value: number) => boolean): Codec<number> {
    return converted(
        numbers((values) => values.length === 1 && isValid(values[0])),
        (value: number) => [value],
        ([value]) => value,
    );
}

/** "none" for an empty list, since an empty text is no list of numbers. */
const indices: Codec<number[]> = {
    write: (values) => (values.length === 0 ? 'none' : values.join(',')),
    read: (text) => (text === 'none' ? [] : numbers((values) => values.every(isIndex)).read(text)),
};

const triple = (values: number[], begin: number) => values.slice(begin, begin + 3) as Triple;

const camera: Codec<Camera> = converted(
    numbers((values) => values.length === 10 && values[9] > 0),
    ({ position, focalPoint, viewUp, parallelScale }) =>
        [...position, ...focalPoint, ...viewUp, parallelScale].map(short),
    (values) => ({
        position: triple(values, 0),
        focalPoint: triple(values, 3),
        viewUp: triple(values, 6),
        parallelScale: values[9],
    }),
);

const clip: Codec<NonNullable<ViewState['clip']>> = converted(
    numbers(([x, y, z, offset, ...rest]) => Math.hypot(x, y, z) > 0 && offset >= 0 && offset <= 1 && rest.length === 0),
    ({ normal, offset }) => [...normal, offset].map(short),
    (values) => ({ normal: triple(values, 0), offset: values[3] }),
);

const box: Codec<NonNullable<ViewState['box']>> = converted(
    numbers((v) => v.length === 6 && v[0] <= v[3] && v[1] <= v[4] && v[2] <= v[5]),
    (values) => [...values],
    (values) => values as NonNullable<ViewState['box']>,
);

/** Of the name of a unit. */
export const LONGEST_NAME = 16;

const name: Codec<string> = {
    write: (value) => encodeURIComponent(value),
    read: (text) => (text.length <= LONGEST_NAME ? text : undefined),
};

const limits: Codec<NonNullable<ViewState['limits']>> = converted(
    numbers((values) => values.length === 2 && values[0] <= values[1]),
    (values) => [...values],
    (values) => values as [number, number],
);

// One for each part of the state: the compiler asks for those of a new one.
const CODECS: { [K in keyof Required<ViewState>]: Codec<NonNullable<ViewState[K]>> } = {
    field: choice([...STRESS_FIELDS, ...MOTION_FIELDS, ...PROPERTY_FIELDS, 'none']),
    face: choice(['positive', 'negative', 'larger', 'viewed']),
    average: choice(['nodal', 'element']),
    bands: flag,
    bandCount: number((count) => isIndex(count) && count >= 2 && count <= MOST_BANDS),
    colourMap: choice(COLOUR_MAPS),
    limits,
    logarithmic: flag,
    flags: flag,
    unitFactor: number((factor) => factor > 0),
    unitName: name,
    deformed: flag,
    scale: number((factor) => factor >= 0),
    animated: flag,
    undeformedOutline: flag,
    edges: choice(['none', 'mesh', 'feature', 'free']),
    showLoads: flag,
    showPressures: flag,
    showLineLoads: flag,
    showInertia: flag,
    showSupports: flag,
    showQuads: flag,
    showTris: flag,
    showBeams: flag,
    hiddenThicknesses: indices,
    hiddenSections: indices,
    clip,
    box,
    parallel: flag,
    camera,
    dark: flag,
    language: choice(['en', 'zh']),
};

/** Words that are shorter than the names of their parts. */
const WORDS: Partial<Record<keyof ViewState, string>> = { unitFactor: 'unit' };

const KEYS = new Map(
    (Object.keys(CODECS) as (keyof ViewState)[]).map((key): [string, keyof ViewState] => [WORDS[key] ?? key, key]),
);

/** Without "#". Empty where nothing differs from `initial`. */
export function addressOf(state: ViewState, initial: ViewState = DEFAULT_STATE): string {
    const parts: string[] = [];
    for (const [word, key] of KEYS) {
        const text = textOf(state, key);
        // What was taken away, as limits that were given, stands with an empty text.
        if (text !== textOf(initial, key)) parts.push(`${word}=${text ?? ''}`);
    }
    return parts.length === 0 ? '' : [`v=${VERSION}`, ...parts].join('&');
}

/** With or without "#". */
export function stateOfAddress(address: string, initial: ViewState = DEFAULT_STATE): ViewState {
    const state = { ...initial };
    for (const [word, text] of wordsOf(address)) {
        const key = KEYS.get(word);
        if (key) readInto(state, key, text);
    }
    return state;
}

/** Of an address with or without "#", in order. */
export function wordsOf(address: string): [string, string][] {
    return [...new URLSearchParams(address.replace(/^#/, ''))].filter(([word, text]) => word !== '' || text !== '');
}

/** Whether a word is one of the state and its value makes sense. */
export function isWordOfState(word: string, text: string): boolean {
    const key = KEYS.get(word);
    return key ? readInto({ ...DEFAULT_STATE }, key, text) : word === 'v';
}

function textOf<K extends keyof ViewState>(state: ViewState, key: K): string | undefined {
    const value = state[key];
    return value === undefined ? undefined : CODECS[key].write(value as NonNullable<ViewState[K]>);
}

/** Whether the text makes sense. */
function readInto<K extends keyof ViewState>(state: ViewState, key: K, text: string): boolean {
    const value = CODECS[key].read(text);
    const takesAway = value === undefined && text === '' && DEFAULT_STATE[key] === undefined;
    if (value !== undefined) state[key] = value;
    else if (takesAway) delete state[key];
    return value !== undefined || takesAway;
}

function isIndex(value: number): boolean {
    return Number.isSafeInteger(value) && value >= 0;
}
