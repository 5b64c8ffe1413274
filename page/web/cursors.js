// Two cursors, each on a sample, and what lies between them.

import { lowerBound } from "./recording.js";

export class Cursors {
    constructor(recording) {
        this.recording = recording;
        this.active = "A";
        const first = recording.trigger === null ? 0 : recording.nearest(recording.trigger);
        const cycles = recording.header.frequency > 0 ? 3 / recording.header.frequency : 0;
        this.at = { A: first, B: recording.nearest((recording.axis[first] ?? 0) + cycles) };
    }

    time(name) {
        return this.recording.times[this.at[name]] ?? 0;
    }

    place(name, sample) {
        this.at[name] = Math.min(Math.max(Math.round(sample), 0), Math.max(this.recording.count - 1, 0));
    }

    move(samples) {
        this.place(this.active, this.at[this.active] + samples);
    }

    // To the next (1) or last (-1) change of a status: of the channel, or of any.
    snap(direction, channel = null) {
        const edges = channel ? channel.changes : this.recording.edges;
        const here = this.at[this.active];
        const next = direction > 0 ? lowerBound(edges, here + 1) : lowerBound(edges, here) - 1;
        if (edges[next] === undefined) {
            return false;
        }
        this.place(this.active, edges[next]);
        return true;
    }

    // The change within `reach` seconds of the sample's time that is the nearest, or the sample.
    snapped(sample, reach) {
        const { axis, edges } = this.recording;
        const next = lowerBound(edges, sample);
        const near = [edges[next - 1], edges[next]].filter((edge) => edge !== undefined &&
            Math.abs(axis[edge] - axis[sample]) <= reach);
        return near.sort((one, other) => Math.abs(one - sample) - Math.abs(other - sample))[0] ?? sample;
    }

    // { time, cycles, frequency, samples } from A to B.
    get distance() {
        const time = this.time("B") - this.time("A");
        const { frequency } = this.recording.header;
        return { time, cycles: frequency > 0 ? time * frequency : NaN, frequency: time === 0 ? NaN : 1 / Math.abs(time),
            samples: this.recording.count === 0 ? 0
                : this.recording.pieces.recorded(this.at.B) - this.recording.pieces.recorded(this.at.A) };
    }
}
