// Runs the examples of the README: each is a block of JavaScript, before a block of what it prints.
// usage: node examples.mjs PACKAGE README, in the folder that the examples take files from
import { spawnSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, symlinkSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";

const [packageFolder, readme] = process.argv.slice(2);
const blocks = language => Array.from(
    readFileSync(readme, "utf8").matchAll(new RegExp("^```" + language + "\n(.*?)^```$", "gms")),
    ([, text]) => text).join("");

const work = mkdtempSync(join(tmpdir(), "svgtool-"));
mkdirSync(join(work, "node_modules"));
symlinkSync(resolve(packageFolder), join(work, "node_modules", "svgtool"));
writeFileSync(join(work, "examples.mjs"), blocks("js"));
const { stdout, stderr } = spawnSync("node", [join(work, "examples.mjs")], { encoding: "utf8" });
rmSync(work, { recursive: true });

const holds = stdout === blocks("text") && stdout !== "";
console.log(holds ? "the README's examples hold" : `FOUND: the examples print\n${stdout}${stderr}`);
process.exitCode = holds ? 0 : 1;
