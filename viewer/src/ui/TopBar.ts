import type { Language } from '../state/ViewState';
import { button, make } from './Dom';
import type { SearchKind } from './Search';
import type { Texts } from './Texts';
import type { ThemeMode } from './Theme';

export interface TopBarActions {
    open(): void;
    flipCut(): void;
    /** What stands in the box of the search; gives back why it cannot be gone to. */
    goTo(kind: SearchKind, text: string): string | undefined;
    setTheme(mode: ThemeMode): void;
    setLanguage(language: Language): void;
    help(): void;
}

/** Above the picture: what is shown, tools, search, theme and language. */
export class TopBar {
    readonly root = make('header', { class: 'top-bar' });
    private cut?: HTMLButtonElement;
    private search?: HTMLInputElement;

    render(
        texts: Texts,
        state: { title: string; theme: ThemeMode; language: Language; loaded: boolean },
        actions: TopBarActions,
    ): void {
        const t = texts.bar;
        this.root.setAttribute('aria-label', t.label);
        this.cut = button(t.cut, actions.flipCut, { 'aria-pressed': 'false', title: 'C', disabled: !state.loaded });
        const theme = make('select', { 'aria-label': t.theme, title: t.theme });
        for (const mode of ['auto', 'light', 'dark'] as const) {
            theme.append(make('option', { value: mode, selected: mode === state.theme }, t.themes[mode]));
        }
        theme.addEventListener('change', () => actions.setTheme(theme.value as ThemeMode));
        const language = make('select', { 'aria-label': t.language, title: t.language });
        for (const [value, name] of [
            ['en', 'English'],
            ['zh', '中文'],
        ] as const) {
            language.append(make('option', { value, lang: value, selected: value === state.language }, name));
        }
        language.addEventListener('change', () => actions.setLanguage(language.value as Language));

        const focused = this.focusables().indexOf(document.activeElement as HTMLElement);
        this.root.replaceChildren(
            make('span', { class: 'title', title: state.title }, state.title),
            button(t.open, actions.open),
            this.cut,
            this.searchForm(texts, state.loaded, actions),
            make('span', { class: 'space' }),
            theme,
            language,
            button('?', actions.help, { 'aria-label': t.help, title: t.help }),
        );
        if (focused >= 0) this.focusables()[focused]?.focus();
    }

    private focusables(): HTMLElement[] {
        return [...this.root.querySelectorAll<HTMLElement>('button, select, input')];
    }

    private searchForm(texts: Texts, loaded: boolean, actions: TopBarActions): HTMLElement {
        const t = texts.bar;
        const kind = make('select', { 'aria-label': t.searchKind, disabled: !loaded });
        for (const value of ['node', 'quad', 'tri', 'beam'] as const) {
            kind.append(make('option', { value }, texts.kinds[value]));
        }
        const number = make('input', {
            type: 'text',
            inputmode: 'numeric',
            class: 'number',
            placeholder: t.search,
            'aria-label': t.searchHint,
            title: `${t.searchHint} (/)`,
            disabled: !loaded,
        });
        const form = make(
            'form',
            { class: 'search', role: 'search' },
            kind,
            number,
            make('button', { type: 'submit', disabled: !loaded }, t.go),
        );
        const mark = (refusal: string): void => {
            number.setCustomValidity(refusal);
            if (refusal === '') number.removeAttribute('aria-invalid');
            else number.setAttribute('aria-invalid', 'true');
        };
        number.addEventListener('input', () => mark(''));
        form.addEventListener('submit', (event) => {
            event.preventDefault();
            mark(actions.goTo(kind.value as SearchKind, number.value) ?? '');
            number.reportValidity();
        });
        this.search = number;
        return form;
    }

    setCutting(on: boolean): void {
        this.cut?.setAttribute('aria-pressed', String(on));
    }

    focusSearch(): void {
        this.search?.focus();
        this.search?.select();
    }
}
