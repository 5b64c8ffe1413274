// Mouse, pen and fingers on the traces, the time axis and the minimap.

const kNear = 6;      // pixels: a press this near to a cursor takes hold of it
const kClick = 4;     // pixels: a press that moves less is a click
const kSnap = 5;      // pixels: a click this near to a status change takes it

export class Pointer {
    constructor(app) {
        this.app = app;
        this.box = null;
        this.touches = new Map();
        const { over } = app.canvas;
        over.addEventListener("pointerdown", (event) => this._press(event));
        over.addEventListener("pointermove", (event) => this._hover(event));
        over.addEventListener("wheel", (event) => this._wheel(event), { passive: false });
        app.canvas.axis.addEventListener("wheel", (event) => this._wheel(event), { passive: false });
        over.addEventListener("dblclick", () => app.fit());
        this._drag(app.canvas.axis, (event, start) => {
            app.view.show(start.from - event.dx / start.width * start.span,
                start.to - event.dx / start.width * start.span);
            app.viewChanged();
        });
        this._drag(app.canvas.minimap, (event, start) => {
            const { view } = app;
            const time = view.begin + event.x / start.width * (view.end - view.begin);
            view.show(time - start.span / 2, time + start.span / 2);
            app.viewChanged();
        });
    }

    // `onMove` gets { x, dx } and what was when the button went down; also at once.
    _drag(canvas, onMove) {
        canvas.addEventListener("pointerdown", (event) => {
            const { view } = this.app;
            const box = canvas.getBoundingClientRect();
            const start = { x: event.clientX - box.left, width: box.width, from: view.from, to: view.to,
                span: view.span };
            const move = (other) => {
                const x = other.clientX - box.left;
                onMove({ x, dx: x - start.x }, start);
            };
            this._follow(canvas, event, move);
            move(event);
        });
    }

    _follow(target, event, onMove, onEnd = () => {}) {
        target.setPointerCapture(event.pointerId);
        const end = (other) => {
            target.removeEventListener("pointermove", onMove);
            target.removeEventListener("pointerup", end);
            target.removeEventListener("pointercancel", end);
            onEnd(other);
        };
        target.addEventListener("pointermove", onMove);
        target.addEventListener("pointerup", end);
        target.addEventListener("pointercancel", end);
    }

    _at(event) {
        const box = this.app.canvas.over.getBoundingClientRect();
        return { x: event.clientX - box.left, y: event.clientY - box.top, width: box.width, height: box.height };
    }

    _cursorNear(x, width) {
        const { cursors, view, recording } = this.app;
        return ["A", "B"].map((name) => [name, Math.abs(view.x(recording.axis[cursors.at[name]], width) - x)])
            .filter(([, distance]) => distance <= kNear).sort((one, other) => one[1] - other[1])[0]?.[0];
    }

    _hover(event) {
        const { x, width } = this._at(event);
        this.app.canvas.over.style.cursor = this._cursorNear(x, width) ? "ew-resize" : this.app.dragPans ? "grab"
            : "crosshair";
    }

    _wheel(event) {
        event.preventDefault();
        const { app } = this;
        const { x, width } = this._at(event);
        const isSideways = Math.abs(event.deltaX) > Math.abs(event.deltaY);
        const amount = event.deltaMode === 1 ? 30 : 1;
        if (event.altKey) {
            app.stage.scrollTop += event.deltaY * amount;
        } else if (isSideways || event.shiftKey) {
            app.view.pan((isSideways ? event.deltaX : event.deltaY) * amount / width * app.view.span * 0.8);
            app.viewChanged();
        } else {
            app.view.zoom(Math.exp(event.deltaY * amount * 0.0022), app.view.time(x, width));
            app.viewChanged();
        }
    }

    _press(event) {
        if (event.button > 1) {
            return;
        }
        event.preventDefault();
        this.app.stage.focus({ preventScroll: true });
        if (event.pointerType === "touch") {
            this._touch(event);
            return;
        }
        const start = this._at(event);
        const near = event.button === 0 && !event.shiftKey ? this._cursorNear(start.x, start.width) : undefined;
        if (near) {
            this.app.activate(near);
            this._follow(this.app.canvas.over, event, (other) => this._place(near, this._at(other)));
        } else if (event.button === 1 || this.app.dragPans) {
            this._pan(event, start);
        } else {
            this._zoomBox(event, start);
        }
    }

    _place(name, { x, width }) {
        const { app } = this;
        const sample = app.recording.nearest(app.view.time(x, width));
        app.cursors.place(name, app.cursors.snapped(sample, kSnap / width * app.view.span));
        app.cursorsChanged();
    }

    _click(event, at) {
        const { app } = this;
        const lane = app.laneAt(at.y);
        if (lane) {
            app.select(lane.channels[0], false);
        }
        const name = event.shiftKey ? (app.cursors.active === "A" ? "B" : "A") : app.cursors.active;
        this._place(name, at);
    }

    _pan(event, start) {
        const { view } = this.app;
        const [from, to, span] = [view.from, view.to, view.span];
        let hasMoved = false;
        this._follow(this.app.canvas.over, event, (other) => {
            const dx = this._at(other).x - start.x;
            hasMoved ||= Math.abs(dx) > kClick;
            view.show(from - dx / start.width * span, to - dx / start.width * span);
            this.app.viewChanged();
        }, (other) => {
            if (!hasMoved && other.type === "pointerup") {
                this._click(event, start);
            }
        });
    }

    _zoomBox(event, start) {
        const { app } = this;
        this._follow(app.canvas.over, event, (other) => {
            const now = this._at(other);
            this.box = Math.abs(now.x - start.x) > kClick ? [Math.min(start.x, now.x), Math.max(start.x, now.x)] : null;
            app.cursorsChanged();
        }, () => {
            const { box } = this;
            this.box = null;
            if (box) {
                app.view.show(app.view.time(box[0], start.width), app.view.time(box[1], start.width));
                app.viewChanged();
            } else {
                this._click(event, start);
            }
        });
    }

    // One finger pans sideways (and the page scrolls up and down), two zoom, a tap places the active cursor.
    _touch(event) {
        const { app } = this;
        this.touches.set(event.pointerId, this._at(event));
        const first = this._at(event);
        let hasMoved = this.touches.size > 1;
        let last = this._spread();
        this._follow(app.canvas.over, event, (other) => {
            if (!this.touches.has(other.pointerId)) {
                return;
            }
            this.touches.set(other.pointerId, this._at(other));
            const now = this._spread();
            hasMoved ||= Math.abs(this._at(other).x - first.x) > kClick * 2;
            if (now.count === last.count && hasMoved) {
                if (now.count > 1 && now.distance > 0 && last.distance > 0) {
                    app.view.zoom(last.distance / now.distance, app.view.time(now.middle, first.width));
                }
                app.view.pan((last.middle - now.middle) / first.width * app.view.span);
                app.viewChanged();
            }
            last = now;
        }, (other) => {
            this.touches.delete(event.pointerId);
            if (!hasMoved && other.type === "pointerup") {
                this._click(event, first);
            }
        });
    }

    _spread() {
        const places = [...this.touches.values()].map((one) => one.x);
        const middle = places.reduce((sum, x) => sum + x, 0) / Math.max(places.length, 1);
        return { middle, distance: places.length > 1 ? Math.abs(places[0] - places[1]) : 0, count: places.length };
    }
}
