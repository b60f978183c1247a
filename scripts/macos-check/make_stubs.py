#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes stub libraries (.tbd) to link against where the real ones are not: of Apple's frameworks,
from the metadata of an npm package, and of libraries that this machine has in its own format.

usage: make_stubs.py PACKAGE LIBCXX OUT

LIBCXX is the folder with libc++.so.1 and libc++abi.so.1.
"""

import pathlib
import re
import subprocess
import sys

# The version letters in the frameworks' install names.
FRAMEWORKS = {"Foundation": "C", "AppKit": "C", "Vision": "A", "ServiceManagement": "A",
              "CoreGraphics": "A", "CoreFoundation": "A"}
LIBRARIES = "/usr/lib/x86_64-linux-gnu"
QT_MODULES = "Core Gui Widgets Svg Sql Concurrent Network Test".split()
STUB = """--- !tapi-tbd
tbd-version: 4
targets: [ arm64-macos ]
install-name: '{name}'
exports:
  - targets: [ arm64-macos ]
    symbols: [ {symbols} ]
    objc-classes: [ {classes} ]
...
"""


def write_stub(path, name, symbols, classes=()):
    quoted = ", ".join(f"'{symbol}'" for symbol in sorted(symbols))
    path.write_text(STUB.format(name=name, symbols=quoted, classes=", ".join(sorted(classes))))


def listed_symbols(name):
    """What the metadata does not list: one symbol per line."""
    path = pathlib.Path(__file__).with_name("symbols") / name
    return {line.strip() for line in path.read_text().splitlines()
            if line.strip() and not line.startswith("#")} if path.exists() else set()


def framework_stub(package, out, framework):
    text = pathlib.Path(package, "types", f"{framework}.d.ts").read_text()
    classes = re.findall(r"^declare class ([A-Z]\w*)", text, re.MULTILINE)
    names = re.findall(r"^declare const (\w+): (?!\{)", text, re.MULTILINE)
    names += re.findall(r"^declare function (\w+)\(", text, re.MULTILINE)
    symbols = {"_" + name for name in names} | listed_symbols(framework)
    version = FRAMEWORKS[framework]
    write_stub(out / f"{framework}.tbd",
               f"/System/Library/Frameworks/{framework}.framework/Versions/{version}/{framework}",
               symbols, set(classes))


def exported_symbols(library):
    listing = subprocess.run(["/usr/lib/llvm-19/bin/llvm-nm", "--dynamic", "--defined-only",
                              "--format=just-symbols", library],
                             check=True, capture_output=True, text=True).stdout
    return {"_" + line.split("@")[0] for line in listing.splitlines()}


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    package, libcxx, out = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    out.mkdir(parents=True, exist_ok=True)
    for framework in FRAMEWORKS:
        framework_stub(package, out, framework)
    qt = set().union(*(exported_symbols(f"{LIBRARIES}/libQt6{module}.so.6")
                       for module in QT_MODULES))
    write_stub(out / "Qt.tbd", "@rpath/Qt", qt | listed_symbols("Qt"))
    for library in ("heif", "jpeg", "png16", "tiff"):
        write_stub(out / f"{library}.tbd", f"@rpath/lib{library}.dylib",
                   exported_symbols(f"{LIBRARIES}/lib{library}.so"))
    cxx = exported_symbols(f"{libcxx}/libc++.so.1") | exported_symbols(f"{libcxx}/libc++abi.so.1")
    write_stub(out / "cxx.tbd", "/usr/lib/libc++.1.dylib", cxx)
    write_stub(out / "objc.tbd", "/usr/lib/libobjc.A.dylib", listed_symbols("objc"))


if __name__ == "__main__":
    main()
