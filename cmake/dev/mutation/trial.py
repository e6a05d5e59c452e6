"""Runs the tests with one change switched on, and tells whether one of them notices."""
import json
import os
import pathlib
import re
import signal
import subprocess
import time

PATIENCE = 3        # a test that takes so many times as long as usual hangs,
LEAST_PATIENCE = 10  # though not before so many seconds


class Place:
    """A prefix of Wine and the processor core that its programs run on: one program at a time."""

    def __init__(self, build, prefix, core):
        self.prefix, self.core = prefix, core
        self.programs = build / 'mutate/sources/build/release/bin'
        self.folder = build / 'mutate' / f'place-{prefix.name}'
        self.folder.mkdir(exist_ok=True)
        self.environment = {**os.environ, 'WINEPREFIX': str(prefix), 'LC_ALL': 'C.UTF-8'}
        self.environment.pop('DISPLAY', None)

    def start(self, program, *words, **environment):
        with open(self.folder / 'said', 'w', encoding='utf-8') as said:
            return subprocess.Popen(
                ['taskset', '-c', self.core, 'wine', str(self.programs / f'{program}.exe'), *words],
                env={**self.environment, **environment}, stdin=subprocess.DEVNULL, stdout=said,
                stderr=subprocess.STDOUT, cwd=self.folder, start_new_session=True)

    def clear(self, process):
        """Ends what a test has left behind; the next one finds a server that runs."""
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()
        subprocess.run(['wineserver', '-k'], env=self.environment, check=False)
        subprocess.run(['wineserver', '-w'], env=self.environment, check=False)
        subprocess.run(['taskset', '-c', self.core, 'wineserver', '-p'], env=self.environment,
                       check=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def tests(self, program):
        self.start(program, '--list-test-cases').wait()
        said = (self.folder / 'said').read_text(encoding='utf-8', errors='replace').splitlines()
        lines = [each for each in said if each.startswith('=====')]
        if len(lines) < 2:
            raise RuntimeError(f'{program} does not list its tests')
        first = said.index(lines[0])
        return said[first + 1:said.index(lines[1], first + 1)]

    def run(self, program, numbers, usual, change=0, marks=''):
        """Runs the tests with these numbers, in this order, until one fails. USUAL tells how many
        milliseconds each takes. A list with (number, outcome, milliseconds, reached) of each that
        began: "passed", "failed", "crashed" or "hung"."""
        order, told = self.folder / 'order', self.folder / 'told'
        order.write_text(' '.join(str(each) for each in numbers), encoding='utf-8')
        told.write_text('', encoding='utf-8')
        process = self.start(program, QUILLET_MUTATION_ORDER=f'Z:{order}',
                             QUILLET_MUTATION_TOLD=f'Z:{told}', QUILLET_MUTANT=str(change),
                             QUILLET_MUTATION_MARKS=marks)
        hung = not self.wait(process, told, usual)
        results = []
        for line in told.read_text(encoding='ascii').splitlines():
            words = line.split()
            if words[0] == 'began':
                results.append((int(words[1]), 'hung' if hung else 'crashed', 0, []))
            elif len(words) > 3 and results and results[-1][0] == int(words[1]):
                reached = [int(each) for each in words[4:]]
                results[-1] = (int(words[1]), words[3], int(words[2]), reached)
        if not results:
            results = [(numbers[0], 'hung' if hung else 'crashed', 0, [])]
        if hung:
            self.clear(process)
        return results

    @staticmethod
    def wait(process, told, usual):
        """Whether the process ends, without one test taking much longer than it usually does."""
        seen, since = b'', time.monotonic()
        while True:
            try:
                process.wait(0.1)
                return True
            except subprocess.TimeoutExpired:
                pass
            now = told.read_bytes()
            if now != seen:
                seen, since = now, time.monotonic()
            begun = re.findall(rb'began (\d+)', seen)
            expected = usual.get(int(begun[-1]), 0) / 1000 if begun else 5
            if time.monotonic() - since > max(LEAST_PATIENCE, PATIENCE * expected):
                return False


class Tests:
    """What the tests of one program reach while nothing is changed: the changes' numbers, of each
    test that passes, and how long it takes."""

    def __init__(self, program, kept):
        self.program, self.kept = program, pathlib.Path(kept)
        self.names, self.usual, self.reached = {}, {}, {}
        self.failing = []

    def look(self, place):
        built = [place.programs / f'{self.program}.exe', place.programs / 'Quillet.dll']
        stamp = [[each.stat().st_mtime_ns, each.stat().st_size] for each in built if each.exists()]
        if self.kept.exists():
            kept = json.loads(self.kept.read_text(encoding='utf-8'))
            if kept['stamp'] == stamp:
                self.take(kept)
                return
        kept = {'stamp': stamp, 'names': place.tests(self.program), 'results': []}
        waiting = list(range(1, len(kept['names']) + 1))
        usual = dict.fromkeys(waiting, 60000 / PATIENCE)
        while waiting:
            for result in place.run(self.program, waiting, usual, marks=f'quillet-{place.folder.name}'):
                kept['results'].append(result)
                waiting.remove(result[0])
        self.kept.write_text(json.dumps(kept), encoding='utf-8')
        self.take(kept)

    def take(self, kept):
        self.names = dict(enumerate(kept['names'], 1))
        for number, outcome, milliseconds, reached in kept['results']:
            if outcome == 'passed':
                self.usual[number] = milliseconds
                self.reached[number] = set(reached)
            else:
                self.failing.append(self.names[number])

    def that_reach(self, change):
        """Quick ones first."""
        return sorted((number for number, reached in self.reached.items() if change in reached),
                      key=self.usual.get)


def attempt(place, change, programs, budget):
    """What becomes of a change: how a test noticed it and which, or ('survived', ...). The tests of
    the programs that come first are all tried, of the others as many as BUDGET seconds allow; they
    are pairs of Tests and whether all of them are tried. A test that fails notices only if it does so
    again by itself."""
    tried = left = 0
    spent = 0
    for tests, wholly in programs:
        waiting = tests.that_reach(change)
        if not wholly:
            some = []
            for each in waiting:
                if spent + tests.usual[each] <= budget * 1000:
                    spent += tests.usual[each]
                    some.append(each)
            left += len(waiting) - len(some)
            waiting = some
        while waiting:
            results = place.run(tests.program, waiting, tests.usual, change)
            tried += len(results)
            waiting = waiting[len(results):]
            last = results[-1]
            if last[1] != 'passed':
                again = place.run(tests.program, [last[0]], tests.usual, change)[-1]
                if again[1] != 'passed':
                    return again[1], f'{tests.program}: {tests.names[last[0]]}'
    if tried + left == 0:
        return 'survived', 'no test reaches it'
    rest = f', {left} more not tried' if left else ''
    return 'survived', f'{tried} tests pass{rest}'
