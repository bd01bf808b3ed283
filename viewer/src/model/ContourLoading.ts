// Reads a contour file away from the page's own thread. The worker is part of the page: a page that was opened from a
// file may not load another one.
import type { Result } from './Result';
import type { ContourReply, ContourRequest } from './ContourWorker';
import ContourWorker from './ContourWorker?worker&inline';

/** Rejects with an Error whose message is for the user. onProgress: bytes read of those that file.size tells. */
export function loadContour(file: Blob, name: string, onProgress: (bytesRead: number) => void): Promise<Result> {
    const worker = new ContourWorker();
    const reading = new Promise<Result>((resolve, reject) => {
        worker.onmessage = ({ data }: MessageEvent<ContourReply>) => {
            if (data.kind === 'progress') onProgress(data.bytesRead);
            else if (data.kind === 'result') resolve(data.result);
            else reject(new Error(data.message));
        };
        worker.onerror = (event) => reject(new Error(event.message));
        worker.postMessage({ file, name } satisfies ContourRequest);
    });
    return reading.finally(() => worker.terminate());
}
