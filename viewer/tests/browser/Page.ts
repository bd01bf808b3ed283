// The page as it is built, in a browser without a window, for tests.
import { mkdtemp, readFile, rm, writeFile } from 'node:fs/promises';
import { createServer, type Server } from 'node:http';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium, type Browser, type Page } from 'playwright-core';
import { build } from 'vite';
import { parseContourText } from '../../src/model/ContourText';
import { encodePacket } from '../../src/model/Packet';
import type { Result } from '../../src/model/Result';

const VIEWER = fileURLToPath(new URL('../..', import.meta.url));
const CASES = fileURLToPath(new URL('../../../tests/cases', import.meta.url));
export const CONTOUR_NAME = 'Tarn+Vexo_AverageStrs.txt';

/** Software graphics, so that pictures are the same on every machine; slow, but not taken for hung. */
export const BROWSER = {
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    args: [
        '--no-sandbox',
        '--use-angle=swiftshader',
        '--enable-unsafe-swiftshader',
        '--ignore-gpu-blocklist',
        '--disable-gpu-watchdog',
    ],
};

export async function contourFile(name: string): Promise<Uint8Array> {
    return readFile(join(CASES, name, 'expected', CONTOUR_NAME));
}

export async function resultOf(name: string): Promise<Result> {
    return { ...parseContourText(await contourFile(name), CONTOUR_NAME), title: name };
}

export class Bench {
    private constructor(
        private readonly browser: Browser,
        private readonly folder: string,
        readonly html: string,
    ) {}

    static async begin(): Promise<Bench> {
        const folder = await mkdtemp(join(tmpdir(), 'tarnvexo-page-'));
        await build({ root: VIEWER, logLevel: 'error', build: { outDir: folder, emptyOutDir: true } });
        return new Bench(await chromium.launch(BROWSER), folder, await readFile(join(folder, 'index.html'), 'utf8'));
    }

    async end(): Promise<void> {
        await this.browser.close();
        await rm(this.folder, { recursive: true });
    }

    /** The page of a file, with a packet of the result in it where one is given. */
    async open(result?: Result, hash = '', size = { width: 1100, height: 760 }): Promise<Page> {
        const packet = result && Buffer.from(await encodePacket({ result })).toString('base64');
        const file = join(this.folder, `page-${Math.random().toString(36).slice(2)}.html`);
        await writeFile(file, this.withElement(packet === undefined ? '' : `>${packet}`));
        return this.openAddress(pathToFileURL(file).href + hash, size);
    }

    async openAddress(address: string, size = { width: 1100, height: 760 }): Promise<Page> {
        const page = await this.browser.newPage({ viewport: size, locale: 'en-GB', colorScheme: 'light' });
        page.on('pageerror', (error) => {
            throw error;
        });
        await page.goto(address);
        return page;
    }

    /** Serves the page, its packet and what a page posts, as the program does. */
    async serve(packet: Uint8Array): Promise<{ address: string; posted: Promise<Posted>; server: Server }> {
        let take: (posted: Posted) => void;
        const posted = new Promise<Posted>((resolve) => (take = resolve));
        const server = createServer((request, response) => {
            const pieces: Buffer[] = [];
            request.on('data', (piece: Buffer) => pieces.push(piece));
            request.on('end', () => {
                if (request.method === 'POST') take({ to: request.url!, body: Buffer.concat(pieces) });
                else if (request.url === '/word/') response.setHeader('Content-Type', 'text/html; charset=utf-8');
                response.end(request.url === '/word/packet' ? packet : this.withElement(' data-packet="packet">'));
            });
        });
        await new Promise<void>((resolve) => server.listen(0, '127.0.0.1', resolve));
        const { port } = server.address() as { port: number };
        return { address: `http://127.0.0.1:${port}/word/`, posted, server };
    }

    private withElement(content: string): string {
        if (content === '') return this.html;
        const element = `<script type="application/x-tarnvexo-result" id="result"${content}</script>`;
        const place = this.html.lastIndexOf('</body>');
        return this.html.slice(0, place) + element + this.html.slice(place);
    }
}

export interface Posted {
    to: string;
    body: Buffer;
}

export async function shown(page: Page): Promise<void> {
    await page.locator('.start[hidden]').waitFor({ state: 'attached', timeout: 60_000 });
    await page.locator('canvas.overlay[aria-label*=","]').waitFor({ state: 'attached' });
}

/** What the legend says, in words. */
export async function legend(page: Page): Promise<string> {
    return (await page.locator('canvas.overlay').getAttribute('aria-label')) ?? '';
}

export interface Pixels {
    width: number;
    height: number;
    /** 4 per pixel. */
    data: number[] | Uint8Array;
}

/** Of a PNG, decoded by the browser. */
export async function pixelsOf(page: Page, png: Buffer): Promise<Pixels> {
    const decoded = await page.evaluate(async (base64) => {
        const bytes = Uint8Array.from(atob(base64), (character) => character.charCodeAt(0));
        const bitmap = await createImageBitmap(new Blob([bytes], { type: 'image/png' }));
        const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
        const context = canvas.getContext('2d')!;
        context.drawImage(bitmap, 0, 0);
        const { data } = context.getImageData(0, 0, bitmap.width, bitmap.height);
        let text = '';
        for (let i = 0; i < data.length; i += 8192) text += String.fromCharCode(...data.subarray(i, i + 8192));
        return { width: bitmap.width, height: bitmap.height, text: btoa(text) };
    }, png.toString('base64'));
    return { width: decoded.width, height: decoded.height, data: Buffer.from(decoded.text, 'base64') };
}

/** Pixels that are neither white, grey nor black: the structure in its colours, and the bar of the legend. */
export function colouredPixels({ data }: Pixels): number {
    let count = 0;
    for (let i = 0; i < data.length; i += 4) {
        const parts = [data[i], data[i + 1], data[i + 2]];
        if (Math.max(...parts) - Math.min(...parts) > 30) ++count;
    }
    return count;
}

/** A place on the structure, from the middle of the picture outwards, at which the page tells a value. */
export async function placeWithValue(page: Page): Promise<[number, number]> {
    const box = (await page.locator('.scene').boundingBox())!;
    const tells = async (at: [number, number], wait: number): Promise<boolean> => {
        await page.mouse.move(...at);
        await page.waitForTimeout(wait);
        return page.locator('.tooltip').isVisible();
    };
    for (const wait of [60, 600]) {
        for (let i = 0; i < 60; ++i) {
            const angle = 2.4 * i;
            const radius = 14 * Math.sqrt(i);
            const at: [number, number] = [
                box.x + 0.4 * box.width + radius * Math.cos(angle),
                box.y + box.height / 2 + radius * Math.sin(angle),
            ];
            // Again: what appeared may still have been of the place before.
            if ((await tells(at, wait)) && (await tells(at, 600))) return at;
        }
    }
    throw new Error('no value anywhere');
}

/** A value once it has stood still for a second. */
export async function settled(value: () => number): Promise<number> {
    let last: number;
    let now = value();
    do {
        last = now;
        await new Promise((resolve) => setTimeout(resolve, 1000));
        now = value();
    } while (now !== last);
    return now;
}
