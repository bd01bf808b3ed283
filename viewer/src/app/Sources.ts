// Where results come from: a packet within the page, one that is served beside it, or files that the user opens.
import type { Result } from '../model/Result';
import { loadContour, loadOwnStresses } from '../model/ContourLoading';
import { decodePacket, decodePacketText, type Packet } from '../model/Packet';
import { parseRunReport, type RunReport } from '../model/RunReport';
import { faultText } from '../ui/ErrorPanel';
import type { Texts } from '../ui/Texts';

/** The fraction done; undefined: not known. */
export type Progress = (fraction: number | undefined) => void;

/** The address of a packet that the page is told to fetch, or undefined. Only from where the page itself comes. */
export function packetAddress(page: Document, location: Location): URL | undefined {
    const told =
        page.getElementById('result')?.getAttribute('data-packet') ??
        new URLSearchParams(location.search).get('source') ??
        undefined;
    if (told === undefined) return undefined;
    const address = new URL(told, location.href);
    return address.origin === location.origin && address.protocol.startsWith('http') ? address : undefined;
}

export function embeddedPacket(page: Document): string | undefined {
    const text = page.getElementById('result')?.textContent?.trim();
    return text === '' ? undefined : text;
}

/** The text is taken out of the page, which would hold it in memory a second time. */
export async function readEmbedded(page: Document, text: string): Promise<Packet> {
    page.getElementById('result')?.remove();
    return decodePacketText(text);
}

export async function fetchPacket(
    address: URL,
    texts: Texts,
    progress: Progress,
    signal: AbortSignal,
): Promise<Packet> {
    const fault = (reason: string): Error =>
        new Error(
            faultText(texts.errors.fetch(address.href, reason), texts.errors.fetchExpected, texts.errors.fetchToDo),
        );
    let bytes: Uint8Array<ArrayBuffer>;
    try {
        const response = await fetch(address, { signal });
        if (!response.ok) throw new Error(`${response.status} ${response.statusText}`.trim());
        bytes = await bodyOf(response, progress);
    } catch (error) {
        signal.throwIfAborted();
        throw fault(error instanceof Error ? error.message : String(error));
    }
    return decodePacket(bytes);
}

async function bodyOf(response: Response, progress: Progress): Promise<Uint8Array<ArrayBuffer>> {
    const total = Number(response.headers.get('Content-Length')) || undefined;
    const pieces: Uint8Array<ArrayBuffer>[] = [];
    let length = 0;
    const reader = response.body!.getReader();
    for (;;) {
        const { done, value } = await reader.read();
        if (done) break;
        pieces.push(value as Uint8Array<ArrayBuffer>);
        length += value.length;
        progress(total === undefined ? undefined : Math.min(1, length / total));
    }
    const bytes = new Uint8Array(length);
    let place = 0;
    for (const piece of pieces) {
        bytes.set(piece, place);
        place += piece.length;
    }
    return bytes;
}

/** What the files that were dropped together are. */
export interface OpenedFiles {
    contour?: File;
    own?: File;
    report?: File;
    names: string;
}

export function sortFiles(files: readonly File[]): OpenedFiles {
    const own = files.find((file) => /shell element node stress.*\.txt$/i.test(file.name));
    const texts = files.filter((file) => file !== own && /\.txt$/i.test(file.name));
    // A file under another name may still be a contour file: then its reader says what is wrong with it.
    const contour = texts.find((file) => /AverageStrs/i.test(file.name)) ?? texts[0];
    const report = files.find((file) => /\.json$/i.test(file.name));
    return { contour, own, report, names: files.map((file) => file.name).join(', ') };
}

export interface Opened {
    result: Result;
    report?: RunReport;
}

/** Without a contour file the others belong to the result that is shown. Rejects with the message for the user. */
export async function readFiles(
    files: readonly File[],
    shown: Result | undefined,
    texts: Texts,
    begin: (name: string) => Progress,
    signal: AbortSignal,
): Promise<Opened> {
    const { contour, own, report, names } = sortFiles(files);
    if (!contour && !((own || report) && shown)) {
        const { noContourFile, noContourExpected, noContourToDo } = texts.errors;
        throw new Error(faultText(noContourFile(names), noContourExpected, noContourToDo));
    }
    let result = shown;
    if (contour) {
        const progress = begin(contour.name);
        result = await loadContour(contour, contour.name, (bytes) => progress(bytes / contour.size), signal);
    }
    if (own) {
        const progress = begin(own.name);
        progress(undefined);
        result = { ...result!, own: await loadOwnStresses(own, own.name, result!, signal) };
    }
    return { result: result!, report: report && parseRunReport(await report.text(), report.name) };
}
