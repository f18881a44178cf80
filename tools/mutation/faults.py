"""What a fault is: text of a source that reads otherwise."""

import dataclasses
import hashlib

LONGEST_SHOWN = 70

# Sources are read so that each letter is a byte, as the compiler counts.
BYTES = "latin-1"


@dataclasses.dataclass(frozen=True)
class Change:
    """The text from `start` to `end` reads `text`. `form` says what stands there, and so how the change can sleep until
    it is wanted: a "value", a "truth" (asked for yes or no), an "act" (a statement whose value nobody takes). A "text"
    cannot sleep: it changes for good, which makes room for the others and alters nothing."""

    start: int
    end: int
    text: str
    form: str


@dataclasses.dataclass(frozen=True)
class Fault:
    """One fault. `file` is relative to the tree, `function` is where it stands, `change` says what reads how; with `nth`,
    for equal ones in one function, these are its name, which outlives lines that come or go above it."""

    file: str
    function: str
    change: str
    nth: int
    lines: tuple[int, int]
    replacements: tuple[Change, ...]
    loosenings: tuple[Change, ...] = ()

    @property
    def folder(self):
        return self.file.rpartition("/")[0]

    @property
    def name(self):
        again = f" #{self.nth}" if self.nth > 1 else ""
        return f"{self.file}: {self.function}: {self.change}{again}"

    def rank(self, seed):
        """The smallest ranks of a folder are its sample. A rank hangs on nothing but the name, so that a sample stays what
        it was where the code does."""
        return hashlib.sha256(f"{seed} {self.name}".encode()).hexdigest()


def shown(text):
    """A piece of source in one line of bearable length."""
    line = " ".join(text.encode(BYTES).decode(errors="replace").split())
    return line if len(line) <= LONGEST_SHOWN else line[: LONGEST_SHOWN - 3] + "..."


def sample(faults, count, seed):
    """At most `count` faults of each folder; all of them where `count` is None."""
    by_folder = {}
    for fault in faults:
        by_folder.setdefault(fault.folder, []).append(fault)
    chosen = []
    for folder in by_folder.values():
        chosen += sorted(folder, key=lambda fault: fault.rank(seed))[:count]
    return sorted(chosen, key=lambda fault: (fault.file, fault.lines, fault.name))
