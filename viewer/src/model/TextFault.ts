// Why a text is refused: where, what, what was expected there, what the user can do. The words and the layout are those
// of the program's own messages, so that a fault reads the same in a terminal and in the page.

/** Bytes of the file's line that are shown. */
const LONGEST_EXCERPT = 100;
const LINE_FEED = 10;
const CARRIAGE_RETURN = 13;

export class TextFault extends Error {
    override name = 'TextFault';
}

export interface Fault {
    /** Bytes from the beginning of the text. */
    position: number;
    what: string;
    expected: string;
    toDo: string;
}

/** "name:line:column: error: what", the line with a mark, what was expected, what to do. Columns count bytes from 1. */
export function textFault(bytes: Uint8Array, name: string, fault: Fault): TextFault {
    const { position } = fault;
    let line = 1;
    for (let at = bytes.indexOf(LINE_FEED); at >= 0 && at < position; at = bytes.indexOf(LINE_FEED, at + 1)) ++line;
    const begin = lineBegin(bytes, position);
    const { text, mark } = excerpt(bytes, begin, lineEnd(bytes, position), position);
    const number = String(line);
    return new TextFault(
        `${name}:${line}:${position - begin + 1}: error: ${fault.what}\n` +
            `  ${number} | ${text}\n` +
            `  ${' '.repeat(number.length)} | ${mark}\n` +
            `  expected: ${fault.expected}\n` +
            `  to do:    ${fault.toDo}`,
    );
}

function lineBegin(bytes: Uint8Array, position: number): number {
    return position === 0 ? 0 : bytes.lastIndexOf(LINE_FEED, position - 1) + 1;
}

function lineEnd(bytes: Uint8Array, position: number): number {
    const lineFeed = bytes.indexOf(LINE_FEED, position);
    const end = lineFeed < 0 ? bytes.length : lineFeed;
    return end > position && bytes[end - 1] === CARRIAGE_RETURN ? end - 1 : end;
}

/** Of a long line only the part around the fault. */
function excerpt(bytes: Uint8Array, begin: number, end: number, position: number): { text: string; mark: string } {
    const isShort = end <= begin + LONGEST_EXCERPT || position < begin + LONGEST_EXCERPT / 2;
    const from = isShort ? begin : position - LONGEST_EXCERPT / 2;
    const to = Math.max(position, Math.min(end, from + LONGEST_EXCERPT));
    let markEnd = position;
    while (markEnd < end && belongsToNumber(bytes[markEnd])) ++markEnd;
    const tildes = Math.min(Math.max(0, markEnd - position - 1), LONGEST_EXCERPT / 2);
    const text = shown(bytes.subarray(from, to));
    return { text, mark: ' '.repeat(position - from) + '^' + '~'.repeat(tildes) };
}

function belongsToNumber(c: number): boolean {
    return (c >= 48 && c <= 57) || c === 43 || c === 45;
}

// These files are ASCII; what is not is damage, and its bytes would not show as they stand in the file.
function shown(bytes: Uint8Array): string {
    let text = '';
    for (const c of bytes) text += c === 9 ? ' ' : c < 32 || c > 126 ? '?' : String.fromCharCode(c);
    return text;
}
