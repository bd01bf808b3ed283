import type { ViewState } from './ViewState';

export type Listener = (state: ViewState, changed: ReadonlySet<keyof ViewState>) => void;

/** Holds the state of the view and tells whoever listens which parts of it have changed. */
export class Store {
    private listeners: Listener[] = [];

    constructor(private current: ViewState) {}

    get state(): Readonly<ViewState> {
        return this.current;
    }

    set(part: Partial<ViewState>): void {
        const next = { ...this.current, ...part };
        const changed = new Set<keyof ViewState>();
        for (const key of Object.keys(part) as (keyof ViewState)[]) {
            if (next[key] !== this.current[key]) changed.add(key);
        }
        if (changed.size === 0) return;
        this.current = next;
        for (const listener of this.listeners) listener(next, changed);
    }

    subscribe(listener: Listener): void {
        this.listeners.push(listener);
    }
}
