// The scene in a browser without a screen: what is drawn, and what is found under the pointer.
import { chromium, type Browser, type Page } from 'playwright-core';
import { createServer, type ViteDevServer } from 'vite';
import { afterAll, beforeAll, beforeEach, expect, test } from 'vitest';
import type { ViewState } from '../../src/state/ViewState';
import { BROWSER } from './Page';

const WIDTH = 400;
const HEIGHT = 300;

let server: ViteDevServer;
let browser: Browser;
let page: Page;
const faults: string[] = [];

beforeAll(async () => {
    server = await createServer({ configFile: false, logLevel: 'error', server: { port: 0, hmr: false } });
    await server.listen();
    browser = await chromium.launch(BROWSER);
    page = await browser.newPage({ viewport: { width: WIDTH, height: HEIGHT } });
    page.on('pageerror', (fault) => faults.push(String(fault)));
    page.on('console', (message) => {
        if (message.type() === 'error' && !message.location().url.endsWith('favicon.ico')) faults.push(message.text());
    });
    await page.goto(`${server.resolvedUrls!.local[0]}tests/browser/scene.html`);
    await page.waitForFunction(() => 'page' in window, null, { timeout: 60_000 });
});

afterAll(async () => {
    await browser?.close();
    await server?.close();
});

beforeEach(async () => {
    await page.evaluate(() => {
        const plain = {
            deformed: false,
            edges: 'none',
            face: 'viewed',
            field: 'SE',
            clip: undefined,
            dark: false,
        } as const;
        window.page.store.set({ ...plain, limits: [0, 10], bandCount: 2, bands: true });
        window.page.show(window.page.models.plateStrip(10, 6));
        window.page.scene.setStandardView('top');
    });
});

function set(state: Partial<ViewState>): Promise<void> {
    return page.evaluate((part) => window.page.store.set(part), state);
}

/** Red, green, blue of points of the picture, 0 to 255. */
async function colours(...points: [number, number][]): Promise<number[][]> {
    return page.evaluate(
        async ({ points, width, height }) => {
            const bitmap = await createImageBitmap(await window.page.scene.picture(width, height));
            const canvas = new OffscreenCanvas(width, height);
            const context = canvas.getContext('2d')!;
            context.drawImage(bitmap, 0, 0);
            return points.map(([x, y]) => Array.from(context.getImageData(x, y, 1, 1).data.subarray(0, 3)));
        },
        { points, width: WIDTH, height: HEIGHT },
    );
}

const LEFT: [number, number] = [120, 150];
const RIGHT: [number, number] = [280, 150];
const OUTSIDE: [number, number] = [5, 5];

test('bands have the colours of the map, the ground is white', async () => {
    const [left, right, outside] = await colours(LEFT, RIGHT, OUTSIDE);
    expect(outside).toEqual([255, 255, 255]);
    // viridis at a quarter and at three quarters: blue, green.
    expect(left[2]).toBeGreaterThan(left[1]);
    expect(right[1]).toBeGreaterThan(right[2]);
    expect((await colours([100, 120]))[0]).toEqual(left);
});

test('from below one sees the values of the negative face', async () => {
    await set({ limits: [0, 200], bandCount: 2 });
    const above = (await colours(LEFT))[0];
    await page.evaluate(() => window.page.scene.setStandardView('bottom'));
    const below = (await colours(LEFT))[0];
    expect(above[2]).toBeGreaterThan(above[1]);
    expect(below[1]).toBeGreaterThan(below[2]);
});

test('an element without a value has the colour of none', async () => {
    await page.evaluate(() => {
        const result = window.page.models.plateStrip(10, 6);
        result.positiveFace.fill(NaN);
        window.page.show(result);
        window.page.scene.setStandardView('top');
    });
    const [red, green, blue] = (await colours(LEFT))[0];
    expect(red).toBe(green);
    expect(green).toBe(blue);
});

test('what is cut away is not drawn, and the pointer goes through', async () => {
    await set({ clip: { normal: [1, 0, 0], offset: 0.5 } });
    const [left, right] = await colours(LEFT, RIGHT);
    expect(left).not.toEqual([255, 255, 255]);
    expect(right).toEqual([255, 255, 255]);
    const found = await page.evaluate(
        ([a, b]) => [window.page.scene.probe(...a) !== undefined, window.page.scene.probe(...b) !== undefined],
        [LEFT, RIGHT],
    );
    expect(found).toEqual([true, false]);
});

test('the pointer finds the element whose place it points to', async () => {
    const found = await page.evaluate(() => {
        const { scene } = window.page;
        const pixel = scene.project([7.5, 2.25, 0])!;
        return scene.probe(...pixel);
    });
    expect(found).toMatchObject({ kind: 'quad', element: 27, face: 'positive' });
    expect(found!.value).toBeCloseTo(7.5, 3);
});

test('the deformed surface is drawn where the pointer finds it', async () => {
    await set({ deformed: true, scale: 3 });
    await page.evaluate(() => window.page.scene.setStandardView('front'));
    const pixel = await page.evaluate(() => window.page.scene.projectNode(5)!.map(Math.round));
    const straight = await page.evaluate(() => window.page.scene.project([5, 0, 0])!.map(Math.round));
    expect(straight[1] - pixel[1]).toBeGreaterThan(10);
    // The plate is seen from its edge: a line, of which the edges are drawn.
    await set({ edges: 'free' });
    const column = await colours(
        ...Array.from({ length: 7 }, (_, i) => [pixel[0], pixel[1] - 3 + i] as [number, number]),
    );
    expect(column.some((colour) => colour[0] < 200)).toBe(true);
    expect((await colours(straight as [number, number]))[0]).toEqual([255, 255, 255]);
});

test('a picture has the size that was asked for, and the page keeps its own', async () => {
    const sizes = await page.evaluate(async () => {
        const canvas = document.querySelector('canvas')!;
        const before = [canvas.width, canvas.height];
        const bitmap = await createImageBitmap(await window.page.scene.picture(1600, 900));
        return { before, after: [canvas.width, canvas.height], picture: [bitmap.width, bitmap.height] };
    });
    expect(sizes.picture).toEqual([1600, 900]);
    expect(sizes.after).toEqual(sizes.before);
});

test('nothing is drawn again while nothing changes', async () => {
    const drawings = await page.evaluate(async () => {
        const { scene, drawn } = window.page;
        await drawn();
        let count = 0;
        scene.onDraw(() => ++count);
        for (let i = 0; i < 5; ++i) await drawn();
        return count;
    });
    expect(drawings).toBe(0);
});

test('an animation draws until it is ended', async () => {
    const drawings = await page.evaluate(async () => {
        const { scene, store, drawn } = window.page;
        let count = 0;
        scene.onDraw(() => ++count);
        store.set({ deformed: true, animated: true });
        for (let i = 0; i < 4; ++i) await drawn();
        const during = count;
        store.set({ animated: false });
        await drawn();
        count = 0;
        for (let i = 0; i < 4; ++i) await drawn();
        return { during, after: count };
    });
    expect(drawings.during).toBeGreaterThan(2);
    expect(drawings.after).toBe(0);
});

test('a drag turns the picture, and its end is told', async () => {
    const told = await page.evaluate(() => {
        const cameras: unknown[] = [];
        window.page.scene.onCamera((camera) => cameras.push(camera));
        (window as unknown as { cameras: unknown[] }).cameras = cameras;
        return cameras.length;
    });
    expect(told).toBe(0);
    await page.mouse.move(200, 150);
    await page.mouse.down();
    await page.mouse.move(240, 170, { steps: 3 });
    await page.mouse.up();
    await page.waitForFunction(() => (window as unknown as { cameras: unknown[] }).cameras.length > 0);
    const up = await page.evaluate(() => (window as unknown as { cameras: { viewUp: number[] }[] }).cameras[0].viewUp);
    // Seen from above with y upwards, a drag downwards brings the eye over y.
    expect(up[2]).toBeLessThan(-0.05);
});

test('the picture comes back when the process that draws has failed', async () => {
    const before = await colours(LEFT, RIGHT, OUTSIDE);
    const session = await browser.newBrowserCDPSession();
    const lost = page.evaluate(
        () => new Promise((resolve) => document.querySelector('canvas')!.addEventListener('webglcontextlost', resolve)),
    );
    await session.send('Browser.crashGpuProcess').catch(() => {}); // the process does not live to answer
    await lost;
    expect(await colours(LEFT, RIGHT, OUTSIDE)).toEqual(before);
});

test('neither the page nor the graphics card has a fault to tell', () => {
    expect(faults).toEqual([]);
});
