# SPDX-License-Identifier: MIT
"""Properties and methods as Objective-C declares them."""

import re

from types_of_sdk import declared

# Names that Objective-C++ can't use for a property: it gets its two methods instead.
RESERVED_WORDS = set("""and class default delete explicit export false friend namespace new not
    operator or private protected public register template this true typename using virtual
    xor""".split())


def typescript_name(selector):
    return re.sub(r":(.)", lambda match: match[1].upper(), selector).replace(":", "")


class MemberWriter:
    def __init__(self, metadata, declarations, names, class_names):
        self.metadata, self.declarations, self.names = metadata, declarations, names
        self.class_names = class_names

    def written(self, owner, members, is_protocol=False, skipped=()):
        """One line per member. A getter that is also listed as a method is written once."""
        lines, seen = [], set(skipped)
        for member in members:
            if member["property"]:
                lines += self.property_lines(owner, member, is_protocol, seen)
        for member in members:
            if not member["property"]:
                lines += self.method_lines(owner, member, is_protocol, seen)
        return lines

    def hint(self, owner, name, is_static):
        return self.declarations.members.get((owner, name, is_static))

    def property_lines(self, owner, member, is_protocol, seen):
        sign = "+" if member["static"] else "-"
        if sign + member["getter"] in seen:
            return []
        seen.add(sign + member["getter"])
        hint = self.hint(owner, member["name"], member["static"])
        kind = self.names.name(self.metadata.signature(member["signature"])[0],
                               hint[1] if hint and hint[0] is None else None, member["name"])
        if kind == "void":
            return []
        if kind == "instancetype":
            kind = owner + " *"
        if not member["read_only"]:
            seen.add(sign + member["setter"])
        if member["name"] in RESERVED_WORDS:
            optional = "@optional " if is_protocol else ""
            lines = [f"{optional}{sign} ({kind}){member['getter']};"]
            if not member["read_only"]:
                lines.append(f"{optional}{sign} (void){member['setter']}({kind})a0;")
            return lines
        attributes = ", ".join(self.attributes(member, kind))
        return [requirement(is_protocol, hint)
                + f"@property ({attributes}) {declared(kind, member['name'])};"]

    def attributes(self, member, kind):
        yield "nonatomic"
        name = member["name"]
        if member["static"]:
            yield "class"
        if member["read_only"]:
            yield "readonly"
        if member["getter"] != name:
            yield "getter=" + member["getter"]
        if not member["read_only"]:
            if member["setter"] != f"set{name[0].upper()}{name[1:]}:":
                yield "setter=" + member["setter"]
            is_object = kind.endswith("*") and kind[:-1].strip() in self.class_names
            if is_object or kind.startswith(("id", "NSString")):
                yield "strong"

    def method_lines(self, owner, member, is_protocol, seen):
        selector, sign = member["selector"], "+" if member["static"] else "-"
        if sign + selector in seen:
            return []
        seen.add(sign + selector)
        hint = self.hint(owner, typescript_name(selector), member["static"])
        returned, parameters, variadic = self.metadata.signature(member["signature"],
                                                                 selector.count(":"))
        line = f"{sign} ({self.names.name(returned, hint[1] if hint else None, selector)})"
        if not parameters and ":" not in selector:
            line += selector
        else:
            line += self.pieces(selector, parameters, hint) + (", ..." if variadic else "")
        return [f"{requirement(is_protocol, hint)}{line};"]

    def pieces(self, selector, parameters, hint):
        known = hint and hint[0] and len(hint[0]) == len(parameters)
        pairs = hint[0] if known else [(None, None)] * len(parameters)
        written = []
        for index, (piece, parameter) in enumerate(zip(selector.split(":"), parameters)):
            name, hinted = pairs[index]
            kind = self.names.name(parameter, hinted, f"{piece} {name or ''}")
            written.append(f"{piece}:({kind})a{index}")
        return " ".join(written)


def requirement(is_protocol, hint):
    if not is_protocol:
        return ""
    return "@optional " if hint is None or hint[2] else "@required "
