"""The changes of which nothing can be observed, with the reasons; see docs/mutation.md."""
from rewriting import one_line


class Broken(Exception):
    """The list is not written as it should be."""


def read(text):
    """Name of a change -> why nobody can notice it. Entries stand apart by an empty line:

    common/text.cpp: decimal
      value < 0
      value <= 0
      why, on as many lines as it takes
    """
    accepted = {}
    for entry in text.split('\n\n'):
        lines = [line.strip() for line in entry.splitlines() if not line.startswith('#')]
        if not any(lines):
            continue
        if len(lines) < 4 or ': ' not in lines[0]:
            raise Broken(f'an entry needs its place, both texts and a reason: {lines[0]}')
        file, function = lines[0].split(': ', 1)
        accepted[file, function, lines[1], lines[2]] = one_line(' '.join(lines[3:]), 10000)
    return accepted


def entry(change):
    """What would stand in the list for a change, but for the reason."""
    return f'{change.file}: {change.function}\n  {change.original}\n  {change.changed}\n'


def outdated(accepted, possible, killed):
    """One line for each entry that is to go: its code is no more, or a test notices the change."""
    for name in accepted:
        if name in killed:
            yield 'a test notices it: ' + ' | '.join(name)
        elif name not in possible:
            yield 'there is no such code: ' + ' | '.join(name)
