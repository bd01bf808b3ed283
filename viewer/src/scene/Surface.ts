// The surface that is drawn, picked and cut: every element as triangles of corners. A corner is an element's own end
// at a vertex, so that an element can have values that its neighbours do not share.
// Elements are numbered through: quadrilaterals (shells, then section walls of beams), then triangles.
import type { Result } from '../model/Result';
import type { ElementKind } from './SceneView';

export class Surface {
    readonly quadCount: number;
    readonly triCount: number;
    readonly elementCount: number;
    /** Vertex and node of each corner: 4 per quadrilateral, then 3 per triangle. */
    readonly cornerVertex: Uint32Array;
    readonly cornerNode: Uint32Array;
    /** 3 corners per drawn triangle: two for each quadrilateral, then one for each triangle; winding as in Result. */
    readonly triangles: Uint32Array;
    /** The beam of each section wall. */
    readonly wallBeam: Uint32Array;

    constructor(readonly result: Result) {
        this.quadCount = result.quads.length / 4;
        this.triCount = result.tris.length / 3;
        this.elementCount = this.quadCount + this.triCount;

        this.cornerVertex = new Uint32Array(result.quads.length + result.tris.length);
        this.cornerVertex.set(result.quads);
        this.cornerVertex.set(result.tris, result.quads.length);
        this.cornerNode = this.cornerVertex.map((vertex) => result.vertexNodes[vertex]);
        this.triangles = this.split();

        this.wallBeam = new Uint32Array(this.quadCount - result.shellQuads);
        const { count, wallBegin } = result.beams;
        for (let beam = 0; beam < count; ++beam) {
            this.wallBeam.fill(beam, wallBegin[beam] - result.shellQuads, wallBegin[beam + 1] - result.shellQuads);
        }
    }

    cornerBegin(element: number): number {
        return element < this.quadCount ? 4 * element : this.quadCount + 3 * element;
    }

    cornerCount(element: number): number {
        return element < this.quadCount ? 4 : 3;
    }

    elementOfCorner(corner: number): number {
        const quadCorners = 4 * this.quadCount;
        return corner < quadCorners ? corner >>> 2 : this.quadCount + Math.floor((corner - quadCorners) / 3);
    }

    elementOfTriangle(triangle: number): number {
        return triangle < 2 * this.quadCount ? triangle >> 1 : triangle - this.quadCount;
    }

    kind(element: number): ElementKind {
        if (element >= this.quadCount) return 'tri';
        return element < this.result.shellQuads ? 'quad' : 'wall';
    }

    /** Number within its kind; of a wall: within its beam. */
    numberInKind(element: number): number {
        if (element >= this.quadCount) return element - this.quadCount;
        if (element < this.result.shellQuads) return element;
        return element - this.result.beams.wallBegin[this.wallBeam[element - this.result.shellQuads]];
    }

    /** Count and corners of each triangle of the elements shown, of some kinds. */
    cells(shown: Uint8Array, takes: (kind: ElementKind) => boolean): Uint32Array {
        const cells = new Uint32Array((4 * this.triangles.length) / 3);
        let length = 0;
        for (let triangle = 0; triangle < this.triangles.length / 3; ++triangle) {
            const element = this.elementOfTriangle(triangle);
            if (!shown[element] || !takes(this.kind(element))) continue;
            cells[length++] = 3;
            for (let i = 0; i < 3; ++i) cells[length++] = this.triangles[3 * triangle + i];
        }
        return cells.slice(0, length);
    }

    /** Along the shorter diagonal, which bends a warped quadrilateral least. */
    private split(): Uint32Array {
        const x = this.result.coordinates;
        const node = this.cornerNode;
        const distance = (a: number, b: number) => {
            const p = 3 * node[a];
            const q = 3 * node[b];
            return (x[p] - x[q]) ** 2 + (x[p + 1] - x[q + 1]) ** 2 + (x[p + 2] - x[q + 2]) ** 2;
        };
        const triangles = new Uint32Array(6 * this.quadCount + 3 * this.triCount);
        let out = 0;
        for (let corner = 0; corner < 4 * this.quadCount; corner += 4) {
            const first = distance(corner, corner + 2) <= distance(corner + 1, corner + 3);
            triangles[out++] = corner;
            triangles[out++] = corner + 1;
            triangles[out++] = first ? corner + 2 : corner + 3;
            triangles[out++] = first ? corner : corner + 1;
            triangles[out++] = corner + 2;
            triangles[out++] = corner + 3;
        }
        for (let corner = 4 * this.quadCount; corner < node.length; ++corner) triangles[out++] = corner;
        return triangles;
    }
}
