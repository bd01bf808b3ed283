import { readFile } from 'node:fs/promises';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { colourAt, COLOUR_MAPS } from '../../src/model/ColourScale';
import { encodePacket } from '../../src/model/Packet';
import { STRESS_COLUMNS, type Result } from '../../src/model/Result';
import { numberText } from '../../src/ui/Numbers';
import { withLoads } from '../unit/support/Results';
import {
    Bench,
    colouredPixels,
    CONTOUR_NAME,
    contourFile,
    legend,
    pixelsOf,
    placeWithValue,
    resultOf,
    settled,
    shown,
    type Pixels,
} from './Page';

const SE = 6;
let bench: Bench;
let panel: Result;

beforeAll(async () => {
    bench = await Bench.begin();
    panel = await resultOf('stiffened_panel');
});
afterAll(() => bench.end());

/** Of the column of all vertices: what the legend says of the field. */
function largest(column: number, ...faces: Float32Array[]): number {
    let max = -Infinity;
    for (const face of faces) {
        for (let i = column; i < face.length; i += STRESS_COLUMNS) max = Math.max(max, face[i]);
    }
    return max;
}

test('a page with a packet shows it: the legend has its largest value', async () => {
    const page = await bench.open(panel);
    await shown(page);
    const text = await legend(page);
    expect(text).toContain('Equivalent stress SE, larger face, nodal average');
    expect(text).toContain(`max ${numberText(largest(SE, panel.positiveFace, panel.negativeFace))}`);
    expect(await page.title()).toBe('stiffened_panel – tarnvexo');
    await page.close();
});

test('another field and face are chosen by their controls, and stand in the address', async () => {
    const page = await bench.open(panel);
    await shown(page);
    await page.getByLabel('Field', { exact: true }).selectOption('SX');
    await page.getByText('Negative', { exact: true }).click();
    await expect.poll(() => legend(page)).toContain('Stress SX, negative face');
    expect(await legend(page)).toContain(`max ${numberText(largest(0, panel.negativeFace))}`);
    await expect.poll(() => page.url()).toContain('field=SX&face=negative');
    await page.close();
});

test('the value at a node under the pointer is the one of the file, and a click keeps all its values', async () => {
    const page = await bench.open(panel, '#v=1&face=positive');
    await shown(page);
    const at = await placeWithValue(page);
    const tip = await page.locator('.tooltip').innerText();
    const value = /at the node (\S+)/.exec(tip)![1];
    const node = Number(/node (\d+)(?: of beam \d+)? {3}/.exec(tip)![1]);
    const isWall = / of beam (\d+)/.exec(tip);
    const number = isWall ? panel.beams.nodeBegin[Number(isWall[1])] + node : node;
    const values: string[] = [];
    panel.vertexNodes.forEach((of, vertex) => {
        if (of === number) values.push(numberText(panel.positiveFace[STRESS_COLUMNS * vertex + SE]));
    });
    expect(values).toContain(value);

    await page.mouse.click(...at);
    const cells = await page.locator('.probe-table tbody td').allInnerTexts();
    expect(cells[3]).toBe(value);
    expect(cells.slice(4, 7)).toEqual(
        [...panel.coordinates.subarray(3 * number, 3 * number + 3)].map((x) => numberText(x)),
    );
    expect(cells[4 + 3 + 6 + SE]).toBe(value);
    await page.close();
});

test('a clip plane takes away a part of the picture, and the rest is fitted into it', async () => {
    const page = await bench.open(panel, '#v=1&flags=0');
    await shown(page);
    const count = async (): Promise<number> =>
        colouredPixels(await pixelsOf(page, await page.locator('.picture').screenshot()));
    await expect.poll(count).toBeGreaterThan(0.03 * 1100 * 760);
    const whole = await count();
    await page.keyboard.press('p');
    await expect.poll(async () => Math.abs((await count()) / whole - 0.5)).toBeLessThan(0.3);
    const half = await count();
    await page.keyboard.press('f');
    await expect.poll(count).toBeGreaterThan(1.2 * half);
    await page.close();
});

test('pressures, line loads and inertia moments are switched on in the panel, drawn, and told in the legend', async () => {
    const quads = Uint32Array.from({ length: panel.shellQuads }, (_, i) => i);
    const loaded = withLoads(panel, {
        quads,
        quadPressures: new Float32Array(4 * quads.length).fill(-2500),
        beams: Uint32Array.of(0),
        lineLoads: Float32Array.of(10, 30),
        lineDirections: Float32Array.of(0, 0, -1),
    });
    loaded.model!.inertiaForces = new Float32Array(6 * panel.structureNodes).fill(4, 4, 5);
    const page = await bench.open(loaded, '#v=1&flags=0&field=none');
    await shown(page);
    /** Red, much less green, no blue, in whatever light. */
    const orange = async (): Promise<number> => {
        const { data } = await pixelsOf(page, await page.locator('.scene').screenshot());
        let count = 0;
        for (let i = 0; i < data.length; i += 4) {
            if (data[i] > 120 && data[i + 1] > 0.35 * data[i] && data[i + 1] < 0.6 * data[i] && data[i + 2] < 20)
                ++count;
        }
        return count;
    };
    expect(await orange()).toBe(0);
    await page.getByLabel('Pressures').check();
    await expect.poll(() => legend(page)).toContain('pressures, -2500');
    await expect.poll(orange).toBeGreaterThan(500);
    await page.getByLabel('Line loads').check();
    await page.getByLabel('Inertia loads').check();
    await expect.poll(() => legend(page)).toContain('line loads, 10 to 30');
    expect(await legend(page)).toContain('inertia moments, largest 4');
    await expect.poll(() => page.url()).toContain('showPressures=1&showLineLoads=1&showInertia=1');
    // Those of elements that are hidden go with them; that of the legend stays.
    await page.getByLabel(/^Quad/).uncheck();
    await expect.poll(orange).toBeLessThan(100);
    expect(await page.getByLabel('Nodal forces and moments').isDisabled()).toBe(true);
    await page.close();
});

/** Whether a column of the picture has runs of these colours, from top to bottom, of at least so many pixels. */
function hasBar({ width, height, data }: Pixels, colours: number[][], run: number): boolean {
    for (let x = 0; x < width; ++x) {
        let next = 0;
        let seen = 0;
        for (let y = 0; y < height && next < colours.length; ++y) {
            const i = 4 * (y * width + x);
            const isNext = colours[next].every((part, axis) => Math.abs(part - data[i + axis]) <= 1);
            seen = isNext ? seen + 1 : 0;
            if (seen === run) {
                ++next;
                seen = 0;
            }
        }
        if (next === colours.length) return true;
    }
    return false;
}

test('a saved picture has the structure and the bar of the legend with a colour for each band', async () => {
    const page = await bench.open(panel, '#v=1&bandCount=8');
    await shown(page);
    await page.getByLabel('Size').selectOption('1280 × 720');
    const [download] = await Promise.all([
        page.waitForEvent('download'),
        page.getByRole('button', { name: 'Save PNG' }).click(),
    ]);
    const pixels = await pixelsOf(page, await readFile((await download.path())!));
    expect([pixels.width, pixels.height]).toEqual([1280, 720]);
    expect(colouredPixels(pixels)).toBeGreaterThan(0.03 * 1280 * 720);
    const bands = Array.from({ length: 8 }, (_, i) => colourAt(COLOUR_MAPS[0], (7.5 - i) / 8));
    const colours = bands.map((colour) => colour.map((part) => Math.round(255 * part)));
    expect(hasBar(pixels, colours, 20)).toBe(true);
    await page.close();
});

test('a damaged file that is dropped gives its message: place, what was expected, what to do', async () => {
    const page = await bench.open();
    const text = new TextDecoder().decode(await contourFile('stiffened_panel')).split('\n');
    text[20] = text[20].replace(',', ';');
    const transfer = await page.evaluateHandle(
        ([content, name]) => {
            const data = new DataTransfer();
            data.items.add(new File([content], name, { type: 'text/plain' }));
            return data;
        },
        [text.join('\n'), CONTOUR_NAME],
    );
    await page.dispatchEvent('#app', 'drop', { dataTransfer: transfer });
    const alert = page.getByRole('alert');
    await alert.waitFor();
    const message = await alert.innerText();
    expect(message).toMatch(/Tarn\+Vexo_AverageStrs\.txt:21:\d+: error: /);
    expect(message).toContain('expected');
    expect(message).toContain('to do');
    await page.getByRole('button', { name: 'Close' }).click();
    expect(await page.getByText(`Drop ${CONTOUR_NAME} here`).isVisible()).toBe(true);
    await page.close();
});

test('a file that is opened is shown, also from a page of a file', async () => {
    const page = await bench.open();
    const buffer = Buffer.from(await contourFile('stiffened_panel'));
    await page.setInputFiles('input[type=file]', { name: CONTOUR_NAME, mimeType: 'text/plain', buffer });
    await shown(page);
    expect(await legend(page)).toContain(`max ${numberText(largest(SE, panel.positiveFace, panel.negativeFace))}`);
    await page.close();
});

test('a file that is opened while the packet is on its way stays', async () => {
    const packet = Buffer.from(await encodePacket({ result: await resultOf('folds') }));
    const { address, server } = await bench.serve(packet);
    const page = await bench.openAddress('about:blank');
    let arrive = (): void => undefined;
    const isOpened = new Promise<void>((resolve) => (arrive = resolve));
    await page.route('**/packet', async (route) => {
        await isOpened;
        await route.fulfill({ body: packet }).catch(() => undefined); // the page does not wait for it any more
    });
    await page.goto(address);
    const buffer = Buffer.from(await contourFile('stiffened_panel'));
    await page.setInputFiles('input[type=file]', { name: CONTOUR_NAME, mimeType: 'text/plain', buffer });
    await shown(page);
    arrive();
    await page.waitForTimeout(1000);
    expect(await page.title()).toBe(`${CONTOUR_NAME} – tarnvexo`);
    await page.close();
    server.close();
});

test('a browser that does not let the page read files away from its own thread is told of in words', async () => {
    const page = await bench.open();
    await page.evaluate(() => {
        window.Worker = class extends EventTarget {
            onerror: (event: { message?: string }) => void = () => undefined;
            postMessage(): void {
                setTimeout(() => this.onerror({ message: '' }));
            }
            terminate(): void {}
        } as unknown as typeof Worker;
    });
    const buffer = Buffer.from(await contourFile('stiffened_panel'));
    await page.setInputFiles('input[type=file]', { name: CONTOUR_NAME, mimeType: 'text/plain', buffer });
    const alert = page.getByRole('alert');
    await alert.waitFor();
    const message = await alert.innerText();
    expect(message).toContain(`${CONTOUR_NAME}: error: the part of the page that reads files has failed`);
    expect(message).toMatch(/expected[^]*to do/);
    await page.close();
});

test('a damaged packet in the page gives its message', async () => {
    const page = await bench.open(panel);
    await shown(page);
    const address = page.url().replace(/#.*/, '');
    await page.close();
    const file = new URL(address);
    const html = await readFile(file, 'utf8');
    const { writeFile } = await import('node:fs/promises');
    await writeFile(file, html.replace(/(id="result">.{400}).{40}/, '$1'));
    const damaged = await bench.openAddress(address);
    await damaged.getByRole('alert').waitFor();
    expect(await damaged.getByRole('alert').innerText()).toContain('result packet: error:');
    await damaged.close();
});

test('two clicks with the tool for cuts give a graph of the field over the length of the line', async () => {
    const page = await bench.open(panel);
    await shown(page);
    await page.keyboard.press('c');
    const box = (await page.locator('.scene').boundingBox())!;
    await page.mouse.click(box.x + 20, box.y + 0.45 * box.height);
    await page.mouse.click(box.x + 0.75 * box.width, box.y + 0.55 * box.height);
    await page.locator('.chart polyline').first().waitFor();
    expect(await page.locator('.chart svg').getAttribute('aria-label')).toContain('Equivalent stress SE');
    const [download] = await Promise.all([
        page.waitForEvent('download'),
        page.getByRole('button', { name: 'Save CSV' }).click(),
    ]);
    const lines = (await readFile((await download.path())!, 'utf8')).trim().split('\n');
    expect(lines[0]).toBe('piece,length,"Equivalent stress SE, larger face, nodal average"');
    expect(lines.length).toBeGreaterThan(5);
    // Titles of both axes, with units.
    const labels = await page.locator('.chart text.quiet').allTextContents();
    expect(labels).toEqual(['arc length (unit of the model)', 'SE (unit of the model)']);
    await page.close();
});

test('a number that is not there is refused in words, one that is there is gone to', async () => {
    const page = await bench.open(panel);
    await shown(page);
    await page.keyboard.press('/');
    await page.keyboard.type('99999999');
    await page.keyboard.press('Enter');
    const box = page.locator('.search input');
    const refusal = await box.evaluate((input: HTMLInputElement) => input.validationMessage);
    expect(refusal).toBe(`Node 99999999 is not in this result: 0 to ${panel.structureNodes - 1}`);
    const before = page.url();
    await box.fill('3');
    await page.keyboard.press('Enter');
    await expect.poll(() => page.url()).not.toBe(before);
    const cells = await page.locator('.probe-table tbody tr').first().locator('td').allInnerTexts();
    expect(cells[1]).toBe('3');
    const found = [...panel.vertexNodes.keys()].filter((vertex) => panel.vertexNodes[vertex] === 3);
    const larger = (vertex: number): number =>
        Math.max(...[panel.positiveFace, panel.negativeFace].map((face) => face[STRESS_COLUMNS * vertex + SE]));
    expect(found.map((vertex) => numberText(larger(vertex)))).toContain(cells[3]);
    await page.close();
});

test('an address that is typed is followed, and what it says wrongly is told until it is right', async () => {
    const page = await bench.open(panel);
    await shown(page);
    const notice = page.locator('.notice');
    await page.evaluate(() => (location.hash = 'v=1&fild=SX&field=U&view=top'));
    await expect.poll(() => legend(page)).toContain('Displacement U');
    expect(await notice.innerText()).toContain('fild=SX');
    await expect.poll(() => page.url()).toContain('camera=');
    await page.evaluate(() => (location.hash = 'v=1&field=SX'));
    await expect.poll(() => legend(page)).toContain('Stress SX');
    expect(await notice.isVisible()).toBe(false);
    await page.close();
});

test('a window of another size is fitted anew, unless the user has moved the structure', async () => {
    const page = await bench.open(panel);
    await shown(page);
    const half = (): number => Number(/camera=([^&]*)/.exec(page.url())?.[1].split(/,|%2C/).pop());
    await expect.poll(half).toBeGreaterThan(0);
    const before = half();
    await page.setViewportSize({ width: 700, height: 760 });
    await expect.poll(half).toBeGreaterThan(1.1 * before);
    const fitted = await settled(half);
    await page.locator('.scene').focus();
    await page.keyboard.press('+');
    await expect.poll(half).toBeLessThan(fitted);
    const moved = await settled(half);
    await page.setViewportSize({ width: 1100, height: 760 });
    expect(await settled(half)).toBe(moved);
    await page.close();
});

test('the page speaks the language that is chosen, and says so', async () => {
    const page = await bench.open(panel);
    await shown(page);
    await page.getByLabel('Language').selectOption('zh');
    await expect.poll(() => page.locator('html').getAttribute('lang')).toBe('zh-Hans');
    expect(await legend(page)).toContain('等效应力 SE');
    expect(await page.getByLabel('场量').count()).toBe(1);
    await page.close();
});

test('keys turn the structure and open a help that Esc closes', async () => {
    const page = await bench.open(panel);
    await shown(page);
    await expect.poll(() => page.url()).toContain('camera=');
    const before = page.url();
    await page.keyboard.press('ArrowLeft');
    await expect.poll(() => page.url()).not.toBe(before);
    await page.keyboard.press('?');
    await page.getByRole('dialog').waitFor();
    await page.keyboard.press('Escape');
    await page.getByRole('dialog').waitFor({ state: 'hidden' });
    await page.close();
});

test('every control has a name', async () => {
    const page = await bench.open(panel);
    await shown(page);
    const nameless = await page.evaluate(() =>
        [...document.querySelectorAll<HTMLInputElement>('#app input:not([type=file]), #app select, #app button')]
            .filter((control) => {
                const label = control.getAttribute('aria-label') ?? control.labels?.[0]?.textContent ?? '';
                return (label || (control.tagName === 'BUTTON' ? control.textContent : '')) === '';
            })
            .map((control) => control.outerHTML),
    );
    expect(nameless).toEqual([]);
    await page.close();
});

test('a served page posts the picture that its address asks for, in that size', async () => {
    const { address, posted, server } = await bench.serve(await encodePacket({ result: panel }));
    const page = await bench.openAddress(`${address}#v=1&field=U&picture=900x500`, { width: 400, height: 300 });
    const { to, body } = await posted;
    expect(to === '/word/error' ? body.toString() : to).toBe('/word/picture');
    const pixels = await pixelsOf(page, body);
    expect([pixels.width, pixels.height]).toEqual([900, 500]);
    expect(colouredPixels(pixels)).toBeGreaterThan(0.03 * 900 * 500);
    await page.close();
    server.close();
});

test('a served page that cannot draw posts why', async () => {
    const { address, posted, server } = await bench.serve(new Uint8Array(100));
    const page = await bench.openAddress(`${address}#picture=900x500`);
    const { to, body } = await posted;
    expect(to).toBe('/word/error');
    expect(body.toString()).toContain('result packet: error:');
    await page.close();
    server.close();
});
