"""The themes."""
import random

from drawings.shapes import circle, gif, gradient, path, picture, rect


@picture("themes/nightferry/waves.gif", 64, 64, gif(4))
def theme_waves():
    def wave(y):
        return path(
            "M0,%d Q16,%d 32,%d T64,%d" % (y, y - 10, y, y),
            "none",
            'stroke="#16224a" stroke-width="3"',
        )

    return rect(0, 0, 64, 64, "#101a3a") + wave(16) + wave(48)


@picture("themes/nightferry/rule.gif", 600, 8, gif(32))
def theme_rule():
    return (
        "<defs>"
        + gradient("fade", (0, "#ffd873"), (1, "#101a3a"), x2=1, y2=0)
        + "</defs>"
        + rect(0, 0, 600, 8, "#101a3a")
        + rect(0, 3, 600, 2, "url(#fade)")
        + circle(4, 4, 4, "#ffd873")
    )


@picture("themes/nightferry/bullet.gif", 12, 12, gif(8))
def theme_bullet():
    return rect(0, 0, 12, 12, "#101a3a") + path("M6,1 L11,6 L6,11 L1,6 Z", "#ffd873")


@picture("themes/limewash/boards.gif", 96, 96, gif(8))
def theme_boards():
    chance = random.Random(5)
    result = rect(0, 0, 96, 96, "#f4efe5")
    for i in range(3):
        result += rect(0, i * 32, 96, 1, "#e2d9c7")
        for j in range(3):
            y = i * 32 + 7 + j * 8 + chance.random() * 3
            result += path(
                "M0,%g Q24,%g 48,%g T96,%g" % (y, y + 3, y, y),
                "none",
                'stroke="#ede6d8" stroke-width="1.4"',
            )
    return result


@picture("themes/limewash/rule.gif", 600, 8, gif(16))
def theme_dovetails():
    return (
        rect(0, 0, 600, 8, "#f4efe5")
        + rect(0, 5, 600, 3, "#8a5a34")
        + "".join(path("M%d,8 l3,-7 h14 l3,7 Z" % (i * 40 + 10), "#8a5a34") for i in range(15))
    )


@picture("themes/limewash/bullet.gif", 12, 12, gif(8))
def theme_peg():
    return (
        rect(0, 0, 12, 12, "#f4efe5")
        + rect(2, 2, 8, 8, "#8a5a34")
        + path("M4,6 h4", "none", 'stroke="#d9b382" stroke-width="1.6"')
    )
