"""Plants faults in the sources, one at a time, and says which of them no test notices."""

import argparse
import concurrent.futures
import json
import os
import pathlib
import sys

import faults as fault_lists
from cache import FaultCache
from suites import Suites
from tree import BuildFailed, Tree
from verdict import Accepted, table


def arguments():
    parser = argparse.ArgumentParser(prog="tools/mutate", description=__doc__)
    parser.add_argument("folder", nargs="*", help="folder or file below src, such as runtime, engines or shell/frmOpen.cpp; all without any")
    parser.add_argument("--sample", type=int, metavar="N", help="at most N faults of each folder, chosen by --seed")
    parser.add_argument("--seed", type=int, default=1, help="chooses the sample (1)")
    parser.add_argument("--match", default="", metavar="TEXT", help="only faults with this text in their names")
    parser.add_argument("--list", action="store_true", help="name the faults and plant none")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many tests run at once (all processors)")
    parser.add_argument("--tree", type=pathlib.Path, default=pathlib.Path(__file__).parents[2], help=argparse.SUPPRESS)
    return parser.parse_args()


def wanted_sources(tree, folders):
    """The sources of the folders, by their names in the tree."""
    wanted = [f"src/{folder.removeprefix('src/').rstrip('/')}" for folder in folders] or ["src"]
    names = sorted(str(path.relative_to(tree.root)) for path in (tree.root / "src").rglob("*") if path.suffix in (".cpp", ".h"))
    chosen = [name for name in names if any(name == folder or name.startswith(folder + "/") for folder in wanted)]
    if not chosen:
        sys.exit(f"tools/mutate: no source in {', '.join(wanted)}")
    return chosen


def say(words):
    print(words, flush=True)


def built(tree, chosen):
    """Those of the chosen faults that compile, by their numbers."""
    say(f"Mutate: building {len(chosen)} faults")
    standing = tree.build(dict(enumerate(chosen, 1)))
    say(f"Mutate: {len(chosen) - len(standing)} of them do not compile and are left out")
    return standing


def tried(tree, standing, accepted, jobs):
    """Tries each fault and names those that nothing notices; maps each to what noticed it."""
    suites = Suites(tree.built, jobs)
    results = {}
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        say(f"Mutate: measuring {len(suites.tests)} tests")
        suites.measure(pool, standing)
        for name in suites.broken:
            say(f"Mutate: fails without a fault, not asked: {name}")
        for program, *_ in suites.alone:
            say(f"Mutate: its tests do not run together: {program}")
        say(f"Mutate: trying {len(standing)} faults")
        for (number, fault), by in zip(standing.items(), pool.map(suites.noticed, standing)):
            results[fault] = by
            if by is None and fault not in accepted:
                where = "" if suites.reaching(number) else ", where no test comes by"
                say(f"unseen, line {fault.lines[0]}{where}\n{fault.name}")
    return results


def main():
    options = arguments()
    tree = Tree(options.tree.resolve())
    tree.configure()
    found = FaultCache(tree).faults_of(wanted_sources(tree, options.folder), options.jobs)
    matching = [fault for fault in found if options.match in fault.name]
    chosen = fault_lists.sample(matching, options.sample, options.seed)
    if options.list:
        for fault in chosen:
            say(f"{fault.lines[0]:4} {fault.name}")
        return
    accepted = Accepted(tree.root / "tools" / "mutate.accepted")
    for name in accepted.stale(found):
        say(f"Mutate: accepted, but there is no such fault: {name}")
    results = tried(tree, built(tree, chosen), accepted, options.jobs)
    say("\n" + table(results, accepted))
    noticed = {fault.name: by for fault, by in results.items()}
    (tree.work / "results.json").write_text(json.dumps(noticed, indent=1), encoding="utf-8")


if __name__ == "__main__":
    try:
        main()
    except BuildFailed as failure:
        sys.exit(f"{failure}\ntools/mutate: the build failed")
