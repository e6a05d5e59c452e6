#!/usr/bin/python3
"""How changes are written into a source, chosen and judged, on a source of ten lines.

usage: mutation_test.py FOLDER
"""
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv.pop(1))
import accepted  # noqa: E402
import rewriting  # noqa: E402
import trial  # noqa: E402

SOURCE = '''\
int count(int wanted) {
  int found = 0;
  if (wanted < 7) {
    look();
    tell();
    found = wanted + 1;
  }
  return found;
}
'''


def change(text, form, changed, kind='statement', rank=0, parts=None, file='a.cpp'):
    start = SOURCE.index(text)
    places = [(start + text.index(part), start + text.index(part) + len(part)) for part in parts or [text]]
    return rewriting.Change(file, SOURCE[:start].count('\n') + 1, 'count', kind, start, start + len(text),
                            tuple(places), form, text, changed, rank)


LESS = change('wanted < 7', '(mutation::on(#) ? ($0 <= $1) : ($0 < $1))', 'wanted <= 7', 'comparison',
              parts=['wanted', '7'])
SEVEN = change('7', '($0 + mutation::on(#))', '7 + 1', 'number')
NOT = change('wanted < 7', '(mutation::on(#) != static_cast<bool>($0))', '!(wanted < 7)', 'condition', rank=1)
LEFT_OUT = change('look()', '(mutation::on(#) ? void() : void($0))', '(left out)', rank=2)
ORDER = change('look();\n    tell();', 'if (mutation::on(#)) { $1 $0 } else { $0 $1 }', 'tell(); look();',
               'order', 3, ['look();', 'tell();'])
NEXT_ORDER = change('tell();\n    found = wanted + 1;', 'if (mutation::on(#)) { $1 $0 } else { $0 $1 }', '',
                    'order', 3, ['tell();', 'found = wanted + 1;'])


class Rewriting(unittest.TestCase):
    def line(self, number, *changes):
        return rewriting.rewritten(SOURCE, list(enumerate(changes, 1))).splitlines()[number - 1].strip()

    def test_nothing_to_change(self):
        self.assertEqual(rewriting.rewritten(SOURCE, []), SOURCE)

    def test_both_ways_stand_behind_the_switch(self):
        self.assertEqual(self.line(3, LESS),
                         'if ((mutation::on(1) ? (wanted <= 7) : (wanted < 7))) {')

    def test_change_within_a_change(self):
        self.assertEqual(self.line(3, LESS, SEVEN),
                         'if ((mutation::on(1) ? (wanted <= (7 + mutation::on(2))) : '
                         '(wanted < (7 + mutation::on(2))))) {')

    def test_two_changes_of_one_place(self):
        both = ('if ((mutation::on(%d) != static_cast<bool>('
                '(mutation::on(%d) ? (wanted <= 7) : (wanted < 7))))) {')
        self.assertEqual(self.line(3, LESS, NOT), both % (2, 1))
        self.assertEqual(self.line(3, NOT, LESS), both % (1, 2))

    def test_statements_in_the_other_order(self):
        self.assertEqual(self.line(4, ORDER, LEFT_OUT),
                         'if (mutation::on(1)) { tell(); (mutation::on(2) ? void() : void(look())); } else '
                         '{ (mutation::on(2) ? void() : void(look())); tell(); }')

    def test_changes_that_cross(self):
        self.assertTrue(rewriting.cross(ORDER, NEXT_ORDER))
        self.assertTrue(rewriting.cross(NEXT_ORDER, ORDER))
        self.assertFalse(rewriting.cross(ORDER, LEFT_OUT))
        self.assertFalse(rewriting.cross(NOT, LESS))
        self.assertFalse(rewriting.cross(LESS, ORDER))
        self.assertEqual(rewriting.without_crossing([LESS, ORDER, NEXT_ORDER]), [LESS, ORDER])

    def test_what_a_line_of_the_rewritten_source_holds(self):
        text = rewriting.rewritten(SOURCE, [(11, LESS), (12, SEVEN), (13, LEFT_OUT)])
        self.assertEqual(rewriting.numbers_near(text, 3), {11, 12})
        self.assertEqual(rewriting.numbers_near(text, 5), {13})
        self.assertEqual(rewriting.numbers_near(text, 2), set())


class Sample(unittest.TestCase):
    every = [LESS, SEVEN, NOT, LEFT_OUT, ORDER, NEXT_ORDER]

    def test_of_each_kind_as_many(self):
        kinds = [each.kind for each in rewriting.sample(self.every, 5)]
        self.assertEqual(sorted(kinds), ['comparison', 'condition', 'number', 'order', 'statement'])

    def test_no_two_that_cross(self):
        self.assertEqual(len(rewriting.sample(self.every, 6)), 5)

    def test_same_whatever_stands_elsewhere(self):
        order = [each for each in self.every if each.kind == 'order']
        self.assertEqual(rewriting.sample(order, 1), rewriting.sample(order[::-1], 1))
        more = rewriting.sample([LESS, *order], 2)
        self.assertIn(rewriting.sample(order, 1)[0], more)

    def test_larger_rooms_have_more(self):
        self.assertEqual(rewriting.share({'small': 5, 'middle': 200, 'large': 395}, 30),
                         {'small': 5, 'middle': 30, 'large': 42})
        self.assertEqual(rewriting.share({}, 30), {})


class Accepted(unittest.TestCase):
    text = ('# What this is.\n\n'
            'a.cpp: count\n  wanted < 7\n  wanted <= 7\n  Nobody wants seven,\n  ever.\n\n'
            'a.cpp: count\n  look()\n  (left out)\n  It looks like nothing.\n')

    def test_entries(self):
        self.assertEqual(accepted.read(self.text),
                         {LESS.name: 'Nobody wants seven, ever.', LEFT_OUT.name: 'It looks like nothing.'})

    def test_entry_without_a_reason(self):
        with self.assertRaises(accepted.Broken):
            accepted.read(accepted.entry(LESS))
        self.assertIn(LESS.name, accepted.read(accepted.entry(LESS) + 'why'))

    def test_outdated_entries(self):
        listed = accepted.read(self.text)
        self.assertEqual(list(accepted.outdated(listed, {LESS.name, LEFT_OUT.name}, set())), [])
        self.assertEqual(list(accepted.outdated(listed, {LESS.name, LEFT_OUT.name}, {LESS.name})),
                         ['a test notices it: a.cpp | count | wanted < 7 | wanted <= 7'])
        self.assertEqual(list(accepted.outdated(listed, {LESS.name}, set())),
                         ['there is no such code: a.cpp | count | look() | (left out)'])


class Tests:
    """Three tests of a program: which changes they reach, how long they take."""
    program = 'some-tests'
    names = {1: 'slow', 2: 'quick', 3: 'elsewhere'}
    usual = {1: 500, 2: 20, 3: 1}
    reached = {1: {7}, 2: {7, 8}, 3: {9}}
    that_reach = trial.Tests.that_reach


class Place:
    """Runs tests as they are told to end, until one fails."""

    def __init__(self, **outcomes):
        self.outcomes, self.runs = {each: list(ends) for each, ends in outcomes.items()}, []

    def run(self, program, numbers, usual, change):
        self.runs.append(numbers)
        results = []
        for number in numbers:
            ends = self.outcomes.get(Tests.names[number], [])
            results.append((number, ends.pop(0) if ends else 'passed', 1, []))
            if results[-1][1] != 'passed':
                break
        return results


class Judged(unittest.TestCase):
    def attempt(self, place, change=7, wholly=True, budget=60):
        return trial.attempt(place, change, [(Tests(), wholly)], budget)

    def test_quick_tests_first(self):
        place = Place()
        self.assertEqual(self.attempt(place), ('survived', '2 tests pass'))
        self.assertEqual(place.runs, [[2, 1]])

    def test_noticed(self):
        self.assertEqual(self.attempt(Place(quick=['failed', 'failed'])), ('failed', 'some-tests: quick'))
        self.assertEqual(self.attempt(Place(slow=['hung', 'hung'])), ('hung', 'some-tests: slow'))

    def test_failure_that_does_not_come_again(self):
        place = Place(quick=['failed'])
        self.assertEqual(self.attempt(place), ('survived', '2 tests pass'))
        self.assertEqual(place.runs, [[2, 1], [2], [1]])

    def test_not_reached(self):
        self.assertEqual(self.attempt(Place(), change=6), ('survived', 'no test reaches it'))

    def test_other_programs_have_a_limit(self):
        place = Place()
        self.assertEqual(self.attempt(place, wholly=False, budget=0.1),
                         ('survived', '1 tests pass, 1 more not tried'))
        self.assertEqual(place.runs, [[2]])


if __name__ == '__main__':
    unittest.main()
