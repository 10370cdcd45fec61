#!/usr/bin/env python3
"""Looks at pages and documents in a headless Chromium, which chromedriver drives.

usage: browser.py gallery PAGE [FOLDER]   checks a page of metafile2svg --gallery; puts pictures of
                                          it into FOLDER
       browser.py documents < LIST        opens every SVG document that the list names, one a line

Prints a line per finding and ends with status 1 if there is one, with 77 where Chromium is missing.
"""
import base64
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.request

ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--disable-quic"]
findings = 0


def check(holds, text):
    global findings
    if not holds:
        findings += 1
        print("FOUND:", text)


class Browser:
    """A Chromium of its own, with an empty profile; speaks WebDriver."""

    def __enter__(self):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, text=True)
        try:
            lines = (re.search(r"successfully on port (\d+)", line) for line in self.driver.stdout)
            port = next(line[1] for line in lines if line)
            self.base = f"http://127.0.0.1:{port}/session"
            options = {"args": ARGUMENTS + [f"--user-data-dir={self.profile.name}"]}
            session = self.call("", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"},
                "timeouts": {"pageLoad": 600000, "script": 600000}}}})
            self.base += "/" + session["sessionId"]
        except BaseException:
            self.driver.terminate()
            raise
        return self

    def __exit__(self, *_):
        try:
            urllib.request.urlopen(urllib.request.Request(self.base, method="DELETE"))
        finally:
            self.driver.terminate()
            self.driver.wait()
            self.profile.cleanup()

    def call(self, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data)
        with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(request) as answer:
            return json.load(answer)["value"]

    def open(self, path):
        self.call("/url", {"url": pathlib.Path(path).resolve().as_uri()})

    def run(self, script):
        """The value that a function body returns, or that its promise becomes."""
        return self.call("/execute/sync", {"script": script, "args": []})

    def press(self, key):
        self.call("/actions", {"actions": [{"type": "key", "id": "keys", "actions": [
            {"type": "keyDown", "value": key}, {"type": "keyUp", "value": key}]}]})

    def develop(self, command, **parameters):
        return self.call("/goog/cdp/execute", {"cmd": command, "params": parameters})

    def messages(self):
        return [entry["message"] for entry in self.call("/se/log", {"type": "browser"})]

    def picture(self, path):
        pathlib.Path(path).write_bytes(base64.b64decode(self.call("/screenshot")))


SHOWN = """return Array.from(document.querySelectorAll('figure:not([hidden]) bdi'),
                             name => name.textContent);"""
OPEN = """const dialog = document.querySelector('dialog');
          return dialog.open && dialog.querySelector('bdi').textContent;"""


def check_filter(browser, cards):
    """Filters by part of a name and by each result; leaves all files shown."""
    def shown(name, status):
        values = json.dumps([["name", name], ["status", status]])
        browser.run(f"""for (const [id, value] of {values}) {{
            const field = document.getElementById(id);
            field.value = value;
            field.dispatchEvent(new Event('input', {{ bubbles: true }}));
        }}""")
        return browser.run(SHOWN)

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
    browser.run("document.querySelector('figure button').focus();")
    for key, name in (("\ue007", names[0]), ("\ue014", names[1]), ("\ue012", names[0]),
                      ("\ue00c", False)):
        browser.press(key)
        check(browser.run(OPEN) == name, f"key {ascii(key)}: shown is {browser.run(OPEN)}")


def check_gallery(browser, page, folder):
    browser.develop("Emulation.setDeviceMetricsOverride", width=1200, height=900,
                    deviceScaleFactor=1, mobile=False)
    browser.open(page)
    cards = browser.run("""return Array.from(document.querySelectorAll('figure'), f => ({
        name: f.querySelector('bdi').textContent, status: f.dataset.status,
        hasPicture: f.querySelector('img') !== null }));""")
    check(len(cards) > 1, "the page shows no batch")
    # What is out of sight waits; here nothing may.
    broken = browser.run("""const images = [...document.querySelectorAll('figure img')];
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
        browser.develop("Emulation.setEmulatedMedia",
                        features=[{"name": "prefers-color-scheme", "value": scheme}])
        grounds.append(browser.run(ground))
        if folder:
            browser.picture(f"{folder}/{scheme}.png")
    channels = [sum(map(int, re.findall(r"\d+", text)[:3])) for text in grounds]
    check(channels[0] > 600 > 150 > channels[1], f"the grounds are {grounds}")

    if folder:
        browser.run("document.querySelector('figure button').click();")
        time.sleep(0.5)
        browser.picture(f"{folder}/full.png")
        browser.run("document.querySelector('#close').click();")
    messages = browser.messages()
    check(not messages, f"the console says {messages}")
    loaded = browser.run("""return performance.getEntriesByType('resource')
        .map(entry => entry.name.slice(0, 99)).filter(name => !name.startsWith('data:'));""")
    check(not loaded, f"the page loads {loaded}")
    check_full_size(browser, cards)
    print(f"{len(cards)} results, {sum(card['hasPicture'] for card in cards)} pictures looked at")


def check_documents(browser, paths):
    for path in paths:
        browser.open(path)
        state = browser.run("""const fault = document.querySelector('parsererror');
            return fault ? fault.textContent : document.documentElement.localName;""")
        check(state == "svg", f"{path}: {state}")
    check(paths, "there are no documents")
    print(f"{len(paths)} documents opened")


def main():
    if not shutil.which("chromium") or not shutil.which("chromedriver"):
        print("skipped: there is no Chromium; scripts/setup.sh browser installs it")
        return 77
    with Browser() as browser:
        if sys.argv[1] == "gallery":
            check_gallery(browser, sys.argv[2], sys.argv[3] if len(sys.argv) > 3 else None)
        else:
            check_documents(browser, sys.stdin.read().splitlines())
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
