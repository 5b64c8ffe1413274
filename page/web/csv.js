// The samples of a range as CSV (RFC 4180), with every digit. A text that a spreadsheet would take for a formula gets
// an apostrophe before it.

import { exact } from "./format.js";

export function csvField(text) {
    const safe = /^[=+\-@\t\r]/.test(text) ? `'${text}` : text;
    return /[",\r\n]/.test(safe) ? `"${safe.replaceAll('"', '""')}"` : safe;
}

// `first` to `last` are samples; `channels` analog and status channels.
export function csvOf(recording, channels, first, last) {
    const head = channels.map((channel) => csvField([channel.name, channel.info.component,
        channel.kind === "analog" ? channel.unit : ""].filter((part) => part !== "").join(", ")));
    const lines = [["time_s", ...head].join(",")];
    for (let i = first; i <= last; ++i) {
        const values = channels.map((channel) => channel.kind === "analog" ? exact(channel.value(i))
            : String(channel.state(i)));
        lines.push([exact(recording.times[i]), ...values].join(","));
    }
    return `${lines.join("\r\n")}\r\n`;
}
