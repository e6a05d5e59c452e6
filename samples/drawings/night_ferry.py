"""Night Ferry, a concert on the water."""
import math
import random

from drawings.harbour_light import ripples
from drawings.shapes import at, circle, gif, gradient, JPEG, line, path, picture, rect


def stars(seed, width, height, count):
    chance = random.Random(seed)
    return "".join(
        circle(
            chance.random() * width,
            chance.random() ** 1.3 * height,
            0.5 + 1.1 * chance.random() ** 4,
            "#eaf0ff",
            'opacity="%.2f"' % (0.35 + 0.65 * chance.random()),
        )
        for _ in range(count)
    )


def ferry():
    """200 long, its water line at y 0."""
    lights = "".join(rect(-74 + i * 12.4, -27, 6, 5, "#ffd873") for i in range(13)) + "".join(
        rect(-48 + i * 12, -43, 6, 5, "#ffd873") for i in range(8)
    )
    bulbs = "".join(
        circle(
            -58 + i * 9.2,
            -66 + 9 * math.sin(math.pi * ((i % 5) / 4.0)) * 0.7 + (abs(i - 6) * -0.3),
            1.9,
            ["#ff8a65", "#ffd873", "#7fd3c8"][i % 3],
        )
        for i in range(14)
    )
    return (
        path("M-104,-16 L102,-16 L90,4 Q0,8 -92,4 Z", "#05091a")
        + rect(-86, -33, 168, 17, "#131d40")
        + rect(-58, -49, 112, 16, "#182550")
        + rect(20, -72, 17, 24, "#c0453c")
        + rect(20, -66, 17, 5, "#f7efe0")
        + line(-60, -49, -60, -72, "#2e3d73", 2)
        + line(62, -33, 62, -72, "#2e3d73", 2)
        + path("M-60,-71 Q0,-54 62,-71", "none", 'stroke="#2e3d73" stroke-width="1.2"')
        + lights
        + bulbs
        + line(-100, -19, 100, -19, "#ffd873", 1, 'opacity=".55"')
    )


@picture("templates/Night Ferry/images/crossing.jpg", 760, 240, JPEG)
def night_crossing():
    sky = gradient("sky", (0, "#070c20"), (0.6, "#152350"), (1, "#3a4a86"))
    sea = gradient("sea", (0, "#31407a"), (0.25, "#18244f"), (1, "#080d22"))
    shore = path(
        "M0,150 L0,138 Q40,128 90,136 T200,134 T330,141 T470,138 T640,133 T760,140 L760,150 Z",
        "#0d1634",
    )
    chance = random.Random(8)
    town = "".join(
        rect(
            20 + chance.random() * 300,
            138 + chance.random() * 9,
            2,
            2,
            "#ffd873",
            'opacity="%.2f"' % (0.4 + 0.6 * chance.random()),
        )
        for _ in range(42)
    )
    moon = (
        circle(120, 54, 40, "#fff4cf", 'opacity=".10"')
        + circle(120, 54, 30, "#fff4cf", 'opacity=".14"')
        + circle(120, 54, 21, "#fff4cf")
        + circle(113, 48, 4, "#e9d9a6")
        + circle(127, 61, 5.5, "#e9d9a6")
        + circle(125, 45, 2.4, "#e9d9a6")
    )
    glade = "".join(
        rect(
            120 - (6 + i * 2.2) * (0.5 + chance.random()),
            152 + i * 6,
            (12 + i * 4.4) * (0.4 + 0.6 * chance.random()),
            1.6 + i * 0.08,
            "#fff0c0",
            'opacity=".5" rx="1"',
        )
        for i in range(14)
    )
    glow = "".join(
        rect(
            428 + i * 20 + chance.random() * 8,
            180,
            7,
            24 + chance.random() * 26,
            "#ffd873",
            'opacity="%.2f" rx="3"' % (0.12 + 0.2 * chance.random()),
        )
        for i in range(14)
    )
    notes = "".join(
        at(
            x,
            y,
            s,
            '<ellipse cx="0" cy="0" rx="4.6" ry="3.4" transform="rotate(-20)" fill="#ffd873"/>'
            + line(4, -1, 4, -19, "#ffd873", 1.6)
            + path("M4,-19 q8,3 7,11 q-1,-6 -7,-6 Z", "#ffd873"),
            t,
        )
        for x, y, s, t in (
            (492, 74, 0.9, -8),
            (532, 54, 1.15, 6),
            (586, 40, 0.9, -4),
            (628, 62, 1.05, 10),
        )
    )
    return (
        "<defs>"
        + sky
        + sea
        + "</defs>"
        + rect(0, 0, 760, 150, "url(#sky)")
        + stars(7, 760, 120, 150)
        + moon
        + rect(0, 150, 760, 90, "url(#sea)")
        + shore
        + town
        + glade
        + ripples(12, 0, 750, 154, 238, 80, "#8fa2dc", 0.25)
        + glow
        + at(556, 178, 1.35, ferry())
        + notes
        + path(
            "M420,186 q-60,8 -120,2 M700,186 q40,6 70,1",
            "none",
            'stroke="#b9c6f2" stroke-width="2" stroke-linecap="round" opacity=".35"',
        )
    )


@picture("templates/Night Ferry/images/band.jpg", 232, 150, JPEG)
def night_band():
    back = gradient("back", (0, "#101a3a"), (1, "#4a2a55"))
    bulbs = "".join(
        circle(
            8 + i * 15.4,
            18 + 12 * math.sin(math.pi * (i % 5) / 4),
            3.2,
            ["#ffd873", "#ff8a65", "#7fd3c8"][i % 3],
        )
        + circle(
            8 + i * 15.4,
            18 + 12 * math.sin(math.pi * (i % 5) / 4),
            7,
            ["#ffd873", "#ff8a65", "#7fd3c8"][i % 3],
            'opacity=".2"',
        )
        for i in range(15)
    )
    dark = "#080d20"

    def body(x, foot, height, lean=0):
        return at(
            x,
            foot,
            height / 100,
            circle(0, -90, 10, dark)
            + path(
                "M-15,-76 Q0,-84 15,-76 L13,-38 L16,0 L5,0 L0,-34 L-6,0 L-16,0 L-13,-38 Z", dark
            ),
            lean,
        )

    bass = at(
        66,
        130,
        1,
        path(
            "M-9,0 Q-17,-14 -9,-26 Q-14,-38 -5,-46 L-2,-46 L-2,-92 L3,-92 L3,-46 L6,-46 Q14,-38 9,-26 Q17,-14 9,0 Z",
            "#8a4a2a",
        )
        + rect(-1, -96, 3, 60, "#2a1510"),
        8,
    )
    sax = path(
        "M118,80 q10,4 8,16 l-2,20 q-1,10 9,9 q8,-1 8,-10",
        "none",
        'stroke="#e9b93c" stroke-width="5" stroke-linecap="round"',
    )
    drum = (
        circle(176, 112, 18, "#c0453c")
        + circle(176, 112, 14, "#f7efe0")
        + rect(152, 96, 14, 11, "#c0453c")
        + rect(190, 96, 14, 11, "#c0453c")
        + line(206, 84, 206, 130, "#c9d2f0", 1.5)
        + path("M196,84 L216,81", "none", 'stroke="#e9b93c" stroke-width="3"')
    )
    return (
        "<defs>"
        + back
        + "</defs>"
        + rect(0, 0, 232, 150, "url(#back)")
        + path("M40,0 L100,150 L10,150 Z", "#ffd873", 'opacity=".10"')
        + path("M190,0 L230,150 L110,150 Z", "#7fd3c8", 'opacity=".10"')
        + bulbs
        + body(60, 132, 78, -2)
        + bass
        + body(112, 134, 84, 3)
        + sax
        + body(178, 118, 66)
        + drum
        + rect(0, 130, 232, 20, "#05091a")
        + line(0, 130, 232, 130, "#ffd873", 1.5, 'opacity=".6"')
    )


@picture("templates/Night Ferry/images/icons/clock.gif", 22, 22, gif(16, "#101a3a"))
def night_clock():
    return circle(11, 11, 9, "#101a3a", 'stroke="#ffd873" stroke-width="2"') + path(
        "M11,5.5 L11,11 L15,13", "none", 'stroke="#ffd873" stroke-width="2" stroke-linecap="round"'
    )


@picture("templates/Night Ferry/images/icons/ticket.gif", 22, 22, gif(16, "#101a3a"))
def night_ticket():
    return at(
        11,
        11,
        1,
        path(
            "M-10,-6 L10,-6 L10,-2 A2,2 0 0 0 10,2 L10,6 L-10,6 L-10,2 A2,2 0 0 0 -10,-2 Z",
            "#ffd873",
        )
        + line(3, -5, 3, 5, "#101a3a", 1.4, 'stroke-dasharray="2 1.4"')
        + line(-7, -1.5, 0, -1.5, "#101a3a", 1.4)
        + line(-7, 1.8, -2, 1.8, "#101a3a", 1.4),
        -14,
    )
