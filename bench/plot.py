"""Draws the results: time against list length, and ratios to OpenSSL. Plain SVG."""

import math

COLORS = {"ketra view": "#0b6e99", "ketra read": "#5fb0d3", "ketra write": "#5fb0d3", "C interface": "#12324a",
          "CBS": "#d9b44a", "BoringSSL": "#e0906f", "OpenSSL": "#c4572b", "GnuTLS": "#8a6bb0", "Botan": "#7a8b3c",
          "floor": "#bbbbbb", "floor, 1 allocation": "#777777"}
WIDTH, PANEL, HEIGHT, LEFT, TOP = 960, 380, 300, 70, 40


def text(x, y, what, anchor="middle", size=12, color="#333"):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" fill="{color}">{what}</text>'


def line(x1, y1, x2, y2, color="#ddd", width=1):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{color}" stroke-width="{width}"/>'


def spell(nanoseconds):
    for limit, scale, unit in ((1e3, 1, "ns"), (1e6, 1e3, "µs"), (1e9, 1e6, "ms"), (math.inf, 1e9, "s")):
        if nanoseconds < limit:
            return f"{nanoseconds / scale:g} {unit}"


def lengths(left, title, series):
    """Log-log: one line per library."""
    low, high = 0, 10
    x = lambda size: left + math.log10(size) / 5 * PANEL
    y = lambda ns: TOP + HEIGHT - (math.log10(ns) - low) / (high - low) * HEIGHT
    out = [text(left + PANEL / 2, TOP - 16, title, size=14)]
    for power in range(low, high + 1, 1):
        out.append(line(left, y(10**power), left + PANEL, y(10**power)))
        if power % 3 == 0:
            out.append(text(left - 8, y(10**power) + 4, spell(10**power), "end"))
    for power in range(6):
        out += [line(x(10**power), TOP, x(10**power), TOP + HEIGHT),
                text(x(10**power), TOP + HEIGHT + 18, f"{10**power:,}")]
    for library, points in series.items():
        if points:
            path = " ".join(f"{x(size):.1f},{y(ns):.1f}" for size, ns in points)
            out.append(f'<polyline points="{path}" fill="none" stroke="{COLORS[library]}" stroke-width="2"/>')
            out += [f'<circle cx="{x(size):.1f}" cy="{y(ns):.1f}" r="3" fill="{COLORS[library]}"/>' for size, ns in points]
    return out


def ratios(top, bars):
    """Log scale: a group of bars per kind of rows, growing from the line of OpenSSL."""
    powers = [math.log10(value) for group in bars.values() for value in group.values()]
    low, high, height = math.floor(min(powers, default=-1)), math.ceil(max(powers, default=1)), 200
    y = lambda value: top + height - (math.log10(value) - low) / (high - low) * height
    out = [text(WIDTH / 2, top - 16, "time against OpenSSL, geometric means", size=14)]
    for power in range(low, high + 1):
        out += [line(LEFT, y(10**power), WIDTH - 20, y(10**power), "#999" if power == 0 else "#ddd"),
                text(LEFT - 8, y(10**power) + 4, f"{10**power:g}", "end")]
    step = (WIDTH - 20 - LEFT) / max(len(bars), 1)
    for i, ((name, kind), group) in enumerate(bars.items()):
        shown = [(library, value) for library, value in group.items() if library != "OpenSSL"]
        wide = step * 0.8 / max(len(shown), 1)
        for k, (library, value) in enumerate(shown):
            at, start, end = LEFT + step * (i + 0.1) + k * wide, y(1), y(value)
            out.append(f'<rect x="{at:.1f}" y="{min(start, end):.1f}" width="{wide - 2:.1f}" '
                       f'height="{max(abs(start - end), 1):.1f}" fill="{COLORS[library]}"/>')
        out += [text(LEFT + step * (i + 0.5), top + height + 18, kind),
                text(LEFT + step * (i + 0.5), top + height + 33, name, size=11)]
    return out


def chart(series, bars):
    """`series`: (kind, library) -> [(length, ns)]; `bars`: (group, kind) -> {library: ratio}."""
    out = []
    for i, kind in enumerate(("read", "write")):
        of_kind = {library: points for (k, library), points in series.items() if k == kind}
        out += lengths(LEFT + i * (PANEL + 90), f"{kind} a subjectAltName, by number of names", of_kind)
    shown = [library for library in COLORS if any(series.get((kind, library)) for kind in ("read", "write"))]
    for i, library in enumerate(shown):
        at = LEFT + i * 125
        out += [line(at, TOP + HEIGHT + 42, at + 18, TOP + HEIGHT + 42, COLORS[library], 4),
                text(at + 24, TOP + HEIGHT + 46, library, "start")]
    out += ratios(TOP + HEIGHT + 100, bars)
    height = TOP + HEIGHT + 350
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" font-family="sans-serif">'
            f'<rect width="{WIDTH}" height="{height}" fill="white"/>' + "\n".join(out) + "</svg>\n")
