export type Vec3 = [number, number, number];

export const add = (a: Vec3, b: Vec3): Vec3 => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
export const minus = (a: Vec3, b: Vec3): Vec3 => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
export const scaled = (a: Vec3, factor: number): Vec3 => [factor * a[0], factor * a[1], factor * a[2]];
export const dot = (a: Vec3, b: Vec3): number => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
export const cross = (a: Vec3, b: Vec3): Vec3 => [
    a[1] * b[2] - a[2] * b[1],
    a[2] * b[0] - a[0] * b[2],
    a[0] * b[1] - a[1] * b[0],
];
export const norm = (a: Vec3): number => Math.sqrt(dot(a, a));
/** Of length 1; zero remains zero. */
export const unit = (a: Vec3): Vec3 => scaled(a, 1 / (norm(a) || 1));

/** About an axis of length 1, by an angle in radians (Rodrigues). */
export function rotated(a: Vec3, axis: Vec3, angle: number): Vec3 {
    const c = Math.cos(angle);
    const along = scaled(axis, dot(axis, a) * (1 - c));
    return add(add(scaled(a, c), scaled(cross(axis, a), Math.sin(angle))), along);
}

export function at(array: ArrayLike<number>, index: number): Vec3 {
    return [array[3 * index], array[3 * index + 1], array[3 * index + 2]];
}
