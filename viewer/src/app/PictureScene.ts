import type { SceneView } from '../scene/SceneView';
import type { CutPiece } from '../ui/CutPlot';

/** What labels over the picture need besides. */
export interface PictureScene extends SceneView {
    /** Where a place of the model stands, in CSS pixels; undefined: not within the picture. */
    project(point: [number, number, number]): [number, number] | undefined;
    /** points: 3 coordinates per point. */
    cut(from: [number, number], to: [number, number]): (CutPiece & { points: Float32Array })[];
    /** Where a node as it is deformed stands, in CSS pixels; undefined: not within the picture. */
    projectNode(node: number): [number, number] | undefined;
    /** Called after each drawing, so that labels follow. */
    onDraw(listener: () => void): void;
    /** Takes away the mark of goTo. */
    unmark(): void;
    /** CSS pixels at the right of the picture that the structure is fitted beside. */
    rightInset: number;
}
