// A page with nothing but the scene, for tests in a browser: what it holds is within reach as window.page.
import { parseContourText } from '../../src/model/ContourText';
import type { Result } from '../../src/model/Result';
import { Scene } from '../../src/scene/Scene';
import { Store } from '../../src/state/Store';
import { DEFAULT_STATE } from '../../src/state/ViewState';
import { plateStrip, stiffenedPlate } from '../unit/scene/models';

const store = new Store(DEFAULT_STATE);
const scene = new Scene(document.getElementById('scene')!, store.state);
store.subscribe((state, changed) => scene.apply(state, changed));

const page = {
    store,
    scene,
    models: { plateStrip, stiffenedPlate },
    show(result: Result): number {
        const begin = performance.now();
        scene.show(result);
        return performance.now() - begin;
    },
    async load(url: string): Promise<number> {
        const bytes = new Uint8Array(await (await fetch(url)).arrayBuffer());
        return page.show(parseContourText(bytes, url));
    },
    /** Until two more pictures have been drawn. */
    drawn: () => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))),
};
declare global {
    interface Window {
        page: typeof page;
    }
}
window.page = page;
