// Numbers of a block: base64 of a zlib stream (RFC 1950) of little-endian words. Words may stand as planes (the lowest
// bytes of all first) and as differences, whose sign is the lowest bit. Works in a browser and in node.

const kArrays = { i16: Int16Array, i32: Int32Array, f32: Float32Array, f64: Float64Array };

export function bytesOfBase64(text) {
    if (typeof Uint8Array.fromBase64 === "function") {
        return Uint8Array.fromBase64(text);
    }
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) {
        bytes[i] = binary.charCodeAt(i);
    }
    return bytes;
}

// Whether this browser can unpack a page.
export function canInflate() {
    return typeof DecompressionStream === "function";
}

export async function inflated(bytes, length) {
    const reader = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate")).getReader();
    const all = new Uint8Array(length);
    let at = 0;
    for (let piece = await reader.read(); !piece.done; piece = await reader.read()) {
        all.set(piece.value, at);
        at += piece.value.length;
    }
    if (at !== length) {
        throw new Error("a block of the page is damaged");
    }
    return all;
}

function wordsOf(bytes, size, count, arePlanes) {
    const Words = size === 2 ? Uint16Array : size === 4 ? Uint32Array : null;
    if (!arePlanes) {
        return Words ? new Words(bytes.buffer, 0, count) : new Float64Array(bytes.buffer, 0, count);
    }
    if (size === 2) {
        const words = new Uint16Array(count);
        for (let i = 0; i < count; ++i) {
            words[i] = bytes[i] | (bytes[count + i] << 8);
        }
        return words;
    }
    const whole = new Uint8Array(count * size);
    for (let plane = 0; plane < size; ++plane) {
        for (let i = 0, from = plane * count, to = plane; i < count; ++i, ++from, to += size) {
            whole[to] = bytes[from];
        }
    }
    return Words ? new Words(whole.buffer) : new Float64Array(whole.buffer);
}

function undoDelta(words) {
    let before = 0;
    for (let i = 0; i < words.length; ++i) {
        const word = words[i];
        before = (before + ((word >>> 1) ^ -(word & 1))) | 0;
        words[i] = before;
    }
}

// The numbers of the inflated bytes of a block.
export function numbersOf(bytes, block) {
    const Numbers = kArrays[block.type];
    const words = wordsOf(bytes, Numbers.BYTES_PER_ELEMENT, block.count, block.planes);
    if (block.delta) {
        undoDelta(words);
    }
    return new Numbers(words.buffer, words.byteOffset, block.count);
}

// The numbers of a block, of which `text` is the base64.
export async function decoded(block, text) {
    const length = block.count * kArrays[block.type].BYTES_PER_ELEMENT;
    return numbersOf(await inflated(bytesOfBase64(text), length), block);
}
