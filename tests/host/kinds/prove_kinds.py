"""Proves with yosys that each node kind, as the writers write it, does what it means.

prove_kinds.py WRITE_KINDS
"""

import subprocess
import sys
import tempfile
from pathlib import Path

# Flip-flops with asynchronous controls and latches are compared as they behave between clock edges too.
PREPARE = "proc; flatten; opt_clean; async2sync; opt_clean"
TRISTATE = ("bidirectional_pad", "shared_bus")


def script(gold, gate, name):
    read_gate = f"read_json {gate}" if gate.suffix == ".json" else f"read_verilog {gate}"
    prepare = PREPARE.replace("flatten", "flatten; tribuf -logic") if name == "shared_bus" else PREPARE
    return (f"read_verilog {gold}; {prepare}; design -stash gold; "
            f"{read_gate}; hierarchy -check -auto-top; {prepare}; design -stash gate; "
            "design -copy-from gold -as gold gold; design -copy-from gate -as gate gate; "
            "miter -equiv -flatten -ignore_gold_x gold gate miter; hierarchy -top miter; "
            "sat -verify -prove trigger 0 -tempinduct -set-init-undef -set-def-inputs -seq 1 -maxsteps 12 -show-ports miter")


def compare_text(gold, gate, name):
    """Tristate ports are beyond a proof; both must become the same cells."""
    counts = []
    for path in (gold, gate):
        read = f"read_json {path}" if path.suffix == ".json" else f"read_verilog {path}"
        done = run(f"{read}; proc; opt_clean; tribuf; opt; stat")
        cells = [line.split() for line in done.stdout.splitlines() if line.strip().startswith("$")]
        counts.append(sorted((cell[0], cell[1]) for cell in cells))
    return None if counts[0] == counts[1] else f"cells differ: {counts}"


def run(commands):
    return subprocess.run(["yosys", "-q", "-p", commands] if "stat" not in commands else ["yosys", "-p", commands],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120)


def check(gold, gate, name):
    if name == "bidirectional_pad":
        return compare_text(gold, gate, name)
    done = run(script(gold, gate, name))
    return None if done.returncode == 0 else done.stdout[-2000:]


def main():
    failed = 0
    with tempfile.TemporaryDirectory() as scratch:
        directory = Path(scratch)
        names = subprocess.run([sys.argv[1], scratch], stdout=subprocess.PIPE, text=True, check=True).stdout.split()
        for name in names:
            for kind in ("v", "json"):
                gate = directory / f"{name}.gate.{kind}"
                problem = check(directory / f"{name}.gold.v", gate, name)
                if problem:
                    failed += 1
                    print(f"{name} as {kind}: {problem}\n{gate.read_text()[:3000] if kind == 'v' else ''}")
    print(f"{len(names)} kinds, {failed} failures")
    sys.exit(failed != 0)


if __name__ == "__main__":
    main()
