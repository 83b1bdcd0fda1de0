"""No command depends on which one was called first: a build that was configured without a package finds it later.

It configures a folder of its own as the product is, and builds one file of the bench."""

import re
import subprocess
import unittest

import support

# What CMake may ask for when it configures: ./dev installs it for every command.
ALWAYS_THERE = {"find_package(Python3"}
QUESTION = re.compile(r"find_(?:package|library|path|program|file)\(\s*\w+|EXISTS\s+\"?(?:/|\$\{DEBIAN_HEADERS)")


class OptionalPackages(support.ScriptTest):
    def build(self, target):
        done = subprocess.run(["ninja", "-C", self.build_folder, target], capture_output=True, text=True, check=False)
        return done.stdout

    def test_the_bench_s_peer_is_found_by_a_build_that_was_configured_without_it(self):
        headers, self.build_folder = self.folder / "headers", self.folder / "build"
        headers.mkdir()
        subprocess.run(
            ["cmake", "--preset", "product", "-B", self.build_folder, f"-DDEBIAN_HEADERS={headers}"],
            cwd=support.ROOT, capture_output=True, check=True,
        )  # fmt: skip
        peer = "bench/CMakeFiles/line_bench.dir/SpdlogPeer.cpp.obj"
        self.assertIn("'spdlog/logger.h' file not found", self.build(peer))
        (headers / "spdlog").mkdir()
        (headers / "spdlog" / "logger.h").write_text("#error the package is seen\n")
        self.assertIn("the package is seen", self.build(peer))

    def test_no_target_depends_on_what_was_installed_when_it_was_configured(self):
        folders = [folder for folder in support.ROOT.glob("[a-z]*/") if folder.name not in ("build", "dist")]
        files = [file for folder in folders for file in folder.rglob("CMakeLists.txt")]
        self.assertIn(support.ROOT / "bench" / "CMakeLists.txt", files)
        for file in [support.ROOT / "CMakeLists.txt", *files, *(support.ROOT / "cmake").glob("*.cmake")]:
            with self.subTest(file):
                asked = set(QUESTION.findall(file.read_text(encoding="utf-8")))
                self.assertLessEqual(asked, ALWAYS_THERE)


if __name__ == "__main__":
    unittest.main()
