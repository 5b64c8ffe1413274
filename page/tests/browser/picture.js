// The pictures of a page for the documents, light and dark: picture.js FILE.png, and beside it FILE-dark.png.

import { join } from "node:path";
import { cleanUp, examples, launch, pageOf, settle, show, tab } from "./support.js";

const browser = await launch();
for (const [scheme, path] of [["light", process.argv[2]], ["dark", process.argv[2].replace(".png", "-dark.png")]]) {
    const page = await tab(browser, { width: 1280, height: 760, scheme });
    await show(page, pageOf(join(examples, "line_two_phase_fault.cfg")),
        "#from=0.02&to=0.26&a=220&b=280&panel=phasors");
    await settle(page);
    await page.screenshot({ path });
    await page.close();
}
await browser.close();
cleanUp();
