#!/usr/bin/env python3
"""Result files are never half-written: ends `tarnvexo solve` at random times, and lets disk and memory run out.

Two models are solved by turns into one directory, so that every round finds the complete result files of the other
model there. After a round the directory must hold, byte for byte, the files from before or the new ones, as the exit
code says, and the run must have told what happened (a killed one cannot).

    interrupt_rounds.py --program build/tarnvexo --generate build/tools/generate_model --rounds 2000 --seed 7

Exit code 0: every round was good. 1: the rounds that were not are listed; the same seed makes the same rounds.
"""
import argparse
import collections
import fcntl
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time

NAMES = ["structure.dxf", "Node_Dis.txt", "deformation.dxf", "Shell element node stress.txt",
         "Shell element average node stress.txt", "Tarn+Vexo_AverageStrs.txt"]
LAST = NAMES[-1]  # written last
SIGNALS = [signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGKILL]
INTERRUPTED = 130
FILE_ERROR = 4
NUMERICAL_FAILURE = 3
LOADER_FAILURE = 127
LONGEST_RUN = 60.0  # s; a run that lasts longer hangs


def content_of(directory):
    """Result files by name; one that is missing is None."""
    files = {}
    for name in NAMES:
        path = os.path.join(directory, name)
        files[name] = None
        if os.path.exists(path):
            with open(path, "rb") as file:
                files[name] = file.read()
    return files


def others_in(directory):
    return sorted(set(os.listdir(directory)) - set(NAMES))


def wait_for_lock(directory):
    """The process that clears away behind a killed run holds the directory's lock until it is done."""
    descriptor = os.open(directory, os.O_RDONLY)
    try:
        until = time.monotonic() + 10.0
        while time.monotonic() < until:
            try:
                fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
                return True
            except BlockingIOError:
                time.sleep(0.001)
        return False
    finally:
        os.close(descriptor)


class Rounds:
    def __init__(self, options, work):
        self.options = options
        self.random = random.Random(options.seed)
        self.work = work
        self.outcomes = collections.Counter()
        self.faults = []
        self.models, self.sets = [], []
        self.seconds = 0.0
        for turn, kind in enumerate(["plate", "box"]):
            model = os.path.join(work, kind + ".txt")
            subprocess.run([options.generate, kind, str(options.equations), model], check=True,
                           stdout=subprocess.DEVNULL)
            directory = os.path.join(work, kind)
            begin = time.monotonic()
            self.run(model, directory, check=True)
            self.seconds = max(self.seconds, time.monotonic() - begin)
            self.models.append(model)
            self.sets.append(content_of(directory))
        assert all(self.sets[0][name] != self.sets[1][name] for name in NAMES)

    def command(self, model, directory):
        return [self.options.program, "solve", model, "-o", directory, "-q", "--threads", "2"]

    def run(self, model, directory, check=False, limit=None):
        return subprocess.run(self.command(model, directory), check=check, stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, text=True, timeout=LONGEST_RUN, preexec_fn=limit)

    def fill(self, directory, turn):
        os.makedirs(directory, exist_ok=True)
        for name, content in self.sets[turn].items():
            with open(os.path.join(directory, name), "wb") as file:
                file.write(content)

    def judge(self, label, directory, old, ended_well, may_leave=False):
        """Whether the files are those from before or the new ones. Returns the set that is there, or None."""
        there = content_of(directory)
        which = next((turn for turn in (old, 1 - old) if there == self.sets[turn]), None)
        if which is None:
            self.faults.append(label + ": mixed or half-written: " +
                               ", ".join(name for name in NAMES if there[name] != self.sets[old][name]))
        elif ended_well is not None and (which != old) != ended_well:
            self.faults.append(label + ": the run " + ("ended well" if ended_well else "failed") + ", but the files " +
                               ("from before" if which == old else "of the new run") + " are there")
        left = others_in(directory)
        if left:
            self.outcomes["left over: " + str(len(left))] += 1
            if not may_leave:
                self.faults.append(label + ": left over: " + ", ".join(left))
        return which

    def interrupt(self, count):
        directory = os.path.join(self.work, "run")
        self.fill(directory, 0)
        old = 0
        last_place = os.path.join(directory, LAST)
        for number in range(count):
            number_of_signal = SIGNALS[number % len(SIGNALS)]
            at_the_end = self.random.random() < 0.6
            delay = self.random.uniform(0.0, 0.03) if at_the_end else self.random.uniform(0.0, 1.1 * self.seconds)
            label = "round %d, %s %s" % (number, number_of_signal.name,
                                         "%.1f ms after the last file was begun" % (1e3 * delay) if at_the_end
                                         else "after %.1f ms" % (1e3 * delay))
            with subprocess.Popen(self.command(self.models[1 - old], directory), stdout=subprocess.DEVNULL,
                                  stderr=subprocess.PIPE, text=True, start_new_session=True) as run:
                if at_the_end:
                    begun = "%s.%d.unfinished" % (last_place, run.pid)
                    while not os.path.exists(begun) and run.poll() is None:
                        pass
                time.sleep(delay)
                try:
                    os.killpg(run.pid, number_of_signal)
                except ProcessLookupError:
                    pass  # it has ended
                try:
                    error = run.communicate(timeout=LONGEST_RUN)[1]
                except subprocess.TimeoutExpired:
                    run.kill()
                    self.faults.append(label + ": the run does not end")
                    continue
            if not wait_for_lock(directory):
                self.faults.append(label + ": the directory stays locked")
            code = run.returncode
            if number_of_signal == signal.SIGKILL:
                ended_well = True if code == 0 else None
                good = code in (0, -signal.SIGKILL)
            else:
                complete, nothing = "files written so far are complete" in error, "no results were written" in error
                ended_well = code == 0 or complete
                # Before the program has begun to watch for signals, the signal itself ends it.
                good = code == 0 or (code == INTERRUPTED and complete != nothing) or \
                    (code == -number_of_signal and error == "")
            if not good:
                self.faults.append("%s: exit code %d: %s" % (label, code, error.strip()))
            which = self.judge(label, directory, old, ended_well, may_leave=number_of_signal == signal.SIGKILL)
            self.outcomes["%s: exit code %d, %s" % (number_of_signal.name, code,
                                                    "new files" if which == 1 - old else "files from before")] += 1
            if which is None:
                self.fill(directory, old)
            else:
                old = which

    def expect(self, label, directory, run, code):
        """A run without room: fails with this code and a message, or ends well."""
        if run.returncode not in (0, code) or (run.returncode != 0 and not run.stderr.strip()):
            self.faults.append("%s: exit code %d: %s" % (label, run.returncode, run.stderr.strip()))
        self.outcomes["%s: exit code %d" % (label.split(",")[0], run.returncode)] += 1
        wait_for_lock(directory)
        self.judge(label, directory, 0, run.returncode == 0)

    def file_sizes(self, count):
        """Files cannot grow beyond a limit, so that each file in turn is the first that fails."""
        sizes = sorted(len(content) for content in self.sets[1].values())
        limits = [0] + [size - 1 for size in sizes] + sizes
        limits += [self.random.randrange(1, sizes[-1]) for _ in range(count - len(limits))]
        for limit in limits[:count]:
            directory = os.path.join(self.work, "sizes")
            self.fill(directory, 0)
            run = self.run(self.models[1], directory,
                           limit=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
            self.expect("file size limit, %d bytes" % limit, directory, run, FILE_ERROR)

    def full_disk(self, count):
        """A file system in memory, with less and more room than the new files need beside the old ones."""
        directory = os.path.join(self.work, "disk")
        page = 4096
        needed = [sum((len(content) + page - 1) // page + 1 for content in one.values()) for one in self.sets]
        for number in range(count):
            pages = needed[0] + 8 + (needed[1] * 11 * number) // (10 * max(1, count - 1))
            os.makedirs(directory, exist_ok=True)
            mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=%d" % (pages * page), "none", directory],
                                     stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            if mounted.returncode != 0:
                print("full disk: left out: " + mounted.stderr.strip().split("\n")[0])
                return
            try:
                self.fill(directory, 0)
                self.expect("full disk, %d pages" % pages, directory, self.run(self.models[1], directory), FILE_ERROR)
            finally:
                subprocess.run(["umount", directory], check=True)

    def memory(self, count):
        """Addresses from so few that the program cannot be loaded up to as many as it wants."""
        directory = os.path.join(self.work, "memory")
        for number in range(count):
            limit = int(2.0**20 * 4.0 * 250.0**(number / max(1, count - 1)))
            label = "memory, %.1f MB" % (limit / 2.0**20)
            self.fill(directory, 0)
            try:
                run = self.run(self.models[1], directory,
                               limit=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            except subprocess.TimeoutExpired:
                self.faults.append(label + ": the run does not end")
                continue
            except (subprocess.SubprocessError, OSError):
                self.outcomes["memory: not enough to start a program"] += 1
                continue
            # The system's loader has a code, and a message, of its own; below that it kills what it cannot map.
            begun = limit > 12 * 2**20
            if run.returncode == LOADER_FAILURE and "error while loading shared libraries" in run.stderr:
                self.outcomes["memory: not enough to load the program's libraries"] += 1
                self.judge(label, directory, 0, False)
            elif not begun and run.returncode < 0:
                self.outcomes["memory: not enough to start a program"] += 1
                self.judge(label, directory, 0, False)
            else:
                self.expect(label, directory, run, NUMERICAL_FAILURE)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--program", required=True)
    parser.add_argument("--generate", required=True, help="the tool generate_model")
    parser.add_argument("--rounds", type=int, default=200, help="runs that get a signal")
    parser.add_argument("--limits", type=int, default=20, help="limits of file size, disk and memory, each")
    parser.add_argument("--equations", type=int, default=6000, help="size of the models")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--without-memory", action="store_true",
                        help="no limits of memory: the address sanitizer needs more than any leaves")
    options = parser.parse_args()
    options.program, options.generate = os.path.abspath(options.program), os.path.abspath(options.generate)
    with tempfile.TemporaryDirectory(prefix="tarnvexo-") as work:
        rounds = Rounds(options, work)
        rounds.interrupt(options.rounds)
        rounds.file_sizes(options.limits)
        if options.limits > 0 and os.geteuid() == 0:
            rounds.full_disk(options.limits)
        elif options.limits > 0:
            print("full disk: left out: only an administrator can mount a small file system")
        if not options.without_memory:
            rounds.memory(options.limits)
    for outcome, count in sorted(rounds.outcomes.items()):
        print("%5d  %s" % (count, outcome))
    for fault in rounds.faults:
        print("fault: " + fault)
    print("%d outcomes, %d faults, seed %d" % (sum(rounds.outcomes.values()), len(rounds.faults), options.seed))
    return 1 if rounds.faults else 0


if __name__ == "__main__":
    sys.exit(main())
