# SPDX-License-Identifier: MIT
"""The metadata of Apple's frameworks, as contained in the npm package @nativescript/macos-node-api.

The package's library for macOS contains a block that begins with the magic "NSMD" and a version. A
header with the offsets of its tables is followed by a table of strings and the tables: constants,
enumerations, signatures, functions, protocols, classes, structures, unions. All numbers are
little-endian. A name is an offset into the strings, and the highest bit of an offset means that
more of the same follow.
"""

import pathlib
import struct

MAGIC = b"NSMD\x01\x00"
HEAD_SIZE = len(MAGIC) + 8 * 4
MORE = 1 << 31
NOTHING = 0x7FFFFFFF

KINDS = """char sint sshort slong sint64 uchar uint ushort ulong uint64 float double uint8 void
    cstring id idproto classobj instancetype NSString NSMutableString Class SEL array struct ptr
    voidptr fnptr bool block u128 ldouble vector extvector complex f16 unichar""".split()

# The flags of a member.
IS_PROPERTY, IS_READ_ONLY, IS_STATIC, IS_LAST = 1, 2, 8, 0x80


def library_of(package):
    """The package's library for macOS."""
    for path in sorted(pathlib.Path(package, "build").rglob("NativeScript")):
        if "macos" in str(path.parent) and "dSYM" not in str(path) and path.is_file():
            return path
    raise SystemExit(f"no library for macOS below {package}/build")


class Metadata:
    """A type is a tuple: its kind, and the parts of that kind (see read_type)."""

    def __init__(self, library):
        data = pathlib.Path(library).read_bytes()
        self.data = data[data.index(MAGIC):]
        tables = struct.unpack_from("<8I", self.data, len(MAGIC))
        (_, self.enum_table, self.signature_table, self.function_table, self.protocol_table,
         self.class_table, self.struct_table, self.union_table) = tables

    def u8(self, at):
        return self.data[at]

    def u16(self, at):
        return struct.unpack_from("<H", self.data, at)[0]

    def u32(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def string(self, offset):
        begin = HEAD_SIZE + (offset & NOTHING)
        return self.data[begin:self.data.index(b"\0", begin)].decode("utf8", "replace")

    def string_at(self, at):
        return self.string(self.u32(at))

    def offsets(self, at, more=True):
        """A chain of offsets, and where it ends."""
        chain = []
        while more:
            value = self.u32(at)
            at += 4
            chain.append(value & NOTHING)
            more = value & MORE
        return chain, at

    def read_type(self, at):
        """The type, where it ends, whether more types follow, whether the signature is variadic."""
        head = self.u8(at)
        at += 1
        kind = KINDS[head & 0x3F]
        more, variadic = bool(head & 0x80), bool(head & 0x40)
        result = (kind,)
        if kind == "array":
            size = self.u16(at)
            element, at, _, _ = self.read_type(at + 2)
            result = (kind, size, element)
        elif kind in ("struct", "block", "fnptr"):
            result = (kind, self.u32(at))
            at += 4
        elif kind == "idproto":
            protocols, at = self.offsets(at)
            result = (kind, protocols)
        elif kind == "classobj":
            value = self.u32(at)
            protocols, at = self.offsets(at + 4, value & MORE)
            result = (kind, value & NOTHING, protocols)
        elif kind == "ptr":
            pointee, at, _, _ = self.read_type(at)
            result = (kind, pointee)
        return result, at, more, variadic

    def signature(self, offset, count=0):
        """The returned type, the parameters' types, whether it is variadic. For a variadic
        one the metadata does not say how many named parameters there are: `count`."""
        returned, at, more, variadic = self.read_type(self.signature_table + offset)
        parameters = []
        while (len(parameters) < count) if variadic else more:
            parameter, at, more, _ = self.read_type(at)
            parameters.append(parameter)
        return returned, parameters, variadic

    def members(self, at):
        found = []
        while True:
            flags = self.u8(at)
            at += 1
            if flags & 0x7F == 0:
                break
            member = {"static": bool(flags & IS_STATIC), "property": bool(flags & IS_PROPERTY)}
            if member["property"]:
                member["read_only"] = bool(flags & IS_READ_ONLY)
                member["name"] = self.string_at(at)
                member["getter"] = self.string_at(at + 4)
                member["signature"] = self.u32(at + 8)
                at += 12
                if not member["read_only"]:
                    member["setter"] = self.string_at(at)
                    at += 8
            else:
                member["selector"] = self.string_at(at)
                member["signature"] = self.u32(at + 4)
                at += 8
            found.append(member)
            if not flags & IS_LAST:
                break
        return found, at

    def protocols(self):
        at, found = self.protocol_table, {}
        while at < self.class_table:
            key, value = at - self.protocol_table, self.u32(at)
            parents, at = self.offsets(at + 4, value & MORE)
            members, at = self.members(at)
            found[key] = {"name": self.string(value), "protocols": parents, "members": members}
        return found

    def classes(self):
        at, found = self.class_table, {}
        while at < self.struct_table:
            key, value = at - self.class_table, self.u32(at)
            # The name is followed by the run-time name, which is the same in Objective-C.
            protocols, at = self.offsets(at + 8, value & MORE)
            parent = self.u32(at)
            at += 4
            members = []
            if parent & MORE:
                members, at = self.members(at)
            found[key] = {"name": self.string(value), "protocols": protocols,
                          "parent": parent & NOTHING, "members": members}
        return found

    def enums(self):
        at, found = self.enum_table, {}
        while at < self.signature_table:
            name, values, more = self.string_at(at), [], True
            at += 4
            while more:
                offset, number = struct.unpack_from("<Iq", self.data, at)
                at += 12
                values.append((self.string(offset), number))
                more = offset & MORE
            found[name] = values
        return found

    def functions(self):
        return {self.string_at(at): self.u32(at + 4)
                for at in range(self.function_table, self.protocol_table, 8)}

    def structs(self):
        at, found = self.struct_table, {}
        while at < self.union_table:
            key, name, fields, more = at - self.struct_table, self.string_at(at), [], True
            at += 6
            while more:
                value = self.u32(at)
                at += 4
                if value == NOTHING:
                    break
                field, at, _, _ = self.read_type(at + 2)
                fields.append((self.string(value), field))
                more = value & MORE
            found[key] = {"name": name, "fields": fields}
        return found
