#!/usr/bin/env python3
"""Makes headers of Apple's frameworks for a check of types, from the metadata of an npm package.

They say what takes and returns what, so that a misspelt selector, a wrong number or type of
arguments and a missing class are errors. They say nothing of availability, deprecation and
nullability, nor of what a collection holds.

usage: make_headers.py PACKAGE OUT
"""

import collections
import pathlib
import re
import sys

from declarations import Declarations
from enums import enum_text
from members import RESERVED_WORDS, MemberWriter
from metadata import MORE, NOTHING, Metadata, library_of
from types_of_sdk import ENUM_HINT, REFERENCES, UNKNOWN, TypeNames, declared, is_identifier

# With classes, each after those that it needs; and those of C alone.
FRAMEWORKS = ("Foundation CoreData QuartzCore CoreImage UniformTypeIdentifiers AppKit CoreML Vision "
              "ServiceManagement").split()
C_FRAMEWORKS = ("CoreFoundation CoreGraphics CoreServices ApplicationServices ImageIO CoreVideo "
                "CoreText IOKit Carbon").split()
# Whose functions are declared with the frameworks of classes.
FRAMEWORKS_WITH_FUNCTIONS = "Foundation AppKit Vision ServiceManagement UniformTypeIdentifiers".split()
FRAMEWORKS_WITH_ENUMS = set(FRAMEWORKS) | set(
    """ImageIO CoreGraphics CoreText ApplicationServices CoreMedia AVFoundation CoreLocation CloudKit
    Metal CoreVideo Contacts BrowserEngineKit CoreFoundation Symbols Intents Security""".split())
USES_CORE_GRAPHICS = ("AppKit", "QuartzCore", "CoreImage", "Vision")

GENERIC_CLASSES = {
    "NSArray": 1, "NSMutableArray": 1, "NSSet": 1, "NSMutableSet": 1, "NSEnumerator": 1,
    "NSOrderedSet": 1, "NSMutableOrderedSet": 1, "NSHashTable": 1, "NSCountedSet": 1,
    "NSMeasurement": 1, "NSFetchRequest": 1, "NSDictionary": 2, "NSMutableDictionary": 2,
    "NSCache": 2, "NSMapTable": 2,
}
STRING_TYPES = """NSPasteboardType NSNotificationName NSErrorDomain NSURLResourceKey NSRunLoopMode
    NSErrorUserInfoKey NSFileAttributeKey VNImageOption NSAppearanceName NSStatusItemAutosaveName
    NSImageName NSPasteboardName NSBindingName NSKeyValueChangeKey NSAttributedStringKey
    VNRecognizedPointKey""".split()
STRUCT_TYPES = {
    "NSRange": "_NSRange", "CGPoint": "CGPoint", "CGSize": "CGSize", "CGRect": "CGRect",
    "NSPoint": "CGPoint", "NSSize": "CGSize", "NSRect": "CGRect", "NSEdgeInsets": "NSEdgeInsets",
}
# What the header of libobjc declares of NSObject.
KNOWN_OF_NSOBJECT = set("""-isEqual: -hash -superclass -class -self -performSelector:
    -performSelector:withObject: -performSelector:withObject:withObject: -isProxy -isKindOfClass:
    -isMemberOfClass: -conformsToProtocol: -respondsToSelector: -retain -release -autorelease
    -retainCount -zone -description -debugDescription +load +initialize -init +new +allocWithZone:
    +alloc -dealloc -finalize -copy -mutableCopy +copyWithZone: +mutableCopyWithZone:
    +instancesRespondToSelector: +conformsToProtocol: -methodForSelector: +instanceMethodForSelector:
    -doesNotRecognizeSelector: -forwardingTargetForSelector: -forwardInvocation:
    -methodSignatureForSelector: +instanceMethodSignatureForSelector: -allowsWeakReference
    -retainWeakReference +isSubclassOfClass: +resolveClassMethod: +resolveInstanceMethod: +hash
    +superclass +class +description +debugDescription""".split())
TAKEN_NAMES = set("""NSRange CGPoint CGSize CGRect CGFloat NSPoint NSSize NSRect NSInteger NSUInteger
    unichar NSTimeInterval NSEdgeInsets NSStringEncoding NSModalResponse NSWindowLevel id nil BOOL
    YES NO SEL Class IMP NULL NSPasteboardType NSNotificationName""".split())
FOUNDATION_MAKERS = """\
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { return NSRect{{x, y}, {w, h}}; }
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) { return NSSize{w, h}; }
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return NSPoint{x, y}; }
static inline NSRange NSMakeRange(NSUInteger l, NSUInteger n) { return NSRange{l, n}; }
"""
HEAD = "#pragma once\n#pragma clang system_header\n#import <SDKBase/SDKBase.h>\n"


class HeaderMaker:
    def __init__(self, package):
        self.metadata = Metadata(library_of(package))
        self.declarations = Declarations(package)
        self.classes, self.protocols = self.metadata.classes(), self.metadata.protocols()
        self.enums, self.functions = self.metadata.enums(), self.metadata.functions()
        self.structs = self.metadata.structs()
        self.class_named = {found["name"]: found for found in self.classes.values()}
        self.protocol_named = {found["name"]: found for found in self.protocols.values()}
        for found in self.protocols.values():
            if found["name"] == "NSObjectProtocol":
                found["name"] = "NSObject"
        self.emitted_enums = {
            name for name in self.enums
            if self.declarations.enums.get(name) in FRAMEWORKS_WITH_ENUMS and is_identifier(name)}
        self.names = TypeNames(self.metadata, self.classes, self.protocols, self.structs,
                               self.emitted_enums)
        self.members = MemberWriter(self.metadata, self.declarations, self.names, self.class_named)
        self.taken = (TAKEN_NAMES | {name + "Ref" for name in REFERENCES} | set(self.functions)
                      | {found["name"] for found in self.structs.values()})
        self.protocol_texts, self.class_texts, self.struct_texts = {}, {}, []
        self.done_structs = set()

    def write(self, out):
        self.declare_classes_and_protocols()
        nsobject = "\n".join(self.members.written(
            "NSObject", self.class_named["NSObject"]["members"], skipped=KNOWN_OF_NSOBJECT))
        functions = self.object_functions()
        self.declare_structs()
        write_header(out, "SDKBase", self.base())
        for framework in C_FRAMEWORKS:
            write_header(out, framework, self.c_framework(framework))
        for framework in FRAMEWORKS:
            write_header(out, framework, self.framework(framework, nsobject, functions))
        print(f"{len(self.class_texts)} classes, {len(self.protocol_texts)} protocols, "
              f"{len(functions)} functions, {len(self.struct_texts)} structures")

    def declare_classes_and_protocols(self):
        for name in list(self.protocol_named):
            if self.declarations.protocols.get(name) in FRAMEWORKS:
                self.declare_protocol(name)
        for name in self.class_named:
            if self.declarations.classes.get(name) in FRAMEWORKS:
                self.declare_class(name)

    def adopted(self, found):
        return [self.protocols[key]["name"] for key in found["protocols"] if key in self.protocols]

    def declare_protocol(self, name):
        unwanted = ("NSObject", "NSObjectProtocol")
        if name in self.protocol_texts or name in unwanted or name not in self.protocol_named:
            return
        self.protocol_texts[name] = ""
        found = self.protocol_named[name]
        adopted = self.adopted(found)
        for other in adopted:
            self.declare_protocol(other)
        body = "\n".join(self.members.written(name, found["members"], is_protocol=True))
        # In the order in which they are complete.
        del self.protocol_texts[name]
        adopts = f" <{', '.join(adopted)}>" if adopted else ""
        self.protocol_texts[name] = f"@protocol {name}{adopts}\n{body}\n@end\n"

    def declare_class(self, name):
        known = ("NSObject", "Protocol")
        if name in self.class_texts or name in known or name not in self.class_named:
            return
        found = self.class_named[name]
        parent = None
        if found["parent"] != NOTHING:
            parent = self.classes.get(found["parent"], {}).get("name")
        if parent:
            self.declare_class(parent)
        adopted = self.adopted(found)
        for protocol in adopted:
            self.declare_protocol(protocol)
        body = "\n".join(self.members.written(name, found["members"]))
        head = f"@interface {name}{generic_part(name)}" + (f" : {parent}" if parent else "")
        if adopted:
            head += f" <{', '.join(adopted)}>"
        if not parent:
            head = "__attribute__((objc_root_class)) " + head
        self.class_texts[name] = f"{head}\n{body}\n@end\n"

    def object_functions(self):
        """Pairs of a framework and a declaration."""
        found = []
        for name, offset in self.functions.items():
            framework, hints, hint = self.declarations.functions.get(name, (None, [], None))
            if framework not in FRAMEWORKS_WITH_FUNCTIONS or name == "NSLog":
                continue
            count = len([kind for kind in hints if kind])
            returned, parameters, variadic = self.metadata.signature(offset, count)
            if returned[0] in ("fnptr", "block"):
                continue
            if len(hints) != len(parameters):
                hints = [None] * len(parameters)
            listed = ", ".join(self.names.name(parameter, kind, name)
                               for parameter, kind in zip(parameters, hints)) or "void"
            found.append((framework, f'extern "C" {self.names.name(returned, hint, name)} {name}'
                                     f"({listed}{', ...' if variadic else ''});"))
        return found

    def declare_structs(self):
        """Those that have been named so far, and those that they hold."""
        before = None
        while before != len(self.done_structs):
            before = len(self.done_structs)
            for key in list(self.names.structs):
                self.declare_struct(key)

    def declare_struct(self, key):
        if key in self.done_structs:
            return
        self.done_structs.add(key)
        found = self.structs[key]
        if found["name"] == "_NSZone":
            return
        fields = []
        for name, kind in found["fields"]:
            if kind[0] == "struct" and not kind[1] & MORE:
                self.declare_struct(kind[1])
            written = self.names.name(kind)
            if (kind[0] in ("vector", "extvector", "complex", "array")
                    or "__autoreleasing" in written or "__unknown" in written):
                fields = []
                break
            if kind[0] in ("classobj", "id", "NSString", "idproto", "block"):
                written = "__unsafe_unretained " + written
            fields.append(f"  {declared(written, name)};")
        body = " {\n" + "\n".join(fields) + "\n}" if fields else ""
        self.struct_texts.append(f"struct {found['name']}{body};")

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
        yield ("typedef NSUInteger NSStringEncoding;\ntypedef NSInteger NSModalResponse, NSWindowLevel;\n"
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


def generic_part(name):
    parameters = ["__covariant A", "__covariant B"][:GENERIC_CLASSES.get(name, 0)]
    return f"<{', '.join(parameters)}>" if parameters else ""


def belonging(texts, frameworks, framework):
    """What belongs to a framework that is not made stands with the first one."""
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
