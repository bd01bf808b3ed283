// What can be shown of a result, by the name that the address of the page and the packet have for it.

export const STRESS_FIELDS = ['SX', 'SY', 'SZ', 'TXY', 'TXZ', 'TYZ', 'SE', 'S1', 'S2', 'S3'] as const;
export const MOTION_FIELDS = ['U', 'DX', 'DY', 'DZ', 'R', 'RX', 'RY', 'RZ'] as const;
/** One value per element, not per node. */
export const PROPERTY_FIELDS = ['thickness', 'section', 'material', 'side'] as const;
export type StressField = (typeof STRESS_FIELDS)[number];
export type MotionField = (typeof MOTION_FIELDS)[number];
export type PropertyField = (typeof PROPERTY_FIELDS)[number];
export type Field = StressField | MotionField | PropertyField | 'none';

/** 'larger': the face whose value is farther from zero. 'viewed': each face on its own side. */
export type Face = 'positive' | 'negative' | 'larger' | 'viewed';
