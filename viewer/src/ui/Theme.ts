// Light, dark or as the system has it. Colours stand in the style sheet; what is drawn on a canvas asks for them here.

export type ThemeMode = 'auto' | 'light' | 'dark';

const KEY = 'tarnvexo-theme';

/** What was chosen last time, where the browser keeps it for this page. */
export function storedTheme(): ThemeMode {
    try {
        const stored = localStorage.getItem(KEY);
        return stored === 'light' || stored === 'dark' ? stored : 'auto';
    } catch {
        return 'auto';
    }
}

export function storeTheme(mode: ThemeMode): void {
    try {
        localStorage.setItem(KEY, mode);
    } catch {
        // A page of a file may keep nothing; the choice then holds until it is closed.
    }
}

export function isDark(mode: ThemeMode): boolean {
    return mode === 'auto' ? matchMedia('(prefers-color-scheme: dark)').matches : mode === 'dark';
}

export interface CanvasColours {
    ink: string;
    quiet: string;
    paper: string;
    line: string;
    accent: string;
    font: string;
}

export function canvasColours(): CanvasColours {
    const style = getComputedStyle(document.documentElement);
    const of = (name: string): string => style.getPropertyValue(name).trim();
    return {
        ink: of('--ink'),
        quiet: of('--quiet'),
        paper: of('--paper'),
        line: of('--line'),
        accent: of('--accent'),
        font: of('--font'),
    };
}
