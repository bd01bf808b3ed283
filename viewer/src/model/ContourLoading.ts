// Reads result files away from the page's own thread. The worker is part of the page: a page that was opened from a
// file may not load another one.
import type { OwnStresses, Result } from './Result';
import type { ContourReply, ContourRequest } from './ContourWorker';
import ContourWorker from './ContourWorker?worker&inline';

/** Rejects with an Error whose message is for the user. onProgress: bytes read of those that file.size tells. */
export async function loadContour(
    file: Blob,
    name: string,
    onProgress: (bytesRead: number) => void,
    signal?: AbortSignal,
): Promise<Result> {
    const reply = await ask({ kind: 'contour', file, name }, onProgress, signal);
    if (reply.kind !== 'result') throw new Error(`a "${reply.kind}" came instead of a result`);
    return reply.result;
}

/** Of the shells of a result that has been read. Rejects likewise. */
export async function loadOwnStresses(
    file: Blob,
    name: string,
    result: Result,
    signal?: AbortSignal,
): Promise<OwnStresses> {
    const reply = await ask({ kind: 'own', file, name, result }, () => {}, signal);
    if (reply.kind !== 'own') throw new Error(`a "${reply.kind}" came instead of stresses`);
    return reply.own;
}

/** The last reply to a request. Rejects with the reason of the signal when that is given. */
function ask(
    request: ContourRequest,
    onProgress: (bytesRead: number) => void,
    signal?: AbortSignal,
): Promise<ContourReply> {
    const worker = new ContourWorker();
    const reading = new Promise<ContourReply>((resolve, reject) => {
        signal?.throwIfAborted();
        signal?.addEventListener('abort', () => reject(signal.reason as Error), { once: true });
        worker.onmessage = ({ data }: MessageEvent<ContourReply>) => {
            if (data.kind === 'progress') onProgress(data.bytesRead);
            else if (data.kind === 'fault') reject(new Error(data.message));
            else resolve(data);
        };
        worker.onerror = ({ message }) => reject(new Error(workerFault(request.name, message ?? '')));
        worker.onmessageerror = () =>
            reject(new Error(workerFault(request.name, 'what it has read was not taken over')));
        worker.postMessage(request);
    });
    return reading.finally(() => worker.terminate());
}

/** reason: empty where the browser does not tell, as when it refuses to start the worker. */
function workerFault(name: string, reason: string): string {
    return (
        `${name}: error: the part of the page that reads files has failed${reason === '' ? '' : `: ${reason}`}\n` +
        '  expected: a browser that lets pages start workers of their own, and memory for the file\n' +
        '  to do:    close other pages and open it again; or make a page of the result with tarnvexo view'
    );
}
