"""Small changes to a source, and the source that holds many of them at once, each behind a switch.
Nothing here knows the language: where a change may stand, find.py says."""
import dataclasses
import hashlib
import re

# Declared in front of every rewritten file, defined in tests/mutation/runtime.cpp.
SWITCH = 'mutation::on'


@dataclasses.dataclass(frozen=True)
class Change:
    """FORM takes the place of the text from START to END: "$0" in it is the first of PARTS, places in
    the text that may hold changes of their own, "#" the change's number. ORIGINAL and CHANGED tell
    people what it is. RANK orders those of one place: a lower one lies within a higher one."""
    file: str
    line: int
    function: str
    kind: str
    start: int
    end: int
    parts: tuple
    form: str
    original: str
    changed: str
    rank: int = 0

    @property
    def name(self):
        """The same wherever the change stands in its file, and for its like in one function."""
        return self.file, self.function, self.original, self.changed

    def __str__(self):
        return f'{self.file}:{self.line} {self.function}: {self.original}  ->  {self.changed}'


def one_line(text, longest=160):
    text = ' '.join(text.split())
    return text if len(text) <= longest else text[:longest - 4] + ' ...'


def outermost_first(changes):
    return sorted(changes, key=lambda each: (each.start, -each.end, -each.rank))


def cross(one, other):
    """Whether two changes share a part of the text and neither lies within the other."""
    if one.end <= other.start or other.end <= one.start:
        return False
    outer, inner = outermost_first((one, other))
    return not any(start <= inner.start and inner.end <= end for start, end in outer.parts)


def without_crossing(changes):
    """Those that can stand in one text; of two that cross the first one."""
    kept = []
    for change in changes:
        if not any(cross(change, other) for other in kept):
            kept.append(change)
    return kept


def rewritten(text, numbered):
    """TEXT with the changes of NUMBERED, a list of pairs of a number and a change."""
    numbers = {change: number for number, change in numbered}
    return _rendered(text, 0, len(text), outermost_first(numbers), numbers)


def _rendered(text, start, end, changes, numbers):
    done, pieces, waiting = start, [], list(changes)
    while waiting:
        change = waiting.pop(0)
        inside = [each for each in waiting if each.end <= change.end]
        waiting = waiting[len(inside):]
        parts = []
        for begin, behind in change.parts:
            of_part = [each for each in inside if begin <= each.start and each.end <= behind]
            parts.append(_rendered(text, begin, behind, of_part, numbers))
        pieces += text[done:change.start], _filled(change.form, numbers[change], parts)
        done = change.end
    return ''.join(pieces) + text[done:end]


def _filled(form, number, parts):
    return re.sub(r'#|\$(\d)', lambda hit: parts[int(hit[1])] if hit[1] else str(number), form)


def numbers_near(text, line):
    """The numbers of the changes on a line of a rewritten text, or of the last one before it."""
    lines = text.splitlines()
    for above in range(min(line, len(lines)), 0, -1):
        found = re.findall(re.escape(SWITCH) + r'\((\d+)\)', lines[above - 1])
        if found:
            return {int(each) for each in found} if above == line else {int(found[-1])}
    return set()


def sample(changes, count):
    """COUNT of the changes, of each kind as many as of the others where there are enough. Which ones
    depends on nothing but themselves: code that is written elsewhere takes none of them away."""
    kinds = {}
    for change in changes:
        kinds.setdefault(change.kind, []).append(change)
    for each in kinds.values():
        each.sort(key=lambda change: hashlib.sha256(repr((change.name, change.line)).encode()).digest())
        each.sort(key=lambda change: hashlib.sha256(repr(change.name).encode()).digest())
    chosen = []
    while len(chosen) < count and any(kinds.values()):
        for kind in sorted(kinds):
            if kinds[kind] and len(chosen) < count:
                change = kinds[kind].pop(0)
                if not any(cross(change, other) for other in chosen if other.file == change.file):
                    chosen.append(change)
    return chosen


def share(sizes, usual):
    """How many changes to try of each room: USUAL of one of middling size, more of a larger one, but
    by far not in proportion."""
    if not sizes:
        return {}
    middle = sum(sizes.values()) / len(sizes)
    return {room: min(size, max(usual // 2, round(usual * (size / middle) ** 0.5)))
            for room, size in sizes.items()}
