#!/usr/bin/python3
"""Every command that the documents tell a reader to type, typed.

usage: README_test.py CHECKOUT WORDS|COMMANDS

WORDS      the words of ./dev, which cannot all be run here: each is there, leads to a function that is
           there, and knows the switches that are written behind it
COMMANDS   all others, in a Wine prefix in which nothing of ours is installed, and nothing stays
"""
import contextlib
import http.server
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

CHECKOUT = pathlib.Path()
PROGRAMS = ('quillet-template', 'QuilletSetup.exe', 'regsvr32', 'uninstall.exe', './dev',
            'cmake/run-under-wine')
REMOVAL = r'Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillet'
MACHINE = r'HKLM\Software\Korvel Software\Quillet Viewer'
ADD_IN = r'HKCU\Software\Microsoft\Office\FrontPage\Addins\DWT.DWTemplate'
CLASS = r'\Software\Classes\CLSID\{EA65D517-CDCA-46D0-BD68-449BB8328D69}\InprocServer32'


def documents():
    """The pages that are read; what is built and what is sample data is not."""
    for path in sorted(CHECKOUT.rglob('*.md')):
        if path.relative_to(CHECKOUT).parts[0] not in ('build', '.git', 'tests'):
            yield path


def blocks(text):
    """The lines of a page's fenced blocks of commands, and those indented ones that begin with one
    of our programs."""
    fence = None
    for line in text.splitlines():
        if line.startswith('```'):
            fence = None if fence is not None else line[3:]
        elif fence in ('bat', 'sh'):
            yield line
        elif fence is None and re.match(r' {4}\S', line) and line.split()[0] in PROGRAMS:
            yield line


def in_passing(text):
    """What stands between grave accents in a sentence and begins with one of our programs."""
    text = re.sub(r'^```.*?^```', '', text, flags=re.MULTILINE | re.DOTALL)
    for code in re.findall(r'`([^`]+)`', text):
        words = re.sub(r'^\w+=(\$\(.*?\)|\S+) ', '', code).split()
        if len(words) > 1 and words[0] in PROGRAMS:
            yield ' '.join(words)


def without_remark(line):
    return re.sub(r'  +#.*', '', line).strip()


def commands(path):
    """All commands of a page, as they are typed."""
    text = path.read_text(encoding='utf-8')
    if path.suffix == '.txt':
        found = re.findall(r'(?:^ {8}| {2})(regsvr32 .*?\.dll|QuilletSetup\.exe /.*|uninstall\.exe /.*)',
                           text, flags=re.MULTILINE)
    else:
        found = [*blocks(text), *in_passing(text)]
    return list(dict.fromkeys(filter(None, map(without_remark, found))))


class Words(unittest.TestCase):
    """./dev with its set-up, and what would begin to work, replaced."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        root = pathlib.Path(cls.folder.name)
        (root / 'cmake').mkdir()
        shutil.copy(CHECKOUT / 'dev', root / 'dev')
        shutil.copytree(CHECKOUT / 'cmake' / 'dev', root / 'cmake' / 'dev')
        for name, function in (
                ('setup.sh', 'set_up() { :; }'),
                ('debug.sh', 'run_debug() { echo "runs run_debug"; }'),
                ('wine.sh', 'alone_in_checkout() { declare -F -- "$1" >/dev/null && echo "runs $1"; }')):
            with open(root / 'cmake' / 'dev' / name, 'a', encoding='utf-8') as file:
                file.write('\n' + function + '\n')
        cls.dev = root / 'dev'

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def run_dev(self, *words):
        return subprocess.run([self.dev, *words], capture_output=True, text=True, timeout=60, check=False)

    def entry(self, word):
        """What ./dev tells of a word."""
        told = re.findall(rf'^  {re.escape(word)}\b.*\n(?:   +.*\n)*', self.run_dev('help').stdout, re.MULTILINE)
        return ''.join(told)

    def test_each_word(self):
        lines = {(path.relative_to(CHECKOUT).as_posix(), line)
                 for path in documents() for line in commands(path) if line.startswith('./dev')}
        self.assertGreater(len(lines), 10)
        for page, line in sorted(lines):
            with self.subTest(page=page, line=line):
                words = [word.strip('[].') for word in shlex.split(line)[1:]]
                run = self.run_dev(*words)
                self.assertEqual((run.returncode, run.stdout[:5], run.stderr), (0, 'runs ', ''))
                self.assertTrue(self.entry(words[0]), 'not in what ./dev tells')
                for word in words[1:]:
                    if word.startswith('--'):  # others are a program's own
                        self.assertRegex(self.entry(words[0]), rf'(^|\W){re.escape(word)}\b')

    def test_word_that_is_not_there(self):
        run = self.run_dev('sail')
        self.assertEqual((run.returncode, run.stdout), (2, ''))
        self.assertIn('usage: ./dev COMMAND', run.stderr)


class Site(http.server.SimpleHTTPRequestHandler):
    """A proxy behind which one host is: what it serves is in a folder."""
    def translate_path(self, path):
        return super().translate_path(re.sub(r'^http://[^/]*/templates', '', path))

    def log_message(self, *_):
        pass


@contextlib.contextmanager
def proxy(folder):
    class Here(Site):
        def __init__(self, *arguments):
            super().__init__(*arguments, directory=str(folder))

    with http.server.ThreadingHTTPServer(('127.0.0.1', 0), Here) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f'http://127.0.0.1:{server.server_port}'
        server.shutdown()


class Commands(unittest.TestCase):
    """The reader's folder has the programs in it and what the commands name."""

    def setUp(self):
        self.maxDiff = None
        held = tempfile.TemporaryDirectory()
        self.addCleanup(held.cleanup)
        self.folder = pathlib.Path(held.name)
        self.environment = dict(os.environ)
        self.typed = set()
        built = CHECKOUT / 'build' / 'release'
        for program in ('Quillet.dll', 'unzip32.dll', 'quillet-template.exe'):
            shutil.copy(built / 'bin' / program, self.folder)
        shutil.copy(built / 'installer' / 'QuilletSetup.exe', self.folder)
        for kind in ('templates', 'themes'):
            shutil.copytree(CHECKOUT / 'samples' / kind, self.folder / kind)
        for template in ('Night Ferry', 'Print Room', 'Harbour Light'):
            shutil.copytree(self.folder / 'templates' / template, self.folder / template)

    def wine(self, *words):
        return subprocess.run([CHECKOUT / 'cmake' / 'run-under-wine', *words], cwd=self.folder,
                              env=self.environment, capture_output=True, text=True, timeout=90, check=False)

    def type(self, line):
        """As the reader types it at the system's prompt; what it wrote."""
        # Its box, which nobody would close here, is the system's.
        line = re.sub(r'^regsvr32 (?!/s)', 'regsvr32 /s ', line)
        (self.folder / 'line.bat').write_bytes(f'@{line}\r\n@exit %errorlevel%\r\n'.encode())
        run = self.wine('cmd', '/c', 'line.bat')
        self.assertEqual(run.returncode, 0, f'{line}\n{run.stdout}{run.stderr}')
        return run.stdout

    def value(self, key, name):
        """A text of the registry; nothing when there is none."""
        said = self.wine('reg', 'query', key, *(('/v', name) if name else ('/ve',)), '/reg:32')
        found = re.search(r'REG_SZ +([^\r\n]*)', said.stdout)
        return found and found[1]

    def install(self, root, catalogue):
        def check(line):
            self.type(line)
            folder = self.value(rf'{root}\{REMOVAL}', 'InstallLocation')
            self.assertTrue(folder)
            try:
                self.assertEqual(self.value(root + CLASS, ''), folder + r'\Quillet.dll')
                self.assertEqual(self.value(MACHINE, 'DWTOnline'), catalogue)
            finally:
                self.remove(folder)
            self.assertFalse(self.value(rf'{root}\{REMOVAL}', 'InstallLocation'))
        return check

    def remove(self, folder):
        """From a copy, whose end can be waited for."""
        self.type(f'copy "{folder}\\uninstall.exe"')
        self.type('uninstall.exe /S /RemoveSettings _?=' + folder)

    def register(self, root):
        """And takes it back in the way that ReadMe.txt tells."""
        def check(line):
            self.type(line)
            self.assertEqual(self.value(ADD_IN, 'FriendlyName'), 'Orlique Quillet')
            if root:
                self.assertRegex(self.value(root + CLASS, '') or '', r'\\Quillet\.dll$')
            self.type(line.replace('Quillet.dll', '/u Quillet.dll').replace('/i:list', '/i:user'))
            self.not_registered()
        return check

    def unregister(self, line):
        self.type(line.replace('/u ', ''))
        self.assertTrue(self.value(ADD_IN, 'FriendlyName'))
        self.type(line)
        self.not_registered()

    def not_registered(self):
        for key in (ADD_IN, 'HKCU' + CLASS, 'HKLM' + CLASS):
            self.assertEqual(self.wine('reg', 'query', key, '/reg:32').returncode, 1, key)

    def no_finding(self, line):
        self.assertRegex(self.type(line), r'no finding\.\s*$')

    def makes(self, *files):
        def check(line):
            self.type(line)
            for file in files:
                self.assertTrue((self.folder / file).is_file(), file)
        return check

    def published(self, line):
        """What was made before, served as if it were at that address."""
        with proxy(self.folder / 'site') as address:
            self.environment['http_proxy'] = address
            self.no_finding(line)
        del self.environment['http_proxy']

    def helps(self, line):
        self.assertIn('usage: quillet-template', self.type(line).lower())

    def test_each_command(self):
        setup, template = 'QuilletSetup.exe ', 'quillet-template '
        known = {
            'regsvr32 /n /i:user Quillet.dll': self.register('HKCU'),
            'regsvr32 Quillet.dll': self.register('HKLM'),
            'regsvr32 /n /i:list Quillet.dll': self.register(''),
            'regsvr32 /s /n /i:user Quillet.dll': self.register('HKCU'),
            'regsvr32 /s /u /n /i:user Quillet.dll': self.unregister,
            setup + '/S /CurrentUser': self.install('HKCU', None),
            setup + '/S /AllUsers /CATALOGUE=http://www.example.com/dwt/index.htm':
                self.install('HKLM', 'http://www.example.com/dwt/index.htm'),
            template + '--help': self.helps,
            template + 'check "Night Ferry"': self.no_finding,
            template + 'check "Harbour Light"': self.no_finding,
            template + 'check templates themes': self.no_finding,
            template + 'pack "Night Ferry" -o "Night Ferry.zip"': self.makes('Night Ferry.zip'),
            template + 'pack "Harbour Light" -o harbour-light.zip': self.makes('harbour-light.zip'),
            template + 'catalogue "Night Ferry" "Print Room" -o site --url http://www.example.com/dwt':
                self.makes('site/index.htm', 'site/archives/SHA256SUMS'),
            template + 'catalogue templates --theme themes -o site --url http://www.example.com/templates':
                self.makes('site/index.htm', 'site/catalogue.json'),
            template + 'pages -o pages': self.makes('pages/index.htm', 'pages/template.htm'),
            template + 'catalogue templates -o site --url http://www.example.com/templates --pages pages':
                self.makes('site/index.htm'),
            template + 'catalogue --check http://www.example.com/templates/index.htm': self.published,
        }
        found = []
        for page in ('installer/ReadMe.txt', 'README.md', 'docs/authors.md'):
            lines = [line for line in commands(CHECKOUT / page)
                     if not line.startswith(('./dev', 'cmake/run-under-wine'))]
            self.assertTrue(lines, page)
            found += lines
        # A command that is only named, without what it is to work on.
        found = [line for line in found if line != 'quillet-template check']
        self.assertEqual(sorted(set(found) - known.keys()), [], 'in the documents, and not known here')
        self.assertEqual(sorted(known.keys() - set(found)), [], 'known here, and in no document')
        for line in found:
            with self.subTest(line=line):
                known[line](line)

    def test_from_a_checkout(self):
        lines = [line for line in commands(CHECKOUT / 'docs' / 'authors.md')
                 if line.startswith('cmake/run-under-wine')]
        self.assertEqual(lines, ['cmake/run-under-wine build/release/bin/quillet-template.exe ...'])
        for line in lines:
            run = subprocess.run(shlex.split(line.replace('...', '--help')), cwd=CHECKOUT, capture_output=True,
                                 text=True, timeout=90, check=False)
            self.assertEqual(run.returncode, 0, run.stdout)


if __name__ == '__main__':
    CHECKOUT = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(defaultTest={'WORDS': 'Words', 'COMMANDS': 'Commands'}[sys.argv.pop(1)])
