"""Random modules and hierarchies of generated designs.

The rules that leave no choice to a tool: a combinational item reads only what stands before it, registers start with a
value or with a reset, clocks, resets and latch enables are inputs that change one at a time, data changes between them."""

import random
from dataclasses import dataclass, field

from genexpr import Signal
from genextra import EXTRA_ITEMS, Extras
from gentree import Node, listing

CONTROLS = ["clk0", "clk1", "arst", "arst_n", "srst", "srst_n", "le0", "le1"]


@dataclass
class Port:
    name: str
    width: int
    direction: str


@dataclass
class Design:
    seed: int
    dialect: str
    top: str
    root: Node
    ports: list
    is_initialised: bool  # registers have their values from the first moment on
    counts: dict = field(default_factory=dict)


class Module(Extras):
    """One module: items are added one by one, each over the signals of those before."""

    def __init__(self, maker, name, is_top):
        super().__init__(maker.random, maker.counts, maker.dialect)
        self.maker = maker
        self.name = name
        self.is_top = is_top
        self.is_initialised = maker.is_initialised
        self.ports = []  # (direction, signal, node of the declaration's type)
        self.items = []
        self.parameters = []  # (name, value, larger value that also fits)
        self.controls = set()
        self.observed = []  # signals that leave through outputs
        self.outputs = []  # what no reduction may take away: an output without a value would be unknown inside
        self.subroutines = []

    # Frame

    def build(self, size):
        for _ in range(self.random.randint(0, 2)):
            self.add_parameter()
        for number in range(self.random.randint(1, 4)):
            self.ports.append(("input", self.variable(f"in{number}"), "wire"))
            self.readable.append(self.ports[-1][1])
        if not any(s.width > 1 for s in self.readable):
            self.ports.append(("input", Signal("inw", 4, False, (3, 0)), "wire"))
            self.readable.append(self.ports[-1][1])
        self.inputs = list(self.readable)
        if self.maker.imports:
            self.use_package()
        for _ in range(size):
            self.grouped_item(self.pick(self.maker.items)[1])
        if not self.observed:
            self.grouped_item(Module.add_wire)
        self.add_outputs()
        return self

    def grouped_item(self, add):
        """What is declared and what gives it a value shrinks together, so that nothing is left without a value."""
        start = len(self.items)
        add(self)
        pieces = self.items[start:]
        for piece in pieces:
            piece.kind = ""
        self.items[start:] = [Node("item", *pieces)]

    def add_parameter(self):
        name = self.fresh("P")
        value = self.random.randint(1, 9)
        self.parameters.append((name, value, value + self.random.randint(0, 4)))
        self.constants.append((name, False))
        self.note("parameter")

    def add_item(self, *parts):
        self.items.append(Node("item", *parts, "\n"))

    def publish(self, *signals):
        self.readable += signals
        self.observed += signals

    def control(self, name):
        self.controls.add(name)
        return name

    def declare(self, signal, keyword=None):
        self.items.append(Node("item", self.declaration(signal, keyword), "\n"))

    def wire_keyword(self):
        return self.random.choice(["wire", "wire", "tri"]) if self.dialect == "v" else self.random.choice(["wire", "logic"])

    def add_outputs(self):
        """Every signal leaves the module, so that each is compared."""
        number = 0
        rest = [s for s in self.observed if not s.unpacked]
        for array in (s for s in self.observed if s.unpacked):
            self.add_array_output(array)
        while rest:
            chosen, rest = rest[:3], rest[3:]
            width = sum(s.total() for s in chosen)
            port = Signal(f"out{number}", width, False, (width - 1, 0))
            number += 1
            self.ports.append(("output", port, "wire"))
            elements = [Node("expr", s.name) for s in chosen]
            self.outputs.append(Node("", f"assign {port.name} = {{", listing(elements) if self.is_top else self.joined(elements), "};\n"))

    def add_array_output(self, array):
        port = Signal(self.fresh("oa"), array.total(), False, (array.total() - 1, 0))
        self.ports.append(("output", port, "wire"))
        path = "".join(f"[{self.index(min(d), max(d))}]" for d in array.unpacked)
        self.outputs.append(Node("", f"assign {port.name} = {array.name}{path};\n"))

    def port_list(self):
        rows = [("input", Signal(name, 1), "wire") for name in CONTROLS if name in self.controls]
        return rows + self.ports

    def text(self):
        rows = self.port_list()
        if self.dialect == "v" and self.chance(35):
            self.note("ports not ANSI")
            names = self.joined([s.name for _, s, _ in rows])
            parameters = [f"parameter {name} = {value};\n" for name, value, _ in self.parameters]
            declarations = [Node("", self.port_text(row), ";\n") for row in rows]
            return Node("item", f"module {self.name}(", names, ");\n", *parameters, *declarations,
                        Node("list", *self.items), *self.outputs, "endmodule\n")
        self.note("ports ANSI")
        parameters = ", ".join(f"parameter {name} = {value}" for name, value, _ in self.parameters)
        return Node("item", f"module {self.name}", self.maker.import_text(), f" #({parameters})" if parameters else "", " (\n  ",
                    self.joined([self.port_text(row) for row in rows], ",\n  "), ");\n", Node("list", *self.items), *self.outputs, "endmodule\n")

    def port_text(self, row):
        direction, signal, kind = row
        kind = "" if kind == "wire" else " " + kind
        span = signal.range_text()
        return f"{direction}{kind}{' signed' if signal.signed else ''}{' ' + span if span else ''} {signal.name}"

    # Combinational items

    def add_wire(self):
        signal = self.variable(self.fresh("w"))
        if self.chance(30):
            self.note("wire with value")
            text = self.declaration(signal, self.wire_keyword() if self.dialect == "v" else "wire")
            self.add_item(text[:-1], " = ", self.expression(3), ";")
        elif signal.bounds and signal.width > 1 and self.chance(35):
            self.note("assign of parts")
            self.declare(signal, self.wire_keyword())
            left, right = signal.bounds
            middle = self.random.randint(min(left, right), max(left, right) - 1)
            parts = [(left, middle + 1), (middle, right)] if left > right else [(left, middle), (middle + 1, right)]
            for first, last in parts:
                self.add_item(f"assign {signal.name}[{first}:{last}] = ", self.expression(2), ";")
        else:
            self.note("assign")
            self.declare(signal, self.wire_keyword())
            self.add_item(f"assign {signal.name} = ", self.expression(4), ";")
        self.publish(signal)

    def add_concat_assign(self):
        self.note("assign to concatenation")
        signals = [self.variable(self.fresh("w")) for _ in range(2)]
        for signal in signals:
            self.declare(signal, "wire")
        self.add_item("assign {", f"{signals[0].name}, {signals[1].name}", "} = ", self.expression(3), ";")
        self.publish(*signals)

    def new_targets(self, stem, count, operator):
        targets = [self.target(self.fresh(stem)) for _ in range(count)]
        for signal in targets:
            self.operators[signal.name] = operator
        return targets

    def target(self, name):
        kinds = [(10, "vector")]
        if self.dialect != "v":
            kinds += [(2, "packed"), (2, "type")]
        kind = self.pick(kinds)[1]
        signal = self.variable(name)
        if kind == "packed":
            self.note("packed dimensions")
            signal.bounds = signal.bounds or (0, 0)
            signal.packed = [self.random.choice([(1, 0), (0, 2), (3, 0)])]
            signal.signed = False  # elements of a signed array are unsigned, but both simulators give them a sign
        elif kind == "type" and self.maker.types:
            return self.maker.typed(self, name)
        return signal

    def declare_target(self, signal, suffix=""):
        type_name = self.maker.type_of.get(id(signal))
        if type_name:
            self.note("declared by typedef")
            self.add_item(f"{type_name} {signal.name}{suffix};")
        else:
            self.add_item(self.declaration(signal)[:-1], suffix, ";")

    def statements(self, targets, first, depth, count):
        """The statements of a process; its targets are readable behind the first ones."""
        visible = list(self.readable)
        self.targets = list(targets)
        opening = first()
        self.readable += [s for s in targets if s not in self.readable]
        body = [self.statement(depth) for _ in range(count)]
        self.readable[:] = visible
        self.targets = []
        helpers, self.helpers = self.helpers, []
        for helper in helpers:
            self.add_item(helper)
        return Node("", opening, "\n", Node("list", *body, separator="\n"))

    def defaults(self):
        if self.chance(50):
            return self.covering(2)
        return self.first_values(self.targets, " ")

    def add_comb(self):
        targets = self.new_targets("c", self.random.randint(1, 3), "=")
        for signal in targets:
            self.declare_target(signal)
        body = self.statements(targets, self.defaults, 3, self.random.randint(1, 4))
        # A process that reads no input never starts in a simulation.
        wake = Node("", f"{targets[0].name} = {self.inputs[0].name}; ") if not targets[0].unpacked else ""
        heads = ["always @*", "always @(*)"] if self.dialect == "v" else ["always @*", "always_comb", "always_comb"]
        head = self.random.choice(heads)
        self.note(head)
        body = Node("", wake, body)
        self.add_item(head, " begin\n", body, "\nend")
        self.publish(*targets)

    def add_listed_comb(self):
        self.note("always with list")
        targets = self.new_targets("c", self.random.randint(1, 2), "=")
        for signal in targets:
            self.declare_target(signal)
        saved = list(self.readable)
        self.readable = [s for s in self.readable if not s.unpacked and not s.members and not s.packed]
        names = [s.name for s in self.readable]
        body = self.statements(targets, self.defaults, 2, self.random.randint(1, 3))
        self.readable = saved
        self.add_item("always @(", self.random.choice([" or ", ", "]).join(names), ") begin\n", body, "\nend")
        self.publish(*targets)

    # Registers and latches

    def edge(self, signal):
        return f"{'negedge' if signal.endswith('_n') else 'posedge'} {self.control(signal)}"

    def active(self, signal):
        if signal.endswith("_n"):
            return self.random.choice([f"!{signal}", f"~{signal}", f"{signal} == 1'b0"])
        return self.random.choice([signal, signal, f"{signal} == 1'b1"])

    def reset_values(self, targets):
        return Node("", "begin ", *[f"{s.name} <= {self.sized_constant(min(s.total(), 32)) if self.chance(70) else 0}; " for s in targets], "end")

    def add_registers(self):
        targets = self.new_targets("r", self.random.randint(1, 3), "<=")
        kind = self.pick([(30, "plain"), (15, "arst"), (15, "arst_n"), (15, "srst"), (15, "srst_n"), (10, "both")])[1]
        if kind == "plain" and not self.is_initialised:
            kind = "srst"  # registers that nothing resets would keep what an unknown input gave them
        self.note(f"register {kind}")
        has_values = self.is_initialised
        for signal in targets:
            value = self.sized_constant(min(signal.total(), 32))
            if has_values and self.chance(60):
                self.note("value in declaration")
                self.declare_target(signal, f" = {value}")
            else:
                self.declare_target(signal)
                if has_values:
                    self.note("value by initial")
                    self.add_item(f"initial {signal.name} = {value};")
        # Registers may be read by themselves, their values are those before the edge.
        visible = list(self.readable)
        always_taken = self.is_initialised and kind in ("arst", "arst_n", "both")
        if not always_taken:
            self.readable += targets
        clock = self.control(self.random.choice(["clk0", "clk0", "clk1"]))
        sense = self.random.choice(["posedge", "posedge", "negedge"])
        self.note(f"clock {sense}")
        # A register that never takes data is reduced to a latch or a constant, and has no value to start with then.
        body = Node("", "begin\n", self.clocked_body(targets, always_taken), "\nend")
        self.readable = visible
        edges = f"{sense} {clock}"
        if kind in ("srst", "srst_n"):
            self.control(kind)
            body = Node("", f"if ({self.active(kind)}) ", self.reset_values(targets), " else ", body)
        elif kind in ("arst", "arst_n"):
            edges = self.random.choice([f"{edges} or {self.edge(kind)}", f"{self.edge(kind)} or {edges}", f"{edges}, {self.edge(kind)}"])
            body = Node("", f"if ({self.active(kind)}) ", self.reset_values(targets), " else ", body)
        elif kind == "both":
            first, second = self.random.sample(["arst", "arst_n"], 2)
            edges = f"{edges} or {self.edge(first)} or {self.edge(second)}"
            body = Node("", f"if ({self.active(first)}) ", self.reset_values(targets), f" else if ({self.active(second)}) ",
                        self.reset_values(targets), " else ", body)
        head = "always"
        if self.dialect != "v" and self.chance(60):
            self.note("always_ff")
            head = "always_ff"
        self.add_item(f"{head} @({edges}) ", body)
        self.publish(*targets)

    def clocked_body(self, targets, always_taken):
        """Statements under a clock; some of them over a local variable that is assigned in blocking form."""
        local = None
        if self.chance(40):
            self.note("blocking variable under clock")
            local = self.variable(self.fresh("v"))
            self.operators[local.name] = "="
            self.declare(local)
        def opening():
            return self.first_values([local], "") if local else ""
        kept = self.targets
        body = self.statements([local] if local else [], opening, 0, 0)
        visible = list(self.readable)
        if local:
            self.readable.append(local)
        self.targets = list(targets) + ([local] if local else [])
        if always_taken:
            body = Node("", body, self.first_values(targets, "\n"))
        inside = [self.assign_whole(s, 2) for s in targets if self.chance(30)]
        inside += [self.statement(3) for _ in range(self.random.randint(1, 3))]
        if not always_taken and self.chance(30):
            self.note("clock enable")
            inside = [Node("stmt", "if (", self.condition(1), ") begin ", Node("list", *inside, separator="\n"), " end")]
        self.targets = kept
        self.readable[:] = visible
        helpers, self.helpers = self.helpers, []
        for helper in helpers:
            self.add_item(helper)
        return Node("", body, "\n", Node("list", *inside, separator="\n"))

    def add_latch(self):
        if self.is_initialised:  # a latch has no value to start with
            return self.add_registers()
        targets = self.new_targets("l", self.random.randint(1, 2), "=")
        for signal in targets:
            self.declare_target(signal)
        enable = self.control(self.random.choice(["le0", "le1"]))
        self.targets = list(targets)
        body = Node("", f"if ({self.active(enable)}) ", self.covering(1))
        kind = self.random.choice(["plain", "plain", "arst", "arst_n", "two"])
        if kind in ("arst", "arst_n"):
            values = [f"{s.name} = {self.sized_constant(min(s.total(), 32))}; " for s in targets]
            body = Node("", f"if ({self.active(self.control(kind))}) begin ", *values, "end else ", body)
        elif kind == "two":
            other = self.control("le1" if enable == "le0" else "le0")
            body = Node("", body, f" else if ({other}) ", self.covering(1))
        self.note(f"latch {kind}")
        head = "always @*"
        if self.dialect != "v" and self.chance(60):
            self.note("always_latch")
            head = "always_latch"
        self.targets = []
        helpers, self.helpers = self.helpers, []
        for helper in helpers:
            self.add_item(helper)
        self.add_item(head, " begin ", body, " end")
        return self.publish(*targets)

    def add_memory(self):
        if not self.is_initialised:  # nothing resets it
            return self.add_registers()
        self.note("memory")
        width = self.random.randint(1, 6)
        bits = self.random.choice([1, 2, 2, 3])
        depth = 1 << bits
        memory = Signal(self.fresh("mem"), width, False, (width - 1, 0), unpacked=[self.random.choice([(0, depth - 1), (depth - 1, 0)])])
        self.declare(memory)
        loop = self.fresh("i")
        self.add_item(f"integer {loop};")
        self.add_item(f"initial for ({loop} = 0; {loop} < {depth}; {loop} = {loop} + 1) {memory.name}[{loop}] = {self.sized_constant(width)};")
        clock = self.control(self.random.choice(["clk0", "clk1"]))
        address = Signal(self.fresh("wa"), bits, False, (bits - 1, 0))
        self.declare(address, "wire")
        self.add_item(f"assign {address.name} = ", self.expression(2), ";")
        value = self.expression(2)
        self.add_item(f"always @(posedge {clock}) if (", self.condition(2), f") {memory.name}[{address.name}] <= ", value, ";")
        if self.chance(50):
            self.note("memory read under clock")
            data = Signal(self.fresh("md"), width, False, (width - 1, 0))
            self.declare(data)
            self.add_item(f"initial {data.name} = 0;")
            self.add_item(f"always @(posedge {clock}) {data.name} <= {memory.name}[", address.name, "];")
            self.publish(data)
        return self.publish(memory)

    # Three-state

    def add_tristate(self):
        signal = self.variable(self.fresh("z"))
        enable = self.read()[0]
        self.declare(signal, "wire")
        form = self.random.choice(["bus", "bus", "floating", "gate"])
        self.note(f"tristate {form}")
        width = signal.width
        if form == "bus":
            for condition in (Node("expr", "|", enable), Node("expr", "~|", enable)):
                self.add_item(f"assign {signal.name} = ", condition, " ? ", self.expression(2), f" : {width}'bz;")
            self.publish(signal)
            return
        if form == "gate":
            name = self.random.choice(["bufif1", "bufif0", "notif1", "notif0"])
            self.note(f"gate {name}")
            signal = Signal(signal.name, 1)
            self.items.pop()
            self.declare(signal, "wire")
            self.add_item(f"{name} ({signal.name}, ", Node("expr", "|", self.read()[0]), ", ", Node("expr", "|", enable), ");")
        else:
            self.add_item(f"assign {signal.name} = ", Node("expr", "|", enable), " ? ", self.expression(2), f" : {width}'bz;")
        self.floating(signal)

    def floating(self, signal):
        """A net that may float is seen by nobody but the output."""
        port = Signal(self.fresh("oz"), signal.width, False, (signal.width - 1, 0))
        self.ports.append(("output", port, "wire"))
        self.add_item(f"assign {port.name} = {signal.name};")

    def add_inout(self):
        if not self.is_top:
            return self.add_wire()
        self.note("inout")
        width = self.random.randint(1, 4)
        port = Signal(self.fresh("io"), width, False, (width - 1, 0))
        enable = Signal(port.name + "_oe", 1)
        self.ports += [("inout", port, "wire"), ("input", enable, "wire")]
        self.add_item(f"assign {port.name} = {enable.name} ? ", self.expression(2), f" : {width}'bz;")
        return self.publish(Signal(port.name, width, False, (width - 1, 0)))

    def add_wired(self):
        kind = self.random.choice(["wand", "wor", "triand", "trior"])
        self.note(f"net {kind}")
        signal = self.variable(self.fresh("w"))
        self.declare(signal, kind)
        for _ in range(2):
            self.add_item(f"assign {signal.name} = ", self.expression(2), ";")
        self.publish(signal)

    def add_gates(self):
        name = self.random.choice(["and", "or", "xor", "nand", "nor", "xnor", "buf", "not"])
        self.note(f"gate {name}")
        inputs = 1 if name in ("buf", "not") else self.random.randint(2, 4)
        if self.chance(35):
            self.note("array of gates")
            width = self.random.randint(2, 4)
            signal = Signal(self.fresh("gw"), width, False, (width - 1, 0))
            names = []
            for _ in range(inputs):
                operand = Signal(self.fresh("gi"), width, False, (width - 1, 0))
                self.declare(operand, "wire")
                self.add_item(f"assign {operand.name} = ", self.expression(2), ";")
                names.append(operand.name)
            self.declare(signal, "wire")
            self.add_item(f"{name} {self.fresh('ga')}[{width - 1}:0] ({signal.name}, ", listing(names), ");")
        else:
            signal = Signal(self.fresh("gw"), 1)
            self.declare(signal, "wire")
            operands = [Node("expr", "|", self.expression(1, True)) for _ in range(inputs)]
            self.add_item(f"{name} {self.fresh('g')} ({signal.name}, ", listing(operands), ");")
        self.publish(signal)

    # Subroutines

    def subroutine_frame(self):
        """Hides the signals of the module: a subroutine reads its arguments only."""
        saved = (self.readable, self.targets, self.labels, self.indices, self.rounds, self.helpers, self.tasks)
        self.tasks = []
        self.readable, self.targets, self.labels, self.indices, self.rounds, self.helpers = [], [], [], [], 1, []
        return saved

    def leave_frame(self, saved):
        self.readable, self.targets, self.labels, self.indices, self.rounds, self.helpers, self.tasks = saved

    def local_variables(self, count):
        signals = [self.variable(self.fresh("x"), 8) for _ in range(count)]
        for signal in signals:
            self.operators[signal.name] = "="
        return signals

    def subroutine_body(self, inputs, others, depth):
        self.readable = list(inputs)
        self.targets = list(others)
        opening = self.first_values(others, "\n")
        self.readable += others
        body = [self.statement(depth) for _ in range(self.random.randint(0, 3))]
        return Node("", opening, "\n", Node("list", *body, separator="\n"))

    def argument_text(self, direction, signal, in_header=True):
        span = signal.range_text()
        kind = "logic " if self.dialect != "v" and in_header and self.chance(50) else ""
        return f"{direction} {kind}{'signed ' if signal.signed else ''}{span + ' ' if span else ''}{signal.name}"

    def add_function(self):
        saved = self.subroutine_frame()
        name = self.fresh("f")
        inputs = [self.variable(self.fresh("a"), 8) for _ in range(self.random.randint(1, 3))]
        result = self.result = self.variable(name, 8)
        locals_ = self.local_variables(self.random.randint(0, 2))
        self.operators[name] = "="
        automatic = "automatic " if self.chance(50) else ""
        self.note(f"function {automatic.strip() or 'static'}")
        # The name of the function is no variable that a nested call could be mistaken for.
        body = self.subroutine_body(inputs, locals_ + [result], 3)
        span = result.range_text()
        head = f"function {automatic}{'logic ' if self.dialect != 'v' and self.chance(50) else ''}{'signed ' if result.signed else ''}{span + ' ' if span else ''}{name}"
        declarations = [self.declaration(s, "reg") + "\n" for s in locals_] + [h + "\n" for h in self.helpers]
        tail = ""
        if self.dialect == "w" and self.chance(50):
            self.note("return")
            tail = Node("stmt", "if (", self.condition(1), ") return ", self.expression(2), ";\n")
            body = Node("", tail, body) if not self.chance(50) else Node("", body, "\n", tail)
        if self.chance(50):
            self.note("function arguments in header")
            text = Node("", head, "(", ", ".join(self.argument_text("input", s) for s in inputs), ");\n", *declarations)
        else:
            text = Node("", head, ";\n", *[self.argument_text("input", s, in_header=False) + ";\n" for s in inputs], *declarations)
        self.leave_frame(saved)
        self.result = None
        self.add_item(text, "begin\n", body, "\nend endfunction")
        self.functions.append((name, len(inputs)))

    def add_task(self):
        saved = self.subroutine_frame()
        name = self.fresh("t")
        inputs = [self.variable(self.fresh("a"), 8) for _ in range(self.random.randint(1, 2))]
        outputs = self.local_variables(self.random.randint(1, 2))
        locals_ = self.local_variables(self.random.randint(0, 1))
        automatic = "automatic " if self.chance(40) else ""
        self.note(f"task {automatic.strip() or 'static'}")
        body = self.subroutine_body(inputs, outputs + locals_, 2)
        declarations = [self.declaration(s, "reg") + "\n" for s in locals_] + [h + "\n" for h in self.helpers]
        ports = [self.argument_text("input", s) for s in inputs] + [self.argument_text("output", s) for s in outputs]
        self.leave_frame(saved)
        self.add_item(f"task {automatic}{name}(", ", ".join(ports), ");\n", *declarations, "begin\n", body, "\nend endtask")
        self.tasks.append((name, len(inputs), len(outputs)))

    def add_recursion(self):
        self.note("recursive function")
        name = self.fresh("rf")
        rounds = self.random.randint(1, 4)
        self.add_item(f"function automatic [7:0] {name}(input [7:0] a, input [2:0] n);\n"
                      f"{name} = (n == 0) ? a : {name}(a {self.random.choice(['+', '^', '-'])} {{a[3:0], n}}, n - 3'd1);\nendfunction")
        signal = Signal(self.fresh("w"), 8, False, (7, 0))
        self.declare(signal, "wire")
        self.add_item(f"assign {signal.name} = {name}(", self.expression(2), f", 3'd{rounds});")
        self.publish(signal)

    def add_localparam(self):
        self.note("localparam")
        name = self.fresh("L")
        width = self.random.randint(1, 8)
        saved, self.readable = self.readable, []
        functions, self.functions = self.functions, []
        value = self.expression(2)
        self.readable, self.functions = saved, functions
        self.add_item(f"localparam {self.random.choice(['', 'signed '])}[{width - 1}:0] {name} = ", value, ";")
        self.constants.append((name, True))

    # Generate

    def add_generate_for(self):
        self.note("generate for")
        variable = self.fresh("gv")
        count = self.random.randint(2, 4)
        signal = Signal(self.fresh("gw"), count, False, (count - 1, 0))
        wide = Signal(self.fresh("gw"), count * 2, False, (count * 2 - 1, 0))
        self.declare(signal, "wire")
        self.declare(wide, "wire")
        self.add_item(f"genvar {variable};")
        self.indices.append((variable, 0, count - 1))
        label = self.fresh("gen")
        inside = [Node("item", f"assign {signal.name}[{variable}] = ", self.expression(2), ";\n"),
                  Node("item", f"wire [1:0] part = ", self.expression(2), ";\n",
                       f"assign {wide.name}[2*{variable} +: 2] = part;\n")]
        if self.chance(40):
            self.note("generate if in for")
            inside[0] = Node("item", f"if ({variable} % 2 == 0) begin : even\n", inside[0], "end else begin : odd\n",
                             f"assign {signal.name}[{variable}] = ", self.expression(2), ";\nend\n")
        self.indices.pop()
        is_bare = self.dialect != "v" or self.chance(50)
        self.add_item("" if is_bare else "generate\n", f"for ({variable} = 0; {variable} < {count}; {variable} = {variable} + 1) begin : {label}\n",
                      *inside, "end", "" if is_bare else "\nendgenerate")
        self.publish(signal, wide)

    def add_generate_choice(self):
        signal = self.variable(self.fresh("gw"))
        self.declare(signal, "wire")
        parameter = self.parameters[0][0] if self.parameters else str(self.random.randint(0, 4))
        branches = [Node("", f"assign {signal.name} = ", self.expression(3), ";") for _ in range(3)]
        if self.chance(50):
            self.note("generate if")
            text = [f"if ({parameter} > {self.random.randint(1, 9)}) begin : {self.fresh('ga')}\n", branches[0], f"\nend else if ({parameter} == 2) ",
                    branches[1], f"\nelse begin : {self.fresh('gb')}\n", branches[2], "\nend"]
        else:
            self.note("generate case")
            text = [f"case ({parameter})\n1, 2: ", branches[0], f"\n3: begin : {self.fresh('gc')}\n", branches[1], "\nend\ndefault: ", branches[2], "\nendcase"]
        if self.chance(50):
            text = ["generate\n", *text, "\nendgenerate"]
        self.add_item(*text)
        self.publish(signal)

    # Hierarchy

    def add_instance(self):
        if not self.maker.leaves:
            return self.add_comb()
        leaf = self.random.choice(self.maker.leaves)
        for name in leaf.controls:
            self.control(name)
        if not leaf.controls and self.chance(25):
            return self.add_instance_array(leaf)
        style = self.random.choice(["named", "ordered"] + ([".name", ".*"] if self.dialect != "v" else []))
        if style in (".name", ".*") and leaf.name in self.maker.used_by_name.setdefault(self.name, set()):
            style = "named"
        self.note(f"instance {style}")
        connections, outputs, used = [], [], set()
        for direction, signal, _ in leaf.port_list():
            if signal.name in leaf.controls:
                actual = signal.name
            elif signal is leaf.inputs[0]:
                # This one wakes the processes of the leaf, so it must change.
                actual = Node("", f"{{{self.inputs[0].name} ^ ", self.expression(2, True), "}")
            elif direction == "input":
                actual = self.actual(signal.width)
            else:
                net = Signal(self.fresh("u"), signal.width, signal.signed, signal.bounds)
                outputs.append(net)
                actual = net.name
            connections.append((direction, signal, actual))
        for net in outputs:
            self.declare(net, "wire")
        name = self.fresh("inst")
        values = self.overrides(leaf, name)
        self.add_item(f"{leaf.name} {values}{name} (", self.joined(self.connected(style, connections, used)), ");")
        observed = [n for n, (d, s, _) in zip(outputs, [c for c in connections if c[0] == "output"]) if not s.name.startswith("oz")]
        self.publish(*observed)
        for net in outputs:
            if net not in observed:
                self.floating(net)
        return None

    def actual(self, width):
        """An expression at a port; tools disagree on whether the size of the port counts, so it has its own."""
        node, own_width, _ = self.read()
        if own_width == width:
            return node
        return Node("", "{", self.expression(2, True), "}")

    def connected(self, style, connections, used):
        if style == "ordered":
            return [Node("", actual) for _, _, actual in connections]
        rows = [Node("", f".{signal.name}(", actual, ")") for _, signal, actual in connections]
        if style in (".name", ".*"):
            implied = [i for i, (_, signal, actual) in enumerate(connections) if actual == signal.name]
            if style == ".*":
                return [row for i, row in enumerate(rows) if i not in implied] + [".*"]
            rows = [f".{connections[i][1].name}" if i in implied else row for i, row in enumerate(rows)]
            return rows
        self.random.shuffle(rows)
        return rows

    def overrides(self, leaf, name):
        if not leaf.parameters or self.chance(30):
            return ""
        values = [(p, self.random.choice([low, high, self.random.randint(low, high)])) for p, low, high in leaf.parameters]
        style = self.random.choice(["named", "ordered", "defparam"])
        self.note(f"override {style}")
        if style == "defparam":
            self.add_item(f"defparam {name}.{values[0][0]} = {values[0][1]};")
            return ""
        if style == "ordered":
            return f"#({', '.join(str(v) for _, v in values)}) "
        return f"#({', '.join(f'.{p}({v})' for p, v in values)}) "

    def add_instance_array(self, leaf):
        self.note("array of instances")
        count = self.random.randint(2, 3)
        left, right = self.random.choice([(count - 1, 0), (0, count - 1)])
        connections = []
        for direction, signal, _ in leaf.port_list():
            width = signal.width * (1 if direction == "input" and self.chance(40) else count)
            net = Signal(self.fresh("u"), width, False, (width - 1, 0))
            self.declare(net, "wire")
            if direction == "input":
                wake = Node("", f"{self.inputs[0].name} ^ ") if signal is leaf.inputs[0] else ""
                self.add_item(f"assign {net.name} = ", wake, self.expression(2), ";")
            elif not signal.name.startswith("oz"):
                self.publish(net)
            else:
                self.floating(net)
            connections.append(Node("", f".{signal.name}({net.name})"))
        self.add_item(f"{leaf.name} {self.fresh('inst')}[{left}:{right}] (", self.joined(connections), ");")

    # Packages

    def use_package(self):
        for name in self.maker.imports:
            self.constants.append((name, True))
        self.functions += self.maker.package_functions


ITEMS = [
    (14, Module.add_wire), (4, Module.add_concat_assign), (16, Module.add_comb), (5, Module.add_listed_comb), (16, Module.add_registers),
    (5, Module.add_latch), (3, Module.add_memory), (4, Module.add_tristate), (2, Module.add_inout), (2, Module.add_wired),
    (4, Module.add_gates), (6, Module.add_function), (4, Module.add_task), (1, Module.add_recursion), (4, Module.add_localparam),
    (4, Module.add_generate_for), (4, Module.add_generate_choice), (9, Module.add_instance),
]


class Maker:
    """Makes the design of one seed."""

    def __init__(self, seed, dialect, counts):
        self.seed = seed
        self.random = random.Random(f"{dialect}{seed}")
        self.dialect = dialect
        self.counts = counts
        self.is_initialised = self.random.random() < 0.5
        self.leaves = []
        self.used_by_name = {}
        self.types = []
        self.type_of = {}
        self.kept = []  # signals whose identity is a key
        self.imports = []
        self.package_functions = []
        self.package = None
        self.extra = []  # primitives, interfaces and modules that an item brings
        self.items = ITEMS + [(weight, item) for weight, marks, item in EXTRA_ITEMS if dialect in marks]

    def typed(self, module, name):
        type_name, prototype = self.random.choice(self.types)
        signal = Signal(name, prototype.width, prototype.signed, prototype.bounds, prototype.packed, members=prototype.members)
        self.type_of[id(signal)] = type_name
        self.kept.append(signal)
        return signal

    def import_text(self):
        return f" import {self.package}::*;" if self.package else ""

    def make(self):
        parts = []
        if self.dialect != "v" and self.random.random() < 0.6:
            parts.append(self.make_package())
        for number in range(self.random.choice([0, 1, 1, 2])):
            leaf = Module(self, f"m{self.seed}_s{number}", False).build(self.random.randint(1, 4))
            parts.append(leaf.text())
            self.leaves.append(leaf)
        top = Module(self, f"m{self.seed}_top", True).build(self.random.randint(2, 8))
        parts += [top.text(), *self.extra]
        ports = [Port(s.name, s.width, direction) for direction, s, _ in top.port_list()]
        return Design(self.seed, self.dialect, top.name, Node("list", *parts, separator="\n"), ports, self.is_initialised)

    def make_package(self):
        self.package = f"m{self.seed}_p"
        helper = Module(self, "", False)
        helper.note("package")
        helper.serial = 900  # its names stand beside those of the modules
        items = []
        for number in range(self.random.randint(1, 4)):
            items.append(Node("item", self.make_type(helper, f"type{number}_t"), "\n"))
        for number in range(self.random.randint(0, 2)):
            width = self.random.randint(1, 8)
            items.append(Node("item", f"localparam logic [{width - 1}:0] K{number} = {helper.sized_constant(width)};\n"))
            self.imports.append(f"K{number}")
        if self.random.random() < 0.5:
            helper.add_function()
            items += helper.items
            self.package_functions = helper.functions
            helper.note("package function")
        return Node("item", f"package {self.package};\n", Node("list", *items), "endpackage\n")

    def make_type(self, helper, name):
        kind = self.random.choice(["vector", "struct", "union", "enum", "atom"])
        helper.note(f"typedef {kind}")
        if kind == "vector":
            signal = helper.variable(name)
            signal.bounds = signal.bounds or (0, 0)
            self.types.append((name, signal))
            return f"typedef logic{' signed' if signal.signed else ''} {signal.range_text()} {name};"
        if kind == "atom":
            word, width = self.random.choice([("byte", 8), ("shortint", 16), ("int", 32), ("bit [3:0]", 4)])
            self.types.append((name, Signal(name, width, word[0] != "b" or word == "byte", (width - 1, 0))))
            return f"typedef {word} {name};"
        if kind == "enum":
            return self.make_enum(name)
        return self.make_struct(helper, name, kind)

    def make_enum(self, name):
        # Any value may be assigned to a variable of the vector that the enumeration is made of; its names are constants.
        width = self.random.randint(2, 3)
        count = self.random.randint(2, 1 << width)
        names = [f"{name[:-2].upper()}_{i}" for i in range(count)]
        self.imports += names
        return f"typedef enum logic [{width - 1}:0] {{{', '.join(names)}}} {name};"

    def make_struct(self, helper, name, kind):
        members, texts = [], []
        width = self.random.randint(2, 6)
        for number in range(self.random.randint(2, 3)):
            size = width if kind == "union" else self.random.randint(1, 6)
            signed = self.dialect == "w" and self.random.random() < 0.3  # iverilog forgets the sign of members
            members.append(Signal(f"m{number}", size, signed, (size - 1, 0)))
            texts.append(f"logic {'signed ' if signed else ''}[{size - 1}:0] m{number};")
        total = width if kind == "union" else sum(m.width for m in members)
        self.types.append((name, Signal(name, total, False, None, members=members)))
        return f"typedef {kind} packed {{ {' '.join(texts)} }} {name};"


def make_design(seed, dialect, counts):
    return Maker(seed, dialect, counts).make()
