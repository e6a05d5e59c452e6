#!/usr/bin/python3
"""The check of what includes what, on made-up sources.

usage: includes_test.py INCLUDES TEST
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest


class Includes(unittest.TestCase):
    program = ''

    def said_of(self, **files):
        """What the check says of files, each "folder__name_h" with the files that it includes."""
        with tempfile.TemporaryDirectory() as folder:
            for key, others in files.items():
                path = pathlib.Path(folder, key.replace('__', '/').replace('_h', '.h'))
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(''.join(f'#include "{other}"\n' for other in others))
            run = subprocess.run([self.program, 'check', folder], capture_output=True, text=True,
                                 check=False)
            self.assertEqual(run.returncode, 1 if run.stdout.strip() else 0, run.stderr)
            return run.stdout.strip()

    def test_downwards(self):
        self.assertEqual(self.said_of(common__text_h=[], catalogue__Scan_h=['common/text.h'],
                                      catalogue__frmList_h=['catalogue/Scan.h', 'common/text.h'],
                                      addin__Menu_h=['catalogue/frmList.h'],
                                      tests__all_h=['addin/Menu.h']), '')

    def test_upwards(self):
        self.assertEqual(
            self.said_of(common__text_h=['catalogue/Scan.h'], catalogue__Scan_h=[]),
            'common/text.h (ground) includes catalogue/Scan.h (rules), which is not below it')

    def test_rule_that_knows_a_window(self):
        self.assertEqual(
            self.said_of(webcopy__Run_h=['webcopy/frmCopy.h'], webcopy__frmCopy_h=[]),
            'webcopy/Run.h (rules) includes webcopy/frmCopy.h (windows), which is not below it')

    def test_no_floor(self):
        self.assertEqual(self.said_of(attic__Box_h=[]),
                         'attic/Box.h stands on no floor: give it one in cmake/dev/includes')

    def test_circle_of_files(self):
        self.assertEqual(
            self.said_of(common__a_h=['common/b.h'], common__b_h=['common/c.h'],
                         common__c_h=['common/a.h']),
            'files in a circle: common/a.h -> common/b.h -> common/c.h -> common/a.h')

    def test_circle_of_folders(self):
        self.assertEqual(
            self.said_of(catalogue__a_h=['online/a.h'], online__a_h=[], catalogue__b_h=[],
                         online__b_h=['catalogue/b.h']),
            'folders in a circle: catalogue, rules -> online, rules -> catalogue, rules'
            ' (catalogue/a.h includes online/a.h; online/b.h includes catalogue/b.h)')


if __name__ == '__main__':
    Includes.program = sys.argv.pop(1)
    unittest.main()
