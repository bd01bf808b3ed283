// stand-in: edges of the shown elements
import type { Surface } from './Surface';

export function shownEdges(surface: Surface, shown: Uint8Array, kind: 'mesh' | 'feature' | 'free'): Uint32Array {
  const x = surface.result.coordinates;
  const nodeCount = x.length / 3;
  const head = new Int32Array(nodeCount).fill(-1);
  const sides = surface.cornerNode.length;
  const next = new Int32Array(sides);
  const other = new Uint32Array(sides);
  const first = new Uint32Array(sides);
  const count = new Uint8Array(sides);
  const fold = new Uint8Array(sides);
  const low = new Uint32Array(sides);
  let edges = 0;
  const normal = (e: number): [number, number, number] => {
    const b = surface.cornerBegin(e);
    const n = surface.cornerNode;
    const q = surface.cornerCount(e) === 4;
    const [i, j, k, l] = q ? [n[b], n[b + 2], n[b + 1], n[b + 3]] : [n[b], n[b + 1], n[b], n[b + 2]];
    const u = [0, 1, 2].map((a) => x[3 * j + a] - x[3 * i + a]);
    const v = [0, 1, 2].map((a) => x[3 * l + a] - x[3 * k + a]);
    const c: [number, number, number] = [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]];
    const m = Math.hypot(...c) || 1;
    return [c[0] / m, c[1] / m, c[2] / m];
  };
  for (let e = 0; e < surface.elementCount; ++e) {
    if (!shown[e]) continue;
    const b = surface.cornerBegin(e);
    const c = surface.cornerCount(e);
    for (let i = 0; i < c; ++i) {
      const p = surface.cornerNode[b + i];
      const q = surface.cornerNode[b + ((i + 1) % c)];
      if (p === q) continue;
      const a = Math.min(p, q);
      const z = Math.max(p, q);
      let edge = head[a];
      while (edge >= 0 && other[edge] !== z) edge = next[edge];
      if (edge < 0) {
        edge = edges++;
        next[edge] = head[a];
        head[a] = edge;
        low[edge] = a;
        other[edge] = z;
        first[edge] = e;
      } else if (kind === 'feature') {
        const m = normal(first[edge]);
        const n = normal(e);
        if (Math.abs(m[0] * n[0] + m[1] * n[1] + m[2] * n[2]) < 0.9) fold[edge] = 1;
      }
      if (count[edge] < 255) ++count[edge];
    }
  }
  const out: number[] = [];
  for (let edge = 0; edge < edges; ++edge) {
    if (kind === 'mesh' || count[edge] === 1 || (kind === 'feature' && (count[edge] > 2 || fold[edge]))) out.push(low[edge], other[edge]);
  }
  return Uint32Array.from(out);
}
