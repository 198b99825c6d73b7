"""docs/benchmarks.md: asked rows, growth, memory and start, then all other rows."""

from .runs import OURS
from .targets import SUBSYSTEMS, subsystem

GROWTH = "growth/"


def page(head, targets, growth, sections, programs):
    """The text of the page; `sections` are (title, text), `programs` {name: {row: {who: Figure}}}."""
    met = sum(target.met() for target in targets)
    faster = sum((target.ratio() or 0) > 1 for target in targets)
    parts = [
        "# Benchmarks\n\n" + head,
        f"**{met} of {len(targets)} asked ratios are met; {faster} rows are faster than the peer they are measured"
        " against.**\n\nThe ratio is the peer's time divided by ours, or our rate divided by the peer's: above 1 we are"
        " faster.\nAsked is the ratio that this library aims at for the row. Where it is missed, the lines below a"
        " table\nsay what was tried and what stands in the way.\n\n![Ratios of all rows](benchmarks.svg)\n",
    ]
    for name, _ in SUBSYSTEMS:
        own = [target for target in targets if subsystem(target.row) == name]
        if own:
            parts.append(f"## {name}\n\n" + "\n".join(asked_table(own)) + "\n" + notes(own))
    parts.append(growth_section(growth))
    parts += [f"## {title}\n\n{text}\n" for title, text in sections]
    asked = {target.row for target in targets}
    for name, rows in programs.items():
        lines = list(other_table({row: sides for row, sides in rows.items()
                                  if row not in asked and not row.startswith(GROWTH)}))
        if lines:
            parts.append(f"## Other rows of {name}\n\n" + "\n".join(lines) + "\n")
    return "\n".join(parts)


def asked_table(targets):
    yield "| row | ours | spread | peer | its | ratio | asked | met | other peers |"
    yield "|---|---|---|---|---|---|---|---|---|"
    for t in targets:
        if t.ratio() is None:
            yield f"| {t.row} | | | {t.peer} | | not measured | {t.asked:g} | no | |"
            continue
        others = ", ".join(f"{who} {figure.time / t.ours.time:.2f}" for who, figure in t.others.items())
        yield (f"| {t.row} | {t.ours.text()} | {t.ours.spread:.1%} | {t.peer} | {t.theirs.text()} "
               f"| {t.ratio():.2f} | {t.asked:g} | {'yes' if t.met() else 'no'} | {others} |")


def notes(targets):
    lines = [f"- `{t.row}`: {note}" for t in targets if not t.met() for note in t.notes]
    return "\n" + "\n".join(lines) + "\n" if lines else ""


def growth_section(growth):
    lines = [
        "## Growth\n",
        "The same work over four decades of size, time an item. The last column is the time an item of the largest\n"
        "size divided by that of the smallest: about 1 or below means that the work grows no faster than its input.\n"
        "Replacing one of many objects at random meets memory beyond the processor's caches once they are many,\n"
        "with `malloc` as well.\n",
        "![Time an item by size](growth.svg)\n",
        "| work | who | smallest size | | | | largest size | last / first |",
        "|---|---|---|---|---|---|---|---|",
    ]
    for (work, who), points in growth.items():
        cells = " | ".join(f"{size:,}: {time:.3g} ns" for size, time in points)
        lines.append(f"| {work} | {who} | {cells} | {points[-1][1] / points[0][1]:.2f} |")
    return "\n".join(lines) + "\n"


def growth_of(programs):
    """{(work, who): [(size, ns an item), ...]} of the rows growth/<work>/<size>."""
    lines = {}
    for rows in programs.values():
        for row, sides in rows.items():
            if row.startswith(GROWTH):
                _, work, size = row.split("/")
                for who, figure in sides.items():
                    if not figure.error:
                        lines.setdefault((work, who), []).append((int(size), figure.time))
    return {key: sorted(points) for key, points in lines.items()}


def other_table(rows):
    """Ours beside each peer; rows without ours beside their slowest side."""
    lines = []
    for row, sides in rows.items():
        measured = {who: figure for who, figure in sides.items() if not figure.error}
        base = OURS if OURS in measured else max(measured, key=lambda who: measured[who].time, default=None)
        for who, figure in sides.items():
            if who == OURS and len(sides) > 1:
                continue
            if figure.error or base is None:
                lines.append(f"| {row} | | | {who} | {figure.text()} | |")
                continue
            ours = measured[base]
            ratio = figure.time / ours.time if base == OURS else ours.time / figure.time
            left = f"{ours.text()} | {ours.spread:.1%}" if base == OURS else " | "
            lines.append(f"| {row} | {left} | {who} | {figure.text()} | {ratio:.2f} |")
    if lines:
        yield "| row | ours | spread | peer | its | ratio |"
        yield "|---|---|---|---|---|---|"
        yield from lines
