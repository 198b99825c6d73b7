"""The rows with an asked ratio, where each stands, and what is known of those that miss."""

import csv
import pathlib

from .runs import OURS

FOLDER = pathlib.Path(__file__).resolve().parent.parent

# A row belongs to the first of these whose names its first part begins with.
SUBSYSTEMS = [
    ("Heap", ("alloc",)),
    ("Containers and strings", ("append", "vector_", "string_")),
    ("Code pages", ("cp_",)),
    ("UTF-8", ("utf8_", "wide_to_utf8")),
    ("Numbers", ("dtoa", "atod")),
    ("Formatted text", ("format", "scan")),
    ("Streams and files", ("file_", "mem_")),
]


def subsystem(row):
    return next((name for name, starts in SUBSYSTEMS if row.startswith(starts)), "Other")


class Target:
    """A row, the peer that its ratio is asked against, and how it went."""

    def __init__(self, row, peer, asked, notes):
        self.row = row
        self.peer = peer
        self.asked = asked
        self.notes = notes
        self.ours = self.theirs = None
        self.others = {}

    def measure(self, sides):
        sides = {who: figure for who, figure in sides.items() if not figure.error}
        self.ours = sides.pop(OURS, None)
        self.theirs = sides.pop(self.peer, None)
        self.others = sides

    def ratio(self):
        return self.theirs.time / self.ours.time if self.ours and self.theirs else None

    def met(self):
        return self.ratio() is not None and self.ratio() >= self.asked


def read(rows):
    """All targets, measured by `rows`, the figures of each row."""
    notes = {}
    for line in read_csv("notes.csv"):
        notes.setdefault(line["row"], []).append(line["note"])
    targets = []
    for line in read_csv("targets.csv"):
        target = Target(line["row"], line["peer"], float(line["ratio"]), notes.pop(line["row"], []))
        target.measure(rows.get(target.row, {}))
        targets.append(target)
    if notes:
        raise SystemExit(f"notes.csv has notes of rows that targets.csv lacks: {', '.join(notes)}")
    return targets


def read_csv(name):
    with open(FOLDER / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))
