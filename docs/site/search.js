// The search of the site: over the text of every section of every page, without a server. finish.py writes the sections
// to search-sections.js as [page's title, section's title, address, text].
"use strict";

(() => {
    const MOST = 20;
    const AROUND = 60; // characters of text on either side of what was found

    const words = (text) => text.toLowerCase().split(/\s+/).filter(Boolean);

    /** How well a section has all the words: 0 if one is missing; a word of its title counts ten times. */
    const rank = ([page, title, , text], wanted) => {
        const heading = `${page} ${title}`.toLowerCase();
        const body = text.toLowerCase();
        let sum = 0;
        for (const word of wanted) {
            const found = (heading.includes(word) ? 10 : 0) + (body.includes(word) ? 1 : 0);
            if (found === 0) {
                return 0;
            }
            sum += found;
        }
        return sum;
    };

    /** The text around the first of the words, as nodes, with the word marked. */
    const excerpt = (text, wanted) => {
        const body = text.toLowerCase();
        const word = wanted.find((one) => body.includes(one));
        if (!word) {
            return [document.createTextNode(text.slice(0, 2 * AROUND))];
        }
        const at = body.indexOf(word);
        const mark = document.createElement("mark");
        mark.textContent = text.slice(at, at + word.length);
        const before = (at > AROUND ? "\u2026" : "") + text.slice(Math.max(0, at - AROUND), at);
        return [document.createTextNode(before), mark, document.createTextNode(text.slice(at + word.length, at + word.length + AROUND))];
    };

    const row = ([page, title, address, text], wanted) => {
        const item = document.createElement("li");
        const link = document.createElement("a");
        const below = document.createElement("small");
        link.href = address;
        link.textContent = title && title !== page ? `${page} \u203a ${title}` : page;
        below.append(...excerpt(text, wanted));
        link.append(below);
        item.append(link);
        return item;
    };

    document.addEventListener("DOMContentLoaded", () => {
        const box = document.getElementById("site-search");
        const input = box.querySelector("input");
        const list = box.querySelector("ol");
        const sections = window.siteSections;

        input.addEventListener("input", () => {
            const wanted = words(input.value);
            const found = wanted.length === 0 ? [] : sections.map((section) => [rank(section, wanted), section]).filter(([value]) => value > 0);
            found.sort(([one], [other]) => other - one);
            list.replaceChildren(...found.slice(0, MOST).map(([, section]) => row(section, wanted)));
            if (wanted.length > 0 && found.length === 0) {
                const none = document.createElement("li");
                none.textContent = "Nothing found.";
                list.append(none);
            }
        });
        box.addEventListener("keydown", (event) => {
            const stops = [input, ...list.querySelectorAll("a")];
            const at = stops.indexOf(document.activeElement);
            if (event.key === "Escape") {
                input.value = "";
                list.replaceChildren();
                input.focus();
            } else if (event.key === "ArrowDown" && at + 1 < stops.length) {
                stops[at + 1].focus();
            } else if (event.key === "ArrowUp" && at > 0) {
                stops[at - 1].focus();
            } else if (event.key === "Enter" && at === 0 && stops.length > 1) {
                stops[1].click();
            } else {
                return;
            }
            event.preventDefault();
        });
        document.addEventListener("keydown", (event) => {
            if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName)) {
                input.focus();
                event.preventDefault();
            }
        });
    });
})();
