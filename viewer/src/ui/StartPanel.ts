import { button, make } from './Dom';
import { errorPanel } from './ErrorPanel';
import type { Texts } from './Texts';

/** In front of the picture while there is none: where files are dropped, how far reading is, why it failed. */
export class StartPanel {
    readonly root = make('div', { class: 'start' });
    /** What stands there, in another language. */
    private again?: (texts: Texts) => void;

    constructor(private readonly openFiles: () => void) {}

    showDrop(texts: Texts, note = ''): void {
        const open = button(texts.start.open, this.openFiles, { class: 'primary' });
        this.replace(
            make(
                'div',
                { class: 'drop' },
                make('h1', {}, texts.start.title),
                make('p', { class: 'drop-file' }, texts.start.drop),
                open,
                make('p', { class: 'also' }, texts.start.also),
                make('p', { class: 'note', role: 'status' }, note),
            ),
        );
        this.again = (next) => this.showDrop(next, note);
        open.focus();
    }

    /** Gives back how to tell the fraction done; undefined: under way, unknown how far. */
    showProgress(text: string, texts: Texts, cancel?: () => void): (fraction: number | undefined) => void {
        const bar = make('progress', { max: 1, 'aria-label': text });
        const percent = make('span', { class: 'percent' });
        const box = make(
            'div',
            { class: 'loading', role: 'status' },
            make('p', {}, text),
            make('div', { class: 'bar' }, bar, percent),
        );
        if (cancel) box.append(button(texts.start.cancel, cancel));
        this.replace(box);
        return (fraction) => {
            if (fraction === undefined) bar.removeAttribute('value');
            else bar.value = fraction;
            percent.textContent = fraction === undefined ? '' : `${Math.floor(100 * fraction)} %`;
        };
    }

    showError(message: string, texts: Texts, close?: () => void): void {
        const panel = errorPanel(message, texts, close);
        this.replace(panel);
        this.again = (next) => this.showError(message, next, close);
        panel.focus();
    }

    /** What goes on at the moment keeps its language until it is done. */
    speak(texts: Texts): void {
        this.again?.(texts);
    }

    hide(): void {
        this.again = undefined;
        this.root.replaceChildren();
        this.root.hidden = true;
    }

    private replace(content: HTMLElement): void {
        this.again = undefined;
        this.root.replaceChildren(content);
        this.root.hidden = false;
    }
}
