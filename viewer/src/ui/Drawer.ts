import { button, make } from './Dom';

/** Sheets below the picture, one at a time: the points that were probed, the graph of a cut. */
export class Drawer {
    readonly root = make('section', { class: 'drawer', hidden: true });
    private readonly tabs = make('div', { class: 'tabs', role: 'tablist' });
    private readonly body = make('div', { class: 'drawer-body', role: 'tabpanel' });
    private sheets: { title: string; root: HTMLElement; tab: HTMLButtonElement; close: () => void }[] = [];
    private shown?: HTMLElement;
    onResize: () => void = () => undefined;

    constructor() {
        this.root.append(this.tabs, this.body);
    }

    open(root: HTMLElement, title: string, closeLabel: string, close: () => void): void {
        let sheet = this.sheets.find((each) => each.root === root);
        if (!sheet) {
            const tab = button(title, () => this.show(root), { role: 'tab' });
            sheet = { title, root, tab, close };
            this.sheets.push(sheet);
        }
        sheet.tab.textContent = title;
        sheet.close = close;
        this.tabs.replaceChildren(
            ...this.sheets.map((each) => each.tab),
            button('×', () => this.sheets.find((each) => each.root === this.shown)?.close(), {
                class: 'close',
                'aria-label': closeLabel,
                title: closeLabel,
            }),
        );
        this.show(root);
    }

    remove(root: HTMLElement): void {
        const sheet = this.sheets.find((each) => each.root === root);
        if (!sheet) return;
        sheet.tab.remove();
        this.sheets = this.sheets.filter((each) => each !== sheet);
        if (this.shown === root) {
            const next = this.sheets[this.sheets.length - 1];
            if (next) this.show(next.root);
            else this.hide();
        }
    }

    private show(root: HTMLElement): void {
        this.shown = root;
        this.body.replaceChildren(root);
        for (const sheet of this.sheets) sheet.tab.setAttribute('aria-selected', String(sheet.root === root));
        if (this.root.hidden) {
            this.root.hidden = false;
            this.onResize();
        }
    }

    private hide(): void {
        this.shown = undefined;
        this.body.replaceChildren();
        this.root.hidden = true;
        this.onResize();
    }
}
