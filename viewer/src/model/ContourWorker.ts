// The worker in which result files are read, so that the page goes on answering: ContourLoading starts it.
import { parseContourText } from './ContourText';
import { parseOwnStressText } from './OwnStressText';
import type { OwnStresses, Result } from './Result';

export type ContourRequest =
    | { kind: 'contour'; file: Blob; name: string }
    /** result: the one that the shells belong to. */
    | { kind: 'own'; file: Blob; name: string; result: Result };

export type ContourReply =
    | { kind: 'progress'; bytesRead: number }
    | { kind: 'result'; result: Result }
    | { kind: 'own'; own: OwnStresses }
    /** For the user: a fault of the text, or what the browser says about the file. */
    | { kind: 'fault'; message: string };

self.onmessage = async ({ data: request }: MessageEvent<ContourRequest>) => {
    try {
        const bytes = new Uint8Array(await request.file.arrayBuffer());
        if (request.kind === 'own') {
            const own = parseOwnStressText(bytes, request.name, request.result);
            post({ kind: 'own', own }, arraysOf(own));
        } else {
            const tell = (bytesRead: number) => post({ kind: 'progress', bytesRead });
            const result = parseContourText(bytes, request.name, tell);
            post({ kind: 'result', result }, [...arraysOf(result), ...arraysOf(result.beams)]);
        }
    } catch (error) {
        post({ kind: 'fault', message: error instanceof Error ? error.message : String(error) });
    }
};

function post(reply: ContourReply, transfer: Transferable[] = []): void {
    self.postMessage(reply, { transfer });
}

/** Handed over to the page instead of copied. */
function arraysOf(record: object): Transferable[] {
    return Object.values(record)
        .filter(ArrayBuffer.isView)
        .map((array) => array.buffer as ArrayBuffer);
}
