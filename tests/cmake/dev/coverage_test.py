#!/usr/bin/python3
"""What the page of lines that are run makes of reasons and counts.

usage: coverage_test.py COVERAGE
"""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent.parent


class Reasons(unittest.TestCase):
    program = ''

    def left_of(self, source):
        """The lines of a source that no reason covers, when none is run."""
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, 'a.cpp')
            path.write_text(source)
            count = source.count('\n')
            run = subprocess.run([self.program, 'judge', path, *map(str, range(1, count + 1))],
                                 capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode, 1 if run.stdout.strip() else 0, run.stderr)
            return [int(each) for each in run.stdout.split()]

    def test_end_of_line(self):
        self.assertEqual(self.left_of('one();\n'
                                      'two();  // Not run by tests: no memory.\n'
                                      'three();\n'), [1, 3])

    def test_other_comments_are_no_reason(self):
        self.assertEqual(self.left_of('one();  // Seldom run.\n'), [1])

    def test_reason_that_says_nothing(self):
        self.assertEqual(self.left_of('one();  // Not run by tests:\n'
                                      'two();  // Not run by tests: .\n'
                                      '// Not run by tests:\n'
                                      'three();\n'), [1, 2, 4])

    def test_text_is_no_comment(self):
        self.assertEqual(self.left_of('say("{ // ;");  // Not run by tests: no memory.\n'
                                      'two();\n'), [2])

    def test_opened_block(self):
        self.assertEqual(self.left_of('if (not) {  // Not run by tests: no memory.\n'
                                      '  one({1, 2});\n'
                                      '  two();\n'
                                      '}\n'
                                      'three();\n'), [5])

    def test_block_that_another_follows(self):
        self.assertEqual(self.left_of('if (not) {  // Not run by tests: no memory.\n'
                                      '  one();\n'
                                      '} else {\n'
                                      '  two();\n'
                                      '}\n'), [3, 4])

    def test_handler(self):
        self.assertEqual(self.left_of('try {\n'
                                      '  one();\n'
                                      '} catch (...) {  // Not run by tests: no memory.\n'
                                      '  return bad;\n'
                                      '}\n'), [1, 2])

    def test_statement_below(self):
        self.assertEqual(self.left_of('// Not run by tests: no memory, which\n'
                                      '// is rare.\n'
                                      'one(2,\n'
                                      '    3);\n'
                                      'two();\n'), [5])

    def test_block_below(self):
        self.assertEqual(self.left_of('// Not run by tests: no memory.\n'
                                      'for (;;) {\n'
                                      '  one();\n'
                                      '}\n'
                                      'two();\n'), [5])

    def test_ends_of_blocks_need_none(self):
        self.assertEqual(self.left_of('one([] {\n'
                                      '});\n'
                                      '}\n'), [1])


class Page(unittest.TestCase):
    program = ''

    def page_of(self, *objects):
        """What is said, and the page, of objects that counted these lines of the program's own root:
        for each (file, line, count, branches), a branch being its count, or "thrown"."""
        with tempfile.TemporaryDirectory() as folder:
            for number, lines in enumerate(objects):
                place = pathlib.Path(folder, 'counts', str(number))
                place.mkdir(parents=True)
                (place / 'one.gcno').touch()
                files = [{'file': file, 'lines': [{
                    'line_number': line, 'count': count, 'function_name': 'f',
                    'branches': [{'count': 0 if branch == 'thrown' else branch,
                                  'throw': branch == 'thrown'} for branch in branches]}]}
                         for file, line, count, branches in lines]
                (place / 'one.gcda').write_text(json.dumps(
                    {'current_working_directory': 'build/coverage', 'files': files}))
            gcov = pathlib.Path(folder, 'gcov')
            gcov.write_text('#!/bin/sh\nfor file; do :; done\ncat "$file"\n')
            gcov.chmod(0o755)
            target = pathlib.Path(folder, 'index.html')
            run = subprocess.run([self.program, 'page', f'{folder}/counts', target, gcov],
                                 capture_output=True, text=True, check=False)
            shown = target.read_text() if target.exists() else ''
            return run.returncode, run.stdout, shown

    def test_nothing_counted(self):
        self.assertEqual(self.page_of()[0], 1)

    def test_counts_that_cannot_be_read(self):
        """Beside others that can."""
        with tempfile.TemporaryDirectory() as folder:
            for name in ('good', 'bad'):
                pathlib.Path(folder, f'{name}.gcno').touch()
            pathlib.Path(folder, 'good.gcda').write_text(json.dumps(
                {'current_working_directory': '.', 'files': [{'file': 'common/text.cpp', 'lines': [
                    {'line_number': 1, 'count': 1, 'function_name': 'f', 'branches': []}]}]}))
            gcov = pathlib.Path(folder, 'gcov')
            gcov.write_text('#!/bin/sh\nfor file; do :; done\n'
                            'case $file in bad*) echo "$file: no version" >&2; exit 3 ;; esac\n'
                            'cat "$file"\n')
            gcov.chmod(0o755)
            target = pathlib.Path(folder, 'index.html')
            run = subprocess.run([self.program, 'page', folder, target, gcov],
                                 capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode, 1)
            self.assertIn('bad.gcno', run.stderr)
            self.assertIn('ended with 3. bad.gcno: no version', run.stderr)
            self.assertFalse(target.exists())

    def test_run_by_one_program_of_two(self):
        code, said, shown = self.page_of([('common/text.cpp', 1, 0, [])],
                                         [('common/text.cpp', 1, 2, [])])
        self.assertEqual(code, 0, said)
        self.assertIn('0 lines are neither run nor have a reason', said)
        self.assertIn('<details><summary>common/text.cpp: lines 100.0 %', shown)

    def test_not_run(self):
        code, said, shown = self.page_of([('common/text.cpp', 1, 0, [])])
        self.assertEqual(code, 1)
        self.assertIn('common/text.cpp:1: not run: #include', said)
        self.assertIn('<b>1 without reason</b>', shown)

    def test_name_from_where_it_was_built(self):
        _, said, shown = self.page_of([('../../common/text.cpp', 1, 1, [])],
                                      [(f'{ROOT}/common/text.cpp', 3, 1, [])])
        self.assertIn('all                2  100.0 %', said)
        self.assertIn('<details><summary>common/text.cpp: lines 100.0 %', shown)

    def test_what_is_no_product(self):
        self.assertEqual(self.page_of([('tests/support/main.cpp', 1, 0, [])])[0], 1)
        code, said, _ = self.page_of([('tests/support/main.cpp', 1, 0, []),
                                      ('common/text.cpp', 1, 1, [])])
        self.assertEqual(code, 0, said)

    def test_branches_without_those_of_exceptions(self):
        _, said, shown = self.page_of([('common/text.cpp', 1, 1, [1, 'thrown', 3, 0])],
                                      [('common/text.cpp', 1, 1, [0, 'thrown', 1, 0])])
        self.assertIn('all                1  100.0 %        0         2   50.0 %', said)
        self.assertIn('branches 50.0 %', shown)


if __name__ == '__main__':
    Reasons.program = Page.program = sys.argv.pop(1)
    unittest.main()
