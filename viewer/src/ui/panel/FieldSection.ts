import {
    MOTION_FIELDS,
    PROPERTY_FIELDS,
    STRESS_FIELDS,
    type Face,
    type Field,
    type ViewState,
} from '../../state/ViewState';
import { isStressField } from '../../model/Fields';
import { choice, section, select } from '../Controls';
import type { PanelContext, PanelSection } from './PanelContext';

const PRINCIPAL: readonly Field[] = ['S1', 'S2', 'S3'];

/** What is shown: the field, on which face, how averaged. */
export function fieldSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    const named = (fields: readonly Field[]): [Field, string][] => fields.map((field) => [field, texts.fields[field]]);
    // Without the model file only the side is known of the properties.
    const properties = PROPERTY_FIELDS.filter((field) => field === 'side' || result.model !== undefined);
    const notStress = (state: Readonly<ViewState>): string | undefined =>
        isStressField(state.field) ? undefined : t.notStress;

    const controls = [
        select<Field>(
            t.field,
            [
                { label: '', options: named(['none']) },
                {
                    label: texts.fieldGroups.stresses,
                    options: named([
                        'SE',
                        ...STRESS_FIELDS.filter((field) => field !== 'SE' && !PRINCIPAL.includes(field)),
                    ]),
                },
                { label: texts.fieldGroups.principal, options: named(PRINCIPAL) },
                { label: texts.fieldGroups.displacements, options: named(MOTION_FIELDS.slice(0, 4)) },
                { label: texts.fieldGroups.rotations, options: named(MOTION_FIELDS.slice(4)) },
                { label: texts.fieldGroups.properties, options: named(properties) },
            ],
            (state) => state.field,
            (field) => store.set({ field }),
        ),
        choice<Face>(
            t.face,
            [
                ['larger', texts.faces.larger],
                ['positive', texts.faces.positive],
                ['negative', texts.faces.negative],
                ['viewed', texts.faces.viewed],
            ],
            (state) => state.face,
            (face) => store.set({ face }),
            notStress,
        ),
        choice<'nodal' | 'element'>(
            t.average,
            [
                ['nodal', texts.averages.nodal],
                ['element', texts.averages.element],
            ],
            (state) => state.average,
            (average) => store.set({ average }),
            notStress,
            (average) => (average === 'element' && result.own === undefined ? t.noOwn : undefined),
        ),
    ];
    return { root: section(t.result, true, ...controls.map((control) => control.root)), controls };
}
