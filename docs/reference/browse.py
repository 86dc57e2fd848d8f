#!/usr/bin/env python3
"""Uses the reference as a reader does, in headless Chromium: finds tasks by the words of a newcomer, and looks at pages
of each kind on a narrow screen. Argument: the folder of the pages."""
import http.client
import json
import pathlib
import re
import subprocess
import sys
import tempfile

# Each leads to one of these tasks among the first three hits.
WORDS = {
    "iso": "times", "date": "times", "time zone": "times", "chrono": "times", "compare": "text times",
    "read": "values", "json": "values", "map": "values", "precision": "values", "parse": "values identify times",
    "split": "records", "exception": "records", "progress": "progress", "lock": "progress", "thread": "progress",
    "uuid": "identify", "guid": "identify", "trim": "text", "utf": "text", "replace": "text", "wide": "text",
    "escape": "text", "format": "format", "file": "model", "stream": "model", "statistics": "model",
    "look up": "translate",
}
PAGES = ["index", "md_*", "files", "annotated", "namespacemembers", "namespaceTarn", "classTarn_1_1Time",
         "StringUtilities_8h"]
ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync"]
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # The name that the WebDriver protocol gives it.
ENTER, ESCAPE, DOWN = "\ue007", "\ue00c", "\ue015"


class Browser:
    def __init__(self, port, profile):
        self.port, self.session = port, ""
        options = {"args": [*ARGUMENTS, "--user-data-dir=" + profile]}
        wanted = {"goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}, "pageLoadStrategy": "eager"}
        self.session = "/" + self.call("", capabilities={"alwaysMatch": wanted})["sessionId"]

    def call(self, path, method="POST", **body):
        connection = http.client.HTTPConnection("127.0.0.1", self.port)
        connection.request(method, "/session" + self.session + path, json.dumps(body) if method == "POST" else None)
        value = json.loads(connection.getresponse().read())["value"]
        if isinstance(value, dict) and "error" in value:
            raise RuntimeError(value["message"])
        return value

    def run(self, script):
        return self.call("/execute/sync", script="return " + script, args=[])

    def open(self, path):
        self.call("/url", url=path.resolve().as_uri())

    def type(self, keys):
        self.call("/element/" + self.call("/element/active", "GET")[ELEMENT] + "/value", text=keys)


def check(browser, folder):
    browser.open(folder / "classTarn_1_1Time.html")
    browser.type("/")
    for word, tasks in WORDS.items():
        browser.run(f"field.value = '{word}', show()")
        hits = browser.run("[...document.querySelectorAll('#search a')].map(link => link.getAttribute('href'))")[:3]
        if not any("index.html#" + task in hits for task in tasks.split()):
            yield f"'{word}' leads to {', '.join(hits) or 'nothing'}"
    browser.type(ESCAPE)
    if browser.run("document.querySelector('#search ol').offsetHeight") > 0:
        yield "Escape does not close the hits"
    for at, keys in enumerate(([], [DOWN, DOWN])):
        browser.type("time")
        hit = browser.run(f"document.querySelectorAll('#search a')[{at}].href")
        for key in [*keys, ENTER]:
            browser.type(key)
        if browser.run("location.href") != hit:
            yield f"{len(keys)} times down and Enter lead to {browser.run('location.href')}, not to {hit}"
        browser.open(folder / "files.html")
        browser.type("/")
    browser.call("/goog/cdp/execute", cmd="Emulation.setDeviceMetricsOverride",
                 params={"width": 420, "height": 900, "deviceScaleFactor": 1, "mobile": False})
    for path in sorted(path for page in PAGES for path in folder.glob(page + ".html")):
        browser.open(path)
        width = browser.run("document.documentElement.scrollWidth")
        if width > 420:
            yield f"{path.name} is {width} wide on a screen of 420"
    yield from {line["message"] for line in browser.call("/se/log", type="browser")}


driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True)
try:
    port = next(filter(None, (re.search(r"started successfully on port (\d+)", line) for line in driver.stdout)))[1]
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        browser = Browser(int(port), profile)
        try:
            faults = list(check(browser, pathlib.Path(sys.argv[1])))
        finally:
            browser.call("", "DELETE")
finally:
    driver.terminate()
print(*faults, f"{len(WORDS)} words looked up, {len(faults)} faults", sep="\n")
sys.exit(len(faults) > 0)
