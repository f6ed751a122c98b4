#!/usr/bin/env python3
"""Draws every image of resources/images.qrc and writes the list itself.

    tools/make_images.py [RESOURCES_FOLDER]

Each image is an SVG composed here, some around an outline from
resources/images/lucide, and rendered by rsvg-convert (Debian: librsvg2-bin;
the letters use fonts-dejavu-core).
"""

import math
import re
import shutil
import subprocess
import sys
from pathlib import Path

DARK = "#141c26"
ACCENT = "#1f8fe8"
ACCENT_DEEP = "#0f62a8"
MUTED = "#b3423a"
AMBER = "#f5b921"
FONT = 'font-family="DejaVu Sans" font-weight="bold" text-anchor="middle"'


def svg(width, height, body):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}">{body}</svg>')


def outline(folder, name, x, y, size, colour="#ffffff", stroke=2.0):
    """A Lucide outline, drawn on a 24-unit square, scaled to size at (x, y)."""
    text = (folder / f"{name}.svg").read_text(encoding="utf-8")
    shapes = re.search(r"<svg[^>]*>(.*)</svg>", text, re.S).group(1)
    return (f'<g transform="translate({x} {y}) scale({size / 24})" fill="none" stroke="{colour}" '
            f'stroke-width="{stroke}" stroke-linecap="round" stroke-linejoin="round">{shapes}</g>')


def button(content, fill=DARK, opacity=0.80, rim="#ffffff", rim_opacity=0.22, size=36):
    edge = size - 2
    return svg(size, size,
               f'<rect x="1" y="1" width="{edge}" height="{edge}" rx="8" fill="{fill}" fill-opacity="{opacity}"/>'
               f'<rect x="1.5" y="1.5" width="{edge - 1}" height="{edge - 1}" rx="7.5" fill="none" '
               f'stroke="{rim}" stroke-opacity="{rim_opacity}"/>{content}')


LIT = dict(fill=ACCENT, opacity=0.96, rim_opacity=0.65)
HOVERED = dict(fill="#3a4c60", opacity=0.92, rim_opacity=0.55)
PRESSED = dict(fill=ACCENT_DEEP, opacity=0.98, rim_opacity=0.65)


def no_fly(folder):
    return (outline(folder, "plane", 11, 11, 14, stroke=2.4)
            + '<circle cx="18" cy="18" r="11.5" fill="none" stroke="#ffffff" stroke-width="2"/>'
            '<path d="M9.9 9.9 L26.1 26.1" stroke="#ffffff" stroke-width="2"/>')


def tool_bar(folder):
    glyph = {name: outline(folder, name, 7.5, 7.5, 21)
             for name in ("camera", "camera-off", "ruler", "map-pin", "fullscreen", "plane", "volume-2", "volume-x")}
    return {
        "Hide_photo_point_but_nor": button(glyph["camera-off"]),
        "Show_photo_point_but_nor": button(glyph["camera"], **LIT),
        "hide_No_fly_but_nor": button(no_fly(folder)),
        "Show_No_fly_but_nor": button(no_fly(folder), **LIT),
        "tool_Measure_but_nor": button(glyph["ruler"]),
        "tool_Measure_but_hov": button(glyph["ruler"], **LIT),
        "tool_Markpoint_but_nor": button(glyph["map-pin"]),
        "tool_Markpoint_but_hov": button(glyph["map-pin"], **LIT),
        "show_all_but_nor": button(glyph["fullscreen"]),
        "show_all_but_hov": button(glyph["fullscreen"], **HOVERED),
        "show_all_but_pre": button(glyph["fullscreen"], **PRESSED),
        "Display_airplane_but_nor": button(glyph["plane"]),
        "Display_airplane_but_hov": button(glyph["plane"], **HOVERED),
        "Display_airplane_but_pre": button(glyph["plane"], **PRESSED),
        "Voice_broadcast_on_but_nor": button(glyph["volume-2"]),
        "Voice_broadcast_off_but_nor": button(glyph["volume-x"], fill=MUTED, opacity=0.94, rim_opacity=0.5),
        "Blockwork/list_area_locking_but_nor": svg(
            36, 36, f'<circle cx="18" cy="18" r="16.5" fill="{DARK}" fill-opacity="0.85" stroke="{AMBER}"/>'
            + outline(folder, "lock", 8.5, 7.5, 19, AMBER, 2.2)),
    }


def compass():
    """A dial of 80 pixels; the needle is drawn for north-east, as its reader expects."""
    size, middle = 80, 40
    ticks = ""
    for degrees in range(0, 360, 15):
        inner = 32.5 if degrees % 45 == 0 else 34
        sine, cosine = math.sin(math.radians(degrees)), math.cos(math.radians(degrees))
        ticks += (f'<path d="M{middle + inner * sine:.2f} {middle - inner * cosine:.2f} '
                  f'L{middle + 36.5 * sine:.2f} {middle - 36.5 * cosine:.2f}" '
                  f'stroke="#ffffff" stroke-opacity="0.75" stroke-width="{1.6 if degrees % 45 == 0 else 1}"/>')
    background = svg(size, size, f'<circle cx="40" cy="40" r="39" fill="{DARK}" fill-opacity="0.66"/>{ticks}')

    def ring(colour, opacity, width):
        radius = 39.5 - width / 2
        return svg(size, size, f'<circle cx="40" cy="40" r="{radius}" fill="none" stroke="{colour}" '
                               f'stroke-opacity="{opacity}" stroke-width="{width}"/>')

    # Drawn upright about (0, 0) and turned by 45 degrees. It carries the only
    # letter, because the dial stays while the needle turns.
    needle = svg(64, 64, '<g transform="translate(32 32) rotate(45)" stroke="#0b1016" stroke-opacity="0.55" '
                         'stroke-width="0.8" stroke-linejoin="round">'
                         '<path d="M0 -19.5 L6.5 0 L0 0 Z" fill="#c62f25"/><path d="M0 -19.5 L-6.5 0 L0 0 Z" fill="#f0564a"/>'
                         '<path d="M0 21 L6.5 0 L0 0 Z" fill="#c9d0d8"/><path d="M0 21 L-6.5 0 L0 0 Z" fill="#ffffff"/>'
                         '<circle r="2.4" fill="#141c26" stroke="none"/>'
                         f'<text x="0" y="-21.5" {FONT} font-size="11" fill="#ff6b5e" stroke="none">N</text></g>')
    return {
        "NorthArrow/lookbackground": background,
        "NorthArrow/looknorm": ring("#ffffff", 0.55, 1.5),
        "NorthArrow/lookhover": ring("#ffffff", 1, 2.5),
        "NorthArrow/lookpress": ring(ACCENT, 1, 3),
        "NorthArrow/n": needle,
    }


def pin(content, fill, rim="#ffffff"):
    """A map pin of 32 by 40 pixels whose point is the middle of the lower edge."""
    return svg(32, 40, f'<path d="M16 38.8 C12 31.6 1.8 25 1.8 15.6 A14.2 14.2 0 0 1 30.2 15.6 C30.2 25 20 31.6 16 38.8 Z" '
                       f'fill="{fill}" stroke="{rim}" stroke-width="1.6" stroke-linejoin="round"/>{content}')


def markers():
    images = {
        "map_airline_show/Map_Marker_ic": pin('<circle cx="16" cy="15.6" r="5.6" fill="#ffffff"/>', "#e0443a"),
        "Glidepath/landing_point_True_ic": pin(
            '<path d="M11.2 8.6 V22.6 M20.8 8.6 V22.6 M11.2 15.6 H20.8" stroke="#ffffff" stroke-width="3.2" '
            'stroke-linecap="round" fill="none"/>', "#2a9d4a"),
        "Glidepath/landing_point_parachute_ic": pin(
            '<path d="M7.4 14.6 A8.6 8.6 0 0 1 24.6 14.6 Q21.7 12.2 18.9 14.6 Q16 12.2 13.1 14.6 Q10.3 12.2 7.4 14.6 Z" '
            'fill="#ffffff"/><path d="M7.8 14.8 L16 23.4 L24.2 14.8 M13.1 14.8 L16 23.4 L18.9 14.8" '
            'stroke="#ffffff" stroke-width="1.2" fill="none" stroke-linejoin="round"/>'
            '<rect x="14" y="22" width="4" height="4" rx="1" fill="#ffffff"/>', "#2a9d4a"),
    }
    for number in range(1, 5):
        for suffix, fill, ink in (("", "#f4f7fa", DARK), ("sel", "#f28a1c", "#ffffff")):
            digit = f'<text x="16" y="21.4" {FONT} font-size="16.5" fill="{ink}">{number}</text>'
            images[f"map_airline_show/Waypoint_Set_{number}{suffix}_ic"] = pin(
                digit, fill, "#ffffff" if suffix else ACCENT_DEEP)
    return images


def directions():
    """The three passes of an oblique survey: parallel lines along each, and its number."""
    images = {}
    for number, degrees in ((1, 0), (2, 60), (3, -60)):
        lines = "".join(f'<path d="M{x} -7 V7"/>' for x in (-4.6, 0, 4.6))
        content = (f'<g transform="translate(12.2 12.8) rotate({degrees})" stroke="#ffffff" stroke-opacity="0.8" '
                   f'stroke-width="1.7" stroke-linecap="round">{lines}</g>'
                   f'<text x="22.8" y="27.4" {FONT} font-size="13.5" fill="#ffffff" stroke="{DARK}" stroke-width="3" '
                   f'paint-order="stroke" stroke-linejoin="round">{number}</text>')
        name = f"map_airline_show/lineares_flight_lean_mis{number}_but_"
        images[name + "nor"] = button(content, opacity=0.85, size=32)
        images[name + "hov"] = button(content, size=32, **LIT)
        images[name + "pre"] = button(content, size=32, **PRESSED)
    return images


def warning():
    return svg(48, 48, f'<path d="M24 5 L44 41.5 H4 Z" fill="{AMBER}" stroke="{AMBER}" stroke-width="6" '
                       'stroke-linejoin="round"/><path d="M24 16 V28.5" stroke="#2b2205" stroke-width="5" '
                       'stroke-linecap="round"/><circle cx="24" cy="36.6" r="2.9" fill="#2b2205"/>')


def application(folder):
    """A globe with its graticule and an aircraft crossing it."""
    grid = "".join(f'<ellipse cx="124" cy="136" rx="{radius}" ry="104"/>' for radius in (38, 76))
    grid += '<path d="M124 32 V240 M20 136 H228"/>'
    for y in (84, 188):
        half = math.sqrt(104 ** 2 - (136 - y) ** 2)
        grid += f'<path d="M{124 - half:.1f} {y} H{124 + half:.1f}"/>'
    plane = (folder / "plane.svg").read_text(encoding="utf-8")
    shape = re.search(r'd="([^"]+)"', plane).group(1)
    return svg(256, 256,
               '<defs><radialGradient id="sea" cx="0.36" cy="0.30" r="0.80">'
               '<stop offset="0" stop-color="#5cc0f5"/><stop offset="0.55" stop-color="#1f7fd0"/>'
               '<stop offset="1" stop-color="#0b3566"/></radialGradient></defs>'
               '<circle cx="124" cy="136" r="106" fill="url(#sea)"/>'
               f'<g fill="none" stroke="#ffffff" stroke-opacity="0.34" stroke-width="3.5">{grid}</g>'
               '<circle cx="124" cy="136" r="106" fill="none" stroke="#ffffff" stroke-opacity="0.65" stroke-width="5"/>'
               '<g transform="translate(106 6) scale(6)" stroke-linejoin="round">'
               f'<path d="{shape}" fill="#ffffff" stroke="#10243a" stroke-width="1.1"/></g>')


def main():
    here = Path(__file__).resolve().parent
    resources = Path(sys.argv[1]) if len(sys.argv) > 1 else here.parent / "resources"
    folder = resources / "images"
    if not (folder / "lucide").is_dir():
        sys.exit(f"{folder / 'lucide'}: no such folder")
    if not shutil.which("rsvg-convert"):
        sys.exit("rsvg-convert is missing (Debian: librsvg2-bin)")
    outlines = folder / "lucide"
    images = {**tool_bar(outlines), **compass(), **markers(), **directions(),
              "Exclamation_mark": warning(), "appicon": application(outlines)}
    for name, text in images.items():
        target = folder / f"{name}.png"
        target.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["rsvg-convert", "-f", "png", "-o", str(target)], input=text.encode(), check=True)
    names = "\n".join(f'    <file alias="{name}.png">images/{name}.png</file>' for name in sorted(images, key=str.lower))
    (resources / "images.qrc").write_text(
        f'<RCC>\n  <qresource prefix="/images/Normal">\n{names}\n  </qresource>\n</RCC>\n', encoding="utf-8")
    print(f"{len(images)} images in {folder}")


if __name__ == "__main__":
    main()
