// The worker in which a contour file is read, so that the page goes on answering: ContourLoading starts it.
import { parseContourText } from './ContourText';
import type { Result } from './Result';

export interface ContourRequest {
    file: Blob;
    name: string;
}

export type ContourReply =
    | { kind: 'progress'; bytesRead: number }
    | { kind: 'result'; result: Result }
    /** For the user: a fault of the text, or what the browser says about the file. */
    | { kind: 'fault'; message: string };

self.onmessage = async ({ data: { file, name } }: MessageEvent<ContourRequest>) => {
    try {
        const bytes = new Uint8Array(await file.arrayBuffer());
        const tell = (bytesRead: number) => post({ kind: 'progress', bytesRead });
        const result = parseContourText(bytes, name, tell);
        post({ kind: 'result', result }, buffersOf(result));
    } catch (error) {
        post({ kind: 'fault', message: error instanceof Error ? error.message : String(error) });
    }
};

function post(reply: ContourReply, transfer: Transferable[] = []): void {
    self.postMessage(reply, { transfer });
}

function buffersOf({ beams, ...result }: Result): Transferable[] {
    return [...Object.values(result), ...Object.values(beams)]
        .filter(ArrayBuffer.isView)
        .map((array) => array.buffer as ArrayBuffer);
}
