"""Print Room, a portfolio of linocuts."""
import math
import random

from drawings.shapes import at, circle, gif, line, path, picture, rect, wave_line


INK, PAPER, RED = "#1d1d1b", "#f6f1e4", "#bf3020"
LINO = 216


def gouges(seed, count, test, colour=PAPER, length=14, turn=lambda x, y: 0, width=1.6):
    """Short cuts of the knife where test(x, y) holds."""
    chance = random.Random(seed)
    result = ""
    for _ in range(count):
        x, y = chance.random() * LINO, chance.random() * LINO
        if not test(x, y):
            continue
        angle = turn(x, y) + (chance.random() - 0.5) * 0.35
        long = length * (0.5 + chance.random())
        dx, dy = math.cos(angle) * long / 2, math.sin(angle) * long / 2
        nx, ny = -math.sin(angle) * width, math.cos(angle) * width
        result += path(
            "M%.1f,%.1f Q%.1f,%.1f %.1f,%.1f Q%.1f,%.1f %.1f,%.1f Z"
            % (
                x - dx,
                y - dy,
                x + nx,
                y + ny,
                x + dx,
                y + dy,
                x - nx * 0.2,
                y - ny * 0.2,
                x - dx,
                y - dy,
            ),
            colour,
        )
    return result


def block(inside, ground=INK):
    """A print: a block with an edge that the press did not reach everywhere."""
    chance = random.Random(len(inside))
    edge = []
    for x0, y0, x1, y1 in ((6, 6, 210, 6), (210, 6, 210, 210), (210, 210, 6, 210), (6, 210, 6, 6)):
        for i in range(24):
            t = i / 24
            edge.append(
                "%.1f,%.1f"
                % (
                    x0 + (x1 - x0) * t + (chance.random() - 0.5) * 1.5,
                    y0 + (y1 - y0) * t + (chance.random() - 0.5) * 1.5,
                )
            )
    shape = "M" + " L".join(edge) + " Z"
    return (
        '<defs><clipPath id="block"><path d="%s"/></clipPath></defs>' % shape
        + rect(0, 0, LINO, LINO, "#fffdf6")
        + '<g clip-path="url(#block)">'
        + rect(0, 0, LINO, LINO, ground)
        + inside
        + "</g>"
    )


PRINT = gif(12)


@picture("templates/Print Room/prints/marsh.gif", LINO, LINO, PRINT)
def print_marsh():
    rings = "".join(
        circle(
            146,
            66,
            r,
            "none",
            'stroke="%s" stroke-width="%g" stroke-dasharray="%g %g"'
            % (PAPER, 1.7, 9 + r * 0.12, 4 + r * 0.05),
        )
        for r in range(48, 260, 9)
    )
    water = "".join(
        path(
            wave_line(LINO, 152 + i * 8, 1.6, 46, i * 1.7),
            "none",
            'stroke="%s" stroke-width="%g" stroke-dasharray="%d %d"'
            % (PAPER, 2.4, 30 + i * 7 % 23, 9 + i * 5 % 13),
        )
        for i in range(8)
    )
    chance = random.Random(9)
    reeds = ""
    for i in range(17):
        x = 10 + i * 7.4 + chance.random() * 4
        top = 60 + chance.random() * 70
        lean = chance.random() * 18 - 6
        reeds += path(
            "M%g,216 Q%g,%g %g,%g" % (x, x + 1, (216 + top) / 2, x + lean, top),
            "none",
            'stroke="%s" stroke-width="5.5"' % PAPER,
        )
        reeds += path(
            "M%g,216 Q%g,%g %g,%g" % (x, x + 1, (216 + top) / 2, x + lean, top),
            "none",
            'stroke="%s" stroke-width="2.6"' % INK,
        )
        if i % 2:
            reeds += at(
                x + lean,
                top,
                1,
                '<ellipse cx="0" cy="0" rx="5.4" ry="15" fill="%s"/><ellipse cx="0" cy="0" rx="3.6" ry="13" fill="%s"/>'
                % (PAPER, INK),
                lean * 0.8,
            )
    return block(
        rings
        + rect(0, 148, LINO, 70, INK)
        + circle(146, 66, 40, RED)
        + gouges(
            4,
            60,
            lambda x, y: (x - 146) ** 2 + (y - 66) ** 2 < 1300,
            "#d8604c",
            16,
            lambda x, y: 0.3,
            1,
        )
        + water
        + path(
            "M126,150 h44 M132,160 h34 M128,170 h38 M136,180 h24",
            "none",
            'stroke="%s" stroke-width="3.4" stroke-linecap="round"' % RED,
        )
        + reeds
    )


@picture("templates/Print Room/prints/pears.gif", LINO, LINO, PRINT)
def print_pears():
    pear = "M0,-46 C14,-44 15,-26 20,-10 C28,8 32,22 22,36 C12,48 -12,48 -22,36 C-32,22 -28,8 -20,-10 C-15,-26 -14,-44 0,-46 Z"

    def one(colour, cut):
        chance = random.Random(cut)
        cuts = "".join(
            path(
                "M%g,%g Q%g,%g %g,%g"
                % (
                    -4 + i * 5.4,
                    -34 + i * i * 1.6 + chance.random() * 4,
                    6 + i * 6.4,
                    -4 + i * 2,
                    -2 + i * 5.2,
                    30 - i * 3,
                ),
                "none",
                'stroke="%s" stroke-width="2.2" stroke-linecap="round"' % PAPER,
            )
            for i in range(5)
        )
        return (
            path(pear, colour, 'stroke="%s" stroke-width="4.6"' % PAPER)
            + cuts
            + path(
                "M0,-46 Q2,-58 9,-64",
                "none",
                'stroke="%s" stroke-width="4.4" stroke-linecap="round"' % PAPER,
            )
            + path("M2,-52 Q22,-66 32,-50 Q16,-44 2,-52 Z", PAPER)
            + path("M6,-53 Q20,-56 28,-51", "none", 'stroke="%s" stroke-width="1.6"' % INK)
        )

    back = gouges(
        11,
        520,
        lambda x, y: y < 146,
        PAPER,
        15,
        lambda x, y: math.atan2(y - 230, x - 108) + math.pi / 2,
        1.1,
    )
    table = "".join(
        path(
            wave_line(LINO, 160 + i * 9, 0.9, 90, i),
            "none",
            'stroke="%s" stroke-width="%g"' % (INK, 2.6 - i * 0.2),
        )
        for i in range(7)
    )
    return block(
        back
        + rect(0, 150, LINO, 70, PAPER)
        + table
        + at(58, 128, 1.05, one(INK, 1), -6)
        + at(158, 126, 1.02, one(INK, 2), 7)
        + at(108, 138, 1.16, one(RED, 3))
    )


@picture("templates/Print Room/prints/rooks.gif", LINO, LINO, PRINT)
def print_rooks():
    chance = random.Random(21)
    lines = []

    def branch(x, y, angle, length, width):
        if width < 0.7:
            return
        x2, y2 = x + math.cos(angle) * length, y + math.sin(angle) * length
        lines.append(line(x, y, x2, y2, INK, width, 'stroke-linecap="round"'))
        branch(
            x2,
            y2,
            angle - 0.28 - 0.3 * chance.random(),
            length * (0.74 + 0.12 * chance.random()),
            width * 0.7,
        )
        branch(
            x2,
            y2,
            angle + 0.26 + 0.3 * chance.random(),
            length * (0.74 + 0.12 * chance.random()),
            width * 0.7,
        )
        if chance.random() < 0.35:
            branch(x2, y2, angle + 0.1 * (chance.random() - 0.5), length * 0.7, width * 0.55)

    branch(84, 196, -math.pi / 2 + 0.05, 42, 11)
    rook = path(
        "M-22,-8 Q-10,-10 -2,0 Q4,-10 18,-14 Q10,-4 6,4 L14,6 L5,8 Q-2,12 -6,4 Q-10,-4 -22,-8 Z",
        INK,
    )
    rooks = "".join(
        at(x, y, s, rook, t)
        for x, y, s, t in (
            (172, 44, 1.05, -8),
            (146, 78, 0.7, 12),
            (190, 88, 0.6, -14),
            (176, 122, 0.5, 8),
            (30, 34, 0.66, 10),
        )
    )
    nests = "".join(circle(x, y, r, INK) for x, y, r in ((62, 92, 7), (104, 78, 8), (84, 58, 6.5)))
    field = path("M0,190 Q60,178 120,188 T216,184 L216,216 L0,216 Z", INK) + "".join(
        path(
            "M%g,216 Q%g,198 %g,189" % (-30 + i * 22, 40 + i * 11, 84 + i * 4),
            "none",
            'stroke="%s" stroke-width="1.8"' % PAPER,
        )
        for i in range(14)
    )
    sun = circle(140, 150, 34, RED) + "".join(
        line(100, 138 + i * 7, 182, 138 + i * 7, PAPER, 1.4 + i * 0.35) for i in range(7)
    )
    sky = gouges(
        6,
        260,
        lambda x, y: y < 176 and (x - 140) ** 2 + (y - 150) ** 2 > 1500,
        "#cfc6b0",
        26,
        lambda x, y: 0.05,
        1,
    )
    return block(sky + sun + "".join(lines) + nests + rooks + field, PAPER)


@picture("templates/Print Room/prints/wave.gif", LINO, LINO, PRINT)
def print_wave():
    sky = "".join(
        path(
            wave_line(LINO, 10 + i * 9, 0.8, 120, i * 2),
            "none",
            'stroke="%s" stroke-width="1.6" stroke-dasharray="%d %d"'
            % (INK, 40 + i * 13 % 37, 10 + i * 7 % 17),
        )
        for i in range(14)
    )
    crest = "M-4,220 L-4,132 Q28,126 52,92 Q78,52 124,46 Q164,44 176,76 Q180,98 162,104 Q172,84 150,80 Q118,78 104,112 Q92,148 124,168 Q160,184 222,172 L222,220 Z"
    cuts = ""
    for i in range(13):
        t = i / 12
        cuts += path(
            "M%g,%g Q%g,%g %g,%g"
            % (
                2 + 6 * t,
                210 - 66 * t,
                58 + 10 * t,
                186 - 100 * t + 20 * (1 - t),
                102 + 42 * t**2,
                188 - 26 * t - 104 * t * t,
            ),
            "none",
            'stroke="%s" stroke-width="%g" stroke-linecap="round"' % (PAPER, 2.6 - t),
        )
    low = "".join(
        path(
            "M%g,%g q26,-10 52,0 t52,0" % (96 + i * 8, 184 + i * 8),
            "none",
            'stroke="%s" stroke-width="2.4" stroke-linecap="round"' % PAPER,
        )
        for i in range(4)
    )
    chance = random.Random(31)
    spray = "".join(
        circle(
            150 + 50 * (chance.random() - 0.35),
            46 + 66 * (chance.random() - 0.6),
            1.2 + 2.4 * chance.random(),
            INK,
        )
        for _ in range(26)
    )
    fingers = "".join(
        path("M%g,%g q8,4 6,14 q-6,-4 -12,-4 Z" % (x, y), INK)
        for x, y in ((160, 98), (146, 80), (130, 82), (118, 90), (170, 84))
    )
    boat = at(
        190,
        164,
        0.62,
        path("M-26,-6 L26,-6 Q22,6 12,6 L-14,6 Q-24,6 -26,-6 Z", RED)
        + path("M0,-8 L0,-50 L-20,-10 Z M3,-8 L3,-42 L18,-10 Z", RED),
        -9,
    )
    return block(
        sky + circle(52, 48, 25, RED) + boat + path(crest, INK) + cuts + low + spray + fingers,
        PAPER,
    )


@picture("templates/Print Room/prints/fern.gif", LINO, LINO, PRINT)
def print_fern():
    def frond(length, turn):
        result = path(
            "M0,0 Q%g,%g %g,%g" % (turn * 0.4, -length * 0.5, turn, -length),
            "none",
            'stroke="%s" stroke-width="3"' % PAPER,
        )
        for i in range(2, 22):
            t = i / 22
            x, y = (
                2 * t * (1 - t) * turn * 0.4 + t * t * turn,
                -2 * t * (1 - t) * length * 0.5 - t * t * length,
            )
            size = (1 - t) ** 0.75 * length * 0.34
            for side in (-1, 1):
                angle = side * (62 - 18 * t) + turn * 0.25
                leaf = "".join(
                    path(
                        "M0,%g q%g,-3 %g,1 q%g,3 %g,2 Z"
                        % (
                            -size * j / 7,
                            s * size * 0.10,
                            s * size * 0.2 * (1 - j / 8),
                            -s * size * 0.06,
                            -s * size * 0.2 * (1 - j / 8),
                        ),
                        PAPER,
                    )
                    for j in range(1, 7)
                    for s in (-1, 1)
                )
                result += at(
                    x,
                    y,
                    1,
                    path(
                        "M-1.7,0 Q%g,%g 0,%g Q%g,%g 1.7,0 Z"
                        % (-size * 0.12, -size * 0.5, -size, size * 0.12, -size * 0.5),
                        PAPER,
                    )
                    + leaf,
                    angle,
                )
        return result

    curl = path(
        "M0,0 Q-3,-40 8,-58 Q20,-74 32,-62 Q38,-50 27,-46 Q18,-46 20,-55",
        "none",
        'stroke="%s" stroke-width="5" stroke-linecap="round"' % RED,
    )
    texture = gouges(
        14, 300, lambda x, y: True, "#4a4843", 10, lambda x, y: math.atan2(y - 216, x - 100), 0.7
    )
    return block(
        texture
        + at(52, 224, 0.92, frond(172, -30), -6)
        + at(128, 230, 1.0, frond(208, 26), 2)
        + at(186, 222, 0.6, frond(150, 20), 12)
        + at(86, 218, 1.25, curl, 4)
        + at(24, 218, 0.75, curl, -18)
    )


@picture("templates/Print Room/prints/roofs.gif", LINO, LINO, PRINT)
def print_roofs():
    night = gouges(17, 240, lambda x, y: y < 120, PAPER, 9, lambda x, y: -0.5, 0.9)
    moon = path("M160,30 A22,22 0 1 0 180,58 A17,17 0 1 1 160,30 Z", PAPER)

    def house(x, y, width, height, seed, colour=INK):
        chance = random.Random(seed)
        roof = height * 0.42
        tiles = "".join(
            line(
                x + 3,
                y - height - roof * t,
                x + width - 3,
                y - height - roof * t,
                PAPER,
                1.2,
                'stroke-dasharray="%d %d"' % (5 + seed % 3, 2),
            )
            for t in (0.16, 0.34, 0.52, 0.7)
        )
        lit = ""
        for i in range(int(width // 17)):
            for j in range(int(height // 21)):
                lit += rect(
                    x + 7 + i * 17,
                    y - height + 8 + j * 21,
                    8,
                    11,
                    RED if chance.random() < 0.3 else PAPER,
                ) + line(
                    x + 11 + i * 17,
                    y - height + 8 + j * 21,
                    x + 11 + i * 17,
                    y - height + 19 + j * 21,
                    INK,
                    1.2,
                )
        return (
            rect(x, y - height, width, height + 4, colour, 'stroke="%s" stroke-width="2.4"' % PAPER)
            + path(
                "M%g,%g L%g,%g L%g,%g Z"
                % (x - 4, y - height, x + width / 2, y - height - roof, x + width + 4, y - height),
                colour,
                'stroke="%s" stroke-width="2.4"' % PAPER,
            )
            + '<clipPath id="r%d"><path d="M%g,%g L%g,%g L%g,%g Z"/></clipPath><g clip-path="url(#r%d)">%s</g>'
            % (
                seed,
                x,
                y - height,
                x + width / 2,
                y - height - roof,
                x + width,
                y - height,
                seed,
                tiles,
            )
            + lit
        )

    row = (
        house(112, 150, 40, 74, 5)
        + house(8, 152, 44, 64, 3)
        + house(160, 156, 52, 60, 9)
        + house(54, 166, 54, 58, 12)
        + house(128, 178, 46, 46, 15)
        + house(-10, 186, 60, 44, 18)
    )
    smoke = path(
        "M80,74 q-8,-10 0,-18 q10,-8 2,-18 q-8,-10 4,-20",
        "none",
        'stroke="%s" stroke-width="3.4" stroke-linecap="round"' % PAPER,
    ) + rect(76, 74, 9, 16, INK, 'stroke="%s" stroke-width="2"' % PAPER)
    quay = rect(0, 186, LINO, 30, INK) + "".join(
        path(
            wave_line(LINO, 194 + i * 7, 1.4, 38, i * 2),
            "none",
            'stroke="%s" stroke-width="2" stroke-dasharray="24 %d"' % (PAPER, 9 + i * 5),
        )
        for i in range(4)
    )
    boat = at(
        168,
        196,
        0.7,
        path(
            "M-26,-8 L26,-8 Q20,5 12,5 L-14,5 Q-22,5 -26,-8 Z",
            RED,
            'stroke="%s" stroke-width="2"' % PAPER,
        )
        + line(0, -8, 0, -44, PAPER, 2.4)
        + path("M2,-42 L20,-14 L2,-14 Z", PAPER),
    )
    return block(night + moon + smoke + row + quay + boat)


@picture("templates/Print Room/mark.gif", 40, 40, gif(8, "#fffdf6"))
def print_mark():
    """The print room's own stamp: a P cut in red."""
    return rect(1, 1, 38, 38, RED, 'rx="2"') + path(
        "M12,33 L12,8 L22,8 Q30,8 30,16 Q30,24 22,24 L18,24 L18,33 Z M18,13 L18,19 L21,19 Q24,19 24,16 Q24,13 21,13 Z",
        "#fffdf6",
        'fill-rule="evenodd"',
    )
