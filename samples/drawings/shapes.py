"""Shapes that serve more than once, as SVG, and the list of all pictures."""
import math

PICTURES = {}  # path below the samples: (width, height, drawing, how to save it)


def picture(path, width, height, save):
    """Marks a function that gives the inside of an SVG of that size."""

    def mark(draw):
        PICTURES[path] = (width, height, draw, save)
        return draw

    return mark


JPEG = [
    "-background",
    "white",
    "-flatten",
    "-sampling-factor",
    "4:2:0",
    "-quality",
    "82",
    "-interlace",
    "none",
]


def gif(colours, ground=None):
    """On the colour of the page, for an edge without a fringe; without one transparent."""
    return (["-background", ground, "-flatten"] if ground else []) + [
        "+dither",
        "-colors",
        str(colours),
    ]


def gradient(name, *stops, x2=0, y2=1):
    inside = "".join('<stop offset="%s" stop-color="%s"/>' % stop for stop in stops)
    return '<linearGradient id="%s" x1="0" y1="0" x2="%s" y2="%s">%s</linearGradient>' % (
        name,
        x2,
        y2,
        inside,
    )


def rect(x, y, width, height, fill, more=""):
    return '<rect x="%g" y="%g" width="%g" height="%g" fill="%s" %s/>' % (
        x,
        y,
        width,
        height,
        fill,
        more,
    )


def circle(x, y, radius, fill, more=""):
    return '<circle cx="%g" cy="%g" r="%g" fill="%s" %s/>' % (x, y, radius, fill, more)


def path(d, fill="none", more=""):
    return '<path d="%s" fill="%s" %s/>' % (d, fill, more)


def line(x1, y1, x2, y2, stroke, width=1, more=""):
    return '<line x1="%g" y1="%g" x2="%g" y2="%g" stroke="%s" stroke-width="%g" %s/>' % (
        x1,
        y1,
        x2,
        y2,
        stroke,
        width,
        more,
    )


def at(x, y, scale, inside, turn=0):
    return '<g transform="translate(%g %g) rotate(%g) scale(%g)">%s</g>' % (
        x,
        y,
        turn,
        scale,
        inside,
    )


def wave_line(width, y, height, length, phase=0):
    points = [
        "%g,%g" % (x, y + height * math.sin(2 * math.pi * (x / length) + phase))
        for x in range(0, width + 8, 8)
    ]
    return "M" + " L".join(points)
