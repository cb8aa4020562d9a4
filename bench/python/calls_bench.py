#!/usr/bin/env python3
"""What a call through the Python module costs beside the same call in C++, in the same run.

    PYTHONPATH=build/release/python bench/python/calls_bench.py build/release/bench/python/python_calls_bench

With --quick as well each is called once, so that ctest sees it run. Pictures are given as a Picture and
as a Picture's own samples, beside a Picture in C++, and as an array, which is copied once, beside
samples in a host's memory in C++, which are copied once too.
"""

import json
import subprocess
import sys
import time
from collections.abc import Callable

import greycard.core as core
import numpy as np

MICROSECONDS = {"ns": 1e-3, "us": 1.0, "ms": 1e3}


def in_cpp(program: str, quick: bool) -> dict[str, float]:
    """Microseconds of each call on the processor, the median of several runs."""
    options = ["--benchmark_format=json", f"--benchmark_min_time={0.001 if quick else 0.5}"]
    if not quick:
        options += ["--benchmark_repetitions=5", "--benchmark_report_aggregates_only"]
    text = subprocess.run([program, *options], check=True, capture_output=True).stdout
    return {
        one["run_name"]: one["cpu_time"] * MICROSECONDS[one["time_unit"]]
        for one in json.loads(text)["benchmarks"]
        if one.get("aggregate_name", "median") == "median"
    }


def in_python(call: Callable[[], object], quick: bool) -> float:
    """The same through the module."""
    times = []
    end = time.process_time() + (0 if quick else 2.5)
    count = 1
    while not times or time.process_time() < end:
        start = time.process_time()
        for _ in range(count):
            call()
        spent = time.process_time() - start
        times.append(spent / count * 1e6)
        if spent < 1e-3:
            count *= 2
    return float(np.median(times[-max(3, len(times) // 2) :]))


def calls() -> list[tuple[str, str, Callable[[], object]]]:
    """Name in C++, how it is given, call."""
    table = core.identityLut2d()

    def access() -> None:
        table.lut_2d_h[5] += 1.0

    a, b = np.array([50.0, 10.0, 20.0]), np.array([52.0, 11.0, 18.0])
    matrix = np.array([[1.6, -0.5, -0.1], [-0.2, 1.5, -0.3], [0.0, -0.6, 1.6]])
    gains = np.ones(3)
    found = [
        ("NearestNode", "a table", lambda: core.nearestNode(table, 121.0, 0.5)),
        ("TableAccess", "an entry", access),
        ("DeltaE2000", "arrays", lambda: core.deltaE2000(a, b)),
    ]
    for bits, dtype in ((8, np.uint8), (16, np.uint16)):
        samples = (np.arange(4000 * 3000 * 3, dtype=np.uint32) * 7 % 251).astype(dtype)
        array = samples.reshape(3000, 4000, 3)
        whole = core.Picture(array)
        forms = [("a Picture", whole), ("an array", array)]
        if bits == 16:
            forms.append(("its samples", np.asarray(whole)))
        for given, picture in forms:
            where = "onMemoryOf" if given == "an array" else "onPicture"
            detector, levels = core.MCCDetector(), core.SampleLevels()
            found += [
                (
                    f"{where}/Histograms/{bits}",
                    given,
                    lambda picture=picture: core.exposureHistograms(picture, 255),
                ),
                (
                    f"{where}/Correct/{bits}",
                    given,
                    lambda picture=picture: core.correctPicture(picture, levels, gains, matrix),
                ),
                (f"{where}/Detect/{bits}", given, lambda picture=picture: detector.detect(picture)),
            ]
    return found


def main() -> None:
    quick = "--quick" in sys.argv
    core.setErrorChannel(None)
    cpp = in_cpp(sys.argv[1], quick)
    print(f"{'call':24} {'given':11} {'C++ us':>12} {'Python us':>12} {'more us':>10} {'more':>8}")
    for name, given, call in calls():
        spent = in_python(call, quick)
        more = spent - cpp[name]
        print(
            f"{name:24} {given:11} {cpp[name]:12.2f} {spent:12.2f} {more:10.2f} {more / cpp[name]:8.1%}"
        )


if __name__ == "__main__":
    main()
