"""Where a source can be changed, as clang reads it."""
import json
import pathlib
import re
import shlex
import subprocess

import rewriting
from clang import cindex
from clang.cindex import CursorKind, TypeKind

COMPARISONS = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '=='}
LOGIC = {'&&': '||', '||': '&&'}
ARITHMETIC = {'+': '-', '-': '+', '*': '+', '/': '*', '%': '+', '|': '&', '&': '|', '<<': '>>',
              '>>': '<<'}
ASSIGNMENTS = {'+=': '-=', '-=': '+=', '|=': '&=', '&=': '|='}
BINARY = {'comparison': COMPARISONS, 'logic': LOGIC, 'arithmetic': ARITHMETIC}

# What the compiler decides stays, and so does what is not one piece of code.
UNTOUCHED = (CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.FUNCTION_TEMPLATE,
             CursorKind.CLASS_TEMPLATE, CursorKind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION)
FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION)
BODIES = (CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT, CursorKind.DO_STMT,
          CursorKind.CXX_FOR_RANGE_STMT, CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT)


class Unreadable(Exception):
    """clang does not take a source as it is."""


class Finder:
    """The changes of one file that clang takes."""

    def __init__(self, root, name, arguments):
        self.root, self.name, self.path = root, name, str(root / name)
        # One character a byte, as clang counts.
        self.text = (root / name).read_bytes().decode('latin-1')
        self.arguments = arguments
        self.changes = []
        self.function = ''
        self.around = []  # the place looked at lies in these
        self.macros = []

    def find(self):
        options = (cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD |
                   cindex.TranslationUnit.PARSE_PRECOMPILED_PREAMBLE | 0x100)  # at once
        unit = cindex.Index.create().parse(self.path, self.arguments, options=options)
        errors = [str(each) for each in unit.diagnostics if each.severity >= cindex.Diagnostic.Error]
        if errors:
            raise Unreadable(errors[0])
        for cursor in unit.cursor.get_children():
            if self.is_here(cursor):
                if cursor.kind == CursorKind.MACRO_INSTANTIATION:
                    self.macros.append((cursor.extent.start.offset, cursor.extent.end.offset))
                else:
                    self.visit(cursor)
        return self.that_compile(unit, rewriting.without_crossing(self.changes))

    def is_here(self, cursor):
        return cursor.location.file and cursor.location.file.name == self.path

    def that_compile(self, unit, changes):
        """Without those that do not compile: constants that the compiler needs, and the like."""
        numbered = list(enumerate(changes, 1))
        while numbered:
            text = rewriting.rewritten(self.text, numbered)
            # The declaration stands in a file of its own, so that what is included stays as it is.
            unit.reparse(unsaved_files=[(self.path, text)])
            wrong = set()
            for each in unit.diagnostics:
                if each.severity >= cindex.Diagnostic.Error:
                    here = each.location.file and each.location.file.name == self.path
                    near = rewriting.numbers_near(text, each.location.line) if here else set()
                    if not near:
                        raise Unreadable(str(each))
                    wrong |= near
            if not wrong:
                break
            numbered = [pair for pair in numbered if pair[0] not in wrong]
        return [change for _, change in numbered]

    # Functions, and what in them is no constant.
    def visit(self, cursor):
        if cursor.kind in UNTOUCHED:
            return
        if cursor.kind in FUNCTIONS and not self.function:
            if not self.is_constant(cursor):
                self.function = self.name_of(cursor)
                self.visit_all(cursor)
                self.function = ''
            return
        if cursor.kind == CursorKind.VAR_DECL and (not self.function or self.is_constant(cursor)):
            return
        if self.function:
            self.look_at(cursor)
        self.around.append(cursor)
        self.visit_all(cursor)
        self.around.pop()

    def is_constant(self, cursor):
        return re.search(r'\bconst(expr|eval)\b',
                         self.text[cursor.extent.start.offset:cursor.location.offset])

    def visit_all(self, cursor):
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.CASE_STMT:
            children = children[1:]
        elif cursor.type.kind == TypeKind.CONSTANTARRAY and cursor.kind.is_declaration():
            children = [each for each in children if each.kind == CursorKind.INIT_LIST_EXPR]
        for child in children:
            self.visit(child)

    @staticmethod
    def name_of(cursor):
        owner = cursor.semantic_parent
        inside = owner and owner.kind in (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL)
        return f'{owner.spelling}::{cursor.spelling}' if inside else cursor.spelling

    def look_at(self, cursor):
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.look_at_operator(cursor, *children)
        elif cursor.kind == CursorKind.COMPOUND_ASSIGNMENT_OPERATOR and len(children) == 2:
            self.exchange(cursor, *children, ASSIGNMENTS, 'arithmetic')
        elif cursor.kind == CursorKind.INTEGER_LITERAL:
            self.number(cursor)
        elif cursor.kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            self.truth(cursor)
        elif cursor.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.DO_STMT):
            for child in children:
                if self.is_condition(child):
                    self.negate(child, 'condition')
        elif cursor.kind == CursorKind.CONDITIONAL_OPERATOR and children:
            self.negate(children[0], 'condition')
        elif cursor.kind == CursorKind.RETURN_STMT and children:
            if children[0].type.get_canonical().kind == TypeKind.BOOL and \
                    self.of(children[0]) not in ('true', 'false'):
                self.negate(children[0], 'truth')
        if cursor.kind == CursorKind.COMPOUND_STMT:
            self.look_at_statements(children)
        elif cursor.kind in BODIES:
            behind = children[1:] if cursor.kind == CursorKind.IF_STMT else children[-1:]
            for child in behind:
                self.leave_out(child, cursor.kind == CursorKind.IF_STMT)

    def of(self, cursor):
        return self.text[cursor.extent.start.offset:cursor.extent.end.offset]

    def before(self, cursor):
        return self.text[max(0, cursor.extent.start.offset - 20):cursor.extent.start.offset]

    def is_condition(self, cursor):
        return (cursor.kind.is_expression() and
                re.search(r"\b(if|while)\s*\($", self.before(cursor)) and
                re.match(r'\s*\)', self.text[cursor.extent.end.offset:]))

    def look_at_operator(self, cursor, left, right):
        for kind, pairs in BINARY.items():
            if kind == 'arithmetic' or cursor.type.get_canonical().kind == TypeKind.BOOL:
                self.exchange(cursor, left, right, pairs, kind)

    def sign_of(self, cursor):
        children = list(cursor.get_children())
        if cursor.kind not in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) or \
                len(children) != 2:
            return ''
        between = self.text[children[0].extent.end.offset:children[1].extent.start.offset]
        return re.sub(r'//.*|/\*.*?\*/', '', between).strip()

    def exchange(self, cursor, left, right, pairs, kind):
        sign = self.sign_of(cursor)
        if sign not in pairs or TypeKind.DEPENDENT in (left.type.kind, right.type.kind):
            return
        other = pairs[sign]
        changed = f'$0 {other} $1' if pairs is ASSIGNMENTS else f'($0) {other} ($1)'
        self.add(cursor, kind, (left, right), f'({rewriting.SWITCH}(#) ? ({changed}) : ($0 {sign} $1))',
                 f'{self.operand(left)} {other} {self.operand(right)}')

    def operand(self, cursor):
        composed = self.sign_of(cursor) in {**LOGIC, **ARITHMETIC}
        return f'({self.of(cursor)})' if composed else self.of(cursor)

    def number(self, cursor):
        said = self.of(cursor)
        if re.fullmatch(r"\w+", said):
            changed = str(int(said) + 1) if said.isdecimal() else f'({said} + 1)'
            self.add(cursor, 'number', (cursor,), f'($0 + {rewriting.SWITCH}(#))', changed,
                     told_with=self.context(cursor))

    def truth(self, cursor):
        if self.of(cursor) in ('true', 'false'):
            other = 'true' if self.of(cursor) == 'false' else 'false'
            self.add(cursor, 'truth', (cursor,), f'({rewriting.SWITCH}(#) != $0)', other,
                     told_with=self.context(cursor))

    def context(self, cursor, longest=50):
        """Where what surrounds a constant begins and ends: by itself it would say little."""
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        for each in reversed(self.around):
            before, behind = each.extent.start.offset, each.extent.end.offset
            if before < start or end < behind:
                return max(before, start - longest), min(behind, end + longest)
        return start, end

    def negate(self, cursor, kind):
        if self.sign_of(cursor) in ('==', '!='):
            return  # as a comparison it becomes the same
        self.add(cursor, kind, (cursor,), f'({rewriting.SWITCH}(#) != static_cast<bool>($0))',
                 f'!({self.of(cursor)})', rank=1)

    def is_statement(self, cursor):
        behind = self.text[cursor.extent.end.offset:]
        return cursor.kind.is_expression() and behind.lstrip().startswith(';')

    def leave_out(self, cursor, may_throw):
        throws = cursor.kind == CursorKind.CXX_THROW_EXPR
        if self.is_statement(cursor) and (may_throw or not throws):
            made = '$0' if throws else 'void($0)'
            self.add(cursor, 'statement', (cursor,), f'({rewriting.SWITCH}(#) ? void() : {made})',
                     '(left out)', rank=2)

    def look_at_statements(self, statements):
        for statement in statements:
            self.leave_out(statement, False)
        for first, second in zip(statements, statements[1:]):
            if not self.is_statement(first) or not self.is_statement(second):
                continue
            if CursorKind.CXX_THROW_EXPR in (first.kind, second.kind) or self.are_apart(first, second):
                continue
            parts = [(each.extent.start.offset, self.text.index(';', each.extent.end.offset) + 1)
                     for each in (first, second)]
            one, other = (self.text[start:end] for start, end in parts)
            self.add_place('order', parts[0][0], parts[1][1], first.extent.start.line, tuple(parts),
                           f'if ({rewriting.SWITCH}(#)) {{ $1 $0 }} else {{ $0 $1 }}',
                           f'{other} {one}', rank=3)

    def are_apart(self, first, second):
        """Whether they give values to two variables and neither asks for the other one."""
        targets = []
        for each in (first, second):
            target = re.match(r'([\w.\[\]]+(?:->\w+)*) = ', self.of(each))
            if not target:
                return False
            targets.append(target[1])
        return targets[0] not in self.of(second) and targets[1] not in self.of(first)

    def add(self, cursor, kind, parts, form, changed, rank=0, told_with=None):
        extent = cursor.extent
        self.add_place(kind, extent.start.offset, extent.end.offset, extent.start.line,
                       tuple((each.extent.start.offset, each.extent.end.offset) for each in parts),
                       form, changed, rank, told_with)

    def add_place(self, kind, start, end, line, parts, form, changed, rank=0, told_with=None):
        if start >= end or any(self.splits_macro(*each) for each in ((start, end),) + parts):
            return
        if kind not in ('condition', 'truth', 'statement', 'order') and (start, end) in self.macros:
            return
        before, behind = told_with or (start, end)
        self.changes.append(rewriting.Change(
            self.name, line, self.function, kind, start, end, parts, form,
            self.to_tell(self.text[before:behind]),
            self.to_tell(self.text[before:start] + changed + self.text[end:behind]), rank))

    @staticmethod
    def to_tell(text):
        return rewriting.one_line(text.encode('latin-1').decode('utf-8', 'replace'))

    def splits_macro(self, start, end):
        """Whether the text is a piece of what a macro is called with or becomes."""
        return any(begin <= start and end <= behind and (begin, behind) != (start, end) or
                   begin < start < behind < end or start < begin < end < behind
                   for begin, behind in self.macros)


def system_folders(compiler):
    """Where the compiler that ships keeps its C++ headers, which clang does not know."""
    said = subprocess.run([compiler, '-E', '-v', '-x', 'c++', '/dev/null'], capture_output=True,
                          text=True, check=True).stderr
    return re.findall(r'^ (.*c\+\+.*)$', said, re.MULTILINE)


def own_headers():
    """Where clang keeps those headers that belong to the compiler; its library does not look."""
    return subprocess.run(['clang', '-print-resource-dir'], capture_output=True, text=True,
                          check=True).stdout.strip()


def arguments_of(commands, declaration):
    """File -> what clang has to know to read it."""
    result, folders, headers = {}, None, own_headers()
    for command in json.loads(pathlib.Path(commands).read_text(encoding='utf-8')):
        words = shlex.split(command['command'])
        if not command['file'].endswith('.cpp'):
            continue
        folders = folders or system_folders(words[0])
        said = [each for each in words if re.match(r'-(D|I|std=)', each)]
        result.setdefault(command['file'], [
            '--target=i686-w64-mingw32', '-resource-dir', headers, *said,
            *(word for each in folders for word in ('-isystem', each)), '-Wno-everything',
            '-Wno-missing-exception-spec', '-ferror-limit=0', '-include', declaration])
    return result


def find_in(task):
    root, name, arguments = task
    try:
        return name, Finder(pathlib.Path(root), name, arguments).find(), None
    except Unreadable as error:
        return name, [], str(error)
