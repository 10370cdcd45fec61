// Converts all metafiles below folders by the npm package and by a native host with the same font
// engine, and compares the documents byte for byte.
// usage: node documents.mjs PACKAGE HOST FOLDER...
import { spawnSync } from "node:child_process";
import { readFileSync, readdirSync, statSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

const [packageFolder, host, ...folders] = process.argv.slice(2);
const { load, SvgtoolError } = await import(pathToFileURL(join(packageFolder, "svgtool.js")));
const MODULE_BYTES = 1.5e6, TYPICAL_MILLISECONDS = 20;
let findings = 0;

function check(holds, text) {
    if (!holds) {
        ++findings;
        console.log("FOUND:", text);
    }
}

function metafilesBelow(folder) {
    return readdirSync(folder, { withFileTypes: true }).flatMap(entry => {
        const path = join(folder, entry.name);
        return entry.isDirectory() ? metafilesBelow(path)
            : /\.(emf|wmf|emz|wmz)$/i.test(path) ? [path] : [];
    });
}

const converter = await load();
const times = [];

// As the host draws: 800 pixels wide.
function converted(path) {
    const bytes = readFileSync(path);
    const start = performance.now();
    try {
        return converter.convert(bytes, { width: 800 }).svg;
    } catch (error) {
        check(error instanceof SvgtoolError, `${path}: ${error}`);
        return "";
    } finally {
        times.push(performance.now() - start);
    }
}

const paths = folders.flatMap(metafilesBelow);
for (const path of paths) {
    const native = spawnSync(host, [path], { encoding: "utf8", maxBuffer: 1 << 30 });
    check([0, 1].includes(native.status), `${path}: the host ends with ${native.status}`);
    check(converted(path) === native.stdout, `${path}: the documents differ`);
}
check(paths.length > 0, "there are no metafiles");

const size = statSync(join(packageFolder, "svgtool.wasm")).size;
check(size <= MODULE_BYTES, `the module has ${size} bytes`);
times.sort((a, b) => a - b);
const typical = times[times.length >> 1];
check(typical < TYPICAL_MILLISECONDS, `a typical file takes ${typical.toFixed(1)} ms`);
console.log(`${paths.length} metafiles, ${findings} findings; module ${size} bytes; `
    + `${typical.toFixed(1)} ms a file, ${times.at(-1).toFixed(0)} ms the longest`);
process.exitCode = findings > 0 ? 1 : 0;
