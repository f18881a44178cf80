"""The copy of the tree in which the faults are planted, and its build."""

import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess

from faults import BYTES
from planting import planted_source

LEFT_OUT = {"build", ".git", "tour-out", "__pycache__"}
PLACE = re.compile(r"^(/[^:\n]+):(\d+)[:,]", re.MULTILINE)

# Warnings would speak of the way in which faults are planted.
FLAGS = "-O1 -w -fpermissive"


class BuildFailed(Exception):
    pass


class Tree:
    """`root` is the tree as it was written; `copy` and `built` belong to the tool."""

    def __init__(self, root):
        self.root = root
        self.work = root / "build" / "mutate"
        self.copy = self.work / "tree"
        self.built = self.work / "built"

    def configure(self):
        """Brings the copy to where the tree is, without any fault, and lets CMake say how each source is compiled."""
        self.write({})
        command = ["cmake", "-S", self.copy, "-B", self.built, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=", f"-DCMAKE_CXX_FLAGS={FLAGS}"]
        self._run([*command, "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"])

    def write(self, faults):
        """Writes the copy with these faults (number -> fault) in it. A file that stays as it is keeps its time."""
        by_file = {}
        for number, fault in faults.items():
            by_file.setdefault(fault.file, {})[number] = fault
        names = set(self._files())
        for name in names:
            content = (self.root / name).read_bytes()
            if name in by_file:
                text = content.decode(BYTES)
                content = planted_source(self.root / name, text, by_file[name]).encode(BYTES)
            self._put(name, content)
        for path in self.copy.rglob("*"):
            if not path.is_dir() and str(path.relative_to(self.copy)) not in names:
                path.unlink()

    def build(self, faults):
        """Builds the copy with these faults, and again without those that do not compile. Returns those that stand."""
        while True:
            self.write(faults)
            result = self._ninja()
            if result.returncode == 0:
                return faults
            bad = blamed(result.stdout, faults, self.root)
            if not bad:
                raise BuildFailed(result.stdout[-8000:])
            faults = {number: fault for number, fault in faults.items() if number not in bad}

    def arguments(self, name):
        """What the compiler is told for this source; a header is read as a source of its folder, or of any, is."""
        rows = self._commands()
        own = str(self.copy / name)
        folder = os.path.dirname(own) + "/"
        row = rows.get(own) or next((row for file, row in rows.items() if file.startswith(folder)), next(iter(rows.values())))
        words = shlex.split(row["command"])
        told = [word for at, word in enumerate(words) if word.startswith(("-I", "-D", "-std")) or words[at - 1] == "-isystem"]
        told = [f"-isystem{word}" if word.startswith("/") else word for word in told]
        return ["-xc++", *(word.replace(str(self.copy), str(self.root)) for word in told)]

    def _commands(self):
        with open(self.built / "compile_commands.json", encoding="utf-8") as file:
            return {row["file"]: row for row in json.load(file)}

    def _files(self):
        for folder, folders, files in os.walk(self.root):
            folders[:] = [name for name in folders if name not in LEFT_OUT]
            for name in files:
                yield os.path.relpath(os.path.join(folder, name), self.root)

    def _put(self, name, content):
        path = self.copy / name
        if path.exists() and path.read_bytes() == content:
            return
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        shutil.copymode(self.root / name, path)

    def _ninja(self):
        command = ["cmake", "--build", str(self.built), "--", "-k", "0"]
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace", check=False)

    @staticmethod
    def _run(command):
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        if result.returncode != 0:
            raise BuildFailed(result.stdout[-8000:])


def blamed(words, faults, root):
    """The numbers of the faults that the compiler's words point at: those on a line that it names, else all of a file that
    it names."""
    lines = {(str(pathlib.Path(file)), int(line)) for file, line in PLACE.findall(words)}
    files = {file for file, _ in lines}
    on_lines = {
        number
        for number, fault in faults.items()
        if any((str(root / fault.file), line) in lines for line in range(fault.lines[0], fault.lines[1] + 1))
    }
    return on_lines or {number for number, fault in faults.items() if str(root / fault.file) in files}
