// Which lanes are shown, and in which order: what the handles of the lanes do, for the keyboard and for many at once.

import { printable } from "./format.js";
import { element, matches, nameElement, searchWords } from "./values.js";

export class ChannelPanel {
    constructor(app) {
        Object.assign(this, { app, title: "Channels", name: "channels" });
        this.search = element("input", { type: "search", placeholder: "Search", "aria-label": "Search lanes" });
        this.search.addEventListener("input", () => this.update());
        const act = (text, title, action) => {
            const button = element("button", { type: "button", title }, text);
            button.addEventListener("click", action);
            return button;
        };
        const { lanes } = app;
        this.constant = element("input", { type: "checkbox", id: "show-constant" });
        this.constant.addEventListener("change", () => app.showConstant(this.constant.checked));
        this.list = element("ul", { className: "lane-list" });
        const { constantCount } = lanes;
        this.element = element("div", { className: "channel-panel" },
            element("div", { className: "bar" }, this.search,
                act("All", "Show all that match", () => this._showMatching(true)),
                act("None", "Hide all that match", () => this._showMatching(false)),
                act("Reset", "As at the beginning", () => app.resetLanes())),
            element("div", { className: "bar", role: "group", "aria-label": "The selected lane" },
                act("Up", "Move up (Alt+Up)", () => app.moveLane(-1)), act("Down", "Move down (Alt+Down)",
                    () => app.moveLane(1)),
                act("Taller", "Taller (Alt and +)", () => app.resizeLane(1.25)),
                act("Shorter", "Shorter (Alt and -)", () => app.resizeLane(0.8)),
                act("Over above", "Lay it over the lane above (m)", () => app.overlayLane()),
                act("Apart", "One lane for each channel (s)", () => app.splitLane())),
            element("label", { className: "check", hidden: constantCount === 0 }, this.constant,
                `Show the ${constantCount} status ${constantCount === 1 ? "channel that never changes"
                    : "channels that never change"}`),
            element("div", { className: "scrolled", tabIndex: 0, role: "region", "aria-label": "Lanes" }, this.list));
    }

    _matching() {
        const words = searchWords(this.search.value);
        const { lanes } = this.app;
        return lanes.all.filter((lane) => (words.length > 0 || !lanes.isFolded(lane)) &&
            lane.channels.some((channel) => matches(channel, words)));
    }

    _showMatching(isShown) {
        for (const lane of this._matching()) {
            lane.isHidden = !isShown;
        }
        this.app.lanesChanged();
    }

    select() {
        this._mark();
    }

    _mark() {
        for (const item of this.list.children) {
            item.classList.toggle("selected", item.dataset.lane === this.app.selected?.id);
        }
    }

    show() {
        this.update();
    }

    update() {
        if (this.element.hidden) {
            return;
        }
        this.constant.checked = this.app.lanes.showsConstant;
        this.list.replaceChildren(...this._matching().map((lane) => this._item(lane)));
        this._mark();
    }

    _item(lane) {
        const names = lane.channels.map((channel) => printable(channel.name)).join(", ");
        const box = element("input", { type: "checkbox", checked: !lane.isHidden, "aria-label": `Show ${names}` });
        box.addEventListener("change", () => this.app.hideLane(lane, !box.checked));
        const button = element("button", { type: "button", className: "name" },
            ...lane.channels.flatMap((channel) => nameElement(channel)));
        button.addEventListener("click", () => this.app.select(lane.channels[0]));
        const item = element("li", {}, box, button);
        item.dataset.lane = lane.id;
        return item;
    }
}
