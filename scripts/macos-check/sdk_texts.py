# SPDX-License-Identifier: MIT
"""Declarations of classes, protocols, structures and functions, each after all that it needs."""

from declarations import Declarations
from members import MemberWriter
from metadata import MORE, NOTHING, Metadata, library_of
from sdk_names import (FRAMEWORKS, FRAMEWORKS_WITH_ENUMS, FRAMEWORKS_WITH_FUNCTIONS,
                       KNOWN_OF_NSOBJECT, TAKEN_NAMES, generic_part)
from types_of_sdk import REFERENCES, TypeNames, declared, is_identifier


class SdkTexts:
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

    def declare_all(self):
        """The members of NSObject and the functions, as texts; the others are in members."""
        self.declare_classes_and_protocols()
        nsobject = "\n".join(self.members.written(
            "NSObject", self.class_named["NSObject"]["members"], skipped=KNOWN_OF_NSOBJECT))
        functions = self.object_functions()
        self.declare_structs()
        return nsobject, functions

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
        # In the order in which they are completed.
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
        """Those that were named so far, and those that they contain."""
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
