#!/usr/bin/python3
"""The tool that brings attached pages up to date, on made-up templates.

usage: update-pages_test.py UPDATE_PAGES
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

TEMPLATE = (b'<html lang="de">\r\n<body>\r\nGr\xfc\xdfe\r\n'
            b'<!-- #BeginEditable "body" -->as it is<!-- #EndEditable -->\r\n'
            b'<!-- #BeginEditable "foot" -->foot<!-- #EndEditable -->\r\n</body>\r\n</html>\r\n')
PAGE = (b'<html lang="de">\r\n<!-- #BeginTemplate "x.dwt" -->\r\n<body>\r\nGr\xfc\xdfe\r\n'
        b'<!-- #BeginEditable "body" -->\r\nsaid \\1\r\n<!-- #EndEditable -->\r\n'
        b'<!-- #BeginEditable "foot" -->foot<!-- #EndEditable -->\r\n</body>\r\n'
        b'<!-- #EndTemplate -->\r\n</html>\r\n')


class UpdatePages(unittest.TestCase):
    program = ''

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        (self.folder / 'x.dwt').write_bytes(TEMPLATE)
        self.page = self.folder / 'page.htm'

    def run_tool(self, *arguments):
        run = subprocess.run([self.program, *arguments, self.folder], capture_output=True,
                             text=True, check=False)
        self.assertEqual(run.stderr, '')
        return run.returncode, run.stdout

    def test_page_that_is_up_to_date(self):
        self.page.write_bytes(PAGE)
        self.assertEqual(self.run_tool('--check'), (0, ''))
        self.assertEqual(self.run_tool(), (0, ''))
        self.assertEqual(self.page.read_bytes(), PAGE)

    def test_page_that_fell_behind(self):
        behind = PAGE.replace(b'Gr\xfc\xdfe', b'old').replace(
            b'<!-- #BeginEditable "foot" -->foot<!-- #EndEditable -->\r\n', b'')
        self.page.write_bytes(behind)
        self.assertEqual(self.run_tool('--check'), (1, f'{self.page} is not up to date\n'))
        self.assertEqual(self.page.read_bytes(), behind)
        self.assertEqual(self.run_tool(), (0, f'{self.page} has been brought up to date\n'))
        self.assertEqual(self.page.read_bytes(), PAGE)

    def test_page_that_is_not_attached(self):
        self.page.write_bytes(b'<html>\r\n<body>free</body>\r\n</html>\r\n')
        self.assertEqual(self.run_tool('--check'), (0, ''))


if __name__ == '__main__':
    UpdatePages.program = sys.argv.pop(1)
    unittest.main()
