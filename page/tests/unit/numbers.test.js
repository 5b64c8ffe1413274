import { test } from "node:test";
import assert from "node:assert/strict";
import { deflateSync } from "node:zlib";
import { decoded } from "../../web/decode.js";
import { Pyramid } from "../../web/pyramid.js";
import { clock, duration, exact, parseTime, printable, short, trimmed, withUnit } from "../../web/format.js";
import { AnalogChannel, lowerBound, phaseOf, Pieces, Recording, StatusChannel, timesByRates } from "../../web/recording.js";
import { Lanes } from "../../web/lanes.js";
import { View, ticksOf } from "../../web/view.js";
import { fragmentOf, stateOf } from "../../web/link.js";
import { csvField } from "../../web/csv.js";

const base64 = (bytes) => Buffer.from(bytes).toString("base64");

// Rows that PackerTest.cpp and WordPackerTest.cpp have as well.
test("Blocks of every type and order are unpacked", async () => {
    const rows = [
        ["no numbers", { type: "i16", count: 0 }, [], []],
        ["zeros take no bits", { type: "i16", count: 3 }, [0], [0, 0, 0]],
        ["numbers as they are", { type: "i16", count: 4 }, [0x26, 0, 0, 0, 2], [1, -1, 1, 0]],
        ["differences", { type: "i32", count: 3 }, [0x2A, 0, 0, 0, 0x42], [1, 2, 3]],
        ["second differences", { type: "i16", count: 5 }, [0xA8, 2, 0, 0, 0x82], [0, 1, 3, 6, 10]],
        ["third differences", { type: "i16", count: 4 }, [0xAA, 0, 0, 0, 0xC2], [1, 4, 10, 20]],
        ["differences over the end of 32 bits", { type: "i32", count: 2 },
            [0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0x60], [-2147483648, 2147483647]],
        ["the lowest of 16 bits", { type: "i16", count: 1 }, [0xFF, 0xFF, 0, 0, 0x10], [-32768]],
        ["the lowest of 32 bits", { type: "i32", count: 1 }, [0xFF, 0xFF, 0xFF, 0xFF, 0x20], [-2147483648]],
        ["singles", { type: "f32", count: 1 }, [0xFF, 0xFF, 0x7F, 0x80, 0x20], [-1.5]],
        ["doubles", { type: "f64", count: 1 }, [0xCB, 0xCC, 0xCC, 0xCC, 0x32, 0x33, 0x73, 0x7F, 0x20], [0.1]],
    ];
    for (const [why, block, bytes, expected] of rows) {
        assert.deepEqual([...await decoded({ ...block, inflatedBytes: 0 }, base64(bytes))], expected, why);
        const deflated = base64(deflateSync(Uint8Array.from(bytes)));
        if (bytes.length > 0) {
            assert.deepEqual([...await decoded({ ...block, inflatedBytes: bytes.length }, deflated)], expected, why);
        }
    }
});

// Packed as the widths and orders say, which need not be the best ones.
function packedWords(words, headOf) {
    const bits = [];
    const heads = [];
    const fold = (difference) => BigInt.asUintN(32, (difference << 1n) ^ (BigInt.asIntN(32, difference) >> 31n));
    for (let begin = 0; begin < words.length; begin += 64) {
        const at = (i) => i < 0 ? 0n : BigInt(words[i]);
        const difference = (i, order) => order === 0 ? at(i) : difference(i, order - 1) - difference(i - 1, order - 1);
        const end = Math.min(begin + 64, words.length);
        const order = headOf(begin / 64);
        const folded = [];
        for (let i = begin; i < end; ++i) {
            folded.push(fold(BigInt.asIntN(32, difference(i, order))));
        }
        const width = Math.max(...folded.map((one) => one === 0n ? 0 : one.toString(2).length));
        for (const one of folded) {
            bits.push(...one.toString(2).padStart(width, "0").split("").reverse().slice(0, width));
        }
        while (bits.length % 32 > 0) {
            bits.push("0");
        }
        heads.push(order << 6 | width);
    }
    const bytes = [];
    for (let i = 0; i < bits.length; i += 8) {
        bytes.push(parseInt(bits.slice(i, i + 8).reverse().join(""), 2));
    }
    return [...bytes, ...heads];
}

test("Any numbers come back from blocks of any orders and widths", async () => {
    let state = 1;
    const draw = () => {
        state = (Math.imul(state, 1664525) + 1013904223) | 0;
        return state;
    };
    for (const count of [1, 2, 63, 64, 65, 128, 129, 300]) {
        for (const shift of [31, 27, 20, 16, 9, 0]) {
            const numbers = Int32Array.from({ length: count }, () => draw() >> shift);
            const bytes = packedWords(numbers, () => (draw() >>> 16) & 3);
            assert.deepEqual(await decoded({ type: "i32", count, inflatedBytes: 0 }, base64(bytes)), numbers,
                `${count} numbers of ${32 - shift} bits`);
        }
    }
});

test("A block that is not what it says is refused", async () => {
    const rows = [
        ["shorter than its blocks", { type: "i16", count: 65 }, [0]],
        ["words are missing", { type: "i16", count: 3 }, [0x42]],
        ["words are left", { type: "i16", count: 3 }, [0, 0, 0, 0, 0]],
        ["wider than a word", { type: "i16", count: 1 }, [0, 0, 0, 0, 0, 0, 0, 0, 0x21]],
        ["a number for which there are none", { type: "f64", count: 1e9 }, [0x2A, 0, 0, 0, 0x42]],
    ];
    for (const [why, block, bytes] of rows) {
        await assert.rejects(decoded({ ...block, inflatedBytes: 0 }, base64(bytes)), /damaged/, why);
    }
    const deflated = base64(deflateSync(Uint8Array.from([0x2A, 0, 0, 0, 0x42])));
    for (const inflatedBytes of [4, 6]) {
        await assert.rejects(decoded({ type: "i16", count: 3, inflatedBytes }, deflated), /damaged/);
    }
});

test("A pyramid finds the spike of one sample in every range that has it", () => {
    const values = new Int16Array(5000);
    values[1234] = 700;
    const pyramid = new Pyramid(values);
    for (const [begin, end] of [[0, 5000], [1234, 1235], [1200, 1240], [3, 4999], [1233, 1300], [1104, 1248]]) {
        pyramid.find(begin, end);
        assert.deepEqual([pyramid.least, pyramid.greatest], [end - begin > 1 ? 0 : 700, 700], `${begin} to ${end}`);
    }
    pyramid.find(1235, 5000);
    assert.equal(pyramid.greatest, 0);
});

test("A pyramid leaves out what is no number", () => {
    const values = new Float64Array(100).fill(NaN);
    values[40] = -3;
    const pyramid = new Pyramid(values);
    pyramid.find(0, 100);
    assert.deepEqual([pyramid.least, pyramid.greatest], [-3, -3]);
    pyramid.find(50, 100);
    assert.ok(pyramid.least > pyramid.greatest);
});

test("Times by rates are those of the library to the last bit", () => {
    const pieces = new Pieces([[0, 6, 1]], 6);
    assert.deepEqual([...timesByRates([[3, 2], [7, 4]], pieces)],
        [0, 0.3333333333333333, 0.6666666666666666, 0.8095238095238095, 0.9523809523809523, 1.0952380952380951]);
});

test("Reduced pieces know the samples of the recording", () => {
    const pieces = new Pieces([[0, 4, 8], [32, 10, 1], [42, 2, 8]], 50);
    assert.deepEqual([0, 3, 4, 13, 14, 15].map((i) => pieces.recorded(i)), [0, 24, 32, 41, 42, 49]);
    assert.deepEqual([0, 9, 31, 32, 41, 42, 49].map((i) => pieces.kept(i)), [0, 1, 3, 4, 13, 14, 14]);
    assert.deepEqual([3, 4].map((i) => pieces.isReducedAt(i)), [true, false]);
});

test("The range of a channel is that of its finite values", () => {
    const rows = [
        ["finite", [3, -2, 5], { a: -2, b: 1 }, [-9, 5]],
        ["infinite when scaled", [1, 99998e5, -99998e5, 2], { a: 1e300, b: 0 }, [1e300, 2e300]],
        ["infinite as recorded", [Infinity, 4, -Infinity], { a: 1, b: 0 }, [4, 4]],
        ["none", [NaN, Infinity], { a: 1, b: 0 }, [0, 0]],
        ["no samples", [], { a: 1, b: 0 }, [0, 0]],
    ];
    for (const [why, raw, scale, expected] of rows) {
        const info = { id: "U", phase: "", base: "V", missing: [], recorded: scale, onPrimary: scale,
            onSecondary: scale };
        const channel = new AnalogChannel(info, 0, Float64Array.from(raw));
        assert.deepEqual(channel.range, expected, why);
        const lanes = new Lanes({ analog: [channel], status: [], count: raw.length });
        assert.ok(lanes.range(lanes.all[0], 0, raw.length).every(Number.isFinite), why);
    }
});

test("A status has its state between changes", () => {
    const channel = new StatusChannel({ id: "x", first: 1, number: 1 }, 0, [3, 5], new Pieces([[0, 10, 1]], 10));
    assert.deepEqual([0, 2, 3, 4, 5, 9].map((i) => channel.state(i)), [1, 1, 0, 0, 1, 1]);
});

test("The trigger is where the dates say", () => {
    assert.equal(Recording._trigger({ start: "2020-01-01T23:59:59.900000000",
        trigger: "2020-01-02T00:00:00.000000001" }), 0.100000001);
    assert.equal(Recording._trigger({ start: null, trigger: "2020-01-02T00:00:00.000000001" }), null);
});

test("Phases are known by field or name, in several alphabets", () => {
    const rows = [["A", "", "a"], ["\u0412", "", "b"], ["L3", "", "c"], ["AB", "", "a"], ["", "IA", "a"], ["", "I L2",
        "b"],
        ["", "3I0", "n"], ["", "UN", "n"], ["", "VDC1", ""], ["", "Temperature", ""], ["n", "x", "n"]];
    for (const [field, name, expected] of rows) {
        assert.equal(phaseOf(field, name), expected, `${field} ${name}`);
    }
});

test("Values have units with prefixes and a true minus sign", () => {
    const rows = [[1234.5678, "A", "1.235 kA"], [-0.0015, "V", "\u22121.500 mV"], [0, "A", "0 A"], [NaN, "A", "\u2013"],
        [-Infinity, "V", "\u2212\u221E"], [1234.5, "mm", "1235 mm"], [0.5, "", "0.5000"], [2e9, "W", "2.000 GW"],
        [1500, "pu", "1500 pu"], [1e300, "V", "1.000e+300 V"], [3, "V".repeat(100000), "3.000 VVVVVVVVVVV\u2026"],
        [3, "\u{1D400}".repeat(20), `3.000 ${"\u{1D400}".repeat(11)}\u2026`]];
    for (const [value, unit, expected] of rows) {
        assert.equal(withUnit(value, unit), expected);
    }
    assert.equal(short(123456, 4), "123456");
    assert.deepEqual(["1.500", "1.50000e+300", "1.00e+100", "100", "1e+20"].map(trimmed),
        ["1.5", "1.5e+300", "1e+100", "100", "1e+20"]);
});

test("All digits are those that read back as the same number", () => {
    assert.deepEqual([0.1 + 0.2, -0, 1e21, Infinity, NaN].map(exact), ["0.30000000000000004", "-0", "1e+21", "inf",
        ""]);
});

test("Characters that are not seen are shown by their codes", () => {
    assert.equal(printable("a\u202Eb\u0000c\u2028\u200B"), "a\\u202Eb\\u0000c\\u2028\\u200B");
    assert.equal(printable("\u0422\u043E\u043A <b>"), "\u0422\u043E\u043A <b>");
});

test("The clock counts nanoseconds", () => {
    assert.equal(clock("2019-03-14T06:41:17.322000000", 0.088), "2019-03-14T06:41:17.410000000");
    assert.equal(clock("1999-12-31T23:59:59.999999999", 1e-9), "2000-01-01T00:00:00.000000000");
    assert.equal(clock("1969-12-31T23:59:59.000000001", -2e-9), "1969-12-31T23:59:58.999999999");
});

test("Typed times are read in several ways", () => {
    const start = "2019-03-14T06:41:17.322000000";
    const rows = [["0.5", 2, 2.5], ["-20 ms", 1, 0.98], ["0,25", 0, 0.25], ["5us", 0, 5e-6], ["\u22121", 2, 1],
        ["06:41:17.410", 9, 0.088], ["2019-03-14 06:41:18.322", 0, 1]];
    for (const [text, origin, expected] of rows) {
        assert.equal(parseTime(text, origin, start), expected, text);
    }
    assert.ok(Number.isNaN(parseTime("soon", 0, start)) && Number.isNaN(parseTime("12:00:00", 0, null)));
});

test("Lengths of time have the unit that suits them", () => {
    assert.deepEqual([0.06, 2, 0, -1.5e-5].map(duration), ["60 ms", "2 s", "0 s", "\u221215 \u00B5s"]);
});

test("A view stays within the recording and above its least span", () => {
    const view = new View(0, 10, 0.1);
    view.zoom(0.5, 2);
    assert.deepEqual([view.from, view.to], [1, 6]);
    view.pan(-5);
    assert.deepEqual([view.from, view.to], [0, 5]);
    view.zoom(1e-9);
    assert.ok(Math.abs(view.span - 0.1) < 1e-12);
    view.zoom(1e9);
    assert.deepEqual([view.from, view.to], [0, 10]);
});

test("Ticks are round and within the range", () => {
    assert.deepEqual(ticksOf(0.1, 1.05, 5).ticks.map((tick) => Number(tick.toFixed(6))), [0.2, 0.4, 0.6, 0.8, 1]);
    assert.deepEqual(ticksOf(0, 0, 5).ticks, []);
});

test("A link keeps what it is given, and takes nothing else", () => {
    const state = { from: "-0.5", to: "1", lanes: "a2+a1,d1", panel: "a&b" };
    assert.deepEqual(stateOf(fragmentOf(state)), state);
    assert.deepEqual(stateOf("#x=1&from&a=%E0&__proto__=1"), {});
});

test("Fields of CSV are quoted, and formulas are none", () => {
    assert.deepEqual(["a,b", "say \"x\"", "=1+1", "-3", "plain"].map(csvField),
        ["\"a,b\"", "\"say \"\"x\"\"\"", "'=1+1", "'-3", "plain"]);
});

test("The lower bound is the number of lesser entries", () => {
    assert.deepEqual([0, 1, 2, 9].map((value) => lowerBound([1, 1, 3], value)), [0, 0, 2, 3]);
});
