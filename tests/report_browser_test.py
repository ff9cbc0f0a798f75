"""Opens a report in headless Chromium, as its reader does, and uses it: everything is there, tables sort,
nothing is fetched and nothing goes wrong. Speaks the browser's debugging protocol over a pair of pipes.

Arguments: the host program, a gating strategy, a directory to work in.
Exit status 77 where there is no browser.
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys

SKIPPED = 77


class Browser:
    """One page, what it reported and what it asked the network for."""

    def __init__(self, program, profile):
        to_browser, self.sending = os.pipe()
        self.receiving, from_browser = os.pipe()
        options = ["--headless=new", "--remote-debugging-pipe", "--disable-gpu", "--no-first-run",
                   f"--user-data-dir={profile}"]
        if os.geteuid() == 0:
            options.append("--no-sandbox")  # which cannot be set up by root
        # The browser expects its ends at the numbers 3 and 4.
        command = f'exec "$@" 3<&{to_browser} 4>&{from_browser}'
        self.process = subprocess.Popen(
            ["bash", "-c", command, "bash", program, *options], pass_fds=[to_browser, from_browser],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.buffer = b""
        self.last_id = 0
        self.events = []
        self.session = None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def close(self):
        self.process.terminate()
        self.process.wait()
        os.close(self.sending)
        os.close(self.receiving)

    def receive(self):
        while b"\0" not in self.buffer:
            piece = os.read(self.receiving, 1 << 16)
            if not piece:
                raise RuntimeError("the browser has ended")
            self.buffer += piece
        message, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **parameters):
        self.last_id += 1
        request = {"id": self.last_id, "method": method, "params": parameters}
        if self.session:
            request["sessionId"] = self.session
        os.write(self.sending, json.dumps(request).encode() + b"\0")
        while True:
            message = self.receive()
            if message.get("id") == self.last_id:
                if "error" in message:
                    raise RuntimeError(f"{method}: {message['error']}")
                return message["result"]
            self.events.append(message)

    def open(self, url):
        self.call("Page.navigate", url=url)
        while not self.find("Page.loadEventFired"):
            self.events.append(self.receive())

    def find(self, *methods):
        return [event["params"] for event in self.events if event.get("method") in methods]

    def evaluate(self, expression):
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def press_enter(self):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key="Enter", code="Enter", text="\r",
                      windowsVirtualKeyCode=13)


def make_report(host, strategy, directory):
    sample = directory / "sample.fcs"
    report = directory / "report.html"
    subprocess.run([host, "acquire", "--events", "20000", "-o", sample], check=True)
    subprocess.run([host, "report", sample, "--gates", strategy, "-o", report], check=True)
    return report


COLUMN = """Array.from(document.querySelector('table.sortable').tBodies[0].rows,
                       row => Number(row.cells[3].textContent))"""
BUTTON = "document.querySelector('table.sortable').tHead.rows[0].cells[3].querySelector('button')"
DIRECTION = BUTTON + ".parentElement.getAttribute('aria-sort')"


def check_sorting(browser):
    original = browser.evaluate(COLUMN)
    assert original != sorted(original), "a column that is sorted already shows nothing"
    browser.evaluate(BUTTON + ".click()")
    assert browser.evaluate(COLUMN) == sorted(original)
    assert browser.evaluate(DIRECTION) == "ascending"
    browser.evaluate(BUTTON + ".focus()")
    browser.press_enter()
    assert browser.evaluate(COLUMN) == sorted(original, reverse=True)
    assert browser.evaluate(DIRECTION) == "descending"
    browser.press_enter()
    assert browser.evaluate(COLUMN) == original


def check_narrow_window(browser):
    browser.call("Emulation.setDeviceMetricsOverride", width=390, height=800, deviceScaleFactor=2, mobile=True)
    assert browser.evaluate("document.documentElement.scrollWidth") <= 390, "the page scrolls sideways"


def check_pictures(browser):
    broken = browser.evaluate("Array.from(document.images).filter(image => !image.naturalWidth).length")
    assert broken == 0, f"{broken} pictures cannot be shown"
    assert browser.evaluate("document.images.length") > 0, "there is no picture"


def check_styles(browser):
    addresses = browser.evaluate("document.documentElement.outerHTML.match(/url\\(.{0,9}|@import/g) || []")
    strangers = [address for address in addresses if not address.startswith(("url(data:", 'url("data:'))]
    assert not strangers, f"the styles ask for {strangers}"


def check_silence(browser, url):
    said = browser.find("Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Log.entryAdded")
    assert not said, f"the page reports {said}"
    asked = [request["request"]["url"] for request in browser.find("Network.requestWillBeSent")]
    strangers = [address for address in asked if address != url and not address.startswith("data:")]
    assert url in asked and not strangers, f"the page asks for {strangers}"


def main(host, strategy, directory):
    program = shutil.which("chromium")
    if not program:
        return SKIPPED
    directory = pathlib.Path(directory)
    shutil.rmtree(directory, ignore_errors=True)
    directory.mkdir(parents=True)
    url = make_report(host, strategy, directory).as_uri()
    browser = Browser(program, directory / "profile")
    try:
        browser.open(url)
        check_sorting(browser)
        check_pictures(browser)
        check_styles(browser)
        check_narrow_window(browser)
        check_silence(browser, url)
    finally:
        browser.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
