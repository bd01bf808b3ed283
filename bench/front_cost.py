#!/usr/bin/python3
"""Measures fronts alone (FrontBench.cpp) and fits the constants of src/solver/FrontCost.cpp to them.

    front_cost.py [--build DIR] [--repetitions N] [--from FILE]

Least squares of the relative errors, so that small fronts count as much as large ones; no constant below zero. Prints
the constants as they stand in FrontCost.cpp, and how far the fit is from the measurements. Python's standard library.
"""
import argparse
import json
import math
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent


def measurements(options):
    """Case -> least seconds."""
    if options.given:
        text = options.given.read_text(encoding="utf-8")
    else:
        text = subprocess.run([options.build.resolve() / "bench/tarnvexo_bench", "--benchmark_filter=^Front",
                               "--benchmark_format=json", f"--benchmark_repetitions={options.repetitions}"],
                              check=True, stdout=subprocess.PIPE).stdout
    least = {}
    for case in json.loads(text)["benchmarks"]:
        if case["run_type"] == "iteration":
            seconds = case["real_time"] * {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}[case["time_unit"]]
            least[case["run_name"]] = min(seconds, least.get(case["run_name"], math.inf))
    return least


def arguments(name):
    """FrontElimination/width:6/height:24/min_time:0.100 -> {"width": 6, "height": 24, ...}"""
    return {key: float(value) for key, value in (part.split(":") for part in name.split("/")[1:])}


def squares(n):
    return n * (n + 1) * (2 * n + 1) / 6


def elimination_terms(case):
    """What the constants of SecondsOf are multiplied with, in its order."""
    width, height = case["width"], case["height"]
    below = height - width
    return [1.0, width * height, 0.5 * below ** 2, squares(height) - squares(below)]


def solve(matrix, right):
    """Gauss with exchange of rows; small systems."""
    rows = [[*line, value] for line, value in zip(matrix, right)]
    n = len(rows)
    for k in range(n):
        best = max(range(k, n), key=lambda i: abs(rows[i][k]))
        rows[k], rows[best] = rows[best], rows[k]
        for i in range(k + 1, n):
            share = rows[i][k] / rows[k][k]
            rows[i] = [a - share * b for a, b in zip(rows[i], rows[k])]
    result = [0.0] * n
    for k in reversed(range(n)):
        result[k] = (rows[k][n] - sum(rows[k][j] * result[j] for j in range(k + 1, n))) / rows[k][k]
    return result


def fit(lines, seconds):
    """Constants c >= 0 with the least sum of (line.c / seconds - 1)^2; the most negative one goes until none is left."""
    scale = [max(line[j] for line in lines) for j in range(len(lines[0]))]
    weighted = [[value / size / second for value, size in zip(line, scale)] for line, second in zip(lines, seconds)]
    used = list(range(len(scale)))
    while True:
        normal = [[sum(line[i] * line[j] for line in weighted) for j in used] for i in used]
        found = solve(normal, [sum(line[i] for line in weighted) for i in used])
        if min(found) >= 0.0:
            break
        used.pop(found.index(min(found)))
    constants = [0.0] * len(scale)
    for j, value in zip(used, found):
        constants[j] = value / scale[j]
    return constants


def report(title, names, cases, terms):
    lines = [terms(arguments(name)) for name in cases]
    constants = fit(lines, list(cases.values()))
    errors = {name: sum(c * x for c, x in zip(constants, line)) / cases[name] - 1.0
              for name, line in zip(cases, lines)}
    worst = max(errors, key=lambda name: abs(errors[name]))
    mean = math.sqrt(sum(error ** 2 for error in errors.values()) / len(errors))
    print(f"// {title}: {len(cases)} cases, error {100 * mean:.0f} % (root of the mean square), "
          f"at most {100 * errors[worst]:+.0f} % at {worst.split('/min_time')[0]}")
    for name, value in zip(names, constants):
        print(f"constexpr double {name} = {value:.3g};")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", type=Path, default=HERE.parent / "build", help="build directory")
    parser.add_argument("--repetitions", type=int, default=3, help="of every case; the least time counts")
    parser.add_argument("--from", dest="given", type=Path, metavar="FILE",
                        help="measurements that tarnvexo_bench wrote with --benchmark_out, instead of new ones")
    options = parser.parse_args()
    cases = measurements(options)
    of_kind = lambda kind: {name: seconds for name, seconds in cases.items() if name.startswith(kind)}
    if not of_kind("FrontElimination") or not of_kind("FrontAddition"):
        sys.exit("front_cost.py: error: no cases FrontElimination and FrontAddition among the measurements")
    report("elimination", ["PerFront", "PerPanelEntry", "PerUpdateEntry", "PerOperation"],
           of_kind("FrontElimination"), elimination_terms)
    report("addition to the parent", ["PerAddedEntry"], of_kind("FrontAddition"),
           lambda case: [0.5 * case["below"] ** 2])


if __name__ == "__main__":
    main()
