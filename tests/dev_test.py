"""What ./dev debug builds with, tried on a small program: the debugger knows its functions and lines.

usage: dev_test.py CHECKOUT COMPILER RUNNER...
"""
import json
import pathlib
import subprocess
import sys
import tempfile

PROGRAM = '''#include <string>
int measure(const std::string& text) { return static_cast<int>(text.size()); }
int main(int, char** words) { return measure(words[0]) == 0; }
'''
COMMANDS = 'break measure\ncont\nbt\nkill\n'


def debug_flags(checkout):
    presets = json.loads((pathlib.Path(checkout) / 'CMakePresets.json').read_text(encoding='utf-8'))
    preset = next(each for each in presets['configurePresets'] if each['name'] == 'debug')
    return preset['cacheVariables']['CMAKE_CXX_FLAGS'].split()


def main(checkout, compiler, *runner):
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place)
        (folder / 'program.cpp').write_text(PROGRAM, encoding='utf-8')
        subprocess.run([compiler, '-g', *debug_flags(checkout), '-static', 'program.cpp', '-o',
                        'program.exe'], cwd=folder, check=True)
        run = subprocess.run([*runner, 'winedbg', '--command', COMMANDS, 'program.exe'],
                             cwd=folder, capture_output=True, check=False)
    said = run.stdout.decode('utf-8', 'replace')
    print(said)
    assert 'Stopped on breakpoint 1 at ' in said
    assert 'program.cpp:2] in program' in said


if __name__ == '__main__':
    main(*sys.argv[1:])
