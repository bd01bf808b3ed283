// The page: brings together state, picture, panel, tools and texts. What each does stands in its own file.
import type { Result } from '../model/Result';
import type { RunReport } from '../model/RunReport';
import type { Probe, SceneView } from '../scene/SceneView';
import type { Store } from '../state/Store';
import { stressUnit, unitOf, withUnit } from '../state/Units';
import type { Face, Language, StandardView, ViewState } from '../state/ViewState';
import { CutPlot } from '../ui/CutPlot';
import { CutTool } from '../ui/CutTool';
import { copyText, make, save } from '../ui/Dom';
import { Drawer } from '../ui/Drawer';
import { HelpDialog } from '../ui/HelpDialog';
import { actionOf, type Action } from '../ui/Keys';
import { elementName, nodeName } from '../ui/Names';
import { numberText, placeText } from '../ui/Numbers';
import { PictureArea } from '../ui/PictureArea';
import { ProbeTable, type ShownColumn } from '../ui/ProbeTable';
import { ReportSheet } from '../ui/ReportSheet';
import { findNumber, type SearchKind } from '../ui/Search';
import { StartPanel } from '../ui/StartPanel';
import { LANGUAGE_TAGS, texts, type Texts } from '../ui/Texts';
import { isDark, storeTheme, type ThemeMode } from '../ui/Theme';
import { TopBar } from '../ui/TopBar';
import { DEFAULT_CLIP } from '../ui/panel/ClipSection';
import { hasScale } from '../ui/panel/ColourSection';
import { Panel, PanelFrame } from '../ui/panel/Panel';
import { STANDARD_VIEWS } from '../ui/panel/ViewSection';
import { NEED_MODEL } from './AddressWords';
import { composePicture, letterScale, type PictureSize } from './Compose';
import {
    axisTitle,
    fieldSubtitle,
    fieldTitle,
    legendContent,
    overlayContent,
    type OverlaySource,
} from './OverlayContent';

const FACES: Face[] = ['larger', 'positive', 'negative', 'viewed'];
const EDGES: ViewState['edges'][] = ['none', 'mesh', 'feature', 'free'];

/** Parts of the state that belong to a structure, as they are before anybody has set them. */
const FOR_ONE_STRUCTURE: Partial<ViewState> = {
    limits: undefined,
    scale: undefined,
    clip: undefined,
    box: undefined,
    hiddenThicknesses: [],
    hiddenSections: [],
};

/** Parts of the state that the values in the table depend on. */
const TOLD_IN_TABLE: (keyof ViewState)[] = ['field', 'face', 'average', 'unitFactor', 'unitName'];

type Point = [number, number];

export class App {
    readonly area = new PictureArea();
    readonly start: StartPanel;
    private readonly bar = new TopBar();
    private readonly frame = new PanelFrame();
    private readonly drawer = new Drawer();
    private readonly table = new ProbeTable();
    private readonly plot = new CutPlot();
    private readonly reportSheet = new ReportSheet();
    private readonly help = new HelpDialog();
    private readonly cut = new CutTool();
    private readonly picker = make('input', { type: 'file', multiple: true, hidden: true, accept: '.txt,.json' });
    private panel?: Panel;
    private scene?: SceneView;
    private result?: Result;
    private report?: RunReport;
    private cutLines: Float32Array[] = [];
    private cutPoint?: [number, number, number];

    /** Files that the user chose or dropped. */
    onFiles: (files: File[]) => void = () => undefined;
    /** The address that shows the present view. */
    linkToView: () => string = () => location.href;

    /** createScene draws into the element it gets; it throws where the browser cannot draw. */
    constructor(
        private readonly root: HTMLElement,
        private readonly store: Store,
        private readonly createScene: (host: HTMLElement, state: ViewState) => SceneView,
        private theme: ThemeMode,
    ) {
        this.start = new StartPanel(() => this.picker.click());
        this.area.root.append(this.start.root);
        root.append(this.bar.root, this.frame.root, this.area.root, this.drawer.root, this.help.root, this.picker);
        this.wirePicture();
        this.wireFiles();
        this.table.onChange = () => this.showTable();
        document.addEventListener('keydown', (event) => this.key(event));
        matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.applyTheme());
        store.subscribe((_, changed) => this.follow(changed));
        this.followLanguage();
        this.applyTheme();
    }

    get texts(): Texts {
        return texts(this.store.state.language);
    }

    get shown(): Result | undefined {
        return this.result;
    }

    /** The scene of what is shown. */
    get picture(): SceneView | undefined {
        return this.scene;
    }

    /** view: from where it is seen at first, where the state has no camera. */
    show(result: Result, view?: StandardView): void {
        this.cut.end();
        const { state } = this.store;
        const isFirst = this.scene === undefined;
        this.scene ??= this.newScene();
        // What was set for another structure would hide or distort this one.
        if (this.result && this.result.coordinates !== result.coordinates) this.store.set(FOR_ONE_STRUCTURE);
        this.result = result;
        this.table.clear();
        this.closeCut();
        this.closeReport();
        this.giveWay(result);
        this.scene.show(result);
        this.start.hide();
        document.title = `${result.title} – tarnvexo`;
        this.followLanguage();
        if (view) this.standardView(view);
        else if (!isFirst || !state.camera) this.fit();
    }

    /** Another view of what is shown. */
    turnTo(state: ViewState, view?: StandardView): void {
        this.store.set(state);
        if (this.result) this.giveWay(this.result);
        if (view) this.standardView(view);
    }

    /** What a result cannot show gives way to what every result has. */
    private giveWay(result: Result): void {
        const { field, average } = this.store.state;
        if (NEED_MODEL.includes(field) && !result.model) this.store.set({ field: 'SE' });
        if (average === 'element' && !result.own) this.store.set({ average: 'nodal' });
    }

    showReport(report: RunReport): void {
        this.report = report;
        const { title, close } = this.texts.report;
        this.reportSheet.render(report, this.texts, (kind, number) => this.scene?.goTo(kind, number));
        this.drawer.open(this.reportSheet.root, title, close, () => this.closeReport());
    }

    private closeReport(): void {
        this.report = undefined;
        this.drawer.remove(this.reportSheet.root);
    }

    /** A picture as it is shown, of another size in pixels. */
    async compose(size: PictureSize, letters: number): Promise<Blob> {
        const source = this.source()!;
        return composePicture(source.scene, size, this.area.size, (map) => overlayContent(source, map), letters);
    }

    fit(): void {
        if (!this.scene) return;
        this.leavePlace();
        this.scene.fit();
    }

    private newScene(): SceneView {
        const scene = this.createScene(this.area.host, this.store.state);
        scene.onDraw(() => this.area.redraw());
        scene.onCamera((camera) => this.store.set({ camera }));
        return scene;
    }

    private source(): OverlaySource | undefined {
        if (!this.scene || !this.result) return undefined;
        const { scene, result, texts } = this;
        return {
            scene,
            result,
            texts,
            state: this.store.state,
            probes: this.table.points,
            cutLines: this.cutLines,
            cutPoint: this.cutPoint,
        };
    }

    private follow(changed: ReadonlySet<keyof ViewState>): void {
        this.scene?.apply(this.store.state, changed);
        // The lines of a cut stay where the structure was when it was cut.
        if (changed.has('deformed') || changed.has('scale') || changed.has('animated')) this.forgetCutLines();
        if (changed.has('dark')) document.documentElement.dataset.theme = this.store.state.dark ? 'dark' : 'light';
        if (TOLD_IN_TABLE.some((key) => changed.has(key))) this.fillTable();
        if (changed.has('language')) this.followLanguage();
        else if (!(changed.size === 1 && changed.has('camera'))) this.panel?.sync(this.store);
        this.describe();
        this.area.redraw();
    }

    /** Every text anew. */
    private followLanguage(): void {
        const { language } = this.store.state;
        document.documentElement.lang = LANGUAGE_TAGS[language];
        this.bar.render(
            this.texts,
            { title: this.result?.title ?? 'tarnvexo', theme: this.theme, language, loaded: this.result !== undefined },
            {
                open: () => this.picker.click(),
                flipCut: () => this.cut.flip(),
                goTo: (kind, text) => this.goTo(kind, text),
                setTheme: (mode) => this.setTheme(mode),
                setLanguage: (next: Language) => this.store.set({ language: next }),
                help: () => this.help.flip(this.texts),
            },
        );
        this.start.speak(this.texts);
        this.frame.root.hidden = this.result === undefined;
        if (this.scene && this.result) {
            this.panel = this.newPanel(this.scene, this.result);
            const { label, hide, show } = this.texts.panel;
            this.frame.fill(this.panel, { label, hide, show });
        }
        if (this.table.points.length > 0) this.showTable();
        if (this.report) this.showReport(this.report);
        this.showCutState();
        this.describe();
        this.area.redraw();
    }

    private newPanel(scene: SceneView, result: Result): Panel {
        return new Panel({
            store: this.store,
            result,
            texts: this.texts,
            range: () => scene.range(),
            fit: () => this.fit(),
            setStandardView: (view) => this.standardView(view),
            savePicture: (width, height) => void this.savePicture(width, height),
            copyLink: () => void copyText(this.linkToView()).then(() => this.area.say(this.texts.copied)),
        });
    }

    /** The legend in words, for those who do not see it. */
    private describe(): void {
        const source = this.source();
        const legend = source && legendContent(source);
        const range = legend?.key?.kind === 'scale' ? legend.key.range.map(numberText).join(' … ') : '';
        const symbols = legend?.symbols.map(({ text }) => text) ?? [];
        const words = legend
            ? [legend.title, legend.subtitle, range, ...legend.notes, ...symbols].filter((text) => text !== '')
            : [];
        this.area.describe(this.texts.pictureLabel, words.join(', '));
    }

    private wirePicture(): void {
        this.area.content = () => {
            const source = this.source();
            const content = source ? overlayContent(source, (point) => point) : { flags: [], markers: [], curves: [] };
            return { ...content, line: this.cut.line };
        };
        this.area.onHover = (at) => this.hover(at);
        this.area.onClick = (at) => this.click(at);
        this.cut.onChange = () => this.showCutState();
        this.cut.onLine = (from, to) => this.showCut(from, to);
    }

    private hover(at: Point | undefined): void {
        if (at && this.cut.active) this.cut.hover(at);
        const probe = at && !this.cut.active ? this.scene?.probe(...at) : undefined;
        if (!at || !probe || !this.result) {
            this.area.hideTooltip();
            return;
        }
        const { state } = this.store;
        const t = this.texts;
        const lines = [
            `${t.probe.node} ${nodeName(this.result, probe.node, t)}   ${elementName(probe, t)}`,
            `(${placeText(probe.position, this.scene?.size())})`,
        ];
        const { factor } = unitOf(state);
        const hasValue = hasScale(state);
        if (hasValue) lines.splice(1, 0, `${t.probe.atNode} ${numberText(probe.cornerValue / factor)}`);
        const title = hasValue
            ? withUnit(`${state.field} ${numberText(probe.value / factor)}`, unitOf(state))
            : t.fields[state.field];
        this.area.showTooltip(at, title, lines);
    }

    private click(at: Point): void {
        if (this.cut.active) {
            this.cut.click(at);
            return;
        }
        const probe: Probe | undefined = this.scene?.probe(...at);
        if (probe) this.table.add(probe);
        else this.scene?.unmark();
    }

    /** Gives back why there is nothing of that number. */
    private goTo(kind: SearchKind, text: string): string | undefined {
        if (!this.scene || !this.result) return undefined;
        const found = findNumber(this.result, kind, text, this.texts);
        if ('refusal' in found) return found.refusal;
        this.table.addAll(this.scene.valuesOf(kind, found.number));
        this.scene.goTo(kind, found.number);
        return undefined;
    }

    /** What the address of the view asks for that cannot be shown; nothing takes away what was told before. */
    tellFaults(faults: readonly string[]): void {
        const { address, dismiss } = this.texts.errors;
        if (faults.length > 0) this.area.notice(address(faults.join(', ')), dismiss);
        else this.area.takeNoticeAway();
    }

    private showTable(): void {
        this.area.redraw();
        if (!this.result || this.table.points.length === 0) {
            this.drawer.remove(this.table.root);
            return;
        }
        this.fillTable();
        this.drawer.open(this.table.root, this.texts.probe.title, this.texts.probe.removeAll, () => this.table.clear());
    }

    /** Where it is, also behind the graph of a cut. */
    private fillTable(): void {
        if (!this.result || this.table.points.length === 0) return;
        const size = this.scene?.size() ?? 0;
        const say = (text: string): void => this.area.say(text);
        this.table.render(this.result, this.texts, stressUnit(this.store.state), this.shownColumn(), size, say);
    }

    private shownColumn(): ShownColumn | undefined {
        const { state } = this.store;
        const { scene } = this;
        if (!scene || !hasScale(state)) return undefined;
        const unit = unitOf(state);
        return { name: withUnit(state.field, unit), valueOf: (probe) => scene.valueOf(probe) / unit.factor };
    }

    private showCutState(): void {
        this.bar.setCutting(this.cut.active);
        this.area.root.classList.toggle('cutting', this.cut.active);
        const { hint, second } = this.texts.cut;
        this.area.hint(!this.cut.active ? '' : this.cut.step === 'first' ? hint : second);
        this.area.redraw();
    }

    private showCut(from: Point, to: Point): void {
        const { state } = this.store;
        const subtitle = fieldSubtitle(state, this.texts, this.scene?.showsWalls() ?? false);
        const title = fieldTitle(state, this.texts) + (subtitle ? `, ${subtitle}` : '');
        const { factor } = unitOf(state);
        const lines = this.scene?.cut(from, to) ?? [];
        this.cutLines = lines.map((line) => line.points);
        const pieces = lines.map(({ length, value }) => ({ length, value: value.map((one) => one / factor) }));
        this.plot.show(pieces, title, axisTitle(state, this.texts), this.texts);
        this.plot.onRead = (at) => {
            const points = at && lines[at.piece].points.subarray(3 * at.point, 3 * at.point + 3);
            this.cutPoint = points && [points[0], points[1], points[2]];
            this.area.redraw();
        };
        this.drawer.open(this.plot.root, this.texts.cut.title, this.texts.cut.close, () => this.closeCut());
    }

    private closeCut(): void {
        this.forgetCutLines();
        this.drawer.remove(this.plot.root);
    }

    private forgetCutLines(): void {
        this.cutLines = [];
        this.cutPoint = undefined;
        this.plot.onRead = () => undefined;
        this.area.redraw();
    }

    private async savePicture(width: number, height: number): Promise<void> {
        const ratio = window.devicePixelRatio || 1;
        const page = this.area.size;
        const asShown = width === 0;
        const size = asShown
            ? { width: Math.round(page.width * ratio), height: Math.round(page.height * ratio) }
            : { width, height };
        try {
            // The legend covers no more of the structure than on the page.
            const letters = asShown ? ratio : Math.min(letterScale(size), size.height / page.height);
            const picture = await this.compose(size, letters);
            const name = `${this.result!.title.replace(/[^\p{L}\p{N}._+-]+/gu, '-')}-${this.store.state.field}.png`;
            save(name, picture);
            this.area.say(this.texts.saved(name));
        } catch (error) {
            this.area.say(error instanceof Error ? error.message : String(error));
        }
    }

    private setTheme(mode: ThemeMode): void {
        this.theme = mode;
        storeTheme(mode);
        this.applyTheme();
    }

    private applyTheme(): void {
        const dark = isDark(this.theme);
        document.documentElement.dataset.theme = dark ? 'dark' : 'light';
        this.store.set({ dark });
    }

    private wireFiles(): void {
        this.picker.addEventListener('change', () => {
            const files = [...(this.picker.files ?? [])];
            this.picker.value = '';
            if (files.length > 0) this.onFiles(files);
        });
        const { root } = this;
        const mark = (on: boolean) => (event: DragEvent) => {
            if (!event.dataTransfer?.types.includes('Files')) return;
            event.preventDefault();
            this.area.root.classList.toggle('dropping', on);
        };
        root.addEventListener('dragover', mark(true));
        root.addEventListener('dragleave', mark(false));
        root.addEventListener('drop', (event) => {
            mark(false)(event);
            const files = [...(event.dataTransfer?.files ?? [])];
            if (files.length > 0) this.onFiles(files);
        });
    }

    private key(event: KeyboardEvent): void {
        if (event.defaultPrevented || this.help.root.open) return;
        const action = actionOf(event);
        if (!action || (!this.scene && action !== 'help')) return;
        event.preventDefault();
        this.act(action, event);
    }

    private act(action: Action, event: KeyboardEvent): void {
        const { store } = this;
        const { state } = store;
        const next = <T>(list: T[], value: T): T => list[(list.indexOf(value) + 1) % list.length];
        const acts: Record<Action, () => void> = {
            camera: () =>
                this.area.host.dispatchEvent(
                    new KeyboardEvent('keydown', { key: event.key, shiftKey: event.shiftKey }),
                ),
            fit: () => this.fit(),
            view1: () => this.standardView(STANDARD_VIEWS[0]),
            view2: () => this.standardView(STANDARD_VIEWS[1]),
            view3: () => this.standardView(STANDARD_VIEWS[2]),
            view4: () => this.standardView(STANDARD_VIEWS[3]),
            view5: () => this.standardView(STANDARD_VIEWS[4]),
            view6: () => this.standardView(STANDARD_VIEWS[5]),
            view7: () => this.standardView(STANDARD_VIEWS[6]),
            face: () => store.set({ face: next(FACES, state.face) }),
            deformed: () => store.set({ deformed: !state.deformed }),
            edges: () => store.set({ edges: next(EDGES, state.edges) }),
            bands: () => store.set({ bands: !state.bands }),
            flags: () => store.set({ flags: !state.flags }),
            animate: () => store.set({ animated: !state.animated, deformed: true }),
            clip: () => store.set({ clip: state.clip ? undefined : DEFAULT_CLIP }),
            cut: () => this.cut.flip(),
            search: () => this.bar.focusSearch(),
            panel: () => this.frame.flip(),
            help: () => this.help.flip(this.texts),
            escape: () => this.escape(),
        };
        acts[action]();
    }

    private standardView(view: StandardView): void {
        this.leavePlace();
        this.scene?.setStandardView(view);
    }

    /** The structure stands beside the legend, not behind it. */
    private leavePlace(): void {
        if (this.scene) this.scene.rightInset = this.area.legendWidth();
    }

    private escape(): void {
        if (this.cut.active) this.cut.end();
        else {
            this.scene?.unmark();
            this.area.hideTooltip();
            this.area.host.focus({ preventScroll: true });
        }
    }
}
