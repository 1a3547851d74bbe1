"""Small changes of a source file, all in one text: which of them is in force is asked while the program runs.

`Source` finds the places with clang's own reading of the file, so a place is never in a comment, and an
operand ends where the compiler says so. What does not compile is left out.
"""

import re
from dataclasses import dataclass

from clang.cindex import CursorKind, Diagnostic, Index, TypeKind

# Every changed file begins with this; line numbers stay.
_FIRST = '#include "proof/mutant.h"\n#line 1\n'
_DECLARED = "bool IsMutant(int);\n#line 1\n"

_OPERATORS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
              "+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
              "+=": "-=", "-=": "+=", "^=": "|=", "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<="}
_COMPARISONS = {"==", "!=", "<", "<=", ">", ">="}
_LEVELS = {"LogCritical": "LogFailure", "LogFailure": "LogWarning", "LogWarning": "LogInformation",
           "LogInformation": "LogWarning", "LogSuccess": "LogWarning"}
_WORDS = {"YES": "NO", "NO": "YES", "true": "false", "false": "true"}
_EXPRESSIONS = {CursorKind.CALL_EXPR, CursorKind.OBJC_MESSAGE_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR,
                CursorKind.COMPOUND_ASSIGNMENT_OPERATOR, CursorKind.UNEXPOSED_EXPR}
_CALLS = {CursorKind.CALL_EXPR, CursorKind.OBJC_MESSAGE_EXPR}
_DECLARATIONS = {CursorKind.VAR_DECL, CursorKind.FUNCTION_DECL, CursorKind.FUNCTION_TEMPLATE, CursorKind.CXX_METHOD}
_FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.FUNCTION_TEMPLATE, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
              CursorKind.DESTRUCTOR, CursorKind.OBJC_INSTANCE_METHOD_DECL, CursorKind.OBJC_CLASS_METHOD_DECL}
_CONDITIONS = {CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR}
_INTEGERS = {TypeKind.INT, TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.SHORT, TypeKind.USHORT,
             TypeKind.UCHAR, TypeKind.SCHAR, TypeKind.CHAR_S, TypeKind.LONGLONG, TypeKind.ULONGLONG}
_TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)*\'|\b(?:YES|NO|true|false)\b', re.DOTALL)
# Whoever forgets these leaks, which LeakSanitizer tells in the ordinary tests, or takes memory in more steps.
_OF_MEMORY = re.compile(r"\[.* (release|autorelease|drain|retain|dealloc)\]$|.*\.reserve\(.*\)$", re.DOTALL)


@dataclass
class Mutant:
    """One change: its number, its kind, where it is, what it makes of what. function: "" for a table of the file."""

    number: int
    kind: str
    line: int
    function: str
    before: str
    after: str


@dataclass
class _Place:
    start: int
    end: int
    kind: str
    before: str  # what people are told
    after: str
    wrap: object  # (number, text with the changes inside) -> text
    number: int = 0


class Source:
    """A file of the product and its mutants, numbered from `first` on.

    with_tables: whether constants of the file may be filled before main; else each use of one is changed.
    """

    def __init__(self, path, arguments, first, with_tables):
        self._path, self._arguments, self._first, self._with_tables = str(path), arguments, first, with_tables
        self._bytes = path.read_bytes()  # clang counts bytes
        self._plain = _without_comments(self._bytes.decode()).encode()
        self._places = []
        self._functions = []  # (start, end, name), in the order of the text
        parsed = self._parse(self._bytes.decode())
        for child in parsed.cursor.get_children():
            if child.location.file and child.location.file.name == self._path:
                self._visit(child, None, False)
        self._drop_what_overlaps()
        self._drop_what_does_not_compile()

    def mutants(self):
        """What can be changed, in the order of the text."""
        return [Mutant(place.number, place.kind, self._bytes[:place.start].count(b"\n") + 1,
                       self._function_at(place.start), place.before, place.after) for place in self._places]

    def _function_at(self, offset):
        return next((name for start, end, name in self._functions if start <= offset < end), "")

    def text(self):
        """The file with all its mutants."""
        return _FIRST + self._numbered()

    def _numbered(self):
        for number, place in enumerate(self._places, self._first):
            place.number = number
        return self._rendered(0, len(self._bytes), self._places)

    def _parse(self, text):
        parsed = Index.create().parse(self._path, self._arguments, unsaved_files=[(self._path, text)])
        return parsed

    # ---- finding places

    def _visit(self, cursor, parent, inside):
        if cursor.kind in _FUNCTIONS:
            self._functions.append((cursor.extent.start.offset, cursor.extent.end.offset, cursor.spelling))
        if cursor.kind == CursorKind.COMPOUND_STMT:
            if not inside:
                self._words(cursor)
            inside = True
            self._statements(cursor, parent)
        if cursor.kind in _DECLARATIONS and re.match(rb"[^({=]*\bconstexpr\b", self._source(cursor)):
            return  # known while compiling
        is_table = cursor.kind == CursorKind.VAR_DECL and not inside and self._with_tables
        if inside:
            self._expression(cursor, parent)
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.CASE_STMT:  # its value must be known while compiling
            children = children[1:]
        for child in children:
            self._visit(child, cursor, inside or is_table)

    def _expression(self, cursor, parent):
        children = list(cursor.get_children())
        if cursor.kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
            self._operator(cursor, *children)
        elif cursor.kind == CursorKind.CALL_EXPR and cursor.spelling.startswith("operator") and len(children) == 3:
            self._operator(cursor, children[0], children[2])
        elif cursor.kind == CursorKind.UNARY_OPERATOR and children:
            text, operand = self._source(cursor), self._source(children[0])
            if text.startswith(b"!"):
                self._choose(cursor, "condition", b"!!" + operand)
            elif text.startswith((b"++", b"--")):
                self._choose(cursor, "arithmetic", text.translate(bytes.maketrans(b"+-", b"-+"))[:2] + text[2:])
            elif text.endswith((b"++", b"--")):
                self._choose(cursor, "arithmetic", text[:-2] + text[-2:].translate(bytes.maketrans(b"+-", b"-+")))
        elif cursor.kind == CursorKind.INTEGER_LITERAL and self._source(cursor)[:1].isdigit():
            self._choose(cursor, "constant", self._source(cursor) + b" + 1")
        elif cursor.kind == CursorKind.CHARACTER_LITERAL and self._source(cursor)[:1] == b"'":
            self._choose(cursor, "constant", b"char(" + self._source(cursor) + b" + 1)")
        elif cursor.kind in (CursorKind.STRING_LITERAL, CursorKind.OBJC_STRING_LITERAL):
            if parent.kind == CursorKind.OBJC_STRING_LITERAL:
                return
            if re.match(rb'(@|u8|L)?["A-Z]', self._source(cursor)):
                self._choose(cursor, "text", self._source(cursor) + b' "~"')
        elif cursor.kind == CursorKind.DECL_REF_EXPR:
            self._constant(cursor)
        elif cursor.kind == CursorKind.OBJC_MESSAGE_EXPR:
            found = re.match(rb"\[NSLogger\s+(Log\w+)", self._source(cursor))
            if found and found[1].decode() in _LEVELS:
                text = self._source(cursor)
                changed = text[:found.start(1)] + _LEVELS[found[1].decode()].encode() + text[found.end(1):]
                self._choose(cursor, "level", changed, found[1].decode(), _LEVELS[found[1].decode()])
        if cursor.kind in _CONDITIONS and children:
            condition = children[0]
            text = self._source(condition)
            if condition.kind not in (CursorKind.BINARY_OPERATOR, CursorKind.VAR_DECL) and not text.startswith(b"!"):
                self._choose(condition, "condition", b"!(" + text + b")")

    def _operator(self, cursor, left, right):
        operator = self._plain[left.extent.end.offset:right.extent.start.offset]
        between = operator.strip().strip(b"()").strip().decode()
        if between not in _OPERATORS:
            return
        at = left.extent.end.offset + operator.index(between.encode())
        changed = (self._plain[cursor.extent.start.offset:at] + _OPERATORS[between].encode() +
                   self._plain[at + len(between):cursor.extent.end.offset])
        kind = "comparison" if between in _COMPARISONS else "condition" if between in ("&&", "||") else "arithmetic"
        self._choose(cursor, kind, changed)

    def _constant(self, cursor):
        """A use of what is fixed elsewhere in the product: its table has to stay a constant while compiling."""
        meant = cursor.referenced
        if meant is None or meant.kind != CursorKind.VAR_DECL or not re.fullmatch(r"k[A-Z0-9]\w*", meant.spelling):
            return
        if self._source(cursor).decode() != meant.spelling:
            return
        if self._with_tables and meant.location.file.name == self._path:
            return  # changed where it stands
        kind, name = meant.type.get_canonical(), self._source(cursor)
        if kind.kind == TypeKind.OBJCOBJECTPOINTER and "NSString" in meant.type.spelling:
            self._choose(cursor, "text", b"[" + name + b' stringByAppendingString:@"~"]')
        elif kind.kind == TypeKind.POINTER and kind.get_pointee().kind in (TypeKind.CHAR_S, TypeKind.WCHAR):
            self._choose(cursor, "text", b'"~"' if kind.get_pointee().kind == TypeKind.CHAR_S else b'L"~"')
        elif kind.kind in _INTEGERS:
            self._choose(cursor, "constant", name + b" + 1")

    def _words(self, body):
        start, end = body.extent.start.offset, body.extent.end.offset
        for found in _TOKEN.finditer(self._plain[start:end].decode("latin-1")):
            if found[0] in _WORDS:
                self._place(start + found.start(), start + found.end(), "constant", _WORDS[found[0]].encode(),
                            found[0], _WORDS[found[0]])

    def _statements(self, block, parent):
        statements = list(block.get_children())
        is_function = parent is None or not parent.kind.is_statement()
        swapped = -1
        for index, statement in enumerate(statements):
            early = statement.kind == CursorKind.RETURN_STMT and not (is_function and index == len(statements) - 1)
            if early or self._can_go(statement):
                start, end = statement.extent.start.offset, statement.extent.end.offset
                self._place(start, end, "missing line", b"", self._shown(start, end), "",
                            lambda number, text: f"if (!IsMutant({number})) {text}")
            after = statements[index + 1] if index + 1 < len(statements) else None
            if after is not None and index > swapped and self._is_call(statement) and self._is_call(after):
                self._swap(statement, after)
                swapped = index + 1

    def _can_go(self, statement):
        text = self._source(statement)
        return statement.kind in _EXPRESSIONS and text and not _OF_MEMORY.match(text.decode())

    def _is_call(self, statement):
        """Whether somebody outside may see when it happens; values are given to places that do not know each other."""
        if not self._can_go(statement):
            return False
        while statement.kind == CursorKind.UNEXPOSED_EXPR:  # temporaries that it leaves
            statement = next(statement.get_children())
        return statement.kind in _CALLS and not statement.spelling.startswith("operator")

    def _swap(self, first, second):
        start, end = first.extent.start.offset, second.extent.end.offset
        one, two = self._flat(self._source(first)), self._flat(self._source(second))
        self._place(start, end, "order", b"", f"{self._shown(start, end)}", f"{two}; {one};",
                    lambda number, text: f"if (IsMutant({number})) {{ {two}; {one}; }} else {{ {text}; }}")

    def _source(self, cursor):
        """The text of it, where it stands in this file itself."""
        if not cursor.extent.start.file or cursor.extent.start.file.name != self._path:
            return b""
        return self._plain[cursor.extent.start.offset:cursor.extent.end.offset]

    @staticmethod
    def _flat(text):
        """In one line, so that lines keep their numbers."""
        return " ".join(text.decode().split("\n"))

    def _shown(self, start, end):
        return " ".join(self._plain[start:end].decode().split())

    def _choose(self, cursor, kind, changed, before=None, after=None):
        if self._source(cursor):
            self._place(cursor.extent.start.offset, cursor.extent.end.offset, kind, changed, before, after)

    def _place(self, start, end, kind, changed, before=None, after=None, wrap=None):
        flat = self._flat(changed)
        wrap = wrap or (lambda number, text: f"(IsMutant({number}) ? ({flat}) : ({text}))")
        self._places.append(_Place(start, end, kind, before if before is not None else self._shown(start, end),
                                   after if after is not None else " ".join(flat.split()), wrap))

    # ---- making the text

    def _drop_what_overlaps(self):
        """Places lie in each other or apart; of one place and one kind there is one."""
        outermost = {"order": 0, "missing line": 1}
        places = sorted(self._places, key=lambda place: (place.start, -place.end, outermost.get(place.kind, 2)))
        kept, open_places, seen = [], [], set()
        for place in places:
            while open_places and open_places[-1].end <= place.start:
                open_places.pop()
            key = (place.start, place.end, place.kind, place.after)
            if key in seen or (open_places and place.end > open_places[-1].end):
                continue
            seen.add(key)
            kept.append(place)
            open_places.append(place)
        self._places = kept

    def _drop_what_does_not_compile(self):
        while True:
            text = _DECLARED + self._numbered()
            wrong = set()
            for problem in self._parse(text).diagnostics:
                if problem.severity >= Diagnostic.Error:
                    wrong.add(self._to_blame(text.encode(), problem))
            if not wrong:
                return
            self._places = [place for place in self._places if place.number not in wrong]

    def _to_blame(self, text, problem):
        """The number nearest to what clang complains about: before it in its line, behind it, in an earlier line."""
        at = problem.location.offset
        start, end = text.rfind(b"\n", 0, at) + 1, text.find(b"\n", at)
        for piece, index in ((text[start:at], -1), (text[at:end], 0), (text[:start], -1)):
            numbers = re.findall(rb"IsMutant\((\d+)\)", piece)
            if numbers:
                return int(numbers[index])
        raise ValueError(f"{self._path}: {problem.spelling}")

    def _rendered(self, start, end, places):
        pieces, at, index = [], start, 0
        while index < len(places):
            place = places[index]
            behind = index + 1
            while behind < len(places) and places[behind].start < place.end:
                behind += 1
            pieces.append(self._bytes[at:place.start].decode())
            pieces.append(place.wrap(place.number, self._rendered(place.start, place.end, places[index + 1:behind])))
            at, index = place.end, behind
        pieces.append(self._bytes[at:end].decode())
        return "".join(pieces)


def _without_comments(text):
    """Blanks in the place of comments; every byte stays where it is."""
    def blank(found):
        if not found[0].startswith("/"):
            return found[0]
        return "".join(char if char == "\n" else " " * len(char.encode()) for char in found[0])

    return _TOKEN.sub(blank, text)
