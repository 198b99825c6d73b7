"""Every byte of every single-byte code page, both ways, against Python's codecs.

Their tables were made from the vendors' files, independently of the C library's converters.
Where the library means to differ, the difference is listed here under its reason and must
really be one.

    python_codecs.py PROGRAM        the program prints what the library converts to
"""
import subprocess
import sys

CODECS = {
    2: "iso8859_1", 3: "iso8859_2", 4: "iso8859_3", 5: "iso8859_4", 6: "iso8859_5",
    7: "iso8859_6", 8: "iso8859_7", 9: "iso8859_8", 10: "iso8859_9",
    11: "cp437", 12: "cp850", 13: "cp852", 14: "cp855", 15: "cp857", 16: "cp860", 17: "cp861",
    18: "cp863", 19: "cp864", 20: "cp865", 21: "cp869", 23: "mac_roman", 27: "cp866",
    28: "cp1250", 29: "cp1251", 30: "cp1252", 32: "cp1253", 33: "cp1254", 34: "cp1255",
    35: "cp1256", 36: "cp1257", 37: "cp874",
}

# Codecs whose unassigned bytes are themselves here.
UNASSIGNED_IS_THE_BYTE = {"iso8859_3", "iso8859_6", "iso8859_7", "iso8859_8"}

# Reason, codec, and the unit of each byte here; 0 for no character.
DIFFERENCES = [
    ("ASCII is itself in every code page", "cp864", {0x25: 0x25}),
    ("no Euro sign yet", "cp1250", {0x80: 0}),
    ("no Euro sign yet", "cp1251", {0x88: 0}),
    ("no Euro sign yet", "cp1252", {0x80: 0}),
    ("no Euro sign yet", "cp1253", {0x80: 0}),
    ("no Euro sign yet", "cp1254", {0x80: 0}),
    ("no Euro sign yet", "cp1255", {0x80: 0}),
    ("no Euro sign yet", "cp1256", {0x80: 0}),
    ("no Euro sign yet", "cp1257", {0x80: 0}),
    ("no Euro sign yet", "cp874", {0x80: 0}),
    ("no Euro sign yet", "mac_roman", {0xDB: 0x00A4}),
    ("the not sign was not assigned in this revision", "cp1250", {0xAC: 0}),
    ("letters at the places that they have in 1250", "cp1252", {0x8D: 0x0164, 0x8F: 0x0179}),
    ("z with caron was not assigned in this revision", "cp1252", {0x9E: 0}),
    ("not assigned in the early Hebrew revision", "cp1255",
     {0xA1: 0, 0xAA: 0, 0xB8: 0, 0xBA: 0, 0xBF: 0, 0xD7: 0, 0xD8: 0}),
    ("the point holam haser for vav", "cp1255", {0xCA: 0x05BA}),
    ("not assigned in the early Arabic revision", "cp1256",
     {0x8A: 0, 0x8F: 0, 0x98: 0, 0x9A: 0, 0x9F: 0, 0xAA: 0, 0xC0: 0, 0xFF: 0}),
    ("the Greek standard of 1987", "iso8859_7",
     {0xA1: 0x02BD, 0xA2: 0x02BC, 0xA4: 0x00A4, 0xA5: 0x00A5, 0xAA: 0x00AA}),
    ("the Hebrew standard of 1988", "iso8859_8", {0xAF: 0x203E, 0xFD: 0x00FD, 0xFE: 0x00FE}),
    ("the ohm sign for the Greek letter", "mac_roman", {0xBD: 0x2126}),
    ("the vendor's logo has no character", "mac_roman", {0xF0: 0}),
]

UNITS = [unit for unit in range(0x80, 0x10000) if not 0xD800 <= unit <= 0xDFFF]


def codec_decode(codec, byte):
    try:
        return ord(bytes([byte]).decode(codec))
    except UnicodeDecodeError:
        return 0


def codec_encode(codec):
    """Unit to byte, as the codec encodes, which it has from a table of its own."""
    encoded = "".join(map(chr, UNITS)).encode(codec, "replace")
    return {unit: byte for unit, byte in zip(UNITS, encoded) if byte != ord("?")}


def expected_tables(codec, complain):
    """What the library should decode, a list of 256 units, and encode, unit to byte."""
    units = [codec_decode(codec, byte) for byte in range(0x100)]
    codes = codec_encode(codec)
    changes = {}
    for reason, name, bytes_here in DIFFERENCES:
        if name == codec:
            changes.update(bytes_here)
            for byte, unit in bytes_here.items():
                if units[byte] == unit:
                    complain(f"{codec} {byte:02X}: {reason}: listed, but no difference")
    if codec in UNASSIGNED_IS_THE_BYTE:
        for byte in range(0x80, 0x100):
            if units[byte] == 0 and byte not in changes:
                changes[byte] = byte
    for byte, unit in changes.items():
        if codes.get(units[byte]) == byte:
            del codes[units[byte]]
        units[byte] = unit
    for byte, unit in sorted(changes.items()):
        if unit >= 0x80:
            codes[unit] = min(byte, codes.get(unit, byte))
    return units, codes


def compare(name, actual, expected, complain):
    if len(actual) != len(expected):
        complain(f"{name}: {len(actual)} elements instead of {len(expected)}")
    for place, (here, there) in enumerate(zip(actual, expected)):
        if here != there:
            complain(f"{name} {place:X}: {here:X} instead of {there:X}")


def check_page(codec, printed, complain):
    units, codes = expected_tables(codec, complain)
    compare(codec + " decode", [int(text, 16) for text in printed["decode"].split()], units, complain)

    encoded = dict((int(number, 16) for number in pair.split(":")) for pair in printed["encode"].split())
    for unit in sorted(encoded.keys() | codes.keys()):
        if encoded.get(unit) != codes.get(unit):
            complain(f"{codec} encode {unit:04X}: {encoded.get(unit)} instead of {codes.get(unit)}")

    # In a text a byte without a character is itself, and a unit without a byte an escape.
    wide = [units[byte] or byte for byte in range(1, 0x100)]
    compare(codec + " wide", [int(text, 16) for text in printed["wide"].split()], wide, complain)
    text = b"".join(bytes([codes[unit]]) if unit in codes else b"\\U+%04X" % unit
                    for unit in range(0x80, 0x10000))
    compare(codec + " bytes", bytes.fromhex(printed["bytes"]), text, complain)


def main(program):
    complaints = []
    pages = {}
    output = subprocess.run([program], check=True, capture_output=True, text=True).stdout
    for line in output.splitlines():
        page, direction, values = line.split(" ", 2)
        pages.setdefault(int(page), {})[direction] = values
    if sorted(pages) != sorted(CODECS):
        complaints.append(f"code pages {sorted(pages)} instead of {sorted(CODECS)}")
    for page, codec in CODECS.items():
        if page in pages:
            check_page(codec, pages[page], complaints.append)
    for complaint in complaints[:50]:
        print(complaint, file=sys.stderr)
    print(f"{len(CODECS)} code pages, {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
