// Takes numbers and fixed texts from the bytes of a result file, strictly: a number must be the text that writing it
// with six significant digits gives ("0.5", "1e-05", "-nan", but not "+1", "0.50", "1E5" or seven digits). Nothing is
// split into strings: a file of 150 MB has some ten million numbers.

const MINUS = 45;
const PLUS = 43;
const POINT = 46;
const ZERO = 48;
const NINE = 57;
const LINE_FEED = 10;
const CARRIAGE_RETURN = 13;
const SIGNIFICANT_DIGITS = 6;
const LARGEST_INTEGER = 2147483647;

// 10^i for i from -LARGEST_POWER on. Numbers beyond are taken the slow way: near the ends of the range of a double six
// digits need not be there any more.
const LARGEST_POWER = 300;
const POWERS = Float64Array.from({ length: 2 * LARGEST_POWER + 1 }, (_, i) => Number(`1e${i - LARGEST_POWER}`));

export class TextScanner {
    at = 0;
    /** Of the last number or integer taken. */
    value = 0;

    constructor(readonly bytes: Uint8Array) {}

    get left(): number {
        return this.bytes.length - this.at;
    }

    /** Takes an ASCII text, or stays where it is and returns false; so do the others. */
    takeText(text: string): boolean {
        for (let i = 0; i < text.length; ++i) {
            if (this.bytes[this.at + i] !== text.charCodeAt(i)) return false;
        }
        this.at += text.length;
        return true;
    }

    takeByte(byte: number): boolean {
        if (this.bytes[this.at] !== byte) return false;
        ++this.at;
        return true;
    }

    /** "\n", or "\r\n" as on Windows. */
    takeLineEnd(): boolean {
        const lineFeed = this.bytes[this.at] === CARRIAGE_RETURN ? this.at + 1 : this.at;
        if (this.bytes[lineFeed] !== LINE_FEED) return false;
        this.at = lineFeed + 1;
        return true;
    }

    /** A count or a number of a node: 0 to 2147483647, without zeros in front. */
    takeInteger(): boolean {
        const begin = this.at;
        let at = begin;
        let value = 0;
        for (let c = this.bytes[at]; c >= ZERO && c <= NINE; c = this.bytes[++at]) {
            value = value * 10 + (c - ZERO);
            if (value > LARGEST_INTEGER) return false;
        }
        if (at === begin || (this.bytes[begin] === ZERO && at - begin > 1)) return false;
        this.value = value;
        this.at = at;
        return true;
    }

    /** The longest text that is a number at all must be the one that writing the number gives. */
    takeNumber(): boolean {
        const bytes = this.bytes;
        let at = this.at;
        const negative = bytes[at] === MINUS;
        if (negative) ++at;

        // digits
        const first = bytes[at];
        const wholeBegin = at;
        let m = 0;
        let c = first;
        while (c >= ZERO && c <= NINE) {
            m = m * 10 + (c - ZERO);
            c = bytes[++at];
        }
        const whole = at - wholeBegin;
        if (whole === 0) return this.takeWord(at, negative);
        let decimals = 0;
        let last = first;
        if (c === POINT) {
            c = bytes[++at];
            const begin = at;
            while (c >= ZERO && c <= NINE) {
                m = m * 10 + (c - ZERO);
                last = c;
                c = bytes[++at];
            }
            decimals = at - begin;
            if (decimals === 0 || last === ZERO) return false;
        }
        const exponentBegin = at;
        if ((c === 101 || c === 69) && isExponent(bytes, at + 1)) {
            return whole === 1 && first !== ZERO && decimals < SIGNIFICANT_DIGITS
                ? this.takeExponent(exponentBegin, m, decimals, negative)
                : false;
        }

        // without exponent: from 0.0001 to 999999
        if (first === ZERO) {
            if (whole > 1) return false;
            // zeros behind the point are no significant digits
            if (
                decimals > 0 &&
                (m >= 1e6 || decimals > SIGNIFICANT_DIGITS + 3 || m * 1e4 < POWERS[LARGEST_POWER + decimals])
            )
                return false;
        } else if (whole + decimals > SIGNIFICANT_DIGITS) return false;
        const magnitude = m / POWERS[LARGEST_POWER + decimals]; // both exact, so rounded once
        this.value = negative ? -magnitude : magnitude;
        this.at = at;
        return true;
    }

    /** at: the "e". "e-05", "e+06", "e+100", and only where a number is written so. */
    private takeExponent(at: number, m: number, decimals: number, negative: boolean): boolean {
        const bytes = this.bytes;
        if (bytes[at] !== 101) return false;
        const sign = bytes[at + 1];
        if (sign !== PLUS && sign !== MINUS) return false;
        const begin = at + 2;
        let end = begin;
        let exponent = 0;
        for (let c = bytes[end]; c >= ZERO && c <= NINE; c = bytes[++end]) exponent = exponent * 10 + (c - ZERO);
        const digits = end - begin;
        if (digits < 2 || digits > 3 || (digits === 3 && bytes[begin] === ZERO)) return false;
        if (sign === MINUS ? exponent < 5 : exponent < SIGNIFICANT_DIGITS) return false;
        const power = (sign === MINUS ? -exponent : exponent) - decimals;
        let magnitude: number;
        if (power >= -LARGEST_POWER && power <= LARGEST_POWER) {
            // Powers up to 10^22 are exact; beyond, the product is off by a unit or two of a double's last place.
            magnitude =
                power < 0 && power >= -22 ? m / POWERS[LARGEST_POWER - power] : m * POWERS[LARGEST_POWER + power];
        } else {
            magnitude = Number(`${m}e${power}`);
            if (!Number.isFinite(magnitude) || !isWrittenSo(magnitude, m, power)) return false;
        }
        this.value = negative ? -magnitude : magnitude;
        this.at = end;
        return true;
    }

    /** "inf", "nan"; "infinity", "nan(...)" and capitals are numbers, too, but not as they are written. */
    private takeWord(at: number, negative: boolean): boolean {
        const word = String.fromCharCode(...this.bytes.subarray(at, at + 8));
        if (word.startsWith('inf') && word.toLowerCase() !== 'infinity') {
            this.value = negative ? -Infinity : Infinity;
        } else if (word.startsWith('nan') && !this.hasPayload(at + 3)) {
            this.value = NaN;
        } else {
            return false;
        }
        this.at = at + 3;
        return true;
    }

    private hasPayload(at: number): boolean {
        if (this.bytes[at] !== 40) return false;
        do ++at;
        while (at < this.bytes.length && /\w/.test(String.fromCharCode(this.bytes[at])));
        return this.bytes[at] === 41;
    }
}

/** Behind an "e": a sign or none, and a digit at least. Else the "e" is not part of the number. */
function isExponent(bytes: Uint8Array, at: number): boolean {
    const c = bytes[at] === PLUS || bytes[at] === MINUS ? bytes[at + 1] : bytes[at];
    return c >= ZERO && c <= NINE;
}

/** Near the least double there are fewer than six digits: of two texts for one value only one is what writing gives. */
function isWrittenSo(magnitude: number, m: number, power: number): boolean {
    const [digits, exponent] = magnitude.toExponential(SIGNIFICANT_DIGITS - 1).split('e');
    const written = digits.replace('.', '').replace(/0+$/, '');
    return written === String(m).replace(/0+$/, '') && Number(exponent) === power + String(m).length - 1;
}
