// The page's own script; make-page.py puts it behind svgtool.js and zip.js.

const find = (selector, from = document) => from.querySelector(selector);
const results = []; // { name, picture, address } in the order of the files, refused ones without both
const drawn = () => results.filter(result => result.picture);

// The constant stands at the end of the script, so that its readers need not scroll.
async function unpacked() {
    const bytes = Uint8Array.from(atob(MODULE), character => character.charCodeAt(0));
    return new Response(new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip")))
        .arrayBuffer();
}
let converter;
const loaded = () => converter ??= unpacked().then(load);

const bytesText = count => count < 1000 ? `${count} bytes`
    : count < 1e6 ? `${(count / 1000).toFixed(1)} kB` : `${(count / 1e6).toFixed(1)} MB`;
// Without what would turn the letters behind it around, and with them the name's ending.
const shownName = name => name.replace(/[\u200E\u200F\u202A-\u202E\u2066-\u2069]/g, "\uFFFD");
// What an img shows can run no script and load nothing.
const blobOf = picture => new Blob([picture.svg], { type: "image/svg+xml" });

function download(name, blob) {
    const link = document.createElement("a");
    link.href = URL.createObjectURL(blob);
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60_000);
}
const save = ({ name, picture }) => download(`${name}.svg`, blobOf(picture));

async function copy({ picture }, button) {
    const text = button.textContent;
    button.textContent = await navigator.clipboard.writeText(picture.svg)
        .then(() => "Copied", () => "Not copied");
    setTimeout(() => button.textContent = text, 1500);
}

function showVerdict(element, verdict) {
    element.textContent = element.dataset.verdict = verdict;
}

function cardOf(result, size, message) {
    const { name, picture } = result;
    const card = find("template").content.cloneNode(true).firstElementChild;
    card.setAttribute("aria-label", name);
    find("h2", card).textContent = shownName(name);
    showVerdict(find(".verdict", card), picture?.verdict ?? "refused");
    if (!picture) {
        find(".facts", card).textContent = message;
        for (const part of ["button", ".warnings", ".copy", ".save"])
            find(part, card).remove();
        return card;
    }
    const [width, height] = [picture.width, picture.height].map(Math.round);
    find(".facts", card).textContent =
        `${width} × ${height} px, ${bytesText(size)} → ${bytesText(blobOf(picture).size)}`;
    find(".warnings", card).textContent = picture.warnings.join("; ");
    find("img", card).src = result.address;
    const actions = { "article > button": ["Look at", () => show(result)],
                      ".copy": ["Copy the SVG of", ({ target }) => copy(result, target)],
                      ".save": ["Download the SVG of", () => save(result)] };
    for (const [selector, [label, action]] of Object.entries(actions)) {
        find(selector, card).setAttribute("aria-label", `${label} ${name}`);
        find(selector, card).addEventListener("click", action);
    }
    return card;
}

function summarize() {
    const counts = new Map();
    for (const { picture } of results) {
        const verdict = picture?.verdict ?? "refused";
        counts.set(verdict, (counts.get(verdict) ?? 0) + 1);
    }
    const parts = [...counts].map(([verdict, count]) => `${count} ${verdict}`);
    find("#summary").textContent = results.length === 0 ? ""
        : `${results.length} ${results.length === 1 ? "file" : "files"}: ${parts.join(", ")}`;
    find("#empty").hidden = find("main").ariaBusy === "true" || results.length > 0;
    find("#clear").hidden = results.length === 0;
    find("#all").hidden = drawn().length === 0;
}

async function draw(file) {
    const result = { name: file.name };
    let message;
    try {
        // What is no file, a folder for one, cannot be read.
        const bytes = await file.arrayBuffer().catch(() => {
            throw new Error("this cannot be read: it may be a folder");
        });
        result.picture = (await loaded()).convert(bytes);
        result.address = URL.createObjectURL(blobOf(result.picture));
    } catch (error) {
        message = error.message;
    }
    results.push(result);
    find("#pictures").append(cardOf(result, file.size, message));
}

// One after the other, also of files that are dropped while others are drawn.
let work = Promise.resolve();
function add(files) {
    work = work.then(async () => {
        find("main").ariaBusy = "true";
        find("#empty").hidden = true;
        for (const file of files) {
            await draw(file);
            await new Promise(resolve => setTimeout(resolve)); // lets the page be painted
        }
        find("main").ariaBusy = "false";
        summarize();
    });
}

// Names that come twice get a number.
function named(list) {
    const names = new Set();
    return list.map(({ name, picture }) => {
        let unique = `${name}.svg`;
        for (let number = 2; names.has(unique); ++number)
            unique = `${name} (${number}).svg`;
        names.add(unique);
        return [unique, picture.svg];
    });
}

const dialog = find("dialog"), view = find("#view"), image = find("#view img");
let shown, factor = 1;

// What lies at a point of the window stays there.
function zoom(to, x, y) {
    const room = view.getBoundingClientRect(), before = image.getBoundingClientRect();
    x ??= room.left + room.width / 2;
    y ??= room.top + room.height / 2;
    factor = Math.min(Math.max(to, 0.01), 64);
    image.style.width = `${shown.picture.width * factor}px`;
    image.style.height = `${shown.picture.height * factor}px`;
    const after = image.getBoundingClientRect();
    view.scrollBy(after.left - x + (x - before.left) / (before.width || 1) * after.width,
                  after.top - y + (y - before.top) / (before.height || 1) * after.height);
    find("#zoom").value = `${Math.round(factor * 100)} %`;
}
const STEP = 1.25;
const fit = () => zoom(Math.min((view.offsetWidth - 32) / shown.picture.width,
                                (view.offsetHeight - 32) / shown.picture.height));

function fillReport({ report, verdict }) {
    const { drawing, drawingLost } = report.totals;
    find("#report p").textContent = `${drawingLost} of ${drawing} drawing records not drawn`
        + (verdict === "damaged" ? `; ${report.end.reason} at offset ${report.end.offset}` : "");
    find("#report tbody").replaceChildren();
    for (const { name, count, outcome, reason } of report.records) {
        const row = find("#report tbody").insertRow();
        const head = document.createElement("th");
        head.scope = "row";
        row.append(head);
        head.textContent = name;
        row.insertCell().textContent = count;
        row.insertCell().textContent = reason ? `${outcome}: ${reason}` : outcome;
    }
}

function show(result) {
    shown = result;
    image.src = result.address;
    image.alt = find("#name").textContent = shownName(result.name);
    showVerdict(find("dialog .verdict"), result.picture.verdict);
    fillReport(result.picture);
    if (!dialog.open)
        dialog.showModal();
    fit();
}
function step(by) {
    const list = drawn();
    show(list[(list.indexOf(shown) + by + list.length) % list.length]);
}
function toggleReport() {
    const isShown = find("#report").hidden;
    find("#report").hidden = !isShown;
    find("#tell").ariaPressed = String(isShown);
    fit();
}

const CLICKS = {
    previous: () => step(-1), next: () => step(1), fit,
    larger: () => zoom(factor * STEP), smaller: () => zoom(factor / STEP), natural: () => zoom(1),
    copy: ({ target }) => copy(shown, target), save: () => save(shown),
    tell: toggleReport, close: () => dialog.close(),
    all: () => download("pictures.zip", zipOf(named(drawn()))),
    clear: () => {
        for (const { address } of results.splice(0))
            URL.revokeObjectURL(address);
        find("#pictures").replaceChildren();
        summarize();
        find("#files").focus();
    },
};
for (const [id, action] of Object.entries(CLICKS))
    document.getElementById(id).addEventListener("click", action);

const KEYS = { "+": CLICKS.larger, "-": CLICKS.smaller, 0: fit, 1: CLICKS.natural,
               ArrowLeft: CLICKS.previous, ArrowRight: CLICKS.next };
dialog.addEventListener("keydown", event => {
    // A picture that is wider than its room is scrolled by arrows.
    const scrolls = event.key.startsWith("Arrow") && view.scrollWidth > view.clientWidth;
    if (!(event.key in KEYS) || scrolls || event.ctrlKey || event.metaKey || event.altKey)
        return;
    event.preventDefault();
    KEYS[event.key]();
});
view.addEventListener("wheel", event => {
    if (!event.ctrlKey) // which a pinch sets too
        return;
    event.preventDefault();
    zoom(factor * 2 ** (-event.deltaY / 200), event.clientX, event.clientY);
}, { passive: false });
view.addEventListener("pointermove", ({ buttons, pointerType, movementX, movementY }) => {
    if (buttons === 1 && pointerType === "mouse")
        view.scrollBy(-movementX, -movementY);
});

find("#files").addEventListener("change", ({ target }) => {
    add([...target.files]);
    target.value = "";
});
find("#empty").addEventListener("click", () => find("#files").click());
addEventListener("paste", ({ clipboardData }) => add([...clipboardData.files]));
addEventListener("dragover", event => {
    event.preventDefault();
    document.body.classList.add("over");
});
addEventListener("dragleave", event => {
    if (event.relatedTarget === null)
        document.body.classList.remove("over");
});
addEventListener("drop", event => {
    event.preventDefault();
    document.body.classList.remove("over");
    add([...event.dataTransfer.files]);
});
