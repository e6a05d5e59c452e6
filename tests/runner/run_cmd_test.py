"""Gathers the archive of the tests, puts the probe of the runners in the place of its test programs,
and runs it from a folder with a blank and an accent in its name.

usage: run_cmd_test.py PROGRAMS VERSION FOLDER RUNNER...
"""
import pathlib
import re
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent

# What a machine says of itself, each in the form that it must have.
HEAD = r'''Quillet VERSION, report of its tests

Windows:     \d+\.\d+\.\d+(, service pack \d)?, (32|64) bits, which is Wine [\d.]+\S*
Code pages:  \d+ and \d+
Language:    \w+
Screen:      \d+ x \d+, \d+ dots to the inch
User:        an administrator
Run as:      run\.cmd
Begun:       \d{4}-\d\d-\d\d \d\d:\d\d

'''
CASES = '''probe-tests
  passed   passes
  FAILED   fails
             probe.cpp:LINE: ERROR: CHECK( false ) is NOT correct!
               values: CHECK( false )
  FAILED   crashes
             CRASH
  FAILED   ends the process
             It ended before its end, with code 0.
  FAILED   ends the process without a word
             It ended before its end, with code 0.
  passed   a name, with what w?ldcards and a command line would t*ke for their own: "%TEMP%"
  FAILED   ein Name mit größeren Buchstaben
             probe.cpp:LINE: ERROR: CHECK( false ) is NOT correct!
               values: CHECK( false )
  skipped  cannot be run here
             there is no moon
  FAILED   has failed before it cannot be run
             probe.cpp:LINE: ERROR: CHECK( false ) is NOT correct!
               values: CHECK( false )
             probe.cpp:LINE: ERROR: test case THREW exception: skipped: there is no moon
  FAILED   throws
             probe.cpp:LINE: ERROR: test case THREW exception: the sky falls
  skipped  changes the machine
             it registers components, which only run.cmd /all may do
  passed   leaves a program and a file behind
  passed   leaves a key behind
  passed   finds nothing of the others

'''
CRASH = r'''(.*\n {13})*(It ended before its end, with code \w+\.|.*CRASHED.*)
'''
TAIL = r'''Ended:       \d{4}-\d\d-\d\d \d\d:\d\d
'''
COUNTS = '14 tests: 5 passed, 7 failed, 2 skipped\n'
HANGING = '''hanging-tests
  FAILED   hangs
             It was not done when its time was over.

'''


def processes_of(folder):
    """The command lines that name a program in it."""
    for each in pathlib.Path('/proc').glob('[0-9]*/cmdline'):
        try:
            words = each.read_bytes().decode('utf-8', 'replace')
        except OSError:
            continue
        if folder.name in words and 'hanging-tests' in words:
            yield words.replace('\0', ' ')


class Archive:
    """What is given away, with the probe in the place of its test programs."""

    def __init__(self, programs, version, folder, runner):
        self.folder = pathlib.Path(folder) / 'The tests für alle'
        self.runner = runner
        subprocess.run([HERE / 'collect', programs, version, self.folder], check=True)
        inside = self.folder / 'programs'
        for program in inside.glob('*-tests.exe'):
            program.unlink()
        for name, probe in (('probe', 'runner-probe'), ('hanging', 'runner-hanging-probe'),
                            ('support', 'support-tests')):
            shutil.copy(pathlib.Path(programs) / f'{probe}.exe', inside / f'{name}-tests.exe')

    def windows(self, *command):
        run = subprocess.run([*self.runner, *command], capture_output=True, check=False)
        return run.returncode, run.stdout.decode('utf-8', 'replace')

    def run(self, *switches):
        """How it ends, and what it prints."""
        code, output = self.windows('cmd', '/c', f'Z:{self.folder}/run.cmd'.replace('/', '\\'),
                                    '/quiet', *switches)
        print(code, output)
        return code, output

    def report(self):
        written = (self.folder / 'report.txt').read_bytes()
        assert written.startswith(b'\xef\xbb\xbf'), written[:10]
        text = written[3:].decode('utf-8')
        assert text.count('\r\n') == text.count('\n')
        return text.replace('\r\n', '\n')


def check(archive, version, cases):
    text = re.sub(r'probe\.cpp:\d+', 'probe.cpp:LINE', archive.report())
    print(text)
    wanted = HEAD.replace('VERSION', re.escape(version)) + cases
    assert re.fullmatch(wanted, text), 'the report is another one'


def reports_each_case(archive, version):
    code, _ = archive.run('probe-tests')
    # The system has a word, doctest, or it ends with a code, as it pleases.
    cases = re.escape(CASES).replace(re.escape('CRASH\n'), CRASH)
    check(archive, version, cases + TAIL + COUNTS)
    assert code == 1, code
    left = list(processes_of(archive.folder))
    assert not left, left


def ends_what_hangs(archive, version):
    code, _ = archive.run('/timeout:1', 'hanging-tests')
    check(archive, version, re.escape(HANGING) + TAIL + '1 test: 0 passed, 1 failed, 0 skipped\n')
    assert code == 1, code
    left = list(processes_of(archive.folder))
    assert not left, left


def takes_the_machine_it_is_given(archive):
    assert archive.run('/all', 'support-tests')[0] == 0
    assert '\nRun as:      run.cmd /all\n' in archive.report()
    assert re.search(r'\n([1-9]\d*) tests: \1 passed, 0 failed, 0 skipped\n$', archive.report())


def refuses(archive):
    """Nothing is run, and the report stays that of the last run."""
    before = archive.report()
    for switch in ('/loud', '/timeout:soon', '/timeout:99999'):
        assert archive.run(switch) == (2, 'There is no such switch; ReadMe.txt has them all.\r\n')
    assert archive.run('no-tests') == (2, 'There is no such test program.\r\n')
    archive.windows('reg', 'add', r'HKCR\DWT.DWTemplate', '/f')
    try:
        assert archive.run('/all') == (2, '/all would take away the registration of DWT.DWTemplate, '
                                          'which is on this machine.\r\n')
    finally:
        archive.windows('reg', 'delete', r'HKCR\DWT.DWTemplate', '/f')
    assert archive.report() == before


def main(programs, version, folder, *runner):
    archive = Archive(programs, version, folder, runner)
    reports_each_case(archive, version)
    ends_what_hangs(archive, version)
    takes_the_machine_it_is_given(archive)
    refuses(archive)
    shutil.rmtree(archive.folder)


if __name__ == '__main__':
    main(*sys.argv[1:])
