import type { Clip, ViewState } from '../../state/ViewState';
import { button, make } from '../Dom';
import { check, choice, numberBox, section, slider, type Control } from '../Controls';
import { bounds } from '../../scene/Motion';
import type { PanelContext, PanelSection } from './PanelContext';

type Axis = 'x' | 'y' | 'z' | 'other';
const AXES: Record<'x' | 'y' | 'z', [number, number, number]> = { x: [1, 0, 0], y: [0, 1, 0], z: [0, 0, 1] };
export const DEFAULT_CLIP: Clip = { normal: [1, 0, 0], offset: 0.5 };

function axisOf({ normal }: Clip): Axis {
    for (const axis of ['x', 'y', 'z'] as const) {
        if (normal.every((component, i) => Math.abs(component) === AXES[axis][i])) return axis;
    }
    return 'other';
}

/** A plane that cuts the structure open, and a box outside which nothing is shown. */
export function clipSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    const clip = (state: Readonly<ViewState>): Clip => state.clip ?? DEFAULT_CLIP;
    const off = (state: Readonly<ViewState>): string | undefined => (state.clip ? undefined : t.clipOn);
    const change = (part: Partial<Clip>): void => store.set({ clip: { ...clip(store.state), ...part } });

    const plane: Control[] = [
        check(
            t.clipOn,
            (state) => state.clip !== undefined,
            (on) => store.set({ clip: on ? DEFAULT_CLIP : undefined }),
        ),
        choice<Axis>(
            t.normal,
            [
                ['x', 'X'],
                ['y', 'Y'],
                ['z', 'Z'],
            ],
            (state) => axisOf(clip(state)),
            (axis) => axis !== 'other' && change({ normal: AXES[axis] }),
            off,
        ),
        ...([0, 1, 2] as const).map((i) =>
            numberBox(
                ['nx', 'ny', 'nz'][i],
                (state) => clip(state).normal[i],
                (value) => {
                    const normal: [number, number, number] = [...clip(store.state).normal];
                    normal[i] = value;
                    // A plane needs a direction: the last component that is not zero stays.
                    if (normal.some((component) => component !== 0)) change({ normal });
                    else store.set({ clip: { ...clip(store.state) } });
                },
                { expected: t.numberExpected },
                off,
            ),
        ),
        slider(
            t.offset,
            (state) => clip(state).offset,
            (offset) => change({ offset }),
            { min: 0, max: 1, step: 0.002, text: (offset) => `${(100 * offset).toFixed(1)} %` },
            off,
        ),
    ];
    const turn = button(t.turn, () => {
        const { normal, offset } = clip(store.state);
        change({ normal: [-normal[0] || 0, -normal[1] || 0, -normal[2] || 0], offset: 1 - offset });
    });

    const [x0, x1, y0, y1, z0, z1] = bounds(result, 0);
    const extent: NonNullable<ViewState['box']> = [x0, y0, z0, x1, y1, z1];
    const box = (state: Readonly<ViewState>): NonNullable<ViewState['box']> => state.box ?? extent;
    const noBox = (state: Readonly<ViewState>): string | undefined => (state.box ? undefined : t.boxOn);
    const boxOn = check(
        t.boxOn,
        (state) => state.box !== undefined,
        (on) => store.set({ box: on ? extent : undefined }),
    );
    const sides = [0, 3, 1, 4, 2, 5].map((i) =>
        numberBox(
            `${'xyz'[i % 3]} ${i < 3 ? t.from : t.to}`,
            (state) => box(state)[i],
            (value) => {
                const next = [...box(store.state)] as NonNullable<ViewState['box']>;
                next[i] = value;
                store.set({ box: next });
            },
            { expected: t.numberExpected },
            noBox,
        ),
    );

    const [on, axis, nx, ny, nz, offset] = plane;
    const root = section(
        t.clip,
        false,
        on.root,
        axis.root,
        make('div', { class: 'triple' }, nx.root, ny.root, nz.root),
        offset.root,
        make('div', { class: 'buttons' }, turn),
        boxOn.root,
        make('div', { class: 'pair' }, ...sides.map((side) => side.root)),
    );
    const turnControl: Control = {
        root: turn,
        sync: (state) => {
            turn.disabled = state.clip === undefined;
        },
    };
    return { root, controls: [...plane, turnControl, boxOn, ...sides] };
}
