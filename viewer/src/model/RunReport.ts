// The report of a run (docs/formats/report-json.md), as far as the page shows it: what was checked and what was found.
import { TextFault } from './TextFault';

export interface ResultCheck {
    name: string;
    verdict: 'pass' | 'warn' | 'fail';
    text: string;
}

export interface Place {
    kind: string;
    number: number;
    detail: string;
}

export interface Finding {
    severity: 'error' | 'warning' | 'note';
    count: number;
    finding: string;
    toDo: string;
    worst: Place[];
}

export interface RunReport {
    modelFile: string;
    checks: ResultCheck[];
    findings: Finding[];
    warnings: string[];
}

/** Throws TextFault where the text is no report; entries that are not as they should be are left out. */
export function parseRunReport(text: string, name: string): RunReport {
    let value: unknown;
    try {
        value = JSON.parse(text);
    } catch {
        value = undefined;
    }
    if (!isRecord(value) || typeof value.report_version !== 'number') {
        throw new TextFault(
            `${name}: error: this is no report of tarnvexo\n` +
                '  expected: the file that --json has written, an object with "report_version"\n' +
                '  to do:    run tarnvexo solve with --json again, or leave this file out',
        );
    }
    return {
        modelFile: textOf(value.model_file),
        checks: records(value.result_checks).map((check) => ({
            name: textOf(check.name),
            verdict: oneOf(check.verdict, ['fail', 'warn', 'pass']),
            text: textOf(check.text),
        })),
        findings: records(value.model_checks).map((found) => ({
            severity: oneOf(found.severity, ['error', 'warning', 'note']),
            count: numberOf(found.count),
            finding: textOf(found.finding),
            toDo: textOf(found.to_do),
            worst: records(found.worst).map((place) => ({
                kind: textOf(place.kind),
                number: numberOf(place.number),
                detail: textOf(place.detail),
            })),
        })),
        warnings: Array.isArray(value.warnings) ? value.warnings.filter((entry) => typeof entry === 'string') : [],
    };
}

function isRecord(value: unknown): value is Record<string, unknown> {
    return typeof value === 'object' && value !== null && !Array.isArray(value);
}

function records(value: unknown): Record<string, unknown>[] {
    return Array.isArray(value) ? value.filter(isRecord) : [];
}

function textOf(value: unknown): string {
    return typeof value === 'string' ? value : '';
}

function numberOf(value: unknown): number {
    return typeof value === 'number' ? value : NaN;
}

/** What is not known counts as the first, which is the gravest. */
function oneOf<T extends string>(value: unknown, known: readonly T[]): T {
    return known.find((each) => each === value) ?? known[0];
}
