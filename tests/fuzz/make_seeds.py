#!/usr/bin/env python3
"""Writes the small seed corpus of the fuzz targets into corpus/<target>/.

A few valid files per target (the damaged ones are unit-test cases); the fuzzer grows the rest.
Run again after changing a seed; the files are committed."""
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))


def record(status=1, dow=1, month=1, day=7, year=2002, on=(10, 0, 0), off=(10, 30, 0),
           duration=1800, name=b"Home ISP", terminate=True):
    head = struct.pack("<B3x10If i", status, dow, month, day, year, *on, *off, 0.0, duration)
    head += bytes(35)
    field = name[:105] if not terminate else name[:104] + b"\0"
    return head + field.ljust(105, b"\0")


def log(records, count=None):
    count = len(records) if count is None else count
    return struct.pack("<II", count, (count * 192) & 0xFFFFFFFF) + b"".join(records)


def settings(marker=b"orvalen_v015", open_session=False, accounts=()):
    block = bytearray(6352)
    block[0:len(marker)] = marker
    struct.pack_into("<fI", block, 20, 1.0, 1)
    block[43:46] = bytes([1, 0, 2])
    block[52:56] = bytes([0, 10, 30, 30])
    struct.pack_into("<I", block, 60, 1)
    block[133] = 1
    block[134] = 218 if open_session else 219
    for k, (name, kind) in enumerate(accounts):
        struct.pack_into("<I32sIIfff", block, 136 + 120 * k, 1, name, kind, 20, 9.5, 0.5, 17.5)
    if open_session:
        struct.pack_into("<3I3I4II60s", block, 6248, 10, 9, 0, 10, 0, 0, 1, 1, 7, 2002, 540,
                         b"Home ISP")
    return bytes(block)


fresh = log([bytes(192), bytes(192)])
three = log([record(), record(status=3, name=b"Old ISP"), record(name=b"Work", duration=0)])
seeds = {
    "load_log": {
        "fresh": fresh,
        "three": three,
        "empty": b"",
    },
    "load_legacy_log": {
        "three_slots": record() + record(status=3) + record(name=b"Work"),
        "unterminated": record(name=b"q" * 105, terminate=False) + bytes(192),
        "empty": b"",
    },
    "load_settings": {
        "defaults": settings(),
        "open_session": settings(open_session=True, accounts=[(b"Home ISP", 1), (b"Work", 2)]),
        "upper_marker": settings(marker=b"ORVALEN_V015", accounts=[(b"Home ISP", 3)]),
        "older_release": settings(marker=b"orvalen_v014", open_session=True),
        "short": settings()[:10],
        "unterminated_account": settings(accounts=[(b"a" * 32, 2)]),
    },
}
seeds["log_view"] = {name: bytes([n * 37 % 256, n * 53 % 256]) + data
                     for n, (name, data) in enumerate(seeds["load_log"].items())}

for target, files in seeds.items():
    folder = os.path.join(HERE, "corpus", target)
    os.makedirs(folder, exist_ok=True)
    for name, data in files.items():
        with open(os.path.join(folder, name), "wb") as out:
            out.write(data)
