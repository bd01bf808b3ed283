import { expect, test } from 'vitest';
import { faultsOf, standardViewOf, stateOfWords } from '../../../src/app/AddressWords';
import { defaultScale } from '../../../src/scene/Motion';
import { DEFAULT_STATE } from '../../../src/state/ViewState';
import { plateStrip } from '../scene/models';

const plate = plateStrip(4, 2);
const scaleOf = (address: string) => stateOfWords(address, DEFAULT_STATE, plate).scale;

test('a view has its name in the address, unless there is a camera; the last one counts', () => {
    expect(standardViewOf('#field=U&view=top')).toBe('top');
    expect(standardViewOf('view=top&view=left')).toBe('left');
    expect(standardViewOf('view=above')).toBeUndefined();
    expect(standardViewOf('view=top&camera=0,0,1,0,0,0,0,1,0,1')).toBeUndefined();
});

test('displacements are shown as a part of the size of the model, to scale, or so many times', () => {
    expect(scaleOf('deformed=10%25')).toBeCloseTo(2 * defaultScale(plate), 10);
    expect(scaleOf('deformed=true')).toBe(1);
    expect(scaleOf('deformed=20')).toBe(20);
});

test('displacements can be left out', () => {
    for (const text of ['off', '0', '0%25']) {
        expect(stateOfWords(`deformed=${text}`, DEFAULT_STATE, plate).deformed).toBe(false);
    }
});

test('words that make no sense change nothing, and a scale in the address has the last word', () => {
    expect(stateOfWords('deformed=much', DEFAULT_STATE, plate)).toEqual(DEFAULT_STATE);
    expect(scaleOf('deformed=20&scale=3')).toBe(3);
});

test('words and values that say nothing are named', () => {
    const address = '#v=1&fild=SX&view=above&deformed=10%25&face=upper&limits=2,1&picture=9x9&camera=';
    expect(faultsOf(address, plate)).toEqual(['fild=SX', 'view=above', 'face=upper', 'limits=2,1']);
    expect(faultsOf('v=1&deformed=much&&', plate)).toEqual(['deformed=much']);
});

test('what this result cannot show is named', () => {
    expect(faultsOf('field=thickness&average=element', plate)).toEqual(['field=thickness', 'average=element']);
});
