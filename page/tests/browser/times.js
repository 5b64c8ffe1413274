// How soon pages of long recordings are there, and how long a drawing takes: a line for each, five runs of the shorter
// ones. Says the load of the machine, since that changes the figures most.

import { statSync } from "node:fs";
import { loadavg } from "node:os";
import { cleanUp, drawingTimes, launch, pageOf, show, tab, writeWaves } from "./support.js";

const kRecordings = [[32, 37500, 5], [32, 200000, 5], [100, 1000000, 1]];
const kMega = 1e6;

const browser = await launch();
try {
    console.log("recording      data MB  page MB  page made s  first picture ms  drawing ms, median  most   load");
    for (const [channels, samples, runs] of kRecordings) {
        const { cfg, bytes } = writeWaves(`${channels}x${samples}`, channels, samples);
        const begin = performance.now();
        const html = pageOf(cfg, "--full-bytes", "1000000000");
        const made = (performance.now() - begin) / 1000;
        for (let run = 0; run < runs; ++run) {
            const page = await tab(browser);
            await show(page, html);
            const { first, median, most } = await drawingTimes(page);
            console.log([`${channels} x ${samples}`.padEnd(14), (bytes / kMega).toFixed(1).padStart(7),
                (statSync(html).size / kMega).toFixed(1).padStart(8), made.toFixed(2).padStart(12),
                first.toFixed(0).padStart(17), median.toFixed(1).padStart(19), most.toFixed(1).padStart(5),
                loadavg()[0].toFixed(1).padStart(6)].join(" "));
            await page.close();
        }
    }
} finally {
    await browser.close();
    cleanUp();
}
