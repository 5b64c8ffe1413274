import { after, before, test } from "node:test";
import assert from "node:assert/strict";
import { readFileSync, readdirSync, statSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { cleanUp, drawingTimes, examples, exported, folder, launch, pageOf, root, run, settle, show, tab, text, valuesOf,
    write, writeWaves } from "./support.js";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const line = join(examples, "line_two_phase_fault.cfg");
const feeder = join(examples, "feeder_earth_fault.cfg");

let browser;
before(async () => {
    browser = await launch();
});
after(async () => {
    await browser.close();
    cleanUp();
});

function shown(name, body) {
    test(name, async () => {
        const page = await tab(browser);
        try {
            await body(page);
            assert.deepEqual(page.problems, []);
        } finally {
            await page.close();
        }
    });
}

async function press(page, ...keys) {
    for (const key of keys) {
        await page.keyboard.press(key);
    }
    await settle(page);
}

function lanes(page) {
    return page.$$eval(".label .lane-name bdi", (names) => names.map((name) => name.textContent));
}

// How many pixels of these columns, near the top of the first lane, a trace has drawn: dark ones.
async function drawnIn(page, left, right) {
    return page.evaluate((x0, x1) => {
        const { data } = document.getElementById("traces").getContext("2d").getImageData(x0, 5, x1 - x0, 55);
        return data.filter((byte, i) => i % 4 === 0 && byte < 120 && data[i + 3] > 100).length;
    }, left, right);
}

shown("Values under the cursors equal those of export to the last digit, on every side", async (page) => {
    for (const recording of [line, feeder, join(examples, "transformer_inrush.cfg")]) {
        const file = pageOf(recording);
        for (const side of ["recorded", "primary", "secondary"]) {
            const rows = exported(recording, "--side", side);
            const [a, b] = [37, rows.length - 2];
            await show(page, file, `#a=${a}&b=${b}${side === "recorded" ? "" : `&side=${side}`}`);
            await page.click("#all-digits");
            await settle(page);
            const times = await page.$$eval("#values tbody tr:first-child td",
                (cells) => cells.map((cell) => cell.textContent));
            assert.deepEqual([Number(times[0]), Number(times[1])], [Number(rows[a][0]), Number(rows[b][0])]);
            const count = await page.$$eval("#values tr[data-channel^=a]", (all) => all.length);
            assert.ok(count >= 7);
            for (let channel = 1; channel <= count; ++channel) {
                const [first, second] = await valuesOf(page, `a${channel}`);
                assert.deepEqual([Number(first), Number(second)], [Number(rows[a][channel]), Number(rows[b][channel])]);
                assert.equal(first, rows[a][channel]);
            }
            const [state] = await valuesOf(page, "d1");
            assert.equal(state, rows[a][count + 1]);
        }
    }
});

shown("Values of recordings of every kind equal those of export", async (page) => {
    const recordings = readdirSync(join(root, "tests/recordings"),
        { withFileTypes: true }).filter((one) => one.isDirectory());
    const looked = [];
    for (const name of ["travelling-wave-2013", "83-rates-blank-lines", "missing-8000-stray-bytes",
        "float32-nanoseconds",
        "decimals-plus-signs", "rate-0-nanosecond-stamps", "upper-case-binary32-crlf", "1991-binary-utf8",
            "cff-float32-raw",
        "gbk-ascii-stamps-begin-again"]) {
        assert.ok(recordings.some((one) => one.name === name), name);
        const path = join(root, "tests/recordings", name);
        const recording = join(path, readdirSync(path).find((file) => /\.(cfg|cff)$/i.test(file)));
        const rows = exported(recording);
        const at = Math.floor(rows.length / 2);
        await show(page, pageOf(recording), `#a=${at}&b=${rows.length - 1}`);
        await page.click("#all-digits");
        await settle(page);
        const count = await page.$$eval("#values tr[data-channel^=a]", (all) => all.length);
        for (let channel = 1; channel <= count; ++channel) {
            const values = await valuesOf(page, `a${channel}`);
            assert.deepEqual(values.slice(0, 2).map(Number), [rows[at][channel], rows.at(-1)[channel]].map(Number),
                name);
            looked.push(values[0]);
        }
        const [time] = await page.$$eval("#values tbody tr:first-child td",
            (cells) => cells.map((cell) => cell.textContent));
        assert.equal(Number(time), Number(rows[at][0]), name);
    }
    assert.equal(looked.length, 18);
});

shown("A spike of one sample is seen at every zoom", async (page) => {
    const rows = Array.from({ length: 20000 }, (_, i) => [i === 7777 ? 5000 : 0]);
    await show(page, pageOf(write("spike", { analog: [{ name: "I", unit: "A" }, { name: "U" }],
        rows: rows.map(([one]) => [one, 0]) })),
        "#a=0&b=0");
    const { width } = await page.evaluate(() => ({ width: document.getElementById("traces").width }));
    for (let zoom = 0; zoom < 12; ++zoom) {
        const x = await page.evaluate(() => {
            const [from, to] = ["from", "to"].map((key) => new URLSearchParams(location.hash.slice(1)).get(key));
            return from === null ? 7.777 / 19.999 : (7.777 - from) / (to - from);
        });
        const centre = Math.round(x * width);
        assert.ok(await drawnIn(page, Math.max(centre - 2, 0), Math.min(centre + 3, width)) > 2, `zoom ${zoom}`);
        const box = await (await page.$("#over")).boundingBox();
        await page.mouse.move(box.x + centre, box.y + 200);
        await page.mouse.wheel({ deltaY: -300 });
        await settle(page);
        await new Promise((done) => setTimeout(done, 350)); // the address follows
    }
});

shown("Of 752 statuses those that never change are folded", async (page) => {
    const changing = new Set([3, 100, 751]);
    const status = Array.from({ length: 752 }, (_, i) => `D${i}`);
    const rows = Array.from({ length: 20 }, (_, row) => [row, ...status.map((_one, i) => changing.has(i) && row > 9
        ? 1 : 0)]);
    await show(page, pageOf(write("752", { analog: [{ name: "U" }], status, rows })));
    assert.deepEqual(await lanes(page), ["U", "D3", "D100", "D751"]);
    assert.equal(await text(page, "#fold"), "749 never change");
    await page.click("#fold");
    assert.equal((await lanes(page)).length, 753);
    await page.click("#fold");
    assert.equal((await lanes(page)).length, 4);
});

shown("A page asks for nothing but itself", async (page) => {
    await show(page, pageOf(feeder));
    for (const panel of ["phasors", "harmonics", "channels", "recording", "findings"]) {
        await page.click(`#tab-${panel}`);
        await settle(page);
    }
    assert.equal(page.requests.length, 1);
    const html = readFileSync(pageOf(feeder), "utf8");
    assert.equal(/https?:/.test(html.replaceAll("http://www.w3.org/2000/svg", "").replaceAll("http-equiv", "")), false);
    assert.ok(html.includes("default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'"));
});

for (const scheme of ["light", "dark"]) {
    shown(`axe finds no violation, ${scheme}`, async (page) => {
        await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: scheme }]);
        await show(page, pageOf(line));
        await page.evaluate(axe);
        for (const panel of ["values", "phasors", "harmonics", "channels", "recording", "findings", "help"]) {
            await page.evaluate((name) => document.getElementById(name === "help" ? "show-help"
                : `tab-${name}`).click(), panel);
            await settle(page);
            const { violations } = await page.evaluate(() => window.axe.run());
            assert.deepEqual(violations.map((one) => `${panel}: ${one.id}: ${one.nodes[0].html}`), []);
        }
    });
}

shown("Everything can be done by keyboard", async (page) => {
    await show(page, pageOf(feeder), "#a=100&b=140");
    await page.focus("#stage");
    const time = () => text(page, "#time-a");
    await press(page, "ArrowRight");
    assert.equal(await time(), "0.0250");
    await page.keyboard.down("Shift");
    await press(page, "ArrowLeft");
    await page.keyboard.up("Shift");
    assert.equal(await time(), "0.0150");
    await page.keyboard.down("Control");
    await press(page, "ArrowRight");
    await page.keyboard.up("Control");
    assert.equal(await time(), "0.0350");
    await press(page, "Home");
    assert.equal(await time(), "\u22120.0760");
    await press(page, "]");
    assert.equal(await time(), "0.0120"); // the earth fault starts at 0.088 s
    await press(page, "t");
    assert.equal(await time(), "0.0000");
    await press(page, "b", "End");
    assert.equal(await text(page, "#time-b"), "0.6230");
    const labels = await lanes(page);
    await press(page, "ArrowDown");
    await page.keyboard.down("Alt");
    await press(page, "ArrowUp");
    await page.keyboard.up("Alt");
    assert.deepEqual((await lanes(page)).slice(0, 2), [labels[1], labels[0]]);
    await press(page, "h");
    assert.equal((await lanes(page)).includes(labels[1]), false);
    await press(page, "o");
    assert.equal(await page.$eval("#overlay-phases", (one) => one.getAttribute("aria-pressed")), "true");
    await press(page, "o", "+", "+", ".", "0");
    await press(page, "z", "-", "c", "m", "s", "p", "p", "g", "g", "/");
    await page.keyboard.type("trip");
    await settle(page);
    assert.deepEqual(await page.$$eval("#values tr[data-channel]:not([hidden]) bdi",
        (all) => all.map((one) => one.textContent)),
        ["Trip"]);
    await press(page, "Tab", "Tab", "Tab", "Enter");
    await new Promise((done) => setTimeout(done, 400));
    assert.match(await text(page, "#live"), /^Cursor B at .* s\. Trip 0$/);
    await page.focus("#stage");
    await press(page, "?");
    assert.equal(await page.$eval("#help", (one) => one.open), true);
    await press(page, "Escape");
    assert.equal(await page.$eval("#help", (one) => one.open), false);
});

shown("Typed times place cursors, near the sample, in every kind of time", async (page) => {
    await show(page, pageOf(feeder));
    const type = async (words) => {
        await page.click("#time-a", { count: 3 });
        await page.keyboard.type(words);
        await page.keyboard.press("Enter");
        await page.keyboard.press("Tab");
        await settle(page);
        return text(page, "#time-a");
    };
    assert.equal(await type("12 ms"), "0.0120");
    await page.select("#clock-mode", "start");
    assert.equal(await type("0.0883"), "0.0880");
    await page.select("#clock-mode", "clock");
    assert.equal(await type("06:41:17.5"), "06:41:17.500");
    await type("soon");
    assert.equal(await page.$eval("#time-a", (one) => one.getAttribute("aria-invalid")), "true");
});

shown("The mouse zooms, pans, places cursors and moves lanes", async (page) => {
    await show(page, pageOf(feeder), "#a=0&b=10");
    const box = await (await page.$("#over")).boundingBox();
    const range = async () => {
        await new Promise((done) => setTimeout(done, 400));
        const words = new URLSearchParams((await page.evaluate(() => location.hash)).slice(1));
        return [Number(words.get("from") ?? 0), Number(words.get("to") ?? 0.699)];
    };
    await page.mouse.click(box.x + box.width / 2, box.y + 300);
    await settle(page);
    assert.ok(Math.abs(Number(await text(page, "#time-a")) - (0.3495 - 0.076)) < 0.003);
    await page.keyboard.down("Shift");
    await page.mouse.click(box.x + box.width * 0.75, box.y + 300);
    await page.keyboard.up("Shift");
    await settle(page);
    assert.ok(Math.abs(Number(await text(page, "#time-b")) - (0.5243 - 0.076)) < 0.003);
    await page.mouse.move(box.x + box.width * 0.2, box.y + 300);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.4, box.y + 320, { steps: 4 });
    await page.mouse.up();
    const [from, to] = await range();
    assert.ok(Math.abs(from - 0.1398) < 0.002 && Math.abs(to - 0.2796) < 0.002, `${from} to ${to}`);
    await page.click("#drag-mode");
    await page.mouse.move(box.x + box.width * 0.5, box.y + 300);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.25, box.y + 300, { steps: 4 });
    await page.mouse.up();
    assert.ok(Math.abs((await range())[0] - from - 0.03495) < 0.002);
    await page.mouse.click(box.x + 100, box.y + 100, { count: 2 });
    assert.deepEqual(await range(), [0, 0.699]);
    const labels = await lanes(page);
    const at = await (await page.$(".label")).boundingBox();
    await page.mouse.move(at.x + 40, at.y + 20);
    await page.mouse.down();
    await page.mouse.move(at.x + 40, at.y + at.height * 2.5, { steps: 5 });
    await page.mouse.up();
    await settle(page);
    assert.deepEqual((await lanes(page)).slice(0, 3), [labels[1], labels[2], labels[0]]);
});

shown("A link keeps the view", async (page) => {
    const file = pageOf(line);
    await show(page, file, "#from=0.05&to=0.2&a=100&b=300&side=secondary&clock=start&hide=a1,d2&lanes=a2+a3,d1,a1" +
        "&panel=phasors");
    await settle(page);
    assert.equal(await text(page, "#time-a"), "0.0500");
    assert.equal(await text(page, "#side"), "secondary");
    assert.deepEqual((await lanes(page)).slice(0, 4), ["\u0422\u043E\u043A B", "\u0422\u043E\u043A C",
        "\u041F\u0443\u0441\u043A \u0437\u0430\u0449\u0438\u0442", "\u0422\u043E\u043A 3I0"]);
    await page.evaluate(() => document.getElementById("zoom-out").click());
    await new Promise((done) => setTimeout(done, 400));
    const words = new URLSearchParams((await page.evaluate(() => location.hash)).slice(1));
    assert.deepEqual([words.get("side"), words.get("hide"), words.get("panel")], ["secondary", "a1,d2", "phasors"]);
    await page.reload();
    await page.waitForFunction(() => document.documentElement.dataset.ready === "yes");
    assert.equal(await text(page, "#side"), "secondary");
});

shown("Phasors and harmonics at the cursor are those of the recording", async (page) => {
    const wave = (i, size, degrees) => Math.round(size * 100 * Math.cos(2 * Math.PI * i / 20
        + degrees * Math.PI / 180));
    const rows = Array.from({ length: 100 }, (_, i) => [wave(i, 100, 0), wave(i, 50, -120), wave(i * 3, 20, 0)]);
    await show(page, pageOf(write("phasors", { analog: [{ name: "UA", phase: "A", a: 0.01 }, { name: "UB", phase: "B",
        a: 0.01 },
        { name: "U3", a: 0.01 }], rows })), "#a=60&b=80&panel=phasors");
    await settle(page);
    const cells = await page.$$eval(".phasors tbody td", (all) => all.map((one) => one.textContent));
    assert.deepEqual(cells.slice(0, 6), ["70.71 V", "70.71 V", "0.0\u00B0", "35.36 V", "35.36 V", "\u2212120.0\u00B0"]);
    await page.click("#tab-harmonics");
    await page.select("#harmonics-channel", "a3");
    await settle(page);
    const harmonic = await page.$$eval("#page-harmonics tbody td", (all) => all.map((one) => one.textContent));
    assert.equal(harmonic[6], "14.14 V");
    await page.click("#tab-values");
    await page.focus("#stage");
    await press(page, "Home");
    await page.click("#tab-phasors");
    assert.match(await text(page, "#page-phasors .note"), /^No phasors here: less than a cycle/);
});

shown("CSV of the range holds what export holds", async (page) => {
    await show(page, pageOf(feeder), "#a=100&b=102");
    const session = await page.createCDPSession();
    await session.send("Browser.setDownloadBehavior", { behavior: "allow", downloadPath: folder });
    await page.click("#save-csv");
    const file = join(folder, "feeder_earth_fault.csv");
    for (let i = 0; i < 50 && !readdirSync(folder).includes("feeder_earth_fault.csv"); ++i) {
        await new Promise((done) => setTimeout(done, 50));
    }
    const lines = readFileSync(file, "utf8").trim().split("\r\n").slice(1);
    assert.deepEqual(lines.map((one) => one.split(",").map(Number)), exported(feeder).slice(100,
        103).map((row) => row.map(Number)));
});

shown("A page is printed with all its lanes", async (page) => {
    await show(page, pageOf(line));
    const pdf = await page.pdf({ format: "A4" });
    assert.equal(Buffer.from(pdf.slice(0, 5)).toString(), "%PDF-");
    assert.ok(pdf.length > 20000, `${pdf.length} bytes`);
});

shown("Hostile names are data, never markup", async (page) => {
    const names = ["</script><script>window.hacked=1</script>", "<img src=x onerror=window.hacked=2>",
        "a\u2028b\u2029c", "\u202Eevil\u0007",
        "=cmd|'/c calc'!A1", "${window.hacked=3}"];
    await show(page, pageOf(write("hostile", { station: "</title><script>window.hacked=4</script>",
        analog: names.map((name) => ({ name, unit: "<b>V" })), status: names, rows: [[1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0,
            0],
            [1, 2, 3, 4, 5, 6, 1, 1, 1, 1, 1, 1]] })));
    for (const panel of ["phasors", "harmonics", "channels", "recording", "findings"]) {
        await page.click(`#tab-${panel}`);
        await settle(page);
    }
    assert.equal(await page.evaluate(() => window.hacked), undefined);
    assert.equal(await page.$$eval("img, b", (all) => all.length), 0);
    const labels = await lanes(page);
    assert.equal(labels[0], names[0]);
    assert.equal(labels[2], "a\\u2028b\\u2029c");
    assert.equal(labels[3].startsWith("\\u202Eevil"), true);
    assert.equal(page.requests.length, 1);
});

shown("Names of any length and direction, twice or empty, stay within their places", async (page) => {
    const long = "L".repeat(100000);
    const right = "\u0645\u062D\u0648\u0644 \u05D7\u05E9\u05DE\u05DC IA";
    const names = ["", "twice", "twice", long, right];
    const file = pageOf(write("odd-names", { station: long, status: names, analog: names.map((name, i) =>
        ({ name, unit: i === 4 ? "V".repeat(300) : "A", component: long })),
        rows: [[1, 2, 3, 4, 5, 0, 0, 0, 0, 0], [2, 3, 4, 5, 6, 1, 1, 1, 1, 1]] }));
    for (const width of [390, 1440]) {
        await page.setViewport({ width, height: 844 });
        await show(page, file);
        assert.deepEqual(await lanes(page), ["Analog 1", ...names.slice(1), "Status 1", ...names.slice(1)]);
        const values = await page.$$eval(".lane-value", (all) => all.map((one) => one.textContent));
        assert.equal(values[4], "5.000 VVVVVVVVVVV\u2026");
        const outside = await page.$$eval("#labels *, .title *, #readout *, #values *", (all) => all.filter((one) => {
            const { left, right: end, width: own } = one.getBoundingClientRect();
            const hidden = one.closest("bdi, .unseen") || own === 0; // whose parents cut them
            return !hidden && (left < 0 || end > innerWidth);
        }).map((one) => one.outerHTML.slice(0, 80)));
        assert.deepEqual(outside, []);
    }
});

shown("Values that are not finite leave the others their scale", async (page) => {
    await show(page, pageOf(write("infinite-scale", { analog: [{ name: "U", a: 1e300 }],
        rows: [[1], [2], [3], [99998e5], [2], [1]] })), "#a=3&b=4");
    assert.equal(await text(page, "#selected-values"), "U: A inf, B 2e+300 V");
    const { width } = await page.evaluate(() => ({ width: document.getElementById("traces").width }));
    assert.ok(await drawnIn(page, 0, Math.round(width / 5)) > 0);
});

test("On a phone every part of every panel can be reached", async () => {
    const page = await tab(browser, { width: 390, height: 844 });
    for (const recording of [feeder, write("no-samples", { analog: [{ name: "U" }], status: ["D"], rows: [] })]) {
        await show(page, pageOf(recording));
        for (const panel of ["values", "phasors", "harmonics", "channels", "recording", "findings"]) {
            const [overflow, cut] = await page.evaluate((name) => {
                if (document.getElementById("panel").hidden) {
                    document.getElementById("toggle-panel").click();
                }
                document.getElementById(`tab-${name}`).click();
                const place = document.querySelector(`#page-${name} .scrolled`) ?? document.getElementById(`page-${name}`);
                place.scrollIntoView({ block: "end" });
                const room = document.getElementById("panel").getBoundingClientRect();
                const { bottom, height } = place.getBoundingClientRect();
                const isCut = height < 100 || bottom > room.bottom + 1;
                return [document.documentElement.scrollHeight - window.innerHeight, isCut];
            }, panel);
            assert.deepEqual([panel, overflow, cut], [panel, 0, false]);
        }
    }
    await page.close();
});

const kOdd = [
    ["one sample", { analog: [{ name: "U" }], status: ["D"], rows: [[5, 1]] }],
    ["no analog channels", { status: ["D", "E"], rows: [[0, 1], [1, 1], [0, 0]] }],
    ["nothing but missing values", { analog: [{ name: "U" }], rows: [[""], [""], [""]] }],
    ["a constant", { analog: [{ name: "U" }], rows: [[7], [7], [7], [7]] }],
    ["infinite values", { analog: [{ name: "U", a: 1e300 }, { name: "I", unit: "A" }], rows: [[1, 1], [99998e5, 2],
        [-99998e5, 3], [1, 4]] }],
    ["no line frequency", { analog: [{ name: "U" }], frequency: 0, rows: [[1], [2], [3]] }],
];

for (const [name, recording] of kOdd) {
    shown(`A recording with ${name} is shown`, async (page) => {
        await show(page, pageOf(write(name, recording)));
        for (const panel of ["phasors", "harmonics", "channels", "recording", "findings", "values"]) {
            await page.click(`#tab-${panel}`);
            await settle(page);
        }
        await page.focus("#stage");
        await press(page, "End", "Home", "z", "0", "o", "+", "-");
        const analog = (recording.analog ?? []).length;
        const changing = (recording.status ?? []).filter((_one, i) =>
            new Set(recording.rows.map((row) => row[analog + i])).size > 1);
        assert.equal((await lanes(page)).length, analog + changing.length);
    });
}

shown("A configuration without data is shown, and says so", async (page) => {
    const recording = join(root, "tests/recordings/configuration-only");
    await show(page, pageOf(join(recording, readdirSync(recording).find((file) => /\.cfg$/i.test(file)))));
    assert.match(await text(page, "#notice"), /^This recording has no samples/);
});

test("A phone shows the page without sideways scrolling, and fingers move it", async () => {
    const page = await tab(browser, { width: 390, height: 844 });
    await show(page, pageOf(feeder), "#a=100&b=140");
    const sizes = await page.evaluate(() => [document.documentElement.scrollWidth,
        document.documentElement.scrollHeight,
        document.getElementById("traces").width]);
    assert.deepEqual(sizes.slice(0, 2), [390, 844]);
    assert.ok(sizes[2] > 200);
    const box = await (await page.$("#over")).boundingBox();
    await page.touchscreen.tap(box.x + box.width / 2, box.y + 100);
    await settle(page);
    assert.ok(Math.abs(Number(await text(page, "#time-a")) - (0.3495 - 0.076)) < 0.006);
    await page.evaluate(axe);
    const { violations } = await page.evaluate(() => window.axe.run());
    assert.deepEqual(violations.map((one) => `${one.id}: ${one.nodes[0].html}`), []);
    assert.deepEqual(page.problems, []);
    await page.close();
});

shown("Traces have the colours of their phases, and statuses their bars", async (page) => {
    await show(page, pageOf(feeder), "#a=0&b=0");
    const colours = await page.evaluate(() => {
        const canvas = document.getElementById("traces");
        const context = canvas.getContext("2d");
        return [...document.querySelectorAll(".label")].map((label) => {
            const top = label.offsetTop;
            const { data } = context.getImageData(20, top + 2, canvas.width - 20, label.offsetHeight - 4);
            const counts = { yellow: 0, green: 0, red: 0, blue: 0 };
            for (let i = 0; i < data.length; i += 4) {
                const [r, g, b] = [data[i], data[i + 1], data[i + 2]];
                const kind = r > 170 && g > 120 && b < 80 ? "yellow" : g > r + 60 && g > b + 30 ? "green"
                    : r > g + 90 && r > b + 60 ? "red" : b > r + 60 && b > g + 40 ? "blue" : null;
                if (kind) {
                    counts[kind] += 1;
                }
            }
            return Object.entries(counts).sort((one, other) => other[1] - one[1])[0][0];
        });
    });
    assert.deepEqual(colours.slice(0, 9), ["yellow", "green", "red", "blue", "yellow", "green", "red", "blue", "red"]);
});

test("A large recording is reduced, says so, and keeps its spikes and what is around the trigger", async () => {
    const page = await tab(browser);
    const count = 40000;
    const rows = Array.from({ length: count }, (_, i) => [i === 30011 ? 900 : Math.round(100 * Math.sin(i / 3)),
        i > 20000 ? 1 : 0]);
    const recording = write("large", { analog: [{ name: "U" }], status: ["D"], rows, trigger: 10 });
    const file = pageOf(recording, "--full-bytes", "80000");
    await show(page, file, "#panel=phasors");
    assert.match(await text(page, "#notice"),
        /Of every 16 samples the page keeps the least and the greatest value; every sample from/);
    const found = await page.evaluate(() => JSON.parse(document.getElementById("recording").textContent).pieces);
    assert.deepEqual(found, [[0, 20000, 1], [20000, 2500, 8]]);
    const rowsOfExport = exported(recording);
    await page.click("#tab-values");
    await page.click("#all-digits");
    await settle(page);
    const [value] = await valuesOf(page, "a1");
    assert.equal(value, rowsOfExport[10000][1]);
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("A site lists its recordings, sorts and searches them, and makes only what has changed", async () => {
    const page = await tab(browser);
    const source = join(folder, "source");
    write("source/one", { station: "Alpha", analog: [{ name: "I", unit: "A" }], status: ["Trip"], rows: [[1, 0], [5,
        1]] });
    write("source/deep/two", { station: "Beta <b>", analog: [{ name: "I", unit: "A" }], rows: [[1], [2], [3]] });
    writeFileSync(join(source, "bad.cfg"), "nothing\r\n");
    const site = join(folder, "site");
    const report = () => {
        try {
            return run("report", source, "--output", site);
        } catch (failure) {
            assert.equal(failure.status, 1); // the one that cannot be read
            return failure.stdout;
        }
    };
    assert.match(report(), /two\.cfg: written to/);
    await show(page, join(site, "index.html"));
    const names = () => page.$$eval("#rows tr:not([hidden]) th", (all) => all.map((one) => one.textContent));
    assert.deepEqual((await names()).sort(), ["bad", "deep/two", "one"]);
    assert.equal((await page.$$("#rows svg")).length, 2);
    assert.equal((await page.$$(".failed")).length, 1);
    await page.click("thead th:nth-child(5) button");
    await page.click("thead th:nth-child(5) button");
    assert.deepEqual((await names()).slice(0, 2), ["deep/two", "one"]);
    await page.type("#search", "alpha trip");
    assert.deepEqual(await names(), ["one"]);
    assert.equal(await text(page, "#count"), "1 of 3 recordings");
    await page.evaluate(axe);
    assert.deepEqual((await page.evaluate(() => window.axe.run())).violations.map((one) => one.id), []);
    assert.equal(page.requests.length, 1);
    await page.click("#rows tr:not([hidden]) a");
    await page.waitForFunction(() => document.documentElement.dataset.ready === "yes");
    assert.equal(await text(page, "#station"), "Alpha");
    await page.click("#back");
    await page.waitForSelector("#rows");
    const made = statSync(join(site, "pages/one.html")).mtimeMs;
    write("source/deep/two", { station: "Gamma", analog: [{ name: "I", unit: "A" }], rows: [[1], [2], [3], [4]] });
    const second = report();
    assert.match(second, /one\.cfg: unchanged/);
    assert.match(second, /two\.cfg: written to/);
    assert.equal(statSync(join(site, "pages/one.html")).mtimeMs, made);
    assert.ok(readFileSync(join(site, "index.html"), "utf8").includes("Gamma"));
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("Without DecompressionStream the page says which browsers unpack it", async () => {
    const page = await tab(browser);
    await page.evaluateOnNewDocument(() => {
        delete globalThis.DecompressionStream;
    });
    await page.goto(`file://${pageOf(feeder)}`);
    assert.match(await text(page, "#notice"), /has no DecompressionStream/);
    await page.close();
});

test("Without Uint8Array.fromBase64 the page is unpacked all the same", async () => {
    const page = await tab(browser);
    await page.evaluateOnNewDocument(() => {
        delete Uint8Array.fromBase64;
    });
    await show(page, pageOf(feeder));
    await page.close();
});

test("A recording of 32 channels and 200,000 samples is soon there and drawn within 50 ms", async () => {
    const page = await tab(browser);
    const { cfg, bytes } = writeWaves("wide", 32, 200000);
    const html = pageOf(cfg);
    assert.ok(statSync(html).size / bytes < 0.6, `${statSync(html).size / bytes} of the data`);
    await show(page, html);
    const times = await drawingTimes(page);
    assert.ok(times.first < 4500, `first picture after ${times.first} ms`); // 1500 where nothing else runs
    assert.ok(times.median < 50, `${times.median} ms`);
    await page.close();
});
