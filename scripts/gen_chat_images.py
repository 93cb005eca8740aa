#!/usr/bin/env python3
"""Draws the chat module's images as SVG, at 1x and 2x, and writes the
resource file that names them. Run from the repository root:

    python3 scripts/gen_chat_images.py

The 2x file draws the same picture on a canvas twice as large, so that
screens with a pixel ratio of 2 get sharp edges."""

import os

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "module", "chat", "resources")

BLUE = "#198CFF"
GREY = "#8A8F99"
RED = "#F25555"


def svg(width, height, body, scale):
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width * scale}" height="{height * scale}" '
        f'viewBox="0 0 {width} {height}">\n{body}\n</svg>\n'
    )


def spinner(size, color):
    c = size / 2
    r = size / 2 - size / 8
    w = size / 8
    return (
        f'<circle cx="{c}" cy="{c}" r="{r}" fill="none" stroke="{color}" stroke-opacity="0.2" stroke-width="{w}"/>'
        f'<path d="M {c} {c - r} A {r} {r} 0 0 1 {c + r} {c}" fill="none" stroke="{color}" '
        f'stroke-width="{w}" stroke-linecap="round"/>'
    )


def dots(color, background=None):
    back = f'<circle cx="10" cy="10" r="10" fill="{background}"/>' if background else ""
    return back + "".join(f'<circle cx="{x}" cy="10" r="1.6" fill="{color}"/>' for x in (5, 10, 15))


def picture(frame, mark):
    return (
        f'<rect x="0" y="0" width="200" height="120" rx="8" fill="#F2F4F7"/>'
        f'<g transform="translate(76 36)">'
        f'<rect x="0" y="0" width="48" height="40" rx="4" fill="none" stroke="{frame}" stroke-width="3"/>'
        f'<circle cx="14" cy="13" r="5" fill="{frame}"/>'
        f'<path d="M4 34 L18 22 L27 30 L34 24 L44 34 Z" fill="{frame}"/>'
        f"{mark}</g>"
    )


FILE_KINDS = [
    ("file_unknown", "FILE", "#8A8F99"),
    ("file_doc", "DOC", "#2B6BE6"),
    ("file_xls", "XLS", "#1E9E5A"),
    ("file_ppt", "PPT", "#E8672C"),
    ("file_pdf", "PDF", "#E03C3C"),
    ("file_txt", "TXT", "#5B6B8C"),
    ("file_image", "IMG", "#1AA3B8"),
    ("file_video", "VID", "#7A5AF8"),
    ("file_audio", "AUD", "#D04C9C"),
    ("file_zip", "ZIP", "#C98A00"),
    ("file_code", "CODE", "#3A4A6B"),
    ("file_exe", "EXE", "#4E5461"),
]


def file_icon(label, color):
    return (
        f'<path d="M6 2 H24 L32 10 V34 H6 Z" fill="#FFFFFF" stroke="#DDE1E5" stroke-width="1"/>'
        f'<path d="M24 2 V10 H32" fill="#EBEDF2" stroke="#DDE1E5" stroke-width="1"/>'
        f'<rect x="2" y="18" width="26" height="11" rx="2" fill="{color}"/>'
        f'<text x="15" y="26.5" font-family="DejaVu Sans" font-size="{7 if len(label) > 3 else 8}" '
        f'font-weight="bold" fill="#FFFFFF" text-anchor="middle">{label}</text>'
    )


def shadow_pill():
    rings = "".join(
        f'<rect x="{6 - i}" y="{4 - i + 2}" width="{52 + 2 * i}" height="{32 + 2 * i}" rx="{16 + i}" '
        f'fill="#000000" fill-opacity="{0.05 - i * 0.008:.3f}"/>'
        for i in range(5, 0, -1)
    )
    return rings + '<rect x="6" y="4" width="52" height="32" rx="16" fill="#FFFFFF"/>'


IMAGES = {
    "images/chat/icon_msg_error": (16, 16, f'<circle cx="8" cy="8" r="7" fill="{RED}"/>'
                                   '<rect x="7" y="3.5" width="2" height="6" rx="1" fill="#FFFFFF"/>'
                                   '<circle cx="8" cy="12" r="1.1" fill="#FFFFFF"/>'),
    "images/chat/icon_msg_loading": (16, 16, spinner(16, BLUE)),
    "images/loading/Loading40_40": (40, 40, spinner(40, BLUE)),
    "images/chat/im_more_opt_icon_normal": (20, 20, dots(GREY)),
    "images/chat/im_more_opt_icon_hover": (20, 20, dots(BLUE, "#E1EEFF")),
    "images/chat/meeting_notice": (16, 16, f'<path d="M2 6 H5 L11 2.5 V13.5 L5 10 H2 Z" fill="{BLUE}"/>'
                                   f'<path d="M13 5.5 Q15 8 13 10.5" fill="none" stroke="{BLUE}" stroke-width="1.4" '
                                   'stroke-linecap="round"/><rect x="4" y="10" width="2.2" height="4" rx="1" '
                                   f'fill="{BLUE}"/>'),
    "images/chat/im_icon_announce_arrow": (12, 12, f'<path d="M4.5 2.5 L8 6 L4.5 9.5" fill="none" stroke="{BLUE}" '
                                           'stroke-width="1.5" stroke-linecap="round" stroke-linejoin="round"/>'),
    "images/chat/unread_msg_btn_bg": (64, 44, shadow_pill()),
    "images/chat/unread_msg_btn": (16, 16, f'<circle cx="8" cy="8" r="7" fill="{BLUE}"/>'
                                   '<path d="M5 6.5 L8 9.5 L11 6.5" fill="none" stroke="#FFFFFF" stroke-width="1.6" '
                                   'stroke-linecap="round" stroke-linejoin="round"/>'),
    "images/chat/im_icon_imagefail_normal": (200, 120, picture("#C4C8CF",
                                             f'<circle cx="44" cy="36" r="9" fill="{RED}"/>'
                                             '<path d="M40.5 32.5 L47.5 39.5 M47.5 32.5 L40.5 39.5" stroke="#FFFFFF" '
                                             'stroke-width="2" stroke-linecap="round"/>')),
    "images/chat/im_icon_imageloading_normal": (200, 120, picture("#C4C8CF", "")),
    "images/chat/im_icon_imagemissing_normal": (200, 120, picture("#DDE1E5",
                                                '<path d="M-4 44 L52 -4" stroke="#C4C8CF" stroke-width="3" '
                                                'stroke-linecap="round"/>')),
    "images/chat/file_transfer/icon_cancel": (20, 20, '<circle cx="10" cy="10" r="8.5" fill="none" stroke="#8A8F99" '
                                              'stroke-width="1.5"/><path d="M7 7 L13 13 M13 7 L7 13" stroke="#8A8F99" '
                                              'stroke-width="1.5" stroke-linecap="round"/>'),
    "images/chat/file_transfer/icon_download": (20, 20, f'<circle cx="10" cy="10" r="8.5" fill="none" stroke="{BLUE}" '
                                                f'stroke-width="1.5"/><path d="M10 5.5 V13 M6.8 10 L10 13.2 L13.2 10" '
                                                f'fill="none" stroke="{BLUE}" stroke-width="1.5" stroke-linecap="round" '
                                                'stroke-linejoin="round"/>'),
    "images/chat/file_transfer/icon_fail": (20, 20, f'<path d="M15.5 7 A6 6 0 1 0 16 11" fill="none" stroke="{RED}" '
                                            'stroke-width="1.6" stroke-linecap="round"/>'
                                            f'<path d="M16.5 3.5 V7.5 H12.5" fill="none" stroke="{RED}" '
                                            'stroke-width="1.6" stroke-linecap="round" stroke-linejoin="round"/>'),
}
for name, label, color in FILE_KINDS:
    IMAGES[f"images/chat/file_transfer/{name}"] = (36, 36, file_icon(label, color))


def main():
    entries = []
    for alias, (width, height, body) in sorted(IMAGES.items()):
        for scale, suffix in ((1, ""), (2, "@2x")):
            path = os.path.join(ROOT, alias + suffix + ".svg")
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as out:
                out.write(svg(width, height, body, scale))
            entries.append((alias + suffix, alias + suffix + ".svg"))
    entries.append(("qss/chat/chat_widget", "qss/chat/chat_widget.qss"))
    with open(os.path.join(ROOT, "chat_resources.qrc"), "w", encoding="utf-8") as out:
        out.write("<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n<qresource prefix=\"/\">\n")
        for alias, path in entries:
            out.write(f'  <file alias="{alias}">{path}</file>\n')
        out.write("</qresource>\n</RCC>\n")


if __name__ == "__main__":
    main()
