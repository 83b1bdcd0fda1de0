"""Every scenario ends with the doctor's verdict on its log."""

import pathlib
import unittest

SCENARIOS = pathlib.Path(__file__).resolve().parents[2] / "simulator" / "scenarios"


class ScenariosTest(unittest.TestCase):
    def test_each_names_its_verdict_last(self):
        paths = sorted(SCENARIOS.glob("*.scenario"))
        self.assertGreater(len(paths), 20)
        for path in paths:
            with self.subTest(path.name):
                lines = path.read_text().splitlines()
                verdicts = [line for line in lines if line.startswith("expect verdict ")]
                self.assertEqual([lines[-1]], verdicts)


if __name__ == "__main__":
    unittest.main()
