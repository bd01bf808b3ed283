// Draws triangles coloured by a field. Values are interpolated over each triangle and looked up per pixel, so that
// bands have sharp edges, and new limits or colours rebuild nothing.
import { MOST_BANDS, positionSlack } from '../model/ColourScale';
import { MotionActor, type Program, type ShaderReplacement } from './MotionActor';

/** WebGL's smallest guaranteed number of uniforms holds them. */
const MAX_COLOURS = MOST_BANDS;

export interface Look {
    /** Of the values; positive where logarithmic. */
    limits: [number, number];
    logarithmic: boolean;
    /** bands: a colour for each equal part of the range; smooth: between colours; categories: values are numbers of colours. */
    mode: 'bands' | 'smooth' | 'categories' | 'plain';
    /** 3 per colour, 0 to 1, at most MOST_BANDS; plain: one. */
    colours: Float32Array;
    /** Where there is no value. */
    none: [number, number, number];
    /** Of values below and above the limits; undefined: they have the colours of the ends. */
    beyond?: { under: readonly [number, number, number]; over: readonly [number, number, number] };
}

const MODES = ['bands', 'smooth', 'categories', 'plain'];

export class SurfaceActor extends MotionActor {
    look: Look = {
        limits: [0, 1],
        logarithmic: false,
        mode: 'plain',
        colours: new Float32Array([0.7, 0.7, 0.7]),
        none: [0.5, 0.5, 0.5],
    };
    /** Steps of depth; asked for once, since the browser waits for all that is being drawn before it answers. */
    private depthSteps = 0;
    private readonly palette = new Float32Array(3 * MAX_COLOURS);

    /** back: how far behind its place it is drawn, as part of the depth of the picture. */
    constructor(private readonly back = 0) {
        super(FIELD, ['value']);
    }

    protected beforeDrawing(program: Program, gl: WebGL2RenderingContext): void {
        // Back in depth, by its slope, so that lines on a surface are not covered by it.
        gl.enable(gl.POLYGON_OFFSET_FILL);
        this.depthSteps ||= 2 ** (gl.getParameter(gl.DEPTH_BITS) as number);
        gl.polygonOffset(1.5, 4 + this.back * this.depthSteps);
        const { limits, logarithmic, mode, colours, none, beyond } = this.look;
        this.palette.set(colours.subarray(0, this.palette.length));
        const [low, high] = logarithmic ? [Math.log(limits[0]), Math.log(limits[1])] : limits;
        program.setUniform2f('fieldLimits', low, high);
        program.setUniformi('fieldMode', MODES.indexOf(mode));
        program.setUniformi('fieldLogarithmic', logarithmic ? 1 : 0);
        program.setUniformi('paletteCount', Math.min(MAX_COLOURS, colours.length / 3));
        program.setUniform3fv('palette', this.palette);
        program.setUniform3f('noneColour', ...none);
        // As a part of the range.
        program.setUniform2f('fieldBeyond', beyond ? 1 : 0, beyond ? positionSlack(limits, logarithmic) : 0);
        program.setUniform3f('underColour', ...(beyond?.under ?? none));
        program.setUniform3f('overColour', ...(beyond?.over ?? none));
    }
}

/** Stands for "no number" on the graphics card, where such numbers may be lost; larger than any value. */
export const NO_VALUE = 3e38;

const FIELD: ShaderReplacement[] = [
    {
        shaderType: 'Vertex',
        replaceFirst: true,
        originalValue: '//VTK::Color::Dec',
        replacementValue: 'attribute vec2 valueMC;\nvarying vec2 valueVSOutput;\n//VTK::Color::Dec',
    },
    {
        shaderType: 'Vertex',
        replaceFirst: true,
        originalValue: '//VTK::Color::Impl',
        replacementValue: 'valueVSOutput = valueMC;\n//VTK::Color::Impl',
    },
    {
        shaderType: 'Fragment',
        replaceFirst: true,
        originalValue: '//VTK::Color::Dec',
        replacementValue: `varying vec2 valueVSOutput;
uniform vec2 fieldLimits;
uniform int fieldMode;
uniform int fieldLogarithmic;
uniform int paletteCount;
uniform vec3 palette[${MAX_COLOURS}];
uniform vec3 noneColour;
uniform vec2 fieldBeyond;
uniform vec3 underColour;
uniform vec3 overColour;
vec3 fieldColour(float value) {
  if (fieldMode == 3) return palette[0];
  if (!(abs(value) < 1.0e37)) return noneColour;
  if (fieldMode == 2) return palette[int(value + 0.5) % paletteCount];
  if (fieldLogarithmic == 1) {
    if (value <= 0.0) return fieldBeyond.x > 0.5 ? underColour : noneColour;
    value = log(value);
  }
  float part = (value - fieldLimits.x) / max(fieldLimits.y - fieldLimits.x, 1.0e-37);
  if (fieldBeyond.x > 0.5) {
    if (part < -fieldBeyond.y) return underColour;
    if (part > 1.0 + fieldBeyond.y) return overColour;
  }
  part = clamp(part, 0.0, 1.0);
  if (fieldMode == 0) return palette[min(int(part * float(paletteCount)), paletteCount - 1)];
  float place = part * float(paletteCount - 1);
  int below = min(int(place), paletteCount - 2);
  return mix(palette[below], palette[below + 1], place - float(below));
}
//VTK::Color::Dec`,
    },
    // Light comes over the shoulder of whoever looks. Most of it is everywhere, so that colours can be compared with the
    // legend; what remains shows the form. There are no highlights.
    {
        shaderType: 'Fragment',
        replaceFirst: false,
        originalValue: '//VTK::Light::Impl',
        replacementValue: `float shade = 0.62 + 0.4 * max(0.0, dot(normalVCVSOutput, vec3(-0.28, 0.36, 0.89)));
  float fieldValue = valueVSOutput.x;
  if (gl_FrontFacing == false) fieldValue = valueVSOutput.y;
  gl_FragData[0] = vec4(fieldColour(fieldValue) * min(shade, 1.0), 1.0);
`,
    },
];
