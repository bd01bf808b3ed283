// What an address may say besides the state of the view, in words of the command line: "view=top", "deformed=10%".
// They need the result, or the size of the picture, before they become a state.
import type { Result } from '../model/Result';
import { DEFAULT_PART, defaultScale } from '../scene/Motion';
import { isWordOfState, stateOfAddress, wordsOf } from '../state/ViewAddress';
import type { StandardView, ViewState } from '../state/ViewState';
import { STANDARD_VIEWS } from '../ui/panel/ViewSection';

/** Fields that only the model tells. */
export const NEED_MODEL: readonly string[] = ['thickness', 'section', 'material'];

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
    const number = deformationOf(text);
    if (number === undefined) return state;
    if (number === 0) return { ...state, deformed: false };
    const scale = text.endsWith('%') ? (defaultScale(result) * number) / 100 / DEFAULT_PART : number;
    return { ...state, deformed: true, scale };
}

/** The number of a word as "20" or "10%"; undefined: it makes no sense. */
function deformationOf(text: string): number | undefined {
    if (text === 'off') return 0;
    const number = text === 'true' ? 1 : Number(text.replace(/%$/, ''));
    return text.trim() === '' || !Number.isFinite(number) || number < 0 ? undefined : number;
}

/** Words of an address that say nothing, or what this result cannot show: "fild=SX". */
export function faultsOf(address: string, result: Result): string[] {
    return wordsOf(address)
        .filter(([word, text]) => !isGood(word, text, result))
        .map(([word, text]) => (text === '' ? word : `${word}=${text}`));
}

function isGood(word: string, text: string, result: Result): boolean {
    switch (word) {
        case 'picture': // its size is looked at before there is a result
            return true;
        case 'view':
            return STANDARD_VIEWS.some((view) => view === text);
        case 'deformed':
            return deformationOf(text) !== undefined;
        case 'field':
            return isWordOfState(word, text) && (result.model !== undefined || !NEED_MODEL.includes(text));
        case 'average':
            return isWordOfState(word, text) && (text !== 'element' || result.own !== undefined);
        default:
            return isWordOfState(word, text);
    }
}
