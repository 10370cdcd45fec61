#!/usr/bin/python3
"""Looks at pages and documents in a headless Chromium, which Selenium drives.

usage: browser.py gallery PAGE [FOLDER]   checks a page of metafile2svg --gallery; puts pictures of
                                          it into FOLDER
       browser.py documents < LIST        opens every SVG document that the list names, one a line

Prints a line per finding and ends with status 1 if there is one.
"""
import json
import pathlib
import re
import sys
import time

from selenium.webdriver import Chrome, ChromeOptions
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--disable-quic"]
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
    return browser


def open_file(browser, path):
    browser.get(pathlib.Path(path).resolve().as_uri())


SHOWN = """return Array.from(document.querySelectorAll('figure:not([hidden]) bdi'),
                             name => name.textContent);"""
OPEN = """const dialog = document.querySelector('dialog');
          return dialog.open && dialog.querySelector('bdi').textContent;"""


def check_filter(browser, cards):
    """Filters by part of a name and by each result; leaves all files shown."""
    def shown(name, status):
        values = json.dumps([["name", name], ["status", status]])
        browser.execute_script(f"""for (const [id, value] of {values}) {{
            const field = document.getElementById(id);
            field.value = value;
            field.dispatchEvent(new Event('input', {{ bubbles: true }}));
        }}""")
        return browser.execute_script(SHOWN)

    part = cards[-1]["name"][-7:].lower()
    check(shown(part.upper(), "") == [c["name"] for c in cards if part in c["name"].lower()],
          f"the names with {part} are others")
    for status in {card["status"] for card in cards}:
        check(shown("", status) == [c["name"] for c in cards if c["status"] == status],
              f"the files that are {status} are others")
    check(shown("no such name", "") == [], "a name that there is not leaves files")
    check(len(shown("", "")) == len(cards), "without a filter, files are missing")


def check_full_size(browser, cards):
    """Opens the first picture, goes on to the next and closes, all by keys."""
    names = [card["name"] for card in cards if card["hasPicture"]]
    browser.execute_script("document.querySelector('figure button').focus();")
    for key, name in ((Keys.ENTER, names[0]), (Keys.ARROW_RIGHT, names[1]),
                      (Keys.ARROW_LEFT, names[0]), (Keys.ESCAPE, False)):
        ActionChains(browser).send_keys(key).perform()
        shown = browser.execute_script(OPEN)
        check(shown == name, f"key {ascii(key)}: shown is {shown}")


def check_gallery(browser, page, folder):
    browser.set_window_size(1200, 900)
    open_file(browser, page)
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

    ground = "return getComputedStyle(document.body).backgroundColor;"
    grounds = []
    for scheme in "light", "dark":
        browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})
        grounds.append(browser.execute_script(ground))
        if folder:
            browser.save_screenshot(f"{folder}/{scheme}.png")
    channels = [sum(map(int, re.findall(r"\d+", text)[:3])) for text in grounds]
    check(channels[0] > 600 > 150 > channels[1], f"the grounds are {grounds}")

    if folder:
        browser.execute_script("document.querySelector('figure button').click();")
        time.sleep(0.5)
        browser.save_screenshot(f"{folder}/full.png")
        browser.execute_script("document.querySelector('#close').click();")
    messages = [entry["message"] for entry in browser.get_log("browser")]
    check(not messages, f"the console says {messages}")
    loaded = browser.execute_script("""return performance.getEntriesByType('resource')
        .map(entry => entry.name.slice(0, 99)).filter(name => !name.startsWith('data:'));""")
    check(not loaded, f"the page loads {loaded}")
    check_full_size(browser, cards)
    print(f"{len(cards)} results, {sum(card['hasPicture'] for card in cards)} pictures looked at")


def check_documents(browser, paths):
    for path in paths:
        open_file(browser, path)
        state = browser.execute_script("""const fault = document.querySelector('parsererror');
            return fault ? fault.textContent : document.documentElement.localName;""")
        check(state == "svg", f"{path}: {state}")
    check(paths, "there are no documents")
    print(f"{len(paths)} documents opened")


def main():
    with new_browser() as browser:
        if sys.argv[1] == "gallery":
            check_gallery(browser, sys.argv[2], sys.argv[3] if len(sys.argv) > 3 else None)
        else:
            check_documents(browser, sys.stdin.read().splitlines())
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
