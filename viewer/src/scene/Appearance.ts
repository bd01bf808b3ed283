// stand-in
import type { ViewState } from '../state/ViewState';
import type { Look } from './SurfaceActor';

export function look(state: ViewState, range: [number, number] | undefined): Look {
  const c = [0.267,0.005,0.329, 0.283,0.141,0.458, 0.254,0.265,0.53, 0.207,0.372,0.553, 0.164,0.471,0.558, 0.128,0.567,0.551, 0.135,0.659,0.518, 0.267,0.749,0.441, 0.478,0.821,0.318, 0.741,0.873,0.15, 0.993,0.906,0.144];
  const n = state.bands ? state.bandCount : 32;
  const colours = new Float32Array(3 * n);
  for (let i = 0; i < n; ++i) {
    const t = (10 * i) / (n - 1);
    const k = Math.min(9, Math.floor(t));
    for (let a = 0; a < 3; ++a) colours[3 * i + a] = c[3 * k + a] * (1 - t + k) + c[3 * k + 3 + a] * (t - k);
  }
  return { limits: range ?? [0, 1], logarithmic: state.logarithmic, mode: range ? (state.bands ? 'bands' : 'smooth') : 'plain', colours: range ? colours : new Float32Array([0.7, 0.7, 0.7]), none: [0.5, 0.5, 0.5] };
}
