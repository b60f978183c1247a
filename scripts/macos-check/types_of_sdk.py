# SPDX-License-Identifier: MIT
"""Types of the metadata as Objective-C types."""

import re

from metadata import MORE, NOTHING

PLAIN = {
    "void": "void", "bool": "BOOL", "char": "signed char", "sint": "int", "sshort": "short",
    "slong": "NSInteger", "sint64": "NSInteger", "uchar": "unsigned char", "uint": "unsigned int",
    "ushort": "unsigned short", "ulong": "NSUInteger", "uint64": "NSUInteger", "float": "float",
    "double": "double", "cstring": "const char *", "SEL": "SEL", "Class": "Class",
    "instancetype": "instancetype", "u128": "__uint128_t", "ldouble": "long double",
    "f16": "_Float16", "unichar": "unichar", "NSString": "NSString *",
    "NSMutableString": "NSMutableString *",
}
UNKNOWN = "struct __unknown"
ENUM_HINT = re.compile(r"interop\.Enum<typeof (\w+)>")

# References that the metadata calls plain objects; a name that contains one of these tells which.
REFERENCES = ("CGImage CGColorSpace CGColor CGEvent CGContext CGPath CGLayer CVPixelBuffer "
              "CMSampleBuffer CGPDFDocument CGDataProvider").split()
OBJECTS = ("classobj", "NSString", "id", "NSMutableString")


def is_identifier(text):
    return re.fullmatch(r"[A-Za-z_]\w*", text) is not None


class TypeNames:
    """Names types, and remembers in `structs` which structures it has named."""

    def __init__(self, metadata, classes, protocols, all_structs, enums):
        self.metadata = metadata
        self.classes, self.protocols, self.all_structs = classes, protocols, all_structs
        self.enums = enums
        self.structs = set()

    def name(self, kind, hint=None, piece=""):
        """`hint` is the type in TypeScript, `piece` the part of the selector for the parameter."""
        what = kind[0]
        enum = ENUM_HINT.fullmatch(hint.replace(" | null", "")) if hint else None
        if enum and enum[1] in self.enums:
            return enum[1]
        if what == "uint8":
            return "BOOL" if hint in ("boolean", None) else "uint8_t"
        if what == "voidptr":
            return "Class" if hint and hint.startswith("interop.Object") else "void *"
        special = getattr(self, f"name_of_{what}", None)
        if special:
            return special(kind, hint, piece)
        return PLAIN.get(what, UNKNOWN)

    def name_of_classobj(self, kind, _hint, _piece):
        return self.classes[kind[1]]["name"] + " *" if kind[1] in self.classes else "id"

    def name_of_id(self, _kind, hint, piece):
        if (hint or "").startswith("interop.Object"):
            for reference in REFERENCES:
                if reference.lower() in piece.lower():
                    return reference + "Ref"
        return "id"

    def name_of_idproto(self, kind, _hint, _piece):
        names = [self.protocols[key]["name"] for key in kind[1] if key in self.protocols]
        return f"id<{','.join(names)}>"

    def name_of_struct(self, kind, _hint, _piece):
        found = self.all_structs.get(kind[1] & NOTHING)
        if not found or kind[1] & MORE or not re.fullmatch(r"\w+", found["name"]):
            return UNKNOWN
        self.structs.add(kind[1] & NOTHING)
        return "struct " + found["name"]

    def name_of_ptr(self, kind, _hint, _piece):
        pointee = self.name(kind[1])
        return pointee + (" __autoreleasing *" if kind[1][0] in OBJECTS else " *")

    def name_of_array(self, kind, _hint, _piece):
        return self.name(kind[2]) + " *"

    def name_of_block(self, kind, _hint, _piece):
        return self.callable(kind, "^", "id")

    def name_of_fnptr(self, kind, _hint, _piece):
        return self.callable(kind, "*", "void *")

    def callable(self, kind, mark, when_nested):
        returned, parameters, _ = self.metadata.signature(kind[1])
        result = self.name(returned)
        if "(" in result:
            result = when_nested
        listed = ", ".join(self.name(parameter) for parameter in parameters) or "void"
        return f"{result} ({mark})({listed})"


def declared(kind, name):
    """A type and a name in C order."""
    for mark in ("(^)", "(*)"):
        if mark in kind:
            return kind.replace(mark, f"{mark[:-1]}{name})", 1)
    return f"{kind} {name}"
