"""The timeline's page in a browser.

Arguments: cmake/wine-run, a Wine prefix, and the program that writes the pages."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from browser import LIMIT, browser
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

WRITE_PAGES = None
MARKUP = '</script><script>window.broken = 1</script><img src=x onerror="window.broken = 2">'
LANES = ["platform", "app", "service", "helper", "desktop component"]

PLACES = """return [...document.querySelectorAll(arguments[0])].map((item) => {
    const shape = (item.querySelector("rect") ?? item.querySelector("path")).getBoundingClientRect();
    return { name: item.getAttribute("aria-label").split(",")[0], left: shape.left, right: shape.right };
});"""


class TimelineTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        subprocess.run(WRITE_PAGES, cwd=cls.folder, check=True)
        cls.browser = cls.enterClassContext(browser())

    def setUp(self):
        self.browser.emulate(prefers_color_scheme="light")
        self.browser.size(1200, 900)
        self.open("small")

    def tearDown(self):
        self.assertEqual([], self.browser.errors())

    # --- what the tests ask of the page -------------------------------------------------------------------------------

    def open(self, name):
        self.browser.requests()
        self.browser.errors()
        self.browser.open(self.folder / f"{name}.html")

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def one(self, selector):
        found = self.browser.find_elements(By.CSS_SELECTOR, selector)
        self.assertEqual(1, len(found), selector)
        return found[0]

    def count(self, selector):
        return len(self.browser.find_elements(By.CSS_SELECTOR, selector))

    def texts(self, selector):
        return [each.text for each in self.browser.find_elements(By.CSS_SELECTOR, selector)]

    def item(self, name):
        """A span or a mark; the first of that name."""
        return self.browser.find_elements(By.CSS_SELECTOR, f'.item[aria-label^="{name},"]')[0]

    def wait_for(self, condition, what):
        WebDriverWait(self.browser, LIMIT, 0.02).until(lambda _: condition(), what)

    def wait_for_equal(self, expected, asked):
        self.wait_for(lambda: asked() == expected, f"{expected}, instead of {asked()}")

    def press(self, *keys):
        ActionChains(self.browser).send_keys(*keys).perform()

    def range(self):
        """The times shown."""
        return re.fullmatch(r"(\S+ \S+) to (\S+ \S+), (.+)", self.one("#range").text).groups()

    def shown_lines(self):
        """The indexes of the lines shown, None where lines are left out; and which are the own ones."""
        rows = self.script('return [...document.querySelectorAll("#lines tbody tr")]'
                           ".map((row) => [row.dataset.line ?? null, row.ariaCurrent])")
        shown = [None if line is None else int(line) for line, _ in rows]
        return shown, [int(line) for line, current in rows if current == "true"]

    def style(self, selector, name):
        return self.script("return getComputedStyle(document.querySelector(arguments[0]))[arguments[1]]", selector, name)

    def search_for(self, text):
        query = self.one("#query")
        query.clear()
        query.send_keys(text)

    def chart(self):
        self.one("#chart").send_keys("")  # gives it the focus
        return self.one("#chart")

    # --- what is drawn ------------------------------------------------------------------------------------------------

    def test_the_top_says_what_failed(self):
        self.assertEqual("KZEB.log <b>bold</b>", self.browser.title)
        self.assertEqual("KZEB.log <b>bold</b>", self.one("h1").text)
        self.assertEqual("The channel failed first, at 09:30:12 & only once.", self.one("#summary").text)
        self.assertEqual(["worked", "failed", "not seen", "cannot be told"], self.texts("#verdicts .outcome"))
        self.assertEqual(["start-up", "channel", "push", "exit"], self.texts("#verdicts strong"))

    def test_each_lane_has_its_spans_and_marks(self):
        self.assertEqual(LANES, self.texts(".lane-name"))
        counted = self.script('return [...document.querySelectorAll(".lane")].map((lane) =>'
                              ' [lane.querySelectorAll(".span").length, lane.querySelectorAll(".mark").length])')
        self.assertEqual([[2, 1], [2, 29], [1, 1], [1, 0], [0, 1]], counted)

    def test_places_are_proportional_to_times(self):
        spans = {each["name"]: each for each in self.script(PLACES, ".span")}
        marks = {each["name"]: (each["left"] + each["right"]) / 2 for each in self.script(PLACES, ".mark")}
        origin = spans["device"]["left"]
        second = (spans["device"]["right"] - origin) / 20
        self.assertGreater(second, 40)
        for name, begin, end in (("process 1", 0, 10), ("process 2", 5, 20), ("request 1", 10, 12), ("connection", 4, 14)):
            with self.subTest(name):
                self.assertAlmostEqual(origin + begin * second, spans[name]["left"], delta=1)
                self.assertAlmostEqual(origin + end * second, spans[name]["right"], delta=1)
        for name, time in {"step 0": 0, "step 7": 3.5, "step 29": 14.5, "push arrived": 1, "refused": 12}.items():
            with self.subTest(name):
                self.assertAlmostEqual(origin + time * second, marks[name], delta=1)

    def test_a_span_during_which_the_clock_was_set_back_ends_at_once(self):
        spans = {each["name"]: each for each in self.script(PLACES, ".span")}
        device, back = spans["device"], spans["clock set back"]
        self.assertAlmostEqual(device["left"] + (device["right"] - device["left"]) * 18 / 20, back["left"], delta=1)
        self.assertAlmostEqual(3, back["right"] - back["left"], delta=0.5)
        self.assertEqual("clock set back, 09:30:18.000, ends 1 s before its begin",
                         self.item("clock set back").get_attribute("aria-label"))
        self.chart()
        self.press("+", "+", "+", "+", "+", Keys.END)
        self.wait_for(lambda: self.range()[0].endswith("09:30:17.661"), "a begin between its end and its begin")
        self.assertEqual(1, self.count('.item[aria-label^="clock set back"]'))

    def test_no_two_spans_cover_each_other(self):
        boxes = self.script('return [...document.querySelectorAll(".span rect")].map((each) => {'
                            " const { left, right, top, bottom } = each.getBoundingClientRect();"
                            " return [left, right, top, bottom]; })")
        for index, (left, right, top, bottom) in enumerate(boxes):
            for other_left, other_right, other_top, other_bottom in boxes[:index]:
                overlap = left < other_right and other_left < right and top < other_bottom and other_top < bottom
                self.assertFalse(overlap)

    def test_what_failed_is_red_and_nothing_else(self):
        def is_red(selector):
            red, green, blue = map(int, re.findall(r"\d+", self.style(selector, "fill"))[:3])
            return red > 180 and green < 80 and blue < 80

        for selector in (".span.failed rect", ".mark.failed path"):
            self.assertTrue(is_red(selector), selector)
        for selector in (".span.worked rect", ".span.open rect", ".span.neutral rect", ".mark.neutral path"):
            self.assertFalse(is_red(selector), selector)
        self.assertEqual([1, 1], [self.count(".span.failed"), self.count(".mark.failed")])
        self.assertEqual("✕ request 1", self.one(".span.failed text").text)

    # --- lines --------------------------------------------------------------------------------------------------------

    def test_a_click_on_a_mark_shows_its_line_with_five_before_and_after(self):
        self.assertFalse(self.one("#lines").is_displayed())
        self.item("step 20").click()
        self.wait_for_equal((list(range(15, 26)), [20]), self.shown_lines)
        self.assertEqual(["2024-01-05 09:30:10.000", "INFO", "4660", "ZEBMain", "step 20", "C:\\logs\\KZEB.log:1"],
                         self.texts("#lines tr.own td"))
        self.assertEqual("C:\\logs\\KZEB 2024-01-05.log:20", self.texts("#lines td.place")[4])
        self.assertTrue(self.one("#lines-heading").text.startswith("app: step 20, 09:30:10.000"))

    def test_the_first_and_the_last_line_have_fewer_neighbours(self):
        self.item("step 0").click()
        self.wait_for_equal((list(range(6)), [0]), self.shown_lines)
        self.item("step 29").click()
        self.wait_for_equal((list(range(24, 30)), [29]), self.shown_lines)

    def test_a_click_on_a_span_shows_all_its_lines(self):
        self.item("process 1").click()
        self.wait_for_equal(([*range(7), None, *range(14, 25)], [0, 1, 19]), self.shown_lines)
        self.assertEqual("stage: start-up; ended by itself", self.one("#detail").text)
        self.assertIn("process 1, worked, 09:30:00.000, 10 s", self.one("#lines-heading").text)

    def test_what_has_no_line_says_so(self):
        self.item("push arrived").click()
        self.wait_for(lambda: self.one("#detail").text == "no line of the log", "it says so")
        self.assertFalse(self.one("#lines table").is_displayed())
        self.item("step 20").click()
        self.wait_for(lambda: self.one("#lines table").is_displayed(), "the table is back")

    def test_a_stage_leads_to_its_failed_span(self):
        self.one("#verdicts .failed button").click()
        self.wait_for_equal((list(range(19, 30)), [24]), self.shown_lines)
        self.assertIn("request 1", self.one(".item.current").get_attribute("aria-label"))
        self.assertEqual("6 s", self.range()[2])  # its 2 s, and as much before and after

    def test_text_that_looks_like_html_stays_text(self):
        self.assertEqual(MARKUP, self.one("#verdicts .failed span:last-child").text)
        self.click_line_12()
        self.wait_for_equal((list(range(7, 18)), [12]), self.shown_lines)
        self.assertEqual(MARKUP, self.one("#lines tr.own td.message").text)
        self.assertIn(MARKUP, self.one("#lines-heading").text)
        self.item("request 1").click()
        self.wait_for(lambda: "<i>refused</i>" in self.one("#detail").text, "the detail as text")
        self.assertIsNone(self.script("return window.broken ?? null"))
        self.assertEqual([0, 0, 0], [self.count(tag) for tag in ("img", "i", "b")])

    def click_line_12(self):
        self.script('return [...document.querySelectorAll(".mark")].find((mark) =>'
                    ' mark.getAttribute("aria-label").startsWith("</script>"))').click()

    # --- moving about -------------------------------------------------------------------------------------------------

    def test_the_wheel_zooms_where_the_pointer_is(self):
        before = self.script(PLACES, ".span.failed")[0]
        request = self.one(".span.failed rect")
        ActionChains(self.browser).move_to_element(request).perform()
        box = self.script("const b = arguments[0].getBoundingClientRect(); return [b.x + b.width / 2, b.y + 5]", request)
        self.browser.execute_cdp_cmd("Input.dispatchMouseEvent", {
            "type": "mouseWheel", "x": box[0], "y": box[1], "deltaX": 0, "deltaY": -300})
        self.wait_for(lambda: self.range()[2] != "20.8 s", "another range")
        after = self.script(PLACES, ".span.failed")[0]
        self.assertGreater(after["right"] - after["left"], 1.2 * (before["right"] - before["left"]))
        self.assertAlmostEqual((before["left"] + before["right"]) / 2, (after["left"] + after["right"]) / 2, delta=2)

    def test_buttons_zoom_and_return(self):
        whole = self.range()
        self.one("#zoom-in").click()
        self.wait_for(lambda: self.range()[2] == "13.867 s", "a third less")
        self.one("#zoom-out").click()
        self.wait_for_equal(whole, self.range)
        self.one("#failure").click()
        self.wait_for(lambda: self.range() != whole, "the failure")
        self.one("#whole").click()
        self.wait_for_equal(whole, self.range)

    def test_dragging_moves_and_does_not_click(self):
        self.one("#zoom-in").click()
        before = self.range()
        ActionChains(self.browser).click_and_hold(self.item("request 1")).move_by_offset(-100, 0).release().perform()
        self.wait_for(lambda: self.range()[0] > before[0], "later times")
        self.assertEqual(before[2], self.range()[2])
        self.assertFalse(self.one("#lines").is_displayed())

    def test_nothing_beyond_the_ends_is_shown(self):
        whole = self.range()
        self.one("#zoom-out").click()
        self.chart()
        self.press(Keys.ARROW_LEFT, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, "-")
        self.wait_for_equal(whole, self.range)
        self.press("+", Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        self.wait_for(lambda: self.range()[1] == whole[1], "the end")

    def test_keys_move_and_zoom(self):
        self.chart()
        whole = self.range()
        self.press("+", "+")
        self.wait_for(lambda: self.range()[2] == "9.244 s", "less")
        middle = self.range()
        self.press(Keys.ARROW_RIGHT)
        self.wait_for(lambda: self.range()[0] > middle[0], "later times")
        self.press(Keys.ARROW_LEFT)
        self.wait_for_equal(middle, self.range)
        self.press(Keys.HOME)
        self.wait_for(lambda: self.range()[0] == whole[0], "the begin")
        self.press(Keys.END)
        self.wait_for(lambda: self.range()[1] == whole[1], "the end")
        self.press("-", "-")
        self.wait_for_equal(whole, self.range)

    def test_keys_go_from_one_thing_to_the_next_and_open_it(self):
        self.chart()
        names = []
        for _ in range(4):
            self.press(Keys.ARROW_DOWN)
            names.append(self.one(".item.current").get_attribute("aria-label").split(",")[0])
        self.assertEqual(["device", "process 1", "step 0", "step 1"], names)
        self.assertFalse(self.one("#lines").is_displayed())
        current = self.one(".item.current").get_attribute("id")
        self.assertEqual(current, self.one("#chart").get_attribute("aria-activedescendant"))
        self.press(Keys.ENTER)
        self.wait_for_equal((list(range(7)), [1]), self.shown_lines)
        self.press(Keys.ARROW_UP, Keys.ENTER)
        self.wait_for_equal((list(range(6)), [0]), self.shown_lines)

    def test_what_becomes_current_out_of_sight_is_moved_to(self):
        self.chart()
        self.press("+", "+", "+", Keys.END, Keys.ARROW_DOWN, Keys.ARROW_DOWN)  # process 1, of the first 10 s
        self.wait_for(lambda: self.range()[0] == "2024-01-05 09:29:59.600", "the begin")

    def test_a_resized_page_shows_the_same_times(self):
        self.one("#zoom-in").click()
        before = self.range()
        self.browser.size(700, 900)
        self.wait_for(lambda: int(self.one("#chart > svg").get_attribute("width")) < 700, "a narrower chart")
        self.assertEqual(before, self.range())

    # --- search -------------------------------------------------------------------------------------------------------

    def test_search_finds_lines_and_steps_through_them(self):
        self.search_for("STEP 2")  # 2 and 20 to 29, but for 24
        self.wait_for(lambda: self.one("#hits").text == "10 found", "the count")
        self.assertEqual(10, self.count(".item.found"))
        shown = []
        for place in ("1 of 10", "2 of 10", "3 of 10"):
            self.press(Keys.ENTER)
            self.wait_for_equal(place, lambda: self.one("#hits").text)
            shown.append(self.shown_lines()[1])
        self.assertEqual([[2], [20], [21]], shown)
        self.one("#previous").click()
        self.wait_for_equal([20], lambda: self.shown_lines()[1])
        self.one("#next").click()
        self.wait_for_equal([21], lambda: self.shown_lines()[1])

    def test_search_begins_again_behind_the_last_hit(self):
        self.search_for("no channel")  # one line with two marks
        self.press(Keys.ENTER, Keys.ENTER)
        self.wait_for_equal("2 of 2", lambda: self.one("#hits").text)
        self.press(Keys.ENTER)
        self.wait_for_equal("1 of 2", lambda: self.one("#hits").text)
        self.one("#previous").click()
        self.wait_for_equal("2 of 2", lambda: self.one("#hits").text)

    def test_search_finds_spans_by_name_detail_and_stage(self):
        for text, name in (("connection", "connection"), ("ended by itself", "process 1"), ("<i>refused", "request 1")):
            with self.subTest(text):
                self.search_for(text)
                self.press(Keys.ENTER)
                self.wait_for_equal("1 of 1", lambda: self.one("#hits").text)
                self.assertIn(name, self.one(".item.current").get_attribute("aria-label"))
        self.search_for("start-up")
        self.wait_for_equal("2 found", lambda: self.one("#hits").text)

    def test_search_finds_a_line_that_nothing_marks(self):
        self.search_for("no format")
        self.press(Keys.ENTER)
        self.wait_for_equal((list(range(8, 19)), [13]), self.shown_lines)

    def test_search_says_that_nothing_is_found_and_ends_with_its_text(self):
        self.search_for("absent")
        self.wait_for_equal("0 found", lambda: self.one("#hits").text)
        self.press(Keys.ENTER)
        self.assertFalse(self.one("#lines").is_displayed())
        self.press(*[Keys.BACKSPACE] * len("absent"))
        self.wait_for_equal("", lambda: self.one("#hits").text)
        self.assertEqual(0, self.count(".item.found"))

    # --- for everybody ------------------------------------------------------------------------------------------------

    def test_tab_reaches_all_in_order(self):
        reached = []
        for _ in range(10):
            self.press(Keys.TAB)
            reached.append(self.script("const e = document.activeElement; return e.id || e.textContent"))
        self.assertEqual(["start-up", "channel", "query", "previous", "next", "zoom-in", "zoom-out", "whole", "failure",
                          "chart"], reached)
        self.assertNotEqual("none", self.style("#chart", "outlineStyle"))

    def test_a_slash_asks_for_a_search(self):
        self.chart()
        self.press("/")
        self.wait_for_equal("query", lambda: self.script("return document.activeElement.id"))
        self.press("a/b")
        self.assertEqual("a/b", self.one("#query").get_property("value"))

    def test_all_has_roles_and_names(self):
        self.item("step 20").click()
        nodes = self.browser.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        named = {(node["role"]["value"], node.get("name", {}).get("value", "")) for node in nodes if not node["ignored"]}
        expected = {
            ("application", "Timeline"), ("search", ""), ("searchbox", "Search spans and lines"),
            ("button", "Previous hit"), ("button", "Next hit"), ("button", "Zoom in"), ("button", "Zoom out"),
            ("group", "View"), ("group", "platform: spans 2, marks 1"), ("group", "app: spans 2, marks 29"),
            ("group", "service: spans 1, marks 1"), ("group", "helper: spans 1, marks 0"),
            ("group", "desktop component: spans 0, marks 1"), ("button", "request 1, failed, 09:30:10.000, 2 s"),
            ("button", "process 2, open, 09:30:05.000"), ("button", "step 7, 09:30:03.500"), ("table", ""),
            ("columnheader", "Message"), ("region", "Stages"), ("heading", "Stages"), ("main", ""),
        }  # fmt: skip
        self.assertEqual(set(), expected - named)
        self.assertEqual([], [role for role, name in named if role in ("button", "application", "group") and not name])

    def test_dark_mode_is_light_on_dark(self):
        def brightness(selector, name):
            return sum(map(int, re.findall(r"\d+", self.style(selector, name))[:3])) / 3

        for scheme, is_dark in (("light", False), ("dark", True)):
            with self.subTest(scheme):
                self.browser.emulate(prefers_color_scheme=scheme)
                self.wait_for(lambda: (brightness("body", "backgroundColor") < 60) == is_dark, "the paper")
                for selector, name in (("body", "color"), (".lane-name", "fill"), (".span.worked text", "fill"),
                                       ("#query", "color")):
                    self.assertEqual(is_dark, brightness(selector, name) > 127, selector)
                self.assertEqual(is_dark, brightness(".lane-ground", "fill") < 60)
                self.assertEqual(is_dark, brightness(".span.worked rect", "fill") < 127)

    def test_a_width_of_400_pixels_is_enough(self):
        self.browser.size(400, 800)
        for name in ("small", "busy", "long", "empty"):
            with self.subTest(name):
                self.open(name)
                self.assertLessEqual(self.script("return document.documentElement.scrollWidth"), 400)
                self.assertLessEqual(self.one("#chart > svg").size["width"], 400)
        self.open("small")
        self.click_line_12()
        self.wait_for_equal([12], lambda: self.shown_lines()[1])
        self.assertGreater(self.one("#lines tr.own td.message").size["width"], 300)
        self.assertLessEqual(self.script("return document.documentElement.scrollWidth"), 400)
        self.assertEqual([2, 29], [self.count(".lane:nth-child(2) .span"), self.count(".lane:nth-child(2) .mark")])

    def test_print_leaves_the_controls_out(self):
        self.item("step 20").click()
        self.browser.emulate(media="print", prefers_color_scheme="dark")
        self.wait_for(lambda: not self.one("#query").is_displayed(), "no search")
        self.assertFalse(any(each.is_displayed() for each in self.browser.find_elements(By.CSS_SELECTOR, ".controls")))
        for selector in ("h1", "#verdicts", "#chart > svg", "#lines table"):
            self.assertTrue(self.one(selector).is_displayed(), selector)
        self.assertEqual("rgb(255, 255, 255)", self.style("body", "backgroundColor"))
        self.assertEqual("exact", self.style("#chart", "printColorAdjust"))

    # --- other pages --------------------------------------------------------------------------------------------------

    def test_nothing_is_asked_for_but_the_page(self):
        for name in ("small", "busy"):
            self.open(name)
            self.wait_for(lambda: self.count(".item") > 0, "the chart")
            self.assertEqual([(self.folder / f"{name}.html").as_uri()], self.browser.requests())

    def test_the_policy_lets_no_request_and_no_script_through(self):
        refused = self.browser.execute_async_script("""
            const done = arguments[0];
            const refused = [];
            document.addEventListener("securitypolicyviolation", (event) => {
                refused.push(event.effectiveDirective);
                if (refused.length === 3) {
                    done(refused.sort());
                }
            });
            fetch("https://example.invalid/").catch(() => {});
            document.body.append(Object.assign(new Image(), { src: "https://example.invalid/" }));
            document.body.append(Object.assign(document.createElement("script"), { textContent: "window.broken = 3" }));
        """)
        self.assertEqual(["connect-src", "img-src", "script-src-elem"], refused)
        self.assertIsNone(self.script("return window.broken ?? null"))
        self.assertEqual([(self.folder / "small.html").as_uri()], self.browser.requests())
        for error in self.browser.errors():
            self.assertIn("Content Security Policy", error)

    def test_a_busy_day_is_drawn_and_searched(self):
        self.open("busy")
        self.assertEqual(["2024-01-05 09:01:11.728", "2024-01-06 09:59:01.872"], list(self.range()[:2]))
        self.assertLess(self.count(".item"), 4000)  # what stands in one place is drawn once
        self.search_for("line 3998 ")
        self.press(Keys.ENTER)
        self.wait_for_equal((list(range(3993, 4000)), [3998]), self.shown_lines)
        self.assertIn("Line 3998", self.one(".item.current").get_attribute("aria-label"))

    def test_zooming_separates_what_stands_in_one_place(self):
        self.open("busy")
        whole = self.range()
        self.assertLess(self.count(".mark"), 3000)
        for _ in range(8):
            self.one("#zoom-in").click()
        self.wait_for(lambda: self.range() != whole, "another range")
        begin, end = self.range()[:2]
        times = [text.split(", ")[-1] for text in
                 self.script('return [...document.querySelectorAll(".mark")].map((each) => each.ariaLabel)')]
        self.assertEqual(len(times), len(set(times)))
        seconds = (int(end[11:13]) - int(begin[11:13])) * 3600 + (int(end[14:16]) - int(begin[14:16])) * 60
        self.assertAlmostEqual(seconds / 21.6, len(times), delta=8)

    def test_a_long_log_begins_with_its_last_failure(self):
        self.open("long")
        self.assertEqual(("2024-01-11 09:29:58.000", "2024-01-11 09:30:04.000", "6 s"), self.range())
        self.assertEqual(["✕ request of day 6"], self.texts(".span text"))
        self.one("#whole").click()
        self.wait_for_equal(10, lambda: self.count(".span"))

    def test_a_page_without_anything_is_a_page(self):
        self.open("empty")
        self.assertEqual("There is no line.", self.one("#summary").text)
        self.assertEqual(LANES, self.texts(".lane-name"))
        self.assertEqual([0, 0], [self.count(".item"), self.count("#verdicts li")])
        self.assertEqual("", self.one("#range").text)
        self.assertFalse(self.one("#failure").is_displayed())
        self.chart()
        self.press("+", Keys.ARROW_DOWN, Keys.ENTER, Keys.END)


if __name__ == "__main__":
    WRITE_PAGES = sys.argv[1:4]
    del sys.argv[1:4]
    unittest.main()
