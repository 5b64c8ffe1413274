// The list of recordings: sorts by a column, and shows the rows in which all words that are searched stand.

const rows = [...document.querySelectorAll("#rows tr")];
const texts = rows.map((row) => row.textContent.toLowerCase());
const heads = [...document.querySelectorAll("thead button")];
const search = document.getElementById("search");

function keyOf(row, column) {
    const cell = row.children[column];
    return cell?.dataset.key === undefined ? cell?.textContent ?? "" : Number(cell.dataset.key);
}

const collator = new Intl.Collator(undefined, { numeric: true });

// Rows without a value stand last, whichever way.
function compare(one, other) {
    if (one === "" || other === "") {
        return one === other ? 0 : Infinity * (one === "" ? 1 : -1);
    }
    return typeof one === "number" && typeof other === "number" ? one - other
        : collator.compare(String(one), String(other));
}

function sortBy(column) {
    const head = heads[column].parentElement;
    const isDescending = head.getAttribute("aria-sort") === "ascending";
    heads.forEach((button) => button.parentElement.removeAttribute("aria-sort"));
    head.setAttribute("aria-sort", isDescending ? "descending" : "ascending");
    const keyed = rows.map((row) => [keyOf(row, column), row]);
    keyed.sort((one, other) => {
        const order = compare(one[0], other[0]);
        return isDescending && Number.isFinite(order) ? -order : order;
    });
    document.getElementById("rows").append(...keyed.map(([, row]) => row));
}

function filter() {
    const words = search.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
    let shown = 0;
    rows.forEach((row, i) => {
        row.hidden = !words.every((word) => texts[i].includes(word));
        shown += row.hidden ? 0 : 1;
    });
    document.getElementById("count").textContent = shown === rows.length ? `${shown} recordings`
        : `${shown} of ${rows.length} recordings`;
}

heads.forEach((button, column) => button.addEventListener("click", () => sortBy(column)));
search.addEventListener("input", filter);
