// Draws lines, or single points as discs, in one colour.
import { MotionActor, type Program, type ShaderReplacement } from './MotionActor';

export class LineActor extends MotionActor {
    private factor = 1;

    /** onTop: also in front of what hides it. */
    constructor(
        private width: number,
        options: { onTop?: boolean; discs?: boolean } = {},
    ) {
        super([options.onTop ? ON_TOP : NEARER, ...(options.discs ? DISCS : [])], []);
        const property = this.actor.getProperty();
        property.setLighting(false);
        property.setInterpolationToFlat();
        property.setAmbient(1);
        property.setDiffuse(0);
        this.applyWidth();
    }

    protected beforeDrawing(_program: Program, gl: WebGL2RenderingContext): void {
        // Not all drivers leave lines where they are.
        gl.disable(gl.POLYGON_OFFSET_FILL);
    }

    setColour([red, green, blue, opacity]: [number, number, number, number]): void {
        const property = this.actor.getProperty();
        property.setColor(red, green, blue);
        property.setOpacity(opacity);
    }

    setWidth(width: number): void {
        this.width = width;
        this.applyWidth();
    }

    /** On the width, for a picture of another size. */
    setFactor(factor: number): void {
        this.factor = factor;
        this.applyWidth();
    }

    private applyWidth(): void {
        this.actor.getProperty().setLineWidth(this.factor * this.width);
        this.actor.getProperty().setPointSize(this.factor * this.width);
    }
}

const ON_TOP = depth('-0.999 * gl_Position.w + 0.001 * gl_Position.z');

/** By so little that nothing shines through, but enough where plates and lines bend over one another. */
const NEARER = depth('gl_Position.z - 0.00015 * gl_Position.w');

function depth(expression: string): ShaderReplacement {
    return {
        shaderType: 'Vertex',
        replaceFirst: false,
        originalValue: '//VTK::Light::Impl',
        replacementValue: `gl_Position.z = ${expression};`,
    };
}

const DISCS: ShaderReplacement[] = [
    {
        shaderType: 'Fragment',
        replaceFirst: false,
        originalValue: '//VTK::Picking::Impl',
        replacementValue: 'if (length(gl_PointCoord - vec2(0.5)) > 0.5) discard;',
    },
];
