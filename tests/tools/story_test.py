"""./dev run: with its timeline, two at once, one that is cut off, one that is interrupted.

Arguments: the build folder whose programs a copy of the scripts plays with, in a prefix of its own."""

import json
import os
import pathlib
import shutil
import signal
import sys
import tempfile
import unittest

import support

BUILD = None


class StoryTest(support.ScriptTest):
    @classmethod
    def setUpClass(cls):
        cls.clone = pathlib.Path(tempfile.mkdtemp()) / "clone"
        cls.addClassCleanup(shutil.rmtree, cls.clone.parent, ignore_errors=True)
        cls.clone.mkdir()
        for part in ("dev", "tools", "cmake", "simulator/scenarios"):
            support.copy_part(part, cls.clone)
        product = cls.clone / "build" / "product"
        product.mkdir(parents=True)
        for part in ("simulator", "helper", "package"):
            (product / part).symlink_to(BUILD / part)
        (product / "build.ninja").touch()
        tools = cls.clone.parent / "bin"
        tools.mkdir()
        (tools / "cmake").symlink_to("/bin/true")  # there is nothing to build
        cls.environment = os.environ | {"PATH": f"{tools}:{os.environ['PATH']}"}
        cls.environment.pop("VELMO_SIM_HOME", None)
        cls.prefix = product / "prefix-story"
        cls.addClassCleanup(support.stop_wine, cls.prefix)

    def start_story(self, *arguments, **options):
        return self.start(self.clone / "dev", "run", *arguments, env=self.environment, **options)

    def nothing_runs(self):
        return not support.processes_with(f"WINEPREFIX={self.prefix}")

    def test_it_ends_with_the_verdict_and_draws_the_timeline(self):
        story = self.start_story("--html", "story of today.html", "--trace", "events.json", cwd=self.clone.parent)
        said = story.stdout.read()
        self.assertEqual(0, story.wait(support.LIMIT), said)
        self.assertIn("; nothing else happened\n", said)
        verdict = said[said.index("\nNothing failed.\n"):]
        self.assertRegex(verdict, r"\nworked +exit +worked 2 times, last ")
        page = self.clone.parent / "story of today.html"
        self.assertIn(f"\nthe timeline: {page}\n", verdict)
        text = page.read_text()
        self.assertIn("story.scenario", text)
        self.assertIn("task-started instance=2 name=PushNotificationBGTask", text)  # the platform's own
        self.assertRegex(text, r'\[3,"helper",\d+,\d+,"neutral","helper-started arguments=')  # a span of lane 3
        self.assertNotRegex(text, r'\[3,"helper",.*"failed"')  # the scenario kills some, which is no failure
        self.assertIn("wait for the registration", text)
        self.assertIn("notify.windows.com/?token=", text)
        self.assertNotRegex(text, r"token=[^\"\u2026]{20}")  # whole, it is an address that anyone can push to
        trace = self.clone.parent / "events.json"
        self.assertIn(f"\nits trace events: {trace}\n", verdict)
        events = json.loads(trace.read_text())["traceEvents"]
        names = {phase: {event["name"] for event in events if event["ph"] == phase} for phase in "Xi"}
        self.assertLessEqual({"app process", "helper", "wait for the registration"}, names["X"])
        self.assertIn("task-started instance=2 name=PushNotificationBGTask wake=1", names["i"])  # the platform's own
        self.assertIn("Inside OnLaunched", names["i"])  # the log's

    def test_a_page_and_a_trace_need_a_file(self):
        for option in ("--html", "--trace"):
            for words in ([], ["--verdict"]):
                with self.subTest(option, words=words):
                    story = self.start_story(option, *words)
                    self.assertIn(f"{option} needs a file", story.stdout.read())
                    self.assertEqual(2, story.wait(support.LIMIT))

    def test_two_at_once_play_one_after_the_other(self):
        first = self.start_story()
        self.read_until(first, "app-started")
        second = self.start_story()
        self.read_until(second, f"build/product is in use by ./dev run (process {first.pid})")
        for story in (first, second):
            self.assertIn("nothing else happened", story.stdout.read())
            self.assertEqual(0, story.wait(support.LIMIT))
        support.wait_until(self.nothing_runs, "nothing runs in the prefix")

    def test_one_that_is_cut_off_is_red(self):
        story = self.start_story()
        self.read_until(story, "app-started")
        support.end_server(self.prefix)
        self.assertNotIn("nothing else happened", story.stdout.read())
        self.assertNotEqual(0, story.wait(support.LIMIT))

    def test_a_signal_leaves_nothing_behind(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                story = self.start_story()
                self.read_until(story, "app-started")
                story.send_signal(number)
                story.stdout.read()
                self.assertEqual(-number, story.wait(support.LIMIT))
                support.wait_until(self.nothing_runs, "nothing runs in the prefix")


if __name__ == "__main__":
    BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
