#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes headers of Apple's frameworks for a check of types, from the metadata of an npm package.

They say what takes and returns what, so that a misspelt selector, a wrong number or type of
arguments and a missing class are errors. They say nothing of availability, deprecation and
nullability, nor of what a collection holds.

usage: make_headers.py PACKAGE OUT
"""

import collections
import pathlib
import sys

from enums import enum_text
from members import RESERVED_WORDS
from metadata import MORE
from sdk_names import (C_FRAMEWORKS, FOUNDATION_MAKERS, FRAMEWORKS, STRING_TYPES, STRUCT_TYPES,
                       USES_CORE_GRAPHICS, generic_part)
from sdk_texts import SdkTexts
from types_of_sdk import ENUM_HINT, UNKNOWN

HEAD = "#pragma once\n#pragma clang system_header\n#import <SDKBase/SDKBase.h>\n"


class HeaderMaker(SdkTexts):
    def write(self, out):
        nsobject, functions = self.declare_all()
        write_header(out, "SDKBase", self.base())
        for framework in C_FRAMEWORKS:
            write_header(out, framework, self.c_framework(framework))
        for framework in FRAMEWORKS:
            write_header(out, framework, self.framework(framework, nsobject, functions))
        print(f"{len(self.class_texts)} classes, {len(self.protocol_texts)} protocols, "
              f"{len(functions)} functions, {len(self.struct_texts)} structures")

    def base(self):
        yield pathlib.Path(__file__).with_name("base_header.h").read_text()
        for name in sorted(set(self.class_named) - {"NSObject", "Protocol"}):
            yield f"@class {name}{generic_part(name)};\n"
        yield "\n".join(self.struct_texts) + "\n"
        for name, struct in STRUCT_TYPES.items():
            yield f"typedef struct {struct} {name};\n"
        for name in sorted(set(self.protocol_named) - {"NSObject"}):
            yield f"@protocol {name};\n"
        for name in STRING_TYPES:
            yield f"typedef NSString *{name};\n"
        yield ("typedef NSUInteger NSStringEncoding;\n"
               "typedef NSInteger NSModalResponse, NSWindowLevel;\n"
               "typedef NSString *NSUserInterfaceItemIdentifier;\n")
        yield from self.all_enums()

    def all_enums(self):
        of_framework = collections.defaultdict(list)
        for name in self.enums:
            if name in self.emitted_enums:
                of_framework[self.declarations.enums[name]].append(name)
        reserved = (set(self.declarations.constants) | set(self.class_named)
                    | set(self.protocol_named) | set(self.enums))
        for framework in sorted(of_framework):
            for name in of_framework[framework]:
                yield enum_text(name, self.enums[name], self.taken, reserved) + "\n"

    def c_framework(self, framework):
        yield HEAD
        if framework != "CoreFoundation":
            yield "#import <CoreFoundation/CoreFoundation.h>\n"
        if framework in ("ApplicationServices", "ImageIO", "CoreVideo", "CoreText", "Carbon"):
            yield "#import <CoreGraphics/CoreGraphics.h>\n"
        if framework in ("ApplicationServices", "Carbon"):
            yield "#import <CoreServices/CoreServices.h>\n"
        for name, (owner, hints, hint) in self.declarations.functions.items():
            if owner == framework and name in self.functions:
                yield from self.c_function(name, hints, hint)
        for name, kind in self.constants_of(framework):
            enum = ENUM_HINT.fullmatch(kind)
            if kind == "number":
                yield f'extern "C" const __typeof__(0L) {name};\n'
            elif enum and enum[1] in self.emitted_enums:
                yield f'extern "C" const {enum[1]} {name};\n'
            elif kind in ("interop.Object", "interop.Pointer", "string"):
                yield f'extern "C" const CFStringRef {name};\n'

    def constants_of(self, framework):
        for name, (owner, kind) in self.declarations.constants.items():
            if owner == framework and name not in self.taken and name not in RESERVED_WORDS:
                yield name, kind

    def c_function(self, name, hints, hint):
        hints = [kind for kind in hints if kind]
        returned, parameters, variadic = self.metadata.signature(self.functions[name], len(hints))
        if returned[0] in ("fnptr", "block"):
            return
        if len(hints) != len(parameters):
            hints = [None] * len(parameters)
        kinds = [self.c_type(parameter, kind) for parameter, kind in zip(parameters, hints)]
        result = self.c_type(returned, hint)
        if result is not None and None not in kinds:
            yield (f'extern "C" {result} {name}({", ".join(kinds) or "void"}'
                   f'{", ..." if variadic else ""});\n')

    def c_type(self, kind, hint):
        if kind[0] in ("id", "ptr", "fnptr"):
            return "AnyRef"
        if kind[0] == "struct" and (kind[1] & MORE or kind[1] not in self.done_structs):
            return None
        written = self.names.name(kind, hint)
        return None if UNKNOWN in written else written

    def framework(self, framework, nsobject, functions):
        index = FRAMEWORKS.index(framework)
        is_first = index == 0
        yield HEAD
        for needed in FRAMEWORKS[:index]:
            yield f"#import <{needed}/{needed}.h>\n"
        if is_first:
            yield "#import <CoreFoundation/CoreFoundation.h>\n"
        if framework in USES_CORE_GRAPHICS:
            yield "#import <CoreGraphics/CoreGraphics.h>\n"
        if is_first:
            yield ('extern "C" void NSLog(NSString *format, ...) '
                   "__attribute__((format(__NSString__, 1, 2)));\n")
        yield from belonging(self.protocol_texts, self.declarations.protocols, framework)
        if is_first:
            yield f"@interface NSObject (FromTheMetadata)\n{nsobject}\n@end\n" + FOUNDATION_MAKERS
        yield from belonging(self.class_texts, self.declarations.classes, framework)
        for name, kind in self.constants_of(framework):
            if name not in ("YES", "NO", "NULL", "nil"):
                yield from self.object_constant(name, kind)
        yield from (text + "\n" for owner, text in functions if owner == framework)

    def object_constant(self, name, kind):
        enum = ENUM_HINT.fullmatch(kind)
        if kind == "string":
            yield f'extern "C" NSString *const {name};\n'
        elif kind == "number":
            is_length = name in ("NSVariableStatusItemLength", "NSSquareStatusItemLength")
            yield f'extern "C" const {"double" if is_length else "__typeof__(0L)"} {name};\n'
        elif kind in self.class_named:
            yield f'extern "C" {kind} *{name};\n'
        elif enum and enum[1] in self.emitted_enums:
            yield f'extern "C" const {enum[1]} {name};\n'


def belonging(texts, frameworks, framework):
    """What belongs to a framework for which no headers are made goes with the first one."""
    for name, text in texts.items():
        owner = frameworks.get(name)
        if owner == framework or (framework == FRAMEWORKS[0] and owner not in FRAMEWORKS):
            yield text


def write_header(out, framework, parts):
    folder = pathlib.Path(out, f"{framework}.framework", "Headers")
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{framework}.h").write_text("".join(parts))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    HeaderMaker(sys.argv[1]).write(sys.argv[2])
