// Values of the shown field at the corners of the surface, seen from either face.
import type { Face, Field } from '../state/ViewState';
import { DOFS, STRESS_COLUMNS, type Result } from '../model/Result';
import type { Surface } from './Surface';

export interface CornerValues {
  /** One per corner. Both are the same array where it does not matter from which side one looks. */
  positive: Float32Array;
  negative: Float32Array;
}

export function cornerValues(surface: Surface, field: Field, face: Face, average: 'nodal' | 'element'): CornerValues {
  const r: Result = surface.result;
  void average;
  const col = ['SX', 'SY', 'SZ', 'TXY', 'TXZ', 'TYZ', 'SE'].indexOf(field);
  const pick = (a: Float32Array) => Float32Array.from(surface.cornerVertex, (v) => a[STRESS_COLUMNS * v + col]);
  if (col >= 0) {
    const p = pick(r.positiveFace);
    const n = pick(r.negativeFace);
    if (face === 'viewed') return { positive: p, negative: n };
    const x = face === 'positive' ? p : face === 'negative' ? n : p.map((a, i) => (Math.abs(a) >= Math.abs(n[i]) ? a : n[i]));
    return { positive: x, negative: x };
  }
  const x = Float32Array.from(surface.cornerNode, (n) =>
    Math.hypot(r.displacements[DOFS * n], r.displacements[DOFS * n + 1], r.displacements[DOFS * n + 2]),
  );
  return { positive: x, negative: x };
}
