// A page that draws one picture and hands it to the program that serves it: "#...&picture=1600x900" in the address.
// The picture is posted to "picture" beside the page, or a text that says why there is none to "error".
import { letterScale } from './Compose';

export interface PictureOrder {
    width: number;
    height: number;
}

const LARGEST = 16384;

/** undefined: the address asks for no picture. Throws where it asks for one that cannot be. */
export function pictureOrder(hash: string): PictureOrder | undefined {
    const text = new URLSearchParams(hash.replace(/^#/, '')).get('picture');
    if (text === null) return undefined;
    const found = /^(\d{1,5})x(\d{1,5})$/.exec(text);
    const [width, height] = found ? [Number(found[1]), Number(found[2])] : [0, 0];
    const isPossible = (pixels: number): boolean => pixels >= 1 && pixels <= LARGEST;
    if (!isPossible(width) || !isPossible(height)) {
        throw new Error(
            `error: "${text}" is no size of a picture\n  expected: WIDTHxHEIGHT, each from 1 to ${LARGEST}\n` +
                '  to do:    ask for another size',
        );
    }
    return { width, height };
}

/**
 * The picture alone, as large as it is asked for, measured in what letters are measured in: structure, legend and lines
 * stand to one another as on a page of that size.
 */
export function makePlace(root: HTMLElement, order: PictureOrder): void {
    const letters = letterScale(order);
    root.classList.add('picture-mode');
    root.style.setProperty('--picture-width', `${order.width / letters}px`);
    root.style.setProperty('--picture-height', `${order.height / letters}px`);
}

export async function postPicture(picture: Blob): Promise<void> {
    await post('picture', picture);
}

export async function postError(message: string): Promise<void> {
    await post('error', message);
}

async function post(address: string, body: Blob | string): Promise<void> {
    const response = await fetch(new URL(address, document.baseURI), { method: 'POST', body });
    if (!response.ok) throw new Error(`${response.status} ${response.statusText}`.trim());
}
