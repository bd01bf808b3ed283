import { button, make } from './Dom';
import { drawOverlay, type OverlayContent } from './Overlay';
import type { Rectangle } from './Flags';
import { canvasColours } from './Theme';

type Point = [number, number];

/** A click moves the pointer less than this, in pixels; more is a turn of the camera. */
const CLICK_RADIUS = 4;

/** The picture with what lies above it: overlay, tooltip, hint, messages; tells of pointers, not of what they mean. */
export class PictureArea {
    readonly root = make('main', { class: 'picture' });
    /** The three-dimensional picture is drawn in here. */
    readonly host = make('div', { class: 'scene', tabindex: 0, role: 'application' });
    private readonly canvas = make('canvas', { class: 'overlay', role: 'img' });
    private readonly tooltip = make('div', { class: 'tooltip', hidden: true });
    private readonly hintBox = make('div', { class: 'hint', role: 'status' });
    private readonly toast = make('div', { class: 'toast', role: 'status' });
    private readonly noticeBox = make('div', { class: 'notice', role: 'alert', hidden: true });
    private toastTimer = 0;
    private pressed?: Point;
    private waiting = false;
    private hoverAt?: Point;

    /** What lies above the picture; asked for before each drawing. */
    content: () => OverlayContent = () => ({ flags: [], markers: [], curves: [] });
    onHover: (at: Point | undefined) => void = () => undefined;
    onClick: (at: Point) => void = () => undefined;
    private legend?: Rectangle;

    constructor() {
        this.root.append(this.host, this.canvas, this.tooltip, this.hintBox, this.toast, this.noticeBox);
        new ResizeObserver(() => this.redraw()).observe(this.root);
        // In the capture phase, since whoever turns the camera may keep the events to himself.
        this.host.addEventListener('pointerdown', (event) => this.down(event), true);
        this.host.addEventListener('pointerup', (event) => this.up(event), true);
        this.host.addEventListener('pointermove', (event) => this.move(event), true);
        this.host.addEventListener('pointerleave', () => this.leave());
    }

    get size(): { width: number; height: number } {
        return { width: this.root.clientWidth, height: this.root.clientHeight };
    }

    /** Before the next frame, once however often it is asked for. */
    redraw(): void {
        if (this.waiting) return;
        this.waiting = true;
        requestAnimationFrame(() => {
            this.waiting = false;
            this.draw();
        });
    }

    describe(picture: string, legend: string): void {
        this.host.setAttribute('aria-label', picture);
        this.canvas.setAttribute('aria-label', legend);
    }

    hint(text: string): void {
        this.hintBox.textContent = text;
    }

    say(text: string): void {
        this.toast.textContent = text;
        clearTimeout(this.toastTimer);
        this.toastTimer = window.setTimeout(() => (this.toast.textContent = ''), 2500);
    }

    /** Stays until it is closed. */
    notice(text: string, closeLabel: string): void {
        const close = button('×', () => this.takeNoticeAway(), {
            'aria-label': closeLabel,
            title: closeLabel,
        });
        this.noticeBox.replaceChildren(make('span', {}, text), close);
        this.noticeBox.hidden = false;
    }

    takeNoticeAway(): void {
        this.noticeBox.hidden = true;
    }

    showTooltip(at: Point, title: string, lines: string[]): void {
        const { width, height } = this.size;
        this.tooltip.replaceChildren(
            make('strong', {}, title),
            ...lines.map((line) => make('span', { class: 'quiet' }, line)),
        );
        this.tooltip.hidden = false;
        const box = this.tooltip.getBoundingClientRect();
        // Beside the pointer, on the side where there is place.
        const x = at[0] + 16 + box.width > width ? at[0] - 12 - box.width : at[0] + 16;
        const y = at[1] + 16 + box.height > height ? at[1] - 12 - box.height : at[1] + 16;
        this.tooltip.style.left = `${Math.max(2, x)}px`;
        this.tooltip.style.top = `${Math.max(2, y)}px`;
    }

    hideTooltip(): void {
        this.tooltip.hidden = true;
    }

    /** CSS pixels that the legend covers from the right border on. */
    legendWidth(): number {
        this.draw();
        return this.legend ? this.size.width - this.legend.x : 0;
    }

    private draw(): void {
        const { width, height } = this.size;
        const ratio = window.devicePixelRatio || 1;
        const [pixelWidth, pixelHeight] = [Math.round(width * ratio), Math.round(height * ratio)];
        if (this.canvas.width !== pixelWidth || this.canvas.height !== pixelHeight) {
            this.canvas.width = pixelWidth;
            this.canvas.height = pixelHeight;
        }
        const context = this.canvas.getContext('2d')!;
        context.setTransform(ratio, 0, 0, ratio, 0, 0);
        context.clearRect(0, 0, width, height);
        this.legend = drawOverlay(context, { width, height }, this.content(), canvasColours());
    }

    private pointOf(event: PointerEvent): Point {
        const box = this.host.getBoundingClientRect();
        return [event.clientX - box.left, event.clientY - box.top];
    }

    private down(event: PointerEvent): void {
        this.pressed = event.button === 0 ? this.pointOf(event) : undefined;
        this.leave();
    }

    private up(event: PointerEvent): void {
        const at = this.pointOf(event);
        const from = this.pressed;
        this.pressed = undefined;
        if (from && Math.hypot(at[0] - from[0], at[1] - from[1]) < CLICK_RADIUS) this.onClick(at);
    }

    private move(event: PointerEvent): void {
        // While a button is down the camera turns; values under the pointer would only flicker.
        if (event.buttons !== 0) return;
        const before = this.hoverAt;
        this.hoverAt = this.pointOf(event);
        if (before) return;
        requestAnimationFrame(() => {
            const at = this.hoverAt;
            this.hoverAt = undefined;
            if (at) this.onHover(at);
        });
    }

    private leave(): void {
        this.hoverAt = undefined;
        this.onHover(undefined);
    }
}
