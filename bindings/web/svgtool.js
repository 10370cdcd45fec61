// Draws Windows metafiles (EMF, EMF+ and WMF) as SVG, in browsers and in node. See svgtool.d.ts.

const TEXTS = ["characters", "outlines"];
const SOURCES = ["best", "wmf", "emf"];
const OUT_OF_MEMORY = 5;

export class SvgtoolError extends Error {
    constructor(code, message) {
        super(message);
        this.name = "SvgtoolError";
        this.code = code;
    }
}

export class Picture {
    #json;
    #report;

    constructor(svg, width, height, verdict, json) {
        this.svg = svg;
        this.width = width;
        this.height = height;
        this.verdict = verdict;
        this.#json = json;
    }

    get report() {
        return (this.#report ??= JSON.parse(this.#json));
    }

    get warnings() {
        const { verdict, end, records } = this.report;
        const lines = verdict === "damaged" ? [`damaged: ${end.reason} at offset ${end.offset}`] : [];
        for (const { name, count, outcome, weight, reason } of records)
            if ((outcome === "skipped" || outcome === "approximated") && weight !== "hint")
                lines.push(`${name}: ${count} ${outcome}, ${reason}`);
        return lines;
    }
}

// Code pages of Windows by the names that browsers and node know them by.
const CODE_PAGES = { 874: "windows-874", 932: "shift_jis", 936: "gbk", 949: "euc-kr", 950: "big5",
                     10000: "macintosh" };
for (const page of [1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258])
    CODE_PAGES[page] = `windows-${page}`;
// That of the IBM PC they do not know, and some versions of node take 1252 for Latin-1. From byte 80
// on; what is behind the end of a table is Latin-1.
const TABLES = {
    437: "ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌"
        + "█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\xA0",
    1252: "€\x81‚ƒ„…†‡ˆ‰Š‹Œ\x8DŽ\x8F\x90‘’“”•–—˜™š›œ\x9DžŸ",
};
const NO_CHARACTER = -1;
const decoders = new Map();

// What a byte or a pair of them stands for in a code page.
function unitOf(page, bytes) {
    if (page in TABLES)
        return TABLES[page][bytes[0] - 0x80]?.charCodeAt() ?? bytes[0];
    if (!(page in CODE_PAGES))
        return NO_CHARACTER;
    if (!decoders.has(page))
        decoders.set(page, new TextDecoder(CODE_PAGES[page], { fatal: true }));
    try {
        const text = decoders.get(page).decode(bytes);
        return text.length === 1 ? text.charCodeAt(0) : NO_CHARACTER;
    } catch {
        return NO_CHARACTER;
    }
}

// What the module asks of its surroundings; it prints nothing and reads no file.
function instanceOf(module) {
    const unit = (page, address, count) =>
        unitOf(page, new Uint8Array(exports.memory.buffer, address, count));
    const { exports } = new WebAssembly.Instance(module, {
        svgtool: { unit },
        env: { emscripten_notify_memory_growth() {} },
        wasi_snapshot_preview1: { proc_exit() {} }, // before the module ends itself
    });
    exports._initialize();
    return exports;
}

function choice(list, value, what) {
    const index = list.indexOf(value);
    if (index < 0)
        throw new TypeError(`${what} can be ${list.join(", ")}, and is ${value}`);
    return index;
}

export class Converter {
    #module;
    #exports;

    constructor(module) {
        this.#module = module;
    }

    // An instance that has ended, for which there is only the one reason, is not used again.
    #instance() {
        return this.#exports ??= instanceOf(this.#module);
    }

    #text(address, length) {
        const bytes = new Uint8Array(this.#exports.memory.buffer);
        const end = length ?? bytes.indexOf(0, address) - address;
        return new TextDecoder().decode(bytes.subarray(address, address + end));
    }

    // What a function that takes a picture and a place for the length gives.
    #given(name, picture, place) {
        const address = this.#exports[name](picture, place);
        const length = new DataView(this.#exports.memory.buffer).getUint32(place, true);
        return this.#text(address, length);
    }

    get version() {
        return this.#text(this.#instance().svgtool_version());
    }

    convert(metafile, options = {}) {
        const { width = 0, height = 0, scale = 1, text = "characters", source = "best",
                idPrefix = "" } = options;
        const textNumber = choice(TEXTS, text, "text");
        const sourceNumber = choice(SOURCES, source, "source");
        const bytes = metafile instanceof ArrayBuffer ? new Uint8Array(metafile)
            : new Uint8Array(metafile.buffer, metafile.byteOffset, metafile.byteLength);
        const prefix = new TextEncoder().encode(idPrefix + "\0");
        try {
            const wasm = this.#instance();
            const copied = copy => {
                const address = wasm.malloc(Math.max(copy.length, 4));
                if (address === 0)
                    throw new RangeError("there is no room");
                new Uint8Array(wasm.memory.buffer).set(copy, address);
                return address;
            };
            const input = copied(bytes), name = copied(prefix), place = copied(new Uint8Array(4));
            const picture = wasm.svgtool_web_draw(input, bytes.length, width, height, scale, name,
                                                  textNumber, sourceNumber);
            wasm.free(input);
            wasm.free(name);
            const error = wasm.svgtool_picture_error(picture);
            const result = error !== 0
                ? new SvgtoolError(error, this.#text(wasm.svgtool_error_text(error)))
                : new Picture(this.#given("svgtool_picture_document", picture, place),
                              wasm.svgtool_picture_width(picture),
                              wasm.svgtool_picture_height(picture),
                              this.#text(wasm.svgtool_verdict_text(
                                  wasm.svgtool_picture_verdict(picture))),
                              this.#given("svgtool_picture_report", picture, place));
            wasm.svgtool_picture_free(picture);
            wasm.free(place);
            if (error !== 0)
                throw result;
            return result;
        } catch (error) {
            if (!(error instanceof WebAssembly.RuntimeError || error instanceof RangeError))
                throw error;
            this.#exports = undefined;
            throw new SvgtoolError(OUT_OF_MEMORY, "there is not enough memory");
        }
    }
}

/** Loads the module: by default the file svgtool.wasm beside this one. */
export async function load(source = new URL("svgtool.wasm", import.meta.url)) {
    if (source instanceof WebAssembly.Module)
        return new Converter(source);
    if (source instanceof URL || typeof source === "string") {
        if (new URL(source).protocol === "file:" && typeof process !== "undefined")
            source = await (await import("node:fs/promises")).readFile(new URL(source));
        else
            source = await (await fetch(source)).arrayBuffer();
    }
    return new Converter(await WebAssembly.compile(source));
}
