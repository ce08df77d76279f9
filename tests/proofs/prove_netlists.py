"""Writes netlists as text, has netlist_prover change them, and proves with yosys that each computes what it did.

usage: prove_netlists.py PROVER [--self-test] [--keep FOLDER]

Expansions into gates are proven at small and at large widths, folding and merging on all patterns of constant, shared
and inverted inputs, selections with every kind of gate in front of them. Registers and latches are merged, and lose
loads that never happen; those proofs go over all sequences of inputs by induction.
"""
import itertools
import pathlib
import subprocess
import sys
import tempfile


class Text:
    """The lines of one netlist."""

    def __init__(self, cell, name):
        self.cell, self.name, self.lines, self.outputs, self.width = cell, name, [], [], 0

    def port(self, name, direction, width=None, nets=None):
        line = f"PORT NAME={name} DIRECTION={direction}"
        if width is not None:
            line += f" LEFT={width - 1} RIGHT=0"
        self.lines.append(line + (f" NET={nets}" if nets else ""))
        return name

    def inputs(self, **widths):
        for name, width in widths.items():
            self.port(name, "INPUT", width)

    def gate(self, kind, output=None, **roles):
        if output is None:
            output = f"w{len(self.lines)}"
            self.lines.append(f"NET NAME={output}")
        self.lines.append(f"GATE TYPE={kind} OUTPUT={output} " + self.roles(roles))
        return output

    def oper(self, kind, output, **roles):
        self.lines.append(f"OPERATOR TYPE={kind} OUTPUT={output} " + self.roles(roles))

    @staticmethod
    def roles(roles):
        return " ".join(f"{role.upper()}={net}" for role, net in roles.items() if net is not None)

    def result(self, net, width=1):
        self.outputs.append(net)
        self.width += width

    def text(self, last):
        if self.outputs:
            self.port("y", "OUTPUT", self.width, ",".join(self.outputs))
        head = f'NETLIST NAME={self.name} CELL={self.cell}' + (' KEY="last"' if last else "")
        return "\n".join([head] + self.lines)


def operator(name, kind, inputs, width, signed_compare=False, **roles):
    netlist = Text("expand", name)
    netlist.inputs(**inputs)
    netlist.port("y", "OUTPUT", width)
    if "cout" in roles:
        netlist.port("cout", "OUTPUT")
    netlist.oper(kind, "y", name="op", **roles)
    if signed_compare:
        netlist.lines.append("ATTRIBUTE OBJECT=op NAME=signed VALUE=1")
    return netlist


def expansions():
    for n, m in [(1, 1), (2, 3), (4, 4), (5, 2), (24, 33), (64, 64)]:
        yield operator(f"adder_{n}_{m}", "ADDER", {"c": None, "a": n, "b": m}, max(n, m), cin="c", input1="a",
                       input2="b", cout="cout")
    sizes = [(n, m) for n in range(1, 5) for m in range(1, 5)] + [(7, 3), (3, 7), (6, 6), (8, 4)]
    for signed in (0, 1):
        for n, m in sizes:
            yield operator(f"mult_{'su'[1 - signed]}_{n}_{m}", "MULT", {"a": n, "b": m}, n + m, signed=signed,
                           input1="a", input2="b")
        for n in (1, 2, 4, 32):
            yield operator(f"less_{signed}_{n}", "LESSTHAN", {"c": None, "a": n, "b": n}, 1, bool(signed), cin="c",
                           input1="a", input2="b")
    for kind, carry in (("SHIFT_LEFT", "c"), ("SHIFT_RIGHT", "c"), ("ROTATE_LEFT", None), ("ROTATE_RIGHT", None)):
        for n, m in [(1, 1), (4, 2), (5, 3), (3, 4), (32, 5), (33, 7)]:
            inputs = {"c": None} if carry else {}
            yield operator(f"{kind.lower()}_{n}_{m}", kind, {**inputs, "a": n, "b": m}, n, cin=carry, input1="a",
                           input2="b")
    for kind in ("AND", "NAND", "OR", "NOR", "XOR", "XNOR"):
        for n in (1, 2, 5, 64):
            yield operator(f"reduce_{kind.lower()}_{n}", f"REDUCE_{kind}", {"a": n}, 1, input1="a")
    for n in (1, 2, 4, 48):
        yield operator(f"equal_{n}", "EQUAL", {"a": n, "b": n}, 1, input1="a", input2="b")
        yield operator(f"select_{n}", "SELECTOR", {"a": n, "b": n}, 1, input1="a", input2="b")
        yield operator(f"prio_{n}", "PRIO_SELECTOR", {"c": None, "a": n, "b": n}, 1, cin="c", input1="a", input2="b")
    for n in (1, 2, 3, 6):
        yield operator(f"decoder_{n}", "DECODER", {"a": n}, 2 ** n, input1="a")
        yield operator(f"mux_{n}", "NTO1MUX", {"a": n, "b": 2 ** n}, 1, input1="a", input2="b")


class Sources:
    """The nets that a gate's input may be on: constants, inputs, inverted and buffered ones, one shared by nobody."""

    def __init__(self, netlist, unknown):
        self.netlist = netlist
        netlist.inputs(a=None, b=None, c=None)
        self.shared = {"zero": netlist.gate("GND"), "one": netlist.gate("PWR"), "a": "a", "b": "b", "c": "c",
                       "na": netlist.gate("INV", input="a"), "ba": netlist.gate("BUF", input="a")}
        if unknown:
            self.shared["x"] = netlist.gate("X")
            self.shared["z"] = netlist.gate("Z")

    def patterns(self, count, own=False, names=None):
        names = list(names or self.shared) + (["own"] if own else [])
        return itertools.product(names, repeat=count)

    def net(self, name):
        return self.netlist.gate("INV", input="b") if name == "own" else self.shared.get(name)


BINARY = ("AND", "NAND", "OR", "NOR", "XOR", "XNOR")


def foldings():
    for kind in BINARY:
        netlist = Text("propagate", f"propagate_{kind.lower()}")
        sources = Sources(netlist, unknown=True)
        for left, right in sources.patterns(2):
            netlist.result(netlist.gate(kind, input1=sources.net(left), input2=sources.net(right)))
        yield netlist
    netlist = Text("propagate", "propagate_inv")
    sources = Sources(netlist, unknown=True)
    for source, in sources.patterns(1):
        netlist.result(netlist.gate("INV", input=sources.net(source)))
    yield netlist
    for control in ("zero", "one", "a", "b", "na", "own"):
        netlist = Text("propagate", f"propagate_mux_{control}")
        sources = Sources(netlist, unknown=True)
        for in0, in1 in sources.patterns(2):
            netlist.result(netlist.gate("MUX", input1=sources.net(in0), input2=sources.net(in1),
                                        control=sources.net(control)))
        yield netlist
    netlist = Text("propagate", "propagate_fadd")
    sources = Sources(netlist, unknown=False)
    for cin, left, right in sources.patterns(3):
        carry = f"k{len(netlist.lines)}"
        netlist.lines.append(f"NET NAME={carry}")
        netlist.result(netlist.gate("FADD", cin=sources.net(cin), input1=sources.net(left), input2=sources.net(right),
                                    cout=carry))
        netlist.result(carry)
    yield netlist

    def marked(netlist, kind, **roles):
        name = f"f{len(netlist.lines)}"
        netlist.result(netlist.gate(kind, name=name, **roles))
        netlist.lines.append(f"ATTRIBUTE OBJECT={name} NAME=fold VALUE=1")

    for kind in ("AND", "OR", "INV", "MUX"):
        netlist = Text("fold", f"fold_{kind.lower()}")
        sources = Sources(netlist, unknown=True)
        names = list(sources.shared) + ["open"]
        for left, right, control in sources.patterns(3, names=names):
            if kind == "INV" and (right, control) == ("a", "a"):
                marked(netlist, kind, input=sources.net(left))
            elif kind in ("AND", "OR") and control == "a":
                marked(netlist, kind, input1=sources.net(left), input2=sources.net(right))
            elif kind == "MUX":
                marked(netlist, kind, input1=sources.net(left), input2=sources.net(right),
                       control=sources.net(control))
        yield netlist


def mergings():
    nets = ("a", "b", "c")
    for kind in BINARY:
        netlist = Text("merge", f"merge_{kind.lower()}")
        netlist.inputs(a=None, b=None, c=None)
        for left, right in itertools.product(nets, repeat=2):
            netlist.result(netlist.gate(kind, input1=left, input2=right))
        netlist.result(netlist.gate(kind, input1="a", input2="b"))
        yield netlist
    netlist = Text("merge", "merge_others")
    netlist.inputs(a=None, b=None, c=None)
    for _ in range(2):
        for net in nets:
            netlist.result(netlist.gate("INV", input=net))
            netlist.result(netlist.gate("BUF", input=net))
        for roles in itertools.product(nets, repeat=3):
            netlist.result(netlist.gate("MUX", **dict(zip(("input1", "input2", "control"), roles))))
        for constant in ("PWR", "GND"):
            netlist.result(netlist.gate(constant))
    yield netlist
    netlist = Text("merge", "merge_operators")
    netlist.inputs(a=3, b=3, c=None)
    words = 0

    def word(kind, width, **roles):
        nonlocal words
        netlist.lines.append(f"NETBUS NAME=v{words} LEFT={width - 1} RIGHT=0")
        netlist.oper(kind, f"v{words}", **roles)
        netlist.result(f"v{words}", width)
        words += 1

    for left, right in (("a", "b"), ("b", "a"), ("a", "b"), ("a", "a")):
        for kind, width in {"ADDER": 3, "MULT": 6, "DIV": 3, "MOD": 3, "EQUAL": 1, "LESSTHAN": 1, "SELECTOR": 1,
                            "PRIO_SELECTOR": 1, "NTO1MUX": 1, "SHIFT_LEFT": 3, "SHIFT_RIGHT": 3, "ROTATE_LEFT": 3,
                            "ROTATE_RIGHT": 3}.items():
            carry = "c" if kind in ("ADDER", "LESSTHAN", "SHIFT_LEFT", "SHIFT_RIGHT", "PRIO_SELECTOR") else None
            word(kind, width, cin=carry, input1=left, input2=right)
            if kind in ("MULT", "DIV", "MOD"):
                word(kind, width, signed=1, input1=left, input2=right)
        for kind in BINARY:
            word(f"REDUCE_{kind}", 1, input1=right)
        word("DECODER", 8, input1=right)
        for function in (0x96, 0xE8):
            word("LUT", 1, input1=right, function=function)
    for left, right, carry in 2 * [*itertools.product(("a[0]", "b[0]", "c"), repeat=3)]:
        netlist.lines.append(f"NET NAME=k{words}")
        netlist.result(netlist.gate("FADD", cin=carry, input1=left, input2=right, cout=f"k{words}"))
        netlist.result(f"k{words}")
        words += 1
    yield netlist


def registers():
    """Registers and latches whose data, clocks and asynchronous inputs are the same net, equal ones, or others."""
    for kind in ("DFF", "DFFRS", "DLATCH", "DLATCHRS"):
        for initial in ("", "1") if kind.startswith("DFF") else ("",):
            netlist = Text("merge", f"merge_{kind.lower()}{'_from_1' if initial else ''}")
            netlist.inputs(a=None, b=None, k=None, c=None)
            zero, other_zero, one = (netlist.gate(constant) for constant in ("GND", "GND", "PWR"))
            buffered, inverted = netlist.gate("BUF", input="k"), netlist.gate("INV", input="k")
            # Of the same data under another clock; registers that these clock are equal in a second step.
            divided = [netlist.gate("DFFRS", input="a", clk="k", set=net, reset=zero) for net in (zero, other_zero, "c")]
            for net in divided:
                netlist.result(net)
            clocks = ["k", buffered, inverted, *divided]
            forcing = [(zero, zero), (other_zero, zero), ("c", zero), ("c", one), (zero, "c"), ("c", "b")]
            names = ("set", "reset") if kind.endswith("RS") else ("async_cond", "async_val")
            for count, (data, clock, pair) in enumerate(itertools.product(("a", "b"), clocks, forcing)):
                name = f"r{count}"
                netlist.result(netlist.gate(kind, name=name, input=data, clk=clock, **dict(zip(names, pair))))
                if initial and count % 3 == 0:
                    netlist.lines.append(f"ATTRIBUTE OBJECT={name} NAME=\" :initial_value\" VALUE=1")
            yield netlist
    netlist = Text("unload", "unload_dffrs")
    netlist.inputs(a=None, b=None, k=None, c=None)
    zero, one = netlist.gate("GND"), netlist.gate("PWR")
    for load, data, forcing in itertools.product((zero, one, "b"), (zero, "a", "b"),
                                                 itertools.product((zero, "c"), (zero, "c", "b"))):
        netlist.result(netlist.gate("DFFRS", input="a", clk="k", set=forcing[0], reset=forcing[1], aload=load,
                                    adata=data))
    yield netlist


def pushes():
    """Selections among gates with one, two or no common inputs, and among adders with and without carries."""
    for selection in ("NTO1MUX", "SELECTOR"):
        for kind in BINARY:
            netlist = Text("push", f"push_{selection.lower()}_{kind.lower()}")
            netlist.inputs(a=None, b=None, c=None, d=None, s=2)
            zero, select = netlist.gate("GND"), "s"
            if selection == "SELECTOR":
                netlist.lines.append("NETBUS NAME=line LEFT=3 RIGHT=0")
                netlist.oper("DECODER", "line", input1="s")
                select = "line"
            for number, others in enumerate([("a", "b", "c", "a"), ("a", "a", "a", "a"), (zero, "a", zero, "b"),
                                             ("d", "a", "b", "c")]):
                data = [netlist.gate(kind, input1=net if at % 2 else "d", input2="d" if at % 2 else net)
                        for at, net in enumerate(others)]
                netlist.lines.append(f"NETBUS NAME=o{number} LEFT=0 RIGHT=0")
                netlist.oper(selection, f"o{number}", input1=select, input2=",".join(data))
                netlist.result(f"o{number}")
            yield netlist
        for kind in BINARY:
            netlist = Text("push", f"push_{selection.lower()}_{kind.lower()}_patterns")
            select = two_way_select(netlist, selection, a=None, b=None, c=None)
            nets = [netlist.gate("GND"), netlist.gate("PWR"), "a", "b", "c"]
            for pairs in itertools.product(itertools.combinations_with_replacement(nets, 2), repeat=2):
                data = [netlist.gate(kind, input1=one, input2=other) for one, other in pairs]
                select_bit(netlist, selection, select, data)
            yield netlist
        for carry in (None, "c", "one"):
            for with_carry_out in (False, True):
                name = f"push_{selection.lower()}_adders_{carry}_{int(with_carry_out)}"
                netlist = Text("push", name)
                select = two_way_select(netlist, selection, a=3, b=3, d=3, c=None)
                cin = netlist.gate("PWR") if carry == "one" else carry
                zero = netlist.gate("GND")
                for number, pair in enumerate(itertools.product(("a", "b", "d", ",".join(3 * [zero])), repeat=2)):
                    for word, (left, right) in {f"p{number}": ("a", "b"), f"q{number}": pair}.items():
                        netlist.lines += [f"NETBUS NAME={word} LEFT=2 RIGHT=0", f"NET NAME={word}c"]
                        netlist.oper("ADDER", word, cin=cin, input1=left, input2=right,
                                     cout=f"{word}c" if with_carry_out else None)
                    for bit in ["[0]", "[1]", "[2]"] + (["c"] if with_carry_out else []):
                        select_bit(netlist, selection, select, [f"p{number}{bit}", f"q{number}{bit}"])
                yield netlist


def two_way_select(netlist, selection, **inputs):
    netlist.inputs(**inputs, s=None)
    return "s" if selection == "NTO1MUX" else "s," + netlist.gate("INV", input="s")


def select_bit(netlist, selection, select, data):
    output = f"o{len(netlist.lines)}"
    netlist.lines.append(f"NETBUS NAME={output} LEFT=0 RIGHT=0")
    netlist.oper(selection, output, input1=select, input2=",".join(data))
    netlist.result(output)


def sums():
    """Disjunctions of two and of three products, of which some share nets, are buffered, or are read by others too."""
    shapes = ("a", "b", "a b", "b a", "a b c", "a (b c)", "(a d) (b c)", "buffered", "read", "na b")
    netlist = Text("sop", "sums_of_products")
    netlist.inputs(a=None, b=None, c=None, d=None)
    inverted, read = netlist.gate("INV", input="a"), netlist.gate("AND", input1="a", input2="b")

    def both(left, right):
        return netlist.gate("AND", input1=left, input2=right)

    def product(shape):
        return {"a b": lambda: both("a", "b"), "b a": lambda: both("b", "a"), "a b c": lambda: both(both("a", "b"), "c"),
                "a (b c)": lambda: both("a", both("b", "c")),
                "(a d) (b c)": lambda: both(both("a", "d"), both("b", "c")), "read": lambda: read,
                "buffered": lambda: netlist.gate("BUF", input=both("a", "b")),
                "na b": lambda: both(inverted, "b")}.get(shape, lambda: shape)()

    terms = [*itertools.product(shapes, repeat=2), *itertools.combinations(shapes, 3)]
    for form, names in itertools.product(("plain", "common"), terms):
        name = f"sum{len(netlist.lines)}"
        nets = [product(shape) for shape in names]
        netlist.lines.append(f"NETBUS NAME=o{name} LEFT=0 RIGHT=0")
        netlist.oper("REDUCE_OR", f"o{name}", name=name, input1=",".join(nets))
        netlist.lines.append(f"ATTRIBUTE OBJECT={name} NAME=sop VALUE={form}")
        netlist.result(f"o{name}")
    yield netlist


def write(netlists, path):
    cells = sorted({netlist.cell for netlist in netlists})
    lines = ["LIBRARY NAME=text"] + [f"CELL NAME={cell} LIBRARY=text" for cell in cells]
    lines += [netlist.text(netlist is netlists[-1]) for netlist in netlists]
    path.write_text("\n".join(lines) + "\n")


def proof(netlist):
    name = netlist.name
    if any(word in netlist.name for word in ("dff", "dlatch")):
        return (f"miter -equiv -flatten -make_outputs gold_{name} gate_{name} miter_{name}; "
                f"clk2fflogic miter_{name}; sat -verify -tempinduct -maxsteps 4 -prove trigger 0 miter_{name}")
    return (f"miter -equiv -flatten -ignore_gold_x -make_outputs gold_{name} gate_{name} miter_{name}; "
            f"sat -verify -enable_undef -set-def-inputs -prove trigger 0 miter_{name}")


def yosys(folder, netlists):
    script = folder / "prove.ys"
    script.write_text("read_verilog -icells gold.v gate.v\nproc\nopt_clean\n" + "".join(proof(netlist) + "\n" for netlist in netlists))
    return subprocess.run(["yosys", "-q", "-s", str(script)], cwd=folder, capture_output=True, text=True)


def prove(prover, folder):
    netlists = [*expansions(), *foldings(), *mergings(), *registers(), *pushes(), *sums()]
    write(netlists, folder / "netlists.txt")
    run = subprocess.run([prover, "netlists.txt", "gold.v", "gate.v"], cwd=folder, capture_output=True, text=True)
    print(run.stderr, end="")
    if run.returncode:
        return 1
    done = yosys(folder, netlists)
    print(f"{len(netlists)} netlists handed to yosys")
    if done.returncode:
        print(done.stdout[-2000:], done.stderr[-2000:])
    return done.returncode


def self_test(prover, folder):
    """An inverted output has to be noticed in one netlist of each kind."""
    netlists = [operator("adder", "ADDER", {"a": 9, "b": 9}, 9, input1="a", input2="b"),
                next(foldings()), next(mergings()), next(registers()), *[*registers()][-1:], next(pushes()), next(sums())]
    write(netlists, folder / "netlists.txt")
    run = subprocess.run([prover, "netlists.txt", "gold.v", "gate.v", "fault"], cwd=folder, capture_output=True,
                         text=True)
    unnoticed = [netlist.name for netlist in netlists if not yosys(folder, [netlist]).returncode]
    print(run.stderr, unnoticed)
    return 1 if run.returncode or unnoticed else 0


def main():
    arguments = sys.argv[1:]
    action = self_test if "--self-test" in arguments else prove
    if "--keep" in arguments:
        folder = pathlib.Path(arguments[arguments.index("--keep") + 1])
        folder.mkdir(parents=True, exist_ok=True)
        return action(arguments[0], folder)
    with tempfile.TemporaryDirectory() as folder:
        return action(arguments[0], pathlib.Path(folder))


sys.exit(main())
