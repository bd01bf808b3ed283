import type { Result } from '../../model/Result';
import type { StandardView } from '../../state/ViewState';
import type { Store } from '../../state/Store';
import type { Texts } from '../Texts';
import type { Control } from '../Controls';

/** What the sections of the panel work with. */
export interface PanelContext {
    store: Store;
    result: Result;
    texts: Texts;
    /** Factor on displacements in use. */
    scale(): number;
    /** Limits of the colours in use. */
    range(): [number, number] | undefined;
    fit(): void;
    setStandardView(view: StandardView): void;
    savePicture(width: number, height: number): void;
    copyLink(): void;
}

export interface PanelSection {
    root: HTMLElement;
    controls: Control[];
}
