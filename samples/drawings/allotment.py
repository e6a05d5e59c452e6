"""Allotment, a book of recipes."""
import math
import random

from drawings.shapes import at, circle, gif, JPEG, line, path, picture, rect


def carrot():
    return (
        path("M-9,0 Q-8,26 0,46 Q8,26 9,0 Q0,-6 -9,0 Z", "#d9692a")
        + path(
            "M-7,8 h6 M1,15 h5 M-6,22 h5 M0,30 h4", "none", 'stroke="#b04f1a" stroke-width="1.4"'
        )
        + path(
            "M0,-1 Q-14,-14 -12,-28 M0,-1 Q-3,-20 -2,-34 M0,-1 Q10,-16 12,-28",
            "none",
            'stroke="#4b7f32" stroke-width="3" stroke-linecap="round"',
        )
        + "".join(
            circle(x, y, 4.4, "#5f9a3f")
            for x, y in (
                (-12, -28),
                (-13, -21),
                (-2, -35),
                (-4, -27),
                (1, -24),
                (12, -29),
                (9, -21),
                (-8, -17),
                (7, -14),
            )
        )
    )


def beet():
    return (
        circle(0, 14, 17, "#8e2449")
        + path("M-5,29 Q0,50 1,54 Q3,44 6,29 Z", "#8e2449")
        + path(
            "M-12,8 Q-6,0 4,1", "none", 'stroke="#b4507a" stroke-width="2.6" stroke-linecap="round"'
        )
        + path("M0,-2 Q-16,-14 -15,-34 Q-2,-26 0,-2 Z", "#4b7f32")
        + path("M0,-2 Q-4,-24 4,-42 Q14,-24 0,-2 Z", "#5f9a3f")
        + path("M0,-2 Q12,-10 20,-28 Q10,-32 0,-2 Z", "#4b7f32")
        + path(
            "M0,-2 Q-8,-16 -12,-28 M0,-2 Q2,-20 4,-34 M0,-2 Q10,-14 16,-24",
            "none",
            'stroke="#8e2449" stroke-width="1.6"',
        )
    )


def leek():
    return (
        path("M-7,50 Q-9,20 -6,-8 L6,-8 Q9,20 7,50 Q0,56 -7,50 Z", "#f3f1dd")
        + path("M-7,4 Q0,-2 7,4 L6,-10 L-6,-10 Z", "#bcd39a")
        + path("M-6,-8 Q-18,-24 -26,-44 Q-8,-36 0,-8 Z", "#4b7f32")
        + path("M-3,-8 Q-6,-34 2,-52 Q8,-32 4,-8 Z", "#6aa548")
        + path("M0,-8 Q12,-26 26,-40 Q20,-20 6,-8 Z", "#4b7f32")
        + "".join(line(x, 50, x * 1.6, 60, "#cfc9a8", 1.2) for x in (-5, -2, 1, 4))
    )


def pumpkin():
    return (
        '<ellipse cx="0" cy="18" rx="30" ry="23" fill="#dd8326"/><ellipse cx="-12" cy="18" rx="15" ry="23" fill="#e79539"/><ellipse cx="12" cy="18" rx="15" ry="23" fill="#d1751c"/><ellipse cx="0" cy="18" rx="11" ry="24" fill="#eaa04a"/>'
        + path("M-4,-3 Q-4,-16 6,-20 L9,-15 Q4,-12 5,-3 Z", "#58793a")
        + path("M4,-8 Q20,-22 30,-8 Q18,-4 4,-8 Z", "#5f9a3f")
    )


@picture("templates/Allotment/border.gif", 760, 112, gif(96, "#ffffff"))
def garden_border():
    bed = path(
        "M0,66 Q60,58 130,64 T280,62 T430,66 T580,61 T760,66 L760,112 L0,112 Z", "#6d4a30"
    ) + path("M0,78 Q100,72 220,78 T480,76 T760,80 L760,112 L0,112 Z", "#5a3a25")
    chance = random.Random(2)
    crumbs = "".join(
        circle(
            chance.random() * 760,
            70 + chance.random() * 42,
            0.8 + chance.random() * 1.4,
            chance.choice(["#8a6344", "#3f2818"]),
            'opacity=".8"',
        )
        for _ in range(170)
    )
    row = ""
    for i in range(15):
        x = 28 + i * 50.4
        row += [
            at(x, 54, 0.95, carrot()),
            at(x, 56, 0.9, beet()),
            at(x, 58, 0.82, leek()),
            at(x, 50, 0.88, pumpkin()),
            at(x, 56, 0.92, carrot(), 3),
        ][(i * 2 + i // 5) % 5]
    return bed + crumbs + row


@picture("templates/Allotment/soup.jpg", 404, 190, JPEG)
def garden_soup():
    chance = random.Random(4)
    cloth = "".join(
        rect(i * 25, 0, 12.5, 190, "#c5d6ae", 'opacity=".55"') for i in range(17)
    ) + "".join(rect(0, i * 25, 404, 12.5, "#c5d6ae", 'opacity=".55"') for i in range(8))
    swirl = path(
        "M200,95 m-34,4 q8,-26 36,-22 q32,4 26,30 q-8,22 -36,16 q-18,-6 -8,-20 q10,-10 22,0",
        "none",
        'stroke="#fbeee9" stroke-width="7" stroke-linecap="round"',
    )
    dill = "".join(
        at(
            200 + 44 * math.cos(a),
            95 + 34 * math.sin(a),
            0.8 + 0.4 * chance.random(),
            path(
                "M0,0 q6,-6 12,-4 M3,-2 q1,-6 5,-8 M7,-4 q4,-3 8,-2",
                "none",
                'stroke="#4b7f32" stroke-width="2" stroke-linecap="round"',
            ),
            chance.random() * 360,
        )
        for a in (0.4, 1.3, 2.4, 3.5, 4.4, 5.4)
    )
    spoon = at(
        312,
        96,
        1,
        '<ellipse cx="0" cy="-46" rx="11" ry="17" fill="#b8bdc0"/><ellipse cx="-2" cy="-48" rx="7" ry="12" fill="#d8dcde"/>'
        + rect(-2.6, -30, 5.2, 100, "#b8bdc0", 'rx="2.6"'),
        12,
    )
    bread = at(
        72,
        62,
        1,
        path("M-30,22 Q-36,-14 0,-20 Q36,-14 30,22 Q0,30 -30,22 Z", "#b8752e")
        + path("M-23,17 Q-28,-8 0,-13 Q28,-8 23,17 Q0,23 -23,17 Z", "#efd7a2")
        + circle(-8, 3, 2.2, "#d9b878")
        + circle(7, 9, 1.8, "#d9b878")
        + circle(10, -2, 2, "#d9b878")
        + circle(-3, 12, 1.6, "#d9b878"),
        -18,
    )
    beets = at(366, 118, 1.15, beet(), 24) + at(40, 152, 0.9, beet(), -58)
    return (
        rect(0, 0, 404, 190, "#eef2dd")
        + cloth
        + '<ellipse cx="203" cy="104" rx="92" ry="80" fill="#3c3424" opacity=".18"/>'
        + circle(200, 95, 84, "#fdfbf3")
        + circle(200, 95, 83, "none", 'stroke="#d8cfb4" stroke-width="2"')
        + circle(200, 95, 66, "none", 'stroke="#4b7f32" stroke-width="3"')
        + circle(200, 95, 58, "#e9e1c8")
        + circle(200, 96, 55, "#8e2449")
        + '<ellipse cx="193" cy="84" rx="34" ry="22" fill="#a83a60" opacity=".6"/>'
        + swirl
        + dill
        + spoon
        + bread
        + beets
    )


@picture("templates/Allotment/leaf.gif", 18, 18, gif(8, "#fdfbf1"))
def garden_leaf():
    return path("M2,16 Q1,4 16,2 Q17,14 7,14 Q5,14 2,16 Z", "#4b7f32") + path(
        "M3,15 Q8,9 13,5", "none", 'stroke="#eef2dd" stroke-width="1.4"'
    )
