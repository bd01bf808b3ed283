import { expect, test } from 'vitest';
import { pictureOrder } from '../../../src/app/PictureMode';

test('the size of a picture stands in the address', () => {
    expect(pictureOrder('#v=1&field=SX&picture=1600x900')).toEqual({ width: 1600, height: 900 });
    expect(pictureOrder('#v=1&field=SX')).toBeUndefined();
});

test('a size that cannot be is refused with what is expected', () => {
    for (const size of ['0x900', '1600', '99999x10', '1600X900', '-1x5']) {
        expect(() => pictureOrder(`#picture=${size}`)).toThrow('expected: WIDTHxHEIGHT');
    }
});
