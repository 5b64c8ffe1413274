// Numbers, times and names as people read them.

import { nanoseconds } from "./recording.js";

const kScaled = new Set(["V", "A", "W", "var", "VAr", "VAR", "Var", "VA", "Hz", "Ohm", "ohm", "\u03A9", "\u2126", "s",
    "Wh", "varh", "VArh", "VARh", "VAh", "H", "F", "C", "T",
    "\u0412", "\u0410", "\u0412\u0442", "\u0412\u0410", "\u0432\u0430\u0440", "\u0412\u0410\u0440", "\u041E\u043C",
    "\u0413\u0446", "\u0441"]);
const kPrefixes = [[1e9, "G"], [1e6, "M"], [1e3, "k"], [1, ""], [1e-3, "m"], [1e-6, "\u00B5"], [1e-9, "n"]];
const kMostScaled = 1e15; // above, an exponent says more than a prefix
const kUnitLength = 12;
const kUnseen = /[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{Cs}\uFFF9-\uFFFB]/gu;
export const kMinus = "\u2212";

// Characters that are not seen, and those that turn the direction of a text, as \uXXXX.
export function printable(text) {
    return String(text).replace(kUnseen, (character) =>
        `\\u${character.codePointAt(0).toString(16).toUpperCase().padStart(4, "0")}`);
}

// The prefix that suits a magnitude: [factor, prefix]. Of a unit that takes none, [1, ""].
export function prefixFor(magnitude, unit) {
    if (!kScaled.has(unit) && !/^[VA](rms|eff|peak|pk|pkpk|ac|dc)$/i.test(unit)) {
        return [1, ""];
    }
    return magnitude < kMostScaled && kPrefixes.find(([factor]) => magnitude >= factor * 0.99999) || [1, ""];
}

// A unit as there is room for it: the rest of a long one is left out.
export function shownUnit(unit) {
    return printable(unit.length <= kUnitLength ? unit
        : `${[...unit.slice(0, 2 * kUnitLength)].slice(0, kUnitLength - 1).join("")}\u2026`);
}

// Without zeros at the end.
export function trimmed(text) {
    const [number, ...power] = text.split("e");
    return [number.includes(".") ? number.replace(/\.?0+$/, "") : number, ...power].join("e");
}

// A number in few digits, with a true minus sign.
export function short(value, digits = 4) {
    if (Number.isNaN(value)) {
        return "\u2013";
    }
    if (!Number.isFinite(value)) {
        return value < 0 ? `${kMinus}\u221E` : "\u221E";
    }
    const magnitude = Math.abs(value);
    const text = value === 0 ? "0" : magnitude >= 1e6 || magnitude < 1e-4 ? value.toExponential(digits - 1)
        : trimmed(value.toPrecision(digits)).includes("e") ? String(Math.round(value)) : value.toPrecision(digits);
    return text.replace("-", kMinus);
}

// "1.234 kA"; NaN is a dash.
export function withUnit(value, unit, digits = 4) {
    if (!Number.isFinite(value)) {
        return short(value);
    }
    const [factor, prefix] = prefixFor(Math.abs(value), unit);
    const name = prefix + unit;
    return name === "" ? short(value, digits) : `${short(value / factor, digits)} ${shownUnit(name)}`;
}

// All digits, as the program prints them: the shortest text that reads back as the same number.
export function exact(value) {
    if (Number.isFinite(value)) {
        return Object.is(value, -0) ? "-0" : String(value);
    }
    return Number.isNaN(value) ? "" : value < 0 ? "-inf" : "inf";
}

const kTimeUnits = [[1, "s"], [1e-3, "ms"], [1e-6, "\u00B5s"], [1e-9, "ns"]];

// Seconds, so that steps of `resolution` are seen.
export function seconds(value, resolution) {
    const digits = Math.max(0, Math.min(12, Math.ceil(-Math.log10(resolution || 1e-6))));
    return value.toFixed(digits).replace("-", kMinus);
}

// A length of time: "12.34 ms".
export function duration(value) {
    if (value === 0) {
        return "0 s";
    }
    const [factor, unit] = kTimeUnits.find(([size]) => Math.abs(value) >= size) ?? kTimeUnits.at(-1);
    return `${trimmed((value / factor).toPrecision(6)).replace("-", kMinus)} ${unit}`;
}

// The recorder's clock so many seconds after the start: "2026-11-21T12:34:56.123456789".
export function clock(start, time) {
    const all = nanoseconds(start) + BigInt(Math.round(time * 1e9));
    let milliseconds = all / 1000000n;
    let rest = all % 1000000n;
    if (rest < 0n) {
        rest += 1000000n;
        milliseconds -= 1n;
    }
    const text = new Date(Number(milliseconds)).toISOString().slice(0, -1);
    return text + String(rest).padStart(6, "0");
}

// A typed time in seconds: "12.3", "12.3 ms", "-5 us", "0,5"; a clock "12:34:56.789" of the day of the start. NaN where
// it is none. `origin` is what a number without a clock counts from.
export function parseTime(text, origin, start) {
    const clean = text.trim().replace(kMinus, "-").replace(",", ".");
    const match = /^([+-]?(?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?)\s*(s|ms|us|\u00B5s|\u03BCs|ns)?$/i.exec(clean);
    if (match) {
        const factor = { s: 1, ms: 1e3, us: 1e6, "\u00B5s": 1e6, "\u03BCs": 1e6,
            ns: 1e9 }[(match[2] ?? "s").toLowerCase()];
        return Number(match[1]) / factor + origin;
    }
    const time = /^(?:(\d{4}-\d{2}-\d{2})[T ])?(\d{1,2}):(\d{2}):(\d{2}(?:\.\d{1,9})?)$/.exec(clean);
    if (!time || !start) {
        return NaN;
    }
    const [second, fraction = "0"] = time[4].split(".");
    const whole = `${time[1] ?? start.slice(0, 10)}T${time[2].padStart(2, "0")}:${time[3]}:${second}.${fraction}`;
    return Number.isNaN(Date.parse(`${whole.split(".")[0]}Z`)) ? NaN
        : Number(nanoseconds(whole) - nanoseconds(start)) / 1e9;
}
