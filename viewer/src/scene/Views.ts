// How the camera stands and moves. The eye always stands where a perspective picture is as large as a parallel one,
// so that changing between them does not jump.
import type { Camera, StandardView } from '../state/ViewState';
import { HALF_ANGLE_TANGENT, Projection } from './Projection';
import { add, dot, minus, rotated, scaled, unit, type Vec3 } from './Vectors';

/** Where the eye stands, and what is up: z, and from above and below y. */
const STANDARD: Record<StandardView, { from: Vec3; up: Vec3 }> = {
    iso: { from: [-1, -1.3, 0.9], up: [0, 0, 1] },
    front: { from: [0, -1, 0], up: [0, 0, 1] },
    back: { from: [0, 1, 0], up: [0, 0, 1] },
    left: { from: [-1, 0, 0], up: [0, 0, 1] },
    right: { from: [1, 0, 0], up: [0, 0, 1] },
    top: { from: [0, 0, 1], up: [0, 1, 0] },
    bottom: { from: [0, 0, -1], up: [0, -1, 0] },
};

/** Part of the picture that is left free around the model. */
const MARGIN = 1.08;

/** What a picture shall hold. */
export interface Content {
    /** 3 coordinates each; at least one point. */
    points: Float32Array;
    /** What is drawn reaches so far beyond them. */
    around: number;
}

/** As large as the content allows in a picture of this aspect (width / height), seen as before. */
export function fitted(camera: Camera, { points, around }: Content, aspect: number, parallel: boolean): Camera {
    const { right, up, forward } = new Projection(camera, true, 1, 1);
    const middle = (axis: Vec3): number => {
        let [low, high] = [Infinity, -Infinity];
        for (let i = 0; i < points.length; i += 3) {
            const along = axis[0] * points[i] + axis[1] * points[i + 1] + axis[2] * points[i + 2];
            if (along < low) low = along;
            if (along > high) high = along;
        }
        return (low + high) / 2;
    };
    const centre = [right, up, forward].reduce((sum, axis) => add(sum, scaled(axis, middle(axis))), [0, 0, 0] as Vec3);
    let half = 0;
    for (let i = 0; i < points.length; i += 3) {
        const from: Vec3 = [points[i] - centre[0], points[i + 1] - centre[1], points[i + 2] - centre[2]];
        const [above, beside] = [Math.abs(dot(from, up)) + around, Math.abs(dot(from, right)) + around];
        const height = MARGIN * Math.max(above, beside / aspect);
        // What is nearer than the middle is larger in perspective.
        half = Math.max(half, height - (parallel ? 0 : HALF_ANGLE_TANGENT * dot(from, forward)));
    }
    return centred(camera, centre, half || 1);
}

export function standardView(view: StandardView, content: Content, aspect: number, parallel: boolean): Camera {
    const { from, up } = STANDARD[view];
    return fitted({ position: from, focalPoint: [0, 0, 0], viewUp: up, parallelScale: 1 }, content, aspect, parallel);
}

/** About axes of the picture through the focal point, in radians. */
export function turned(camera: Camera, toRight: number, downwards: number): Camera {
    const { right, up } = new Projection(camera, true, 1, 1);
    const turn = (v: Vec3) => rotated(rotated(v, up, -toRight), right, -downwards);
    return {
        ...camera,
        position: add(camera.focalPoint, turn(minus(camera.position, camera.focalPoint))),
        viewUp: turn(up),
    };
}

/** The model follows by these parts of half the height of the picture. */
export function panned(camera: Camera, toRight: number, downwards: number): Camera {
    const { right, up } = new Projection(camera, true, 1, 1);
    const step = add(scaled(right, -toRight * camera.parallelScale), scaled(up, downwards * camera.parallelScale));
    return { ...camera, position: add(camera.position, step), focalPoint: add(camera.focalPoint, step) };
}

/** factor > 1: nearer. The point given (parts of half the height, from the middle, right and down) stays in its place. */
export function zoomed(camera: Camera, factor: number, right = 0, down = 0): Camera {
    const moved = panned(camera, -right * (1 - 1 / factor), -down * (1 - 1 / factor));
    return standing({ ...moved, parallelScale: moved.parallelScale / factor });
}

/** Looks at a point from the same direction. */
export function centred(camera: Camera, point: Vec3, parallelScale: number): Camera {
    const away = minus(camera.position, camera.focalPoint);
    return standing({ ...camera, focalPoint: point, position: add(point, away), parallelScale });
}

function standing(camera: Camera): Camera {
    const from = unit(minus(camera.position, camera.focalPoint));
    return {
        ...camera,
        position: add(camera.focalPoint, scaled(from, camera.parallelScale / HALF_ANGLE_TANGENT)),
    };
}
