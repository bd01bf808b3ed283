// Everything that the page says. Each language is a file of texts/, and one that leaves a text out does not compile.
import type { ColourMap, EdgeKind, Face, Field, Language, StandardView } from '../state/ViewState';
import { chinese } from './texts/Chinese';
import { english } from './texts/English';

export interface Texts {
    fields: Record<Field, string>;
    fieldGroups: { stresses: string; principal: string; displacements: string; rotations: string; properties: string };
    faces: Record<Face, string>;
    faceOf: Record<Face, string>;
    averages: { nodal: string; element: string };
    averageOf: { nodal: string; element: string; elementButWalls: string };
    maps: Record<ColourMap, string>;
    edges: Record<EdgeKind, string>;
    views: Record<StandardView, string>;
    kinds: { quad: string; tri: string; wall: string; beam: string; node: string };

    panel: {
        label: string;
        hide: string;
        show: string;
        result: string;
        field: string;
        face: string;
        average: string;
        noOwn: string;
        notStress: string;
        colours: string;
        bands: string;
        smooth: string;
        bandCount: string;
        map: string;
        ownLimits: string;
        lowest: string;
        highest: string;
        limitsOrder: string;
        logarithmic: string;
        noLogarithm: string;
        lowestReplaced: (low: string) => string;
        unit: string;
        unitFactor: string;
        unitName: string;
        unitHint: string;
        numberExpected: string;
        notNegativeExpected: string;
        positiveExpected: string;
        wholeExpected: (from: number, to: number) => string;
        noScale: string;
        flags: string;
        deformation: string;
        deformed: string;
        scale: string;
        trueScale: string;
        fivePercent: string;
        animate: string;
        outline: string;
        symbols: string;
        edges: string;
        loads: string;
        pressures: string;
        lineLoads: string;
        inertia: string;
        supports: string;
        noModel: string;
        noInertia: string;
        noneInModel: string;
        visible: string;
        thicknesses: string;
        sections: string;
        all: string;
        none: string;
        clip: string;
        clipOn: string;
        normal: string;
        turn: string;
        offset: string;
        box: string;
        boxOn: string;
        from: string;
        to: string;
        view: string;
        fit: string;
        projection: string;
        parallel: string;
        perspective: string;
        picture: string;
        size: string;
        asShown: string;
        savePicture: string;
        copyLink: string;
    };

    bar: {
        label: string;
        open: string;
        cut: string;
        search: string;
        searchHint: string;
        searchKind: string;
        go: string;
        noNumber: string;
        notFound: (kind: string, number: string, from: number, to: number) => string;
        noneOfKind: (kind: string) => string;
        theme: string;
        themes: { auto: string; light: string; dark: string };
        language: string;
        help: string;
    };

    legend: {
        max: string;
        min: string;
        node: (node: string) => string;
        noValues: string;
        notFinite: (corners: number) => string;
        deformation: (factor: string) => string;
        forces: (largest: string) => string;
        moments: (largest: string) => string;
        pressures: (range: string) => string;
        lineLoads: (range: string) => string;
        inertia: (largest: string) => string;
        inertiaMoments: (largest: string) => string;
        supports: string;
        range: (low: string, high: string) => string;
    };

    probe: {
        title: string;
        node: string;
        wallNode: (node: number, beam: number) => string;
        element: string;
        atNode: string;
        positive: string;
        negative: string;
        copy: string;
        saveCsv: string;
        remove: string;
        removeAll: string;
    };

    cut: {
        title: string;
        hint: string;
        second: string;
        nothing: string;
        length: string;
        unit: string;
        saveCsv: string;
        close: string;
        pieces: (pieces: number) => string;
        pieceOf: (piece: number, pieces: number) => string;
    };

    report: {
        title: string;
        nothing: string;
        close: string;
        verdicts: { pass: string; warn: string; fail: string };
        severities: { error: string; warning: string; note: string };
    };

    start: {
        title: string;
        drop: string;
        also: string;
        open: string;
        loading: string;
        reading: (name: string) => string;
        cancel: string;
        cancelled: string;
        drawing: string;
    };

    errors: {
        title: string;
        close: string;
        expected: string;
        toDo: string;
        noWebGL: string;
        noWebGLExpected: string;
        noWebGLToDo: string;
        noContourFile: (names: string) => string;
        noContourExpected: string;
        noContourToDo: string;
        fetch: (address: string, reason: string) => string;
        fetchExpected: string;
        fetchToDo: string;
        unforeseen: string;
        address: (words: string) => string;
        addressExpected: string;
        addressToDo: string;
        dismiss: string;
    };

    help: {
        title: string;
        keys: Record<
            | 'rotate'
            | 'pan'
            | 'zoom'
            | 'fit'
            | 'views'
            | 'face'
            | 'deformed'
            | 'edges'
            | 'bands'
            | 'flags'
            | 'animate'
            | 'clip'
            | 'cut'
            | 'search'
            | 'panel'
            | 'help'
            | 'escape'
            | 'tab',
            string
        >;
        mouseKeys: [string, string][];
    };

    pictureLabel: string;
    copied: string;
    saved: (name: string) => string;
}

const TEXTS: Record<Language, Texts> = { en: english, zh: chinese };

export function texts(language: Language): Texts {
    return TEXTS[language];
}

/** What the attribute lang of the page says, so that fonts and screen readers follow. */
export const LANGUAGE_TAGS: Record<Language, string> = { en: 'en', zh: 'zh-Hans' };
