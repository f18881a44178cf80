"""Keeps the faults of sources as long as they and those who find them stay what they are, since clang reads slowly."""

import concurrent.futures
import hashlib
import pathlib
import pickle

from finding import faults_of


class FaultCache:
    def __init__(self, tree):
        self.tree = tree
        self.folder = tree.work / "faults"
        here = pathlib.Path(__file__).parent
        self.finders = b"".join((here / name).read_bytes() for name in ("cache.py", "faults.py", "finding.py"))

    def faults_of(self, names, jobs):
        """All faults of these sources."""
        self.folder.mkdir(parents=True, exist_ok=True)
        with concurrent.futures.ProcessPoolExecutor(jobs) as pool:
            return [fault for faults in pool.map(self._together, _units(names)) for fault in faults]

    def _together(self, names):
        paths = {self.tree.root / name: name for name in names}
        content = b"".join(name.encode() + path.read_bytes() for path, name in paths.items())
        kept = self.folder / hashlib.sha256(self.finders + content).hexdigest()
        if kept.exists():
            return pickle.loads(kept.read_bytes())
        faults = faults_of(paths, self.tree.arguments(names[0]))
        kept.write_bytes(pickle.dumps(faults))
        return faults


def _units(names):
    """What is read together: each source by itself, the headers of a folder at once."""
    headers = {}
    for name in names:
        if name.endswith(".h"):
            headers.setdefault(name.rpartition("/")[0], []).append(name)
    return [[name] for name in names if name.endswith(".cpp")] + list(headers.values())
