#!/bin/sh
# compare_scanner.sh BUILD_DIR: the scanner against `iverilog -E` on the same generated source of 20 MB, in the same run.
# Both preprocess; the scanner makes tokens as well. Fails when the scanner is the slower one.
set -eu
bench=${1:?usage: compare_scanner.sh BUILD_DIR}/bin/bench_scanner
command -v iverilog >/dev/null || { echo "compare_scanner.sh: no iverilog to compare with" >&2; exit 2; }

source=$(mktemp --suffix=.v)
trap 'rm -f "$source"' EXIT
report=$(ZELK_BENCH_SOURCE=$source "$bench" --benchmark_filter='ScanFile/100$' --benchmark_format=json)

exec python3 - "$source" "$report" <<'PYTHON'
import json
import os
import subprocess
import sys
import time

source, report = sys.argv[1:]
megabytes = os.path.getsize(source) / 1e6


def reference():
    start = time.perf_counter()
    subprocess.run(["iverilog", "-E", "-o", "/dev/null", source], check=True)
    return time.perf_counter() - start


ours = json.loads(report)["benchmarks"][0]["real_time"] / 1e3  # milliseconds
theirs = min(reference() for _ in range(5))
print(f"{megabytes:.1f} MB: scanner {megabytes / ours:.0f} MB/s, iverilog -E {megabytes / theirs:.0f} MB/s, "
      f"ratio {theirs / ours:.2f}")
sys.exit(ours > theirs)
PYTHON
