// The header of the recording, and its findings.

import { printable } from "./format.js";
import { element } from "./values.js";

function shown(text) {
    return element("bdi", {}, printable(text));
}

function pairs(list) {
    const made = element("dl", { className: "pairs" });
    for (const [name, value] of list) {
        if (value !== "" && value !== null && value !== undefined) {
            made.append(element("dt", {}, name), element("dd", {}, shown(value)));
        }
    }
    return made;
}

function table(caption, heads, rows) {
    return element("table", { className: "details" }, element("caption", {}, caption),
        element("thead", {}, element("tr", {}, ...heads.map((text) => element("th", { scope: "col" }, text)))),
        element("tbody", {}, ...rows.map((row) => element("tr", {}, ...row.map((text, i) =>
            element(i === 1 ? "th" : "td", i === 1 ? { scope: "row" } : {}, shown(text)))))));
}

export class HeaderPanel {
    constructor(app) {
        Object.assign(this, { title: "Recording", name: "recording" });
        const { header, model } = app.recording;
        const rates = header.areTimesStamped ? "times in the data"
            : header.rates.map(([rate, end]) => `${rate} Hz to sample ${end}`).join(", then ");
        const parts = [pairs([["File", model.name], ["Station", header.station], ["Recorder", header.recorder],
            ["Start", header.start], ["Trigger", header.trigger], ["Line frequency", `${header.frequency} Hz`],
            ["Sampling", rates], ["Samples", header.samples === header.samplesDeclared ? String(header.samples)
                : `${header.samples} (declared: ${header.samplesDeclared})`],
            ["Duration", `${app.recording.end} s`], ["Revision", String(header.revision)], ["Data", header.dataType],
            ["Encoding", header.encoding], ["Time code", header.timeCode], ["Local code", header.localCode],
            ["Time quality", header.timeQuality], ["Leap second", header.leapSecond],
            ["Times multiplied by", header.timeMultiplier === 1 ? "" : String(header.timeMultiplier)],
            ["Page made by", model.program]])];
        if (app.recording.analog.length > 0) {
            parts.push(table("Analog channels", ["No", "Name", "Phase", "Component", "Unit", "a", "b",
                "Skew, \u00B5s", "Ratio",
                "Side"], app.recording.analog.map(({ info }) => [info.number, info.id, info.phase, info.component,
                    info.unit,
                info.a, info.b, info.skew, `${info.primary}/${info.secondary}`, info.recorded.side])));
        }
        if (app.recording.status.length > 0) {
            parts.push(table("Status channels", ["No", "Name", "Phase", "Component", "Normal", "Changes"],
                app.recording.status.map(({ info, changes }) => [info.number, info.id, info.phase, info.component,
                    info.normal, changes.length])));
        }
        for (const [name, text] of [["Header file", header.hdr], ["Information file", header.inf]]) {
            if (text) {
                parts.push(element("h3", {}, name), element("pre", { dir: "auto" },
                    text.split(/\r\n|\r|\n/).map(printable).join("\n")));
            }
        }
        this.element = element("div", { className: "info-panel scrolled", tabIndex: 0, role: "region",
            "aria-label": "About the recording" }, ...parts);
    }
}

function placeOf(finding) {
    const place = finding.line > 0 ? `:${finding.line}` : finding.offset > 0 ? `:byte ${finding.offset}` : "";
    return `${finding.file}${place}${finding.field ? `:${finding.field}` : ""}`;
}

export class FindingsPanel {
    constructor(app) {
        const { findings } = app.recording;
        Object.assign(this, { title: `Findings (${findings.length})`, name: "findings" });
        const items = findings.map((finding) => {
            const sentence = [finding.expected ? `${printable(finding.expected)} expected` : "",
                finding.found ? `found ${printable(finding.found)}` : ""].filter((part) => part !== "").join(", ");
            const outcome = finding.repair || finding.advice;
            return element("li", { className: finding.severity },
                element("p", {}, element("strong", {}, finding.severity), ` ${sentence}`),
                element("p", {}, printable(outcome)),
                element("p", { className: "note" }, [printable(placeOf(finding)), finding.places > 1
                    ? `first of ${finding.places} places` : "",
                    finding.clause ? `clause ${finding.clause}` : "",
                        finding.code].filter((part) => part !== "").join(" \u00B7 ")));
        });
        this.element = element("div", { className: "info-panel scrolled", tabIndex: 0, role: "region",
            "aria-label": "Findings" },
            items.length > 0 ? element("ul", { className: "findings" }, ...items)
                : element("p", {}, "Nothing deviates from the standard, and nothing is damaged."));
    }
}
