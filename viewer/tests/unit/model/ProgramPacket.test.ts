// The program writes packets, the page reads them: each in its own language, so a page that the program has made is
// read here and compared with the files that it was made from.
import { execFileSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { afterAll, describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { parseOwnStressText } from '../../../src/model/OwnStressText';
import { decodePacketText } from '../../../src/model/Packet';
import { CONTOUR_FILE, REPOSITORY, caseFile, caseNames } from '../support/ContourTexts';

const OWN_FILE = 'Shell element node stress.txt';

/** Whoever names a program wants it tried; without one the tests of a viewer alone go on. */
const named = process.env.TARNVEXO_PROGRAM;
const program = named ?? join(REPOSITORY, 'build/tarnvexo');
const folder = mkdtempSync(join(tmpdir(), 'tarnvexo-packet-'));
afterAll(() => rmSync(folder, { recursive: true }));

describe.skipIf(named === undefined && !existsSync(program))('a page that the program has made', () => {
    test.each(caseNames())('of the case %s has the values of its files', async (name) => {
        const model = join(REPOSITORY, 'tests/cases', name);
        const file = join(folder, `${name}.html`);
        execFileSync(program, ['view', join(model, 'expected'), '--model', model, '--quiet', '--out', file]);
        const page = readFileSync(file, 'utf8');
        const packet = /<script [^>]*id="result">([^<]*)<\/script>\s*<\/body>/.exec(page)?.[1] ?? '';
        const { result } = await decodePacketText(packet);
        const expected = parseContourText(caseFile(name, CONTOUR_FILE), CONTOUR_FILE);
        const own = parseOwnStressText(caseFile(name, OWN_FILE), OWN_FILE, expected);
        const { model: facts, title, ...values } = result;
        const { title: _, ...expectedValues } = { ...expected, own };
        expect(title).not.toBe('');
        expect(values).toEqual(expectedValues);
        expect(facts?.quadThickness.length).toBe(expected.shellQuads);
        expect(facts?.inertiaForces.length).toBe(6 * expected.structureNodes);
        const text = readFileSync(join(model, 'fem_solving.txt'), 'latin1');
        const counted = (key: string) => Number(new RegExp(`${key}=\\s*(\\d+)`).exec(text)?.[1]);
        const loads = facts?.distributed;
        expect(loads?.quads.length).toBe(counted('NDL_S_4ND'));
        expect(loads?.tris.length).toBe(counted('NDL_S_3ND'));
        expect(loads?.beams.length).toBe(counted('NDL_B'));
    });
});
