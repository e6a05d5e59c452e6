"""Harbour Light, a sailing club."""
import random

from drawings.shapes import at, circle, gif, gradient, JPEG, line, path, picture, rect


def lighthouse():
    """Its foot is at 0,0; it is 150 high."""
    stripes = "".join(
        path(
            "M%g,%g L%g,%g L%g,%g L%g,%g Z"
            % (
                -16 + i * 1.05,
                -i * 19,
                16 - i * 1.05,
                -i * 19,
                15 - i * 1.05,
                -i * 19 - 19,
                -15 + i * 1.05,
                -i * 19 - 19,
            ),
            "#f7efe0" if i % 2 else "#b23a30",
        )
        for i in range(6)
    )
    shade = path("M4,0 L16,0 L9.5,-114 L3,-114 Z", "#17384d", 'opacity=".18"')
    lamp = (
        rect(-13, -119, 26, 5, "#17384d")
        + rect(-7, -134, 14, 15, "#ffe9a3")
        + line(-7, -134, -7, -119, "#17384d", 1.5)
        + line(0, -134, 0, -119, "#17384d", 1.2)
        + line(7, -134, 7, -119, "#17384d", 1.5)
        + path("M-10,-134 L10,-134 Q8,-146 0,-147 Q-8,-146 -10,-134 Z", "#b23a30")
        + rect(-1, -153, 2, 7, "#17384d")
    )
    return stripes + shade + lamp


def dinghy(sail, hull="#17384d", number=""):
    """Sailing to the right; its water line is at y 0, it is 100 high."""
    return (
        path("M-34,-8 L36,-12 Q30,2 20,3 L-26,3 Q-32,0 -34,-8 Z", hull)
        + line(2, -10, 2, -98, "#5a3a2c", 2)
        + path("M0,-15 L0,-96 Q-26,-52 -34,-15 Z", sail)
        + path("M5,-15 L5,-84 Q24,-44 28,-16 Z", "#fffaf0")
        + path("M0,-15 L0,-96 Q-9,-56 -10,-15 Z", "#000", 'opacity=".07"')
        + '<text x="-19" y="-32" font-family="Open Sans" font-weight="700" font-size="10" fill="#17384d">%s</text>'
        % number
    )


def ripples(seed, x1, x2, y1, y2, count, colour, opacity):
    chance = random.Random(seed)
    result = ""
    for _ in range(count):
        y = y1 + (y2 - y1) * chance.random() ** 1.4
        near = (y - y1) / (y2 - y1)
        length = (8 + 34 * near) * (0.5 + chance.random())
        x = x1 + (x2 - x1) * chance.random()
        result += path(
            "M%g,%g q%g,%g %g,0" % (x, y, length / 2, -1 - 2 * near, length),
            "none",
            'stroke="%s" stroke-width="%g" stroke-linecap="round" opacity="%g"'
            % (colour, 0.8 + near, opacity),
        )
    return result


@picture("templates/Harbour Light/images/banner.jpg", 760, 180, JPEG)
def club_banner():
    sky = gradient("sky", (0, "#3f7fa0"), (0.55, "#a9cbd2"), (0.85, "#f7d9ae"), (1, "#f3c48c"))
    sea = gradient("sea", (0, "#e0b78c"), (0.12, "#7fa3ab"), (0.5, "#2f7089"), (1, "#1c4f68"))
    beam = '<linearGradient id="beam" x1="1" x2="0"><stop offset="0" stop-color="#fff6cf" stop-opacity=".7"/><stop offset="1" stop-color="#fff6cf" stop-opacity="0"/></linearGradient>'
    clouds = "".join(
        '<ellipse cx="%g" cy="%g" rx="%g" ry="%g" fill="#fff" opacity=".28"/>' % c
        for c in (
            (360, 34, 90, 7),
            (420, 42, 70, 6),
            (300, 62, 60, 4),
            (520, 70, 80, 4),
            (480, 24, 40, 4),
        )
    )
    land = path("M0,118 L0,104 Q60,92 130,104 T250,112 Q300,116 330,118 Z", "#53798a") + path(
        "M0,118 L0,110 Q50,104 120,113 Q150,117 170,118 Z", "#33586b"
    )
    head = path(
        "M560,180 Q580,152 612,148 Q624,134 652,137 Q684,130 700,146 Q736,152 760,142 L760,180 Z",
        "#20394a",
    ) + path(
        "M612,148 Q624,134 652,137 Q684,130 700,146 Q680,141 660,144 Q634,143 612,148 Z", "#5f7a58"
    )
    return (
        "<defs>"
        + sky
        + sea
        + beam
        + "</defs>"
        + rect(0, 0, 760, 118, "url(#sky)")
        + clouds
        + circle(250, 112, 22, "#ffe3a8")
        + rect(0, 118, 760, 62, "url(#sea)")
        + land
        + path("M228,118 L272,118 L300,180 L200,180 Z", "#ffe3a8", 'opacity=".25"')
        + ripples(3, 0, 740, 122, 178, 90, "#eaf4f2", 0.45)
        + at(344, 126, 0.36, dinghy("#f7efe0"))
        + at(404, 132, 0.5, dinghy("#e9c46a"))
        + at(490, 146, 0.78, dinghy("#b23a30", "#17384d"))
        + path("M656,36 L200,-14 L200,70 Z", "url(#beam)")
        + path("M660,36 L760,24 L760,46 Z", "#fff6cf", 'opacity=".35"')
        + head
        + at(658, 146, 0.83, lighthouse())
        + circle(658, 35.5, 9, "#fff6cf", 'opacity=".45"')
        + rect(610, 136, 26, 13, "#f7efe0")
        + path("M606,137 L623,125 L640,137 Z", "#8c3028")
        + rect(619, 141, 6, 8, "#17384d")
    )


@picture("templates/Harbour Light/images/fleet.jpg", 220, 160, JPEG)
def club_fleet():
    sky = gradient("sky", (0, "#8fc0d2"), (1, "#f4ead6"))
    sea = gradient("sea", (0, "#4c8ea3"), (1, "#1f5a74"))
    return (
        "<defs>"
        + sky
        + sea
        + "</defs>"
        + rect(0, 0, 220, 84, "url(#sky)")
        + rect(0, 84, 220, 76, "url(#sea)")
        + path("M0,84 Q40,72 90,80 T180,84 Z", "#6d94a0")
        + ripples(5, -10, 220, 88, 158, 60, "#e3f1f0", 0.55)
        + at(36, 92, 0.42, dinghy("#f7efe0"), 5)
        + at(180, 94, 0.46, dinghy("#e9c46a"), 6)
        + at(80, 108, 0.72, dinghy("#fffaf0", "#8c3028", "17"), 8)
        + at(148, 132, 1.08, dinghy("#b23a30", "#17384d", "23"), 9)
        + path(
            "M112,135 q-20,6 -44,4 M186,137 q12,5 30,2",
            "none",
            'stroke="#fff" stroke-width="3" stroke-linecap="round" opacity=".7"',
        )
    )


@picture("templates/Harbour Light/images/flags.gif", 330, 40, gif(16, "#fbf7ee"))
def club_flags():
    """Signal flags on a line: H, A, R, B, O, U, R."""
    red, yellow, blue, white = "#b23a30", "#e9b93c", "#245a8c", "#fffdf7"
    size = 30

    def flag(letter):
        s = size
        return {
            "H": rect(0, 0, s / 2, s, white) + rect(s / 2, 0, s / 2, s, red),
            "A": rect(0, 0, s / 2, s, white)
            + path(
                "M%g,0 L%g,0 L%g,%g L%g,%g L%g,%g Z" % (s / 2, s, s * 0.72, s / 2, s, s, s / 2, s),
                blue,
            ),
            "R": rect(0, 0, s, s, red)
            + rect(s * 0.38, 0, s * 0.24, s, yellow)
            + rect(0, s * 0.38, s, s * 0.24, yellow),
            "B": path("M0,0 L%g,0 L%g,%g L%g,%g L0,%g Z" % (s, s * 0.7, s / 2, s, s, s), red),
            "O": path("M0,%g L%g,0 L0,0 Z" % (s, s), red)
            + path("M%g,0 L%g,%g L0,%g Z" % (s, s, s, s), yellow),
            "U": rect(0, 0, s, s, white)
            + rect(0, 0, s / 2, s / 2, red)
            + rect(s / 2, s / 2, s / 2, s / 2, red),
        }[letter]

    result = line(0, 4, 330, 4, "#5a3a2c", 1.5)
    for i, letter in enumerate("HARBOUR"):
        x = 16 + i * 44
        edge = path(
            "M0,0 L30,0 %s L30,30 L0,30 Z" % ("L22,15" if letter in "AB" else ""),
            "none",
            'stroke="#17384d" stroke-width="1"',
        )
        result += at(x, 7, 1, flag(letter) + edge)
    return result
