// Directions of the axes, in a corner of the picture.
import type { Projection } from './Projection';
import type { Vec3 } from './Vectors';

const SIZE = 76;
const ARM = 24;
const NAMES = ['x', 'y', 'z'];
/** Told apart by their letters too. */
const COLOURS = { light: ['#b3261e', '#1e7a34', '#1f4fb0'], dark: ['#ff8a80', '#7fd48f', '#8fb4ff'] };

export class Axes {
    dark = false;
    private readonly canvas = document.createElement('canvas');

    constructor(container: HTMLElement) {
        this.canvas.style.cssText = `position:absolute;left:4px;bottom:4px;width:${SIZE}px;height:${SIZE}px;pointer-events:none`;
        this.canvas.setAttribute('aria-hidden', 'true');
        container.append(this.canvas);
    }

    dispose(): void {
        this.canvas.remove();
    }

    draw(projection: Projection): void {
        const ratio = window.devicePixelRatio || 1;
        if (this.canvas.width !== SIZE * ratio) this.canvas.width = this.canvas.height = SIZE * ratio;
        const context = this.canvas.getContext('2d')!;
        context.setTransform(ratio, 0, 0, ratio, 0, 0);
        context.clearRect(0, 0, SIZE, SIZE);
        this.drawInto(context, projection, 0, 0, 1);
    }

    /** left, top: of its square; factor: on its size. */
    drawInto(
        context: CanvasRenderingContext2D,
        projection: Projection,
        left: number,
        top: number,
        factor: number,
    ): void {
        const { right, up, forward } = projection;
        context.save();
        context.translate(left, top);
        context.scale(factor, factor);
        context.font = '600 12px system-ui, sans-serif';
        context.textAlign = 'center';
        context.textBaseline = 'middle';
        context.lineCap = 'round';
        // The farthest first.
        for (const axis of [0, 1, 2].sort((a, b) => forward[b] - forward[a])) {
            const [x, y] = screenDirection(axis, right, up);
            context.strokeStyle = context.fillStyle = COLOURS[this.dark ? 'dark' : 'light'][axis];
            context.lineWidth = 2;
            context.beginPath();
            context.moveTo(SIZE / 2, SIZE / 2);
            context.lineTo(SIZE / 2 + ARM * x, SIZE / 2 + ARM * y);
            context.stroke();
            const away = ARM + 9 / Math.max(0.4, Math.hypot(x, y));
            context.lineWidth = 3;
            context.strokeStyle = this.dark ? '#0008' : '#fff8';
            context.strokeText(NAMES[axis], SIZE / 2 + away * x, SIZE / 2 + away * y);
            context.fillText(NAMES[axis], SIZE / 2 + away * x, SIZE / 2 + away * y);
        }
        context.restore();
    }

    static readonly size = SIZE;
}

const screenDirection = (axis: number, right: Vec3, up: Vec3): [number, number] => [right[axis], -up[axis]];
