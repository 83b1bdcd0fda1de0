#!/usr/bin/env python3
"""package_facts.py MANIFEST: prints version;family name;app service of a package, as a CMake list."""

import hashlib
import sys
import xml.etree.ElementTree as ElementTree

FOUNDATION = "{http://schemas.microsoft.com/appx/manifest/foundation/windows10}"
UAP = "{http://schemas.microsoft.com/appx/manifest/uap/windows10}"


def publisher_id(publisher):
    """64 bits of a SHA-256 over the name in UTF-16, in Crockford's base 32: five bits a character, one zero added."""
    digest = hashlib.sha256(publisher.encode("utf-16-le")).digest()
    number = int.from_bytes(digest[:8], "big") << 1
    digits = "0123456789abcdefghjkmnpqrstvwxyz"
    return "".join(digits[number >> shift & 31] for shift in range(60, -1, -5))


def main():
    package = ElementTree.parse(sys.argv[1]).getroot()
    identity = package.find(f"{FOUNDATION}Identity")
    service = package.find(f".//{UAP}AppService")
    family = f"{identity.get('Name')}_{publisher_id(identity.get('Publisher'))}"
    print(identity.get("Version"), family, service.get("Name"), sep=";")


if __name__ == "__main__":
    main()
