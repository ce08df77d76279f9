"""The list of designs and what the independent tools need to know of each: sources, include folders, ports."""

import json
import re
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


@dataclass
class Port:
    name: str
    width: int
    direction: str


@dataclass
class Design:
    name: str
    host_arguments: list
    sources: list
    include_dirs: list
    top: str
    parameters: dict
    method: str
    options: dict = field(default_factory=dict)
    cycles: int = 1000

    @property
    def is_systemverilog(self):
        return any(source.suffix == ".sv" for source in self.sources)


def read_file_list(path):
    """The sources and include folders of a file list; paths are relative to the list."""
    sources, include_dirs = [], []
    words = []
    for line in path.read_text().splitlines():
        words += re.split(r"#|//", line)[0].split()
    words = iter(words)
    for word in words:
        if word == "-I":
            include_dirs.append(path.parent / next(words))
        else:
            sources.append(path.parent / word)
    return sources, include_dirs


def parse_design(line):
    name, files, top, parameters, method = [part.strip() for part in line.split("|")]
    sources, include_dirs, host_arguments = [], [], []
    words = iter(files.split())
    for word in words:
        if word == "-f":
            path = ROOT / next(words)
            more, dirs = read_file_list(path)
            sources += more
            include_dirs += dirs
            host_arguments += ["-f", str(path)]
        else:
            sources.append(ROOT / word)
            host_arguments.append(str(ROOT / word))
    kind, *rest = method.split()
    design = Design(name, host_arguments, sources, include_dirs, top,
                    dict(p.split("=", 1) for p in parameters.split()), kind)
    for word in rest:
        if "=" in word:
            key, value = word.split("=", 1)
            design.options[key] = value
        else:
            design.cycles = int(word)
    return design


def read_designs(path):
    lines = (line.split("#")[0].strip() for line in Path(path).read_text().splitlines())
    return [parse_design(line) for line in lines if line]


def run(command, directory, limit=600):
    """Runs a tool; a failure carries its output."""
    done = subprocess.run([str(word) for word in command], cwd=directory, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=limit)
    if done.returncode:
        raise RuntimeError(f"{command[0]} ended with {done.returncode}:\n{done.stdout[-2000:]}")
    return done.stdout


def yosys_read_gold(design):
    """The commands by which yosys reads the source of a design, with its parameters."""
    includes = "".join(f" -I{d}" for d in design.include_dirs)
    sources = " ".join(str(s) for s in design.sources)
    parameters = "".join(f" -chparam {k} {v}" for k, v in design.parameters.items())
    dialect = " -sv" if design.is_systemverilog else ""
    return f"read_verilog{dialect}{includes} {sources}; hierarchy -check -top {design.top}{parameters}; rename -top gold"


def yosys_read_gate(netlist):
    return f"read_verilog {netlist}; hierarchy -check -auto-top; rename -top gate"


def top_ports(commands, module, directory):
    """Ports of a module in declaration order, as yosys sees them."""
    run(["yosys", "-q", "-p", f"{commands}; proc; write_json ports.json"], directory)
    ports = json.loads((directory / "ports.json").read_text())["modules"][module]["ports"]
    return [Port(name, len(p["bits"]), p["direction"]) for name, p in ports.items()]


def ports_of(design, netlist, directory):
    """The ports of a design as its source declares them. A construct that yosys does not know leaves the ports of the
    netlist, which the simulator connects by name."""
    try:
        return top_ports(yosys_read_gold(design), "gold", directory)
    except RuntimeError:
        return top_ports(yosys_read_gate(netlist), "gate", directory)


def synthesize(design, host, directory, outputs=("gate.v",), flags=()):
    """The gate netlist of a design, as zelk-host writes it: the paths of the outputs, or the only one."""
    paths = [directory / name for name in outputs]
    parameters = [word for k, v in design.parameters.items() for word in ("-G", f"{k}={v}")]
    settings = ["--set", design.options["set"]] if "set" in design.options else []
    written = [word for path in paths for word in ("-o", path)]
    run([host, "--quiet", *flags, "--top", design.top, *settings, *parameters, *design.host_arguments, *written], directory)
    return paths if len(paths) > 1 else paths[0]


def top_module_name(netlist, directory):
    """The name of the top module of a netlist, as it stands in the file."""
    run(["yosys", "-q", "-p", f"read_verilog {netlist}; hierarchy -auto-top; proc; write_json top.json"], directory)
    modules = json.loads((directory / "top.json").read_text())["modules"]
    return next(name for name, m in modules.items() if int(m["attributes"].get("top", "0"), 2))
