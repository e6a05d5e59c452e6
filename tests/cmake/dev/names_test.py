#!/usr/bin/python3
"""The check of names, on made-up files.

usage: names_test.py NAMES TEST
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest


class Names(unittest.TestCase):
    program = ''

    def said_of(self, *files):
        """What the check says of these files; each holds what stands behind a "=" in its name."""
        with tempfile.TemporaryDirectory() as folder:
            for file in files:
                name, _, content = file.partition('=')
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(content)
            run = subprocess.run([self.program, 'check', folder], capture_output=True, text=True,
                                 check=False)
            self.assertEqual(run.returncode, 1 if run.stdout.strip() else 0, run.stderr)
            return run.stdout.strip()

    def test_source_of_its_name(self):
        self.assertEqual(self.said_of('common/paths.cpp', 'tests/common/paths_test.cpp'), '')
        self.assertEqual(self.said_of('common/paths.h', 'tests/common/paths_test.cpp'), '')
        self.assertEqual(self.said_of('help/topics/a.htm', 'tests/help/topics_test.cpp'), '')

    def test_topic_behind_the_name(self):
        self.assertEqual(self.said_of('online/Run.cpp', 'tests/online/Run_disk_space_test.cpp'), '')
        self.assertEqual(self.said_of('online/old_run.cpp', 'tests/online/old_run_host_test.cpp'), '')

    def test_no_source(self):
        self.assertEqual(self.said_of('common/paths.cpp', 'tests/common/path_test.cpp'),
                         'tests/common/path_test.cpp has no source of its name in common/')

    def test_another_letter_case(self):
        self.assertEqual(self.said_of('common/Paths.cpp', 'tests/common/paths_test.cpp'),
                         'tests/common/paths_test.cpp has no source of its name in common/')

    def test_outside_of_the_mirror(self):
        self.assertEqual(self.said_of('common/forms/Form.cpp', 'tests/common/Form_test.cpp'),
                         'tests/common/Form_test.cpp has no source of its name in common/')
        self.assertEqual(self.said_of('tests/attic/Box_test.cpp'),
                         'tests/attic/Box_test.cpp has no source of its name in attic/')

    def test_exempt(self):
        self.assertEqual(self.said_of('tests/journey/journey_test.cpp'), '')
        self.assertEqual(
            self.said_of('journey/journey.cpp', 'tests/journey/journey_test.cpp'),
            'tests/journey/journey_test.cpp has a source of its name: take it out of '
            'cmake/dev/names')

    def test_suite(self):
        self.assertEqual(
            self.said_of('common/paths.cpp', 'tests/common/paths_test.cpp=TEST_SUITE("paths") {'),
            'tests/common/paths_test.cpp has a suite: its name says as much')

    def test_header_of_a_type(self):
        self.assertEqual(self.said_of('common/Path.h=class Path {'), '')
        self.assertEqual(self.said_of('online/UnzipLibrary.h=namespace unzip { class Library'), '')
        self.assertEqual(self.said_of('common/BrowserSite.h=class Browser::Site {'), '')
        self.assertEqual(self.said_of('common/Box.h=class Boxes {', 'common/Box.cpp=struct Box {'), '')

    def test_header_of_functions(self):
        self.assertEqual(self.said_of('common/paths.h=bool isPath();'), '')
        self.assertEqual(self.said_of('common/Paths.h=bool isPath();'),
                         'common/Paths.h declares no Paths: a topic is written in small letters')


if __name__ == '__main__':
    Names.program = sys.argv.pop(1)
    unittest.main()
