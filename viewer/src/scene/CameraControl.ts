// Turning, shifting and zooming with pointer, wheel and keys.
//   left button: turn; with Shift, or the middle or right button: shift; wheel: zoom to the pointer
//   arrows: turn; with Shift: shift; + and -: zoom
import type { Camera } from '../state/ViewState';
import { panned, turned, zoomed } from './Views';

/** Radians for a drag over the height of the picture. */
const TURN_PER_HEIGHT = Math.PI;
/** Factor of zoom for a pixel of the wheel: a notch has about 100. */
const ZOOM_PER_PIXEL = 1.0015;
const KEY_TURN = Math.PI / 24;
const KEY_SHIFT = 0.1;
const KEY_ZOOM = 1.2;

export class CameraControl {
    private drag?: { pointer: number; x: number; y: number; shifts: boolean };
    private readonly ending = new AbortController();

    constructor(
        private readonly element: HTMLElement,
        private readonly move: (change: (camera: Camera) => Camera) => void,
    ) {
        const options = { signal: this.ending.signal };
        element.style.touchAction = 'none';
        element.addEventListener('pointerdown', (event) => this.begin(event), options);
        element.addEventListener('pointermove', (event) => this.follow(event), options);
        element.addEventListener('pointerup', () => (this.drag = undefined), options);
        element.addEventListener('pointercancel', () => (this.drag = undefined), options);
        element.addEventListener('contextmenu', (event) => event.preventDefault(), options);
        element.addEventListener('wheel', (event) => this.wheel(event), { ...options, passive: false });
        element.addEventListener('keydown', (event) => this.key(event), options);
    }

    dispose(): void {
        this.ending.abort();
    }

    private begin(event: PointerEvent): void {
        this.element.setPointerCapture(event.pointerId);
        this.drag = {
            pointer: event.pointerId,
            x: event.clientX,
            y: event.clientY,
            shifts: event.button !== 0 || event.shiftKey,
        };
    }

    private follow(event: PointerEvent): void {
        if (!this.drag || this.drag.pointer !== event.pointerId) return;
        const height = this.element.clientHeight || 1;
        const right = (event.clientX - this.drag.x) / height;
        const down = (event.clientY - this.drag.y) / height;
        [this.drag.x, this.drag.y] = [event.clientX, event.clientY];
        const { shifts } = this.drag;
        this.move((camera) =>
            shifts
                ? panned(camera, 2 * right, 2 * down)
                : turned(camera, TURN_PER_HEIGHT * right, TURN_PER_HEIGHT * down),
        );
    }

    private wheel(event: WheelEvent): void {
        event.preventDefault();
        const box = this.element.getBoundingClientRect();
        const right = (2 * (event.clientX - box.left) - box.width) / box.height;
        const down = (2 * (event.clientY - box.top) - box.height) / box.height;
        const pixels = event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? event.deltaY : 33 * event.deltaY;
        this.move((camera) => zoomed(camera, ZOOM_PER_PIXEL ** -pixels, right, down));
    }

    private key(event: KeyboardEvent): void {
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        const direction = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] }[event.key];
        const zoom = { '+': KEY_ZOOM, '=': KEY_ZOOM, '-': 1 / KEY_ZOOM }[event.key];
        if (!direction && !zoom) return;
        event.preventDefault();
        event.stopPropagation();
        this.move((camera) => {
            if (zoom) return zoomed(camera, zoom);
            const [right, down] = direction!;
            return event.shiftKey
                ? panned(camera, KEY_SHIFT * right, KEY_SHIFT * down)
                : turned(camera, KEY_TURN * right, KEY_TURN * down);
        });
    }
}
