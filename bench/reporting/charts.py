"""The two charts of docs/benchmarks.md, as SVG."""

import math
from xml.sax.saxutils import escape

from .targets import SUBSYSTEMS, subsystem

MET, FASTER, SLOWER, INK, FAINT = "#2a7f62", "#d08c1d", "#b8322a", "#222222", "#d5d5d5"
STYLE = (f'<style>text{{font:11px "DejaVu Sans",Helvetica,Arial,sans-serif;fill:{INK}}}'
         ".head{font-weight:bold;font-size:12px}.title{font-weight:bold;font-size:15px}.small{font-size:10px}</style>")


def svg(width, height, parts):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}">\n{STYLE}\n<rect width="{width}" height="{height}" fill="white"/>\n'
            + "\n".join(parts) + "\n</svg>\n")


def text(x, y, words, cls="", anchor="start"):
    return f'<text x="{x:.1f}" y="{y:.1f}" class="{cls}" text-anchor="{anchor}">{escape(words)}</text>'


def line(x1, y1, x2, y2, color, width=1.0):
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{color}" '
            f'stroke-width="{width}"/>')


def rect(x, y, width, height, color):
    return f'<rect x="{x:.1f}" y="{y:.1f}" width="{width:.1f}" height="{height:.1f}" fill="{color}"/>'


def bars(targets):
    """One bar a row from the peer's 1.0 to our ratio, the asked ratio as a tick."""
    left, right, row_height, top = 320, 860, 15, 78
    lowest, highest = math.log2(0.25), math.log2(64)

    def at(ratio):
        share = (math.log2(ratio) - lowest) / (highest - lowest)
        return left + (right - left) * min(max(share, 0.0), 1.0)

    parts, y = [], top
    for name, _ in SUBSYSTEMS:
        own = [target for target in targets if subsystem(target.row) == name]
        if not own:
            continue
        y += 20
        parts.append(text(12, y - 5, f"{name}: {sum(t.met() for t in own)} of {len(own)}", "head"))
        for t in own:
            parts += bar(t, y, row_height, left, right, at)
            y += row_height
    grid = []
    for power in range(-2, 7):
        x = at(2.0 ** power)
        grid.append(line(x, top, x, y + 4, INK if power == 0 else FAINT, 1.2 if power == 0 else 0.7))
        grid.append(text(x, top - 6, f"{2.0 ** power:g}", "small", "middle"))
    met = sum(target.met() for target in targets)
    head = [
        text(12, 24, f"Times as fast as the peer: {met} of {len(targets)} asked ratios met", "title"),
        rect(12, 36, 12, 10, MET), text(28, 45, "asked ratio met"),
        rect(140, 36, 12, 10, FASTER), text(156, 45, "faster than the peer, less than asked"),
        rect(385, 36, 12, 10, SLOWER), text(401, 45, "slower than the peer"),
        line(540, 35, 540, 47, INK, 2.5), text(548, 45, "asked ratio"),
        text(640, 45, "logarithmic scale; 1 = the peer"),
    ]
    return svg(920, y + 16, head + grid + parts)


def bar(target, y, height, left, right, at):
    parts = [text(20, y + 11, target.row), text(left - 8, y + 11, target.peer, "small", "end")]
    ratio = target.ratio()
    if ratio is None:
        return parts + [text(at(1) + 6, y + 11, "not measured", "small")]
    color = MET if target.met() else FASTER if ratio > 1 else SLOWER
    start, end = sorted((at(1), at(ratio)))
    asked = at(target.asked)
    return parts + [
        rect(start, y + 2, max(end - start, 1.0), height - 4, color),
        line(asked, y, asked, y + height - 1, INK, 2.5),
        text(right + 6, y + 11, f"{ratio:.2f}", "small"),
    ]


def growth(lines):
    """One panel a work: time an item by size, both logarithmic."""
    works = list(dict.fromkeys(work for work, _ in lines))
    columns, width, height = 4, 250, 190
    rows = -(-len(works) // columns)
    parts = [text(12, 24, "Time an item over four decades of size (flat or falling: no slower as work grows)", "title")]
    for index, work in enumerate(works):
        own = {who: points for (w, who), points in lines.items() if w == work}
        parts += panel(work, own, 12 + index % columns * width, 44 + index // columns * height, width - 20, height - 30)
    return svg(columns * width + 12, 50 + rows * height, parts)


def panel(work, own, x, y, width, height):
    sizes = [size for points in own.values() for size, _ in points]
    times = [time for points in own.values() for _, time in points]
    left, bottom = x + 46, y + height - 18
    low = 10 ** math.floor(math.log10(min(times)))
    high = max(10 ** math.ceil(math.log10(max(times))), low * 100)

    def px(size):
        return left + (x + width - left) * math.log(size / min(sizes)) / math.log(max(sizes) / min(sizes))

    def py(time):
        return bottom - (bottom - y - 18) * math.log(time / low) / math.log(high / low)

    parts = [text(x, y + 10, work.replace("_", " "), "head")]
    decade = low
    while decade <= high * 1.001:
        parts.append(line(left, py(decade), x + width, py(decade), FAINT, 0.7))
        parts.append(text(left - 5, py(decade) + 4, f"{decade:g} ns", "small", "end"))
        decade *= 10
    parts.append(text(left, bottom + 13, f"{min(sizes):,}", "small"))
    parts.append(text(x + width, bottom + 13, f"{max(sizes):,}", "small", "end"))
    for who, points in own.items():
        color = MET if who == "tv" else "#888888"
        path = " ".join(f"{px(size):.1f},{py(time):.1f}" for size, time in points)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{color}" stroke-width="2"/>')
        parts += [f'<circle cx="{px(s):.1f}" cy="{py(t):.1f}" r="2.5" fill="{color}"/>' for s, t in points]
        if len(own) > 1:
            size, time = points[0]
            parts.append(text(px(size) + 4, py(time) + (14 if who == "tv" else -6), "ours" if who == "tv" else who,
                              "small"))
    return parts
