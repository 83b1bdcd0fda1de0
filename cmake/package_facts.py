#!/usr/bin/env python3
"""package_facts.py MANIFEST: prints version;family name;app service;desktop component of a package, as a CMake list."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "package"))

from msix.manifest import Manifest
from msix.problem import PackageError

if __name__ == "__main__":
    try:
        manifest = Manifest(pathlib.Path(sys.argv[1]).read_bytes(), sys.argv[1])
        print(manifest.version, manifest.family_name, manifest.app_service, manifest.desktop_component,
              sep=";")
    except PackageError as error:
        sys.exit(str(error))
