"""Dumps of the examples at labels of the pipeline: iverilog reads those for the viewer, texts are the same in two runs,
of which one has its objects at other addresses.

usage: check_dumps.py HOST EXAMPLES_FOLDER
"""
import pathlib
import subprocess
import sys
import tempfile

# What runs a program without randomised addresses; nothing where the system does not allow that.
FIXED = ["setarch", "-R"]
if subprocess.run([*FIXED, "true"], stderr=subprocess.DEVNULL).returncode:
    FIXED = []

LABELS = ["before_dff_extraction", "after_dff_extraction", "after_cse"]


def dump(host, file_list, folder, prefix=()):
    """Elaborates an example in a folder; its dumps and its netlist by name."""
    (folder / "db").mkdir(parents=True)
    flags = [f"zelk_{kind}_netlist_{label}=on" for label in LABELS for kind in ("dump", "debussy_dump")]
    flags += ["zelk_dump_netlist=on", "zelk_debussy_dump_netlist=on"]
    options = [word for flag in flags for word in ("--set", flag)]
    subprocess.run([*prefix, host, "-f", str(file_list), "--quiet", *options, "-o", "out.v"], cwd=folder, check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return {path.name: path for path in [*sorted((folder / "db").iterdir()), folder / "out.v"]}


def check(host, file_list, folder):
    first = dump(host, file_list, folder / "first")
    second = dump(host, file_list, folder / "second", FIXED)
    faults = [] if first and first.keys() == second.keys() else ["dumps are missing"]
    for name, path in first.items():
        if name in second and path.read_bytes() != second[name].read_bytes():
            faults.append(f"{name} differs in two runs")
        if path.suffix == ".v":
            run = subprocess.run(["iverilog", "-t", "null", str(path)], capture_output=True, text=True)
            if run.returncode:
                faults.append(f"{name}: {run.stderr.splitlines()[:2]}")
    for label in LABELS:
        if not any(label in name and name.endswith(".v") for name in first):
            faults.append(f"no dump at {label}")
    return faults


def main():
    host, examples = sys.argv[1:]
    faults = []
    for file_list in sorted(pathlib.Path(examples).glob("*/files.f")):
        with tempfile.TemporaryDirectory() as folder:
            found = check(host, file_list, pathlib.Path(folder))
            faults += [f"{file_list.parent.name}: {fault}" for fault in found]
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
