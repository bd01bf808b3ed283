// A picture for a file: the structure as the scene draws it, with legend, flags and markers on it.
import type { SceneView } from '../scene/SceneView';
import { drawOverlay, type OverlayContent } from '../ui/Overlay';
import { canvasColours } from '../ui/Theme';

type Point = [number, number];

/** Height of a picture, in pixels, in which letters are as large as on a page. */
const PLAIN_HEIGHT = 810;

export interface PictureSize {
    width: number;
    height: number;
}

/** Letters grow with the picture, so that they can be read when it is shown as large as a small one. */
export function letterScale({ height }: PictureSize): number {
    return Math.min(6, Math.max(0.6, height / PLAIN_HEIGHT));
}

/** Where a point of the page's picture stands in a picture of another size: both show the same height of the model. */
export function mapping(from: PictureSize, to: PictureSize): (point: Point) => Point {
    const factor = to.height / from.height;
    return ([x, y]) => [to.width / 2 + (x - from.width / 2) * factor, y * factor];
}

/**
 * width and height in pixels, page: size of the picture on the page in CSS pixels. letters: factor on letters, lines and
 * markers. content gives the overlay with its points mapped into the size that letters are measured in.
 */
export async function composePicture(
    scene: SceneView,
    size: PictureSize,
    page: PictureSize,
    content: (map: (point: Point) => Point) => OverlayContent,
    letters: number,
): Promise<Blob> {
    const structure = await createImageBitmap(await scene.picture(size.width, size.height, letters));
    const canvas = document.createElement('canvas');
    canvas.width = size.width;
    canvas.height = size.height;
    const context = canvas.getContext('2d')!;
    context.drawImage(structure, 0, 0, size.width, size.height);
    structure.close();
    context.scale(letters, letters);
    const logical = { width: size.width / letters, height: size.height / letters };
    drawOverlay(context, logical, content(mapping(page, logical)), canvasColours());
    return new Promise((resolve, reject) => {
        canvas.toBlob((blob) => (blob ? resolve(blob) : reject(new Error('the picture is too large'))), 'image/png');
    });
}
