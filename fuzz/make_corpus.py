#!/usr/bin/env python3
"""Chooses the seeds in fuzz/corpus/<name>: fuzzes for a while, starting from
the seeds there are, and keeps the few inputs that added most to what is reached.

Usage: fuzz/make_corpus.py NAME [--seconds N] [--most N]
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def added_features(control_file):
    """Maps each input to how many features the merge, which takes the inputs
    by size, saw it reach first."""
    lines = control_file.read_text().splitlines()
    count = int(lines[0])
    names = lines[2 : 2 + count]
    added = dict.fromkeys(names, 0)
    for line in lines[2 + count :]:
        match = re.match(r"FT (\d+) ?(.*)", line)
        if match:
            added[names[int(match[1])]] = len(match[2].split())
    return added


def most_telling(added, most):
    chosen = sorted(added, key=added.get, reverse=True)[:most]
    chosen = [name for name in chosen if added[name]]
    print(f"{len(chosen)} of {len(added)} inputs reach "
          f"{sum(added[name] for name in chosen)} of {sum(added.values())} features")
    return chosen


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("name")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--most", type=int, default=60)
    options = parser.parse_args()

    target = ROOT / "build/fuzz/fuzz" / f"{options.name}_fuzz"
    if not target.exists():
        sys.exit(f"{target} is not built: cmake --preset fuzz, then build it")
    corpus = ROOT / "fuzz/corpus" / options.name
    corpus.mkdir(parents=True, exist_ok=True)

    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        found, merged = work / "found", work / "merged"
        found.mkdir()
        merged.mkdir()
        run = lambda *arguments: subprocess.run(
            [target, *arguments], cwd=work, check=True, stderr=subprocess.DEVNULL)
        run(f"-max_total_time={options.seconds}", "-max_len=400", found, corpus)
        run("-merge=1", f"-merge_control_file={work / 'control'}", merged, found, corpus)
        chosen = most_telling(added_features(work / "control"), options.most)
        contents = [pathlib.Path(name).read_bytes() for name in chosen]
        shutil.rmtree(corpus)
        corpus.mkdir()
        for number, content in enumerate(contents):
            (corpus / f"{number:02}").write_bytes(content)


if __name__ == "__main__":
    main()
