// The whole recording in a strip, and the part of it that is in view, which can be dragged.

import { columnsOf } from "./traces.js";

const kTraces = 6;

export class Minimap {
    constructor(canvas, recording) {
        Object.assign(this, { canvas, recording, picture: null });
        const currents = recording.analog.filter((channel) => channel.unit === "A");
        const usual = currents.length > 0 ? currents : recording.analog;
        const phases = usual.filter((channel) => channel.phase !== "n");
        this.channels = (phases.length > 0 ? phases : usual).slice(0, kTraces);
    }

    forget() {
        this.picture = null;
    }

    draw(view, colours, ratio, cursors) {
        const { canvas } = this;
        const { width, height } = canvas;
        const context = canvas.getContext("2d");
        if (!this.picture || this.picture.width !== width || this.picture.height !== height) {
            this.picture = this._paint(view, colours, width, height, ratio);
        }
        context.clearRect(0, 0, width, height);
        context.drawImage(this.picture, 0, 0);
        const at = (time) => (time - view.begin) / (view.end - view.begin) * width;
        const left = at(view.from);
        const right = Math.max(at(view.to), left + 2 * ratio);
        context.fillStyle = colours.veil;
        context.fillRect(0, 0, left, height);
        context.fillRect(right, 0, width - right, height);
        context.strokeStyle = colours.accent;
        context.lineWidth = ratio;
        context.strokeRect(left + ratio / 2, ratio / 2, right - left - ratio, height - ratio);
        for (const [time, colour] of cursors) {
            context.fillStyle = colour;
            context.fillRect(Math.round(at(time)), 0, Math.ceil(ratio), height);
        }
    }

    _paint(view, colours, width, height, ratio) {
        const picture = document.createElement("canvas");
        picture.width = width;
        picture.height = height;
        const context = picture.getContext("2d");
        const whole = { begin: view.begin, end: view.end, from: view.begin, to: view.end, span: view.end - view.begin,
            time: (x, all) => view.begin + x / all * (view.end - view.begin) };
        const columns = columnsOf(this.recording.axis, whole, width);
        const most = Math.max(...this.channels.flatMap((channel) => channel.range.map(Math.abs)), 0) || 1;
        for (const channel of this.channels) {
            const place = (raw) => height / 2 - (raw * channel.scale.a
                + channel.scale.b) / most * (height / 2 - 3 * ratio);
            context.strokeStyle = colours.phases[channel.phase];
            context.globalAlpha = 0.75;
            context.beginPath();
            for (let x = 0; x < width; ++x) {
                channel.pyramid.find(Math.max(columns[x] - 1, 0), columns[x + 1]);
                const { least, greatest } = channel.pyramid;
                if (Number.isFinite(least) && Number.isFinite(greatest)) {
                    const y = place(least);
                    context.moveTo(x + 0.5, y);
                    context.lineTo(x + 0.5, Math.abs(place(greatest) - y) < 1 ? y + 1 : place(greatest));
                }
            }
            context.stroke();
        }
        context.globalAlpha = 1;
        if (this.recording.trigger !== null) {
            context.fillStyle = colours.trigger;
            const x = (this.recording.trigger - view.begin) / (view.end - view.begin) * width;
            context.fillRect(Math.round(x), 0, Math.ceil(ratio), height);
        }
        return picture;
    }
}
