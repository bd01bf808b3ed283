import type { Store } from '../../state/Store';
import { button, make } from '../Dom';
import type { Control } from '../Controls';
import { clipSection } from './ClipSection';
import { colourSection } from './ColourSection';
import { deformationSection } from './DeformationSection';
import { fieldSection } from './FieldSection';
import type { PanelContext } from './PanelContext';
import { symbolSection } from './SymbolSection';
import { viewSection } from './ViewSection';
import { visibleSection } from './VisibleSection';

/** The settings beside the picture. Made anew for another result or language; follows the state otherwise. */
export class Panel {
    readonly root: HTMLElement;
    private controls: Control[] = [];

    constructor(context: PanelContext) {
        const sections = [
            fieldSection(context),
            colourSection(context),
            deformationSection(context),
            symbolSection(context),
            visibleSection(context),
            clipSection(context),
            viewSection(context),
        ];
        this.root = make('div', { class: 'panel-sections' }, ...sections.map((part) => part.root));
        this.controls = sections.flatMap((part) => part.controls);
        this.sync(context.store);
    }

    sync(store: Store): void {
        for (const control of this.controls) control.sync(store.state);
    }
}

/** The frame of the panel, which folds away to give the picture its place. */
export class PanelFrame {
    readonly root = make('aside', { class: 'panel', id: 'panel' });
    private readonly toggle = button('', () => this.fold(!this.folded), {
        class: 'fold',
        'aria-controls': 'panel-body',
    });
    private readonly body = make('div', { class: 'panel-body', id: 'panel-body' });
    private folded = false;
    private words = { label: '', hide: '', show: '' };
    onFold: () => void = () => undefined;

    constructor() {
        this.root.append(this.toggle, this.body);
    }

    fill(panel: Panel, words: { label: string; hide: string; show: string }): void {
        // Which sections stand open survives a change of language.
        const before = [...this.body.querySelectorAll('details')].map((details) => details.open);
        const scroll = this.body.scrollTop;
        this.body.replaceChildren(panel.root);
        const sections = [...this.body.querySelectorAll('details')];
        if (before.length === sections.length) sections.forEach((details, i) => (details.open = before[i]));
        this.body.scrollTop = scroll;
        this.words = words;
        this.root.setAttribute('aria-label', words.label);
        this.fold(this.folded);
    }

    flip(): void {
        this.fold(!this.folded);
    }

    private fold(folded: boolean): void {
        this.folded = folded;
        this.root.classList.toggle('folded', folded);
        this.body.hidden = folded;
        this.toggle.textContent = folded ? '›' : '‹';
        this.toggle.title = folded ? this.words.show : this.words.hide;
        this.toggle.setAttribute('aria-label', this.toggle.title);
        this.toggle.setAttribute('aria-expanded', String(!folded));
        this.onFold();
    }
}
