// What an address may say besides the state of the view, in words of the command line: "view=top", "deformed=10%".
// They need the result, or the size of the picture, before they become a state.
import type { Result } from '../model/Result';
import { DEFAULT_PART, defaultScale } from '../scene/Motion';
import { stateOfAddress } from '../state/ViewAddress';
import type { StandardView, ViewState } from '../state/ViewState';
import { STANDARD_VIEWS } from '../ui/panel/ViewSection';

/** The last of several counts. */
function lastOf(address: string, name: string): string | undefined {
    return new URLSearchParams(address.replace(/^#/, '')).getAll(name).pop();
}

/** From where the structure is seen; undefined where the address does not say, or has a camera. */
export function standardViewOf(address: string): StandardView | undefined {
    if (lastOf(address, 'camera') !== undefined) return undefined;
    const name = lastOf(address, 'view');
    return STANDARD_VIEWS.find((view) => view === name);
}

/** deformed: "off", "true" to scale, "20" times, or "10%": the largest displacement is that part of the model's size. */
export function stateOfWords(address: string, initial: ViewState, result: Result): ViewState {
    const state = stateOfAddress(address, initial);
    const text = lastOf(address, 'deformed');
    if (text === undefined || lastOf(address, 'scale') !== undefined) return state;
    if (text === 'off') return { ...state, deformed: false };
    const number = text === 'true' ? 1 : Number(text.replace(/%$/, ''));
    if (text.trim() === '' || !Number.isFinite(number) || number < 0) return state;
    if (number === 0) return { ...state, deformed: false };
    const scale = text.endsWith('%') ? (defaultScale(result) * number) / 100 / DEFAULT_PART : number;
    return { ...state, deformed: true, scale };
}
