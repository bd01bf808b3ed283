import type { StandardView } from '../../state/ViewState';
import { button, make, newId } from '../Dom';
import { choice, section } from '../Controls';
import type { PanelContext, PanelSection } from './PanelContext';

export const STANDARD_VIEWS: StandardView[] = ['iso', 'front', 'back', 'left', 'right', 'top', 'bottom'];

/** Sizes of pictures; undefined: as large as the picture on the page. */
const SIZES: ([number, number] | undefined)[] = [undefined, [1280, 720], [1920, 1080], [2560, 1440], [3840, 2160]];

/** From where it is looked at, and what can be taken away from it. */
export function viewSection(context: PanelContext): PanelSection {
    const { store, texts } = context;
    const t = texts.panel;
    const views = make('div', { class: 'buttons views' });
    STANDARD_VIEWS.forEach((view, i) =>
        views.append(button(texts.views[view], () => context.setStandardView(view), { title: `${i + 1}` })),
    );
    views.append(button(t.fit, () => context.fit(), { title: 'F' }));
    const projection = choice<'parallel' | 'perspective'>(
        t.projection,
        [
            ['parallel', t.parallel],
            ['perspective', t.perspective],
        ],
        (state) => (state.parallel ? 'parallel' : 'perspective'),
        (kind) => store.set({ parallel: kind === 'parallel' }),
    );

    const id = newId();
    const size = make('select', { id });
    SIZES.forEach((entry, i) =>
        size.append(make('option', { value: i }, entry ? `${entry[0]} × ${entry[1]}` : t.asShown)),
    );
    const save = button(t.savePicture, () => {
        const [width, height] = SIZES[Number(size.value)] ?? [0, 0];
        context.savePicture(width, height);
    });
    const link = button(t.copyLink, () => context.copyLink());

    const root = section(
        t.view,
        true,
        views,
        projection.root,
        make('div', { class: 'row' }, make('label', { for: id }, t.size), size),
        make('div', { class: 'buttons' }, save, link),
    );
    return { root, controls: [projection] };
}
