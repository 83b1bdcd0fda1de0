"""Debian's Chromium, headless, driven through its own driver."""

import contextlib
import json
import os
import pathlib
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service

LIMIT = 100  # seconds: what takes longer never comes


class Browser(webdriver.Chrome):
    """A browser that knows what it said and what it asked for."""

    def open(self, page):
        self.get(pathlib.Path(page).resolve().as_uri())

    def errors(self):
        """What the console said of errors since it was asked last."""
        return [entry["message"] for entry in self.get_log("browser") if entry["level"] in ("SEVERE", "WARNING")]

    def requests(self):
        """The addresses that pages asked for since this was asked last, but for those that a policy refused."""
        asked = {}
        for entry in self.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            details = message["params"]
            if message["method"] == "Network.requestWillBeSent":
                asked[details["requestId"]] = details["request"]["url"]
            elif message["method"] == "Network.loadingFailed" and details.get("blockedReason") == "csp":
                asked.pop(details["requestId"], None)
        return list(asked.values())

    def emulate(self, media="", **features):
        """Shows pages as for that medium, with those features: prefers_color_scheme="dark"."""
        listed = [{"name": name.replace("_", "-"), "value": value} for name, value in features.items()]
        self.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": media, "features": listed})

    def size(self, width, height):
        """Gives the page that many pixels, which no window's border takes from."""
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False}
        self.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)


@contextlib.contextmanager
def browser():
    """A browser with a profile of its own; both are gone afterwards."""
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        options = Options()
        options.binary_location = "/usr/bin/chromium"
        for argument in ("--headless=new", f"--user-data-dir={profile}", "--disable-gpu", "--disable-dev-shm-usage",
                         "--hide-scrollbars", "--no-first-run", "--disable-background-networking"):
            options.add_argument(argument)
        if os.getuid() == 0:
            options.add_argument("--no-sandbox")  # Chromium's refuses to work for root
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        started = Browser(service=Service("/usr/bin/chromedriver"), options=options)
        try:
            started.set_page_load_timeout(LIMIT)
            yield started
        finally:
            started.quit()
