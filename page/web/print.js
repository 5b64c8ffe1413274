// What is printed: all shown lanes, some to a picture, and the values at the cursors.

import { Tracer } from "./traces.js";
import { element } from "./values.js";
import { printable, withUnit } from "./format.js";

const kWidth = 1000;   // pixels of the page
const kHeight = 600;
const kLabel = 150;
const kRatio = 2;
const kMostPictures = 40;

// Lanes one below another, as many as fit on a picture.
function pagesOf(shown) {
    const pages = [];
    let height = Infinity;
    for (const lane of shown) {
        if (height + lane.shownHeight > kHeight && pages.length < kMostPictures) {
            pages.push([]);
            height = 0;
        }
        pages.at(-1).push(lane);
        height += lane.shownHeight;
    }
    return pages;
}

function pictureOf(app, lanes, colours) {
    const top = lanes[0].top;
    const height = lanes.at(-1).top + lanes.at(-1).shownHeight - top;
    const picture = element("canvas", { width: kWidth * kRatio, height: height * kRatio, className: "picture" });
    const traces = document.createElement("canvas");
    traces.width = (kWidth - kLabel) * kRatio;
    traces.height = height * kRatio;
    new Tracer(traces.getContext("2d"), app.recording, colours).draw({ lanes: app.lanes, view: app.view,
        width: traces.width, height: traces.height, ratio: kRatio, scroll: top, selected: null,
        origin: app.origin });
    const context = picture.getContext("2d");
    context.drawImage(traces, kLabel * kRatio, 0);
    context.fillStyle = colours.text;
    context.font = `${11 * kRatio}px ${colours.font}`;
    context.textBaseline = "top";
    for (const lane of lanes) {
        const name = lane.channels.map((channel) => printable(channel.name)).join(", ");
        context.fillText(name, 0, (lane.top - top + 4) * kRatio, (kLabel - 6) * kRatio);
    }
    for (const cursor of ["A", "B"]) {
        const x = kLabel * kRatio + app.view.x(app.recording.axis[app.cursors.at[cursor]], traces.width);
        if (x >= kLabel * kRatio && x <= picture.width) {
            context.fillStyle = colours.cursors[cursor];
            context.fillRect(x, 0, kRatio, picture.height);
        }
    }
    return picture;
}

export function preparePrint(app, target) {
    const colours = app.coloursOf("light");
    const { recording, cursors } = app;
    const parts = [element("h1", {}, document.getElementById("station").textContent),
        element("p", {}, document.getElementById("subtitle").textContent)];
    if (recording.count > 0) {
        parts.push(element("p", {}, `From ${app.timeText(app.view.from)} to ${app.timeText(app.view.to)} (${app.timeName()}). ` +
            `A ${app.timeText(cursors.time("A"))}, B ${app.timeText(cursors.time("B"))}. ${app.distanceText()}`));
        parts.push(...pagesOf(app.lanes.shown).map((lanes) => pictureOf(app, lanes, colours)));
        const rows = app.lanes.shown.flatMap((lane) => lane.channels).filter((channel) => channel.kind === "analog")
            .map((channel) => element("tr", {}, element("th", {}, printable(channel.name)),
                ...["A", "B"].map((name) => element("td", {}, withUnit(channel.value(cursors.at[name]),
                    channel.unit)))));
        parts.push(element("table", { className: "values" }, element("thead", {}, element("tr", {},
            ...["Channel", "A", "B"].map((text) => element("th", {}, text)))), element("tbody", {}, ...rows)));
    }
    target.replaceChildren(...parts);
}
