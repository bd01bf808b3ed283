import { expect, test } from 'vitest';
import { nodeName } from '../../../src/ui/Names';
import { texts } from '../../../src/ui/Texts';
import { stiffenedPlate } from '../scene/models';

test('nodes of section walls are named by their beam and number within it', () => {
    const result = stiffenedPlate(4, 2, 3, 2);
    const { nodeBegin } = result.beams;
    expect(nodeName(result, result.structureNodes - 1, texts('en'))).toBe(String(result.structureNodes - 1));
    for (let beam = 0; beam < 3; ++beam) {
        expect(nodeName(result, nodeBegin[beam], texts('en'))).toBe(`0 of beam ${beam}`);
        const last = nodeBegin[beam + 1] - 1;
        expect(nodeName(result, last, texts('en'))).toBe(`${last - nodeBegin[beam]} of beam ${beam}`);
    }
});
