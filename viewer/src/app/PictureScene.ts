import type { SceneView } from '../scene/SceneView';

/** What labels over the picture need besides. */
export interface PictureScene extends SceneView {
    /** Where a node as it is deformed stands, in CSS pixels; undefined: not within the picture. */
    projectNode(node: number): [number, number] | undefined;
    /** Called after each drawing, so that labels follow. */
    onDraw(listener: () => void): void;
    /** Takes away the mark of goTo. */
    unmark(): void;
    /** CSS pixels at the right of the picture that the structure is fitted beside. */
    rightInset: number;
}
