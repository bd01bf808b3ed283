import { expect, test } from 'vitest';
import { parseRunReport } from '../../../src/model/RunReport';

test('checks and findings of a report are taken over with their places', () => {
    const report = parseRunReport(
        JSON.stringify({
            report_version: 1,
            model_file: 'wing/fem_solving.txt',
            result_checks: [{ name: 'reactions', verdict: 'warn', text: 'they are 3 % of the loads' }],
            model_checks: [
                {
                    severity: 'warning',
                    count: 2,
                    finding: 'shells are warped',
                    to_do: 'split them',
                    worst: [{ kind: 'quad', number: 7, detail: 'by 4 degrees' }],
                },
            ],
            warnings: ['slow'],
        }),
        'report.json',
    );
    expect(report.checks).toEqual([{ name: 'reactions', verdict: 'warn', text: 'they are 3 % of the loads' }]);
    expect(report.findings[0]).toMatchObject({ count: 2, toDo: 'split them' });
    expect(report.findings[0].worst).toEqual([{ kind: 'quad', number: 7, detail: 'by 4 degrees' }]);
    expect(report.warnings).toEqual(['slow']);
});

test('a verdict that is not known counts as the gravest', () => {
    const text = JSON.stringify({ report_version: 9, result_checks: [{ name: 'new', verdict: 'odd', text: '' }] });
    expect(parseRunReport(text, 'report.json').checks[0].verdict).toBe('fail');
});

test('what is no report is refused with what to do', () => {
    for (const text of ['', '[]', '{"a":1}', '{"report_version"']) {
        expect(() => parseRunReport(text, 'x.json')).toThrow('x.json: error: this is no report of tarnvexo');
    }
});
