// A recording as a page shows it: header, times, channels, changes of states. It does not know where it came from:
// `openRecording` gets the model (what the page holds as JSON) and a function that gives the numbers of a block.

import { Pyramid } from "./pyramid.js";

// The number of entries of an ascending array that lie below the value.
export function lowerBound(array, value, begin = 0, end = array.length) {
    while (begin < end) {
        const middle = (begin + end) >>> 1;
        if (array[middle] < value) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

// Samples that are kept, numbered from 0, and those of the recording that they stand for.
export class Pieces {
    constructor(pieces, samples) {
        this.samples = samples;
        this.pieces = [];
        this.count = 0;
        for (const [first, count, step] of pieces) {
            this.pieces.push({ first, count, step, begin: this.count });
            this.count += count;
        }
    }

    // 0-based sample of the recording.
    recorded(index) {
        const piece = this._piece((one) => index < one.begin + one.count);
        return Math.min(piece.first + (index - piece.begin) * piece.step, this.samples - 1);
    }

    // The kept sample at or before one of the recording.
    kept(sample) {
        const piece = this._piece((one) => sample < one.first + one.count * one.step);
        return Math.min(piece.begin + Math.floor((sample - piece.first) / piece.step), this.count - 1);
    }

    isReducedAt(index) {
        return this.pieces.length > 0 && this._piece((one) => index < one.begin + one.count).step > 1;
    }

    get isReduced() {
        return this.pieces.some((piece) => piece.step > 1);
    }

    _piece(isIn) {
        return this.pieces.find(isIn) ?? this.pieces.at(-1);
    }
}

// Times as the library computes them, each to the last bit: the order of the operations is part of it.
export function timesByRates(segments, pieces) {
    const times = new Float64Array(pieces.count);
    const { isReduced } = pieces;
    let segment = 0;
    let begin = 0;
    let before = 0;
    for (let i = 0; i < times.length; ++i) {
        const sample = isReduced ? pieces.recorded(i) : i;
        while (segment + 1 < segments.length && sample - begin >= segments[segment][1]) {
            before += segments[segment][1] / segments[segment][0];
            begin += segments[segment][1];
            ++segment;
        }
        times[i] = (sample - begin) / segments[segment][0] + before;
    }
    return times;
}

export function timesOfStamps(stamps, multiplier) {
    return Float64Array.from(stamps, (stamp) => stamp * multiplier * 0.000001);
}

// For places on an axis: the same times where they never go back, else the latest so far.
export function axisOf(times) {
    let isAscending = true;
    for (let i = 1; i < times.length && isAscending; ++i) {
        isAscending = times[i] >= times[i - 1];
    }
    if (isAscending) {
        return times;
    }
    const axis = Float64Array.from(times);
    for (let i = 1; i < axis.length; ++i) {
        axis[i] = Math.max(axis[i], axis[i - 1]);
    }
    return axis;
}

// "a", "b", "c", "n", or "" where neither the field nor the name says.
export function phaseOf(phase, id) {
    const letters = { A: "a", "1": "a", R: "a", L1: "a", "\u0410": "a", B: "b", "2": "b", S: "b", Y: "b", L2: "b",
        "\u0412": "b", C: "c", "3": "c", T: "c", L3: "c", "\u0421": "c", N: "n", E: "n", G: "n", "0": "n", "4": "n" };
    const field = phase.trim().toUpperCase();
    if (letters[field] !== undefined) {
        return letters[field];
    }
    if (/^(AB|BC|CA|RS|ST|TR|L12|L23|L31|12|23|31)$/.test(field)) {
        return letters[field.startsWith("L") ? `L${field[1]}` : field[0]];
    }
    const name = id.trim().toUpperCase();
    if (/(^|[^A-Z])3?[IUV]0|[IUV]([NEG])([^A-Z]|$)/.test(name)) {
        return "n";
    }
    const match = /(?:^|[^A-Z])[IUV][ _-]?(L[123]|[ABC123])([^A-Z0-9]|$)/.exec(name) ??
        /[ _-](L[123]|[ABC])$/.exec(name);
    return match ? letters[match[1]] : "";
}

export class AnalogChannel {
    constructor(info, index, raw) {
        Object.assign(this, { info, index, kind: "analog", id: `a${index + 1}` });
        this.name = info.id || `Analog ${index + 1}`;
        this.unit = info.base;
        this.phase = phaseOf(info.phase, info.id);
        this.missing = info.missing;
        this.raw = info.missing.length > 0 ? AnalogChannel._withGaps(raw, info.missing) : raw;
        this.useSide("recorded");
        this._pyramid = null;
    }

    // NaN for what is missing: doubles hold every raw value.
    static _withGaps(raw, missing) {
        const values = Float64Array.from(raw);
        for (const [sample, count] of missing) {
            values.fill(NaN, sample, sample + count);
        }
        return values;
    }

    useSide(side) {
        this.scale = { recorded: this.info.recorded, primary: this.info.onPrimary,
            secondary: this.info.onSecondary }[side];
    }

    get side() {
        return this.scale.side;
    }

    // In base units, NaN where it is missing.
    value(index) {
        return this.raw[index] * this.scale.a + this.scale.b;
    }

    get pyramid() {
        this._pyramid ??= new Pyramid(this.raw);
        return this._pyramid;
    }

    // The least and the greatest finite value, in base units; [0, 0] without one.
    get range() {
        if (this._rangeScale !== this.scale) {
            this._range = this._findRange();
            this._rangeScale = this.scale;
        }
        return this._range;
    }

    _findRange() {
        const { a, b } = this.scale;
        this.pyramid.find(0, this.raw.length);
        const ends = [this.pyramid.least, this.pyramid.greatest].map((raw) => raw * a + b);
        if (ends.every(Number.isFinite)) {
            return [Math.min(...ends), Math.max(...ends)];
        }
        let least = Infinity;
        let greatest = -Infinity;
        for (const raw of this.raw) {
            const value = raw * a + b;
            if (Number.isFinite(value)) {
                least = Math.min(least, value);
                greatest = Math.max(greatest, value);
            }
        }
        return least <= greatest ? [least, greatest] : [0, 0];
    }
}

export class StatusChannel {
    constructor(info, index, changes, pieces) {
        Object.assign(this, { info, index, kind: "status", id: `d${index + 1}` });
        this.name = info.id || `Status ${index + 1}`;
        this.changes = Float64Array.from(changes, (sample) => pieces.kept(sample));
    }

    get isConstant() {
        return this.changes.length === 0;
    }

    state(index) {
        const passed = lowerBound(this.changes, index + 1);
        return passed % 2 === 0 ? this.info.first : 1 - this.info.first;
    }
}

export class Recording {
    constructor(model, times, analog, status, pieces) {
        Object.assign(this, { model, header: model.header, findings: model.findings, times, analog, status, pieces });
        this.axis = axisOf(times);
        this.count = times.length;
        this.begin = this.count > 0 ? this.axis[0] : 0;
        this.end = this.count > 0 ? this.axis[this.count - 1] : 0;
        this.trigger = Recording._trigger(model.header);
        this.usualSide = model.side || "recorded";
        for (const channel of analog) {
            channel.useSide(this.usualSide);
        }
    }

    // Seconds from the start, or null.
    static _trigger({ start, trigger }) {
        return start && trigger ? Number(nanoseconds(trigger) - nanoseconds(start)) / 1e9 : null;
    }

    // The sample whose time is the nearest.
    nearest(time) {
        const at = lowerBound(this.axis, time);
        if (at <= 0 || this.count === 0) {
            return 0;
        }
        if (at >= this.count) {
            return this.count - 1;
        }
        return time - this.axis[at - 1] <= this.axis[at] - time ? at - 1 : at;
    }

    // The samples at which some status changes, ascending.
    get edges() {
        if (!this._edges) {
            const all = new Set();
            for (const channel of this.status) {
                for (const change of channel.changes) {
                    all.add(change);
                }
            }
            this._edges = Float64Array.from(all).sort();
        }
        return this._edges;
    }

    channel(id) {
        const list = id[0] === "a" ? this.analog : this.status;
        return list[Number(id.slice(1)) - 1];
    }
}

// "2026-11-21T12:34:56.123456789" as nanoseconds since 1970, a BigInt.
export function nanoseconds(text) {
    const [whole, fraction = ""] = text.split(".");
    return BigInt(Date.parse(`${whole}Z`)) * 1000000n + BigInt(fraction.padEnd(9, "0"));
}

export async function openRecording(model, numbersOf) {
    const pieces = new Pieces(model.pieces, model.header.samples);
    const { time } = model;
    const times = time.kind === "rates" ? timesByRates(time.segments, pieces)
        : time.kind === "stamps" ? timesOfStamps(await numbersOf(time.numbers), time.multiplier)
            : await numbersOf(time.numbers);
    const raw = await Promise.all(model.analog.map((info) => numbersOf(info.values)));
    const analog = model.analog.map((info, i) => new AnalogChannel(info, i, raw[i]));
    const changes = await Promise.all(model.status.map((info) =>
        Array.isArray(info.changes) ? info.changes : numbersOf(info.changes)));
    const status = model.status.map((info, i) => new StatusChannel(info, i, changes[i], pieces));
    return new Recording(model, times, analog, status, pieces);
}
