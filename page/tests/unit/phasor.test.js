import { test } from "node:test";
import assert from "node:assert/strict";
import { cycleAt, distortion, harmonics, phasor, rms, turned } from "../../web/phasor.js";

function near(actual, expected, tolerance = 1e-9) {
    assert.ok(Math.abs(actual - expected) <= tolerance, `${actual} is not ${expected}`);
}

function timesAt(rate, count) {
    return Float64Array.from({ length: count }, (_, i) => i / rate);
}

// 10 V RMS at 50 Hz, 30 degrees, 2 V direct, a third harmonic of 1 V RMS.
const times = timesAt(1000, 200);
const values = [...times].map((t) => 2 + 14.142135623730951 * Math.cos(2 * Math.PI * 50 * t + Math.PI / 6) +
    1.4142135623730951 * Math.cos(2 * Math.PI * 150 * t));
const value = (i) => values[i];

test("A phasor of whole cycles has the RMS value and the angle of its cosine", () => {
    for (const end of [19, 100, 199]) {
        const { magnitude, angle } = phasor(value, times, cycleAt(times, end, 50));
        near(magnitude, 10);
        near(angle, 30);
    }
});

test("RMS counts the direct component and the harmonics", () => {
    near(rms(value, cycleAt(times, 150, 50)), Math.sqrt(105)); // 2^2 + 10^2 + 1^2
});

test("Harmonics stand apart, the direct component at order 0", () => {
    const found = harmonics(value, times, cycleAt(times, 150, 50), 12);
    near(found[0], 2);
    near(found[1], 10);
    near(found[2], 0);
    near(found[3], 1);
    near(distortion(found.slice(0, 10)), 0.1);
});

test("A harmonic at half the sampling rate or above has no value", () => {
    const found = harmonics(value, times, cycleAt(times, 150, 50), 12);
    assert.equal(Number.isNaN(found[9]), false);
    assert.equal(Number.isNaN(found[10]), true);
});

test("The skew of a channel turns its angle: 1000 us at 50 Hz are 18 degrees", () => {
    near(phasor(value, times, cycleAt(times, 150, 50), 1, 0.001).angle, 12);
});

test("Where a cycle has no whole number of samples, the error stays below half a percent and half a degree", () => {
    const odd = timesAt(1000, 200); // 16.67 samples a cycle of 60 Hz
    for (let end = 20; end < 60; ++end) {
        const cycle = cycleAt(odd, end, 60);
        near([...cycle.weights].reduce((sum, one) => sum + one, 0), 1);
        const wave = (i) => 14.142135623730951 * Math.cos(2 * Math.PI * 60 * odd[i] + Math.PI / 6);
        const { magnitude, angle } = phasor(wave, odd, cycle);
        near(magnitude, 10, 0.05);
        near(angle, 30, 0.5);
        near(rms(wave, cycle), 10, 0.05);
    }
});

const kReasons = [
    { why: "before the end of the first cycle", times: timesAt(1000, 200), end: 18, frequency: 50,
        reason: "less than a cycle of samples before the cursor" },
    { why: "at the first sample", times: timesAt(1000, 200), end: 0, frequency: 50,
        reason: "less than a cycle of samples before the cursor" },
    { why: "without a line frequency", times: timesAt(1000, 200), end: 100, frequency: 0,
        reason: "no line frequency is recorded" },
    { why: "with one sample a cycle", times: timesAt(50, 200), end: 100, frequency: 50,
        reason: "fewer than 4 samples a cycle" },
    { why: "behind a change of the rate", times: Float64Array.from({ length: 60 }, (_, i) => i < 30 ? i / 1000 : 0.03
        + (i - 30) / 500),
        end: 35, frequency: 50, reason: "the sampling rate changes within the cycle" },
];

for (const row of kReasons) {
    test(`There is no phasor ${row.why}, but a reason`, () => {
        const cycle = cycleAt(row.times, row.end, row.frequency);
        assert.equal(cycle.reason, row.reason);
        assert.ok(Number.isNaN(phasor(() => 1, row.times, cycle).magnitude));
        assert.ok(Number.isNaN(rms(() => 1, cycle)));
    });
}

test("A whole cycle behind a change of the rate has a phasor again", () => {
    const both = Float64Array.from({ length: 60 }, (_, i) => i < 30 ? i / 1000 : 0.03 + (i - 30) / 500);
    assert.equal(cycleAt(both, 42, 50).first, 33);
});

test("There is none in a reduced part of a recording", () => {
    assert.equal(cycleAt(times, 100, 50, (i) => i < 90).reason, "not every sample is kept here");
});

test("A missing or infinite sample of the cycle takes phasor and RMS", () => {
    for (const odd of [NaN, Infinity]) {
        const broken = (i) => i === 140 ? odd : values[i];
        assert.ok(Number.isNaN(rms(broken, cycleAt(times, 150, 50))));
        assert.ok(Number.isNaN(phasor(broken, times, cycleAt(times, 159, 50)).angle));
        assert.equal(Number.isNaN(rms(broken, cycleAt(times, 160, 50))), false);
    }
});

test("Time stamps that are rounded to microseconds leave a whole number of samples", () => {
    const rounded = Float64Array.from({ length: 100 }, (_, i) => Math.round(i * 1e6 / 1200) / 1e6);
    assert.equal(cycleAt(rounded, 60, 50).isWhole, true);
});

test("Angles are from -180 (not) to 180", () => {
    assert.deepEqual([-180, 180, 190, -190, 720].map(turned), [180, 180, -170, 170, 0]);
});
