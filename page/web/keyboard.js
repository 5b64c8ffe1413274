// Keys. Those of letters work everywhere but in fields; the others where the traces have the focus.

import { element } from "./values.js";

const kGestures = [["Wheel", "zoom in time; with Shift pan, with Alt scroll the lanes"],
    ["Drag", "zoom into a box (or pan, if so chosen; the middle button always pans)"],
    ["Click", "places the active cursor, near a status change on it; with Shift the other one"],
    ["Drag a cursor", "moves it"], ["Double click", "whole recording"], ["Time axis, strip above", "drag to pan"],
    ["Name of a lane", "drag to move, its lower edge to resize"],
    ["Fingers", "one pans, two zoom, a tap places the active cursor"]];

export class Keyboard {
    constructor(app) {
        this.app = app;
        const cycle = () => Math.max(1, app.samplesOfCycle());
        // key, words, on the traces only, action
        this.keys = [
            ["\u2190 \u2192", "active cursor by a sample; with Shift 10 samples, with Control a cycle", true, null],
            ["Home End", "active cursor to the first and the last sample", true, null],
            ["\u2191 \u2193", "select the lane above or below", true, null],
            ["Alt+\u2191 Alt+\u2193", "move the selected lane", true, null],
            ["PageUp PageDown", "scroll the lanes", true, null],
            ["[ ]", "active cursor to the status change before or after (of the selected status, else of any)",
                false, null],
            ["+ -", "zoom; with Alt the height of the selected lane", false, null], [", .", "pan", false, null],
            ["0", "whole recording", false, () => app.fit()], ["z", "zoom to what lies between the cursors", false,
                () => app.zoomBetween()],
            ["a b", "choose the active cursor", false, null], ["c", "bring the active cursor into view", false,
                () => app.revealCursor()],
            ["t", "active cursor to the trigger", false, () => app.toTrigger()],
            ["/", "search channels", false, () => app.searchChannels()], ["h", "hide the selected lane", false,
                () => app.hideSelected()],
            ["m", "lay the selected lane over the one above", false, () => app.overlayLane()],
            ["s", "one lane for each of its channels again", false, () => app.splitLane()],
            ["o", "overlay phases", false, () => app.toggleOverlay()], ["g", "drag pans or zooms", false,
                () => app.toggleDrag()],
            ["p", "show or hide the panel", false, () => app.togglePanel()], ["?", "this list", false,
                () => app.showHelp()]];
        this.actions = new Map(this.keys.filter(([, , , action]) => action).map(([key, , , action]) => [key, action]));
        this.actions.set("a", () => app.activate("A"));
        this.actions.set("b", () => app.activate("B"));
        this.actions.set("[", () => app.snap(-1));
        this.actions.set("]", () => app.snap(1));
        this.actions.set(",", () => app.panBy(-0.2));
        this.actions.set(".", () => app.panBy(0.2));
        for (const [key, factor] of [["+", 0.5], ["=", 0.5], ["-", 2]]) {
            this.actions.set(key, (event) => event.altKey ? app.resizeLane(factor < 1 ? 1.25 : 0.8)
                : app.zoomBy(factor));
        }
        this.traceActions = new Map([
            ["ArrowLeft", (event) => app.moveCursor(-this._step(event, cycle()))],
            ["ArrowRight", (event) => app.moveCursor(this._step(event, cycle()))],
            ["Home", () => app.placeCursor(0)], ["End", () => app.placeCursor(app.recording.count - 1)],
            ["ArrowUp", (event) => event.altKey ? app.moveLane(-1) : app.selectNext(-1)],
            ["ArrowDown", (event) => event.altKey ? app.moveLane(1) : app.selectNext(1)]]);
        document.addEventListener("keydown", (event) => this._press(event));
        this._writeHelp();
    }

    _step(event, cycle) {
        return event.shiftKey ? 10 : event.ctrlKey ? cycle : 1;
    }

    _press(event) {
        const { target } = event;
        const isTyping = target instanceof Element
            && target.closest("input:not([type=checkbox]), select, textarea, dialog");
        if (isTyping || event.metaKey || event.defaultPrevented) {
            return;
        }
        const isOnTraces = target === this.app.stage;
        const action = (isOnTraces ? this.traceActions.get(event.key) : undefined) ??
            (event.ctrlKey ? undefined : this.actions.get(event.key));
        if (action) {
            event.preventDefault();
            action(event);
        }
    }

    _writeHelp() {
        const list = element("dl", { className: "pairs" });
        for (const [key, words] of [...this.keys, ...kGestures]) {
            list.append(element("dt", {}, ...(kGestures.some((one) => one[0] === key) ? [key]
                : key.split(" ").flatMap((one) => [element("kbd", {}, one), " "]))), element("dd", {}, words));
        }
        document.getElementById("keys").append(list);
    }
}
