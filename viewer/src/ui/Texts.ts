// Everything that the page says, in every language. A text that is missing in one of them does not compile.
import type { ColourMap, EdgeKind, Face, Field, Language, StandardView } from '../state/ViewState';

export interface Texts {
    fields: Record<Field, string>;
    fieldGroups: { stresses: string; principal: string; displacements: string; rotations: string; properties: string };
    faces: Record<Face, string>;
    faceOf: Record<Face, string>;
    averages: { nodal: string; element: string };
    averageOf: { nodal: string; element: string; elementButWalls: string };
    maps: Record<ColourMap, string>;
    edges: Record<EdgeKind, string>;
    views: Record<StandardView, string>;
    kinds: { quad: string; tri: string; wall: string; beam: string; node: string };

    panel: {
        label: string;
        hide: string;
        show: string;
        result: string;
        field: string;
        face: string;
        average: string;
        noOwn: string;
        notStress: string;
        colours: string;
        bands: string;
        smooth: string;
        bandCount: string;
        map: string;
        ownLimits: string;
        lowest: string;
        highest: string;
        limitsOrder: string;
        logarithmic: string;
        noLogarithm: string;
        lowestReplaced: (low: string) => string;
        unit: string;
        unitFactor: string;
        unitName: string;
        unitHint: string;
        numberExpected: string;
        notNegativeExpected: string;
        positiveExpected: string;
        wholeExpected: (from: number, to: number) => string;
        noScale: string;
        flags: string;
        deformation: string;
        deformed: string;
        scale: string;
        trueScale: string;
        fivePercent: string;
        animate: string;
        outline: string;
        symbols: string;
        edges: string;
        loads: string;
        loadsHint: string;
        inertia: string;
        supports: string;
        noModel: string;
        noInertia: string;
        noneInModel: string;
        visible: string;
        thicknesses: string;
        sections: string;
        all: string;
        none: string;
        clip: string;
        clipOn: string;
        normal: string;
        turn: string;
        offset: string;
        box: string;
        boxOn: string;
        from: string;
        to: string;
        view: string;
        fit: string;
        projection: string;
        parallel: string;
        perspective: string;
        picture: string;
        size: string;
        asShown: string;
        savePicture: string;
        copyLink: string;
    };

    bar: {
        label: string;
        open: string;
        cut: string;
        search: string;
        searchHint: string;
        searchKind: string;
        go: string;
        noNumber: string;
        notFound: (kind: string, number: string, from: number, to: number) => string;
        noneOfKind: (kind: string) => string;
        theme: string;
        themes: { auto: string; light: string; dark: string };
        language: string;
        help: string;
    };

    legend: {
        max: string;
        min: string;
        node: (node: string) => string;
        noValues: string;
        notFinite: (corners: number) => string;
        deformation: (factor: string) => string;
        forces: (largest: string) => string;
        moments: (largest: string) => string;
        inertia: (largest: string) => string;
        supports: string;
    };

    probe: {
        title: string;
        node: string;
        wallNode: (node: number, beam: number) => string;
        element: string;
        atNode: string;
        positive: string;
        negative: string;
        copy: string;
        saveCsv: string;
        remove: string;
        removeAll: string;
    };

    cut: {
        title: string;
        hint: string;
        second: string;
        nothing: string;
        length: string;
        saveCsv: string;
        close: string;
        pieces: (pieces: number) => string;
        pieceOf: (piece: number, pieces: number) => string;
    };

    report: {
        title: string;
        nothing: string;
        close: string;
        verdicts: { pass: string; warn: string; fail: string };
        severities: { error: string; warning: string; note: string };
    };

    start: {
        title: string;
        drop: string;
        also: string;
        open: string;
        loading: string;
        reading: (name: string) => string;
        cancel: string;
        cancelled: string;
        drawing: string;
    };

    errors: {
        title: string;
        close: string;
        expected: string;
        toDo: string;
        noWebGL: string;
        noWebGLExpected: string;
        noWebGLToDo: string;
        noContourFile: (names: string) => string;
        noContourExpected: string;
        noContourToDo: string;
        fetch: (address: string, reason: string) => string;
        fetchExpected: string;
        fetchToDo: string;
        unforeseen: string;
        address: (words: string) => string;
        addressExpected: string;
        addressToDo: string;
        dismiss: string;
    };

    help: {
        title: string;
        keys: Record<
            | 'rotate'
            | 'pan'
            | 'zoom'
            | 'fit'
            | 'views'
            | 'face'
            | 'deformed'
            | 'edges'
            | 'bands'
            | 'flags'
            | 'animate'
            | 'clip'
            | 'cut'
            | 'search'
            | 'panel'
            | 'help'
            | 'escape'
            | 'tab',
            string
        >;
        mouseKeys: [string, string][];
    };

    pictureLabel: string;
    copied: string;
    saved: (name: string) => string;
}

const english: Texts = {
    fields: {
        SE: 'Equivalent stress SE',
        SX: 'Stress SX',
        SY: 'Stress SY',
        SZ: 'Stress SZ',
        TXY: 'Shear stress TXY',
        TXZ: 'Shear stress TXZ',
        TYZ: 'Shear stress TYZ',
        S1: 'Largest principal stress S1',
        S2: 'Middle principal stress S2',
        S3: 'Smallest principal stress S3',
        U: 'Displacement U',
        DX: 'Displacement DX',
        DY: 'Displacement DY',
        DZ: 'Displacement DZ',
        R: 'Rotation R',
        RX: 'Rotation RX',
        RY: 'Rotation RY',
        RZ: 'Rotation RZ',
        thickness: 'Thickness',
        section: 'Beam section',
        material: 'Material',
        side: 'Side of the shells',
        none: 'No field',
    },
    fieldGroups: {
        stresses: 'Stresses',
        principal: 'Principal stresses',
        displacements: 'Displacements',
        rotations: 'Rotations',
        properties: 'Properties',
    },
    faces: { larger: 'Larger', positive: 'Positive', negative: 'Negative', viewed: 'Viewed' },
    faceOf: { larger: 'larger face', positive: 'positive face', negative: 'negative face', viewed: 'viewed face' },
    averages: { nodal: 'Nodal', element: 'Element' },
    averageOf: {
        nodal: 'nodal average',
        element: 'element values',
        elementButWalls: 'element values (beam walls: averaged)',
    },
    maps: {
        viridis: 'Viridis',
        cividis: 'Cividis',
        turbo: 'Turbo (rainbow)',
        coolwarm: 'Cool–warm (diverging)',
        grey: 'Grey',
    },
    edges: { none: 'None', mesh: 'Mesh', feature: 'Feature', free: 'Free' },
    views: { iso: 'Iso', front: 'Front', back: 'Back', left: 'Left', right: 'Right', top: 'Top', bottom: 'Bottom' },
    kinds: { quad: 'Quad', tri: 'Triangle', wall: 'Wall', beam: 'Beam', node: 'Node' },
    panel: {
        label: 'Settings of the view',
        hide: 'Hide the settings',
        show: 'Show the settings',
        result: 'Result',
        field: 'Field',
        face: 'Face',
        average: 'Average',
        noOwn: 'element values: open “Shell element node stress.txt” too',
        notStress: 'only stresses have faces and averages',
        colours: 'Colours',
        bands: 'Bands',
        smooth: 'Smooth',
        bandCount: 'Number',
        map: 'Map',
        ownLimits: 'Own limits',
        lowest: 'Lowest',
        highest: 'Highest',
        limitsOrder: 'the highest must be above the lowest',
        logarithmic: 'Logarithmic',
        lowestReplaced: (low) => `a logarithmic scale begins above zero: ${low} is used`,
        unit: 'Unit of stresses',
        unitFactor: 'Factor',
        unitName: 'Name',
        unitHint: 'stresses are told divided by the factor: 1e6 and MPa for a model in N and m',
        numberExpected: 'expected: a number without unit, as 80e6',
        notNegativeExpected: 'expected: a number from 0 on, without unit',
        positiveExpected: 'expected: a number above 0, as 1e6',
        wholeExpected: (from, to) => `expected: a whole number from ${from} to ${to}`,
        noScale: 'this field has no scale of values',
        noLogarithm: 'a logarithmic scale needs values above zero',
        flags: 'Flags at max and min',
        deformation: 'Deformation',
        deformed: 'Deformed',
        scale: 'Scale',
        trueScale: 'True scale',
        fivePercent: '5 %',
        animate: 'Animate',
        outline: 'Undeformed outline',
        symbols: 'Edges and symbols',
        edges: 'Edges',
        loads: 'Nodal forces',
        loadsHint: 'forces and moments at nodes; pressures and line loads are not drawn',
        inertia: 'Inertia loads',
        supports: 'Supports',
        noModel: 'needs the model file: show the run with tarnvexo view',
        noInertia: 'these results hold no inertia loads',
        noneInModel: 'the model has none',
        visible: 'Visible',
        thicknesses: 'Thicknesses',
        sections: 'Beam sections',
        all: 'All',
        none: 'None',
        clip: 'Clip',
        clipOn: 'Clip plane',
        normal: 'Normal',
        turn: 'Other side',
        offset: 'Offset',
        box: 'Box',
        boxOn: 'Only within a box',
        from: 'from',
        to: 'to',
        view: 'View',
        fit: 'Fit',
        projection: 'Projection',
        parallel: 'Parallel',
        perspective: 'Perspective',
        picture: 'Picture',
        size: 'Size',
        asShown: 'as shown',
        savePicture: 'Save PNG',
        copyLink: 'Copy link to this view',
    },
    bar: {
        label: 'Tools',
        open: 'Open…',
        cut: 'Cut',
        search: 'Number',
        searchHint: 'Go to the node or element of this number',
        searchKind: 'Kind of what is searched',
        go: 'Go',
        noNumber: 'expected: a number; a node of a beam as 25 of beam 471, or 471/25',
        notFound: (kind, number, from, to) => `${kind} ${number} is not in this result: ${from} to ${to}`,
        noneOfKind: (kind) => `${kind}: this result has none`,
        theme: 'Theme',
        themes: { auto: 'Auto', light: 'Light', dark: 'Dark' },
        language: 'Language',
        help: 'Keyboard and mouse',
    },
    legend: {
        max: 'max',
        min: 'min',
        node: (node) => `node ${node}`,
        noValues: 'no values are visible',
        notFinite: (corners) => `not finite: ${corners} corners`,
        deformation: (factor) => `displacements × ${factor}`,
        forces: (largest) => `forces, largest ${largest}`,
        moments: (largest) => `moments, largest ${largest}`,
        inertia: (largest) => `inertia loads, largest ${largest}`,
        supports: 'supports',
    },
    probe: {
        title: 'Probed points',
        node: 'node',
        wallNode: (node, beam) => `${node} of beam ${beam}`,
        element: 'element',
        atNode: 'at the node',
        positive: '+',
        negative: '−',
        copy: 'Copy',
        saveCsv: 'Save CSV',
        remove: 'Remove this point',
        removeAll: 'Remove all',
    },
    cut: {
        title: 'Section cut',
        hint: 'Cut: click the first point of the line',
        second: 'Cut: click the second point of the line',
        nothing: 'This line does not meet the structure. Draw another one across it.',
        length: 'arc length',
        saveCsv: 'Save CSV',
        close: 'Close',
        pieces: (pieces) => (pieces === 1 ? '1 piece' : `${pieces} pieces, the longest in colour`),
        pieceOf: (piece, pieces) => `piece ${piece} of ${pieces}`,
    },
    report: {
        title: 'Report',
        nothing: 'The report has neither checks nor findings.',
        close: 'Close the report',
        verdicts: { pass: 'pass', warn: 'warn', fail: 'fail' },
        severities: { error: 'error', warning: 'warning', note: 'note' },
    },
    start: {
        title: 'Open results',
        drop: 'Drop Tarn+Vexo_AverageStrs.txt here',
        also: 'Beside it, if you have them: “Shell element node stress.txt” (element values) and the report of --json.',
        open: 'Open…',
        loading: 'Loading',
        reading: (name) => `Reading ${name}`,
        cancel: 'Cancel',
        cancelled: 'Cancelled. Nothing was changed.',
        drawing: 'Drawing',
    },
    errors: {
        title: 'This cannot be shown',
        close: 'Close',
        expected: 'expected',
        toDo: 'to do',
        noWebGL: 'this browser gives the page no WebGL 2, which the picture is drawn with',
        noWebGLExpected: 'a current browser with graphics acceleration, or its software substitute',
        noWebGLToDo: 'switch on graphics acceleration in the settings of the browser, or use another browser',
        noContourFile: (names) => `there is no contour file among ${names}`,
        noContourExpected: 'Tarn+Vexo_AverageStrs.txt, as tarnvexo solve writes it, or a result packet',
        noContourToDo: 'open Tarn+Vexo_AverageStrs.txt of a run, with the other files beside it',
        fetch: (address, reason) => `the results at ${address} could not be loaded: ${reason}`,
        fetchExpected: 'a result packet from the program that serves this page',
        fetchToDo: 'see whether that program still runs, then load the page anew',
        unforeseen: 'the page met a fault of its own',
        address: (words) => `the address of the view has what cannot be shown: ${words}`,
        addressExpected: 'words and values as “Copy link to this view” gives them',
        addressToDo: 'correct or leave out these words',
        dismiss: 'Close this notice',
    },
    help: {
        title: 'Keyboard and mouse',
        keys: {
            rotate: 'rotate',
            pan: 'move',
            zoom: 'zoom',
            fit: 'fit',
            views: 'iso, front, back, left, right, top, bottom',
            face: 'next face',
            deformed: 'deformed or not',
            edges: 'next kind of edges',
            bands: 'bands or smooth',
            flags: 'flags',
            animate: 'animate',
            clip: 'clip plane',
            cut: 'section cut',
            search: 'search a number',
            panel: 'settings',
            help: 'this help',
            escape: 'end the tool, close',
            tab: 'next control',
        },
        mouseKeys: [
            ['Left button', 'rotate'],
            ['Shift and left, or right button', 'move'],
            ['Wheel', 'zoom'],
            ['Click', 'keep the values of a point'],
        ],
    },
    pictureLabel: 'Picture of the structure. Arrow keys rotate, + and − zoom, ? shows all keys.',
    copied: 'Copied',
    saved: (name) => `Saved as ${name}`,
};

const chinese: Texts = {
    fields: {
        SE: '等效应力 SE',
        SX: '应力 SX',
        SY: '应力 SY',
        SZ: '应力 SZ',
        TXY: '剪应力 TXY',
        TXZ: '剪应力 TXZ',
        TYZ: '剪应力 TYZ',
        S1: '第一主应力 S1',
        S2: '第二主应力 S2',
        S3: '第三主应力 S3',
        U: '合位移 U',
        DX: '位移 DX',
        DY: '位移 DY',
        DZ: '位移 DZ',
        R: '合转角 R',
        RX: '转角 RX',
        RY: '转角 RY',
        RZ: '转角 RZ',
        thickness: '厚度',
        section: '梁截面',
        material: '材料',
        side: '壳的正反面',
        none: '不显示场量',
    },
    fieldGroups: {
        stresses: '应力',
        principal: '主应力',
        displacements: '位移',
        rotations: '转角',
        properties: '属性',
    },
    faces: { larger: '较大', positive: '正面', negative: '负面', viewed: '可见面' },
    faceOf: { larger: '两面较大值', positive: '正面', negative: '负面', viewed: '可见面' },
    averages: { nodal: '节点平均', element: '单元值' },
    averageOf: { nodal: '节点平均', element: '单元值', elementButWalls: '单元值(梁壁板为平均值)' },
    maps: {
        viridis: 'Viridis',
        cividis: 'Cividis',
        turbo: 'Turbo(彩虹)',
        coolwarm: '冷暖(双向)',
        grey: '灰度',
    },
    edges: { none: '无', mesh: '网格', feature: '特征边', free: '自由边' },
    views: { iso: '轴测', front: '前', back: '后', left: '左', right: '右', top: '上', bottom: '下' },
    kinds: { quad: '四边形', tri: '三角形', wall: '壁板', beam: '梁', node: '节点' },
    panel: {
        label: '显示设置',
        hide: '隐藏设置',
        show: '显示设置',
        result: '结果',
        field: '场量',
        face: '壳面',
        average: '平均',
        noOwn: '单元值:请同时打开“Shell element node stress.txt”',
        notStress: '只有应力区分壳面和平均方式',
        colours: '颜色',
        bands: '色带',
        smooth: '连续',
        bandCount: '数目',
        map: '色谱',
        ownLimits: '自定上下限',
        lowest: '下限',
        highest: '上限',
        limitsOrder: '上限必须大于下限',
        logarithmic: '对数刻度',
        lowestReplaced: (low) => `对数刻度须从大于零处开始:采用 ${low}`,
        unit: '应力单位',
        unitFactor: '系数',
        unitName: '名称',
        unitHint: '应力除以该系数后显示:模型以 N 和 m 为单位时,可用 1e6 和 MPa',
        numberExpected: '应为不带单位的数值,如 80e6',
        notNegativeExpected: '应为不小于 0、不带单位的数值',
        positiveExpected: '应为大于 0 的数值,如 1e6',
        wholeExpected: (from, to) => `应为 ${from} 至 ${to} 的整数`,
        noScale: '该场量没有数值刻度',
        noLogarithm: '对数刻度要求数值大于零',
        flags: '标出最大与最小值',
        deformation: '变形',
        deformed: '显示变形',
        scale: '放大倍数',
        trueScale: '真实比例',
        fivePercent: '5 %',
        animate: '动画',
        outline: '未变形轮廓',
        symbols: '边线与符号',
        edges: '边线',
        loads: '节点力',
        loadsHint: '节点上的力和力矩;压力和线载荷不绘制',
        inertia: '惯性载荷',
        supports: '约束',
        noModel: '需要模型文件:请用 tarnvexo view 显示该次计算',
        noInertia: '该结果不含惯性载荷',
        noneInModel: '模型中没有',
        visible: '可见部分',
        thicknesses: '厚度',
        sections: '梁截面',
        all: '全部',
        none: '全不',
        clip: '剖切',
        clipOn: '剖切面',
        normal: '法向',
        turn: '反向',
        offset: '位置',
        box: '方框',
        boxOn: '只显示方框内',
        from: '从',
        to: '到',
        view: '视图',
        fit: '适合窗口',
        projection: '投影',
        parallel: '平行',
        perspective: '透视',
        picture: '图片',
        size: '尺寸',
        asShown: '与显示相同',
        savePicture: '保存 PNG',
        copyLink: '复制此视图的链接',
    },
    bar: {
        label: '工具',
        open: '打开…',
        cut: '剖线',
        search: '编号',
        searchHint: '转到该编号的节点或单元',
        searchKind: '查找的种类',
        go: '转到',
        noNumber: '应为编号;梁的节点可写作 471/25',
        notFound: (kind, number, from, to) => `结果中没有${kind} ${number}:编号为 ${from} 至 ${to}`,
        noneOfKind: (kind) => `结果中没有${kind}`,
        theme: '主题',
        themes: { auto: '自动', light: '浅色', dark: '深色' },
        language: '语言',
        help: '键盘与鼠标',
    },
    legend: {
        max: '最大',
        min: '最小',
        node: (node) => `节点 ${node}`,
        noValues: '没有可见的数值',
        notFinite: (corners) => `非有限值：${corners} 个角点`,
        deformation: (factor) => `位移 × ${factor}`,
        forces: (largest) => `力,最大 ${largest}`,
        moments: (largest) => `力矩,最大 ${largest}`,
        inertia: (largest) => `惯性载荷,最大 ${largest}`,
        supports: '约束',
    },
    probe: {
        title: '探测点',
        node: '节点',
        wallNode: (node, beam) => `梁 ${beam} 的 ${node}`,
        element: '单元',
        atNode: '节点处',
        positive: '+',
        negative: '−',
        copy: '复制',
        saveCsv: '保存 CSV',
        remove: '删除此点',
        removeAll: '全部删除',
    },
    cut: {
        title: '剖线曲线',
        hint: '剖线:单击第一点',
        second: '剖线:单击第二点',
        nothing: '此线未与结构相交,请重新画线穿过结构。',
        length: '弧长',
        saveCsv: '保存 CSV',
        close: '关闭',
        pieces: (pieces) => (pieces === 1 ? '1 段' : `${pieces} 段,最长者着色`),
        pieceOf: (piece, pieces) => `第 ${piece} 段(共 ${pieces} 段)`,
    },
    report: {
        title: '报告',
        nothing: '报告中没有检查项或发现。',
        close: '关闭报告',
        verdicts: { pass: '通过', warn: '警告', fail: '不通过' },
        severities: { error: '错误', warning: '警告', note: '提示' },
    },
    start: {
        title: '打开结果',
        drop: '将 Tarn+Vexo_AverageStrs.txt 拖到此处',
        also: '如有,可一并打开:“Shell element node stress.txt”(单元值)和 --json 的报告。',
        open: '打开…',
        loading: '正在加载',
        reading: (name) => `正在读取 ${name}`,
        cancel: '取消',
        cancelled: '已取消,内容未改变。',
        drawing: '正在绘制',
    },
    errors: {
        title: '无法显示',
        close: '关闭',
        expected: '应为',
        toDo: '处理',
        noWebGL: '浏览器未提供绘图所需的 WebGL 2',
        noWebGLExpected: '启用图形加速(或其软件替代)的新版浏览器',
        noWebGLToDo: '请在浏览器设置中启用图形加速,或换用其他浏览器',
        noContourFile: (names) => `${names} 中没有云图文件`,
        noContourExpected: 'tarnvexo solve 写出的 Tarn+Vexo_AverageStrs.txt,或结果包',
        noContourToDo: '请打开某次计算的 Tarn+Vexo_AverageStrs.txt,其他文件可一并选取',
        fetch: (address, reason) => `无法加载 ${address} 的结果:${reason}`,
        fetchExpected: '提供本页面的程序所给出的结果包',
        fetchToDo: '请检查该程序是否仍在运行,然后重新加载页面',
        unforeseen: '页面自身出错',
        address: (words) => `视图地址中有无法显示的内容:${words}`,
        addressExpected: '“复制此视图的链接”所给出的词和值',
        addressToDo: '请改正或删去这些词',
        dismiss: '关闭此提示',
    },
    help: {
        title: '键盘与鼠标',
        keys: {
            rotate: '旋转',
            pan: '平移',
            zoom: '缩放',
            fit: '适合窗口',
            views: '轴测、前、后、左、右、上、下',
            face: '下一壳面',
            deformed: '变形开关',
            edges: '下一种边线',
            bands: '色带或连续',
            flags: '最大最小标记',
            animate: '动画',
            clip: '剖切面',
            cut: '剖线',
            search: '查找编号',
            panel: '设置栏',
            help: '本帮助',
            escape: '结束工具、关闭',
            tab: '下一控件',
        },
        mouseKeys: [
            ['左键', '旋转'],
            ['Shift 加左键,或右键', '平移'],
            ['滚轮', '缩放'],
            ['单击', '保留该点数值'],
        ],
    },
    pictureLabel: '结构图。方向键旋转,+ 与 − 缩放,? 显示所有按键。',
    copied: '已复制',
    saved: (name) => `已保存为 ${name}`,
};

const TEXTS: Record<Language, Texts> = { en: english, zh: chinese };

export function texts(language: Language): Texts {
    return TEXTS[language];
}

/** What the attribute lang of the page says, so that fonts and screen readers follow. */
export const LANGUAGE_TAGS: Record<Language, string> = { en: 'en', zh: 'zh-Hans' };
