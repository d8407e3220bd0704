"""Runs the clients under bench_play, and draws tables."""

import contextlib
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

from clients import TRIGGERS, write_scripts


class Bench:
    def __init__(self, builds, runs):
        self.builds = [name for name, _ in builds]
        self.play = builds[-1][1] / "benchmarks" / "bench_play"
        self.pane = builds[-1][1] / "benchmarks" / "bench_pane"
        self.runs = runs
        self.known = {}

    @property
    def here(self):
        """The build that the ratios are of."""
        return self.builds[-1]

    def once(self, part, client, triggers="no", options=(), environment=()):
        with tempfile.TemporaryDirectory(prefix="kelmora-bench-") as name:
            folder = pathlib.Path(name)
            write_scripts(folder, TRIGGERS[triggers])
            surroundings = dict(os.environ, HOME=name, TERM="xterm-256color", LC_ALL="C.UTF-8",
                                XDG_RUNTIME_DIR=name, XDG_CONFIG_HOME=name, XDG_CACHE_HOME=name + "/cache")
            surroundings.update(environment)
            command = [str(self.play), part, *map(str, options)]
            command += ["--terminal"] if client.terminal else []
            done = subprocess.run([*command, "--", *client.command], cwd=folder, env=surroundings,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        if done.returncode != 0:
            sys.stderr.write(f"{client.name}: {done.stderr}\n")
            return None
        sys.stderr.write(f"  {part} {client.name}, {triggers} triggers {' '.join(map(str, options))}: {done.stdout}")
        return json.loads(done.stdout)

    def side_by_side(self, part, chosen, triggers="no", options=(), patience=25):
        """Every client in turn, several times over; the median of each figure.
        What takes longer than this is not repeated, nor what has been measured."""
        key = (part, tuple(chosen), triggers, tuple(options))
        if key not in self.known:
            self.known[key] = self._measure(part, chosen, triggers, options, patience)
        return self.known[key]

    def _measure(self, part, chosen, triggers, options, patience):
        results = {client.name: [] for client in chosen}
        tired = set()
        for _ in range(self.runs):
            for client in chosen:
                if client.name in tired:
                    continue
                begin = time.monotonic()
                result = self.once(part, client, triggers, options)
                if result is None or "stoppedSeconds" in result or time.monotonic() - begin > patience:
                    tired.add(client.name)
                if result is not None:
                    results[client.name].append(result)
        return {name: medians(each) for name, each in results.items()}


def medians(results):
    keys = {key for result in results for key in result}
    return {key: statistics.median(r[key] for r in results if key in r) for key in keys}


def cpu(result):
    return sum(value for key, value in result.items() if key.startswith("cpu "))


@contextlib.contextmanager
def display():
    """A display without a screen: its number, and what it has cost so far."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                              pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as answer:
        name = ":" + answer.readline().strip()

    def spent():
        fields = pathlib.Path(f"/proc/{server.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    try:
        yield name, spent
    finally:
        server.terminate()
        server.wait()


def table(title, head, rows):
    print(f"\n### {title}\n")
    print("| " + " | ".join(head) + " |")
    print("|" + "---|" * len(head))
    for row in rows:
        print("| " + " | ".join(row) + " |")
    sys.stdout.flush()


def number(value):
    return f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def cell(result, key, unit="s"):
    if not result:
        return "-"
    if "stoppedSeconds" in result:
        return f"stopped after {result['stoppedSeconds']:.0f} s at {result['stoppedMegabytes']:.1f} MB"
    value = key(result) if callable(key) else result.get(key)
    return "-" if value is None else f"{number(value)} {unit}".rstrip()


def ratio(results, here, key, over="tf5"):
    one, other = results.get(here), results.get(over)
    value = key if callable(key) else lambda result: result.get(key)
    if not one or not other or not value(one) or not value(other):
        return "-"
    return f"{value(other) / value(one):.1f} ×"
