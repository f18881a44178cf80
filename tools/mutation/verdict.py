"""What came of a run: the survivors, those of them that are accepted, and the score of each folder."""

import collections


class Accepted:
    """The faults that change nothing a user or another part can see. In the file each is its name, with the reason
    indented on the line below."""

    def __init__(self, path):
        self.reasons = {}
        name = None
        for line in path.read_text(encoding="utf-8").splitlines() if path.exists() else []:
            if not line.strip() or line.startswith("//"):
                continue
            if not line.startswith(" "):
                name = line
            elif name is not None:
                self.reasons[name] = line.strip()
                name = None

    def __contains__(self, fault):
        return fault.name in self.reasons

    def stale(self, faults):
        """The entries that speak of a file that was read, and of no fault in it."""
        names = {fault.name for fault in faults}
        files = {fault.file for fault in faults}
        return [name for name in self.reasons if name.partition(":")[0] in files and name not in names]


class Score:
    def __init__(self):
        self.faults = self.noticed = self.accepted = 0

    @property
    def unseen(self):
        return self.faults - self.noticed - self.accepted

    @property
    def percent(self):
        counted = self.faults - self.accepted
        return 100 * self.noticed / counted if counted else 100


def table(results, accepted):
    """One line for each folder and one for all. `results` maps each fault to who noticed it, or None. A fault that is
    accepted counts as such only where nothing noticed it."""
    scores = collections.defaultdict(Score)
    for fault, by in results.items():
        for score in (scores[fault.folder], scores["all"]):
            score.faults += 1
            score.noticed += by is not None
            score.accepted += by is None and fault in accepted
    lines = [f"{'folder':24}{'faults':>8}{'noticed':>9}{'accepted':>10}{'unseen':>8}{'score':>8}"]
    for folder in sorted(scores, key=lambda folder: (folder == "all", folder)):
        score = scores[folder]
        lines.append(
            f"{folder:24}{score.faults:8}{score.noticed:9}{score.accepted:10}{score.unseen:8}{score.percent:7.1f}%"
        )
    return "\n".join(lines)
