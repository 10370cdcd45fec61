#!/usr/bin/python3
"""Uses the page for metafiles in a headless Chromium as people do.

usage: page.py BUILD SAMPLES [FOLDER]   with the page and the package in BUILD; puts pictures into FOLDER

Prints a line per finding and ends with status 1 if there is one.
"""
import functools
import http.server
import itertools
import pathlib
import re
import struct
import sys
import tempfile
import threading
import time
import xml.etree.ElementTree
import zipfile

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.wait import WebDriverWait

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "house"))
import browser as house

FILES = 50
MARKUP = ['"><img src=x onerror=alert(1)>', "<script>alert(1)<", "&lt;b&gt; %1 ${alert(1)}",
          "'onload='alert(1)", "@SCRIPT@", "\u202egnp.x", "Zeichnung 1 \u00e4\u00df\u6587"]
EVIL_FACE = '"/><script>alert(1)</script>'
EMR_EXTCREATEFONTINDIRECTW, FACE_OFFSET = 82, 40


def with_evil_faces(emf):
    """An EMF all of whose fonts have a name that tries to be markup."""
    emf, at, count = bytearray(emf), 0, 0
    while at < len(emf):
        kind, size = struct.unpack_from("<II", emf, at)
        if kind == EMR_EXTCREATEFONTINDIRECTW:
            struct.pack_into("64s", emf, at + FACE_OFFSET, EVIL_FACE.encode("utf-16-le"))
            count += 1
        at += size
    assert count > 0
    return bytes(emf)


def make_files(folder, samples):
    """Metafiles of all kinds, some with names or faces that try to be markup, and one that is none."""
    contents = [path.read_bytes() for path in sorted(samples.glob("*.?mf"))]
    paths = []
    for number, content in zip(range(FILES), itertools.cycle(contents)):
        stem = MARKUP[number] if number < len(MARKUP) else f"picture {number}"
        paths.append(folder / f"{stem}.emf")
        paths[-1].write_bytes(content)
    paths[-3].write_bytes(with_evil_faces((samples / "chart.emf").read_bytes()))
    paths[-2].write_bytes(contents[0][:3000])
    paths[-1].write_bytes(b"no metafile at all, but <b>text</b>")
    return paths


def drop(browser, paths):
    data = {"items": [], "files": [str(path) for path in paths], "dragOperationsMask": 1}
    for kind in "dragEnter", "dragOver", "drop":
        browser.execute_cdp_cmd("Input.dispatchDragEvent",
                                {"type": kind, "x": 300, "y": 300, "data": data})


def wait_for(browser, script, what):
    try:
        return WebDriverWait(browser, 60).until(lambda _: browser.execute_script(script))
    except Exception:
        house.check(False, f"there is never {what}")
        return None


def press(browser, *keys):
    ActionChains(browser).send_keys(*keys).perform()


def click(browser, selector):
    browser.execute_script("document.querySelector(arguments[0]).click();", selector)


def check_cards(browser, paths):
    cards = browser.execute_script("""
        const broken = [...document.querySelectorAll('article img')].map(image =>
            image.decode().then(() => [], () => [image.src]));
        return Promise.all(broken).then(lists => ({
            broken: lists.flat(),
            names: Array.from(document.querySelectorAll('article h2'), name => name.textContent),
            verdicts: Array.from(document.querySelectorAll('article .verdict'), v => v.textContent),
            elements: new Set(Array.from(document.querySelectorAll('article *'), e => e.localName))
                .size,
            scripts: document.scripts.length }));""")
    names = [path.name.replace("\u202e", "\ufffd") for path in paths]
    house.check(cards["names"] == names, f"the names are {cards['names']}")
    house.check(not cards["broken"], f"pictures that do not load: {cards['broken']}")
    house.check(cards["verdicts"][-2:] == ["damaged", "refused"], f"verdicts: {cards['verdicts']}")
    # button, img, div, span, h2, p: what the template has.
    house.check(cards["elements"] == 6 and cards["scripts"] == 1, "a name has become markup")


def check_keys(browser, paths):
    browser.execute_script("document.querySelector('article button').focus();")
    state = """const dialog = document.querySelector('dialog');
        return dialog.open && [dialog.querySelector('h2').textContent,
                               parseInt(document.querySelector('#zoom').value)];"""
    press(browser, Keys.ENTER)
    name, zoom = browser.execute_script(state)
    house.check(name == paths[0].name, f"Enter opens {name}")
    press(browser, "+")
    house.check(browser.execute_script(state)[1] > zoom, "+ does not enlarge")
    press(browser, "0")
    house.check(browser.execute_script(state)[1] == zoom, "0 does not fit")
    press(browser, Keys.ARROW_RIGHT)
    house.check(browser.execute_script(state)[0] == paths[1].name, "the right arrow does not go on")
    press(browser, Keys.ARROW_LEFT, Keys.ARROW_LEFT)
    house.check(browser.execute_script(state)[0] == paths[-2].name, "the left arrow does not go back")
    click(browser, "#tell")
    rows = browser.execute_script("return document.querySelector('#report').innerText;")
    house.check("EMR_RECTANGLE" in rows and "record cut off at offset" in rows, f"the report says {rows}")
    house.check(unnamed(browser) == [], f"without a name for screen readers: {unnamed(browser)}")


def unnamed(browser):
    """What can be operated, and has no name for a screen reader."""
    tree = browser.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
    return [node["role"]["value"] for node in tree if not node.get("ignored")
            and node["role"]["value"] in ("button", "dialog", "image", "textbox", "status")
            and not node.get("name", {}).get("value") and node["role"]["value"] != "status"]


def check_downloads(browser, folder, paths):
    browser.execute_cdp_cmd("Browser.setDownloadBehavior", {
        "behavior": "allow", "downloadPath": str(folder)})
    click(browser, "#all")
    click(browser, "article:nth-child(8) .save")
    single = folder / f"{paths[7].name}.svg"
    deadline = time.monotonic() + 60
    while not ((folder / "pictures.zip").exists() and single.exists()):
        if time.monotonic() > deadline:
            house.check(False, f"downloaded are {[path.name for path in folder.iterdir()]}")
            return
        time.sleep(0.1)
    with zipfile.ZipFile(folder / "pictures.zip") as archive:
        house.check(archive.testzip() is None, "the archive is damaged")
        house.check(archive.namelist() == [f"{path.name}.svg" for path in paths[:-1]],
                    f"the archive holds {archive.namelist()}")
        documents = [archive.read(name).decode() for name in archive.namelist()]
    house.check(documents[7] == single.read_text(encoding="utf-8"), "one document differs in the archive")
    for path, document in zip(paths, documents):
        root = xml.etree.ElementTree.fromstring(document)
        house.check(not any(element.tag.endswith("script") for element in root.iter()),
                    f"{path.name}: a script is in the document")
    house.check("alert(1)" in documents[-2], "the document does not name the face")

    browser.execute_cdp_cmd("Browser.grantPermissions", {
        "permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})
    click(browser, "article:nth-child(8) .copy")
    wait_for(browser, "return document.querySelector('article:nth-child(8) .copy').textContent"
             " === 'Copied';", "a copy")
    copied = browser.execute_script("return navigator.clipboard.readText();")
    house.check(copied == documents[7], "what is copied is not the document")


def check_page(browser, page, samples, work, folder):
    paths = make_files(work, samples)
    idle = "return document.querySelector('main').ariaBusy !== 'true' " \
           f"&& document.querySelectorAll('article').length === {FILES};"
    browser.get(page.as_uri())
    for scheme, channels in ("light", range(601, 766)), ("dark", range(150)):
        browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})
        shoot = functools.partial(save_picture, browser, folder, scheme)
        ground = browser.execute_script("return getComputedStyle(document.body).backgroundColor;")
        house.check(sum(map(int, re.findall(r"\d+", ground)[:3])) in channels,
                    f"the {scheme} ground is {ground}")
        shoot("empty")
        start = time.monotonic()
        drop(browser, paths)
        wait_for(browser, idle, f"a card for each of {FILES} files")
        seconds = time.monotonic() - start
        check_cards(browser, paths)
        shoot("cards")
        check_keys(browser, paths)
        shoot("report")
        click(browser, "#tell")
        press(browser, Keys.ESCAPE)
        house.check(not browser.execute_script("return document.querySelector('dialog').open;"),
                    "Escape does not close")
        house.check(unnamed(browser) == [], f"without a name for screen readers: {unnamed(browser)}")
        if scheme == "light":
            check_downloads(browser, work, paths)
        click(browser, "#clear")
    browser.find_element("id", "files").send_keys("\n".join(map(str, paths)))
    wait_for(browser, idle, "a card for each file that is chosen")
    summary = browser.execute_script("return document.querySelector('#summary').textContent;")
    house.check(summary.startswith(f"{FILES} files: "), f"the summary is {summary}")

    loaded = browser.execute_script("""return performance.getEntriesByType('resource')
        .map(entry => entry.name.slice(0, 99)).filter(name => !name.startsWith('blob:'));""")
    house.check(not loaded, f"the page loads {loaded}")
    check_console(browser)
    print(f"{FILES} files dropped; all seen after {seconds:.1f} seconds")


def check_console(browser):
    messages = [entry["message"] for entry in browser.get_log("browser")]
    house.check(not messages, f"the console says {messages}")


def save_picture(browser, folder, scheme, name):
    if folder:
        browser.save_screenshot(f"{folder}/{name}-{scheme}.png")


def check_example(browser, build, readme, sample):
    """The README's example of a page, served beside the package."""
    class Handler(http.server.SimpleHTTPRequestHandler):
        def log_message(self, *_):
            pass

    example, = re.findall(r"^```html\n(.*?)^```$", readme.read_text(encoding="utf-8"), re.M | re.S)
    (build / "example.html").write_text(
        f"<!doctype html><meta charset=utf-8><link rel=icon href=data:,>{example}", encoding="utf-8")
    server = http.server.ThreadingHTTPServer(
        ("127.0.0.1", 0), functools.partial(Handler, directory=str(build)))
    threading.Thread(target=server.serve_forever, daemon=True).start()
    browser.get(f"http://127.0.0.1:{server.server_port}/example.html")
    browser.find_element("id", "files").send_keys(str(sample))
    wait_for(browser, "return document.querySelector('#picture').naturalWidth > 0;",
             "a picture in the README's example")
    check_console(browser)
    server.shutdown()


def main():
    build, samples = (pathlib.Path(path).resolve() for path in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as work, house.new_browser() as browser:
        check_page(browser, build / "metafiles.html", samples, pathlib.Path(work),
                   sys.argv[3] if len(sys.argv) > 3 else None)
        readme = samples.parent / "bindings" / "web" / "README.md"
        check_example(browser, build, readme, samples / "chart.emf")
    sys.exit(house.findings > 0)


main()
