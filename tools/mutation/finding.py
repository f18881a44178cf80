"""Finds the faults that can be planted in a source, by clang's own reading of it."""

import re

from clang.cindex import CursorKind, Index

from faults import BYTES, Change, Fault, shown

NUMBER = re.compile(r"(0[xX][0-9a-fA-F']+|0[bB][01']+|[0-9][0-9']*)([uUlLzZ]*)")
FRACTION = re.compile(r"[0-9']*\.[0-9]+[fFlL]?")
LETTER = re.compile(r"'(\\.|[^\\'])'")
TEXT = re.compile(r'(u8|u|U|L)?"')

NEIGHBOURS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
QUESTIONS = ("==", "!=", "&&", "||")

# Calls that only save time, or that only the compiler hears.
IDLE_CALLS = {"reserve", "shrink_to_fit"}

FUNCTIONS = {
    CursorKind.FUNCTION_DECL,
    CursorKind.CXX_METHOD,
    CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION,
    CursorKind.FUNCTION_TEMPLATE,
}
VARIABLES = {CursorKind.VAR_DECL, CursorKind.FIELD_DECL}
CLASSES = {
    CursorKind.CLASS_DECL,
    CursorKind.STRUCT_DECL,
    CursorKind.CLASS_TEMPLATE,
    CursorKind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION,
}
# What these hold is settled by the compiler.
SETTLED = {CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.TYPE_ALIAS_DECL, CursorKind.ALIGNED_ATTR}
LOOPS = {CursorKind.WHILE_STMT, CursorKind.DO_STMT, CursorKind.FOR_STMT, CursorKind.CXX_FOR_RANGE_STMT}


def faults_of(paths, arguments):
    """All faults of these sources, in their order: of one .cpp file, or of any number of headers. `paths` maps a source's
    path to its name in the tree."""
    finders = {str(path): Finder(path.read_text(BYTES), name) for path, name in paths.items()}
    for cursor in _unit(list(finders), arguments).cursor.get_children():
        file = cursor.location.file
        if file is not None and file.name in finders:
            finders[file.name].walk(cursor)
    return [fault for finder in finders.values() for fault in finder.faults]


def _unit(paths, arguments):
    """Headers are read together, from a source that includes them, since most of what they cost is what they share."""
    arguments = [*arguments, "-ferror-limit=0"]
    if len(paths) == 1 and paths[0].endswith(".cpp"):
        return Index.create().parse(paths[0], args=arguments)
    includes = "".join(f'#include "{path}"\n' for path in paths)
    return Index.create().parse("headers.cpp", args=arguments, unsaved_files=[("headers.cpp", includes)])


def bare(cursor):
    """The expression itself, without the conversions that the compiler wraps around it."""
    while cursor.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR):
        inner = list(cursor.get_children())
        if len(inner) != 1 or (cursor.kind == CursorKind.UNEXPOSED_EXPR and range_of(inner[0]) != range_of(cursor)):
            break
        cursor = inner[0]
    return cursor


def range_of(cursor):
    return cursor.extent.start.offset, cursor.extent.end.offset


class Finder:
    """Walks over one source and gathers its faults. Each letter of the source is a byte, since clang counts in bytes."""

    def __init__(self, source, name):
        self.source = source
        self.name = name
        self.faults = []
        self.places = []
        self.loosenings = []
        self.negated = set()
        self.counts = {}

    # --- the walk

    def walk(self, cursor):
        if cursor.kind in SETTLED or self._is_settled(cursor):
            return
        named = cursor.kind in FUNCTIONS or cursor.kind in CLASSES or (cursor.kind in VARIABLES and not self._inside_function())
        if named:
            self.places.append(cursor)
        loosened = self._loosening(cursor)
        self.loosenings += loosened
        self._plant(cursor)
        for child in self._living_children(cursor):
            self.walk(child)
        if loosened:
            self.loosenings.pop()
        if named:
            self.places.pop()

    def _plant(self, cursor):
        kind = cursor.kind
        if kind == CursorKind.COMPOUND_STMT:
            self._statements(list(cursor.get_children()))
        elif kind in (CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR) or kind in LOOPS:
            self._branch(cursor)
        elif kind in (CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            self._drop(list(cursor.get_children())[-1])
        elif kind == CursorKind.RETURN_STMT:
            self._returned(cursor)
        elif kind in (CursorKind.BINARY_OPERATOR, CursorKind.CALL_EXPR):
            self._comparison(cursor)
        elif kind == CursorKind.DECL_REF_EXPR:
            self._enumerator(cursor)
        else:
            self._literal(cursor)

    def _living_children(self, cursor):
        """The children that are read when the program runs."""
        children = list(cursor.get_children())
        if cursor.kind == CursorKind.CASE_STMT:
            return children[1:]
        if cursor.kind in VARIABLES or cursor.kind == CursorKind.PARM_DECL:
            return [child for child in children if child.extent.start.offset > cursor.location.offset]
        return children

    def _inside_function(self):
        return any(place.kind in FUNCTIONS for place in self.places)

    def _is_settled(self, cursor):
        """Whether this is a number in a type, such as the bound of an array."""
        if not cursor.kind.is_expression():
            return False
        start, end = range_of(cursor)
        before, after = self.source[start - 1 : start], self.source[end : end + 1]
        in_type = before == "<" or (after == ">" and self.source[end : end + 2] != "> ")
        bound = before == "[" and self.places and self.places[-1].kind in VARIABLES
        return in_type or bool(bound)

    # --- what can be wrong

    def _statements(self, statements):
        for statement in statements:
            self._drop(statement)
        for first, second in zip(statements, statements[1:]):
            self._swap(first, second)

    def _drop(self, statement):
        if self._is_act(statement):
            self._add(f"dropped `{shown(self._text(statement))}`", [self._change(statement, "", "act")])

    def _swap(self, first, second):
        """Two assignments in a row may come in any order, so one of the two must call something."""
        if not (self._is_act(first) and self._is_act(second) and (self._calls(first) or self._calls(second))):
            return
        one, other = self._text(first), self._text(second)
        if one != other:
            changes = [self._change(first, other, "act"), self._change(second, one, "act")]
            self._add(f"swapped `{shown(one)}` and `{shown(other)}`", changes)

    def _is_act(self, statement):
        if not statement.kind.is_expression():
            return False
        inner = bare(statement)
        return inner.kind != CursorKind.CXX_THROW_EXPR and inner.spelling not in IDLE_CALLS

    @staticmethod
    def _calls(statement):
        inner = bare(statement)
        return inner.kind == CursorKind.CALL_EXPR and not inner.spelling.startswith("operator")

    def _branch(self, cursor):
        children = list(cursor.get_children())
        condition = self._condition(cursor, children)
        if condition is not None:
            self._negate(condition)
        if cursor.kind != CursorKind.CONDITIONAL_OPERATOR:
            for child in children:
                if child is not condition and self._stands_alone(child, condition):
                    self._drop(child)

    def _stands_alone(self, child, condition):
        """Whether this part of a branch or loop is one of its statements."""
        after = self.source[child.extent.end.offset :].lstrip()[:1]
        return after == ";" and (condition is None or child.extent.start.offset > condition.extent.end.offset)

    def _condition(self, cursor, children):
        """What is asked there, unless the question declares something or is settled by the compiler."""
        text = self._text(cursor)
        if any(child.kind == CursorKind.VAR_DECL for child in children) or re.match(r"if\s+constexpr", text):
            return None
        if cursor.kind == CursorKind.CXX_FOR_RANGE_STMT:
            return None
        if cursor.kind == CursorKind.FOR_STMT:
            return next((child for child in children if self._is_second_of_for(child)), None)
        if cursor.kind == CursorKind.DO_STMT:
            return children[-1]
        return next((child for child in children if child.kind.is_expression()), None)

    def _is_second_of_for(self, child):
        start, end = range_of(child)
        return (
            child.kind.is_expression()
            and self.source[:start].rstrip().endswith(";")
            and self.source[end:].lstrip().startswith(";")
        )

    def _returned(self, cursor):
        for value in cursor.get_children():
            if value.type.spelling == "bool" and bare(value).kind != CursorKind.CXX_BOOL_LITERAL_EXPR:
                self._negate(value)

    def _negate(self, condition):
        """Each part of an "and" or "or" by itself."""
        inner = bare(condition)
        parts = list(inner.get_children())
        if inner.kind == CursorKind.BINARY_OPERATOR and self._operator(parts) in ("&&", "||"):
            for part in parts:
                self._negate(part)
        elif range_of(inner) not in self.negated and inner.kind != CursorKind.CXX_BOOL_LITERAL_EXPR:
            self.negated.add(range_of(inner))
            self._negate_whole(inner)

    def _negate_whole(self, inner):
        """Clang gives some questions that it has turned around no text."""
        text = self._text(inner)
        if text:
            self._add(f"negated `{shown(text)}`", [self._change(inner, f"!({text})", "truth")])

    def _comparison(self, cursor):
        parts = list(cursor.get_children())
        if cursor.kind == CursorKind.BINARY_OPERATOR:
            sign = self._operator(parts)
            if sign in NEIGHBOURS:
                self._neighbour(cursor, parts, sign)
            elif sign in QUESTIONS:
                self._negate(cursor)
        elif cursor.spelling in ("operator==", "operator!="):
            self._negate(cursor)

    def _neighbour(self, cursor, parts, sign):
        text = f"{self._text(parts[0])} {NEIGHBOURS[sign]} {self._text(parts[1])}"
        self._add(f"`{shown(self._text(cursor))}` with `{NEIGHBOURS[sign]}`", [self._change(cursor, text, "value")])

    def _operator(self, parts):
        if len(parts) != 2:
            return ""
        between = self.source[parts[0].extent.end.offset : parts[1].extent.start.offset]
        return between.strip()

    def _enumerator(self, cursor):
        constant = cursor.referenced
        text = self._text(cursor)
        if constant is None or constant.kind != CursorKind.ENUM_CONSTANT_DECL or not text.endswith(constant.spelling):
            return
        others = [c for c in constant.semantic_parent.get_children() if c.enum_value != constant.enum_value]
        later = [c for c in others if c.enum_value > constant.enum_value] or others
        if later:
            self._constant(cursor, text[: len(text) - len(constant.spelling)] + later[0].spelling)

    def _literal(self, cursor):
        text = self._text(cursor)
        if cursor.kind == CursorKind.INTEGER_LITERAL and (match := NUMBER.fullmatch(text)):
            self._constant(cursor, str(int(match[1].replace("'", ""), 0 if len(match[1]) > 1 and match[1][1] in "xXbB" else 10) + 1) + match[2])
        elif cursor.kind == CursorKind.FLOATING_LITERAL and FRACTION.fullmatch(text):
            self._constant(cursor, f"1 + {text}")
        elif cursor.kind == CursorKind.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            self._constant(cursor, "false" if text == "true" else "true")
        elif cursor.kind == CursorKind.CHARACTER_LITERAL and (match := LETTER.fullmatch(text)):
            self._constant(cursor, f"'{chr(ord(match[1]) + 1)}'" if match[1].isalnum() else "'~'")
        elif cursor.kind == CursorKind.STRING_LITERAL and (match := TEXT.match(text)):
            self._constant(cursor, text[: match.end()] + "~" + text[match.end() :])

    def _constant(self, cursor, text):
        self._add(f"`{shown(self._text(cursor))}` -> `{shown(text)}`", [self._change(cursor, text, "value")])

    # --- how it is noted down

    def _loosening(self, cursor):
        """What is computed by the compiler can be computed at the start of the program as well."""
        if cursor.kind not in VARIABLES and cursor.kind not in FUNCTIONS:
            return []
        head = self.source[cursor.extent.start.offset : cursor.location.offset]
        match = re.search(r"\bconstexpr\b", head)
        if match is None:
            return []
        of_class = any(place.kind in CLASSES for place in self.places[:-1]) and not self._inside_function()
        word = "const" if cursor.kind in VARIABLES else "inline"
        at = cursor.extent.start.offset + match.start()
        return [Change(at, at + len("constexpr"), f"inline {word}" if of_class and word == "const" else word, "text")]

    def _names(self):
        """The places around, with the class of a member that is written outside of it."""
        for outer, place in zip([None, *self.places], self.places):
            if place.kind in FUNCTIONS and outer is None and place.semantic_parent.kind in CLASSES:
                yield place.semantic_parent.spelling
            yield place.spelling

    def _text(self, cursor):
        start, end = range_of(cursor)
        return self.source[start:end]

    def _change(self, cursor, text, form):
        return Change(*range_of(cursor), text, form)

    def _add(self, what, changes):
        place = "::".join(self._names()) or "file"
        nth = self.counts[place, what] = self.counts.get((place, what), 0) + 1
        first = self.source.count("\n", 0, min(change.start for change in changes)) + 1
        last = self.source.count("\n", 0, max(change.end for change in changes)) + 1
        self.faults.append(Fault(self.name, place, what, nth, (first, last), tuple(changes), tuple(self.loosenings)))
