// Graph of the shown field along a section cut: value over arc length, piece after piece as the plane meets the surface.
import { tableText } from './Csv';
import { button, make, save } from './Dom';
import { numberText, roundNumbers, scaleTexts } from './Numbers';
import type { Texts } from './Texts';

export interface CutPiece {
    length: Float32Array;
    value: Float32Array;
}

const LEFT = 80;
const RIGHT = 12;
const TOP = 10;
const BOTTOM = 34;
const SVG = 'http://www.w3.org/2000/svg';

function draw(tag: string, attributes: Record<string, string | number>, text = ''): SVGElement {
    const node = document.createElementNS(SVG, tag);
    for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, String(value));
    node.textContent = text;
    return node;
}

export class CutPlot {
    readonly root = make('div', { class: 'cut-plot' });
    private pieces: CutPiece[] = [];
    /** The point that is read: number of its piece, and within it. */
    onRead: (at: { piece: number; point: number } | undefined) => void = () => undefined;
    private title = '';
    private axis = '';
    private texts?: Texts;
    private readonly observer = new ResizeObserver(() => this.draw());
    private readonly chart = make('div', { class: 'chart' });
    private readonly readout = make('output', { class: 'readout' });

    constructor() {
        this.observer.observe(this.chart);
    }

    /** title: of the values in full; axis: in short, with its unit. */
    show(pieces: CutPiece[], title: string, axis: string, texts: Texts): void {
        this.pieces = pieces;
        this.axis = axis;
        this.title = title;
        this.texts = texts;
        if (this.pieces.length === 0) {
            this.root.replaceChildren(make('p', { class: 'note' }, texts.cut.nothing));
            return;
        }
        const csv = button(texts.cut.saveCsv, () => {
            const rows = this.pieces.flatMap((piece, i) =>
                Array.from(piece.length, (length, k) => [i + 1, length, piece.value[k]]),
            );
            const text = tableText([['piece', 'length', this.title], ...rows], ',');
            save('tarnvexo-cut.csv', new Blob([text], { type: 'text/csv' }));
        });
        this.root.replaceChildren(
            make(
                'div',
                { class: 'buttons' },
                csv,
                make('span', { class: 'quiet' }, `${title} · ${texts.cut.pieces(this.pieces.length)}`),
                this.readout,
            ),
            this.chart,
        );
        this.draw();
    }

    private draw(): void {
        const width = this.chart.clientWidth;
        const height = this.chart.clientHeight;
        if (!this.texts || this.pieces.length === 0 || width < LEFT + RIGHT + 40 || height < TOP + BOTTOM + 20) return;
        const [x0, x1] = extent(this.pieces.map((piece) => piece.length));
        let [y0, y1] = extent(this.pieces.map((piece) => piece.value));
        if (y0 === y1) [y0, y1] = [y0 - (Math.abs(y0) || 1) / 2, y1 + (Math.abs(y1) || 1) / 2];
        const xTicks = roundNumbers(x0, x1, Math.floor((width - LEFT - RIGHT) / 90));
        const yTicks = roundNumbers(y0, y1, Math.max(4, Math.floor((height - TOP - BOTTOM) / 16)));
        const px = (x: number): number => LEFT + ((x - x0) / (x1 - x0 || 1)) * (width - LEFT - RIGHT);
        const py = (y: number): number => height - BOTTOM - ((y - y0) / (y1 - y0)) * (height - TOP - BOTTOM);

        const svg = draw('svg', {
            width,
            height,
            role: 'img',
            'aria-label': `${this.title}, ${this.texts.cut.length}`,
        });
        scaleTexts(xTicks).forEach((text, i) => {
            const x = px(xTicks[i]);
            svg.append(draw('line', { class: 'grid', x1: x, x2: x, y1: TOP, y2: height - BOTTOM }));
            svg.append(draw('text', { x, y: height - BOTTOM + 15, 'text-anchor': 'middle' }, text));
        });
        scaleTexts(yTicks).forEach((text, i) => {
            const y = py(yTicks[i]);
            svg.append(draw('line', { class: 'grid', x1: LEFT, x2: width - RIGHT, y1: y, y2: y }));
            svg.append(draw('text', { x: LEFT - 6, y: y + 4, 'text-anchor': 'end' }, text));
        });
        svg.append(
            draw(
                'text',
                { class: 'quiet', x: (LEFT + width - RIGHT) / 2, y: height - 4, 'text-anchor': 'middle' },
                `${this.texts.cut.length} (${this.texts.cut.unit})`,
            ),
        );
        const middle = (TOP + height - BOTTOM) / 2;
        svg.append(
            draw(
                'text',
                { class: 'quiet', x: 12, y: middle, transform: `rotate(-90 12 ${middle})`, 'text-anchor': 'middle' },
                this.axis,
            ),
        );
        // The longest piece comes first and stands out; it is drawn last.
        const curves: SVGElement[] = [];
        for (let piece = this.pieces.length - 1; piece >= 0; --piece) {
            const { length, value } = this.pieces[piece];
            let points = '';
            for (let i = 0; i < length.length; ++i) points += `${px(length[i]).toFixed(1)},${py(value[i]).toFixed(1)} `;
            curves[piece] = draw('polyline', { class: piece === 0 ? 'curve' : 'curve minor', points });
            svg.append(curves[piece]);
        }
        const cross = draw('circle', { class: 'cross', r: 4, cx: -10, cy: -10 });
        svg.append(cross);
        svg.addEventListener('pointermove', (event) => {
            const box = svg.getBoundingClientRect();
            const nearest = nearestPoint(this.pieces, event.clientX - box.left, event.clientY - box.top, px, py);
            if (!nearest) return;
            const { length, value } = this.pieces[nearest.piece];
            const [x, y] = [length[nearest.point], value[nearest.point]];
            cross.setAttribute('cx', String(px(x)));
            cross.setAttribute('cy', String(py(y)));
            curves.forEach((curve, piece) => curve.classList.toggle('read', piece === nearest.piece));
            const { pieceOf, length: arc } = this.texts!.cut;
            const which = this.pieces.length > 1 ? `${pieceOf(nearest.piece + 1, this.pieces.length)}, ` : '';
            this.readout.textContent = `${which}${arc} ${numberText(x)}: ${numberText(y)}`;
            this.onRead(nearest);
        });
        svg.addEventListener('pointerleave', () => {
            curves.forEach((curve) => curve.classList.remove('read'));
            this.onRead(undefined);
        });
        this.chart.replaceChildren(svg);
    }
}

function extent(arrays: Float32Array[]): [number, number] {
    let low = Infinity;
    let high = -Infinity;
    for (const array of arrays) {
        for (const value of array) {
            if (value < low) low = value;
            if (value > high) high = value;
        }
    }
    return low <= high ? [low, high] : [0, 1];
}

/** The point of the curves nearest to (x, y). */
function nearestPoint(
    pieces: CutPiece[],
    x: number,
    y: number,
    px: (length: number) => number,
    py: (value: number) => number,
): { piece: number; point: number } | undefined {
    let best: { piece: number; point: number } | undefined;
    let least = Infinity;
    pieces.forEach(({ length, value }, piece) => {
        for (let point = 0; point < length.length; ++point) {
            // Nearness along the axis counts more, so that the readout runs along with the pointer.
            const distance = 9 * (px(length[point]) - x) ** 2 + (py(value[point]) - y) ** 2;
            if (distance < least) {
                least = distance;
                best = { piece, point };
            }
        }
    });
    return best;
}
