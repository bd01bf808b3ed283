// Where points of the model stand in the picture, and which ray of the model lies behind a point of the picture.
import type { Camera } from '../state/ViewState';
import { add, cross, dot, minus, scaled, unit, type Vec3 } from './Vectors';

/** Full angle of view of the perspective camera, in degrees. */
export const VIEW_ANGLE = 30;
export const HALF_ANGLE_TANGENT = Math.tan((VIEW_ANGLE * Math.PI) / 360);

export interface Ray {
    origin: Vec3;
    /** Of length 1. */
    direction: Vec3;
}

export class Projection {
    readonly right: Vec3;
    readonly up: Vec3;
    readonly forward: Vec3;

    constructor(
        readonly camera: Camera,
        readonly parallel: boolean,
        /** CSS pixels. */
        readonly width: number,
        readonly height: number,
    ) {
        this.forward = unit(minus(camera.focalPoint, camera.position));
        this.right = unit(cross(this.forward, camera.viewUp));
        this.up = cross(this.right, this.forward);
    }

    /** undefined: behind the camera. */
    toPixel(point: Vec3): [number, number] | undefined {
        const from = minus(point, this.camera.position);
        const depth = dot(from, this.forward);
        if (!this.parallel && depth <= 0) return undefined;
        const pixels = this.height / 2 / this.halfHeight(depth);
        return [this.width / 2 + pixels * dot(from, this.right), this.height / 2 - pixels * dot(from, this.up)];
    }

    ray(x: number, y: number): Ray {
        const { position } = this.camera;
        const unitsPerPixel = this.halfHeight(1) / (this.height / 2);
        const across = add(
            scaled(this.right, (x - this.width / 2) * unitsPerPixel),
            scaled(this.up, (this.height / 2 - y) * unitsPerPixel),
        );
        return this.parallel
            ? { origin: add(position, across), direction: this.forward }
            : { origin: position, direction: unit(add(this.forward, across)) };
    }

    /** From the surface to the eye. */
    towardsEye(point: Vec3): Vec3 {
        return this.parallel ? scaled(this.forward, -1) : minus(this.camera.position, point);
    }

    /** Half the height of the picture in model units, at a depth. */
    halfHeight(depth: number): number {
        return this.parallel ? this.camera.parallelScale : HALF_ANGLE_TANGENT * depth;
    }
}
