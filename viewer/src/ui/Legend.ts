// The legend: which colour is which value. Laid out and drawn apart from the page, so that screen and file are the same.
import { positionOf, valueAt } from '../model/ColourScale';
import { roundNumbers, scaleTexts } from './Numbers';
import type { CanvasColours } from './Theme';
import type { Rectangle } from './Flags';

export interface ScaleLegend {
    kind: 'scale';
    range: [number, number];
    /** Number of bands; undefined: the colours run smoothly. */
    bands?: number;
    logarithmic: boolean;
    /** Style of the colour at 0 (lowest) to 1 (highest). */
    colourAt(position: number): string;
    /** Colours of values beyond the range, where there are such. */
    over?: string;
    under?: string;
}

export interface CategoryLegend {
    kind: 'categories';
    entries: { colour: string; text: string }[];
}

/** Double arrow: a moment. */
export type SymbolShape = 'arrow' | 'doubleArrow' | 'cone';

export interface LegendContent {
    title: string;
    subtitle: string;
    key?: ScaleLegend | CategoryLegend;
    /** Below: highest and lowest value, factor on displacements. */
    notes: string[];
    /** Below these: colours of arrows and cones. */
    symbols: { colour: string; text: string; shape: SymbolShape }[];
}

export interface LegendTick {
    /** 0 at the lowest value, 1 at the highest. */
    position: number;
    value: number;
    text: string;
}

const ROW = 16;
const BAR = 18;
const PAD = 10;
/** Height of what stands for values beyond the range, with the gap to the bar: numbers of its end keep their place. */
const BEYOND = 24;
const BEYOND_GAP = 10;
/** A subtitle that is wider stands on several lines. */
const WIDEST = 200;
const TITLE = '600 13px';
const TEXT = '12px';

/** Numbers beside the bar, none nearer to the next than a line of text. */
export function legendTicks(scale: ScaleLegend, height: number): LegendTick[] {
    const most = Math.max(2, Math.floor(height / ROW));
    const positions = scale.bands === undefined ? undefined : bandPositions(scale.bands, most);
    const [lowest, highest] = scale.range;
    const { logarithmic } = scale;
    if (!(highest > lowest)) return [{ position: 0, value: lowest, text: scaleTexts([lowest])[0] }];

    let ticks: { position: number; value: number }[];
    if (positions) {
        ticks = positions.map((position) => ({ position, value: valueAt(position, scale.range, logarithmic) }));
    } else {
        const values = logarithmic
            ? decades(lowest, highest, most)
            : roundNumbers(lowest, highest, Math.min(most - 1, 10));
        ticks = values.map((value) => ({ position: positionOf(value, scale.range, logarithmic), value }));
        // The ends are always named; round numbers that would touch them give way.
        const free = ROW / height;
        ticks = ticks.filter(
            ({ position }) => position === 0 || position === 1 || (position > free && position < 1 - free),
        );
        if (ticks.length === 0 || ticks[0].position > 0) ticks.unshift({ position: 0, value: lowest });
        if (ticks[ticks.length - 1].position < 1) ticks.push({ position: 1, value: highest });
    }
    const texts = logarithmic
        ? ticks.map(({ value }) => scaleTexts([Number(value.toPrecision(3))])[0])
        : scaleTexts(ticks.map(({ value }) => value));
    return ticks.map((tick, i) => ({ ...tick, text: texts[i] }));
}

/** Borders of bands; every second, third, ... from both ends where there is no place for all. */
function bandPositions(bands: number, most: number): number[] {
    let every = 1;
    while (bands / every + 1 > most || (bands % every !== 0 && every < bands)) every++;
    const positions: number[] = [];
    for (let band = 0; band <= bands; band += every) positions.push(band / bands);
    return positions;
}

/** 1, 2 and 5 times powers of ten, or only powers of ten where there are many. */
function decades(lowest: number, highest: number, most: number): number[] {
    const first = Math.floor(Math.log10(lowest));
    const last = Math.ceil(Math.log10(highest));
    for (const factors of [[1, 2, 5], [1, 3], [1]]) {
        const values: number[] = [];
        for (let power = first; power <= last; ++power) {
            for (const factor of factors) values.push(Number((factor * 10 ** power).toPrecision(6)));
        }
        const within = values.filter((value) => value >= lowest && value <= highest);
        if (within.length <= most) return within;
    }
    const every = Math.ceil((last - first + 1) / most);
    const values: number[] = [];
    for (let power = first; power <= last; power += every) {
        if (10 ** power >= lowest && 10 ** power <= highest) values.push(10 ** power);
    }
    return values;
}

/** Lines of whole words, none wider where that can be. */
export function wrapped(text: string, widest: number, widthOf: (text: string) => number): string[] {
    const lines: string[] = [];
    for (const word of text.split(' ').filter((part) => part !== '')) {
        const longer = lines.length > 0 ? `${lines[lines.length - 1]} ${word}` : word;
        if (lines.length > 0 && widthOf(longer) <= widest) lines[lines.length - 1] = longer;
        else lines.push(word);
    }
    return lines;
}

/** Draws the legend into the right upper corner and says what it covers. */
export function drawLegend(
    context: CanvasRenderingContext2D,
    picture: { width: number; height: number },
    content: LegendContent,
    colours: CanvasColours,
): Rectangle {
    const font = (style: string): void => {
        context.font = `${style} ${colours.font}`;
    };
    context.textBaseline = 'middle';
    context.textAlign = 'left';

    font(TEXT);
    const subtitle = wrapped(content.subtitle, WIDEST, (text) => context.measureText(text).width);
    const key = content.key;
    const beyond = key?.kind === 'scale' ? (key.over ? BEYOND : 0) + (key.under ? BEYOND : 0) : 0;
    const rows = (count: number): number => (count > 0 ? 6 + ROW * count : 0);
    const fixed =
        2 * PAD + ROW * (1 + subtitle.length) + rows(content.notes.length) + rows(content.symbols.length) + beyond;
    const barHeight = Math.max(60, Math.min(300, picture.height - fixed - 60));
    const ticks = key?.kind === 'scale' ? legendTicks(key, barHeight) : [];
    const entries = key?.kind === 'categories' ? fewEntries(key.entries, barHeight) : [];

    let width = 0;
    font(TITLE);
    width = Math.max(width, context.measureText(content.title).width);
    font(TEXT);
    for (const text of [...subtitle, ...content.notes]) width = Math.max(width, context.measureText(text).width);
    for (const { text } of [...ticks, ...entries, ...content.symbols, ...(beyond > 0 ? beyondTexts(ticks) : [])]) {
        width = Math.max(width, BAR + 10 + context.measureText(text).width);
    }
    width = Math.ceil(width) + 2 * PAD;
    const keyHeight = key === undefined ? 0 : key.kind === 'scale' ? barHeight + 20 : entries.length * 18 + 6;
    const height = fixed + keyHeight;
    const x = picture.width - width - 10;
    const y = 10;

    context.globalAlpha = 0.85;
    context.fillStyle = colours.paper;
    context.fillRect(x, y, width, height);
    context.globalAlpha = 1;

    let top = y + PAD;
    font(TITLE);
    context.fillStyle = colours.ink;
    context.fillText(content.title, x + PAD, top + ROW / 2);
    top += ROW;
    font(TEXT);
    context.fillStyle = colours.quiet;
    for (const line of subtitle) {
        context.fillText(line, x + PAD, top + ROW / 2);
        top += ROW;
    }
    if (key?.kind === 'scale') {
        top += 10;
        const [over, under] = beyondTexts(ticks);
        if (key.over) {
            drawBeyond(context, x + PAD, top, key.over, over.text, colours);
            top += BEYOND;
        }
        drawBar(context, x + PAD, top, barHeight, key, ticks, colours);
        top += barHeight;
        if (key.under) {
            drawBeyond(context, x + PAD, top + BEYOND_GAP, key.under, under.text, colours);
            top += BEYOND;
        }
        top += 10;
    }
    if (key?.kind === 'categories') {
        top += 6;
        for (const { colour, text } of entries) {
            context.fillStyle = colour;
            if (colour !== '') context.fillRect(x + PAD, top + 2, BAR, 13);
            context.fillStyle = colours.ink;
            context.fillText(text, x + PAD + BAR + 10, top + 9);
            top += 18;
        }
    }
    if (content.notes.length > 0) top += 6;
    context.fillStyle = colours.ink;
    for (const note of content.notes) {
        context.fillText(note, x + PAD, top + ROW / 2);
        top += ROW;
    }
    if (content.symbols.length > 0) top += 6;
    for (const { colour, text, shape } of content.symbols) {
        drawSymbol(context, x + PAD, top + ROW / 2, colour, shape);
        context.fillStyle = colours.ink;
        context.fillText(text, x + PAD + BAR + 10, top + ROW / 2);
        top += ROW;
    }
    return { x, y, width, height };
}

/** "> 80e6" and "< 0", as the ends of the scale are written. */
function beyondTexts(ticks: readonly LegendTick[]): { text: string }[] {
    if (ticks.length === 0) return [];
    return [{ text: `> ${ticks[ticks.length - 1].text}` }, { text: `< ${ticks[0].text}` }];
}

function drawBeyond(
    context: CanvasRenderingContext2D,
    x: number,
    y: number,
    colour: string,
    text: string,
    colours: CanvasColours,
): void {
    const height = BEYOND - BEYOND_GAP;
    context.fillStyle = colour;
    context.fillRect(x, y, BAR, height);
    context.strokeStyle = colours.ink;
    context.lineWidth = 1;
    context.strokeRect(x - 0.5, Math.round(y) - 0.5, BAR + 1, height + 1);
    context.fillStyle = colours.ink;
    context.fillText(text, x + BAR + 10, y + height / 2);
}

function drawSymbol(context: CanvasRenderingContext2D, x: number, y: number, colour: string, shape: SymbolShape): void {
    context.fillStyle = context.strokeStyle = colour;
    const head = shape === 'cone' ? BAR - 4 : 6;
    if (shape !== 'cone') {
        context.lineWidth = 2;
        context.beginPath();
        context.moveTo(x, y);
        context.lineTo(x + BAR - head, y);
        context.stroke();
    }
    for (const tip of shape === 'doubleArrow' ? [x + BAR, x + BAR - head] : [x + BAR]) {
        context.beginPath();
        context.moveTo(tip, y);
        context.lineTo(tip - head, y - 4);
        context.lineTo(tip - head, y + 4);
        context.fill();
    }
}

function drawBar(
    context: CanvasRenderingContext2D,
    x: number,
    y: number,
    height: number,
    scale: ScaleLegend,
    ticks: readonly LegendTick[],
    colours: CanvasColours,
): void {
    const steps = scale.bands ?? height;
    for (let step = 0; step < steps; ++step) {
        // Each up to the top, the next ones over it: where an edge falls between pixels no background shines through.
        const bottom = y + height - (step / steps) * height;
        context.fillStyle = scale.colourAt((step + 0.5) / steps);
        context.fillRect(x, y, BAR, bottom - y);
    }
    context.strokeStyle = colours.ink;
    context.lineWidth = 1;
    context.strokeRect(x - 0.5, Math.round(y) - 0.5, BAR + 1, Math.round(height) + 1);
    context.beginPath();
    context.fillStyle = colours.ink;
    for (const { position, text } of ticks) {
        const at = y + height * (1 - position);
        const line = Math.round(at) + (position === 0 ? 0.5 : -0.5);
        context.moveTo(x + BAR, line);
        context.lineTo(x + BAR + 6, line);
        context.fillText(text, x + BAR + 10, at);
    }
    context.stroke();
}

/** As many as there is place for; what is left out is counted. */
function fewEntries(entries: CategoryLegend['entries'], height: number): CategoryLegend['entries'] {
    const most = Math.max(2, Math.floor(height / 18));
    if (entries.length <= most) return entries;
    return [...entries.slice(0, most - 1), { colour: '', text: `+ ${entries.length - most + 1}` }];
}
