#!/usr/bin/python3
"""Opens an exported page as others do, and compares it with the document that it was made of.

usage: html_page.py PAGE.html DOCUMENT.json [--screenshots FOLDER]

DOCUMENT.json is what `vornwout show --json` prints. An HTML validator finds no error; headless Chromium loads
the page without an error on its console and without a request for anything else; every text, number and label
of the document's tables is in the page, in order; layers are picked by mouse and by keyboard.
"""

import argparse
import json
import pathlib
import subprocess
import sys

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from documents import shown_cells

FAULTS = []


def check(condition, what):
    """Notes a fault; all of them are told at the end."""
    if not condition:
        FAULTS.append(what)


def check_markup(page):
    """The validator's errors; its warnings are matters of taste."""
    result = subprocess.run(
        ["tidy", "-quiet", "-errors", "--show-warnings", "no", "--mute-id", "yes", str(page)],
        capture_output=True, text=True, check=False)
    check(result.returncode < 2, "the validator refuses the page:\n" + result.stderr[:2000])


def open_browser():
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--window-size=1280,900", "--hide-scrollbars"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def check_requests(browser, page):
    """The page alone is asked for; what stands in it as data is no request."""
    for entry in browser.get_log("performance"):
        message = json.loads(entry["message"])["message"]
        if message["method"] != "Network.requestWillBeSent":
            continue
        url = message["params"]["request"]["url"]
        allowed = url.startswith("data:") or url == page.as_uri()
        check(allowed, "the page asks for " + url[:200])
    for entry in browser.get_log("browser"):
        check(False, "on the console: " + entry["message"][:300])


def check_values(browser, document):
    """Every cell and label of every visible table stands in the page's tables."""
    shown = browser.execute_script(
        "return [...document.querySelectorAll('table')].map(t =>"
        " [...t.querySelectorAll('td,th')].map(c => {"
        "  const copy = c.cloneNode(true);"
        "  copy.querySelectorAll('sup').forEach(s => s.remove());"
        "  return copy.textContent; }))")
    texts = {}
    for table in shown:
        for text in table:
            texts[text] = texts.get(text, 0) + 1
    count = 0
    for text in shown_cells(document):
        count += 1
        left = texts.get(text, 0)
        check(left > 0, "the page does not show " + repr(text))
        texts[text] = left - 1
    check(count > 0, "the document has no cells to compare")
    return count


def visible_panels(group):
    return [i for i, panel in enumerate(group.find_elements(By.CSS_SELECTOR, ":scope > .panel"))
            if panel.is_displayed()]


def check_layers(browser):
    """One layer is seen at a time, picked by mouse or by keyboard."""
    groups = browser.find_elements(By.CSS_SELECTOR, ".layers")
    for group in groups:
        labels = group.find_elements(By.CSS_SELECTOR, ":scope > label")
        inputs = group.find_elements(By.CSS_SELECTOR, ":scope > input")
        check(len(visible_panels(group)) == 1, "more or less than one layer is seen at first")
        browser.execute_script("arguments[0].scrollIntoView({block: 'center'})", labels[-1])
        labels[-1].click()
        check(visible_panels(group) == [len(labels) - 1], "a click does not pick the last layer")
        inputs[-1].send_keys(Keys.ARROW_LEFT)
        check(visible_panels(group) == [len(labels) - 2], "an arrow does not pick the layer before")
    return len(groups)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("page", type=pathlib.Path)
    parser.add_argument("document", type=pathlib.Path)
    parser.add_argument("--screenshots", type=pathlib.Path)
    arguments = parser.parse_args()
    page = arguments.page.resolve()
    document = json.loads(arguments.document.read_text(encoding="utf-8"))
    check_markup(page)
    browser = open_browser()
    try:
        browser.get(page.as_uri())
        check_requests(browser, page)
        cells = check_values(browser, document)
        pickers = check_layers(browser)
        if arguments.screenshots:
            for name, scheme in (("light", "light"), ("dark", "dark")):
                browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
                    "features": [{"name": "prefers-color-scheme", "value": scheme}]})
                browser.execute_script("window.scrollTo(0, 0)")
                browser.save_screenshot(str(arguments.screenshots / (page.stem + "-" + name + ".png")))
        check_requests(browser, page)
    finally:
        browser.quit()
    print(f"{page.name}: {cells} cells compared, {pickers} layer pickers used")
    for fault in FAULTS[:20]:
        print("  " + fault, file=sys.stderr)
    sys.exit(1 if FAULTS else 0)


if __name__ == "__main__":
    main()
