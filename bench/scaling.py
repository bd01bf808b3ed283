#!/usr/bin/python3
"""Measures how whole runs of tarnvexo scale, beside the machine's own rates and beside other solvers.

    scaling.py                                      everything, into bench/results/<processor>-<cores>.csv and .md
    scaling.py --quick                              in a hurry, into <build>/bench/scaling-quick.csv and .md
    scaling.py --kinds plate --sizes 60000 --no-peers

What is measured, how, and what the columns mean: bench/README.md. Python's standard library only.
"""
import argparse
import csv
import json
import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

KINDS = ["plate", "box", "ship", "barrel", "lattice"]
SIZES = [2000, 10000, 60000, 250000, 600000, 1200000]
QUICK_SIZES = [2000, 10000, 60000, 250000]
PEER_KINDS = ["plate", "box"]               # four-node shells only
CHOLMOD_SMALLEST = 60000
CALCULIX_SIZES = {"s4": [60000, 250000], "us3": [60000, 250000, 600000]}
CALCULIX_LONG = [600000]                    # minutes each: only with --long-peers
CALCULIX_QUICK = [60000]                    # the only ones with --quick
SHORT, LONG = 2.0, 20.0                     # expected seconds: 5 runs up to SHORT, then 3; few things above LONG
BEAM_MEMORY = 300e3                         # bytes that the section walls of a beam take at most
QUICK_BEAMS = 10000                         # with --quick, models with more are left out: a minute for each run
CONSOLE_SECONDS = {False: 120.0, True: 20.0}  # console runs that are expected to take longer are left out; True: quick
GROWTH_FROM = 50000                         # equations: below, starting the process is what takes time
SOLVER_STAGES = ["order", "analyse", "factorise", "solve"]

# Targets: (quantity, size) -> (">=" or "<=", value).
CHOLMOD_TARGETS = {250000: 1.5, 600000: 1.35, 1200000: 1.25}
CALCULIX_TARGETS = {("s4", 60000): 5.0, ("s4", 250000): 6.0,
                    ("us3", 60000): 2.0, ("us3", 250000): 3.0, ("us3", 600000): 4.5}
CONSOLE_TARGETS = {60000: 20.0}
SMALL_TARGETS = {("plate", 2000): 0.020, ("box", 2000): 0.020}  # seconds
FACTOR_SHARE, BYTES_PER_NODE = 1.35, 2048   # peak memory <= share of the factor + bytes per node
DISPLACEMENT_TOLERANCE, FINE_ENOUGH = 0.05, 250000  # from this size on both programs' meshes have converged

MEGA, GIGA = 1e6, 1e9
HERE = Path(__file__).resolve().parent

# For counting numbers: digits and points, separators, letters; signs are dropped before.
CLASSES = bytes(ord("1") if chr(b) in "0123456789." else ord("a") if chr(b).isalpha() else ord(" ")
                for b in range(256))


def say(text):
    print(text, file=sys.stderr, flush=True)


class Results:
    """All figures of this run, one row each, and the files they go to."""

    COLUMNS = ["program", "kind", "size", "quantity", "value", "unit", "target", "verdict"]

    def __init__(self, path):
        self.path = path
        self.rows = []

    def add(self, program, kind, size, quantity, value, unit, target=None):
        """target: ("<=" or ">=", limit), or None."""
        row = dict(program=program, kind=kind, size=size, quantity=quantity, value=value, unit=unit, target="",
                   verdict="")
        if target:
            sign, limit = target
            row["target"] = f"{sign} {limit:g}"
            row["verdict"] = "met" if (value <= limit if sign == "<=" else value >= limit) else "missed"
        self.rows.append(row)

    def get(self, program, kind, size, quantity):
        for row in self.rows:
            if (row["program"], row["kind"], row["size"], row["quantity"]) == (program, kind, size, quantity):
                return row["value"]
        return None

    def write(self, tables):
        """tables: the same for readers, as Markdown."""
        self.path.parent.mkdir(parents=True, exist_ok=True)
        with open(self.path, "w", newline="", encoding="utf-8") as file:
            table = csv.DictWriter(file, self.COLUMNS, lineterminator="\n")
            table.writeheader()
            for row in self.rows:
                value = row["value"]
                table.writerow({**row, "value": f"{value:.6g}" if isinstance(value, float) else value})
        self.path.with_suffix(".md").write_text(tables, encoding="utf-8")


# --- processes ---------------------------------------------------------------------------------------------------

def available_memory():
    text = Path("/proc/meminfo").read_text()
    return int(re.search(r"MemAvailable:\s+(\d+)", text).group(1)) * 1024


def touch_memory(size):
    """Writes slightly more memory than the next process will need and gives it back: README, "Noise"."""
    amount = int(min(1.1 * size + 64 * MEGA, 0.8 * available_memory()))
    subprocess.run([sys.executable, "-c", r"import sys; b'\1' * int(sys.argv[1])", str(amount)], check=True)


class Run:
    """One cold process: wall time in seconds, peak memory in bytes."""

    def __init__(self, command, directory, memory, environment=None, output=subprocess.DEVNULL):
        touch_memory(memory)
        with open(Path(directory) / "stderr.txt", "w+b") as errors:
            start = time.perf_counter()
            process = subprocess.Popen([str(part) for part in command], cwd=directory, stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=errors, env={**os.environ, **(environment or {})})
            _, status, usage = os.wait4(process.pid, 0)
            self.seconds = time.perf_counter() - start
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode != 0:
                errors.seek(0)
                sys.exit(f"{Path(sys.argv[0]).name}: error: exit code {process.returncode} of "
                         f"{' '.join(map(str, command))}\n" + errors.read().decode(errors="replace"))
        self.peak = usage.ru_maxrss * 1024


def median_run(runs, seconds=lambda run: run.seconds):
    """The run that took the median time, whole: its stages belong together."""
    return sorted(runs, key=seconds)[len(runs) // 2]


def output_of(command, directory, memory=0):
    touch_memory(memory)
    return json.loads(subprocess.run([str(part) for part in command], cwd=directory, check=True,
                                     stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout)


def count_numbers(path):
    count, last = 0, b" "
    with open(path, "rb") as file:
        while chunk := file.read(1 << 22):
            classes = last + chunk.translate(CLASSES, b"+-")
            count += classes.count(b" 1")
            last = classes[-1:]
    return count


def programs_of(build, *bench):
    """tarnvexo, generate_model and the named programs of a build directory."""
    programs = [build.resolve() / name for name in ("tarnvexo", "tools/generate_model", *bench)]
    for program in programs:
        if not program.exists():
            sys.exit(f"{Path(sys.argv[0]).name}: error: {program} is missing\n"
                     f"  to do:    cmake --build {build} --target tarnvexo generate_model bench_programs")
    return programs


# --- what is measured --------------------------------------------------------------------------------------------

class Bench:
    def __init__(self, options, results, scratch):
        self.options = options
        self.results = results
        self.scratch = Path(scratch)
        self.cores = len(os.sched_getaffinity(0))
        self.tarnvexo, self.generate, self.machine_rates, self.cholmod_alone, self.calculix_export = programs_of(
            options.build, "bench/machine_rates", "bench/cholmod_alone", "bench/calculix_export")

    def repeats(self, seconds):
        """How often a run that is expected to take so long is measured; an odd number."""
        if self.options.repeats:
            return self.options.repeats
        if seconds <= SHORT:
            return 3 if self.options.quick else 5
        return 1 if self.options.quick or seconds > 5.0 * LONG else 3

    def wants_calculix(self, size):
        if self.options.quick:
            return size in CALCULIX_QUICK
        return self.options.long_peers or size not in CALCULIX_LONG

    def fresh(self, name):
        directory = self.scratch / name
        shutil.rmtree(directory, ignore_errors=True)
        directory.mkdir()
        return directory

    def machine(self):
        say("machine: matrix product and memory bandwidth")
        rates = output_of([self.machine_rates], self.scratch, 2 * GIGA)
        for name, unit, scale in [("dgemm_one_thread", "Gop/s", GIGA), ("dgemm_all_threads", "Gop/s", GIGA),
                                  ("triad_one_thread", "GB/s", GIGA), ("triad_all_threads", "GB/s", GIGA)]:
            self.results.add("machine", "", "", name, rates[name] / scale, unit)
        return rates

    def solve_once(self, model, memory, *more):
        directory = self.fresh("solve")
        run = Run([self.tarnvexo, "solve", model, "-o", "out", "--json", "report.json", "--quiet", *more],
                  directory, memory)
        run.report = json.loads((directory / "report.json").read_text(encoding="utf-8"))
        run.stages = {stage["name"]: stage["seconds"] for stage in run.report["stages"]}
        return run

    def remove_results(self):
        shutil.rmtree(self.scratch / "solve", ignore_errors=True)

    def model(self, kind, size):
        """All figures of one model. Nothing of it is left in the scratch directory."""
        model = self.scratch / f"{kind}-{size}.txt"
        subprocess.run([self.generate, kind, str(size), model], check=True, stdout=subprocess.DEVNULL)
        info = output_of([self.tarnvexo, "info", model, "--json", "-", "--quiet"], self.scratch)
        memory = info["expected"]["memory_gigabytes"] * (1 << 30) + info["model"]["beams"] * BEAM_MEMORY
        say(f"{kind} {size}: {info['model']['equations']} equations, {info['expected']['seconds']:.1f} s and "
            f"{memory / GIGA:.1f} GB expected")
        if self.options.quick and info["model"]["beams"] > QUICK_BEAMS:
            say("  left out: many beams")
        elif memory > 0.9 * available_memory():
            say("  left out: too large for the memory of this machine")
        else:
            solve = self.whole_run(kind, size, model, info, memory)
            self.console_run(kind, size, model, info, solve)
            if self.options.peers and kind in PEER_KINDS:
                if size >= CHOLMOD_SMALLEST:
                    self.cholmod(kind, size, model, solve)
                for element, sizes in CALCULIX_SIZES.items():
                    if size in sizes and self.wants_calculix(size):
                        self.calculix(kind, size, model, element, solve)
        model.unlink()

    def whole_run(self, kind, size, model, info, memory):
        add = lambda *row, **more: self.results.add("solve", kind, size, *row, **more)
        repeats = self.repeats(info["expected"]["seconds"])
        runs = []
        for turn in range(repeats):
            run = self.solve_once(model, memory)
            if turn == 0:
                written = [(file["path"], file["bytes"]) for file in run.report["files"]]
                numbers = sum(count_numbers(self.scratch / "solve" / path) for path, _ in written
                              if not path.endswith("structure.dxf"))
            self.remove_results()
            runs.append(run)
            memory = max(memory, run.peak)
        run = median_run(runs)
        bare = median_run([self.solve_once(model, memory, "--format", "none")
                           for _ in range(repeats if run.seconds < LONG else 1)])
        self.remove_results()

        report, stages, counts = run.report, run.stages, run.report["model"]
        factor_bytes = report["solver"]["factor_entries"] * 8
        shells = counts["quads"] + counts["tris"]
        for name in ["equations", "nodes", "quads", "tris", "beams"]:
            add(name, counts[name], "")
        add("runs", len(runs), "")
        small = SMALL_TARGETS.get((kind, size))
        add("wall", run.seconds, "s", target=("<=", small) if small else None)
        add("wall_least", min(one.seconds for one in runs), "s")
        add("wall_most", max(one.seconds for one in runs), "s")
        for name, seconds in stages.items():
            add(name.replace(" ", "_"), seconds, "s")
        add("rest", run.seconds - sum(stages[name] for name in SOLVER_STAGES), "s")
        add("wall_without_files", bare.seconds, "s")
        add("peak_memory", run.peak / MEGA, "MB",
            target=("<=", round((FACTOR_SHARE * factor_bytes + BYTES_PER_NODE * counts["nodes"]) / MEGA, 1))
            if size >= CHOLMOD_SMALLEST else None)
        add("factor", factor_bytes / MEGA, "MB")
        add("factor_operations", report["solver"]["factor_operations"] / GIGA, "Gop")
        add("factorise_rate", report["solver"]["factor_operations"] / stages["factorise"] / GIGA, "Gop/s")
        add("model_file", model.stat().st_size / MEGA, "MB")
        add("result_files", sum(size for _, size in written) / MEGA, "MB")
        add("read_rate", model.stat().st_size / stages["read"] / MEGA, "MB/s")
        add("read_per_number", stages["read"] / count_numbers(model) * GIGA, "ns")
        add("write_per_number", stages["write"] / numbers * GIGA, "ns")
        add("assembly_rate", (shells + counts["beams"]) / stages["assemble"] / 1e3, "1000 elements/s")
        if shells:
            add("stress_rate", shells / bare.stages["stresses"] / 1e3, "1000 shells/s")
        if counts["beams"]:
            add("beam_section_rate", counts["beams"] / stages["beam sections"] / 1e3, "1000 beams/s")
        return run

    def console_run(self, kind, size, model, info, solve):
        expected = info["expected"]["skyline_seconds"]
        memory = info["skyline"]["gigabytes"] * (1 << 30) + solve.peak
        if (expected > CONSOLE_SECONDS[self.options.quick] or info["skyline"]["entries"] >= 1 << 31
                or memory > 0.7 * available_memory()):
            return
        runs = []
        for _ in range(self.repeats(expected) if expected < LONG and solve.seconds < LONG else 1):
            directory = self.fresh("console")
            shutil.copy(model, directory / "fem_solving.txt")
            runs.append(Run([self.tarnvexo], directory, memory))
            shutil.rmtree(directory)
        run = median_run(runs)
        self.results.add("console", kind, size, "wall", run.seconds, "s")
        self.results.add("console", kind, size, "peak_memory", run.peak / MEGA, "MB")
        self.results.add("console", kind, size, "console_over_solve", run.seconds / solve.seconds, "",
                         target=(">=", CONSOLE_TARGETS[size]) if size in CONSOLE_TARGETS else None)

    def cholmod(self, kind, size, model, solve):
        total = lambda times: sum(times[name] for name in SOLVER_STAGES)
        times = min((median_run([output_of([self.cholmod_alone, model, *pages], self.scratch, solve.peak)
                                 for _ in range(self.repeats(solve.seconds))], total)
                     for pages in ([], ["small-pages"])), key=total)  # its better setting
        for name in SOLVER_STAGES:
            self.results.add("cholmod", kind, size, name, times[name], "s")
        self.results.add("cholmod", kind, size, "sum", total(times), "s")
        self.results.add("cholmod", kind, size, "factorise_rate",
                         times["factor_operations"] / times["factorise"] / GIGA, "Gop/s")
        self.results.add("cholmod", kind, size, "solve_over_cholmod", solve.seconds / total(times), "",
                         target=("<=", CHOLMOD_TARGETS[size]) if size in CHOLMOD_TARGETS else None)

    def calculix(self, kind, size, model, element, solve):
        ccx = shutil.which("ccx")
        if ccx is None:
            say("  no ccx on this machine (package calculix-ccx): left out")
            return
        program = f"calculix-{element}"
        clamped = self.scratch / "clamped.txt"
        directory = self.fresh("calculix")
        subprocess.run([self.calculix_export, model, element, directory / "model.inp", clamped], check=True)
        ours = median_run([self.solve_once(clamped, solve.peak) for _ in range(self.repeats(solve.seconds))])
        self.remove_results()
        memory = 4 * solve.peak
        best = None
        for threads, quantity in [(1, "wall_one_thread"), (self.cores, "wall_all_threads")]:
            runs = []
            for _ in range(1 if self.options.quick or size > CHOLMOD_SMALLEST else 3):
                runs.append(Run([ccx, "-i", "model"], directory, memory, {"OMP_NUM_THREADS": str(threads)}))
                memory = runs[-1].peak
            run = median_run(runs)
            self.results.add(program, kind, size, quantity, run.seconds, "s")
            best = run if best is None or run.seconds < best.seconds else best
        displacement = largest_displacement(directory / "model.frd")
        shutil.rmtree(directory)
        clamped.unlink()
        self.results.add(program, kind, size, "solve", ours.seconds, "s")
        self.results.add(program, kind, size, "peak_memory", best.peak / MEGA, "MB")
        target = CALCULIX_TARGETS.get((element, size))
        self.results.add(program, kind, size, "calculix_over_solve", best.seconds / ours.seconds, "",
                         target=(">=", target) if target else None)
        difference = abs(displacement / ours.report["extremes"]["displacement"]["value"] - 1.0)
        self.results.add(program, kind, size, "displacement_difference", difference, "",
                         target=("<=", DISPLACEMENT_TOLERANCE) if size >= FINE_ENOUGH else None)

    def growth(self):
        """Exponents p of seconds = c * equations^p for every stage, by least squares of the logarithms."""
        stages = ["wall", "rest", "read", "order", "analyse", "assemble", "factorise", "solve", "stresses",
                  "beam_sections", "write"]
        for kind in self.options.kinds:
            sizes = [size for size in self.options.sizes
                     if size >= GROWTH_FROM and self.results.get("solve", kind, size, "wall")]
            for stage in stages if len(sizes) > 1 else []:
                if stage == "beam_sections" and not self.results.get("solve", kind, sizes[0], "beams"):
                    continue
                points = [(math.log(self.results.get("solve", kind, size, "equations")),
                           math.log(self.results.get("solve", kind, size, stage))) for size in sizes]
                mean_x = sum(x for x, _ in points) / len(points)
                mean_y = sum(y for _, y in points) / len(points)
                slope = (sum((x - mean_x) * (y - mean_y) for x, y in points)
                         / sum((x - mean_x) ** 2 for x, _ in points))
                self.results.add("growth", kind, "", stage, slope, "")


def largest_displacement(path):
    """Largest translation in a result file of CalculiX: fixed columns of 12 characters behind the node number."""
    largest, inside = 0.0, False
    with open(path, encoding="ascii", errors="replace") as file:
        for line in file:
            if line.startswith(" -4"):
                inside = "DISP" in line
            elif line.startswith(" -3"):
                inside = False
            elif inside and line.startswith(" -1"):
                largest = max(largest, math.hypot(*(float(line[13 + 12 * k:25 + 12 * k]) for k in range(3))))
    return largest


# --- tables for reading ------------------------------------------------------------------------------------------

def figure(value):
    """Three digits, as a reader wants them."""
    if value is None:
        return ""
    if isinstance(value, int):
        return f"{value:,}"
    if value == 0.0 or abs(value) >= 100.0:
        return f"{value:,.0f}"
    return f"{value:.{max(0, 2 - math.floor(math.log10(abs(value))))}f}"


def markdown(columns, rows):
    lines = ["| " + " | ".join(columns) + " |", "|" + "---|" * len(columns)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines) + "\n"


def table_of(results, program, columns, by_kind_only=False):
    """One line per model that has figures of this program; columns: (title, quantity) or (title, quantity, factor)."""
    models = list(dict.fromkeys((row["kind"], row["size"]) for row in results.rows if row["program"] == program))
    lines = []
    for kind, size in models:
        cells = [kind] if by_kind_only else [kind, f"{size:,}"]
        for _, quantity, *factor in columns:
            value = results.get(program, kind, size, quantity)
            cells.append(figure(value * factor[0] if factor and value is not None else value))
        lines.append(cells)
    head = ["model"] if by_kind_only else ["model", "size"]
    return markdown(head + [column[0] for column in columns], lines) if lines else ""


def readable(results, heading):
    stages = ["read", "order", "analyse", "assemble", "factorise", "solve", "stresses", "beam_sections", "write"]
    sections = [
        ("Machine", markdown(["quantity", "value", "unit"],
                             [[row["quantity"].replace("_", " "), figure(row["value"]), row["unit"]]
                              for row in results.rows if row["program"] == "machine"])),
        ("Whole runs", table_of(results, "solve", [
            ("equations", "equations"), ("wall s", "wall"), ("least", "wall_least"), ("most", "wall_most"),
            ("no files s", "wall_without_files"), ("peak MB", "peak_memory"), ("factor MB", "factor"),
            ("model MB", "model_file"), ("results MB", "result_files")])),
        ("Stages, ms", table_of(results, "solve", [(name.replace("_", " "), name, 1e3) for name in stages + ["rest"]])),
        ("Rates", table_of(results, "solve", [
            ("read MB/s", "read_rate"), ("read ns/number", "read_per_number"),
            ("assembly 1000 elements/s", "assembly_rate"), ("factorise Gop/s", "factorise_rate"),
            ("stresses 1000 shells/s", "stress_rate"), ("beam sections 1000 beams/s", "beam_section_rate"),
            ("write ns/number", "write_per_number")])),
        (f"Growth: exponent of the equations, from {GROWTH_FROM:,} on",
         table_of(results, "growth", [(name.replace("_", " "), name) for name in ["wall", "rest"] + stages], True)),
        ("CHOLMOD alone, ms", table_of(results, "cholmod", [
            ("order", "order", 1e3), ("analyse", "analyse", 1e3), ("factorise", "factorise", 1e3),
            ("solve", "solve", 1e3), ("sum", "sum", 1e3), ("Gop/s", "factorise_rate"),
            ("whole run / sum", "solve_over_cholmod")])),
        ("Console run", table_of(results, "console", [
            ("wall s", "wall"), ("peak MB", "peak_memory"), ("console / solve", "console_over_solve")])),
    ]
    for element in CALCULIX_SIZES:
        sections.append((f"CalculiX, {element.upper()}", table_of(results, f"calculix-{element}", [
            ("one thread s", "wall_one_thread"), ("all threads s", "wall_all_threads"), ("peak MB", "peak_memory"),
            ("solve s", "solve"), ("CalculiX / solve", "calculix_over_solve"),
            ("largest displacement differs by", "displacement_difference")])))
    sections.append(("Targets", markdown(
        ["program", "model", "size", "quantity", "value", "target", ""],
        [[row["program"], row["kind"], f"{row['size']:,}", row["quantity"].replace("_", " "),
          f"{figure(row['value'])} {row['unit']}".strip(), row["target"], row["verdict"]]
         for row in results.rows if row["target"]])))
    return heading + "".join(f"\n## {title}\n\n{text}" for title, text in sections if text)


# --- command line ------------------------------------------------------------------------------------------------

def processor():
    text = Path("/proc/cpuinfo").read_text()
    found = re.search(r"model name\s*:\s*(.*)", text)
    return re.sub(r"\((R|TM)\)", "", found.group(1)).strip() if found else "unknown processor"


def machine_name(cores):
    """What files of results are named after."""
    return re.sub(r"[^a-z0-9.]+", "-", processor().lower()).strip("-") + f"-{cores}"


def default_path(options, cores):
    if options.quick:
        return options.build / "bench/scaling-quick.csv"
    return HERE / "results" / f"{machine_name(cores)}.csv"


def parse_options():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", type=Path, default=HERE.parent / "build", help="build directory")
    parser.add_argument("--kinds", nargs="+", choices=KINDS, default=KINDS, metavar="KIND", help=" ".join(KINDS))
    parser.add_argument("--sizes", nargs="+", type=int, metavar="EQUATIONS",
                        help="default: " + " ".join(map(str, SIZES)))
    parser.add_argument("--repeats", type=int, metavar="N",
                        help="runs of each model (default: 5, 3 or 1, by their length)")
    parser.add_argument("--quick", action="store_true",
                        help=f"sizes up to {QUICK_SIZES[-1]:,}, few beams, fewer runs, little of CalculiX")
    parser.add_argument("--peers", action=argparse.BooleanOptionalAction, default=True,
                        help="CHOLMOD alone and CalculiX beside tarnvexo")
    parser.add_argument("--long-peers", action="store_true", help="CalculiX at 600,000 equations too (minutes)")
    parser.add_argument("--out", type=Path, metavar="CSV", help="the readable table goes beside it, as .md")
    parser.add_argument("--scratch", type=Path, metavar="DIR",
                        help="for models and results, up to 8 GB at a time (default: the system's directory)")
    options = parser.parse_args()
    options.sizes = options.sizes or (QUICK_SIZES if options.quick else SIZES)
    return options


def measure_models(bench, options, tables):
    """Model after model; after each the files are written, with tables() of what has been measured so far."""
    for kind in options.kinds:
        for size in sorted(options.sizes):
            bench.model(kind, size)
            bench.results.write(tables())


def tell(results):
    tables = results.path.with_suffix(".md")
    print(tables.read_text(encoding="utf-8"))
    say(f"written: {results.path} and {tables}")


def main():
    options = parse_options()
    cores = len(os.sched_getaffinity(0))
    results = Results(options.out or default_path(options, cores))
    with tempfile.TemporaryDirectory(prefix="tarnvexo-scaling-", dir=options.scratch) as scratch:
        bench = Bench(options, results, scratch)
        rates = bench.machine()
        heading = (f"# How tarnvexo scales on {processor()}, {cores} processors\n\n"
                   f"{time.strftime('%Y-%m-%d')}, {rates['kernels']}, load of the machine at the start "
                   f"{os.getloadavg()[0]:.1f}. How it was measured: bench/README.md.\n")
        measure_models(bench, options, lambda: readable(results, heading))
        bench.growth()
        results.write(readable(results, heading))
    tell(results)


if __name__ == "__main__":
    main()
