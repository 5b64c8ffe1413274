// The least and the greatest of any range of numbers, quickly: bins of 16 numbers, then of 8 bins each. NaN is no
// number; a range without any gives [Infinity, -Infinity].

const kFirst = 16;
const kStep = 8;

export class Pyramid {
    constructor(values) {
        this.values = values;
        this.levels = [];
        let level = this._firstLevel();
        while (level) {
            this.levels.push(level);
            level = level.least.length > kStep ? Pyramid._above(level) : null;
        }
        this.least = 0;
        this.greatest = 0;
    }

    // Sets least and greatest to those of values[begin] to values[end - 1].
    find(begin, end) {
        this.least = Infinity;
        this.greatest = -Infinity;
        let depth = -1;
        while (begin < end) {
            const next = depth + 1;
            const factor = depth < 0 ? kFirst : kStep;
            if (next >= this.levels.length || end - begin < 2 * factor) {
                this._walk(depth, begin, end);
                return;
            }
            const firstWhole = Math.ceil(begin / factor);
            const endWhole = Math.floor(end / factor);
            this._walk(depth, begin, firstWhole * factor);
            this._walk(depth, endWhole * factor, end);
            begin = firstWhole;
            end = endWhole;
            depth = next;
        }
    }

    _walk(depth, begin, end) {
        const lows = depth < 0 ? this.values : this.levels[depth].least;
        const highs = depth < 0 ? this.values : this.levels[depth].greatest;
        let least = this.least;
        let greatest = this.greatest;
        for (let i = begin; i < end; ++i) {
            if (lows[i] < least) {
                least = lows[i];
            }
            if (highs[i] > greatest) {
                greatest = highs[i];
            }
        }
        this.least = least;
        this.greatest = greatest;
    }

    _firstLevel() {
        const { values } = this;
        const count = Math.ceil(values.length / kFirst);
        const isWhole = values instanceof Int16Array || values instanceof Int32Array;
        const Kind = isWhole ? values.constructor : Float64Array;
        const least = new Kind(count);
        const greatest = new Kind(count);
        for (let bin = 0; bin < count; ++bin) {
            const end = Math.min((bin + 1) * kFirst, values.length);
            let low = isWhole ? values[bin * kFirst] : Infinity;
            let high = isWhole ? low : -Infinity;
            for (let i = bin * kFirst; i < end; ++i) {
                const value = values[i];
                if (value < low) {
                    low = value;
                }
                if (value > high) {
                    high = value;
                }
            }
            least[bin] = low;
            greatest[bin] = high;
        }
        return count > 0 ? { least, greatest } : null;
    }

    static _above(level) {
        const count = Math.ceil(level.least.length / kStep);
        const least = new level.least.constructor(count);
        const greatest = new level.least.constructor(count);
        for (let bin = 0; bin < count; ++bin) {
            const begin = bin * kStep;
            const end = Math.min(begin + kStep, level.least.length);
            least[bin] = level.least[begin];
            greatest[bin] = level.greatest[begin];
            for (let i = begin + 1; i < end; ++i) {
                least[bin] = Math.min(least[bin], level.least[i]);
                greatest[bin] = Math.max(greatest[bin], level.greatest[i]);
            }
        }
        return { least, greatest };
    }
}
