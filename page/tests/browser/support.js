// A browser, the program, and recordings that are written for a test.

import puppeteer from "puppeteer-core";
import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

export const root = process.env.ORV_ROOT ?? join(dirname(fileURLToPath(import.meta.url)), "../../..");
const program = process.env.ORVCOMTRADE_PROGRAM ?? join(root, "build/dev/bin/orvcomtrade");
export const folder = mkdtempSync(join(tmpdir(), "orvcomtrade-page-"));
export const examples = join(root, "examples/recordings");

const kSwitches = ["--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync", "--font-render-hinting=none"];

export async function launch() {
    return puppeteer.launch({ executablePath: process.env.ORV_CHROMIUM ?? "/usr/bin/chromium", args: kSwitches,
        userDataDir: join(folder, "profile") });
}

export function cleanUp() {
    rmSync(folder, { recursive: true, force: true });
}

export function run(...words) {
    return execFileSync(program, words, { encoding: "utf8", maxBuffer: 1 << 28, stdio: ["ignore", "pipe", "pipe"] });
}

// Page of a recording: the path of the file.
export function pageOf(recording, ...flags) {
    const file = join(folder, `${recording.replace(/\W+/g, "_")}.html`);
    run("view", recording, "--output", file, "--force", ...flags);
    return file;
}

// The lines of an export behind its head, each as its fields.
export function exported(recording, ...flags) {
    return run("export", recording, ...flags).split("\n").filter((line) => line !== "" && !line.startsWith("#"))
        .slice(1).map((line) => line.split(","));
}

// Writes an ASCII recording. Analog channels are { name, phase, unit, a, b }, rows [values..., states...].
export function write(name, { station = "S", analog = [], status = [], rows, rate = 1000, frequency = 50,
    trigger = 0 }) {
    const second = (time) => `01/01/2020,00:00:${time.toFixed(6).padStart(9, "0")}`;
    const lines = [`${station},R,2013`, `${analog.length + status.length},${analog.length}A,${status.length}D`,
        ...analog.map((one, i) => [i + 1, one.name, one.phase ?? "", one.component ?? "", one.unit ?? "V", one.a ?? 1,
            one.b ?? 0, 0, -99999, 99998, one.primary ?? 1, one.secondary ?? 1, one.side ?? "S"].join(",")),
        ...status.map((one, i) => `${i + 1},${one},,,0`), frequency, 1, `${rate},${rows.length}`, second(0),
            second(trigger),
        "ASCII", "1", "0,0", "F,0"];
    const base = join(folder, name);
    mkdirSync(dirname(base), { recursive: true });
    writeFileSync(`${base}.cfg`, `${lines.join("\r\n")}\r\n`);
    writeFileSync(`${base}.dat`, rows.map((row, i) => `${[i + 1, "", ...row].join(",")}\r\n`).join(""));
    return `${base}.cfg`;
}

// Writes a BINARY recording of waves with noise, 10,000 samples a second.
export function writeWaves(name, channels, samples) {
    const base = join(folder, name);
    const lines = Array.from({ length: channels }, (_, i) => `${i + 1},I${i},,,A,0.01,0,0,-32767,32767,1,1,S`);
    writeFileSync(`${base}.cfg`, ["S,R,2013", `${channels},${channels}A,0D`, ...lines, "50", "1", `10000,${samples}`,
        "01/01/2020,00:00:00.000000", "01/01/2020,00:00:01.000000", "BINARY", "1", "0,0", "F,0", ""].join("\r\n"));
    const record = 8 + 2 * channels;
    const data = Buffer.alloc(record * samples);
    for (let i = 0; i < samples; ++i) {
        data.writeUInt32LE(i + 1, i * record);
        data.writeUInt32LE(i * 100, i * record + 4);
        for (let channel = 0; channel < channels; ++channel) {
            data.writeInt16LE(Math.round(10000 * Math.sin(i / 31 + channel) + 20 * Math.random()),
                i * record + 8 + channel * 2);
        }
    }
    writeFileSync(`${base}.dat`, data);
    return { cfg: `${base}.cfg`, bytes: data.length };
}

// A new tab, which has `requests` and `problems` (errors and messages of the console).
export async function tab(browser, { width = 1440, height = 900, scheme = "light" } = {}) {
    const page = await browser.newPage();
    page.requests = [];
    page.problems = [];
    page.on("request", (request) => page.requests.push(request.url()));
    page.on("pageerror", (error) => page.problems.push(error.message));
    page.on("console", (message) => {
        if (!message.text().includes("willReadFrequently")) { // of the tests' own looks at pixels
            page.problems.push(message.text());
        }
    });
    await page.setViewport({ width, height, hasTouch: width < 500, isMobile: width < 500 });
    await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: scheme }]);
    return page;
}

export async function show(page, file, fragment = "") {
    page.requests.length = 0;
    await page.goto("about:blank");
    page.requests.length = 0;
    await page.goto(pathToFileURL(file).href + fragment);
    await page.waitForFunction(() => document.documentElement.dataset.ready === "yes"
        || !document.getElementById("app"),
        { timeout: 20000 });
}

// Milliseconds: from the begin of the navigation until the first picture was drawn, and those that a drawing takes when
// the view is zoomed and moved by keys.
export async function drawingTimes(page) {
    const draws = () => page.evaluate(() => performance.getEntriesByName("draw", "measure").map((one) =>
        [one.startTime, one.duration]));
    const [[start, duration]] = await draws();
    await page.evaluate(() => performance.clearMeasures());
    await page.focus("#stage");
    for (const key of ["+", "+", "+", ".", ".", ",", "-", "-", "-", "0"]) {
        await page.keyboard.press(key);
        await settle(page);
    }
    const all = (await draws()).map(([, one]) => one).sort((one, other) => one - other);
    return { first: start + duration, median: all[Math.floor(all.length / 2)], most: all.at(-1) };
}

// Until what was asked for is drawn.
export async function settle(page) {
    await page.evaluate(() => new Promise((done) => {
        requestAnimationFrame(() => requestAnimationFrame(done));
    }));
}

export async function text(page, selector) {
    return page.$eval(selector, (one) => one.value || one.textContent);
}

// The cells of a row of the table of values, all digits.
export async function valuesOf(page, channel) {
    return page.$$eval(`#values tr[data-channel="${channel}"] td`, (cells) => cells.map((cell) => cell.textContent));
}
