import type { Place, RunReport } from '../model/RunReport';
import { button, make } from './Dom';
import type { SearchKind } from './Search';
import type { Texts } from './Texts';

const FOUND_IN_PICTURE: readonly string[] = ['node', 'quad', 'tri', 'beam'] satisfies SearchKind[];

/** What the report of the run says about model and results; places are gone to by a click. */
export class ReportSheet {
    readonly root = make('div', { class: 'report scroll', tabindex: 0, role: 'region' });

    render(report: RunReport, texts: Texts, goTo: (kind: SearchKind, number: number) => void): void {
        const t = texts.report;
        this.root.setAttribute('aria-label', t.title);
        const place = ({ kind, number, detail }: Place): Node => {
            if (!FOUND_IN_PICTURE.includes(kind)) return make('span', {}, `${kind} ${number}`);
            const found = kind as SearchKind;
            return button(`${texts.kinds[found]} ${number}`, () => goTo(found, number), { title: detail });
        };
        const row = (grade: string, label: string, ...content: (Node | string)[]): HTMLElement =>
            make('tr', {}, make('th', { scope: 'row', class: `grade ${grade}` }, label), make('td', {}, ...content));
        const rows = [
            ...report.checks.map(({ name, verdict, text }) => row(verdict, t.verdicts[verdict], `${name}: ${text}`)),
            ...report.findings.map(({ severity, count, finding, toDo, worst }) =>
                row(
                    severity,
                    t.severities[severity],
                    `${count} ${finding}`,
                    ...(toDo ? [make('div', { class: 'quiet' }, toDo)] : []),
                    make('div', { class: 'buttons' }, ...worst.map(place)),
                ),
            ),
            ...report.warnings.map((text) => row('warning', t.severities.warning, text)),
        ];
        this.root.replaceChildren(
            make('p', { class: 'quiet' }, report.modelFile),
            rows.length > 0 ? make('table', {}, make('tbody', {}, ...rows)) : make('p', {}, t.nothing),
        );
    }
}
