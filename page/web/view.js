// The range of time that is shown, and places on its axis.

export class View {
    constructor(begin, end, leastSpan) {
        const isEmpty = !(end > begin);
        this.begin = isEmpty ? begin - 0.5 : begin;
        this.end = isEmpty ? begin + 0.5 : end;
        this.leastSpan = Math.min(leastSpan > 0 ? leastSpan : 1e-6, this.end - this.begin);
        this.fit();
    }

    get span() {
        return this.to - this.from;
    }

    get isWhole() {
        return this.from <= this.begin && this.to >= this.end;
    }

    fit() {
        this.from = this.begin;
        this.to = this.end;
    }

    show(from, to) {
        const span = Math.min(Math.max(Math.abs(to - from), this.leastSpan), this.end - this.begin);
        const middle = (from + to) / 2;
        this.from = Math.min(Math.max(middle - span / 2, this.begin), this.end - span);
        this.to = this.from + span;
    }

    // `factor` below 1 shows less; what is at the time `at` stays where it is.
    zoom(factor, at = (this.from + this.to) / 2) {
        const span = Math.min(Math.max(this.span * factor, this.leastSpan), this.end - this.begin);
        const from = at - (at - this.from) * span / this.span;
        this.show(from, from + span);
    }

    pan(seconds) {
        this.show(this.from + seconds, this.to + seconds);
    }

    // Moves it so far that the time is seen.
    reveal(time) {
        if (time < this.from || time > this.to) {
            this.pan(time - (this.from + this.to) / 2);
        }
    }

    x(time, width) {
        return (time - this.from) / this.span * width;
    }

    time(x, width) {
        return this.from + x / width * this.span;
    }
}

// A round step (1, 2, 5 times a power of ten) of which about `count` fit.
export function roundStep(span, count) {
    const rough = span / Math.max(count, 1);
    const power = 10 ** Math.floor(Math.log10(rough));
    const digit = rough / power;
    return (digit <= 1 ? 1 : digit <= 2 ? 2 : digit <= 5 ? 5 : 10) * power;
}

// Round numbers from `from` to `to`: { step, ticks }.
export function ticksOf(from, to, count) {
    const step = roundStep(to - from, count);
    const ticks = [];
    if (!(step > 0) || !Number.isFinite(step)) {
        return { step: 1, ticks };
    }
    const first = Math.ceil(from / step - 1e-9);
    for (let i = first; i * step <= to + step * 1e-9 && ticks.length < 1000; ++i) {
        ticks.push(i * step);
    }
    return { step, ticks };
}
