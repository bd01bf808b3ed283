import { describe, expect, test } from 'vitest';
import { addressOf, stateOfAddress } from '../../../src/state/ViewAddress';
import { DEFAULT_STATE, type ViewState } from '../../../src/state/ViewState';

/** Every part differs from what a page begins with. */
const CHANGED: Required<ViewState> = {
    field: 'S1',
    face: 'viewed',
    average: 'element',
    bands: false,
    bandCount: 7,
    colourMap: 'cividis',
    limits: [-1.25e6, 3e7],
    logarithmic: true,
    flags: false,
    unitFactor: 1e6,
    unitName: 'MPa',
    deformed: false,
    scale: 12.5,
    animated: true,
    undeformedOutline: true,
    edges: 'free',
    showLoads: true,
    showPressures: true,
    showLineLoads: true,
    showInertia: true,
    showSupports: true,
    showQuads: false,
    showTris: false,
    showBeams: false,
    hiddenThicknesses: [0, 3],
    hiddenSections: [2],
    clip: { normal: [0, 0.6, -0.8], offset: 0.25 },
    box: [-1, -2, -3, 1, 2, 3.5],
    parallel: false,
    camera: { position: [1, 2, 3], focalPoint: [0.1, -0.2, 0], viewUp: [0, 0, 1], parallelScale: 17.25 },
    dark: true,
    language: 'zh',
};

describe('the address of a view', () => {
    test('is empty where nothing differs', () => {
        expect(addressOf(DEFAULT_STATE)).toBe('');
        expect(stateOfAddress('')).toEqual(DEFAULT_STATE);
    });

    test('has only what differs', () => {
        expect(addressOf({ ...DEFAULT_STATE, field: 'SX', limits: [0, 2e6] })).toBe('v=1&field=SX&limits=0,2000000');
    });

    test('gives back every part of the state', () => {
        const address = addressOf(CHANGED);
        for (const key of Object.keys(CHANGED)) {
            expect(address).toContain(`&${key === 'unitFactor' ? 'unit' : key}=`);
        }
        expect(stateOfAddress(`#${address}`)).toEqual(CHANGED);
    });

    test('gives back each part alone', () => {
        for (const key of Object.keys(CHANGED) as (keyof ViewState)[]) {
            const state = { ...DEFAULT_STATE, [key]: CHANGED[key] };
            expect(stateOfAddress(addressOf(state))).toEqual(state);
        }
    });

    test('gives back a state that differs from that of a packet', () => {
        for (const state of [CHANGED, DEFAULT_STATE]) {
            const initial = { ...DEFAULT_STATE, ...CHANGED, field: 'RX', hiddenThicknesses: [9] } as ViewState;
            expect(stateOfAddress(addressOf(state, initial), initial)).toEqual(state);
        }
    });

    test('may name any unit', () => {
        const state = { ...DEFAULT_STATE, unitFactor: 1e6, unitName: 'N/mm² & more' };
        expect(stateOfAddress(addressOf(state))).toEqual(state);
        expect(stateOfAddress('unit=0&unitName=longer+than+sixteen')).toEqual(DEFAULT_STATE);
    });

    test('is a text that needs no escapes', () => {
        expect(addressOf(CHANGED)).toMatch(/^[\w&=.,+-]+$/);
        expect(new URL(`file:///results.html#${addressOf(CHANGED)}`).hash).toBe(`#${addressOf(CHANGED)}`);
    });

    test('places the camera with seven digits', () => {
        const camera = { ...CHANGED.camera, position: [1 / 3, -2e-9 / 3, 1e6 / 3] as [number, number, number] };
        const address = addressOf({ ...DEFAULT_STATE, camera });
        expect(address).toContain('camera=0.3333333,-6.666667e-10,333333.3,');
        expect(stateOfAddress(address).camera?.position).toEqual([0.3333333, -6.666667e-10, 333333.3]);
    });

    test('may have keys of another version', () => {
        expect(stateOfAddress('v=2&novelty=7&field=SX&constructor=1&__proto__=1')).toEqual({
            ...DEFAULT_STATE,
            field: 'SX',
        });
    });

    test.each([
        'field=SQ',
        'face=',
        'bands=yes',
        'bandCount=0',
        'bandCount=2.5',
        'bandCount=1e9',
        'limits=1',
        'limits=3,2',
        'limits=1,x',
        'limits=,',
        'scale=-1',
        'scale=Infinity',
        'hiddenSections=-1',
        'hiddenSections=1.5',
        'clip=0,0,0,0.5',
        'clip=1,0,0,2',
        'clip=1,0,0',
        'box=1,0,0,0,1,1',
        'camera=1,2,3',
        'camera=0,0,0,0,0,0,0,0,1,0',
        'language=xx',
        'nonsense',
        '&&&==',
        '%E0%A4%A',
    ])('with "%s", which makes no sense, is that without it', (text) => {
        expect(stateOfAddress(text)).toEqual(DEFAULT_STATE);
    });
});
