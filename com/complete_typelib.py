#!/usr/bin/env python3
"""Completes a compiled type library with what the IDL compiler (widl) cannot put into it.

complete_typelib.py LIBRARY.tlb SOURCE.idl ENUMERATIONS.def

VALUE(name, number, "text") in the list of enumerations gives the help string of a value, which the compiler refuses.
IMPORTED(library, name) in a class of the source names an interface that library.tlb, beside LIBRARY.tlb, defines; the
compiler would copy it, and whoever registers the copy takes the interface away from its own library.

Works on libraries of the "MSFT" format, in place, and fails on a value without a text.
"""
import os
import re
import struct
import sys

HEADER_BYTES = 0x54
LIBRARY_GUID_AT, LOCALE_AT, FLAGS_AT, VERSION_AT, TYPE_COUNT_AT, IMPORT_COUNT_AT = 0x08, 0x0C, 0x14, 0x18, 0x20, 0x50
HAS_HELP_FILE = 0x100  # one more word follows the header
SEGMENTS, SEGMENT_ENTRY_BYTES = 15, 16
TYPES, IMPORTS, IMPORTED_FILES, REFERENCES, GUID_HASH, GUIDS, NAMES, STRINGS = 0, 1, 2, 3, 4, 5, 7, 8
TYPE_BYTES = 0x64
KIND, MEMBERS_AT, COUNTS, GUID_AT, NAME_AT, IMPLEMENTED, FIRST_REFERENCE = 0x00, 0x04, 0x18, 0x2C, 0x34, 0x4C, 0x54
ENUMERATION, DISPATCH, COCLASS = 0, 4, 5
GUID_BYTES, GUID_BUCKETS = 24, 32
RECORD_BYTES, RECORD_WITH_HELP_BYTES = 0x14, 0x1C


def get(data, offset):
    return struct.unpack_from("<i", data, offset)[0]


def put(data, offset, value):
    struct.pack_into("<i", data, offset, value)


def padded(entry, least=0):
    return entry.ljust(max(least, -(-len(entry) // 4) * 4), b"W")


class Library:
    def __init__(self, file):
        with open(file, "rb") as stream:
            data = stream.read()
        if data[:4] != b"MSFT":
            sys.exit(f"{file}: not a type library of the MSFT format")
        self.types = get(data, TYPE_COUNT_AT)
        help_file = 4 if get(data, FLAGS_AT) & HAS_HELP_FILE else 0
        self.directory = HEADER_BYTES + help_file + 4 * self.types
        end = self.directory + SEGMENT_ENTRY_BYTES * SEGMENTS
        self.head = bytearray(data[:end])
        self.segments = {}  # in the order of the file
        places = [struct.unpack_from("<2i", data, self.place(number)) for number in range(SEGMENTS)]
        for (offset, length), number in sorted((place, number) for number, place in enumerate(places) if place[1] > 0):
            self.segments[number] = bytearray(data[offset : offset + length])
            end = offset + length
        # The members of each type follow the segments, in the order of the types.
        starts = [get(self.segments[TYPES], TYPE_BYTES * index + MEMBERS_AT) for index in range(self.types)]
        if starts[0] != end:
            sys.exit(f"{file}: laid out in a way that this program does not know")
        self.members = [data[start:following] for start, following in zip(starts, starts[1:] + [len(data)])]

    def place(self, segment):
        return self.directory + SEGMENT_ENTRY_BYTES * segment

    def write(self, file):
        position = len(self.head)
        for number, segment in self.segments.items():
            struct.pack_into("<2i", self.head, self.place(number), position, len(segment))
            position += len(segment)
        for index, block in enumerate(self.members):
            put(self.segments[TYPES], TYPE_BYTES * index + MEMBERS_AT, position)
            position += len(block)
        with open(file + ".new", "wb") as stream:
            stream.write(b"".join([self.head, *self.segments.values(), *self.members]))
        os.replace(file + ".new", file)

    def append(self, segment, entry):
        """Appends to a segment and returns the place of the entry."""
        offset = len(self.segments[segment])
        self.segments[segment] += entry
        return offset

    def name(self, offset):
        length = self.segments[NAMES][offset + 8]
        return self.segments[NAMES][offset + 12 : offset + 12 + length].decode("latin-1")

    def types_of_kind(self, kind):
        """Place in the segment of types and index of each type of a kind."""
        for index in range(self.types):
            if get(self.segments[TYPES], TYPE_BYTES * index + KIND) & 0xF == kind:
                yield TYPE_BYTES * index, index

    def type_name(self, place):
        return self.name(get(self.segments[TYPES], place + NAME_AT))

    def guid(self, offset):
        return bytes(self.segments[GUIDS][offset : offset + 16])

    # ---- help strings of values ----

    def add_value_help(self, texts):
        for place, index in self.types_of_kind(ENUMERATION):
            count = get(self.segments[TYPES], place + COUNTS) >> 16
            self.members[index] = self.with_help(self.members[index], count, texts)

    def with_help(self, block, count, texts):
        size = get(block, 0)
        if size != RECORD_BYTES * count:
            sys.exit("The values have help strings already")
        tables = 4 + size
        identifiers = block[tables : tables + 4 * count]
        names = struct.unpack_from(f"<{count}i", block, tables + 4 * count)
        records, offsets = bytearray(), []
        for index, name in enumerate(map(self.name, names)):
            if name not in texts:
                sys.exit(f"{name} has no help string")
            record = list(struct.unpack_from("<5i", block, 4 + RECORD_BYTES * index))
            record[0] = (record[0] & ~0xFFFF) | RECORD_WITH_HELP_BYTES
            offsets.append(len(records))
            records += struct.pack("<7i", *record, 0, self.add_string(texts[name]))
        tables = struct.pack(f"<{2 * count}i", *names, *offsets)
        return struct.pack("<i", len(records)) + records + identifiers + tables

    def add_string(self, text):
        return self.append(STRINGS, padded(struct.pack("<H", len(text)) + text.encode("latin-1"), 8))

    # ---- imported interfaces ----

    def add_guid(self, guid, reference):
        bucket = 0
        for half in struct.unpack("<8H", guid):
            bucket ^= half
        bucket = 4 * (bucket % GUID_BUCKETS)
        following = get(self.segments[GUID_HASH], bucket)
        offset = self.append(GUIDS, guid + struct.pack("<2i", reference, following))
        put(self.segments[GUID_HASH], bucket, offset)
        return offset

    def add_file(self, library, name):
        guid = self.add_guid(library.guid(get(library.head, LIBRARY_GUID_AT)), 2)
        entry = struct.pack("<3iH", guid, get(library.head, LOCALE_AT), get(library.head, VERSION_AT), len(name) << 2 | 1)
        return self.append(IMPORTED_FILES, padded(entry + name.encode("latin-1")))

    def add_import(self, file, library, name):
        """Imports an interface and returns its reference."""
        for place, _ in library.types_of_kind(DISPATCH):
            if library.type_name(place) == name:
                break
        else:
            sys.exit(f"{name} is not in its library")
        reference = len(self.segments[IMPORTS]) | 1
        guid = self.add_guid(library.guid(get(library.segments[TYPES], place + GUID_AT)), reference)
        count = get(self.head, IMPORT_COUNT_AT)
        put(self.head, IMPORT_COUNT_AT, count + 1)
        self.append(IMPORTS, struct.pack("<3i", DISPATCH << 24 | 0x10000 | count, file, guid))
        return reference

    def implement(self, coclass, reference):
        """Makes a class implement one more interface."""
        references, types = self.segments[REFERENCES], self.segments[TYPES]
        (place,) = [place for place, _ in self.types_of_kind(COCLASS) if self.type_name(place) == coclass]
        last = get(types, place + FIRST_REFERENCE)
        while get(references, last + 12) != -1:
            last = get(references, last + 12)
        put(references, last + 12, self.append(REFERENCES, struct.pack("<4i", reference, 0, -1, -1)))
        put(types, place + IMPLEMENTED, get(types, place + IMPLEMENTED) + 1)


def read(file):
    with open(file, encoding="ascii") as stream:
        return stream.read()


def main(library_file, source_file, enumerations_file):
    library = Library(library_file)
    source, enumerations = read(source_file), read(enumerations_file)
    library.add_value_help(dict(re.findall(r'^\s*VALUE\((\w+), -?\d+, "([^"]*)"\)', enumerations, re.MULTILINE)))
    files = {}
    for coclass, body in re.findall(r"^\s*coclass (\w+)\s*{(.*?)}", source, re.MULTILINE | re.DOTALL):
        for other, name in re.findall(r"IMPORTED\((\w+), (\w+)\)", body):
            if other not in files:
                imported = Library(os.path.join(os.path.dirname(library_file), other + ".tlb"))
                files[other] = (library.add_file(imported, other + ".tlb"), imported)
            library.implement(coclass, library.add_import(*files[other], name))
    library.write(library_file)


if __name__ == "__main__":
    main(*sys.argv[1:])
