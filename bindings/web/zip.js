// Zip archives that pack nothing, as the public format description has them ([APPNOTE] 4.3).

const CRC_TABLE = Uint32Array.from({ length: 256 }, (_, n) => {
    for (let bit = 0; bit < 8; ++bit)
        n = n & 1 ? 0xEDB88320 ^ (n >>> 1) : n >>> 1;
    return n;
});

function crc32(bytes) {
    let sum = ~0;
    for (const byte of bytes)
        sum = CRC_TABLE[(sum ^ byte) & 0xFF] ^ (sum >>> 8);
    return ~sum >>> 0;
}

// Little-endian fields of two and four bytes: [size, value].
function fieldBytes(fields) {
    const bytes = new Uint8Array(fields.reduce((sum, [size]) => sum + size, 0));
    const view = new DataView(bytes.buffer);
    let at = 0;
    for (const [size, value] of fields) {
        size === 4 ? view.setUint32(at, value, true) : view.setUint16(at, value, true);
        at += size;
    }
    return bytes;
}

/** An archive of texts by their names: [[name, text]]. Equal ones give equal archives. */
function zipOf(entries) {
    const UTF8 = 0x800, DAY = 0x21; // the first of 1980
    const encoder = new TextEncoder();
    const files = [], directory = [];
    let offset = 0, length = 0;
    for (const [name, text] of entries) {
        const title = encoder.encode(name), bytes = encoder.encode(text);
        const common = [[2, 20], [2, UTF8], [2, 0], [2, 0], [2, DAY], [4, crc32(bytes)],
                        [4, bytes.length], [4, bytes.length], [2, title.length], [2, 0]];
        const local = fieldBytes([[4, 0x04034B50], ...common]);
        const central = fieldBytes([[4, 0x02014B50], [2, 20], ...common, [2, 0], [2, 0], [2, 0],
                                    [4, 0], [4, offset]]);
        files.push(local, title, bytes);
        directory.push(central, title);
        offset += local.length + title.length + bytes.length;
        length += central.length + title.length;
    }
    const end = fieldBytes([[4, 0x06054B50], [2, 0], [2, 0], [2, entries.length],
                            [2, entries.length], [4, length], [4, offset], [2, 0]]);
    return new Blob([...files, ...directory, end], { type: "application/zip" });
}
