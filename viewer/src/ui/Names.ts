import type { Result } from '../model/Result';
import type { Probe } from '../scene/SceneView';
import type { Texts } from './Texts';

/** Nodes of section walls are named by their beam and their number within it, as the contour file has them. */
export function nodeName(result: Result, node: number, texts: Texts): string {
    if (node < result.structureNodes) return String(node);
    const { nodeBegin, count } = result.beams;
    let low = 0;
    let high = count - 1;
    while (low < high) {
        const middle = (low + high + 1) >> 1;
        if (nodeBegin[middle] <= node) low = middle;
        else high = middle - 1;
    }
    return texts.probe.wallNode(node - nodeBegin[low], low);
}

export function elementName(probe: Probe, texts: Texts): string {
    if (probe.kind === 'node') return '–';
    if (probe.kind === 'wall') return `${texts.kinds.beam} ${probe.beam}, ${texts.kinds.wall} ${probe.element}`;
    return `${texts.kinds[probe.kind]} ${probe.element}`;
}
