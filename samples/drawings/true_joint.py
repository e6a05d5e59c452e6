"""True Joint, a joiner's workshop."""
import random

from drawings.shapes import at, circle, gif, gradient, JPEG, line, path, picture, rect


def grain(seed, x, y, width, height, colour, count, opacity=0.35):
    chance = random.Random(seed)
    result = ""
    for i in range(count):
        gy = y + height * (i + 0.5 + 0.5 * (chance.random() - 0.5)) / count
        bend = height * 0.12 * (chance.random() - 0.5)
        result += path(
            "M%g,%g q%g,%g %g,%g t%g,%g"
            % (x, gy, width * 0.25, bend, width * 0.5, bend * 0.4, width * 0.5, -bend * 0.4),
            "none",
            'stroke="%s" stroke-width="%g" opacity="%g"'
            % (colour, 0.6 + chance.random() * 0.9, opacity),
        )
    return result


@picture("templates/True Joint/images/dovetail.gif", 760, 56, gif(64, "#ffffff"))
def joiner_dovetail():
    """Two boards that meet in a row of dovetails."""
    light, dark = "#d9b382", "#8a5a34"
    result = rect(0, 0, 760, 56, light) + grain(1, 0, 0, 760, 56, "#b98a54", 13, 0.7)
    tails = "M-20,56 "
    x = -20
    while x < 780:
        tails += "L%g,40 L%g,14 L%g,14 L%g,40 " % (x + 12, x + 4, x + 44, x + 36)
        x += 48
    tails += "L780,56 Z"
    clip = '<clipPath id="tails"><path d="%s"/></clipPath>' % tails
    return (
        "<defs>"
        + clip
        + "</defs>"
        + result
        + '<g clip-path="url(#tails)">'
        + rect(0, 0, 760, 56, dark)
        + grain(6, 0, 10, 760, 46, "#5f3a1d", 13, 0.75)
        + "</g>"
        + path(tails, "none", 'stroke="#3c2414" stroke-width="1.2"')
    )


def joiner_scene(inside):
    return (
        rect(0, 0, 232, 176, "#ece5d8")
        + rect(0, 146, 232, 30, "#d3c6b0")
        + line(0, 146, 232, 146, "#b7a78c", 1.5)
        + inside
    )


@picture("templates/True Joint/images/dresser.jpg", 232, 176, JPEG)
def joiner_dresser():
    oak, edge = "#c08a4f", "#7a4f28"
    stroke = 'stroke="%s" stroke-width="1.4"' % edge
    plates = "".join(
        circle(78 + i * 25, y, 9, "#f7f3ea", 'stroke="#3f6a80" stroke-width="1.6"')
        + circle(78 + i * 25, y, 4.6, "none", 'stroke="#3f6a80" stroke-width="1.2"')
        for y in (41, 67)
        for i in range(4)
    )
    jugs = "".join(
        at(
            82 + i * 23,
            91,
            0.8,
            path(
                "M-5,0 Q-8,-9 -4,-14 L4,-14 Q8,-9 5,0 Z M6,-11 q6,3 0,7",
                ["#b0532c", "#3f6a80", "#e0c98e"][i % 3],
                'stroke="#5c3b1e" stroke-width="1"',
            ),
        )
        for i in range(4)
    )
    doors = "".join(
        rect(66 + i * 51, 117, 46, 30, "#b67f44", stroke)
        + rect(72 + i * 51, 122, 34, 20, "#c99a61", stroke)
        + circle(108 + i * 10, 132, 2, edge)
        for i in range(2)
    )
    drawers = "".join(
        rect(66 + i * 34, 102, 30, 12, "#c99a61", stroke) + circle(81 + i * 34, 108, 2, edge)
        for i in range(3)
    )
    return joiner_scene(
        '<ellipse cx="116" cy="151" rx="72" ry="6" fill="#000" opacity=".15"/>'
        + rect(62, 20, 108, 76, "#a8743c", stroke)
        + rect(62, 24, 108, 70, "#8f6030")
        + plates
        + jugs
        + "".join(rect(60, y, 112, 3.4, oak, stroke) for y in (51, 77))
        + path("M54,20 L178,20 L172,11 L60,11 Z", oak, stroke)
        + rect(60, 20, 5, 74, oak, stroke)
        + rect(167, 20, 5, 74, oak, stroke)
        + rect(58, 98, 116, 51, oak, stroke)
        + grain(3, 58, 98, 116, 51, "#8a5a2c", 12)
        + drawers
        + doors
        + rect(54, 92, 124, 6, "#d3a267", stroke)
        + rect(60, 149, 8, 5, edge)
        + rect(164, 149, 8, 5, edge)
    )


@picture("templates/True Joint/images/stair.jpg", 232, 176, JPEG)
def joiner_stair():
    wood, edge = "#c08a4f", "#6b4423"
    steps, balusters = "", ""
    for i in range(9):
        x, y = 30 + i * 22, 146 - i * 15
        steps += rect(
            x, y - 15, 200 - x + 60, 15, "#f1ece2", 'stroke="#cfc2aa" stroke-width="1"'
        ) + rect(x - 3, y - 18, 200 - x + 60, 4.6, wood, 'stroke="%s" stroke-width="1"' % edge)
        balusters += rect(
            x + 5, y - 62, 2.6, 44, "#f7f3ea", 'stroke="#8f7c60" stroke-width=".7"'
        ) + rect(x + 15, y - 69, 2.6, 51, "#f7f3ea", 'stroke="#8f7c60" stroke-width=".7"')
    rail = path("M20,92 L232,-53 L236,-48 L25,98 Z", wood, 'stroke="%s" stroke-width="1.2"' % edge)
    newel = (
        rect(17, 84, 12, 63, wood, 'stroke="%s" stroke-width="1.2"' % edge)
        + circle(23, 79, 7.5, wood, 'stroke="%s" stroke-width="1.2"' % edge)
        + grain(2, 17, 88, 12, 56, edge, 9, 0.3)
    )
    window = (
        rect(36, 18, 40, 46, "#bcd4dc", 'stroke="#fff" stroke-width="5"')
        + line(56, 18, 56, 64, "#fff", 3)
        + line(36, 40, 76, 40, "#fff", 3)
        + rect(33, 15, 46, 52, "none", 'stroke="#b7a78c" stroke-width="1"')
    )
    return joiner_scene(window + steps + balusters + rail + newel)


@picture("templates/True Joint/images/sash.jpg", 232, 176, JPEG)
def joiner_sash():
    wood, edge = "#c99a61", "#6b4423"
    stroke = 'stroke="%s" stroke-width="1.4"' % edge
    view = gradient("view", (0, "#9cc4d6"), (0.7, "#dfe9dc"), (1, "#a5bd84"))
    hills = (
        path("M64,112 Q90,92 116,108 T168,100 L168,140 L64,140 Z", "#7f9f63")
        + path("M64,124 Q100,112 168,126 L168,140 L64,140 Z", "#5f8449")
        + circle(146, 48, 8, "#fff3c9")
    )
    tree = (
        rect(92, 90, 4, 20, "#5c3b1e")
        + circle(94, 84, 12, "#4b7340")
        + circle(86, 90, 8, "#4b7340")
        + circle(103, 91, 8, "#547f48")
    )
    bars = (
        line(116, 26, 116, 134, wood, 4)
        + line(66, 54, 166, 54, wood, 3.4)
        + line(66, 108, 166, 108, wood, 3.4)
        + rect(62, 79, 108, 7, wood, stroke)
    )
    pot = at(
        150,
        132,
        1,
        path("M-9,0 L9,0 L7,14 L-7,14 Z", "#b0532c")
        + rect(-10.5, -4, 21, 5, "#c4623a")
        + path("M0,-4 Q-16,-12 -12,-24 Q0,-18 0,-4 Q2,-22 12,-26 Q14,-10 0,-4 Z", "#4b7340")
        + circle(-12, -25, 4, "#b23a30")
        + circle(12, -27, 4, "#b23a30")
        + circle(1, -24, 4, "#d9575a"),
    )
    return joiner_scene(
        "<defs>"
        + view
        + "</defs>"
        + rect(62, 22, 108, 118, "url(#view)")
        + hills
        + tree
        + bars
        + path(
            "M52,12 L180,12 L180,146 L52,146 Z M64,24 L168,24 L168,138 L64,138 Z",
            wood,
            stroke + ' fill-rule="evenodd"',
        )
        + grain(5, 52, 12, 128, 12, "#8a5a2c", 4)
        + grain(8, 52, 138, 128, 8, "#8a5a2c", 3)
        + rect(46, 146, 140, 8, "#d3a267", stroke)
        + pot
        + path("M112,79 q4,-5 8,0", "none", 'stroke="#b08d2c" stroke-width="3"')
    )
