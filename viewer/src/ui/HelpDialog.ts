import { button, make } from './Dom';
import { HELP_KEYS } from './Keys';
import type { Texts } from './Texts';

/** All keys on one sheet. The browser's own dialog keeps the focus within and closes with Esc. */
export class HelpDialog {
    readonly root = make('dialog', { class: 'help' });

    flip(texts: Texts): void {
        if (this.root.open) {
            this.root.close();
            return;
        }
        const row = (keys: string, text: string): HTMLElement =>
            make('tr', {}, make('th', { scope: 'row' }, make('kbd', {}, keys)), make('td', {}, text));
        const t = texts.help;
        this.root.setAttribute('aria-label', t.title);
        this.root.replaceChildren(
            make('h2', {}, t.title),
            make(
                'div',
                { class: 'columns' },
                make('table', {}, ...HELP_KEYS.map(([keys, name]) => row(keys, t.keys[name]))),
                make('table', {}, ...t.mouseKeys.map(([keys, text]) => row(keys, text))),
            ),
            button(texts.errors.close, () => this.root.close(), { autofocus: true }),
        );
        this.root.showModal();
    }
}
