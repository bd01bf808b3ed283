#!/usr/bin/python3
"""Measures the factorisation of tarnvexo beside CHOLMOD's, MUMPS's and the machine's own rates, all in one run.

    factorisation.py                                into bench/results/<processor>-<cores>-factorisation.csv and .md
    factorisation.py --kinds plate --sizes 60000 250000 --out /tmp/factorisation.csv

What is measured, how, and what the columns mean: bench/README.md. Python's standard library only.
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
from scaling import GIGA, figure, markdown, say

KINDS = ["plate", "box"]
SIZES = [60000, 250000, 600000, 1200000]
LARGE = 1000000                 # equations from which on a model is measured 3 times instead of 5
TRIAD_MEMORY = 1.6 * GIGA       # of machine_rates
STAGES = scaling.SOLVER_STAGES
MUMPS = {"mumps": "MUMPS, threads", "mumps_mpi": "MUMPS, processes"}

# Targets: size -> limit.
OVER_CHOLMOD = {60000: 2.2, 250000: 2.0, 600000: 1.8, 1200000: 1.8}     # times as fast, at least
SHARE_OF_PRODUCT = {60000: 30, 250000: 42, 600000: 45, 1200000: 50}     # % of DGEMM's rate, at least
WHOLE_RUN = {250000: 0.65, 600000: 0.65, 1200000: 0.65}                 # of CHOLMOD's four stages, less than
ANALYSIS = {600000: 0.15}                                               # seconds, at most
PER_CORE = 0.9                  # rate of each core when all work, of that of one alone, at least


class Program:
    """One of the programs that take turns: its figures of every turn and the memory that it needs."""

    def __init__(self, command, memory, prints_figures=True):
        self.command = command
        self.memory = memory
        self.prints_figures = prints_figures
        self.figures = []

    def turn(self, directory):
        output = Path(directory) / "stdout.txt"
        with open(output, "wb") as file:
            run = scaling.Run(self.command, directory, self.memory, output=file)
        figures = json.loads(output.read_text(encoding="utf-8")) if self.prints_figures else {}
        figures["wall"] = run.seconds
        self.memory = max(self.memory, run.peak)
        self.figures.append(figures)
        return figures

    def median(self, *quantities):
        """Of the sum of these quantities."""
        return statistics.median(sum(figures[quantity] for quantity in quantities) for figures in self.figures)


class Bench:
    def __init__(self, options, results, scratch):
        self.options = options
        self.results = results
        self.scratch = Path(scratch)
        self.cores = len(os.sched_getaffinity(0))
        self.tarnvexo, self.generate, self.machine_rates, self.cholmod_alone, self.engine_rates = scaling.programs_of(
            options.build, "bench/machine_rates", "bench/cholmod_alone", "bench/engine_rates")
        build = options.build.resolve()
        self.mumps = {}
        if options.mumps:
            mpirun = ["mpirun", "-np", self.cores, "--allow-run-as-root", "--oversubscribe", "--bind-to", "none"]
            for name, before, processes in [("mumps_alone", [], 1), ("mumps_alone_mpi", mpirun, self.cores)]:
                if (build / "bench" / name).exists() and (not before or shutil.which(before[0])):
                    self.mumps[name.replace("_alone", "")] = ([*before, build / "bench" / name], processes)
                else:
                    say(f"no {name} (packages libmumps-seq-dev, libmumps-dev; then build it): left out")

    def model(self, kind, size):
        model = self.scratch / f"{kind}-{size}.txt"
        subprocess.run([self.generate, kind, str(size), model], check=True, stdout=subprocess.DEVNULL)
        info = scaling.output_of([self.tarnvexo, "info", model, "--json", "-", "--quiet"], self.scratch)
        memory = info["expected"]["memory_gigabytes"] * (1 << 30)
        say(f"{kind} {size}: {info['model']['equations']} equations, {memory / GIGA:.1f} GB expected")
        if 2.0 * memory > 0.9 * scaling.available_memory():
            say("  left out: too large for the memory of this machine")
        else:
            programs = self.programs(model, memory)
            repeats = self.options.repeats or (3 if size >= LARGE else 5)
            for turn in range(repeats):
                for program in programs.values():
                    program.turn(self.scratch)
                    shutil.rmtree(self.scratch / "out", ignore_errors=True)
                say(f"  turn {turn + 1} of {repeats}: " +
                    ", ".join(f"{name} {figures[quantity]:.3f} s" for name, figures, quantity in [
                        ("factorise", programs["engine"].figures[-1], "first_factorise"),
                        ("CHOLMOD", programs["cholmod"].figures[-1], "factorise"),
                        ("whole run", programs["solve"].figures[-1], "wall")]))
            # CHOLMOD's better setting is the one that counts.
            small_pages = programs.pop("cholmod_small_pages")
            programs["cholmod"] = min(programs["cholmod"], small_pages, key=lambda program: program.median(*STAGES))
            self.add_figures(kind, size, programs)
        model.unlink()

    def programs(self, model, memory):
        programs = {
            "machine": Program([self.machine_rates, "all-threads"], TRIAD_MEMORY),
            "cholmod": Program([self.cholmod_alone, model], memory),
            "cholmod_small_pages": Program([self.cholmod_alone, model, "small-pages"], memory),
            "engine": Program([self.engine_rates, model, "sparse", self.cores, 1], memory),
            "one_thread": Program([self.engine_rates, model, "sparse", 1, 1], memory),
        }
        ordering = []  # all, until the first has found the best one
        for name, (command, processes) in self.mumps.items():
            threads = self.cores // processes
            trial = Program([*command, model, threads, *ordering], 2.0 * memory)
            ordering = [trial.turn(self.scratch)["ordering"]]
            programs[name] = Program([*command, model, threads, *ordering], processes * trial.memory)
        programs["solve"] = Program([self.tarnvexo, "solve", model, "-o", "out", "--quiet"], memory,
                                    prints_figures=False)
        return programs

    def add_figures(self, kind, size, programs):
        add = lambda program, *row, **more: self.results.add(program, kind, size, *row, **more)
        engine, cholmod, machine = programs["engine"], programs["cholmod"], programs["machine"]
        product = machine.median("dgemm_all_threads")
        triad = machine.median("triad_all_threads")
        add("machine", "dgemm_all_threads", product / GIGA, "Gop/s")
        add("machine", "triad_all_threads", triad / GIGA, "GB/s")

        first = engine.figures[0]
        seconds = engine.median("first_factorise")
        add("engine", "equations", first["equations"], "")
        add("engine", "ordering", first["ordering"], "")
        add("engine", "turns", len(engine.figures), "")
        add("engine", "operations", first["exact_operations"] / GIGA, "Gop")
        add("engine", "factorise", seconds, "s")
        add("engine", "factorise_least", min(one["first_factorise"] for one in engine.figures), "s")
        add("engine", "factorise_most", max(one["first_factorise"] for one in engine.figures), "s")
        add("engine", "share_of_product", 100.0 * first["exact_operations"] / seconds / product, "%",
            target=at_least(SHARE_OF_PRODUCT.get(size)))
        add("engine", "order", engine.median("order"), "s")
        add("engine", "analyse", engine.median("pattern", "analyse"), "s", target=at_most(ANALYSIS.get(size)))
        solve = engine.median("solve")
        read_rate = 2.0 * first["factor_entries"] * 8 / solve
        add("engine", "solve", solve, "s")
        add("engine", "solve_rate", read_rate / GIGA, "GB/s")
        add("engine", "share_of_triad", 100.0 * read_rate / triad, "%")
        one_thread = programs["one_thread"].median("first_factorise")
        add("engine", "factorise_one_thread", one_thread, "s")
        add("engine", "rate_per_core", one_thread / (self.cores * seconds), "", target=at_least(PER_CORE))

        for name in [name for name in ["cholmod", *MUMPS] if name in programs]:
            program = programs[name]
            add(name, "ordering", program.figures[0].get("ordering_method", program.figures[0]["ordering"]), "")
            add(name, "operations", program.figures[0]["factor_operations"] / GIGA, "Gop")
            for stage in STAGES:
                add(name, stage, program.median(stage), "s")
            add(name, "factorise_least", min(one["factorise"] for one in program.figures), "s")
            add(name, "factorise_most", max(one["factorise"] for one in program.figures), "s")
            add(name, "sum", program.median(*STAGES), "s")
            add(name, "factorise_over_ours", program.median("factorise") / seconds, "",
                target=at_least(OVER_CHOLMOD.get(size)) if name == "cholmod" else None)
        whole = programs["solve"].median("wall")
        add("solve", "wall", whole, "s")
        add("solve", "whole_over_cholmod", whole / cholmod.median(*STAGES), "", target=at_most(WHOLE_RUN.get(size)))


def at_least(limit):
    return None if limit is None else (">=", limit)


def at_most(limit):
    return None if limit is None else ("<=", limit)


# --- tables for reading ------------------------------------------------------------------------------------------

def cells_of(results, kind, size, program, quantity):
    """Value, target and verdict; target and verdict are empty where there is none."""
    for row in results.rows:
        if (row["program"], row["kind"], row["size"], row["quantity"]) == (program, kind, size, quantity):
            value = row["value"] if isinstance(row["value"], str) else figure(row["value"])
            return value, row["target"], row["verdict"]
    return "", "", ""


def table_of(results, columns):
    """One line per model; columns: (title, program, quantity), or with "judged" behind it, target and verdict too."""
    models = list(dict.fromkeys((row["kind"], row["size"]) for row in results.rows))
    head = ["model", "size"]
    for title, _, _, *judged in columns:
        head += [title, "target", ""] if judged else [title]
    lines = []
    for kind, size in models:
        line = [kind, f"{size:,}"]
        for _, program, quantity, *judged in columns:
            line += cells_of(results, kind, size, program, quantity)[:3 if judged else 1]
        lines.append(line)
    return markdown(head, lines)


def readable(results, heading):
    has = {row["program"] for row in results.rows}
    peers = [name for name in MUMPS if name in has]
    sections = [
        ("Factorisation, seconds", table_of(results, [
            ("equations", "engine", "equations"), ("Gop", "engine", "operations"), ("order", "engine", "ordering"),
            ("tarnvexo", "engine", "factorise"), ("CHOLMOD", "cholmod", "factorise"),
            *[(MUMPS[name], name, "factorise") for name in peers],
            ("CHOLMOD / tarnvexo", "cholmod", "factorise_over_ours", "judged")])),
        ("Rate of the factorisation", table_of(results, [
            ("DGEMM Gop/s", "machine", "dgemm_all_threads"),
            ("% of DGEMM", "engine", "share_of_product", "judged"),
            ("one thread s", "engine", "factorise_one_thread"),
            ("each core / one alone", "engine", "rate_per_core", "judged")])),
        ("Whole run", table_of(results, [
            ("whole run s", "solve", "wall"),
            *[(f"CHOLMOD {stage}", "cholmod", stage) for stage in STAGES],
            ("sum", "cholmod", "sum"), ("whole run / sum", "solve", "whole_over_cholmod", "judged")])),
        ("Analysis and solution", table_of(results, [
            ("order s", "engine", "order"), ("analyse s", "engine", "analyse", "judged"),
            ("solve s", "engine", "solve"),
            ("factor read GB/s", "engine", "solve_rate"), ("triad GB/s", "machine", "triad_all_threads"),
            ("% of triad", "engine", "share_of_triad")])),
        ("Least and most seconds of factorising", table_of(results, [
            ("turns", "engine", "turns"),
            *[(f"{title} {word}", program, f"factorise_{word}")
              for program, title in [("engine", "tarnvexo"), ("cholmod", "CHOLMOD"),
                                     *[(name, MUMPS[name]) for name in peers]]
              for word in ["least", "most"]]])),
    ]
    for name in peers:
        sections.append((MUMPS[name], table_of(results, [
            ("order", name, "ordering"), ("Gop", name, "operations"),
            *[(f"{stage} s", name, stage) for stage in STAGES],
            ("factorise / tarnvexo", name, "factorise_over_ours")])))
    return heading + "".join(f"\n## {title}\n\n{text}" for title, text in sections)


# --- command line ------------------------------------------------------------------------------------------------

def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", type=Path, default=scaling.HERE.parent / "build", help="build directory")
    parser.add_argument("--kinds", nargs="+", choices=KINDS, default=KINDS, metavar="KIND", help=" ".join(KINDS))
    parser.add_argument("--sizes", nargs="+", type=int, default=SIZES, metavar="EQUATIONS",
                        help="default: " + " ".join(map(str, SIZES)))
    parser.add_argument("--repeats", type=int, metavar="N", help="turns of each model (default: 5, 3 of the largest)")
    parser.add_argument("--mumps", action=argparse.BooleanOptionalAction, default=True, help="MUMPS beside CHOLMOD")
    parser.add_argument("--out", type=Path, metavar="CSV", help="the readable tables go beside it, as .md")
    parser.add_argument("--scratch", type=Path, metavar="DIR",
                        help="for models and results, up to 2 GB at a time (default: the system's directory)")
    return parser.parse_args()


def main():
    options = parse_options()
    cores = len(os.sched_getaffinity(0))
    results = scaling.Results(
        options.out or scaling.HERE / "results" / f"{scaling.machine_name(cores)}-factorisation.csv")
    heading = (f"# Factorisation on {scaling.processor()}, {cores} processors\n\n"
               f"{time.strftime('%Y-%m-%d')}, load of the machine at the start {os.getloadavg()[0]:.1f}. How it was "
               "measured: bench/README.md.\n")
    with tempfile.TemporaryDirectory(prefix="tarnvexo-factorisation-", dir=options.scratch) as scratch:
        scaling.measure_models(Bench(options, results, scratch), options, lambda: readable(results, heading))
    scaling.tell(results)


if __name__ == "__main__":
    main()
