"""Proof of equivalence with yosys: by SAT over one clock step, with registers matched by name and cut at their outputs
(equal states and inputs give equal next states and outputs), else from reset by temporal induction.
A proof over one step says nothing of what happens between clock edges, so registers are simulated as well.
yosys' own equiv_induct is not used: it checks no base case, so that a difference which contradicts its assumptions
passes as proven."""

from pathlib import Path

from design import run, yosys_read_gate, yosys_read_gold
from simulate import simulate

ADFF_MAP = Path(__file__).with_name("adff_to_dff.v")

def is_sequential(design, directory):
    out = run(["yosys", "-p", f"{yosys_read_gold(design)}; proc; flatten; memory; opt_clean; "
                              "select -count t:$*ff* t:$*latch* t:$mem*"], directory)
    return not any(line.strip() == "0 objects." for line in out.splitlines())


def load_both(design, netlist, lower):
    return (f"{yosys_read_gold(design)}; {lower}; design -stash gold; "
            f"{yosys_read_gate(netlist)}; {lower}; design -stash gate; "
            "design -copy-from gold -as gold gold; design -copy-from gate -as gate gate")


def prove_combinational(design, netlist, directory):
    script = (f"{load_both(design, netlist, 'proc; flatten; opt_clean')}; "
              "miter -equiv -flatten -make_outputs -ignore_gold_x gold gate miter; hierarchy -top miter; "
              "sat -verify -timeout 300 -enable_undef -set-def-inputs -prove trigger 0 -show-ports miter")
    run(["yosys", "-q", "-p", script], directory)
    return "proven"


def prove_one_step(design, netlist, directory):
    lower = f"proc; flatten; memory -nordff; techmap -map {ADFF_MAP}; dffunmap; opt_clean"
    script = (f"{load_both(design, netlist, lower)}; expose -dff -evert-dff -shared gold gate; "
              "miter -equiv -flatten -make_outputs -ignore_gold_x gold gate miter; hierarchy -top miter; "
              "select -assert-none t:$*ff* t:$*latch*; "
              "sat -verify -timeout 300 -enable_undef -set-def-inputs -prove trigger 0 -show-ports miter")
    run(["yosys", "-q", "-p", script], directory)
    return "proven by one step of induction"


def reset_constraint(design, ports):
    """SAT constraints that hold reset in the first steps."""
    for port in ports:
        if port.name in ("rst_n", "reset_n", "rstn"):
            return f"-set-at 1 in_{port.name} 0"
        if port.name in ("rst", "reset"):
            return f"-set-at 1 in_{port.name} 1"
    return ""


def prove_from_reset(design, netlist, ports, directory, depth):
    lower = "proc; flatten; memory -nordff; async2sync; opt_clean; zinit -all"
    script = (f"{load_both(design, netlist, lower)}; "
              "miter -equiv -flatten -make_outputs -ignore_gold_x gold gate miter; hierarchy -top miter; "
              f"sat -verify -timeout 400 -set-def-inputs -seq 2 {reset_constraint(design, ports)} "
              f"-prove trigger 0 -tempinduct -maxsteps {depth} miter")
    run(["yosys", "-q", "-p", script], directory)
    return "proven from reset by temporal induction"


def prove_at_once(design, netlist, directory):
    """The proof that looks at no more than one step."""
    if not is_sequential(design, directory):
        return prove_combinational(design, netlist, directory)
    return prove_one_step(design, netlist, directory)


def prove(design, netlist, ports, directory):
    if not is_sequential(design, directory):
        return prove_combinational(design, netlist, directory)
    try:
        verdict = prove_one_step(design, netlist, directory)
    except RuntimeError:  # registers that carry other names or another encoding on one side
        verdict = prove_from_reset(design, netlist, ports, directory, depth=24)
    return f"{verdict}; {simulate(design, netlist, ports, directory)}"
