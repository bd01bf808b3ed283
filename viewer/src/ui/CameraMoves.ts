// Moves of the camera by keyboard: pure functions from one camera to the next.
import type { Camera } from '../state/ViewState';

type Vector = [number, number, number];

const add = (a: Vector, b: Vector, factor = 1): Vector => [
    a[0] + factor * b[0],
    a[1] + factor * b[1],
    a[2] + factor * b[2],
];
const cross = (a: Vector, b: Vector): Vector => [
    a[1] * b[2] - a[2] * b[1],
    a[2] * b[0] - a[0] * b[2],
    a[0] * b[1] - a[1] * b[0],
];
const dot = (a: Vector, b: Vector): number => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
const unit = (a: Vector): Vector => {
    const length = Math.hypot(...a) || 1;
    return [a[0] / length, a[1] / length, a[2] / length];
};

/** Rodrigues' formula: v turned about a unit axis. */
function turned(v: Vector, axis: Vector, angle: number): Vector {
    const cosine = Math.cos(angle);
    const alongAxis = dot(axis, v) * (1 - cosine);
    const sideways = cross(axis, v);
    const sine = Math.sin(angle);
    return [0, 1, 2].map((i) => v[i] * cosine + sideways[i] * sine + axis[i] * alongAxis) as Vector;
}

/** Angles in radians: to the right about the vertical of the picture, and upwards. */
export function rotate(camera: Camera, right: number, up: number): Camera {
    let offset = add(camera.position, camera.focalPoint, -1);
    let viewUp = unit(camera.viewUp);
    offset = turned(offset, viewUp, -right);
    const side = unit(cross(viewUp, offset));
    offset = turned(offset, side, -up);
    viewUp = unit(turned(viewUp, side, -up));
    return { ...camera, position: add(camera.focalPoint, offset), viewUp };
}

/** Above 1: nearer. */
export function zoom(camera: Camera, factor: number): Camera {
    const offset = add(camera.position, camera.focalPoint, -1);
    return {
        ...camera,
        position: add(camera.focalPoint, offset, 1 / factor),
        parallelScale: camera.parallelScale / factor,
    };
}

/** The structure moves by fractions of half the height of the picture. */
export function pan(camera: Camera, right: number, up: number): Camera {
    const offset = add(camera.position, camera.focalPoint, -1);
    const vertical = unit(camera.viewUp);
    const side = unit(cross(vertical, offset));
    const move = add(add([0, 0, 0], side, -right * camera.parallelScale), vertical, -up * camera.parallelScale);
    return { ...camera, position: add(camera.position, move), focalPoint: add(camera.focalPoint, move) };
}
