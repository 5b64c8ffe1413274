// The page: puts the parts together, and draws once a frame what has changed.

import { canInflate, decoded } from "./decode.js";
import { nanoseconds, openRecording } from "./recording.js";
import { clock, duration, exact, kMinus, parseTime, printable, seconds, short, shownUnit, withUnit } from "./format.js";
import { View, ticksOf } from "./view.js";
import { kStatusHeight, Lanes } from "./lanes.js";
import { Tracer } from "./traces.js";
import { Minimap } from "./minimap.js";
import { Cursors } from "./cursors.js";
import { fragmentOf, stateOf } from "./link.js";
import { csvOf } from "./csv.js";
import { element, nameElement, ValuesPanel } from "./values.js";
import { HarmonicsPanel, PhasorPanel } from "./phasorPanel.js";
import { ChannelPanel } from "./channelPanel.js";
import { FindingsPanel, HeaderPanel } from "./infoPanels.js";
import { Pointer } from "./pointer.js";
import { Keyboard } from "./keyboard.js";
import { preparePrint } from "./print.js";

const kNarrow = 900;
const kLinkDelay = 300;
const kAnnounceDelay = 250;
const kThemes = ["auto", "light", "dark"];

function byId(id) {
    return document.getElementById(id);
}

export class App {
    constructor(recording) {
        this.recording = recording;
        this.canvas = Object.fromEntries(["minimap", "axis", "traces", "over", "scales"].map((id) => [id, byId(id)]));
        this.stage = byId("stage");
        const step = recording.count > 1 ? (recording.end - recording.begin) / (recording.count - 1) : 0;
        this.step = step;
        this.view = new View(recording.begin, recording.end, step * 4);
        this.lanes = new Lanes(recording);
        this.cursors = new Cursors(recording);
        this.minimap = new Minimap(this.canvas.minimap, recording);
        this.selected = this.lanes.shown[0] ?? null;
        this.side = recording.usualSide;
        this.clockMode = recording.trigger === null ? "start" : "trigger";
        this.dragPans = false;
        this.theme = "auto";
        this.dirty = new Set();
        this._fillHeader();
        this._makePanels();
        this._makeTools();
        this.pointer = new Pointer(this);
        this.keyboard = new Keyboard(this);
        this._watch();
        this._takeLink();
        this._makeLabels();
        this.select(this.selected?.channels[0], false);
        this.themeChanged();
    }

    // What is drawn next.
    mark(...what) {
        for (const one of what) {
            this.dirty.add(one);
        }
        this.frame ??= requestAnimationFrame(() => this._frame());
    }

    _frame() {
        this.frame = null;
        const { dirty } = this;
        this.dirty = new Set();
        performance.mark("draw");
        if (dirty.has("size")) {
            this._resize();
        }
        if (dirty.has("traces")) {
            this._drawTraces();
        }
        this._drawOver();
        if (dirty.has("values")) {
            this._updateValues();
        }
        performance.measure("draw", "draw");
    }

    // Colours

    coloursOf(theme) {
        const probe = element("div", { className: `probe ${theme}` });
        byId("app").append(probe);
        const style = getComputedStyle(probe);
        const get = (name) => style.getPropertyValue(`--${name}`).trim();
        const colours = { ground: get("ground"), text: get("text"), faint: get("faint"), line: get("line"),
            grid: get("grid"),
            zero: get("zero"), outside: get("outside"), selected: get("selected"), trigger: get("trigger"),
                idle: get("idle"),
            active: get("active"), normal: get("normal"), missing: get("missing"), veil: get("veil"),
                accent: get("accent"),
            box: get("box"), font: style.fontFamily,
            cursors: { A: get("cursor-a"), B: get("cursor-b") },
            phases: { a: get("phase-a"), b: get("phase-b"), c: get("phase-c"), n: get("phase-n"), "": get("phase-x") },
            series: Array.from({ length: 6 }, (_, i) => get(`series-${i}`)) };
        probe.remove();
        return colours;
    }

    themeChanged() {
        const isDark = this.theme === "dark" || (this.theme === "auto"
            && matchMedia("(prefers-color-scheme: dark)").matches);
        document.documentElement.dataset.theme = isDark ? "dark" : "light";
        byId("theme").textContent = `Theme: ${this.theme}`;
        this.colours = this.coloursOf(isDark ? "dark" : "light");
        this.minimap.forget();
        this.mark("size", "traces", "values");
    }

    // Parts of the page

    _fillHeader() {
        const { header, model } = this.recording;
        byId("station").textContent = printable(header.station || model.name);
        byId("subtitle").textContent = [header.recorder, header.start?.replace("T", " ").replace(/\.?0+$/, ""),
            model.name,
            model.verdict].filter((text) => text).map(printable).join(" \u00B7 ");
        if (model.index) {
            byId("back").hidden = false;
            byId("back").href = model.index;
        }
        const notes = [];
        if (this.recording.count === 0) {
            notes.push("This recording has no samples: only its configuration is shown.");
        }
        if (this.recording.pieces.isReduced) {
            const full = this.recording.pieces.pieces.find((piece) => piece.step === 1);
            const { axis } = this.recording;
            notes.push("This recording is large. Of every 16 samples the page keeps the least and the greatest value" +
                (full ? `; every sample from ${duration(axis[full.begin])} to ` +
                    `${duration(axis[full.begin + full.count - 1])} after the start.` : "."));
        }
        if (this.recording.axis !== this.recording.times) {
            notes.push("Times go back at some samples of this recording; those are drawn at the latest time before.");
        }
        byId("notice").hidden = notes.length === 0;
        byId("notice").textContent = notes.join(" ");
    }

    _makePanels() {
        this.panels = [ValuesPanel, PhasorPanel, HarmonicsPanel, ChannelPanel, HeaderPanel, FindingsPanel]
            .map((Panel) => new Panel(this));
        for (const panel of this.panels) {
            const tab = element("button", { type: "button", role: "tab", id: `tab-${panel.name}`,
                "aria-controls": `page-${panel.name}` },
                panel.title);
            tab.addEventListener("click", () => this.showPanel(panel.name));
            tab.addEventListener("keydown", (event) => this._walkTabs(event, panel));
            byId("tabs").append(tab);
            panel.tab = tab;
            panel.page = panel.element;
            Object.assign(panel.page, { id: `page-${panel.name}` });
            panel.page.setAttribute("role", "tabpanel");
            panel.page.setAttribute("aria-labelledby", tab.id);
            byId("pages").append(panel.page);
        }
        this.valuesPanel = this.panels[0];
        this.showPanel(this.recording.count > 0 ? "values" : "recording");
        if (innerWidth < kNarrow) {
            this.togglePanel(false);
        }
    }

    _walkTabs(event, panel) {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (step) {
            event.preventDefault();
            const next = this.panels[(this.panels.indexOf(panel) + step + this.panels.length) % this.panels.length];
            this.showPanel(next.name);
            next.tab.focus();
        }
    }

    showPanel(name) {
        this.panelName = this.panels.some((panel) => panel.name === name) ? name : "values";
        for (const panel of this.panels) {
            const isShown = panel.name === this.panelName;
            panel.page.hidden = !isShown;
            panel.tab.setAttribute("aria-selected", isShown);
            panel.tab.tabIndex = isShown ? 0 : -1;
            if (isShown) {
                panel.show?.();
            }
        }
        this.linkChanged();
    }

    togglePanel(isShown = byId("panel").hidden) {
        byId("panel").hidden = !isShown;
        byId("toggle-panel").setAttribute("aria-expanded", isShown);
        this.mark("size", "traces");
    }

    _makeTools() {
        const on = (id, action) => byId(id).addEventListener("click", action);
        on("zoom-in", () => this.zoomBy(0.5));
        on("zoom-out", () => this.zoomBy(2));
        on("fit", () => this.fit());
        on("to-trigger", () => this.toTrigger());
        on("between", () => this.zoomBetween());
        on("overlay-phases", () => this.toggleOverlay());
        on("drag-mode", () => this.toggleDrag());
        on("save-csv", () => this.saveCsv());
        on("copy-link", () => this.copyLink());
        on("print", () => print());
        on("theme", () => {
            this.theme = kThemes[(kThemes.indexOf(this.theme) + 1) % kThemes.length];
            this.themeChanged();
        });
        on("show-help", () => this.showHelp());
        on("toggle-panel", () => this.togglePanel());
        on("cursor-a", () => this.activate("A"));
        on("cursor-b", () => this.activate("B"));
        on("edge-back", () => this.snap(-1));
        on("edge-on", () => this.snap(1));
        byId("to-trigger").disabled = this.recording.trigger === null;
        const { start } = this.recording.header;
        for (const option of byId("clock-mode").options) {
            option.disabled = (option.value === "trigger" && this.recording.trigger === null)
                || (option.value === "clock" && !start);
        }
        byId("clock-mode").value = this.clockMode;
        byId("clock-mode").addEventListener("change", (event) => this.useClock(event.target.value));
        byId("side").addEventListener("change", (event) => this.useSide(event.target.value));
        byId("side").value = this.side;
        byId("side").disabled = this.recording.analog.every(({ info }) =>
            info.onPrimary.side === info.onSecondary.side);
        byId("scaling").addEventListener("change", (event) => this.useScaling(event.target.value));
        for (const name of ["A", "B"]) {
            const field = byId(`time-${name.toLowerCase()}`);
            field.addEventListener("focus", () => this.activate(name));
            field.addEventListener("change", () => this._typeTime(name, field));
            field.addEventListener("keydown", (event) => {
                if (event.key === "Escape") {
                    this._updateReadout();
                    this.stage.focus();
                }
            });
        }
    }

    // Lanes

    _makeLabels() {
        const labels = byId("labels");
        labels.replaceChildren();
        for (const lane of this.lanes.shown) {
            const isStatus = lane.kind === "status";
            const names = lane.channels.map((channel) => element("span", { className: "lane-name" },
                ...nameElement(channel)));
            const value = element("output", { className: "lane-value" });
            const grip = element("span", { className: "grip", title: "Drag to resize" });
            const label = element("div", { className: `label ${lane.kind}`,
                title: lane.channels.map((channel) => [channel.name, channel.info.phase, channel.info.component,
                    channel.unit]
                    .filter((text) => text).map(printable).join(" \u00B7 ")).join("\n") },
            element("span", { className: "lane-names" }, ...names), value, grip);
            lane.label = label;
            lane.valueElement = value;
            value.setAttribute("aria-hidden", "true");
            this._dragLabel(lane, label, grip);
            labels.append(label);
            if (isStatus) {
                label.classList.toggle("tight", true);
            }
        }
        const { constantCount } = this.lanes;
        if (constantCount > 0) {
            const fold = element("button", { type: "button", className: "fold", id: "fold" }, this.lanes.showsConstant
                ? `Hide what never changes (${constantCount})`
                    : `${constantCount} never change${constantCount === 1 ? "s" : ""}`);
            fold.addEventListener("click", () => this.showConstant(!this.lanes.showsConstant));
            labels.append(fold);
            this.foldButton = fold;
        } else {
            this.foldButton = null;
        }
        this._placeLabels();
    }

    _placeLabels() {
        for (const lane of this.lanes.shown) {
            lane.label.style.top = `${lane.top}px`;
            lane.label.style.height = `${lane.shownHeight}px`;
            lane.label.classList.toggle("selected", lane === this.selected);
        }
        if (this.foldButton) {
            this.foldButton.style.top = `${this.lanes.total}px`;
        }
        byId("lanes").style.height = `${this.lanes.total + (this.foldButton ? kStatusHeight + 8 : 0)}px`;
    }

    _dragLabel(lane, label, grip) {
        label.addEventListener("pointerdown", (event) => {
            if (event.button !== 0) {
                return;
            }
            const isResize = event.target === grip;
            const start = { y: event.clientY, height: lane.shownHeight };
            let target = null;
            label.setPointerCapture(event.pointerId);
            const move = (other) => {
                const dy = other.clientY - start.y;
                if (isResize) {
                    this.lanes.resize(lane, start.height + dy);
                    this._placeLabels();
                    this.mark("traces");
                } else if (Math.abs(dy) > 6) {
                    target = this.laneAt(other.clientY - this.stage.getBoundingClientRect().top);
                    for (const one of this.lanes.shown) {
                        one.label.classList.toggle("drop-below", one === target && one.top > lane.top);
                        one.label.classList.toggle("drop-above", one === target && one.top < lane.top);
                        one.label.classList.toggle("drop-over", one === target && other.shiftKey);
                    }
                }
            };
            const end = (other) => {
                label.removeEventListener("pointermove", move);
                label.removeEventListener("pointerup", end);
                label.removeEventListener("pointercancel", end);
                if (target && target !== lane) {
                    if (!other.shiftKey || !this.lanes.overlay(lane, target)) {
                        this.lanes.place(lane, target, target.top > lane.top);
                    }
                    this.lanesChanged();
                } else if (!isResize) {
                    this.select(lane.channels[0]);
                }
            };
            label.addEventListener("pointermove", move);
            label.addEventListener("pointerup", end);
            label.addEventListener("pointercancel", end);
        });
    }

    laneAt(y) {
        const at = y + this.stage.scrollTop;
        return this.lanes.shown.find((lane) => at >= lane.top && at < lane.top + lane.shownHeight) ?? null;
    }

    lanesChanged() {
        this.lanes.layOut();
        if (!this.lanes.all.includes(this.selected)) {
            this.selected = this.lanes.shown[0] ?? null;
        }
        this._makeLabels();
        this.panels.find((panel) => panel.name === "channels").update();
        byId("overlay-phases").setAttribute("aria-pressed", this.lanes.hasOverlays);
        this.mark("traces", "values");
        this.linkChanged();
    }

    select(channel, scrolls = true) {
        if (!channel) {
            return;
        }
        this.selected = this.lanes.laneOf(channel);
        this.selectedChannel = channel;
        for (const panel of this.panels) {
            panel.select?.(channel);
        }
        if (scrolls && this.lanes.shown.includes(this.selected)) {
            const { top, shownHeight } = this.selected;
            const { scrollTop, clientHeight } = this.stage;
            if (top < scrollTop || top + shownHeight > scrollTop + clientHeight) {
                this.stage.scrollTop = top - Math.max((clientHeight - shownHeight) / 2, 0);
            }
        }
        this._placeLabels();
        this.mark("traces", "values");
        if (this.panelName === "harmonics") {
            this.panels.find((panel) => panel.name === "harmonics").update();
        }
        this.announce();
    }

    selectNext(direction) {
        const { shown } = this.lanes;
        const next = shown[shown.indexOf(this.selected) + direction];
        if (next) {
            this.select(next.channels[0]);
        }
    }

    moveLane(direction) {
        if (this.selected && this.lanes.move(this.selected, direction)) {
            this.lanesChanged();
            this.select(this.selectedChannel);
        }
    }

    resizeLane(factor) {
        if (this.selected) {
            this.lanes.resize(this.selected, this.selected.shownHeight * factor);
            this.lanesChanged();
        }
    }

    hideLane(lane, isHidden) {
        this.lanes.hide(lane, isHidden);
        this.lanesChanged();
    }

    hideSelected() {
        const { shown } = this.lanes;
        const at = shown.indexOf(this.selected);
        if (at >= 0) {
            this.lanes.hide(this.selected);
            this.selected = this.lanes.shown[Math.min(at, this.lanes.shown.length - 1)] ?? null;
            this.lanesChanged();
            this.select(this.selected?.channels[0]);
        }
    }

    overlayLane() {
        const { shown } = this.lanes;
        const other = shown[shown.indexOf(this.selected) - 1];
        if (this.selected && this.lanes.overlay(this.selected, other)) {
            this.selected = other;
            this.lanesChanged();
        }
    }

    splitLane() {
        if (this.selected?.channels.length > 1) {
            this.lanes.split(this.selected);
            this.lanesChanged();
            this.select(this.selectedChannel);
        }
    }

    toggleOverlay() {
        if (this.lanes.hasOverlays) {
            this.lanes.splitAll();
        } else {
            this.lanes.overlayPhases();
        }
        this.lanesChanged();
        this.select(this.selectedChannel, false);
    }

    resetLanes() {
        this.lanes.showsConstant = false;
        this.lanes.reset();
        this.lanesChanged();
        this.select(this.selectedChannel, false);
    }

    showConstant(isShown) {
        this.lanes.showsConstant = isShown;
        this.lanesChanged();
        this.valuesPanel.show();
    }

    // The range of time

    viewChanged() {
        this.mark("traces");
        this.linkChanged();
    }

    fit() {
        this.view.fit();
        this.viewChanged();
    }

    zoomBy(factor) {
        const time = this.recording.axis[this.cursors.at[this.cursors.active]];
        const isSeen = time >= this.view.from && time <= this.view.to;
        this.view.zoom(factor, isSeen ? time : undefined);
        this.viewChanged();
    }

    panBy(part) {
        this.view.pan(this.view.span * part);
        this.viewChanged();
    }

    zoomBetween() {
        const [a, b] = ["A", "B"].map((name) => this.recording.axis[this.cursors.at[name]]);
        const room = Math.abs(b - a) * 0.05;
        this.view.show(Math.min(a, b) - room, Math.max(a, b) + room);
        this.viewChanged();
    }

    // Cursors

    activate(name) {
        this.cursors.active = name;
        for (const one of ["A", "B"]) {
            byId(`cursor-${one.toLowerCase()}`).setAttribute("aria-pressed", one === name);
        }
        this.cursorsChanged();
    }

    cursorsChanged() {
        this.mark("values");
        this.linkChanged();
        this.announce();
    }

    placeCursor(sample) {
        this.cursors.place(this.cursors.active, sample);
        this.revealCursor();
    }

    moveCursor(samples) {
        this.cursors.move(samples);
        this.revealCursor();
    }

    revealCursor() {
        const { from, to } = this.view;
        this.view.reveal(this.recording.axis[this.cursors.at[this.cursors.active]]);
        if (this.view.from !== from || this.view.to !== to) {
            this.mark("traces");
        }
        this.cursorsChanged();
    }

    toTrigger() {
        if (this.recording.trigger !== null) {
            this.placeCursor(this.recording.nearest(this.recording.trigger));
        }
    }

    snap(direction) {
        const channel = this.selectedChannel?.kind === "status" ? this.selectedChannel : null;
        if (this.cursors.snap(direction, channel)) {
            this.revealCursor();
        }
    }

    samplesOfCycle() {
        const { frequency } = this.recording.header;
        const { times } = this.recording;
        const at = this.cursors.at[this.cursors.active];
        const step = at > 0 ? times[at] - times[at - 1] : this.step;
        return frequency > 0 && step > 0 ? Math.round(1 / frequency / step) : 1;
    }

    _typeTime(name, field) {
        const origin = this.clockMode === "trigger" ? this.recording.trigger : 0;
        const time = parseTime(field.value, origin, this.recording.header.start);
        field.setAttribute("aria-invalid", Number.isNaN(time));
        if (!Number.isNaN(time)) {
            field.dataset.shown = field.value; // taken: it may be replaced by the time of the sample
            this.cursors.active = name;
            this.placeCursor(this.recording.nearest(time));
        }
        this._updateReadout();
    }

    // Units and times

    useSide(side) {
        this.side = side;
        byId("side").value = side;
        for (const channel of this.recording.analog) {
            channel.useSide(side);
        }
        this.minimap.forget();
        this.mark("traces", "values");
        this.linkChanged();
    }

    useScaling(scaling) {
        this.lanes.scaling = scaling;
        byId("scaling").value = scaling;
        this.mark("traces");
        this.linkChanged();
    }

    useClock(mode) {
        this.clockMode = mode;
        byId("clock-mode").value = mode;
        this.mark("traces", "values");
        this.linkChanged();
    }

    get resolution() {
        return Math.min(this.step || 1e-3, 1e-3) / 10;
    }

    // Seconds from the start at which the axis has its 0: of a clock, midnight.
    get origin() {
        const { header, trigger } = this.recording;
        if (this.clockMode === "clock") {
            return -Number((nanoseconds(header.start) % 86400000000000n + 86400000000000n) % 86400000000000n) / 1e9;
        }
        return this.clockMode === "trigger" ? trigger : 0;
    }

    timeText(time) {
        const { header, trigger } = this.recording;
        if (this.clockMode === "clock" && header.start) {
            return clock(header.start, time).slice(11).replace(/0{1,6}$/, "");
        }
        return `${seconds(this.clockMode === "trigger" ? time - trigger : time, this.resolution)} s`;
    }

    timeName() {
        return { trigger: "s from the trigger", start: "s from the start",
            clock: "the recorder's clock" }[this.clockMode];
    }

    distanceText() {
        const { time, cycles, frequency, samples } = this.cursors.distance;
        const parts = [`\u0394t ${duration(time)}`];
        if (Number.isFinite(cycles)) {
            parts.push(`${short(cycles)} cycles`);
        }
        if (Number.isFinite(frequency)) {
            parts.push(`${short(frequency)} Hz`);
        }
        return [...parts, `${String(samples).replace("-", kMinus)} samples`].join(" \u00B7 ");
    }

    // Drawing

    _watch() {
        new ResizeObserver(() => this.mark("size", "traces")).observe(this.stage);
        this.stage.addEventListener("scroll", () => this.mark("traces", "values"));
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.themeChanged());
        addEventListener("hashchange", () => {
            this._takeLink();
            this.lanesChanged();
            this.mark("traces", "values");
        });
        addEventListener("beforeprint", () => preparePrint(this, byId("printed")));
        addEventListener("afterprint", () => byId("printed").replaceChildren());
    }

    _resize() {
        const ratio = Math.max(devicePixelRatio || 1, 1);
        this.ratio = ratio;
        const canvases = byId("canvases");
        byId("app").style.setProperty("--bar", `${this.stage.offsetWidth - this.stage.clientWidth}px`);
        const width = canvases.clientWidth;
        const height = this.stage.clientHeight;
        canvases.style.height = `${height}px`;
        for (const [name, canvas] of Object.entries(this.canvas)) {
            const box = canvas.getBoundingClientRect();
            const isTall = ["traces", "over", "scales"].includes(name);
            canvas.width = Math.max(1, Math.round((name === "traces" || name === "over" ? width : box.width) * ratio));
            canvas.height = Math.max(1, Math.round((isTall ? height : box.height) * ratio));
        }
        this.lanes.layOut(height - (this.foldButton ? kStatusHeight + 8 : 0));
        this._placeLabels();
    }

    _drawTraces() {
        const { width, height } = this.canvas.traces;
        const { scales } = this.canvas;
        const tracer = new Tracer(this.canvas.traces.getContext("2d"), this.recording, this.colours);
        this.drawn = tracer.draw({ lanes: this.lanes, view: this.view, width, height, ratio: this.ratio,
            scroll: this.stage.scrollTop, selected: this.selected, origin: this.origin,
            scales: scales.width > 1 ? { context: scales.getContext("2d"), width: scales.width } : null });
        this._drawAxis();
    }

    _drawAxis() {
        const { colours, ratio, view } = this;
        const { width, height } = this.canvas.axis;
        const context = this.canvas.axis.getContext("2d");
        context.clearRect(0, 0, width, height);
        context.font = `${11 * ratio}px ${colours.font}`;
        context.textBaseline = "middle";
        const { origin } = this;
        const { step, ticks } = ticksOf(view.from - origin, view.to - origin, width / ratio / 110);
        const [factor, unit] = step >= 0.5 ? [1, "s"] : step >= 2e-4 ? [1e-3, "ms"] : [1e-6, "\u00B5s"];
        const digits = Math.max(0, -Math.floor(Math.log10(step / factor) + 1e-9));
        byId("axis-name").textContent = this.clockMode === "clock" ? "Clock" : `Time from ${this.clockMode}, ${unit}`;
        for (const tick of ticks) {
            const x = view.x(tick + origin, width);
            const text = this.clockMode === "clock" ? this._clockTick(tick + origin, step)
                : (Math.abs(tick) < step / 1e6 ? "0" : (tick / factor).toFixed(digits).replace("-", kMinus));
            const wide = context.measureText(text).width;
            context.fillStyle = colours.zero;
            context.fillRect(Math.round(x), height - 5 * ratio, 1, 5 * ratio);
            context.fillStyle = colours.faint;
            context.fillText(text, Math.min(Math.max(x - wide / 2, 2), width - wide - 2), height / 2 - 2 * ratio);
        }
    }

    _clockTick(tick, step) {
        const digits = Math.min(9, Math.max(0, -Math.floor(Math.log10(step) + 1e-9)));
        const text = clock(this.recording.header.start, tick).slice(11);
        return digits === 0 ? text.slice(0, 8) : text.slice(0, 9 + digits);
    }

    _drawOver() {
        if (!this.colours || this.recording.count === 0) {
            return;
        }
        const { canvas, colours, cursors, ratio, recording, view } = this;
        const { width, height } = canvas.over;
        const context = canvas.over.getContext("2d");
        context.clearRect(0, 0, width, height);
        const { box } = this.pointer;
        if (box) {
            context.fillStyle = colours.box;
            context.fillRect(box[0] * ratio, 0, (box[1] - box[0]) * ratio, height);
        }
        const times = ["B", "A"].map((name) => [name, recording.axis[cursors.at[name]]]);
        for (const [name, time] of times) {
            const x = Math.round(view.x(time, width));
            if (x < 0 || x > width) {
                continue;
            }
            const isActive = name === cursors.active;
            context.fillStyle = colours.cursors[name];
            context.fillRect(x, 0, Math.ceil((isActive ? 1.5 : 1) * ratio), height);
            context.fillRect(Math.min(x, width - 14 * ratio), 0, 14 * ratio, 15 * ratio);
            context.fillStyle = colours.ground;
            context.font = `bold ${10 * ratio}px ${colours.font}`;
            context.textBaseline = "middle";
            context.textAlign = "center";
            context.fillText(name, Math.min(x, width - 14 * ratio) + 7 * ratio, 8 * ratio);
            context.textAlign = "start";
        }
        this.minimap.draw(view, colours, ratio, times.map(([name, time]) => [time, colours.cursors[name]]));
    }

    _updateValues() {
        this._updateReadout();
        const { cursors, stage } = this;
        const at = cursors.at[cursors.active];
        if (this.recording.count > 0) {
            for (const lane of this.lanes.shown) {
                if (lane.top + lane.shownHeight >= stage.scrollTop && lane.top <= stage.scrollTop
                    + stage.clientHeight) {
                    lane.valueElement.textContent = lane.kind === "status" ? String(lane.channels[0].state(at))
                        : lane.channels.map((channel) => withUnit(channel.value(at), channel.unit)).join("\n");
                }
            }
        }
        if (!byId("panel").hidden) {
            this.panels.find((panel) => panel.name === this.panelName).update?.();
        }
    }

    _updateReadout() {
        const { cursors, recording } = this;
        if (recording.count === 0) {
            byId("readout").hidden = true;
            return;
        }
        for (const name of ["A", "B"]) {
            const field = byId(`time-${name.toLowerCase()}`);
            if (document.activeElement !== field || !field.matches(":focus-visible")
                || field.dataset.shown === field.value) {
                field.value = this.timeText(cursors.time(name)).replace(/ s$/, "");
                field.dataset.shown = field.value;
            }
        }
        byId("readout").classList.toggle("clock", this.clockMode === "clock");
        byId("distance").textContent = this.distanceText();
        const channel = this.selectedChannel;
        byId("selected-values").textContent = !channel ? "" : channel.kind === "status"
            ? `${printable(channel.name)}: A ${channel.state(cursors.at.A)}, B ${channel.state(cursors.at.B)}`
            : this._valuesText(channel);
    }

    _valuesText(channel) {
        const [a, b] = ["A", "B"].map((name) => channel.value(this.cursors.at[name]));
        const unit = [a, b].some(Number.isFinite) ? ` ${shownUnit(channel.unit)}` : "";
        return `${printable(channel.name)}: A ${exact(a) || "missing"}, B ${exact(b) || "missing"}${unit}`;
    }

    // For who does not see the traces.
    announce() {
        clearTimeout(this.announcing);
        this.announcing = setTimeout(() => {
            const { cursors, recording } = this;
            if (recording.count === 0) {
                return;
            }
            const channel = this.selectedChannel;
            const at = cursors.at[cursors.active];
            const value = !channel ? "" : channel.kind === "status" ? `${printable(channel.name)} ${channel.state(at)}`
                : `${printable(channel.name)} ${Number.isNaN(channel.value(at)) ? "missing" : withUnit(channel.value(at), channel.unit)}`;
            byId("live").textContent = `Cursor ${cursors.active} at ${this.timeText(cursors.time(cursors.active))}. ${value}`;
        }, kAnnounceDelay);
    }

    // Others

    toggleDrag() {
        this.dragPans = !this.dragPans;
        byId("drag-mode").setAttribute("aria-pressed", this.dragPans);
    }

    searchChannels() {
        this.togglePanel(true);
        this.showPanel("values");
        byId("search").focus();
    }

    showHelp() {
        byId("help").showModal();
    }

    saveCsv() {
        const { cursors, recording } = this;
        const [first, last] = [Math.min(cursors.at.A, cursors.at.B), Math.max(cursors.at.A, cursors.at.B)];
        const channels = this.lanes.shown.flatMap((lane) => lane.channels);
        const link = element("a", { download: `${recording.model.name.replace(/\.[^.]*$/, "")}.csv`,
            href: URL.createObjectURL(new Blob([csvOf(recording, channels, first, last)], { type: "text/csv" })) });
        link.click();
        setTimeout(() => URL.revokeObjectURL(link.href), 1000);
    }

    copyLink() {
        this._writeLink();
        const done = () => {
            byId("copy-link").textContent = "Copied";
            setTimeout(() => {
                byId("copy-link").textContent = "Link";
            }, 1500);
        };
        navigator.clipboard?.writeText(location.href).then(done, () => prompt("Link to this view", location.href));
    }

    get state() {
        const { cursors, lanes, view } = this;
        const usual = new Lanes(this.recording);
        usual.showsConstant = lanes.showsConstant;
        const order = lanes.all.map((lane) => lane.channels.map((channel) => channel.id).join("+")).join(",");
        const isUsual = order === usual.all.map((lane) => lane.id).join(",");
        return { from: view.isWhole ? "" : String(view.from), to: view.isWhole ? "" : String(view.to),
            a: String(cursors.at.A), b: String(cursors.at.B),
            side: this.side === this.recording.usualSide ? "" : this.side,
            scale: lanes.scaling === "group" ? "" : lanes.scaling,
            clock: this.clockMode === (this.recording.trigger === null ? "start" : "trigger") ? "" : this.clockMode,
            hide: lanes.all.filter((lane) => lane.isHidden).map((lane) => lane.id).join(","),
            fold: lanes.showsConstant ? "0" : "", lanes: isUsual ? "" : order,
            panel: this.panelName === "values" ? "" : this.panelName };
    }

    linkChanged() {
        clearTimeout(this.linking);
        this.linking = setTimeout(() => this._writeLink(), kLinkDelay);
    }

    _writeLink() {
        const fragment = fragmentOf(this.state);
        if (fragment !== location.hash) {
            history.replaceState(null, "", fragment || location.pathname);
        }
    }

    _takeLink() {
        const state = stateOf(location.hash);
        const { cursors, lanes, view } = this;
        if (state.from !== undefined && Number.isFinite(Number(state.from)) && Number.isFinite(Number(state.to))) {
            view.show(Number(state.from), Number(state.to));
        }
        for (const [key, name] of [["a", "A"], ["b", "B"]]) {
            if (/^\d+$/.test(state[key] ?? "")) {
                cursors.place(name, Number(state[key]));
            }
        }
        if (["recorded", "primary", "secondary"].includes(state.side)) {
            this.useSide(state.side);
        }
        if (["own", "view"].includes(state.scale)) {
            this.useScaling(state.scale);
        }
        const option = [...byId("clock-mode").options].find((one) => one.value === state.clock);
        if (option && !option.disabled) {
            this.useClock(state.clock);
        }
        lanes.showsConstant = state.fold === "0";
        if (state.lanes) {
            this._takeLanes(state.lanes);
        }
        const hidden = new Set((state.hide ?? "").split(","));
        for (const lane of lanes.all) {
            lane.isHidden = hidden.has(lane.id);
        }
        lanes.layOut();
        if (state.panel) {
            this.showPanel(state.panel);
        }
    }

    // Lanes of a link, then all that it does not name.
    _takeLanes(order) {
        const { lanes } = this;
        lanes.reset();
        const made = [];
        for (const word of order.split(",")) {
            const parts = word.split("+").map((id) => lanes.lane(id)).filter((lane) => lane && !made.includes(lane));
            if (parts.length > 0 && !made.some((lane) => parts.includes(lane))) {
                parts[0].channels = parts.every((lane) => lane.kind === "analog")
                    ? parts.flatMap((lane) => lane.channels)
                    : parts[0].channels;
                made.push(parts[0]);
            }
        }
        const taken = new Set(made.flatMap((lane) => lane.channels));
        lanes.all = [...made, ...lanes.all.filter((lane) => !lane.channels.some((channel) => taken.has(channel)))];
        byId("overlay-phases").setAttribute("aria-pressed", lanes.hasOverlays);
    }
}

async function showPage() {
    if (!canInflate()) {
        byId("notice").hidden = false;
        byId("notice").textContent = "This browser cannot unpack the recording (it has no DecompressionStream). " +
            "Chromium 80, Firefox 113 and Safari 16.4 can, and later ones.";
        return;
    }
    const model = JSON.parse(byId("recording").textContent);
    const recording = await openRecording(model, (block) => {
        const source = byId(`block${block.block}`);
        const text = source.textContent;
        source.remove();
        return decoded(block, text);
    });
    new App(recording);
    requestAnimationFrame(() => requestAnimationFrame(() => {
        performance.mark("ready");
        document.documentElement.dataset.ready = "yes";
    }));
}

showPage().catch((problem) => {
    byId("notice").hidden = false;
    byId("notice").textContent = `The page cannot be shown: ${problem.message}`;
});
