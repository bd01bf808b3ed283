// What happens when the page opens: the view from the address, then the result from wherever the page has it.
import type { Packet } from '../model/Packet';
import type { Result } from '../model/Result';
import { Scene } from '../scene/Scene';
import { Store } from '../state/Store';
import { stateOfAddress } from '../state/ViewAddress';
import { DEFAULT_STATE, type ViewState } from '../state/ViewState';
import { faultText } from '../ui/ErrorPanel';
import type { Texts } from '../ui/Texts';
import { isDark, storedTheme, type ThemeMode } from '../ui/Theme';
import { Address, complete } from './Address';
import { faultsOf, standardViewOf, stateOfWords } from './AddressWords';
import { App } from './App';
import { letterScale } from './Compose';
import { makePlace, pictureOrder, postError, postPicture, type PictureOrder } from './PictureMode';
import { embeddedPacket, fetchPacket, packetAddress, readEmbedded, readFiles } from './Sources';

export async function begin(root: HTMLElement): Promise<void> {
    const { hash } = location;
    let order: PictureOrder | undefined;
    try {
        order = pictureOrder(hash);
    } catch (error) {
        await postError(String(error));
        return;
    }
    if (order) makePlace(root, order);

    const theme = themeOf(hash, order !== undefined);
    const initial: ViewState = {
        ...DEFAULT_STATE,
        dark: isDark(theme),
        language: !order && navigator.language.startsWith('zh') ? 'zh' : 'en',
    };
    const store = new Store(stateOfAddress(hash, initial));
    const app = new App(root, store, (host, state) => new Scene(host, state), theme);
    if (order) {
        await deliver(app, store, order);
        return;
    }

    const address = new Address(store, initial);
    app.linkToView = () => address.link();
    address.onTyped = (typed) => follow(app, store, initial, typed);
    const files = new Files(app, (result) => {
        if (app.shown) app.show(result);
        else {
            showFirst(app, store, result, hash);
            app.tellFaults(faultsOf(hash, result));
        }
    });
    // Files that are opened while the page's own result is still on its way take its place.
    const ownResult = new AbortController();
    app.onFiles = (list) => {
        ownResult.abort();
        void files.open(list);
    };
    try {
        requireWebGL(app);
        const packet = await pagePacket(app, ownResult.signal);
        if (ownResult.signal.aborted) return;
        if (packet) {
            showPacket(app, store, packet, hash);
            app.tellFaults(faultsOf(packetView(packet, hash), packet.result));
        } else app.start.showDrop(app.texts);
    } catch (error) {
        if (ownResult.signal.aborted) return;
        app.start.showError(messageOf(error, app.texts), app.texts, () => app.start.showDrop(app.texts));
    }
}

function themeOf(hash: string, forPicture: boolean): ThemeMode {
    const told = new URLSearchParams(hash.replace(/^#/, '')).get('dark');
    if (told !== null) return told === '1' ? 'dark' : 'light';
    return forPicture ? 'light' : storedTheme();
}

async function deliver(app: App, store: Store, order: PictureOrder): Promise<void> {
    try {
        requireWebGL(app);
        const packet = await pagePacket(app, new AbortController().signal);
        if (!packet) throw new Error('the page has no result to draw');
        const faults = faultsOf(packetView(packet, location.hash), packet.result);
        if (faults.length > 0) {
            const { address, addressExpected, addressToDo } = app.texts.errors;
            throw new Error(faultText(address(faults.join(', ')), addressExpected, addressToDo));
        }
        showPacket(app, store, packet, location.hash);
        // The first drawing sets up what copies are made with.
        await new Promise<void>((resolve) => app.picture!.onDraw(resolve));
        await postPicture(await app.compose(order, letterScale(order)));
    } catch (error) {
        await postError(messageOf(error, app.texts));
    }
}

/** The packet that the page holds or is told to fetch; undefined: it has none, files are to be opened. */
async function pagePacket(app: App, signal: AbortSignal): Promise<Packet | undefined> {
    const { texts } = app;
    const text = embeddedPacket(document);
    const address = packetAddress(document, location);
    if (text === undefined && !address) return undefined;
    const progress = app.start.showProgress(texts.start.loading, texts);
    progress(undefined);
    await painted();
    if (text !== undefined) return readEmbedded(document, text);
    return fetchPacket(address!, texts, progress, signal);
}

/** The packet says how its makers want it seen; the address has the last word. */
function packetView({ view }: Packet, hash: string): string {
    return `${view ?? ''}&${hash.replace(/^#/, '')}`;
}

function showPacket(app: App, store: Store, packet: Packet, hash: string): void {
    showFirst(app, store, packet.result, packetView(packet, hash));
}

function showFirst(app: App, store: Store, result: Result, address: string): void {
    store.set(complete(stateOfWords(address, store.state, result)));
    app.show(result, standardViewOf(address));
}

/** Takes over an address that the user has typed while the page is open. */
function follow(app: App, store: Store, initial: ViewState, hash: string): void {
    const result = app.shown;
    if (!result) {
        store.set(complete(stateOfAddress(hash, initial)));
        return;
    }
    app.turnTo(complete(stateOfWords(hash, initial, result)), standardViewOf(hash));
    app.tellFaults(faultsOf(hash, result));
}

/** Files that the user opens, one lot at a time. */
class Files {
    private reading?: AbortController;

    constructor(
        private readonly app: App,
        private readonly show: (result: Result) => void,
    ) {}

    async open(list: File[]): Promise<void> {
        const { app } = this;
        const { texts } = app;
        this.reading?.abort();
        const ending = new AbortController();
        this.reading = ending;
        try {
            requireWebGL(app);
            const beginFile = (name: string) =>
                app.start.showProgress(texts.start.reading(name), texts, () => ending.abort());
            const opened = await readFiles(list, app.shown, texts, beginFile, ending.signal);
            ending.signal.throwIfAborted();
            app.start.showProgress(texts.start.drawing, texts)(undefined);
            await painted();
            ending.signal.throwIfAborted();
            // A report alone says something about what is shown already.
            if (opened.result === app.shown) app.start.hide();
            else this.show(opened.result);
            if (opened.report) app.showReport(opened.report);
        } catch (error) {
            // Another lot has taken its place.
            if (this.reading !== ending) return;
            if (ending.signal.aborted) this.back(texts.start.cancelled);
            else app.start.showError(messageOf(error, texts), texts, () => this.back(''));
        }
    }

    private back(note: string): void {
        if (this.app.shown) this.app.start.hide();
        else this.app.start.showDrop(this.app.texts, note);
    }
}

function requireWebGL({ texts }: App): void {
    const context = document.createElement('canvas').getContext('webgl2');
    const { noWebGL, noWebGLExpected, noWebGLToDo } = texts.errors;
    if (!context) throw new Error(faultText(noWebGL, noWebGLExpected, noWebGLToDo));
    context.getExtension('WEBGL_lose_context')?.loseContext();
}

/** What was put on the page is seen before long work begins; a page that is not seen does not wait for that. */
function painted(): Promise<void> {
    return new Promise((resolve) => {
        const timer = setTimeout(resolve, 100);
        requestAnimationFrame(() =>
            setTimeout(() => {
                clearTimeout(timer);
                resolve();
            }),
        );
    });
}

function messageOf(error: unknown, { errors }: Texts): string {
    const message = error instanceof Error ? error.message : String(error);
    // Browsers say nothing about some faults.
    return message === '' ? `error: ${errors.unforeseen}` : message;
}
