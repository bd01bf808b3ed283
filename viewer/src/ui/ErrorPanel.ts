import { button, make } from './Dom';
import type { Texts } from './Texts';

/** A fault of the page in the form that the program and the readers of files use. */
export function faultText(what: string, expected: string, toDo: string): string {
    return `error: ${what}\n  expected: ${expected}\n  to do:    ${toDo}`;
}

/** The message in full, line by line: the first stands out, what was expected and what to do follow. */
export function errorPanel(message: string, texts: Texts, onClose?: () => void): HTMLElement {
    const [what, ...rest] = message.split('\n');
    const panel = make(
        'div',
        { class: 'error-panel', role: 'alert', tabindex: -1 },
        make('h2', {}, texts.errors.title),
        make('p', { class: 'what' }, what),
    );
    const excerpt: string[] = [];
    const advice: Node[] = [];
    for (const line of rest) {
        const found = /^\s*(expected|to do):\s*(.*)$/.exec(line);
        if (found) {
            const label = found[1] === 'expected' ? texts.errors.expected : texts.errors.toDo;
            advice.push(make('dt', {}, label), make('dd', {}, found[2]));
        } else if (line.trim() !== '') excerpt.push(line);
    }
    if (excerpt.length > 0) panel.append(make('pre', {}, excerpt.join('\n')));
    if (advice.length > 0) panel.append(make('dl', {}, ...advice));
    if (onClose) panel.append(button(texts.errors.close, onClose));
    return panel;
}
