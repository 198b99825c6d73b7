"""Runs benchmark programs and keeps what they measured."""

import json
import os
import pathlib
import statistics
import subprocess
import tempfile

OURS = "tv"
NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


class Figure:
    """One side of a row: nanoseconds an item, or a byte where the row counts bytes."""

    def __init__(self, time, spread, is_rate, error=""):
        self.time = time
        self.spread = spread
        self.is_rate = is_rate
        self.error = error

    @staticmethod
    def of(entries):
        for entry in entries:
            if entry.get("error_occurred"):
                return Figure(0.0, 0.0, False, entry.get("error_message", "failed"))
        times = [time_of(entry) for entry in entries]
        spread = statistics.pstdev(times) / statistics.mean(times)
        return Figure(statistics.median(times), spread, "bytes_per_second" in entries[0])

    def text(self):
        if self.error:
            return f"skipped: {self.error}"
        if self.is_rate:
            return f"{1e3 / self.time:.0f} MB/s"
        for unit, size in (("ms", 1e6), ("us", 1e3)):
            if self.time >= 10 * size:
                return f"{self.time / size:.1f} {unit}"
        return f"{self.time:.3g} ns" if self.time < 100 else f"{self.time:.0f} ns"


def time_of(entry):
    for counter in ("bytes_per_second", "items_per_second"):
        if counter in entry:
            return 1e9 / entry[counter]
    return entry["cpu_time"] * NS[entry["time_unit"]]


def run(program, repetitions, pattern):
    """What one program measured, as Google Benchmark's entries of single runs."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [
            str(program),
            f"--benchmark_repetitions={repetitions}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_min_time=0.05",
            f"--benchmark_out={out.name}",
            "--benchmark_out_format=json",
        ]
        if pattern:
            command.append(f"--benchmark_filter={pattern}")
        # Allocators that are loaded later need room for their thread's data.
        environment = dict(os.environ, GLIBC_TUNABLES="glibc.rtld.optional_static_tls=16384")
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment)
        text = pathlib.Path(out.name).read_text()
    entries = json.loads(text)["benchmarks"] if text else []
    kept = ("name", "run_name", "cpu_time", "time_unit", "bytes_per_second", "items_per_second", "error_occurred",
            "error_message")
    return [{key: entry[key] for key in kept if key in entry}
            for entry in entries if entry.get("run_type", "iteration") == "iteration"]


def figures(entries):
    """{row: {who: Figure}} of one program's entries, rows in the order of their names."""
    sides = {}
    for entry in entries:
        row, _, who = entry.get("run_name", entry["name"]).rpartition("/")
        sides.setdefault(row, {}).setdefault(who, []).append(entry)
    return {row: {who: Figure.of(runs) for who, runs in sorted(whos.items())}
            for row, whos in sorted(sides.items(), key=lambda item: natural(item[0]))}


def natural(row):
    """Sorts sizes by value."""
    return [(0, int(part), "") if part.isdigit() else (1, 0, part) for part in row.split("/")]
