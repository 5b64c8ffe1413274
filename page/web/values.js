// The values of all channels at the cursors, as a table.

import { exact, printable, withUnit } from "./format.js";

export function element(tag, properties = {}, ...children) {
    const made = document.createElement(tag);
    for (const [key, value] of Object.entries(properties)) {
        if (key in made && !key.includes("-") && key !== "role") {
            made[key] = value;
        } else {
            made.setAttribute(key, value);
        }
    }
    made.append(...children);
    return made;
}

// What is searched in a channel's names.
export function matches(channel, words) {
    const { info } = channel;
    const text = [info.id, info.component, info.phase, info.unit ?? "", String(info.number)].join(" ").toLowerCase();
    return words.every((word) => text.includes(word));
}

export function searchWords(text) {
    return text.toLowerCase().split(/\s+/).filter((word) => word !== "");
}

export function nameElement(channel) {
    const name = element("bdi", {}, printable(channel.name));
    const swatch = element("span", { className: `swatch phase-${channel.kind === "status" ? "d" : channel.phase || "x"}` });
    return [swatch, name];
}

export class ValuesPanel {
    constructor(app) {
        this.app = app;
        this.title = "Values";
        this.name = "values";
        this.isExact = false;
        this.search = element("input", { type: "search", id: "search", placeholder: "Search channels (/)",
            "aria-label": "Search channels" });
        this.digits = element("button", { type: "button", id: "all-digits", "aria-pressed": "false" }, "All digits");
        this.body = element("tbody");
        this.table = element("table", { className: "values", id: "values" },
            element("caption", { className: "unseen" },
                "Values at the cursors, in base units where all digits are shown"),
            element("thead", {}, element("tr", {}, ...["Channel", "A", "B", "B\u2212A"].map((text) =>
                element("th", { scope: "col" }, text)))), this.body);
        this.element = element("div", { className: "values-panel" },
            element("div", { className: "bar" }, this.search, this.digits),
            element("div", { className: "scrolled", tabIndex: 0, role: "region", "aria-label": "Table of values" },
                this.table));
        this.search.addEventListener("input", () => this._filter());
        this.digits.addEventListener("click", () => {
            this.isExact = !this.isExact;
            this.digits.setAttribute("aria-pressed", this.isExact);
            this.table.classList.toggle("exact", this.isExact);
            this.update();
        });
        this._makeRows();
    }

    _makeRows() {
        const { recording } = this.app;
        this.rows = [];
        this.timeCells = this._row(element("th", { scope: "row" }, "Time from start, s"));
        for (const channel of [...recording.analog, ...recording.status]) {
            const button = element("button", { type: "button", className: "name", tabIndex: -1,
                title: [channel.info.component, channel.info.phase].map(printable).filter((text) => text)
                    .join(" \u00B7 ") },
            ...nameElement(channel));
            button.addEventListener("click", () => this.app.select(channel));
            button.addEventListener("keydown", (event) => this._walk(event, channel));
            const cells = this._row(element("th", { scope: "row" }, button));
            cells[0].parentElement.dataset.channel = channel.id;
            this.rows.push({ channel, cells, button, row: cells[0].parentElement });
        }
    }

    _row(head) {
        const cells = [element("td"), element("td"), element("td")];
        this.body.append(element("tr", {}, head, ...cells));
        return cells;
    }

    _walk(event, channel) {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        if (!step) {
            return;
        }
        event.preventDefault();
        const seen = this.rows.filter((row) => !row.row.hidden);
        const next = seen[seen.findIndex((row) => row.channel === channel) + step];
        if (next) {
            this.app.select(next.channel);
            next.button.focus();
        }
    }

    _filter() {
        const words = searchWords(this.search.value);
        for (const { channel, row } of this.rows) {
            row.hidden = !matches(channel, words) || (words.length === 0 && this._isFolded(channel));
        }
        this._offerToTab();
        this.update();
    }

    // One row takes part in the order of Tab: the selected one, or the first that is seen.
    _offerToTab() {
        const seen = this.rows.filter(({ row }) => !row.hidden);
        const chosen = seen.find(({ row }) => row.classList.contains("selected")) ?? seen[0];
        for (const row of this.rows) {
            row.button.tabIndex = row === chosen ? 0 : -1;
        }
    }

    _isFolded(channel) {
        return channel.kind === "status" && channel.isConstant && !this.app.lanes.showsConstant;
    }

    select(channel) {
        for (const row of this.rows) {
            const isSelected = row.channel === channel;
            row.row.classList.toggle("selected", isSelected);
            if (isSelected && !row.row.hidden) {
                row.row.scrollIntoView({ block: "nearest" });
            }
        }
        this._offerToTab();
    }

    show() {
        this._filter();
    }

    update() {
        const { cursors, recording } = this.app;
        if (recording.count === 0) {
            return;
        }
        const [a, b] = [cursors.at.A, cursors.at.B];
        const times = [recording.times[a], recording.times[b], recording.times[b] - recording.times[a]];
        this.timeCells.forEach((cell, i) => {
            cell.textContent = this.isExact ? exact(times[i]) : times[i].toFixed(6).replace("-", "\u2212");
        });
        for (const { channel, cells, row } of this.rows) {
            if (row.hidden) {
                continue;
            }
            const texts = channel.kind === "status" ? this._states(channel, a, b) : this._values(channel, a, b);
            cells.forEach((cell, i) => {
                if (cell.textContent !== texts[i]) {
                    cell.textContent = texts[i];
                }
            });
        }
    }

    _states(channel, a, b) {
        const [first, second] = [channel.state(a), channel.state(b)];
        return [String(first), String(second), first === second ? "" : first < second ? "\u2191" : "\u2193"];
    }

    _values(channel, a, b) {
        const values = [channel.value(a), channel.value(b), channel.value(b) - channel.value(a)];
        return values.map((value) => this.isExact ? exact(value) : withUnit(value, channel.unit));
    }
}
