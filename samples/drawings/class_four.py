"""Class Four, a school class."""
import random

from drawings.shapes import at, circle, gif, JPEG, line, path, picture, rect


@picture("templates/Class Four/images/plane.gif", 300, 112, gif(24, "#d8ecf5"))
def class_plane():
    trail = path(
        "M4,92 Q60,112 96,84 Q126,58 104,44 Q82,38 86,62 Q98,98 214,58",
        "none",
        'stroke="#1f5f8b" stroke-width="2.4" stroke-dasharray="2 7" stroke-linecap="round"',
    )
    plane = (
        path(
            "M0,0 L74,-34 L22,12 Z",
            "#ffffff",
            'stroke="#1b3a52" stroke-width="2" stroke-linejoin="round"',
        )
        + path(
            "M22,12 L74,-34 L44,22 Z",
            "#ffe08a",
            'stroke="#1b3a52" stroke-width="2" stroke-linejoin="round"',
        )
        + path(
            "M22,12 L28,28 L33,17 Z",
            "#e9b93c",
            'stroke="#1b3a52" stroke-width="2" stroke-linejoin="round"',
        )
        + path("M0,0 L74,-34", "none", 'stroke="#1b3a52" stroke-width="2"')
    )
    return trail + at(212, 58, 1.08, plane, -4)


@picture("templates/Class Four/images/pencils.gif", 760, 34, gif(48, "#ffffff"))
def class_pencils():
    colours = ["#d9483b", "#1f7a5c", "#1f5f8b", "#e9a92c", "#7a4a9c", "#d9692a", "#2f8fa6"]
    result = rect(0, 0, 760, 34, "#ffffff")
    for i in range(5):
        x, colour = i * 156 - 10, colours[i]
        result += at(
            x,
            17,
            1,
            rect(0, -8, 14, 16, "#e79aa0", 'rx="3"')
            + rect(12, -8, 8, 16, "#b8bdc0")
            + rect(20, -8, 94, 16, colour)
            + rect(20, -8, 94, 5, "#fff", 'opacity=".28"')
            + rect(20, 3, 94, 5, "#000", 'opacity=".14"')
            + path("M114,-8 L134,-3 L134,3 L114,8 Z", "#f0d3a2")
            + path("M132,-3.5 L143,0 L132,3.5 Z", colour),
        )
    return result


@picture("templates/Class Four/images/squares.gif", 20, 20, gif(4))
def class_squares():
    return (
        rect(0, 0, 20, 20, "#eef5fa") + rect(0, 0, 20, 1, "#d3e4ef") + rect(0, 0, 1, 20, "#d3e4ef")
    )


@picture("templates/Class Four/images/beans.jpg", 240, 160, JPEG)
def class_beans():
    soil = rect(0, 104, 240, 56, "#7a5536") + rect(0, 104, 240, 5, "#5c3d25")
    chance = random.Random(6)
    crumbs = "".join(
        circle(
            chance.random() * 240,
            112 + chance.random() * 46,
            1 + chance.random() * 1.6,
            chance.choice(["#8f6a4a", "#553820"]),
        )
        for _ in range(80)
    )
    bean = path("M-9,0 Q-8,-9 2,-8 Q12,-6 9,3 Q6,8 2,4 Q-1,1 -4,5 Q-9,6 -9,0 Z", "#8e2449")
    root = 'stroke="#f3e6cf" stroke-width="2" stroke-linecap="round"'
    stem = 'stroke="#4b8a3c" stroke-width="4" stroke-linecap="round"'
    leaf = path("M0,0 Q10,-14 24,-8 Q20,6 0,0 Z", "#5fa548", 'stroke="#3c7030" stroke-width="1"')
    stages = (
        at(28, 124, 1, bean)
        + at(80, 124, 1, path("M2,4 q2,10 -2,20 M0,14 q6,4 8,10", "none", root) + bean)
        + at(
            138,
            124,
            1,
            path("M0,2 q2,14 -2,28 M-1,14 q-8,4 -10,12 M0,18 q8,4 10,10", "none", root)
            + path("M0,0 Q-2,-26 2,-44", "none", stem)
            + at(2, -44, 0.7, leaf)
            + at(2, -44, 0.7, leaf, 200)
            + bean,
        )
        + at(
            202,
            122,
            1,
            path(
                "M0,2 q2,16 -2,32 M-1,14 q-12,4 -14,14 M0,18 q12,4 14,12 M-1,8 q-8,0 -16,8",
                "none",
                root,
            )
            + path("M0,0 Q-4,-40 3,-86", "none", stem)
            + at(-1, -36, 0.9, leaf)
            + at(-1, -44, 0.9, leaf, 190)
            + at(1, -66, 0.9, leaf, -20)
            + at(1, -72, 0.9, leaf, 205)
            + at(3, -86, 0.7, leaf, -30)
            + at(3, -86, 0.7, leaf, 210),
        )
    )
    labels = "".join(
        '<text x="%g" y="20" font-family="Open Sans" font-weight="700" font-size="12" fill="#1b3a52" text-anchor="middle">%s</text>'
        % (x, t)
        for x, t in ((28, "day 1"), (80, "day 4"), (138, "day 9"), (202, "day 16"))
    )
    ticks = "".join(line(0, y, 6, y, "#1f5f8b", 1.2) for y in range(34, 104, 10))
    sun = circle(112, 52, 13, "#ffd84d") + "".join(
        at(112, 52, 1, line(17, 0, 22, 0, "#e9b93c", 2), i * 45) for i in range(8)
    )
    return rect(0, 0, 240, 160, "#d8ecf5") + sun + ticks + soil + crumbs + labels + stages
