// What is shown as the fragment of an address, and back: a link keeps the view.

const kKeys = ["from", "to", "a", "b", "side", "scale", "clock", "hide", "fold", "lanes", "panel"];

export function fragmentOf(state) {
    const words = kKeys.filter((key) => state[key] !== undefined && state[key] !== "" && state[key] !== null)
        .map((key) => `${key}=${encodeURIComponent(state[key]).replaceAll("%2C", ",").replaceAll("%2B", "+")}`);
    return words.length > 0 ? `#${words.join("&")}` : "";
}

// Only keys that are known, each a text.
export function stateOf(fragment) {
    const state = {};
    for (const word of fragment.replace(/^#/, "").split("&")) {
        const sign = word.indexOf("=");
        const key = word.slice(0, sign);
        if (sign > 0 && kKeys.includes(key)) {
            try {
                state[key] = decodeURIComponent(word.slice(sign + 1));
            } catch {
                continue;
            }
        }
    }
    return state;
}
