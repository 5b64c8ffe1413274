// Draws lanes on a canvas, in its own pixels: one stroke from the least to the greatest value for every column of
// pixels, so that a spike of one sample is seen however much is shown; lines from sample to sample where there are few.

import { lowerBound } from "./recording.js";
import { prefixFor, short, shownUnit, trimmed } from "./format.js";
import { ticksOf } from "./view.js";

// For each column of pixels the first sample at or behind its left edge, and one more for the end.
export function columnsOf(axis, view, width) {
    const columns = new Int32Array(width + 1);
    let from = 0;
    for (let x = 0; x <= width; ++x) {
        from = lowerBound(axis, view.time(x, width), from);
        columns[x] = from;
    }
    if (view.to >= view.end) {
        columns[width] = axis.length;
    }
    return columns;
}

export class Tracer {
    constructor(context, recording, colours) {
        Object.assign(this, { context, recording, colours });
    }

    // Draws the lanes that lie between `scroll` and `scroll + height`. All lengths are in pixels of the canvas, lanes
    // in those of the page, which are `ratio` of them.
    draw({ lanes, view, width, height, ratio, scroll, selected, origin, scales = null }) {
        Object.assign(this, { view, width, height, ratio, origin, scales });
        const { context, recording } = this;
        context.clearRect(0, 0, width, height);
        scales?.context.clearRect(0, 0, scales.width, height);
        this.columns = columnsOf(recording.axis, view, width);
        if (selected && lanes.shown.includes(selected)) {
            context.fillStyle = this.colours.selected;
            context.fillRect(0, (selected.top - scroll) * ratio, width, selected.shownHeight * ratio);
        }
        this._drawGrid();
        let drawn = 0;
        for (const lane of lanes.shown) {
            const top = Math.round((lane.top - scroll) * ratio);
            const bottom = Math.round((lane.top + lane.shownHeight - scroll) * ratio);
            if (bottom <= 0 || top >= height) {
                continue;
            }
            context.save();
            context.beginPath();
            context.rect(0, top, width, bottom - top);
            context.clip();
            if (lane.kind === "status") {
                this._drawStatus(lane.channels[0], top, bottom);
            } else {
                this._drawAnalog(lanes, lane, top, bottom);
            }
            context.restore();
            context.fillStyle = this.colours.line;
            context.fillRect(0, bottom - 1, width, 1);
            ++drawn;
        }
        this._drawTrigger();
        return drawn;
    }

    _drawGrid() {
        const { context, view, width, height, ratio, colours } = this;
        context.fillStyle = colours.grid;
        const { origin } = this;
        for (const tick of ticksOf(view.from - origin, view.to - origin, width / ratio / 110).ticks) {
            context.fillRect(Math.round(view.x(tick + origin, width)), 0, 1, height);
        }
        const { count } = this.recording;
        const first = count > 0 ? view.x(this.recording.begin, width) : width;
        const last = view.x(this.recording.end, width);
        context.fillStyle = colours.outside;
        context.fillRect(0, 0, Math.max(first, 0), height);
        context.fillRect(last, 0, Math.max(width - last, 0), height);
        for (const piece of this.recording.pieces.pieces.filter((one) => one.step > 1)) {
            const { axis } = this.recording;
            const left = view.x(axis[piece.begin], width);
            const right = view.x(axis[piece.begin + piece.count - 1], width);
            context.fillRect(left, 0, right - left, height);
        }
    }

    _drawTrigger() {
        const { trigger } = this.recording;
        if (trigger === null) {
            return;
        }
        const { context, view, width, height, ratio, colours } = this;
        context.strokeStyle = colours.trigger;
        context.lineWidth = ratio;
        context.setLineDash([4 * ratio, 3 * ratio]);
        context.beginPath();
        const x = Math.round(view.x(trigger, width)) + 0.5;
        context.moveTo(x, 0);
        context.lineTo(x, height);
        context.stroke();
        context.setLineDash([]);
    }

    _drawStatus(channel, top, bottom) {
        const { context, view, width, ratio, colours, recording } = this;
        if (recording.count === 0) {
            return;
        }
        const middle = Math.round((top + bottom) / 2);
        const half = Math.max(Math.min(Math.round((bottom - top) * 0.28), 8 * ratio), 2);
        context.fillStyle = colours.idle;
        context.fillRect(0, middle, Math.max(view.x(recording.end, width), 0), Math.max(1, Math.round(ratio)));
        context.fillStyle = channel.info.normal === 1 ? colours.normal : colours.active;
        const changes = channel.changes;
        const first = lowerBound(changes, this.columns[0]);
        let at = -1;
        let state = first % 2 === 0 ? channel.info.first : 1 - channel.info.first;
        const column = this._columnOf.bind(this);
        let begin = 0;
        for (let i = first; i <= changes.length && at < width; ++i) {
            const end = i < changes.length ? column(changes[i]) : column(recording.count - 1) + 1;
            if (state === 1 && end >= 0) {
                const left = Math.max(begin, 0);
                context.fillRect(left, middle - half, Math.max(Math.min(end, width) - left, 1), 2 * half);
            }
            begin = end;
            state = 1 - state;
            at = end;
        }
    }

    _columnOf(sample) {
        return Math.round(this.view.x(this.recording.axis[sample], this.width));
    }

    _drawAnalog(lanes, lane, top, bottom) {
        const { context, columns, width, ratio, colours } = this;
        const begin = columns[0];
        const end = columns[width];
        const [least, greatest] = lanes.range(lane, begin, end);
        const perUnit = (bottom - top) / (greatest - least);
        const place = (value) => bottom - (value - least) * perUnit;
        const scale = this._scaleOf(lane, least, greatest, (bottom - top) / ratio);
        this._drawLevels(scale, place);
        lane.channels.forEach((channel, number) => {
            context.strokeStyle = lane.channels.length > 1 && channel.phase === "" ? colours.series[number % 6]
                : colours.phases[channel.phase];
            context.lineWidth = Math.max(1, Math.round(1.25 * ratio * 2) / 2);
            context.lineJoin = "bevel";
            this._drawMissing(channel, top);
            context.beginPath();
            const rawPlace = (raw) => Math.min(Math.max(place(raw * channel.scale.a + channel.scale.b), top - 2),
                bottom + 2);
            if (end - begin > 2 * width) {
                this._addColumns(channel, rawPlace);
            } else {
                this._addLine(channel, rawPlace, begin, end);
            }
            context.stroke();
        });
        this._drawNumbers(scale, top, bottom, place);
    }

    // Round numbers in the lane and the prefix of their unit. A zero alone says nothing of the size: then finer ones.
    _scaleOf(lane, least, greatest, room) {
        const { unit } = lane.channels[0];
        const [factor, prefix] = prefixFor(Math.max(Math.abs(least), Math.abs(greatest)), unit);
        const numbers = (count) => ticksOf(least / factor, greatest / factor, count).ticks;
        const ticks = numbers(Math.max(room / 20, 2));
        return { factor, ticks: ticks.length > 1 ? ticks : numbers(5), unit: shownUnit(prefix + unit) };
    }

    _drawLevels({ factor, ticks }, place) {
        for (const tick of ticks) {
            this.context.fillStyle = tick === 0 ? this.colours.zero : this.colours.grid;
            this.context.fillRect(0, Math.round(place(tick * factor)), this.width, 1);
        }
    }

    // Beside the traces, where there is room; else upon them.
    _drawNumbers({ factor, ticks, unit }, top, bottom, place) {
        const { ratio, colours, scales } = this;
        const texts = scales?.context ?? this.context;
        texts.font = `${10 * ratio}px ${colours.font}`;
        texts.textBaseline = "middle";
        texts.fillStyle = colours.faint;
        texts.strokeStyle = colours.ground;
        texts.lineWidth = 3 * ratio;
        texts.lineJoin = "round";
        let above = -Infinity;
        for (const tick of [...ticks].reverse()) {
            const y = place(tick * factor);
            if (y - top > 6 * ratio && bottom - y > 6 * ratio && y - above > 11 * ratio) {
                const number = tick === 0 ? "0" : trimmed(short(Number(tick.toPrecision(6)), 6));
                const isFirst = above === -Infinity;
                above = y;
                const left = (text) => scales ? scales.width - texts.measureText(text).width - 5 * ratio : 5 * ratio;
                const whole = isFirst && unit ? `${number} ${unit}` : number;
                const text = left(whole) < 0 ? number : whole;
                if (!scales) {
                    texts.strokeText(text, left(text), y);
                }
                texts.fillText(text, left(text), y);
            }
        }
    }

    _drawMissing(channel, top) {
        const { context, view, width, ratio, colours, recording } = this;
        context.fillStyle = colours.missing;
        for (const [sample, count] of channel.missing) {
            const left = view.x(recording.axis[sample], width);
            const right = view.x(recording.axis[Math.min(sample + count, recording.count - 1)], width);
            if (right >= 0 && left <= width) {
                context.fillRect(left, top, Math.max(right - left, 2 * ratio), 3 * ratio);
            }
        }
    }

    // One stroke a column, from the sample before it on, so that strokes meet.
    _addColumns(channel, place) {
        const { context, columns, width } = this;
        const { pyramid } = channel;
        for (let x = 0; x < width; ++x) {
            const begin = columns[x];
            const end = columns[x + 1];
            if (begin === end) {
                continue;
            }
            pyramid.find(begin > 0 && columns[x] > columns[Math.max(x - 1, 0)] ? begin - 1 : begin, end);
            if (pyramid.least > pyramid.greatest) {
                continue;
            }
            const low = place(pyramid.least);
            const high = place(pyramid.greatest);
            const slack = Math.max(1 - Math.abs(low - high), 0) / 2;
            context.moveTo(x + 0.5, Math.min(low, high) - slack);
            context.lineTo(x + 0.5, Math.max(low, high) + slack);
        }
    }

    _addLine(channel, place, begin, end) {
        const { context, view, width, ratio, recording } = this;
        const { axis } = recording;
        const { raw } = channel;
        const first = Math.max(begin - 1, 0);
        const last = Math.min(end + 1, recording.count);
        const showsDots = (last - first) * 7 * ratio < width;
        let isDown = false;
        for (let i = first; i < last; ++i) {
            if (Number.isNaN(raw[i])) {
                isDown = false;
                continue;
            }
            const x = view.x(axis[i], width);
            const y = place(raw[i]);
            if (isDown) {
                context.lineTo(x, y);
            } else {
                context.moveTo(x, y);
            }
            const isAlone = !isDown && (i + 1 >= recording.count || Number.isNaN(raw[i + 1]));
            if (showsDots || isAlone) {
                const size = 1.5 * ratio;
                context.rect(x - size, y - size, 2 * size, 2 * size);
                context.moveTo(x, y);
            }
            isDown = true;
        }
    }
}
