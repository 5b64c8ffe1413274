// RMS, phasors and harmonics over one cycle of the nominal frequency, the one that ends at a sample.
//
// With N samples a cycle (N whole), of the last N samples x_i at times t_i (Phadke and Thorp, Computer Relaying for
// Power Systems, full-cycle discrete Fourier transform):
//     X_k = sqrt(2) / N * sum of x_i exp(-j 2 pi k f t_i)        RMS = sqrt(1 / N * sum of x_i^2)
// |X_k| is an RMS value; the angle is that against a cosine of the nominal frequency with its peak at time 0, hence it
// stands still while the frequency is the nominal one. t_i is the time of the sample plus the skew of the channel.
//
// With N not whole, the same as integrals over the last 1 / f seconds, by trapezoids over the samples; where the cycle
// begins between two samples, what is integrated is interpolated linearly there.
//
// There is no value, but a reason, where the cycle reaches before the first sample or into a change of the sampling
// rate, a reduced part of the recording, or where a sample of the cycle is missing or infinite; with fewer than 4
// samples a cycle; without a nominal frequency. A harmonic at half the sampling rate or above has no value.

const kLeastSamples = 4;
const kWhole = 1e-3;  // of a sample: from here on N is not whole
const kEven = 0.2;    // steps may differ by this part of their mean: time stamps are rounded

// The cycle that ends at the sample, or { reason }.
export function cycleAt(times, end, frequency, isReducedAt = () => false) {
    if (!(frequency > 0)) {
        return { reason: "no line frequency is recorded" };
    }
    if (end < 1) {
        return { reason: "less than a cycle of samples before the cursor" };
    }
    const step = times[end] - times[end - 1];
    const guess = step > 0 ? 1 / frequency / step : 0;
    const reach = Math.max(1, Math.min(end, Math.round(guess)));
    const mean = (times[end] - times[end - reach]) / reach;
    const samples = 1 / frequency / mean;
    if (!(samples >= kLeastSamples - kWhole)) {
        return { reason: "fewer than 4 samples a cycle" };
    }
    const isWhole = Math.abs(samples - Math.round(samples)) < kWhole;
    const first = end - (isWhole ? Math.round(samples) - 1 : Math.ceil(samples));
    if (first < 0) {
        return { reason: "less than a cycle of samples before the cursor" };
    }
    if (isReducedAt(first) || isReducedAt(end)) {
        return { reason: "not every sample is kept here" };
    }
    for (let i = first + 1; i <= end; ++i) {
        if (Math.abs(times[i] - times[i - 1] - mean) > kEven * mean) {
            return { reason: "the sampling rate changes within the cycle" };
        }
    }
    return { first, end, isWhole, samples, frequency, weights: weightsOf(times, first, end, isWhole, samples, mean) };
}

// What each sample of the cycle counts for; they add up to 1.
function weightsOf(times, first, end, isWhole, samples, mean) {
    const count = end - first + 1;
    if (isWhole) {
        return new Float64Array(count).fill(1 / count);
    }
    const weights = new Float64Array(count).fill(1 / samples);
    weights[count - 1] = 0.5 / samples;
    const part = (times[first + 1] - times[end] + samples * mean) / mean; // of the first step: within the cycle
    weights[0] = part * part / 2 / samples;
    weights[1] = (0.5 + part - part * part / 2) / samples;
    return weights;
}

// Whether every sample of the cycle has a finite value.
function isComplete(value, cycle) {
    for (let i = cycle.first; i <= cycle.end; ++i) {
        if (!Number.isFinite(value(i))) {
            return false;
        }
    }
    return true;
}

// RMS of the values of the cycle, the direct component included; NaN where one is missing.
export function rms(value, cycle) {
    if (cycle.reason || !isComplete(value, cycle)) {
        return NaN;
    }
    let sum = 0;
    for (let i = cycle.first; i <= cycle.end; ++i) {
        sum += cycle.weights[i - cycle.first] * value(i) * value(i);
    }
    return Math.sqrt(sum);
}

// { magnitude, angle }: RMS and degrees of the component of this order; order 0 is the mean, its angle 0.
export function phasor(value, times, cycle, order = 1, skew = 0) {
    const none = { magnitude: NaN, angle: NaN };
    if (cycle.reason || !(order < cycle.samples / 2 - kWhole) || !isComplete(value, cycle)) {
        return none;
    }
    const omega = 2 * Math.PI * order * cycle.frequency;
    let real = 0;
    let imaginary = 0;
    for (let i = cycle.first; i <= cycle.end; ++i) {
        const part = cycle.weights[i - cycle.first] * value(i);
        const phase = omega * (times[i] + skew);
        real += part * Math.cos(phase);
        imaginary -= part * Math.sin(phase);
    }
    if (order === 0) {
        return { magnitude: Math.abs(real), angle: 0 };
    }
    return { magnitude: Math.SQRT2 * Math.hypot(real, imaginary), angle: Math.atan2(imaginary, real) * 180 / Math.PI };
}

// Magnitudes of orders 0 to `last`, NaN where there is none.
export function harmonics(value, times, cycle, last = 15) {
    return Array.from({ length: last + 1 }, (_, order) => phasor(value, times, cycle, order).magnitude);
}

// Total harmonic distortion of orders 2 on, as a part of the first.
export function distortion(magnitudes) {
    const above = magnitudes.slice(2).filter((magnitude) => Number.isFinite(magnitude));
    return Math.hypot(...above) / magnitudes[1];
}

// An angle from -180 (not) to 180.
export function turned(angle) {
    const turn = ((angle % 360) + 360) % 360;
    return turn > 180 ? turn - 360 : turn;
}
