"""The tests: which faults each of them comes by, and whether one of them notices a fault."""

import collections
import itertools
import json
import math
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import tempfile
import time

# Tests of the house say nothing about a fault in the program; the tour and the attacks are too slow to be asked.
NOT_ASKED = "attack|house|tour"

# What a test may take: this many times what it took without a fault, and this many seconds, of the processor's time and
# of the clock's. A hang is noticed; a busy machine, which costs the clock's time only, is none.
LONGER = 8
BUSY = 4
PATIENCE = 40

# Nobody knows yet how long a test takes, in seconds.
FIRST_RUN = 300

# The tests of one program run together as long as they last no longer than this, in seconds.
BATCH = 4


class Test:
    """A test as CTest knows it."""

    def __init__(self, row):
        properties = {entry["name"]: entry["value"] for entry in row.get("properties", [])}
        self.name = row["name"]
        self.program, *words = row["command"]
        self.names = list(itertools.takewhile(lambda word: not word.startswith("-"), words))
        self.options = words[len(self.names) :]
        self.environment = tuple(properties.get("ENVIRONMENT", []))
        self.folder = properties.get("WORKING_DIRECTORY", ".")
        self.seconds = 0.0
        self.reached = frozenset()


Outcome = collections.namedtuple("Outcome", "passed seconds reached", defaults=(frozenset(),))


class Suites:
    def __init__(self, built, jobs):
        self.tests = [Test(row) for row in _listed(built) if "command" in row]
        self.jobs = jobs
        self.broken = []
        self.alone = []

    def measure(self, pool, faults):
        """Runs each test by itself without a fault and notes what it comes by. A test that fails so is asked no more, and
        one of a program whose tests do not run together is run alone for good."""
        size = max(faults, default=0) + 1
        outcomes = list(pool.map(lambda test: _measured([test], size), self.tests))
        for test, outcome in zip(self.tests, outcomes):
            test.seconds, test.reached = outcome.seconds, outcome.reached
        self.broken = [test.name for test, outcome in zip(self.tests, outcomes) if not outcome.passed]
        self.tests = [test for test, outcome in zip(self.tests, outcomes) if outcome.passed and test.reached]
        programs = self._programs(self.tests)
        for program, together in zip(programs, pool.map(lambda tests: _run_together(tests, size), programs.values())):
            if not together:
                self.alone.append(program)

    def noticed(self, number):
        """The name of what noticed the fault, or None. The quickest tests come first."""
        for batch in self._batches(number):
            outcome = run(batch, {"MUTATION_FAULT": str(number)}, LONGER * sum(test.seconds for test in batch))
            if not outcome.passed:
                return batch[0].name if len(batch) == 1 else os.path.basename(batch[0].program)
        return None

    def reaching(self, number):
        return [test for test in self.tests if number in test.reached]

    @staticmethod
    def _programs(tests):
        """The tests by the program that they are, as it is called."""
        programs = collections.defaultdict(list)
        for test in tests:
            programs[test.program, test.environment, test.folder].append(test)
        return programs

    def _batches(self, number):
        """Tests of one program run in one process, the quickest of them in the first batch."""
        batches = []
        for program, tests in self._programs(self.reaching(number)).items():
            most = 0 if program in self.alone else BATCH
            batches += _cut(sorted(tests, key=lambda test: test.seconds), most)
        return sorted(batches, key=lambda batch: sum(test.seconds for test in batch))


def _measured(tests, size):
    """The outcome of a run without a fault, with the faults that it came by."""
    with tempfile.NamedTemporaryFile() as file:
        file.truncate(size)
        outcome = run(tests, {"MUTATION_REACHED": file.name}, FIRST_RUN)
        marks = pathlib.Path(file.name).read_bytes()
    return outcome._replace(reached=frozenset(number for number, mark in enumerate(marks) if mark))


def _run_together(tests, size):
    """Whether these tests pass in one process as well, and come by all that they come by alone."""
    outcome = _measured(tests, size)
    return outcome.passed and outcome.reached >= frozenset().union(*(test.reached for test in tests))


def _cut(tests, most):
    batch, seconds = [], 0
    for test in tests:
        if batch and seconds + test.seconds > most:
            yield batch
            batch, seconds = [], 0
        batch.append(test)
        seconds += test.seconds
    if batch:
        yield batch


def _listed(built):
    command = ["ctest", "--test-dir", str(built), "--show-only=json-v1", "-LE", NOT_ASKED]
    return json.loads(subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout)["tests"]


def run(tests, told, seconds):
    """Runs tests of one program in one process, in a temporary folder of their own. `seconds` is how long they may take, with
    some grace; who takes longer has failed."""
    scratch = tempfile.mkdtemp(prefix="mutate-")
    # Some tests act as another user, who must find his way in.
    os.chmod(scratch, 0o755)
    environment = {**os.environ, **dict(entry.split("=", 1) for entry in tests[0].environment), "TMPDIR": scratch, **told}
    # Catch2 takes names between commas for alternatives.
    command = [tests[0].program, *_joined([test.names for test in tests]), *tests[0].options]
    if len(tests) > 1:
        command.append("--abort")
    began = time.monotonic()
    try:
        status = _finished(command, environment, tests[0].folder, seconds)
    finally:
        shutil.rmtree(scratch, ignore_errors=True)
    return Outcome(status == 0, time.monotonic() - began)


def _joined(names):
    return names[0] if len(names) == 1 else [",".join(name for parts in names for name in parts)]


def _finished(command, environment, folder, seconds):
    """The exit status of the command; negative where it was ended."""

    def bounded():
        resource.setrlimit(resource.RLIMIT_CPU, (math.ceil(BUSY + seconds),) * 2)
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))

    with subprocess.Popen(
        command, env=environment, cwd=folder, start_new_session=True, preexec_fn=bounded,
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
    ) as process:
        try:
            process.wait(PATIENCE + seconds)
        except subprocess.TimeoutExpired:
            pass
        finally:
            _end(process.pid)
        return process.wait()


def _end(group):
    """Whoever the test left behind goes with it."""
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass
