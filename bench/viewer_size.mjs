// How long the page of `tarnvexo view` takes for a large result, and what memory: once with the result in the page,
// once with its contour file opened in a page without a result. Chromium without a window, software graphics.
//
//     node bench/viewer_size.mjs RESULT [--program build/tarnvexo] [--model MODEL]
//
// Needs viewer/node_modules (make build) and Chromium (/usr/bin/chromium, or what CHROMIUM names).
import { execFileSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { existsSync, mkdtempSync, readFileSync, readdirSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { parseArgs } from 'node:util';

const { chromium } = createRequire(new URL('../viewer/package.json', import.meta.url))('playwright-core');
const ROOT = fileURLToPath(new URL('..', import.meta.url));
const CONTOUR_FILE = 'Tarn+Vexo_AverageStrs.txt';
const FRAMES = 20;
const FIELDS = ['SX', 'U', 'S1', 'SE'];
const SIZE = { width: 1400, height: 900 };

const { values: options, positionals } = parseArgs({
    allowPositionals: true,
    options: { program: { type: 'string', default: join(ROOT, 'build/tarnvexo') }, model: { type: 'string' } },
});
if (positionals.length !== 1) {
    console.error('usage: node bench/viewer_size.mjs RESULT [--program build/tarnvexo] [--model MODEL]');
    process.exit(2);
}
const contour = join(positionals[0], CONTOUR_FILE);
if (!existsSync(contour)) {
    console.error(`viewer_size.mjs: error: there is no ${contour}\n  to do: tarnvexo solve MODEL -o ${positionals[0]}`);
    process.exit(4);
}

const folder = mkdtempSync(join(tmpdir(), 'tarnvexo-viewer-size-'));
try {
    const withResult = join(folder, 'result.html');
    const model = options.model === undefined ? [] : ['--model', options.model];
    const packing = clock();
    execFileSync(options.program, ['view', positionals[0], ...model, '--quiet', '--out', withResult]);
    row('page made, s', packing());
    row('page, MB', statSync(withResult).size / 1e6);
    row('contour file, MB', statSync(contour).size / 1e6);

    const empty = join(folder, 'empty.html');
    writeFileSync(empty, withoutPacket(readFileSync(withResult, 'utf8')));
    console.log('\nresult in the page');
    await measure(withResult, async (page) => row('first picture, s from navigation', await pictureSince(page, 0)));
    console.log('\ncontour file opened in a page');
    await measure(empty, async (page) => {
        await page.locator('.start').waitFor();
        await page.evaluate(() => {
            const input = document.querySelector('input[type=file]');
            input.addEventListener('change', () => (window.openedAt = performance.now()), { capture: true });
        });
        await page.locator('input[type=file]').setInputFiles(contour);
        row('first picture, s from opening', await pictureSince(page, await page.evaluate(() => window.openedAt)));
    });
} finally {
    rmSync(folder, { recursive: true });
}

/** A browser of its own for each page, so that its memory is that of the page. */
async function measure(file, open) {
    const browser = await chromium.launch({
        executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
        args: ['--no-sandbox', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--ignore-gpu-blocklist'],
    });
    try {
        const page = await browser.newPage({ viewport: SIZE });
        page.setDefaultTimeout(300_000);
        await page.goto(pathToFileURL(file).href, { waitUntil: 'commit' });
        await open(page);
        row('peak memory after that, MB', memory());
        const turning = await page.evaluate(turn, FRAMES);
        row('frame while turning, ms: median', median(turning));
        row('frame while turning, ms: longest', Math.max(...turning));
        await page.waitForTimeout(3000);
        for (const field of FIELDS) row(`change of field to ${field}, s`, (await page.evaluate(change, field)) / 1000);
        row('peak memory at the end, MB', memory());
    } finally {
        await browser.close();
    }
}

/** Seconds until the result has been drawn. */
async function pictureSince(page, begin) {
    await page.waitForFunction(
        () =>
            document.querySelector('.start')?.hidden &&
            document.querySelector('canvas.overlay')?.getAttribute('aria-label')?.includes(','),
        undefined,
        { polling: 50 },
    );
    return ((await page.evaluate(shownAt)) - begin) / 1000;
}

/** When the drawing under way is through: pixels can be read only then. */
async function shownAt() {
    await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
    const gl = document.querySelector('.scene canvas').getContext('webgl2');
    gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
    return performance.now();
}

/** Milliseconds of each frame while an arrow key is held down. */
async function turn(frames) {
    const target = document.querySelector('.scene');
    const gl = document.querySelector('.scene canvas').getContext('webgl2');
    const times = [];
    for (let frame = 0; frame < frames; ++frame) {
        const begin = performance.now();
        target.dispatchEvent(new KeyboardEvent('keydown', { key: 'ArrowRight', bubbles: true }));
        await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
        gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
        times.push(performance.now() - begin);
    }
    return times;
}

/** Milliseconds until the values of the field stand on the structure. */
async function change(field) {
    const begin = performance.now();
    const parts = new URLSearchParams(location.hash.slice(1));
    parts.set('field', field);
    location.hash = parts.toString();
    await new Promise((resolve) => addEventListener('hashchange', resolve, { once: true }));
    await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
    const gl = document.querySelector('.scene canvas').getContext('webgl2');
    gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
    return performance.now() - begin;
}

/** Largest resident sets of this script's descendants, added up: the browser with all its processes. */
function memory() {
    const processes = readdirSync('/proc')
        .filter((name) => /^\d+$/.test(name))
        .flatMap((pid) => {
            try {
                const status = readFileSync(`/proc/${pid}/status`, 'utf8');
                const figure = (name) => Number(new RegExp(`^${name}:\\s+(\\d+)`, 'm').exec(status)?.[1] ?? 0);
                return [{ pid: Number(pid), parent: figure('PPid'), peak: figure('VmHWM') }];
            } catch {
                return []; // ended meanwhile
            }
        });
    const family = new Set([process.pid]);
    let before = 0;
    while (family.size > before) {
        before = family.size;
        for (const { pid, parent } of processes) if (family.has(parent)) family.add(pid);
    }
    return processes
        .filter(({ pid }) => family.has(pid) && pid !== process.pid)
        .reduce((sum, { peak }) => sum + peak / 1000, 0);
}

function withoutPacket(page) {
    const begin = page.lastIndexOf('<script type="application/x-tarnvexo-result"');
    return page.slice(0, begin) + page.slice(page.indexOf('</script>', begin) + '</script>'.length);
}

function clock() {
    const begin = performance.now();
    return () => (performance.now() - begin) / 1000;
}

function median(numbers) {
    const sorted = [...numbers].sort((a, b) => a - b);
    return sorted[sorted.length >> 1];
}

function row(name, value) {
    console.log(`  ${name.padEnd(36)} ${value.toPrecision(3).padStart(8)}`);
}
