# SPDX-License-Identifier: MIT
"""Enumerations with the C names of their constants.

The metadata has lost each constant's prefix: NSWindowStyleMask has `Borderless`. The full name
is one that can be made from the enumeration's words and that no other constant has."""

import re

PREFIXES = {
    "NSComparisonResult": ["NSOrdered"], "NSSearchPathDirectory": ["NS"],
    "NSSearchPathDomainMask": ["NS"], "NSWindowOrderingMode": ["NSWindow"],
    "NSBackingStoreType": ["NSBackingStore"], "CGImageAlphaInfo": ["kCGImageAlpha"],
}
WHOLE_NAMES = ("NS", "k", "VN", "CG", "UT", "SM")


def words(name):
    """NSWindowLevel: N, S, Window, Level."""
    return re.findall(r"[A-Z][^A-Z]*|^[^A-Z]+", name)


def candidates(enum, member):
    """Every name that the constant may have. Not all of them exist, and a check with these headers
    does not notice when one that does not exist is used."""
    if member[:1].isalpha() and member.startswith(WHOLE_NAMES):
        yield member
    parts = words(enum)
    for count in range(len(parts), 0, -1):
        for prefix in ("".join(parts[:count]), "k" + "".join(parts[:count])):
            yield prefix + member
            if count < len(parts):
                yield prefix + member + "".join(parts[count:])
            if prefix.endswith("s"):
                yield prefix[:-1] + member
    for prefix in PREFIXES.get(enum, []):
        yield prefix + member
        for first in range(max(0, len(parts) - 2), len(parts)):
            yield prefix + member + "".join(parts[first:])


def is_set_of_bits(enum, values):
    """Such an enumeration is an integer with constants, so that they can be combined."""
    numbers = [value for value in values if value]
    powers = [value for value in numbers if value & (value - 1) == 0]
    return (bool(numbers) and len(powers) >= 0.6 * len(numbers)
            and (max(numbers) > 4 or enum.endswith(("Mask", "Options", "Flags"))))


def enum_text(enum, members, taken, reserved):
    """The declaration, without names in `taken` and `reserved`; adds those that it has used to
    `taken`."""
    values = [value for _, value in members]
    base = "NSInteger" if any(value < 0 for value in values) else "NSUInteger"
    bits = is_set_of_bits(enum, values)
    lines = [f"typedef {base} {enum}; enum : {enum} {{" if bits
             else f"typedef enum {enum} : NSInteger {{"]
    for member, value in members:
        suffix = "ull" if value > 2**62 else ""
        for name in candidates(enum, member):
            is_free = name not in taken and name not in reserved
            if is_free and re.fullmatch(r"[A-Za-z_]\w*", name):
                taken.add(name)
                lines.append(f"  {name} = {value}{suffix},")
    lines.append("};" if bits else f"}} {enum};")
    return "\n".join(lines)
