#!/usr/bin/python3
"""Measures each stage of the Windows program under Wine beside the same stage of the program for this system.

    windows.py                                      into bench/results/<processor>-<cores>-windows.csv and .md
    windows.py --kinds box --sizes 60000 --out /tmp/windows.csv

Both take turns, each in a new process. What the columns mean: bench/README.md. Python's standard library only.
"""
import argparse
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import scaling
from scaling import HERE, figure, markdown, say

KINDS = ["plate", "box", "ship"]
SIZES = [60000, 250000]
SYSTEMS = ["linux", "wine"]


class Bench:
    def __init__(self, options, results, scratch):
        self.repeats = options.repeats
        self.results = results
        self.scratch = Path(scratch)
        tarnvexo, self.generate = scaling.programs_of(options.build)
        windows = options.windows_build.resolve()
        program = windows / "tarnvexo.exe"
        if not program.exists():
            sys.exit(f"windows.py: error: {program} is missing\n  to do:    make windows")
        self.programs = {"linux": [tarnvexo], "wine": [HERE.parent / "cmake/windows/wine.sh", windows, program]}
        # Wine's desktop and services stay for a while: no run pays for their start.
        subprocess.run([*self.programs["wine"], "--version"], check=True, stdout=subprocess.DEVNULL)

    def turn(self, system, memory):
        """Wall seconds, and those of each stage."""
        program = self.programs[system]
        run = scaling.Run([*program, "solve", "model.txt", "-o", "out", "--json", "report.json", "--quiet"],
                          self.scratch, memory)
        report = json.loads((self.scratch / "report.json").read_text(encoding="utf-8"))
        shutil.rmtree(self.scratch / "out", ignore_errors=True)
        start = scaling.Run([*program, "--version"], self.scratch, 0)
        return {"wall": run.seconds, "start": start.seconds,
                **{stage["name"]: stage["seconds"] for stage in report["stages"]}}

    def model(self, kind, size):
        subprocess.run([self.generate, kind, str(size), self.scratch / "model.txt"], check=True,
                       stdout=subprocess.DEVNULL)
        info = scaling.output_of([*self.programs["linux"], "info", "model.txt", "--json", "-", "--quiet"], self.scratch)
        memory = info["expected"]["memory_gigabytes"] * (1 << 30)
        say(f"{kind} {size}: {info['model']['equations']} equations")
        turns = {system: [] for system in SYSTEMS}
        for repeat in range(self.repeats):
            for system in SYSTEMS:
                turns[system].append(self.turn(system, memory))
            say(f"  turn {repeat + 1} of {self.repeats}: " +
                ", ".join(f"{system} {turns[system][-1]['wall']:.2f} s" for system in SYSTEMS))
        for stage in turns["linux"][0]:
            for system in SYSTEMS:
                median = statistics.median(turn[stage] for turn in turns[system])
                self.results.add(system, kind, size, stage, median, "s")


def readable(results, heading):
    text = heading
    for kind, size in dict.fromkeys((row["kind"], row["size"]) for row in results.rows):
        rows = []
        for stage in [row["quantity"] for row in results.rows
                      if (row["program"], row["kind"], row["size"]) == ("linux", kind, size)]:
            linux, wine = (results.get(system, kind, size, stage) for system in SYSTEMS)
            rows.append([stage, *(f"{1e3 * seconds:.1f}" for seconds in (linux, wine)), figure(wine / linux)])
        text += f"\n## {kind}, {size:,} equations\n\n" + markdown(["stage", "Linux ms", "Wine ms", "ratio"], rows)
    return text


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--build", type=Path, default=HERE.parent / "build", help="build directory")
    parser.add_argument("--windows-build", type=Path, default=HERE.parent / "build-windows",
                        help="build directory of make windows")
    parser.add_argument("--kinds", nargs="+", choices=scaling.KINDS, default=KINDS, metavar="KIND",
                        help=" ".join(scaling.KINDS))
    parser.add_argument("--sizes", nargs="+", type=int, default=SIZES, metavar="EQUATIONS")
    parser.add_argument("--repeats", type=int, default=3, metavar="N", help="turns of each model")
    parser.add_argument("--out", type=Path, metavar="CSV", help="the readable table goes beside it, as .md")
    options = parser.parse_args()
    cores = len(os.sched_getaffinity(0))
    results = scaling.Results(options.out or HERE / "results" / f"{scaling.machine_name(cores)}-windows.csv")
    wine = subprocess.run(["wine", "--version"], capture_output=True, text=True, check=True).stdout.strip()
    heading = (f"# The Windows program under Wine beside the one for Linux, {scaling.processor()}, {cores} processors\n\n"
               f"{time.strftime('%Y-%m-%d')}, {wine}, load of the machine at the start {os.getloadavg()[0]:.1f}. "
               "How it was measured: bench/README.md.\n")
    with tempfile.TemporaryDirectory(prefix="tarnvexo-windows-") as scratch:
        scaling.measure_models(Bench(options, results, scratch), options, lambda: readable(results, heading))
    scaling.tell(results)


if __name__ == "__main__":
    main()
