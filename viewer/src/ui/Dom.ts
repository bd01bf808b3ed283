type Attributes = Record<string, string | number | boolean | undefined>;

/** An element with attributes and children; true sets an attribute without value, false and undefined leave it out. */
export function make<K extends keyof HTMLElementTagNameMap>(
    tag: K,
    attributes: Attributes = {},
    ...children: (Node | string)[]
): HTMLElementTagNameMap[K] {
    const node = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value === undefined || value === false) continue;
        node.setAttribute(name, value === true ? '' : String(value));
    }
    node.append(...children);
    return node;
}

export function button(text: string, action: () => void, attributes: Attributes = {}): HTMLButtonElement {
    const node = make('button', { type: 'button', ...attributes }, text);
    node.addEventListener('click', action);
    return node;
}

let lastId = 0;

/** Joins labels to their controls. */
export function newId(): string {
    return `c${++lastId}`;
}

/** The browser saves this as a file of that name. */
export function save(name: string, content: Blob): void {
    const address = URL.createObjectURL(content);
    const link = make('a', { href: address, download: name });
    link.click();
    setTimeout(() => URL.revokeObjectURL(address), 10_000);
}

/** From a page of a file there may be no clipboard, so a hidden text field is the other way. */
export async function copyText(text: string): Promise<void> {
    try {
        await navigator.clipboard.writeText(text);
    } catch {
        const field = make('textarea', { class: 'off-screen', 'aria-hidden': 'true' });
        field.value = text;
        document.body.append(field);
        const before = document.activeElement as HTMLElement | null;
        field.select();
        document.execCommand('copy');
        field.remove();
        before?.focus();
    }
}
