import { addressOf } from '../state/ViewAddress';
import type { Store } from '../state/Store';
import type { ViewState } from '../state/ViewState';

/** The address follows when the view has rested so long, in milliseconds: browsers limit how often it may change. */
const REST = 300;

/** What a state does not have is undone when it is taken over. */
export function complete(state: ViewState): ViewState {
    return { limits: undefined, scale: undefined, clip: undefined, box: undefined, camera: undefined, ...state };
}

/** Keeps the view in the address of the page, and tells of an address that the user types. */
export class Address {
    private timer = 0;
    /** An address that the user has typed. */
    onTyped: (hash: string) => void = () => undefined;

    constructor(
        private readonly store: Store,
        private readonly initial: ViewState,
    ) {
        store.subscribe(() => {
            clearTimeout(this.timer);
            this.timer = window.setTimeout(() => this.write(), REST);
        });
        window.addEventListener('hashchange', () => this.onTyped(location.hash));
    }

    link(): string {
        const address = new URL(location.href);
        address.hash = addressOf(this.store.state, this.initial);
        return address.href;
    }

    private write(): void {
        const address = this.link();
        if (address === location.href) return;
        try {
            history.replaceState(null, '', address);
        } catch {
            // Some browsers refuse it to pages of files; the link can still be copied.
        }
    }
}
