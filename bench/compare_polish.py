#!/usr/bin/env python3
"""compare_polish.py BENCH_POLISH: how long the whole pipeline takes beside three passes of yosys on the same netlists.

bench_polish makes netlists of 10,000, 100,000 and 1,000,000 gates, polishes each and leaves it as yosys reads it. The
table tells the processor seconds of the pipeline and of `opt_clean; opt_expr; opt_merge` (a run that reads the netlist is
taken off one that also runs them), their ratio, and how each scope grows from size to size (1 is linear)."""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from compare_analysis import measure

PIPELINE = "***Polishing the netlist***"


def polish(bench, folder):
    """Milliseconds and exponents by scope and size."""
    report = subprocess.run([bench, "--benchmark_filter=Polish gates", "--benchmark_format=json"], check=True, text=True,
                            stdout=subprocess.PIPE, env={**os.environ, "ZELK_BENCH_RTLIL": folder}).stdout
    scopes = {}
    for run in json.loads(report)["benchmarks"]:
        if run.get("run_type") == "iteration":
            scope, size = run["name"].removeprefix("Polish gates: ").split("/")[:2]
            scopes.setdefault(scope, {})[int(size)] = (run["real_time"], run.get("exponent"))
    return scopes


def yosys(netlist, passes):
    return measure(["yosys", "-q", "-p", "; ".join([f"read_rtlil {netlist}", *passes])])[0]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory() as folder:
        scopes = polish(sys.argv[1], folder)
        print(f"{'gates':>8} {'polish s':>9} {'yosys s':>9} {'faster':>8}")
        for size, (milliseconds, _) in scopes[PIPELINE].items():
            netlist = Path(folder) / f"gates_{size}.il"
            seconds = yosys(netlist, ["opt_clean", "opt_expr", "opt_merge"]) - yosys(netlist, [])
            print(f"{size:8} {milliseconds / 1000:9.3f} {seconds:9.3f} {seconds * 1000 / milliseconds:7.1f}x", flush=True)
    print(f"\n{'scope':42} {'ms':>28} {'exponents':>12}")
    for scope, sizes in scopes.items():
        times = " ".join(f"{milliseconds:9.2f}" for milliseconds, _ in sizes.values())
        print(f"{scope:42} {times} " + " ".join(f"{exponent:5.2f}" for _, exponent in sizes.values() if exponent))


if __name__ == "__main__":
    main()
