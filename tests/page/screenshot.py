#!/usr/bin/env python3
"""screenshot.py PAGE PNG [--width PIXELS] [--height PIXELS] [--dark]: a picture of a page, as high as the page unless
told otherwise."""

import argparse

from browser import browser


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("page")
    parser.add_argument("png")
    parser.add_argument("--width", type=int, default=1200)
    parser.add_argument("--height", type=int)
    parser.add_argument("--dark", action="store_true")
    arguments = parser.parse_args()
    with browser() as started:
        started.emulate(prefers_color_scheme="dark" if arguments.dark else "light")
        started.size(arguments.width, arguments.height or 600)
        started.open(arguments.page)
        if arguments.height is None:
            started.size(arguments.width, started.execute_script("return document.body.offsetHeight"))
        if not started.save_screenshot(arguments.png):
            raise SystemExit(f"cannot write {arguments.png}")


if __name__ == "__main__":
    main()
