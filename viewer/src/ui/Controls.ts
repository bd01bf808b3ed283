// Controls of the panel: each shows a part of the state of the view and changes it. All have labels and native keys.
import type { ViewState } from '../state/ViewState';
import { make, newId } from './Dom';
import { numberText } from './Numbers';

export interface Control {
    root: HTMLElement;
    /** Takes over what the state says. */
    sync(state: Readonly<ViewState>): void;
}

/** Why a control cannot be used at present; undefined: it can. */
export type Reason = (state: Readonly<ViewState>) => string | undefined;

type Get<T> = (state: Readonly<ViewState>) => T;

function row(label: string, id: string, control: Node): HTMLElement {
    return make('div', { class: 'row' }, make('label', { for: id }, label), control);
}

function applyReason(root: HTMLElement, inputs: (HTMLInputElement | HTMLSelectElement)[], reason?: string): void {
    root.classList.toggle('disabled', reason !== undefined);
    root.title = reason ?? '';
    for (const input of inputs) {
        input.disabled = reason !== undefined;
        if (reason === undefined) input.removeAttribute('aria-description');
        else input.setAttribute('aria-description', reason);
    }
}

export interface OptionGroup<T extends string> {
    label: string;
    options: [T, string][];
}

export function select<T extends string>(
    label: string,
    groups: OptionGroup<T>[],
    get: Get<T>,
    set: (value: T) => void,
    reason?: Reason,
): Control {
    const id = newId();
    const input = make('select', { id });
    for (const group of groups) {
        const options = group.options.map(([value, text]) => make('option', { value }, text));
        if (group.label === '') input.append(...options);
        else input.append(make('optgroup', { label: group.label }, ...options));
    }
    input.addEventListener('change', () => set(input.value as T));
    const root = row(label, id, input);
    return {
        root,
        sync(state) {
            input.value = get(state);
            if (reason) applyReason(root, [input], reason(state));
        },
    };
}

/** A few choices side by side: radio buttons, so the arrow keys go from one to the next. */
export function choice<T extends string>(
    label: string,
    options: [T, string][],
    get: Get<T>,
    set: (value: T) => void,
    reason?: Reason,
    reasonOf?: (value: T) => string | undefined,
): Control {
    const name = newId();
    const inputs = options.map(([value]) => make('input', { type: 'radio', name, value, id: `${name}-${value}` }));
    const segments = make('div', { class: 'segments' });
    inputs.forEach((input, i) => {
        input.addEventListener('change', () => set(options[i][0]));
        segments.append(input, make('label', { for: input.id }, options[i][1]));
    });
    const root = make(
        'div',
        { class: 'row', role: 'radiogroup', 'aria-label': label },
        make('span', { class: 'label' }, label),
        segments,
    );
    return {
        root,
        sync(state) {
            inputs.forEach((input, i) => (input.checked = options[i][0] === get(state)));
            applyReason(root, inputs, reason?.(state));
            inputs.forEach((input, i) => {
                const why = reasonOf?.(options[i][0]);
                if (why === undefined) return;
                input.disabled = true;
                input.setAttribute('aria-description', why);
                const text = input.nextElementSibling as HTMLElement;
                text.title = why;
            });
        },
    };
}

export function check(label: string | Node, get: Get<boolean>, set: (on: boolean) => void, reason?: Reason): Control {
    const id = newId();
    const input = make('input', { type: 'checkbox', id });
    input.addEventListener('change', () => set(input.checked));
    const root = make('div', { class: 'check' }, input, make('label', { for: id }, label));
    return {
        root,
        sync(state) {
            input.checked = get(state);
            if (reason) applyReason(root, [input], reason(state));
        },
    };
}

export interface NumberLimits {
    min?: number;
    max?: number;
    whole?: boolean;
    step?: number;
    /** What can be typed, told where something else was. */
    expected: string;
    /** Why another number cannot be taken, told likewise. */
    refuse?: (value: number) => string | undefined;
}

/**
 * A number is taken over with Enter or when the box is left. What cannot be taken stays, marked, with a word on what
 * is expected; Esc brings back what it was.
 */
export function numberBox(
    label: string,
    get: Get<number | undefined>,
    set: (value: number) => void,
    limits: NumberLimits,
    reason?: Reason,
): Control {
    const id = newId();
    // A text field, since a numeric one rejects "1,5e6" without a word and hides what was typed.
    const input = make('input', { type: 'text', id, inputmode: 'decimal', class: 'number', autocomplete: 'off' });
    let shown: number | undefined;
    const accept = (): void => {
        input.setCustomValidity('');
        input.removeAttribute('aria-invalid');
        input.title = '';
    };
    const refuse = (why: string): void => {
        input.setAttribute('aria-invalid', 'true');
        input.setCustomValidity(why);
        input.title = why;
        input.reportValidity();
    };
    const show = (): void => {
        input.value = shown === undefined ? '' : numberText(shown);
        accept();
    };
    const take = (): void => {
        const value = parseNumber(input.value);
        const good =
            value !== undefined &&
            value >= (limits.min ?? -Infinity) &&
            value <= (limits.max ?? Infinity) &&
            (!limits.whole || Number.isInteger(value));
        const refusal = good ? limits.refuse?.(value) : limits.expected;
        if (refusal !== undefined) {
            refuse(refusal);
            return;
        }
        accept();
        if (value !== shown) set(value!);
    };
    input.addEventListener('change', take);
    input.addEventListener('input', () => {
        input.setCustomValidity('');
        if (parseNumber(input.value) === undefined) input.setAttribute('aria-invalid', 'true');
        else input.removeAttribute('aria-invalid');
    });
    input.addEventListener('keydown', (event) => {
        if (event.key === 'Escape') show();
        if (limits.step === undefined || (event.key !== 'ArrowUp' && event.key !== 'ArrowDown')) return;
        event.preventDefault();
        const next = (shown ?? 0) + (event.key === 'ArrowUp' ? limits.step : -limits.step);
        if (next >= (limits.min ?? -Infinity) && next <= (limits.max ?? Infinity)) set(next);
    });
    const root = row(label, id, input);
    return {
        root,
        sync(state) {
            const value = get(state);
            const isRefused = input.hasAttribute('aria-invalid') && value === shown;
            shown = value;
            if (!isRefused) show();
            if (reason) applyReason(root, [input], reason(state));
        },
    };
}

/** A short text, taken over with Enter or when the box is left. */
export function textBox(
    label: string,
    get: Get<string>,
    set: (text: string) => void,
    maxLength: number,
    reason?: Reason,
): Control {
    const id = newId();
    const input = make('input', { type: 'text', id, maxlength: maxLength, autocomplete: 'off' });
    input.addEventListener('change', () => set(input.value.trim()));
    const root = row(label, id, input);
    return {
        root,
        sync(state) {
            input.value = get(state);
            if (reason) applyReason(root, [input], reason(state));
        },
    };
}

/** "1.5e6", "1,5" and "−3" are numbers; "" and "12 mm" are none. */
export function parseNumber(text: string): number | undefined {
    const plain = text
        .trim()
        .replace('−', '-')
        .replace(/^([^.,]*),([^.,]*)$/, '$1.$2');
    if (plain === '' || !/^[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?$/i.test(plain)) return undefined;
    return Number(plain);
}

export function slider(
    label: string,
    get: Get<number>,
    set: (value: number) => void,
    range: { min: number; max: number; step: number; text: (value: number) => string },
    reason?: Reason,
): Control {
    const id = newId();
    const input = make('input', { type: 'range', id, min: range.min, max: range.max, step: range.step });
    input.addEventListener('input', () => set(Number(input.value)));
    const root = row(label, id, input);
    return {
        root,
        sync(state) {
            const value = get(state);
            input.value = String(value);
            input.setAttribute('aria-valuetext', range.text(value));
            if (reason) applyReason(root, [input], reason(state));
        },
    };
}

/** A line of text that is there while it has something to say. */
export function note(text: Reason): Control {
    const root = make('p', { class: 'note', role: 'status', hidden: true });
    return {
        root,
        sync(state) {
            const said = text(state);
            root.hidden = said === undefined;
            root.textContent = said ?? '';
        },
    };
}

/** A folding section of controls. */
export function section(title: string, open: boolean, ...children: Node[]): HTMLDetailsElement {
    return make('details', { open }, make('summary', {}, title), make('div', { class: 'section' }, ...children));
}
