// What is searched for by its number: "2012", and "25 of beam 471" or "471/25" for a node of the section walls of a beam.
import type { Result } from '../model/Result';
import type { Texts } from './Texts';

export type SearchKind = 'node' | 'quad' | 'tri' | 'beam';

/** A number, of nodes as Result counts them; or why there is none. */
export type Found = { number: number } | { refusal: string };

export function findNumber(result: Result, kind: SearchKind, text: string, texts: Texts): Found {
    const { kinds, bar } = texts;
    const typed = text.trim();
    const within = (name: string, number: number, count: number): Found => {
        if (count === 0) return { refusal: bar.noneOfKind(name) };
        return number < count ? { number } : { refusal: bar.notFound(name, String(number), 0, count - 1) };
    };
    if (kind === 'node') {
        const wallNode =
            /^(?<node>\d+) of beam (?<beam>\d+)$/i.exec(typed) ?? /^(?<beam>\d+)\/(?<node>\d+)$/.exec(typed);
        if (wallNode) {
            const { count, nodeBegin } = result.beams;
            const beam = within(kinds.beam, Number(wallNode.groups!.beam), count);
            if ('refusal' in beam) return beam;
            const begin = nodeBegin[beam.number];
            const name = `${kinds.beam} ${beam.number}, ${kinds.node}`;
            const node = within(name, Number(wallNode.groups!.node), nodeBegin[beam.number + 1] - begin);
            return 'refusal' in node ? node : { number: begin + node.number };
        }
    }
    if (!/^\d+$/.test(typed)) return { refusal: bar.noNumber };
    const counts = {
        node: result.structureNodes,
        quad: result.shellQuads,
        tri: result.tris.length / 3,
        beam: result.beams.count,
    };
    return within(kinds[kind], Number(typed), counts[kind]);
}
