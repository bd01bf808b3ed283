// The keyboard map. Keys that a control under the focus needs stay with it.

export type Action =
    /** Turning, moving, zooming: the picture knows these keys itself. */
    | 'camera'
    | 'fit'
    | 'view1'
    | 'view2'
    | 'view3'
    | 'view4'
    | 'view5'
    | 'view6'
    | 'view7'
    | 'face'
    | 'deformed'
    | 'edges'
    | 'bands'
    | 'flags'
    | 'animate'
    | 'clip'
    | 'cut'
    | 'search'
    | 'panel'
    | 'help'
    | 'escape';

const KEYS: Record<string, Action> = {
    ArrowLeft: 'camera',
    ArrowRight: 'camera',
    ArrowUp: 'camera',
    ArrowDown: 'camera',
    '+': 'camera',
    '=': 'camera',
    '-': 'camera',
    f: 'fit',
    '1': 'view1',
    '2': 'view2',
    '3': 'view3',
    '4': 'view4',
    '5': 'view5',
    '6': 'view6',
    '7': 'view7',
    s: 'face',
    d: 'deformed',
    e: 'edges',
    b: 'bands',
    m: 'flags',
    a: 'animate',
    p: 'clip',
    c: 'cut',
    '/': 'search',
    h: 'panel',
    '?': 'help',
    Escape: 'escape',
};

/** What a key does, or undefined where the control that has the focus uses it itself. */
export function actionOf(event: KeyboardEvent): Action | undefined {
    if (event.ctrlKey || event.metaKey || event.altKey || event.isComposing) return undefined;
    if (event.key === 'Escape') return 'escape';
    const target = event.target instanceof HTMLElement ? event.target : document.body;
    if (target instanceof HTMLTextAreaElement || target instanceof HTMLSelectElement) return undefined;
    if (target instanceof HTMLInputElement) {
        if (!['checkbox', 'radio', 'range'].includes(target.type)) return undefined;
        if (event.key.startsWith('Arrow')) return undefined;
    }
    // Where a table scrolls, the arrow keys scroll it.
    if (event.key.startsWith('Arrow') && target.classList.contains('scroll')) return undefined;
    return KEYS[event.key] ?? KEYS[event.key.toLowerCase()];
}

/** For the help: which keys, and the text that says what they do. */
export const HELP_KEYS = [
    ['← → ↑ ↓', 'rotate'],
    ['Shift ← → ↑ ↓', 'pan'],
    ['+ −', 'zoom'],
    ['F', 'fit'],
    ['1 … 7', 'views'],
    ['S', 'face'],
    ['D', 'deformed'],
    ['E', 'edges'],
    ['B', 'bands'],
    ['M', 'flags'],
    ['A', 'animate'],
    ['P', 'clip'],
    ['C', 'cut'],
    ['/', 'search'],
    ['H', 'panel'],
    ['?', 'help'],
    ['Esc', 'escape'],
    ['Tab', 'tab'],
] as const;
