// The site that scripts/docs made (ORV_SITE), as a browser shows it on a narrow and on a wide screen.
// `scripts/browser --site` runs this beside the tests of the pages, whose support.js it uses.

import { after, before, test } from "node:test";
import assert from "node:assert/strict";
import { readdirSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import { cleanUp, launch, tab } from "../browser/support.js";

const site = process.env.ORV_SITE;
const kNarrow = 390;
const kWide = 1280;
const kHeight = 900;
const kTabs = 4;
const kPatience = 3000; // ms
const kReadable = 4.5; // contrast of text, WCAG 2.1, 1.4.3

// Lists that Doxygen makes of names and sources: as narrow as the others, and with nothing else to see.
const kLists = new RegExp("_source|-members"
    + "|^(annotated|classes|dir_|files|functions|globals|hierarchy|namespaces\\.|namespacemembers|pages)");

const addressOf = (name) => pathToFileURL(join(site, name)).href;

// What the browser makes of the page at this width, once its scripts are done: the switch of colours is the last.
async function look(patience) {
    const isDone = () => document.querySelector("doxygen-awesome-dark-mode-toggle") !== null;
    for (let waited = 0; waited < patience && !isDone(); waited += 10) {
        await new Promise((done) => {
            setTimeout(done, 10);
        });
    }
    const rectangle = (element) => element?.getBoundingClientRect() ?? { width: 0, height: 0 };
    const isSeen = (element) => rectangle(element).width > 0 && rectangle(element).height > 0;
    const luminance = (channels) => {
        const [red, green, blue] = channels.map((channel) => {
            const part = channel / 255;
            return part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    };
    const colourOf = (element, property) => getComputedStyle(element)[property].match(/[\d.]+/g).map(Number);
    const background = (element) => { // through what is translucent
        if (!element) {
            return [255, 255, 255];
        }
        const [red, green, blue, alpha = 1] = colourOf(element, "backgroundColor");
        const below = alpha < 1 ? background(element.parentElement) : [0, 0, 0];
        return [red, green, blue].map((channel, i) => alpha * channel + (1 - alpha) * below[i]);
    };
    const contents = document.querySelector(".contents");
    const text = contents.querySelector("p, td, dd") ?? contents;
    const [ink, paper] = [luminance(colourOf(text, "color").slice(0, 3)), luminance(background(text))];
    const outside = document.createTreeWalker(contents, window.NodeFilter.SHOW_TEXT);
    const markup = [];
    while (outside.nextNode()) {
        const node = outside.currentNode;
        if (!node.parentElement.closest("pre, code, .fragment, script, style")
            && /`|\*\*|\]\(|\{#|^\s*#{1,6} \S|\|---/.test(node.data)) {
            markup.push(node.data.trim());
        }
    }
    const headings = [...contents.querySelectorAll("h1, h2")].filter((one) => one.closest(".toc") === null
        && one.querySelector("a.anchor") !== null);
    const listed = [...contents.querySelectorAll(".toc a")];
    const scrolling = document.getElementById("doc-content");
    return {
        title: document.title,
        description: document.querySelector("meta[name=description]")?.content ?? "",
        language: document.documentElement.lang,
        viewport: document.querySelector("meta[name=viewport]")?.content ?? "",
        widest: Math.max(document.documentElement.scrollWidth,
            scrolling.scrollWidth - scrolling.clientWidth + innerWidth),
        width: rectangle(contents).width,
        paper,
        hasSwitch: isDone(),
        contrast: (Math.max(ink, paper) + 0.05) / (Math.min(ink, paper) + 0.05),
        markup,
        sections: headings.length,
        unlisted: headings.filter((heading) => !listed.some((link) =>
            link.hash === `#${heading.querySelector("a.anchor").id}`)).map((heading) => heading.textContent.trim()),
        isListSeen: isSeen(contents.querySelector(".toc")),
        areEntriesSeen: listed.length > 0 && listed.every(isSeen),
        previous: document.querySelector("nav.page-order a[rel=prev]")?.getAttribute("href"),
        next: document.querySelector("nav.page-order a[rel=next]")?.getAttribute("href"),
        uncopied: [...contents.querySelectorAll("div.fragment")].filter((one) =>
            one.parentElement.querySelector("doxygen-awesome-fragment-copy-button") === null).length,
        documents: [...contents.querySelectorAll("li > a:first-child")].map((link) => link.getAttribute("href")),
    };
}

// A few words from the end of the text of a document, which no heading has.
function lastWords() {
    const headings = [...document.querySelectorAll("h1, h2, h3, .toc a")].map((one) => one.textContent).join("\n");
    const paragraphs = [...document.querySelectorAll(".contents p, .contents li")].map((one) => one.innerText.trim());
    for (const text of paragraphs.reverse()) {
        const words = text.split(/\s+/);
        const phrase = words.slice(0, 6).join(" ");
        if (words.length > 6 && !headings.includes(phrase)) {
            return phrase;
        }
    }
    return "";
}

async function found(page, phrase) {
    await page.evaluate((value) => {
        const input = document.querySelector("#site-search input") ?? document.createElement("input");
        input.value = value;
        input.dispatchEvent(new window.Event("input", { bubbles: true }));
    }, phrase);
    return page.$$eval("#site-search li a", (links) => links.map((link) => link.getAttribute("href")));
}

async function open(browser, width, scheme) {
    const page = await tab(browser, { width, height: kHeight, scheme });
    await page.setViewport({ width, height: kHeight }); // no touch, which would load the page again when it gets wider
    return page;
}

// Looks at pages until none is left: at all of them on a narrow screen, at those that people read on a wide one too.
async function visit(browser, names) {
    const page = await open(browser, kNarrow, "dark");
    const seen = [];
    for (let name = names.shift(); name !== undefined; name = names.shift()) {
        await page.goto(addressOf(name));
        const visited = { name, narrow: await page.evaluate(look, kPatience) };
        seen.push(visited);
        if (kLists.test(name)) {
            continue;
        }
        visited.phrase = await page.evaluate(lastWords);
        visited.found = visited.phrase ? await found(page, visited.phrase) : [];
        await found(page, "");
        await page.setViewport({ width: kWide, height: kHeight });
        visited.wide = await page.evaluate(look, kPatience);
        await page.setViewport({ width: kNarrow, height: kHeight });
    }
    seen.push(...page.problems.map((problem) => ({ problem })));
    await page.close();
    return seen;
}

let browser;
let pages; // all
let read; // those that are no lists
let documents; // of the project, in their order
let problems;
before(async () => {
    browser = await launch();
    const names = readdirSync(site).filter((name) => name.endsWith(".html")).sort();
    const seen = (await Promise.all(Array.from({ length: kTabs }, () => visit(browser, names)))).flat();
    pages = seen.filter((one) => one.name);
    read = pages.filter((page) => page.wide);
    problems = seen.filter((one) => one.problem).map((one) => one.problem);
    const front = pages.find((page) => page.name === "index.html");
    const order = ["index.html", ...front.wide.documents];
    documents = order.map((name) => pages.find((page) => page.name === name));
});
after(async () => {
    await browser.close();
    cleanUp();
});

// What is wrong with each page, in the words that `judge` gives: nothing.
function nothingWrong(judged, judge) {
    assert.ok(judged.length > 0 && !judged.includes(undefined));
    const wrong = judged.flatMap((page, i) => [judge(page, i)].flat().filter(Boolean)
        .map((what) => `${page.name}: ${what}`));
    assert.deepEqual(wrong, []);
}

test("The front page lists the documents, and each is a page", () => {
    assert.ok(documents.length > 15, `${documents.length}`);
    assert.ok(!documents.includes(undefined));
    assert.deepEqual(problems, []);
});

test("Each page has a title of its own, a description and a language", () => {
    nothingWrong(pages, ({ narrow }) => [
        narrow.title === "" && "no title",
        narrow.description === "" && "no description",
        narrow.description.length > 170 && `a description of ${narrow.description.length} characters`,
        narrow.language !== "en" && "no language",
        !narrow.viewport.includes("width=device-width") && "as wide as a desk on a telephone",
    ]);
    const titles = read.map((page) => page.wide.title);
    nothingWrong(read, ({ wide }) => titles.filter((title) => title === wide.title).length !== 1
        && `"${wide.title}" is the title of another page too`);
    nothingWrong(documents, ({ wide }) => wide.description.length < 40 && `a short description: "${wide.description}"`);
});

test("Contents take the whole width of a narrow screen, and no page scrolls sideways", () => {
    nothingWrong(pages, ({ narrow, wide }) => [
        narrow.width < kNarrow - 1 && `contents of ${narrow.width} px on a screen of ${kNarrow}`,
        narrow.widest > kNarrow && `${narrow.widest} px on a screen of ${kNarrow}`,
        wide?.widest > kWide && `${wide.widest} px on a screen of ${kWide}`,
    ]);
});

test("Pages are dark where the system is, light elsewhere, and readable in both", async () => {
    nothingWrong(pages, ({ narrow }) => [
        narrow.paper > 0.1 && `the dark page has the luminance ${narrow.paper}`,
        !narrow.hasSwitch && "no switch of colours",
        narrow.contrast < kReadable && `the contrast is ${narrow.contrast}`,
    ]);
    const page = await open(browser, kNarrow, "light");
    for (const name of ["index.html", documents[1].name]) {
        await page.goto(addressOf(name));
        const { paper, contrast } = await page.evaluate(look, kPatience);
        assert.ok(paper > 0.9 && contrast > kReadable, `${name}: luminance ${paper}, contrast ${contrast}`);
    }
    await page.close();
});

// How light the pictures of a page are on the whole, as the browser paints them: 0 is black.
async function lightnesses(page) {
    const all = [];
    for (const picture of await page.$$(".contents img")) {
        if (!await picture.boundingBox()) {
            continue;
        }
        const painted = await picture.screenshot({ encoding: "base64" });
        all.push(await page.evaluate(async (data) => {
            const image = new window.Image();
            image.src = `data:image/png;base64,${data}`;
            await image.decode();
            const { width, height } = image;
            const canvas = new window.OffscreenCanvas(width, height).getContext("2d");
            canvas.drawImage(image, 0, 0);
            const { data: bytes } = canvas.getImageData(0, 0, width, height);
            return bytes.reduce((sum, byte, i) => (i % 4 === 3 ? sum : sum + byte), 0) / (width * height * 3 * 255);
        }, painted));
    }
    return all;
}

test("Pictures are dark on dark pages and light on light ones, one of each", async () => {
    const illustrated = { "index.html": 1, "orvcomtrade.html": 2, "performance.html": 1, "tutorial.html": 2 };
    for (const [scheme, isRight] of [["dark", (light) => light < 0.25], ["light", (light) => light > 0.75]]) {
        const page = await open(browser, kWide, scheme);
        for (const [name, count] of Object.entries(illustrated)) {
            await page.goto(addressOf(name));
            await page.evaluate(look, kPatience);
            const seen = await lightnesses(page);
            assert.ok(seen.length === count && seen.every(isRight), `${name}, ${scheme}: ${seen}`);
        }
        await page.close();
    }
});

test("Each document has a table of contents with every section", () => {
    const withSections = documents.filter((page) => page.name !== "index.html" && page.wide.sections > 0);
    assert.ok(withSections.length > 15, `${withSections.length}`);
    nothingWrong(withSections, ({ narrow, wide }) => [
        ...wide.unlisted.map((heading) => `"${heading}" is not in the table of contents`),
        !narrow.isListSeen && "no table of contents on a narrow screen",
        !wide.areEntriesSeen && "no table of contents on a wide screen",
    ]);
});

test("Each document leads to the one before it and the one after it", () => {
    nothingWrong(documents, ({ narrow, wide }, i) => [narrow, wide].map((seen) => [
        seen.previous !== documents[i - 1]?.name && `before it is ${seen.previous}`,
        seen.next !== documents[i + 1]?.name && `behind it is ${seen.next}`,
    ]).flat());
});

test("Each block of code has a button that copies it", async () => {
    nothingWrong(pages, ({ narrow }) => narrow.uncopied > 0 && `${narrow.uncopied} blocks without a button`);
    const page = await open(browser, kWide, "light");
    await page.goto(addressOf("getting-started.html"));
    await page.evaluate(look, kPatience);
    const [code, copied] = await page.evaluate(() => new Promise((done) => {
        const block = document.querySelector("div.fragment");
        navigator.clipboard.writeText = async (text) => done([block.innerText.trim(), text]);
        block.parentElement.querySelector("doxygen-awesome-fragment-copy-button").click();
    }));
    assert.equal(copied, code);
    assert.equal(code, "scripts/demo");
    await page.close();
});

test("No page shows marks of Markdown", () => {
    nothingWrong(pages, ({ narrow }) => narrow.markup.map((text) => `"${text}"`));
});

test("The search finds what only the text of a document has, and leads there", async () => {
    nothingWrong(documents, (page) => [
        page.phrase === "" && "no text to search for",
        !page.found.some((address) => address.split("#")[0] === page.name) && `not found by "${page.phrase}"`,
    ]);
    const page = await open(browser, kNarrow, "light");
    await page.goto(addressOf("index.html"));
    const phrase = "numbers its samples throughout";
    assert.deepEqual(await found(page, phrase), ["tutorial.html#tutorial-times"]);
    const box = await page.$eval("#site-search ol", (list) => list.getBoundingClientRect().toJSON());
    assert.ok(box.left >= 0 && box.right <= kNarrow && box.height > 0, JSON.stringify(box));
    await Promise.all([page.waitForNavigation(), page.click("#site-search li a")]);
    assert.match(page.url(), /tutorial\.html#tutorial-times$/);
    assert.ok((await page.$eval(".contents", (contents) => contents.innerText)).includes(phrase));
    await page.close();
});
