#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Shows that the check sees mistakes: what is right compiles, every mistake that was planted is an
error, and so is a selector of our own that is misspelt.

usage: self_test.py ROOT BUILD
"""

import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
# One call of each service, and a misspelling of it.
OWN_MISTAKES = {
    "FileBrowser": ("activateFileViewerSelectingURLs", "activateFileViewerSelectingURL"),
    "LoginItem": ("registerAndReturnError", "registerAndReturnErrors"),
    "PanelWindow": ("orderFrontRegardless", "orderFrontRegardles"),
    "Pasteboard": ("clearContents", "clearContent"),
    "SystemTrash": ("trashItemAtURL", "trashItemAtUrl"),
    "TextRecognizer": ("performRequests", "performRequest"),
}


class Compiler:
    """Compiles with the command of one of our own sources."""

    def __init__(self, root, build):
        commands = json.loads((build / "compile_commands.json").read_text())
        source = root / "platform/macos/FileBrowser.mm"
        entry = next(entry for entry in commands if entry["file"] == str(source))
        words = shlex.split(entry["command"])
        if "ccache" in words[0]:
            words = words[1:]
        words = words[:words.index("-o")]
        self.command = [*words, "-fsyntax-only", "-ferror-limit=0", "-fno-caret-diagnostics"]
        self.folder = entry["directory"]

    def errors_of(self, source):
        """The numbers of the lines with errors."""
        run = subprocess.run([*self.command, "-x", "objective-c++", str(source)], cwd=self.folder,
                             capture_output=True, text=True, check=False)
        name = re.escape(pathlib.Path(source).name)
        found = re.findall(rf"{name}:(\d+):\d+: (?:fatal )?error:", run.stderr)
        if run.returncode != 0 and not found:
            sys.exit(run.stderr)
        return {int(number) for number in found}


def lines_with_code(source):
    lines = pathlib.Path(source).read_text().splitlines()
    return {number for number, line in enumerate(lines, start=1)
            if line.startswith(("void", "@interface"))}


def complaints(compiler, root):
    for name in ("right.mm", "unseen.mm"):
        for line in sorted(compiler.errors_of(HERE / "self-test" / name)):
            yield f"{name}:{line} is an error"
    wrong = HERE / "self-test/wrong.mm"
    for line in sorted(lines_with_code(wrong) - compiler.errors_of(wrong)):
        yield f"wrong.mm:{line} is no error"
    with tempfile.TemporaryDirectory() as folder:
        for name, (call, misspelt) in OWN_MISTAKES.items():
            text = (root / f"platform/macos/{name}.mm").read_text()
            if call not in text:
                yield f"{name}.mm has no call {call}"
                continue
            source = pathlib.Path(folder, f"{name}.mm")
            source.write_text(re.sub(rf"\b{call}\b", misspelt, text))
            if not compiler.errors_of(source):
                yield f"{name}.mm with {misspelt} is no error"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    root, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    found = list(complaints(Compiler(root, build), root))
    count = len(lines_with_code(HERE / "self-test/wrong.mm")) + len(OWN_MISTAKES)
    print("\n".join(found) or f"self-test: all {count} mistakes are found")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
