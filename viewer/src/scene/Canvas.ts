// The canvas of the picture: its size, its camera, and when it is drawn.
import '@kitware/vtk.js/Rendering/OpenGL/Actor';
import '@kitware/vtk.js/Rendering/OpenGL/Camera';
import '@kitware/vtk.js/Rendering/OpenGL/PolyDataMapper';
import '@kitware/vtk.js/Rendering/OpenGL/Renderer';
import vtkRenderer from '@kitware/vtk.js/Rendering/Core/Renderer';
import vtkRenderWindow from '@kitware/vtk.js/Rendering/Core/RenderWindow';
import vtkOpenGLRenderWindow from '@kitware/vtk.js/Rendering/OpenGL/RenderWindow';
import type { Camera } from '../state/ViewState';
import { diagonal, type Bounds } from './Motion';
import type { MotionActor } from './MotionActor';
import { Projection, VIEW_ANGLE } from './Projection';
import { minus, scaled } from './Vectors';

/** Milliseconds that a picture waits for graphics that the browser has taken away. */
const PATIENCE = 10_000;

export class Canvas {
    /** Called before the picture is drawn. */
    beforeDrawing: () => void = () => {};
    /** Called when the picture has another size, before it is drawn in it. */
    afterResize: () => void = () => {};
    /** Called after the picture was drawn. */
    afterDrawing: () => void = () => {};

    /** Milliseconds until the last picture was through, which goes on after drawNow. */
    drawingTime = 0;

    private readonly renderer = vtkRenderer.newInstance();
    private readonly window = vtkRenderWindow.newInstance();
    private readonly observer: ResizeObserver;
    private view!: vtkOpenGLRenderWindow;
    private requested = 0;
    private pixelRatio = 1;
    private lastBegin = 0;

    constructor(readonly container: HTMLElement) {
        this.window.addRenderer(this.renderer);
        this.renderer.getActiveCamera().setViewAngle(VIEW_ANGLE);
        this.addView();
        this.observer = new ResizeObserver(() => {
            this.fillContainer();
            this.afterResize();
            this.drawNow();
        });
        this.observer.observe(container);
    }

    dispose(): void {
        this.observer.disconnect();
        cancelAnimationFrame(this.requested);
        this.removeView();
        this.window.delete();
        this.renderer.delete();
    }

    /** CSS pixels; never 0. */
    get size(): [number, number] {
        return [this.container.clientWidth || 1, this.container.clientHeight || 1];
    }

    get element(): HTMLCanvasElement {
        return this.view.getCanvas()!;
    }

    add(actor: MotionActor): void {
        this.renderer.addActor(actor.actor);
    }

    setBackground(red: number, green: number, blue: number): void {
        this.renderer.setBackground(red, green, blue, 1);
    }

    /** box: whatever is drawn is within. */
    setCamera(camera: Camera, parallel: boolean, box: Bounds): void {
        const vtkCamera = this.renderer.getActiveCamera();
        const { forward } = new Projection(camera, parallel, 1, 1);
        // Parallel rays have no beginning: the eye must not cut off what is nearer when one has come close.
        const eye = parallel ? minus(camera.position, scaled(forward, 2 * diagonal(box))) : camera.position;
        vtkCamera.setParallelProjection(parallel);
        vtkCamera.setPosition(...(eye as [number, number, number]));
        vtkCamera.setFocalPoint(...camera.focalPoint);
        vtkCamera.setViewUp(...camera.viewUp);
        vtkCamera.setParallelScale(camera.parallelScale);
        this.renderer.resetCameraClippingRange(box);
    }

    /** Draws once before the next picture is shown, however often it is asked for. */
    draw(): void {
        if (this.requested) return;
        this.requested = requestAnimationFrame(() => this.drawNow());
    }

    drawNow(): void {
        cancelAnimationFrame(this.requested);
        this.requested = 0;
        const begin = performance.now();
        this.beforeDrawing();
        this.window.render();
        this.afterDrawing();
        // The browser asks for no further picture before the last but one is through.
        requestAnimationFrame(() =>
            requestAnimationFrame(() => {
                if (begin === this.lastBegin) this.drawingTime = performance.now() - begin;
            }),
        );
        this.lastBegin = begin;
    }

    /**
     * Until the browser has given back graphics that it took away, as it does when their process fails or the card
     * is wanted elsewhere. Rejected where it does not in time.
     */
    async whenDrawable(): Promise<void> {
        const end = performance.now() + PATIENCE;
        while (this.graphics()?.isContextLost()) {
            if (performance.now() > end) throw new Error('the browser has taken the graphics away: load the page anew');
            await new Promise((resolve) => setTimeout(resolve, 50));
        }
    }

    /** Throws where the graphics card cannot draw so large a picture. */
    requireSize(width: number, height: number): void {
        const gl = this.graphics()!;
        const limit = gl.getParameter(gl.MAX_RENDERBUFFER_SIZE) as number;
        if (!(width >= 1 && height >= 1 && Math.max(width, height) <= limit)) {
            throw new RangeError(`picture of ${width} x ${height} pixels: from 1 to ${limit} pixels are possible`);
        }
    }

    /** A copy of the picture in another size, in pixels. drawn: called before the picture of the page is drawn again. */
    copy(width: number, height: number, drawn: () => void): HTMLCanvasElement {
        const copy = document.createElement('canvas');
        [copy.width, copy.height] = [Math.round(width), Math.round(height)];
        this.view.setSize(copy.width, copy.height);
        this.drawNow();
        // Within the same task, while the drawing still stands in the canvas.
        copy.getContext('2d')!.drawImage(this.element, 0, 0);
        drawn();
        this.fillContainer();
        this.drawNow();
        return copy;
    }

    /** A view with a canvas of its own, below all else in the container. */
    private addView(): void {
        this.view = vtkOpenGLRenderWindow.newInstance();
        this.window.addView(this.view);
        this.view.setContainer(this.container);
        this.container.prepend(this.element);
        this.element.addEventListener('webglcontextrestored', () => this.renewView());
        this.fillContainer();
    }

    private removeView(): void {
        this.window.removeView(this.view);
        this.view.setContainer(null as unknown as HTMLElement);
        this.view.delete();
    }

    /** Graphics that come back are empty, and the library keeps using what it had made of those before. */
    private renewView(): void {
        this.removeView();
        this.addView();
        this.drawNow();
    }

    private fillContainer(): void {
        const [width, height] = this.size;
        this.pixelRatio = window.devicePixelRatio || 1;
        this.view.setSize(Math.round(width * this.pixelRatio), Math.round(height * this.pixelRatio));
        this.element.style.width = `${width}px`;
        this.element.style.height = `${height}px`;
    }

    /** The library has it, but does not declare it. There is none before the first drawing. */
    private graphics(): WebGL2RenderingContext | null {
        return (this.view as unknown as { getContext(): WebGL2RenderingContext | null }).getContext();
    }
}
