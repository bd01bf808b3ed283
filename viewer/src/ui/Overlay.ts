// What stands on the three-dimensional picture: legend, flags, markers. Drawn on a canvas, on the page as in files.
import { Axes } from '../scene/Axes';
import { drawLegend, type LegendContent } from './Legend';
import { leaderStart, placeFlags, type Anchor, type Covered, type Rectangle } from './Flags';
import type { CanvasColours } from './Theme';

type Point = [number, number];

export interface Flag {
    /** Pixels of the picture. */
    at: Point;
    /** Behind the structure: the leader is dashed and its end hollow. */
    hidden: boolean;
    /** The first line stands out. */
    lines: string[];
}

export interface OverlayContent {
    legend?: LegendContent;
    flags: Flag[];
    /** The structure: flags keep off it where they can. */
    covered?: Covered;
    markers: { at: Point; text: string }[];
    /** The line with which a section cut is being made. */
    line?: [Point, Point];
    /** Where the last one met the structure. */
    curves: Point[][];
    /** The point of it that its graph is read at. */
    spot?: Point;
}

const LINE = 15;
const PAD = 5;

/** size: logical pixels; the context is scaled to them. Gives back where the legend stands. */
export function drawOverlay(
    context: CanvasRenderingContext2D,
    size: { width: number; height: number },
    content: OverlayContent,
    colours: CanvasColours,
): Rectangle | undefined {
    const taken: Rectangle[] = [];
    for (const curve of content.curves) drawCurve(context, curve, colours);
    if (content.line) drawCurve(context, content.line, colours);
    if (content.spot) drawSpot(context, content.spot, colours);
    for (const marker of content.markers) taken.push(drawMarker(context, marker.at, marker.text, colours));
    const legend = content.legend && drawLegend(context, size, content.legend, colours);
    if (legend) taken.push(legend);
    taken.push({ x: 0, y: size.height - Axes.size, width: Axes.size, height: Axes.size });

    const anchors = content.flags.map((flag) => anchorOf(context, flag, colours));
    const labels = placeFlags(anchors, size, taken, content.covered);
    // Leader lines first, so that none crosses a label.
    labels.forEach((label, i) => label && drawLeader(context, label, content.flags[i], colours));
    labels.forEach((label, i) => label && drawLabel(context, label, content.flags[i], colours));
    return legend;
}

function anchorOf(context: CanvasRenderingContext2D, flag: Flag, colours: CanvasColours): Anchor {
    let width = 0;
    flag.lines.forEach((line, i) => {
        context.font = `${i === 0 ? '600 12px' : '11px'} ${colours.font}`;
        width = Math.max(width, context.measureText(line).width);
    });
    return {
        x: flag.at[0],
        y: flag.at[1],
        width: Math.ceil(width) + 2 * PAD,
        height: LINE * flag.lines.length + 2 * PAD,
    };
}

function drawLeader(
    context: CanvasRenderingContext2D,
    label: Rectangle,
    { at, hidden }: Flag,
    colours: CanvasColours,
): void {
    const [x, y] = leaderStart(label, { x: at[0], y: at[1] });
    for (const [style, width] of [
        [colours.paper, 3],
        [colours.ink, 1],
    ] as const) {
        context.strokeStyle = style;
        context.lineWidth = width;
        context.beginPath();
        context.moveTo(x, y);
        context.lineTo(at[0], at[1]);
        context.setLineDash(hidden && width === 1 ? [4, 3] : []);
        context.stroke();
    }
    context.setLineDash([]);
    context.beginPath();
    context.arc(at[0], at[1], 3.5, 0, 2 * Math.PI);
    context.fillStyle = hidden ? colours.paper : colours.ink;
    context.fill();
    context.strokeStyle = hidden ? colours.ink : colours.paper;
    context.lineWidth = 1.5;
    context.stroke();
}

function drawLabel(context: CanvasRenderingContext2D, label: Rectangle, flag: Flag, colours: CanvasColours): void {
    context.fillStyle = colours.paper;
    context.globalAlpha = 0.92;
    context.fillRect(label.x, label.y, label.width, label.height);
    context.globalAlpha = 1;
    context.strokeStyle = colours.ink;
    context.lineWidth = 1;
    context.strokeRect(
        Math.round(label.x) + 0.5,
        Math.round(label.y) + 0.5,
        Math.round(label.width) - 1,
        Math.round(label.height) - 1,
    );
    context.textAlign = 'left';
    context.textBaseline = 'middle';
    flag.lines.forEach((line, i) => {
        context.font = `${i === 0 ? '600 12px' : '11px'} ${colours.font}`;
        context.fillStyle = i === 0 ? colours.ink : colours.quiet;
        context.fillText(line, label.x + PAD, label.y + PAD + (i + 0.5) * LINE);
    });
}

function drawMarker(context: CanvasRenderingContext2D, at: Point, text: string, colours: CanvasColours): Rectangle {
    context.beginPath();
    context.arc(at[0], at[1], 8, 0, 2 * Math.PI);
    context.fillStyle = colours.accent;
    context.fill();
    context.strokeStyle = colours.paper;
    context.lineWidth = 1.5;
    context.stroke();
    context.fillStyle = colours.paper;
    context.font = `600 10px ${colours.font}`;
    context.textAlign = 'center';
    context.textBaseline = 'middle';
    context.fillText(text, at[0], at[1] + 0.5);
    return { x: at[0] - 8, y: at[1] - 8, width: 16, height: 16 };
}

function drawCurve(context: CanvasRenderingContext2D, points: Point[], colours: CanvasColours): void {
    for (const [style, width] of [
        [colours.paper, 4],
        [colours.accent, 2],
    ] as const) {
        context.strokeStyle = style;
        context.lineWidth = width;
        context.beginPath();
        points.forEach(([x, y], i) => (i === 0 ? context.moveTo(x, y) : context.lineTo(x, y)));
        context.stroke();
    }
}

function drawSpot(context: CanvasRenderingContext2D, [x, y]: Point, colours: CanvasColours): void {
    context.beginPath();
    context.arc(x, y, 6, 0, 2 * Math.PI);
    context.fillStyle = colours.accent;
    context.fill();
    context.strokeStyle = colours.paper;
    context.lineWidth = 2;
    context.stroke();
}
