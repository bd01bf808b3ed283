// A mapper that deforms on the graphics card: each point has a motion, and the picture shows point + scale · motion.
// A change of scale is one number, so that an animation rebuilds nothing.
import vtkDataArray from '@kitware/vtk.js/Common/Core/DataArray';
import vtkPlane from '@kitware/vtk.js/Common/DataModel/Plane';
import vtkPolyData from '@kitware/vtk.js/Common/DataModel/PolyData';
import vtkActor from '@kitware/vtk.js/Rendering/Core/Actor';
import vtkMapper from '@kitware/vtk.js/Rendering/Core/Mapper';
import type { ClipPlane } from './Visibility';

/** What the library hands over before it draws. */
interface Drawn {
    getProgram(): Program;
    getCABO(): {
        getCoordScale(): [number, number, number] | null;
        getOpenGLRenderWindow(): { getContext(): WebGL2RenderingContext };
    };
}

export interface Program {
    setUniformi(name: string, value: number): void;
    setUniform2f(name: string, a: number, b: number): void;
    setUniform3f(name: string, a: number, b: number, c: number): void;
    setUniform3fv(name: string, values: Float32Array): void;
}

export interface ShaderReplacement {
    shaderType: 'Vertex' | 'Fragment';
    /** Whether it comes before those of the library. */
    replaceFirst: boolean;
    originalValue: string;
    replacementValue: string;
}

export interface Geometry {
    /** 3 per point. */
    points: Float32Array;
    motion: Float32Array;
    /** Count and points of each cell. */
    lines?: Uint32Array;
    polys?: Uint32Array;
    verts?: Uint32Array;
    /** 2 per point, for the shader of the field. */
    values?: Float32Array;
}

export abstract class MotionActor {
    readonly actor = vtkActor.newInstance({ forceOpaque: true });
    /** Factor on motions. */
    scale = 0;
    protected readonly mapper = vtkMapper.newInstance({ scalarVisibility: false });
    private readonly plane = vtkPlane.newInstance();
    private empty = true;
    private wanted = true;

    constructor(replacements: ShaderReplacement[], attributes: string[]) {
        // Picking does not go through the library: it need not note which cell each point is of.
        (this.mapper as unknown as { setPopulateSelectionSettings(on: boolean): void }).setPopulateSelectionSettings(
            false,
        );
        this.mapper.setCustomShaderAttributes(['motion', ...attributes]);
        const properties = this.mapper.getViewSpecificProperties() as Record<string, unknown>;
        properties.OpenGL = {
            // Each text stands once in the shaders.
            ShaderReplacements: [...MOTION, ...replacements].map((each) => ({ ...each, replaceAll: false })),
        };
        properties.ShadersCallbacks = [
            {
                callback: (_: unknown, drawn: Drawn) => {
                    const program = drawn.getProgram();
                    // The library brings points of large or far models nearer to 1.
                    const [x, y, z] = drawn.getCABO().getCoordScale() ?? [1, 1, 1];
                    program.setUniform3f('motionScale', this.scale * x, this.scale * y, this.scale * z);
                    this.beforeDrawing(program, drawn.getCABO().getOpenGLRenderWindow().getContext());
                },
            },
        ];
        this.actor.setMapper(this.mapper);
        this.actor.setVisibility(false);
    }

    setGeometry(geometry: Geometry): void {
        const data = vtkPolyData.newInstance();
        data.getPoints().setData(geometry.points, 3);
        if (geometry.lines) data.getLines().setData(geometry.lines);
        if (geometry.polys) data.getPolys().setData(geometry.polys);
        if (geometry.verts) data.getVerts().setData(geometry.verts);
        const attribute = (name: string, numberOfComponents: number, values: Float32Array) =>
            data.getPointData().addArray(vtkDataArray.newInstance({ name, numberOfComponents, values }));
        attribute('motion', 3, geometry.motion);
        if (geometry.values) attribute('value', 2, geometry.values);
        this.mapper.setInputData(data);
        this.empty = !(geometry.lines?.length || geometry.polys?.length || geometry.verts?.length);
        this.actor.setVisibility(this.wanted && !this.empty);
    }

    setVisible(visible: boolean): void {
        this.wanted = visible;
        this.actor.setVisibility(visible && !this.empty);
    }

    setClip(plane: ClipPlane | undefined): void {
        if (!plane) {
            this.mapper.removeAllClippingPlanes();
            return;
        }
        const [x, y, z] = plane.normal;
        this.plane.setNormal(-x, -y, -z);
        this.plane.setOrigin(x * plane.distance, y * plane.distance, z * plane.distance);
        if (this.mapper.getNumberOfClippingPlanes() === 0) this.mapper.addClippingPlane(this.plane);
    }

    protected abstract beforeDrawing(program: Program, gl: WebGL2RenderingContext): void;
}

const MOTION: ShaderReplacement[] = [
    {
        shaderType: 'Vertex',
        replaceFirst: true,
        originalValue: '//VTK::Camera::Dec',
        replacementValue: 'attribute vec3 motionMC;\nuniform vec3 motionScale;\n//VTK::Camera::Dec',
    },
    {
        shaderType: 'Vertex',
        replaceFirst: true,
        originalValue: 'void main()\n{',
        replacementValue: 'void main()\n{\n  vec4 placeMC = vertexMC + vec4(motionScale * motionMC, 0.0);',
    },
    // Whatever the library computes from the point, it shall compute from its place.
    ...['MCVCMatrix * vertexMC', 'MCPCMatrix * vertexMC', 'dot(clipPlanes[planeNum], vertexMC)'].map((text) => ({
        shaderType: 'Vertex' as const,
        replaceFirst: false,
        originalValue: text,
        replacementValue: text.replace('vertexMC', 'placeMC'),
    })),
];
