import { expect, test } from 'vitest';
import { findNumber } from '../../../src/ui/Search';
import { texts } from '../../../src/ui/Texts';
import { plateStrip, stiffenedPlate } from '../scene/models';

const english = texts('en');
const result = stiffenedPlate(4, 2, 3, 2);
const find = (kind: Parameters<typeof findNumber>[1], text: string) => findNumber(result, kind, text, english);

test('a node beyond those of the structure is refused, also where a section wall has one of that number', () => {
    const last = result.structureNodes - 1;
    expect(find('node', ` ${last} `)).toEqual({ number: last });
    expect(find('node', String(last + 1))).toEqual({
        refusal: `Node ${last + 1} is not in this result: 0 to ${last}`,
    });
});

test('a node of a section wall is found by its beam and its number within it', () => {
    const number = result.beams.nodeBegin[2] + 5;
    expect(find('node', '5 of beam 2')).toEqual({ number });
    expect(find('node', '2/5')).toEqual({ number });
    expect(find('node', '3/5')).toEqual({ refusal: 'Beam 3 is not in this result: 0 to 2' });
    expect(find('node', '2/999')).toMatchObject({ refusal: expect.stringContaining('Beam 2, Node 999') });
});

test('what is no number, or of a kind that is not there, is refused in words', () => {
    expect(find('quad', '1.5')).toEqual({ refusal: english.bar.noNumber });
    expect(findNumber(plateStrip(2, 2), 'beam', '0', english)).toEqual({ refusal: 'Beam: this result has none' });
});
