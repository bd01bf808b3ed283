// What is looked at, and how: all of it fits into the address of the page, so that a colleague sees the same view.

import type { ColourMap } from '../model/ColourScale';
import type { Face, Field } from '../model/FieldNames';

export * from '../model/FieldNames';
export type { ColourMap };

export type EdgeKind = 'none' | 'mesh' | 'feature' | 'free';
export type Language = 'en' | 'zh';
export type StandardView = 'iso' | 'front' | 'back' | 'left' | 'right' | 'top' | 'bottom';

export interface Camera {
    position: [number, number, number];
    focalPoint: [number, number, number];
    viewUp: [number, number, number];
    /** Half the height of the picture in model units, in parallel projection. */
    parallelScale: number;
}

export interface Clip {
    normal: [number, number, number];
    /** Where the plane cuts the extent of the model along its normal: 0 to 1. */
    offset: number;
}

export interface ViewState {
    field: Field;
    face: Face;
    /** Nodal averages, or each element's own stresses. */
    average: 'nodal' | 'element';
    bands: boolean;
    bandCount: number;
    colourMap: ColourMap;
    /** undefined: those of the values shown. */
    limits?: [number, number];
    logarithmic: boolean;
    flags: boolean;
    /** Stresses are told divided by this factor, in the unit of this name; limits stay in the unit of the model. */
    unitFactor: number;
    unitName: string;

    deformed: boolean;
    /** Factor on displacements; undefined: the largest is shown as 5 % of the size of the model. */
    scale?: number;
    animated: boolean;
    undeformedOutline: boolean;

    edges: EdgeKind;
    showLoads: boolean;
    showPressures: boolean;
    showLineLoads: boolean;
    showInertia: boolean;
    showSupports: boolean;

    showQuads: boolean;
    showTris: boolean;
    showBeams: boolean;
    /** Numbers of thicknesses and sections that are hidden. */
    hiddenThicknesses: number[];
    hiddenSections: number[];
    clip?: Clip;
    /** Only what has its centre within: x, y, z from, x, y, z to. */
    box?: [number, number, number, number, number, number];

    parallel: boolean;
    camera?: Camera;
    dark: boolean;
    language: Language;
}

/** Parts of the state that show symbols. */
export const SYMBOL_KEYS = [
    'showLoads',
    'showPressures',
    'showLineLoads',
    'showInertia',
    'showSupports',
] as const satisfies readonly (keyof ViewState)[];

export const DEFAULT_STATE: ViewState = {
    field: 'SE',
    face: 'larger',
    average: 'nodal',
    bands: true,
    bandCount: 12,
    colourMap: 'viridis',
    logarithmic: false,
    flags: true,
    unitFactor: 1,
    unitName: '',
    deformed: true,
    animated: false,
    undeformedOutline: false,
    edges: 'feature',
    showLoads: false,
    showPressures: false,
    showLineLoads: false,
    showInertia: false,
    showSupports: false,
    showQuads: true,
    showTris: true,
    showBeams: true,
    hiddenThicknesses: [],
    hiddenSections: [],
    parallel: true,
    dark: false,
    language: 'en',
};
