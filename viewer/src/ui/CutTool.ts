/** A line across the picture: from the first click to the second. */

type Point = [number, number];

export class CutTool {
    private begin?: Point;
    private on = false;
    /** The line so far, for the picture. */
    line?: [Point, Point];
    onChange: () => void = () => undefined;
    onLine: (from: Point, to: Point) => void = () => undefined;

    get active(): boolean {
        return this.on;
    }

    /** Which point the next click gives. */
    get step(): 'first' | 'second' {
        return this.begin ? 'second' : 'first';
    }

    flip(): void {
        if (this.on) this.end();
        else {
            this.on = true;
            this.begin = undefined;
            this.line = undefined;
            this.onChange();
        }
    }

    end(): void {
        this.on = false;
        this.begin = undefined;
        this.line = undefined;
        this.onChange();
    }

    hover(at: Point): void {
        if (!this.begin) return;
        this.line = [this.begin, at];
        this.onChange();
    }

    click(at: Point): void {
        if (!this.begin) {
            this.begin = at;
            this.line = [at, at];
            this.onChange();
            return;
        }
        const from = this.begin;
        // Twice the same point is no line yet.
        if (Math.hypot(at[0] - from[0], at[1] - from[1]) < 3) return;
        this.end();
        this.onLine(from, at);
    }
}
