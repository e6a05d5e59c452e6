#!/usr/bin/python3
"""What is given to users, made twice of what is built: nothing of the time and place is in it.

usage: package_test.py CHECKOUT
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

NEEDED = ('CMakeLists.txt', 'LICENSE', 'cmake/dev', 'installer', 'samples/templates', 'samples/themes',
          'common/forms/Quillet.ico', 'build/third-party/unzip/LICENSE')
PROGRAMS = ('Quillet.dll', 'Quillet.dll.debug', 'unzip32.dll', 'KorvelHelp.exe', 'KorvelQuickHelp.exe',
            'quillet-template.exe', 'QuilletHelp')


class Package(unittest.TestCase):
    checkout = pathlib.Path()

    def made_in(self, root, zone, mask):
        """The files that are made of this checkout, by name."""
        out = root / 'build' / 'package of a test'
        self.addCleanup(shutil.rmtree, out, ignore_errors=True)
        command = 'set -euo pipefail; source cmake/dev/stage.sh; source cmake/dev/package.sh; make_package "$0"'
        environment = {**os.environ, 'TZ': zone}
        environment.pop('SOURCE_DATE_EPOCH', None)
        run = subprocess.run(['bash', '-c', f'umask {mask}; {command}', out], cwd=root, env=environment,
                             capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        return {path.relative_to(out).as_posix(): path.read_bytes()
                for path in out.rglob('*') if path.is_file()}

    def copy(self, root):
        """Of what goes into the package, with times of its own."""
        for name in (*NEEDED, *('build/release/bin/' + program for program in PROGRAMS)):
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            if (self.checkout / name).is_dir():
                shutil.copytree(self.checkout / name, root / name, copy_function=shutil.copy)
            else:
                shutil.copy(self.checkout / name, root / name)

    def test_same_bytes_elsewhere(self):
        here = self.made_in(self.checkout, 'UTC', '022')
        with tempfile.TemporaryDirectory() as folder:
            self.copy(pathlib.Path(folder))
            there = self.made_in(pathlib.Path(folder), 'Asia/Kolkata', '077')
        self.assertEqual(sorted(here), ['Quillet.dll.debug', 'Quillet.zip', 'QuilletSetup.exe', 'SHA256SUMS.txt'])
        self.assertEqual([name for name in here if here[name] != there[name]], [])
        # And the setup program that all its tests ran is this one.
        built = self.checkout / 'build' / 'release' / 'installer' / 'QuilletSetup.exe'
        self.assertTrue(here['QuilletSetup.exe'] == built.read_bytes())


if __name__ == '__main__':
    Package.checkout = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
