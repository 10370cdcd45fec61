#!/usr/bin/python3
"""Looks at pages and documents in a headless Chromium, which Selenium drives.

usage: browser.py gallery PAGE [FOLDER]   checks a page of metafile2svg --gallery; puts pictures of
                                          it into FOLDER
       browser.py documents < LIST        opens every SVG document that the list names, one a line
       browser.py inline < LIST           puts all of them into one page, and compares each with how
                                          it looks alone

Prints a line per finding and ends with status 1 if there is one.
"""
import base64
import html
import io
import pathlib
import re
import sys

import numpy
from PIL import Image
from selenium.webdriver import Chrome, ChromeOptions
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-quic",
             "--disable-background-networking", "--disable-component-update", "--disable-sync"]
CELL, COLUMNS = 200, 10  # of a page of documents: pixels, and cells side by side
findings = 0


def check(holds, text):
    global findings
    if not holds:
        findings += 1
        print("FOUND:", text)


def new_browser():
    options = ChromeOptions()
    for argument in ARGUMENTS:
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    browser = Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    browser.set_page_load_timeout(600)
    browser.set_script_timeout(600)
    browser.set_window_size(1200, 900)
    return browser


def check_filter(browser, cards):
    """Filters by part of a name and by each result; leaves all files shown."""
    def check_shown(name, status):
        shown = browser.execute_script("""
            for (const [id, value] of Object.entries(arguments[0])) {
                const field = document.getElementById(id);
                field.value = value;
                field.dispatchEvent(new Event('input', { bubbles: true }));
            }
            return Array.from(document.querySelectorAll('figure:not([hidden]) bdi'),
                              name => name.textContent);""", {"name": name, "status": status})
        check(shown == [card["name"] for card in cards if name.lower() in card["name"].lower()
                        and status in ("", card["status"])],
              f"the names with '{name}' that are '{status}' are others")

    check_shown(cards[-1]["name"][-7:].upper(), "")
    for status in {card["status"] for card in cards}:
        check_shown("", status)
    check_shown("no such name", "")
    check_shown("", "")


def check_gallery(browser, page, folder=None):
    browser.get(pathlib.Path(page).resolve().as_uri())
    cards = browser.execute_script("""return Array.from(document.querySelectorAll('figure'), f => ({
        name: f.querySelector('bdi').textContent, status: f.dataset.status,
        hasPicture: f.querySelector('img') !== null }));""")
    check(len(cards) > 1, "the page shows no batch")
    # What is out of sight waits; here nothing may.
    broken = browser.execute_script("""const images = [...document.querySelectorAll('figure img')];
        return Promise.all(images.map(image => {
            image.loading = 'eager';
            return image.decode().catch(() => {})
                .then(() => image.naturalWidth > 0 ? [] : [image.alt]);
        })).then(names => names.flat());""")
    check(not broken, f"pictures that do not load: {broken}")
    check_filter(browser, cards)

    for scheme, channels in ("light", range(601, 766)), ("dark", range(150)):
        browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})
        ground = browser.execute_script("return getComputedStyle(document.body).backgroundColor;")
        check(sum(map(int, re.findall(r"\d+", ground)[:3])) in channels,
              f"the {scheme} ground is {ground}")
        if folder:
            browser.save_screenshot(f"{folder}/{scheme}.png")

    # Opens the first picture, goes on to the next and closes, all by keys.
    names = [card["name"] for card in cards if card["hasPicture"]]
    browser.execute_script("document.querySelector('figure button').focus();")
    for key, name in ((Keys.ENTER, names[0]), (Keys.ARROW_RIGHT, names[1]),
                      (Keys.ARROW_LEFT, names[0]), (Keys.ESCAPE, False)):
        ActionChains(browser).send_keys(key).perform()
        shown = browser.execute_script("""const dialog = document.querySelector('dialog');
            return dialog.open && dialog.querySelector('bdi').textContent;""")
        check(shown == name, f"key {ascii(key)}: shown is {shown}")
        if folder and key == Keys.ARROW_LEFT:
            browser.save_screenshot(f"{folder}/full.png")

    messages = [entry["message"] for entry in browser.get_log("browser")]
    check(not messages, f"the console says {messages}")
    loaded = browser.execute_script("""return performance.getEntriesByType('resource')
        .map(entry => entry.name.slice(0, 99)).filter(name => !name.startsWith('data:'));""")
    check(not loaded, f"the page loads {loaded}")
    print(f"{len(cards)} results, {len(names)} pictures looked at")


def check_documents(browser, paths):
    for path in paths:
        browser.get(pathlib.Path(path).resolve().as_uri())
        state = browser.execute_script("""const fault = document.querySelector('parsererror');
            return fault ? fault.textContent : document.documentElement.localName;""")
        check(state == "svg", f"{path}: {state}")
    check(paths, "there are no documents")
    print(f"{len(paths)} documents opened")


def paint(browser, cells, page):
    """A picture of a page on which each cell holds HTML."""
    style = f"position:absolute;width:{CELL}px;height:{CELL}px;overflow:hidden"
    page.write_text("<!doctype html><meta charset=utf-8><body>" + "".join(
        f'<div style="{style};left:{i % COLUMNS * CELL}px;top:{i // COLUMNS * CELL}px">{cell}</div>'
        for i, cell in enumerate(cells)), encoding="utf-8")
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
        "width": COLUMNS * CELL, "height": -(-len(cells) // COLUMNS) * CELL,
        "deviceScaleFactor": 1, "mobile": False})
    browser.get(page.resolve().as_uri())
    shot = browser.execute_cdp_cmd("Page.captureScreenshot", {})
    return numpy.asarray(Image.open(io.BytesIO(base64.b64decode(shot["data"]))).convert("RGB"),
                         dtype=int)


def check_inline(browser, paths):
    """Whatever the documents before and behind it define, each looks as it does in a frame."""
    documents = [pathlib.Path(path).read_text(encoding="utf-8") for path in paths]
    frame = f'<iframe style="border:0;width:{CELL}px;height:{CELL}px" srcdoc="%s"></iframe>'
    alone = paint(browser, [
        frame % html.escape("<!doctype html><body style='margin:0;overflow:hidden'>" + text) for text in documents
    ], pathlib.Path("frames.html"))
    inline = paint(browser, documents, pathlib.Path("inline.html"))
    for i, path in enumerate(paths):
        row, column = i // COLUMNS * CELL, i % COLUMNS * CELL
        cell = (slice(row, row + CELL), slice(column, column + CELL))
        check((abs(alone[cell] - inline[cell]).max(axis=2) > 64).mean() < 0.0005,
              f"{path} looks different among others")
    check((inline < 128).any(), "nothing is drawn")
    print(f"{len(paths)} documents on one page")


if __name__ == "__main__":
    with new_browser() as chromium:
        if sys.argv[1] == "gallery":
            check_gallery(chromium, *sys.argv[2:])
        elif sys.argv[1] == "inline":
            check_inline(chromium, sys.stdin.read().splitlines())
        else:
            check_documents(chromium, sys.stdin.read().splitlines())
    sys.exit(findings > 0)
