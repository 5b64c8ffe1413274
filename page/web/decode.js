// Numbers of a block: base64 of words of 32 bits, packed as WordPacker.h says, in a zlib stream (RFC 1950) where the
// block has `inflatedBytes`. Works in a browser and in node.

const kArrays = { i16: Int16Array, i32: Int32Array, f32: Float32Array, f64: Float64Array };
const kBlock = 64;
const kOrderShift = 6;
const kWidthMask = 63;

// What the three numbers before one say of it, by order.
const kWeights = [[0, 0, 0], [1, 0, 0], [2, -1, 0], [3, -3, 1]];

function damaged() {
    return new Error("a block of the page is damaged");
}

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
        if (at + piece.value.length > length) {
            throw damaged();
        }
        all.set(piece.value, at);
        at += piece.value.length;
    }
    if (at !== length) {
        throw damaged();
    }
    return all;
}

// How many words of 32 bits a block takes.
function lengthOf(width, count) {
    return Math.ceil(width * count / 32);
}

// Gives so many words, in an array of this kind of integers, from the packed bytes.
function unpackedWords(bytes, count, Integers) {
    const blocks = Math.ceil(count / kBlock);
    const heads = bytes.subarray(Math.max(bytes.length - blocks, 0));
    const countIn = (block) => Math.min(kBlock, count - block * kBlock);
    const total = heads.reduce((sum, head, block) => sum + lengthOf(head & kWidthMask, countIn(block)), 0);
    if (total * 4 + blocks !== bytes.length || heads.some((head) => (head & kWidthMask) > 32)) {
        throw damaged();
    }
    const numbers = new Integers(count);
    const words = new Int32Array(bytes.buffer, bytes.byteOffset, total);
    let [p1, p2, p3] = [0, 0, 0];
    let at = 0;
    for (let block = 0; block < blocks; ++block) {
        const width = heads[block] & kWidthMask;
        const [w1, w2, w3] = kWeights[heads[block] >>> kOrderShift];
        const mask = width === 32 ? -1 : (1 << width) - 1;
        const begin = block * kBlock;
        const end = begin + countIn(block);
        for (let i = begin, bit = 0; i < end; ++i, bit += width) {
            let word = 0;
            if (width > 0) {
                const shift = bit & 31;
                const from = at + (bit >>> 5);
                word = words[from] >>> shift;
                if (shift + width > 32) {
                    word |= words[from + 1] << (32 - shift);
                }
                word &= mask;
            }
            const expected = ((Math.imul(w1, p1) + Math.imul(w2, p2)) | 0) + Math.imul(w3, p3) | 0;
            p3 = p2;
            p2 = p1;
            p1 = (expected + ((word >>> 1) ^ -(word & 1))) | 0;
            numbers[i] = p1;
        }
        at += lengthOf(width, end - begin);
    }
    return numbers;
}

// The numbers of a block, of which `text` is the base64.
export async function decoded(block, text) {
    const Numbers = kArrays[block.type];
    const packed = bytesOfBase64(text);
    const bytes = block.inflatedBytes > 0 ? await inflated(packed, block.inflatedBytes) : packed;
    if (block.type === "i16") {
        return unpackedWords(bytes, block.count, Int16Array);
    }
    const words = unpackedWords(bytes, block.count * Numbers.BYTES_PER_ELEMENT / 4, Int32Array);
    if (block.type !== "f64") {
        return new Numbers(words.buffer);
    }
    const pairs = new Int32Array(words.length);
    for (let i = 0; i < block.count; ++i) {
        pairs[2 * i] = words[i];
        pairs[2 * i + 1] = words[block.count + i];
    }
    return new Float64Array(pairs.buffer);
}
