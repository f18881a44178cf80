"""Writes sources that hold many faults, each of which sleeps until its number is called."""

import pathlib
import re

HEADER = pathlib.Path(__file__).with_name("planted.h")
COMMENT = re.compile(r'("(?:\\.|[^"\\])*")|//[^\n]*')

FORMS = {
    "text": "{faulty}",
    "act": "(::mutation::planted({number}) ? void({faulty}) : void({right}))",
    "truth": "(::mutation::planted({number}) ? static_cast<bool>({faulty}) : static_cast<bool>({right}))",
    "value": "(::mutation::planted({number}) ? ({faulty}) : ({right}))",
}


def planted_source(path, text, faults):
    """The source with all `faults` (number -> fault) in it. Lines keep their numbers, so that the compiler's words fit the
    source as it was written."""
    return f'#include "{HEADER}"\n#line 1 "{path}"\n' + _written(text, 0, len(text), _pieces(faults))


def _pieces(faults):
    """All changes with the number of their fault, outer ones before inner ones."""
    pieces = {(0, change) for fault in faults.values() for change in fault.loosenings}
    pieces |= {(number, change) for number, fault in faults.items() for change in fault.replacements}
    return sorted(pieces, key=lambda piece: (piece[1].start, -piece[1].end, piece[0]))


def _written(text, start, end, pieces):
    """The text from start to end with the pieces in it, all of which lie within these bounds."""
    out = []
    at = start
    while pieces:
        (number, change), *rest = pieces
        inside = next((n for n, (_, other) in enumerate(rest) if other.start >= change.end), len(rest))
        right = _written(text, change.start, change.end, rest[:inside])
        out.append(text[at : change.start])
        out.append(FORMS[change.form].format(number=number, faulty=_one_line(change.text), right=right))
        at, pieces = change.end, rest[inside:]
    return "".join(out) + text[at:end]


def _one_line(text):
    return COMMENT.sub(lambda match: match[1] or "", text).replace("\n", " ")
