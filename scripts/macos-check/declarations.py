# SPDX-License-Identifier: MIT
"""What the package's declarations for TypeScript say and its metadata does not: which framework a
name belongs to, which members of a protocol are optional, and the enumeration behind a number."""

import pathlib
import re

MEMBER = re.compile(r"(\w+\$?)(\?)?(<.*?>)?\((.*)\): (.*)$")
GENERIC_MEMBER = re.compile(r"(\w+)(\?)?<This extends .*?=> any>\((.*)\): (.*)$")
FIELD = re.compile(r"(\w+\$?)(\?)?: (.*)$")


def split_parameters(text):
    """The parameters of a function, split at the commas between them."""
    parts, depth, current, previous = [], 0, "", ""
    for letter in text:
        if letter in "(<[{":
            depth += 1
        elif letter in ")]}" or (letter == ">" and previous != "="):
            depth -= 1
        if letter == "," and depth == 0:
            parts.append(current.strip())
            current = ""
        else:
            current += letter
        previous = letter
    return parts + [current.strip()] if current.strip() else parts


def named_parameters(text):
    """Pairs of a name and a type."""
    pairs = []
    for part in split_parameters(text):
        name, colon, kind = part.partition(":")
        if name.strip() != "this":
            pairs.append((name.strip(), kind.strip() if colon else "any"))
    return pairs


def member_of(line):
    """A member's name, whether it is static, and its parameters (None of a field), type and whether
    it is optional."""
    line = line.strip().rstrip(";")
    is_static = line.startswith("static ")
    line = re.sub(r"^(static )?(readonly )?([gs]et )?", "", line)
    match = MEMBER.match(line)
    if not match or "=> any>(" in line:
        generic = GENERIC_MEMBER.match(line)
        if generic:
            name, optional, parameters, returned = generic.groups()
            return name, is_static, named_parameters(parameters), returned, bool(optional)
    if not match:
        field = FIELD.match(line)
        return field and (field[1], is_static, None, field[3], bool(field[2]))
    name, optional, _, parameters, returned = match.groups()
    return name, is_static, named_parameters(parameters), returned, bool(optional)


class Declarations:
    """`classes`, `protocols`, `enums` give a name's framework. `members` gives (owner, name,
    static) its parameters, type and whether it is optional; `constants` the framework and type;
    `functions` the framework, the parameters' types and the returned type."""

    def __init__(self, package):
        self.classes, self.protocols, self.enums = {}, {}, {}
        self.members, self.constants, self.functions = {}, {}, {}
        for path in sorted(pathlib.Path(package, "types").iterdir()):
            self.read(path.name[:-len(".d.ts")], path.read_text().splitlines())

    def read(self, framework, lines):
        owner = None
        for line in lines:
            match = re.match(r"(?:declare )?(class|interface) (\w+)", line)
            if match:
                owner = match[2]
                kind = self.classes if match[1] == "class" else self.protocols
                kind.setdefault(owner, framework)
            elif line.startswith("}"):
                owner = None
            elif owner and line.startswith("  "):
                member = None if line.startswith("  //") else member_of(line)
                if member:
                    self.members[(owner, *member[:2])] = member[2:]
            else:
                self.read_top_level(framework, line)

    def read_top_level(self, framework, line):
        if match := re.match(r"declare const (\w+): \{$", line):
            self.enums.setdefault(match[1], framework)
        elif match := re.match(r"declare const (\w+): (.*);$", line):
            self.constants[match[1]] = (framework, match[2])
        elif match := re.match(r"declare function (\w+)\((.*)\): (.*);$", line):
            kinds = [part.split(":", 1)[-1].strip() for part in split_parameters(match[2])]
            self.functions[match[1]] = (framework, kinds, match[3])
