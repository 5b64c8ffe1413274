// RMS, phasors and harmonics at the active cursor.

import { cycleAt, distortion, harmonics, phasor, rms, turned } from "./phasor.js";
import { printable, short, withUnit } from "./format.js";
import { element, nameElement } from "./values.js";

const kSvg = "http://www.w3.org/2000/svg";
const kOrders = 15;

function drawn(tag, attributes, ...children) {
    const made = document.createElementNS(kSvg, tag);
    for (const [key, value] of Object.entries(attributes)) {
        made.setAttribute(key, value);
    }
    made.append(...children);
    return made;
}

function cycleOf(app) {
    const { recording, cursors } = app;
    return cycleAt(recording.times, cursors.at[cursors.active], recording.header.frequency,
        (index) => recording.pieces.isReducedAt(index));
}

function angleText(angle) {
    return Number.isNaN(angle) ? "\u2013" : `${angle.toFixed(1).replace("-", "\u2212")}\u00B0`;
}

// Names of one group often differ in their last letters.
function brief(name) {
    return name.length <= 14 ? name : `${name.slice(0, 7)}\u2026${name.slice(-6)}`;
}

// The first three phases of what is in volts and in amperes.
function usualChannels(analog) {
    const usual = new Set();
    for (const unit of ["V", "A"]) {
        for (const channel of analog.filter((one) => one.unit === unit && "abc".includes(one.phase || "-")).slice(0,
            3)) {
            usual.add(channel);
        }
    }
    return usual.size > 0 ? usual : new Set(analog.slice(0, 3));
}

export class PhasorPanel {
    constructor(app) {
        Object.assign(this, { app, title: "Phasors", name: "phasors" });
        const { analog } = app.recording;
        this.drawnChannels = usualChannels(analog);
        this.reference = [...this.drawnChannels][0] ?? null;
        this.choice = element("select", { id: "reference" }, element("option", { value: "" }, "time 0"),
            ...analog.map((channel) => element("option", { value: channel.id }, printable(channel.name))));
        this.choice.value = this.reference?.id ?? "";
        this.choice.addEventListener("change", () => {
            this.reference = this.choice.value ? app.recording.channel(this.choice.value) : null;
            this.update();
        });
        this.note = element("p", { className: "note" });
        this.diagram = drawn("svg", { viewBox: "-180 -114 360 228", class: "diagram", role: "img" });
        this.body = element("tbody");
        this.element = element("div", { className: "phasor-panel" },
            element("div", { className: "bar" }, element("label", {}, "Angles from ", this.choice)), this.note,
                this.diagram,
            element("div", { className: "scrolled", tabIndex: 0, role: "region", "aria-label": "Table of phasors" },
                element("table", { className: "values phasors" },
                    element("caption", { className: "unseen" },
                        "RMS and phasors of the cycle before the active cursor"),
                    element("thead", {}, element("tr", {}, ...["Channel", "RMS", "Phasor", "Angle"].map((text) =>
                        element("th", { scope: "col" }, text)))), this.body)));
        this.rows = analog.map((channel) => this._row(channel));
    }

    _row(channel) {
        const box = element("input", { type: "checkbox", checked: this.drawnChannels.has(channel),
            "aria-label": `Draw ${printable(channel.name)}` });
        box.addEventListener("change", () => {
            this.drawnChannels[box.checked ? "add" : "delete"](channel);
            this.update();
        });
        const cells = [element("td"), element("td"), element("td")];
        this.body.append(element("tr", {}, element("th", { scope: "row" },
            element("label", { className: "name" }, box, ...nameElement(channel))), ...cells));
        return { channel, cells };
    }

    show() {
        this.update();
    }

    update() {
        const { app } = this;
        const cycle = cycleOf(app);
        const { frequency } = app.recording.header;
        this.note.textContent = cycle.reason ? `No phasors here: ${cycle.reason}.`
            : `Fundamental (${short(frequency)} Hz) and RMS of the cycle that ends at cursor ${app.cursors.active}.`;
        const found = new Map();
        for (const { channel } of this.rows) {
            found.set(channel, cycle.reason ? { magnitude: NaN, angle: NaN }
                : phasor((i) => channel.value(i), app.recording.times, cycle, 1, channel.info.skew * 1e-6));
        }
        const zero = this.reference ? found.get(this.reference).angle : 0;
        for (const { channel, cells } of this.rows) {
            const { magnitude, angle } = found.get(channel);
            cells[0].textContent = cycle.reason ? "\u2013" : withUnit(rms((i) => channel.value(i), cycle),
                channel.unit);
            cells[1].textContent = withUnit(magnitude, channel.unit);
            cells[2].textContent = angleText(turned(angle - zero));
        }
        this._draw(found, zero);
    }

    _draw(found, zero) {
        const most = new Map();
        for (const channel of this.drawnChannels) {
            const { magnitude } = found.get(channel);
            if (magnitude > (most.get(channel.unit) ?? 0)) {
                most.set(channel.unit, magnitude);
            }
        }
        const parts = [100, 50].map((radius) => drawn("circle", { r: radius, class: "ring" }));
        for (let angle = 0; angle < 180; angle += 30) {
            const [x, y] = [Math.cos(angle * Math.PI / 180) * 100, Math.sin(angle * Math.PI / 180) * 100];
            parts.push(drawn("line", { x1: -x, y1: -y, x2: x, y2: y, class: angle % 90 === 0 ? "spoke main"
                : "spoke" }));
        }
        const spoken = [];
        const units = [...most.keys()];
        for (const channel of this.drawnChannels) {
            const { magnitude, angle } = found.get(channel);
            if (!(magnitude > 0) || Number.isNaN(zero)) {
                continue;
            }
            const length = magnitude / most.get(channel.unit) * (units.indexOf(channel.unit) % 2 === 1 ? 72 : 96);
            const turn = (angle - zero) * Math.PI / 180;
            const [x, y] = [Math.cos(turn) * length, -Math.sin(turn) * length];
            const look = `phasor phase-${channel.phase || "x"} ${units.indexOf(channel.unit) % 2 === 1 ? "second" : ""}`;
            const back = [Math.cos(turn + 2.75) * 7, -Math.sin(turn + 2.75) * 7, Math.cos(turn - 2.75) * 7,
                -Math.sin(turn - 2.75) * 7];
            parts.push(drawn("line", { x1: 0, y1: 0, x2: x, y2: y, class: look }),
                drawn("polygon", { class: `${look} head`,
                    points: `${x},${y} ${x + back[0]},${y + back[1]} ${x + back[2]},${y + back[3]}` }),
                drawn("text", { x: x * 1.08 + (x < 0 ? -4 : 4), y: y * 1.08 + 3, class: "phasor-name",
                    "text-anchor": x < -8 ? "end" : x > 8 ? "start" : "middle" }, brief(printable(channel.name))));
            spoken.push(`${printable(channel.name)} ${withUnit(magnitude, channel.unit)} ${angleText(turned(angle - zero))}`);
        }
        this.diagram.replaceChildren(...parts);
        this.diagram.setAttribute("aria-label", spoken.length > 0 ? `Phasors: ${spoken.join("; ")}` : "No phasors");
    }
}

export class HarmonicsPanel {
    constructor(app) {
        Object.assign(this, { app, title: "Harmonics", name: "harmonics" });
        this.choice = element("select", { id: "harmonics-channel" }, ...app.recording.analog.map((channel) =>
            element("option", { value: channel.id }, printable(channel.name))));
        this.choice.addEventListener("change", () => this.update());
        this.note = element("p", { className: "note" });
        this.bars = drawn("svg", { viewBox: "0 0 320 130", class: "bars", role: "img" });
        this.body = element("tbody");
        this.element = element("div", { className: "harmonics-panel" },
            element("div", { className: "bar" }, element("label", {}, "Channel ", this.choice)), this.note, this.bars,
            element("div", { className: "scrolled", tabIndex: 0, role: "region", "aria-label": "Table of harmonics" },
                element("table", { className: "values" },
                    element("caption", { className: "unseen" }, "Harmonics of the cycle before the active cursor"),
                    element("thead", {}, element("tr", {}, ...["Order", "RMS", "of the 1st"].map((text) =>
                        element("th", { scope: "col" }, text)))), this.body)));
        this.rows = Array.from({ length: kOrders + 1 }, (_, order) => {
            const cells = [element("td"), element("td")];
            this.body.append(element("tr", {}, element("th", { scope: "row" },
                order === 0 ? "direct" : `${order}`), ...cells));
            return cells;
        });
    }

    select(channel) {
        if (channel.kind === "analog") {
            this.choice.value = channel.id;
        }
    }

    show() {
        this.update();
    }

    update() {
        const { app } = this;
        if (app.recording.analog.length === 0) {
            this.note.textContent = "There is no analog channel.";
            return;
        }
        const channel = app.recording.channel(this.choice.value);
        const cycle = cycleOf(app);
        const magnitudes = harmonics((i) => channel.value(i), app.recording.times, cycle, kOrders);
        const total = distortion(magnitudes);
        this.note.textContent = cycle.reason ? `No harmonics here: ${cycle.reason}.`
            : `Of the cycle that ends at cursor ${app.cursors.active}. Distortion (2nd to 15th): ` +
                `${Number.isFinite(total) ? `${short(total * 100, 3)} %` : "none"}.`;
        this.rows.forEach((cells, order) => {
            const part = magnitudes[order] / magnitudes[1] * 100;
            cells[0].textContent = withUnit(magnitudes[order], channel.unit);
            cells[1].textContent = Number.isFinite(part) ? `${short(part, 3)} %` : "\u2013";
        });
        this._draw(magnitudes);
    }

    _draw(magnitudes) {
        const most = Math.max(...magnitudes.filter((magnitude) => Number.isFinite(magnitude)), 0);
        const parts = [drawn("line", { x1: 0, y1: 112, x2: 320, y2: 112, class: "spoke main" })];
        magnitudes.forEach((magnitude, order) => {
            const height = most > 0 && Number.isFinite(magnitude) ? magnitude / most * 104 : 0;
            parts.push(drawn("rect", { x: order * 20 + 4, y: 112 - height, width: 12, height, class: "bar-of" }),
                drawn("text", { x: order * 20 + 10, y: 125, "text-anchor": "middle", class: "phasor-name" },
                    order === 0 ? "DC" : String(order)));
        });
        this.bars.replaceChildren(...parts);
        this.bars.setAttribute("aria-label", "Bars of the harmonics; the table below has their values");
    }
}
