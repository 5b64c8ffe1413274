// The picture of a page for the documents: picture.js FILE.

import { join } from "node:path";
import { cleanUp, examples, launch, pageOf, settle, show, tab } from "./support.js";

const browser = await launch();
const page = await tab(browser, { width: 1280, height: 760 });
await show(page, pageOf(join(examples, "line_two_phase_fault.cfg")),
    "#from=0.02&to=0.26&a=220&b=280&panel=phasors");
await settle(page);
await page.screenshot({ path: process.argv[2] });
await browser.close();
cleanUp();
