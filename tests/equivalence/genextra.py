"""Items of generated modules that bring declarations of their own: user-defined primitives, enumerations with their
methods, loops over arrays, unpacked structures, interfaces with modports, type parameters."""

from genexpr import Signal
from genstmt import Statements
from gentree import Node


class Extras(Statements):
    # User-defined primitives

    def add_primitive(self):
        kind = self.random.choice(["combinational", "combinational", "clocked", "latch"])
        # Nothing resets a register of a primitive, and a latch has no value to start with.
        if kind != "combinational":
            kind = "clocked" if self.is_initialised else "latch"
        self.note(f"primitive {kind}")
        name = f"m{self.maker.seed}_u{len(self.maker.extra)}"
        inputs = self.random.randint(1, 3) if kind == "combinational" else self.random.randint(1, 2)
        make = {"combinational": self.combinational_table, "clocked": self.clocked_table, "latch": self.latch_table}[kind]
        self.maker.extra.append(Node("", make(name, inputs)))
        signal = Signal(self.fresh("pw"), 1)
        self.declare(signal, "wire")
        operands = [self.one_bit() for _ in range(inputs)]
        if kind == "clocked":
            operands.insert(0, Node("", self.control(self.random.choice(["clk0", "clk1"]))))
        elif kind == "latch":
            operands.insert(0, Node("", self.control(self.random.choice(["le0", "le1"]))))
        self.add_item(f"{name} {self.fresh('pi')} ({signal.name}, ", self.joined(operands), ");")
        self.publish(signal)

    def one_bit(self):
        """A terminal: an expression of one bit, by way of a net, since a primitive sees each change of its inputs."""
        net = Signal(self.fresh("pt"), 1)
        self.declare(net, "wire")
        self.add_item(f"assign {net.name} = ", Node("expr", "|", self.expression(2, True)), ";")
        return Node("", net.name)

    @staticmethod
    def minterms(inputs):
        return [format(value, f"0{inputs}b") for value in range(1 << inputs)]

    def results(self, inputs):
        return [(bits, self.random.choice("01")) for bits in self.minterms(inputs)]

    @staticmethod
    def primitive_text(name, ports, is_register, initial, rows):
        declared = "".join(f"input {port};\n" for port in ports) + "output q;\n" + ("reg q;\n" if is_register else "")
        return f"primitive {name}(q, {', '.join(ports)});\n{declared}{initial}table\n" + "".join(f"{row};\n" for row in rows) + \
            "endtable\nendprimitive\n"

    def combinational_table(self, name, inputs):
        rows = [f"{' '.join(bits)} : {value}" for bits, value in self.results(inputs)]
        if inputs > 1 and self.chance(40):
            value = self.random.choice("01")  # one row for all values of the last inputs
            rows = [row for row in rows if not row.startswith("0")] + [f"0 {' '.join('?' * (inputs - 1))} : {value}"]
        return self.primitive_text(name, [f"a{i}" for i in range(inputs)], False, "", rows)

    def clocked_table(self, name, inputs):
        # The first step of a clock is one from unknown to 0.
        edge, other = self.random.choice([("r", "n"), ("(01)", "(?0)"), ("p", "n"), ("n", "p"), ("(?0)", "r")])
        rows = [f"{edge} {' '.join(bits)} : ? : {value}" for bits, value in self.results(inputs)]
        rows.append(f"{other} {' '.join('?' * inputs)} : ? : -")
        rows += [f"? {' '.join('*' if i == at else '?' for i in range(inputs))} : ? : -" for at in range(inputs)]
        initial = f"initial q = 1'b{self.random.choice('01')};\n" if self.is_initialised else ""
        return self.primitive_text(name, ["c"] + [f"a{i}" for i in range(inputs)], True, initial, rows)

    def latch_table(self, name, inputs):
        rows = [f"1 {' '.join(bits)} : ? : {value}" for bits, value in self.results(inputs)]
        rows.append(f"0 {' '.join('?' * inputs)} : ? : -")
        return self.primitive_text(name, ["e"] + [f"a{i}" for i in range(inputs)], True, "", rows)

    # Enumerations

    def add_machine(self):
        """A state machine over an enumeration, with its methods."""
        self.note("enum variable")
        name = self.fresh("st")
        width = self.random.randint(2, 3)
        values = self.random.sample(range(1 << width), self.random.randint(2, 1 << width))
        names = [f"{name.upper()}_{i}" for i in range(len(values))]
        listed = ", ".join(f"{n} = {width}'d{v}" for n, v in zip(names, values))
        clock = self.control(self.random.choice(["clk0", "clk1"]))
        self.add_item(f"enum logic [{width - 1}:0] {{{listed}}} {name};")
        first = self.random.choice(names)
        if self.is_initialised:
            self.add_item(f"initial {name} = {first};")
        arms = [Node("item", f"{n}: if (", self.condition(1), f") {name} <= {self.next_state(name, names)};"
                     f" else {name} <= {self.next_state(name, names)};\n") for n in names]
        body = Node("stmt", f"case ({name})\n", Node("list", *arms), f"default: {name} <= {first};\nendcase")
        if not self.is_initialised:
            body = Node("", f"if ({self.control('srst')}) {name} <= {first}; else ", body)
        self.add_item(f"always_ff @(posedge {clock}) ", body)
        constants = [(n, True) for n in names]
        self.constants += constants
        self.publish(Signal(name, width))

    def next_state(self, name, names):
        method = self.random.choice(["", "", "next", "prev", "first", "last"])
        if not method:
            return self.random.choice(names)
        self.note(f"enum method {method}")
        return f"{name}.{method}()"

    # Loops over arrays

    def add_foreach(self):
        self.note("foreach")
        width, count = self.random.randint(1, 6), self.random.randint(2, 4)
        array = Signal(self.fresh("fa"), width, False, (width - 1, 0), unpacked=[self.random.choice([(0, count - 1), (count - 1, 0)])])
        self.declare(array)
        variable = self.fresh("fi")
        self.indices.append((variable, 0, count - 1))
        value = self.expression(3)
        self.indices.pop()
        self.add_item(f"always_comb foreach ({array.name}[{variable}]) {array.name}[{variable}] = {self.inputs[0].name} ^ ", value, ";")
        self.publish(array)

    # Structures

    def pattern(self, members, depth):
        """An assignment pattern for the members of a structure."""
        kind = self.random.choice(["ordered", "named", "default"])
        self.note(f"pattern {kind}")
        if kind == "default":
            some = self.random.sample(members, self.random.randint(0, len(members) - 1))
            rows = [Node("", f"{m.name}: ", self.expression(depth)) for m in some] + [Node("", "default: ", self.sized_constant(4))]
        elif kind == "named":
            rows = [Node("", f"{m.name}: ", self.expression(depth)) for m in self.random.sample(members, len(members))]
        else:
            rows = [self.expression(depth) for _ in members]
        return Node("", "'{", self.joined(rows), "}")

    def add_unpacked_struct(self):
        self.note("unpacked struct")
        name = self.fresh("us")
        members = [self.variable(f"m{i}", 8) for i in range(self.random.randint(2, 3))]
        texts = " ".join(self.declaration(m, "logic") for m in members)
        self.add_item(f"typedef struct {{ {texts} }} {name}_t;")
        self.add_item(f"{name}_t {name};")
        parts = [Signal(f"{name}.{m.name}", m.width, m.signed, m.bounds) for m in members]
        self.operators.update({part.name: "=" for part in parts})
        opening = Node("", f"{name} = ", self.pattern(members, 2), "; ")
        visible, self.targets = list(self.readable), parts
        self.readable += parts
        body = [self.statement(2) for _ in range(self.random.randint(1, 3))]
        self.readable[:], self.targets = visible, []
        helpers, self.helpers = self.helpers, []
        for helper in helpers:
            self.add_item(helper)
        self.add_item("always_comb begin\n", opening, Node("list", *body, separator="\n"), "\nend")
        if self.chance(50):
            self.note("unpacked struct copied")
            self.add_item(f"{name}_t {name}c;")
            self.add_item(f"assign {name}c = {name};")
            parts = [Signal(f"{name}c.{m.name}", m.width, m.signed, m.bounds) for m in members]
        self.publish(*parts)

    # Interfaces

    def add_interface(self):
        """A bus between two modules, one of which drives it by a modport."""
        self.note("interface")
        stem = f"m{self.maker.seed}_b{len(self.maker.extra)}"
        width = self.random.randint(2, 6)
        wide = width + self.random.randint(0, 2)
        data, valid = Signal("b.d", width, False, (width - 1, 0)), Signal("b.v", 1)
        saved = self.bus_frame([Signal("a", 5, False, (4, 0))])
        driver = [self.expression(3), self.expression(2)]
        self.readable = [data, valid]
        reader = self.expression(3)
        if self.chance(50):
            self.note("interface function")
            function = f"function automatic logic [{width - 1}:0] mixed(input logic [{width - 1}:0] x); return x ^ d; endfunction\n"
            imported, reader = ", import mixed", Node("", "b.mixed(", reader, ")")
        else:
            function, imported = "", ""
        self.leave_bus(saved)
        self.maker.extra.append(Node("", f"""interface {stem} #(parameter W = {width});
logic [W-1:0] d; logic v;
{function}modport src(output d, output v); modport dst(input d, input v{imported});
endinterface
module {stem}s(input [4:0] a, {stem}.src b);
assign b.d = """, driver[0], ";\nassign b.v = ", driver[1], f""";
endmodule
module {stem}d({stem}{self.random.choice(['.dst', ''])} b, output [{width + 1}:0] y);
assign y = """, reader, ";\nendmodule\n"))
        name = self.fresh("bus")
        signal = Signal(self.fresh("bw"), width + 2, False, (width + 1, 0))
        self.declare(signal, "wire")
        value = f"#({wide}) " if self.chance(40) else ""
        self.add_item(f"{stem} {value}{name}();")
        self.add_item(f"{stem}s {name}s(.a(", self.actual(5), f"), .b({name}{self.random.choice(['', '.src'])}));")
        self.add_item(f"{stem}d {name}d(.b({name}), .y({signal.name}));")
        self.publish(signal)

    def bus_frame(self, readable):
        """Hides what a module of its own does not see."""
        saved = (self.readable, self.constants, self.functions, self.indices)
        self.readable, self.constants, self.functions, self.indices = readable, [], [], []
        return saved

    def leave_bus(self, saved):
        self.readable, self.constants, self.functions, self.indices = saved

    # Type parameters

    def add_type_parameter(self):
        self.note("type parameter")
        stem = f"m{self.maker.seed}_t{len(self.maker.extra)}"
        saved = self.bus_frame([Signal("a", 4, False, (3, 0))])
        value = self.expression(3)
        self.leave_bus(saved)
        self.maker.extra.append(Node("", f"module {stem} #(parameter type T = logic [3:0])(input [3:0] a, output logic [15:0] y);\n"
                                     f"T t;\nassign t = ", value, ";\nassign y = t;\nendmodule\n"))
        types = [text for text, _ in self.maker.types if self.maker.package] + ["logic signed [4:0]", "byte", "bit [6:0]", "shortint"]
        chosen = self.random.choice(types + [""])
        signal = Signal(self.fresh("tw"), 16, False, (15, 0))
        self.declare(signal, "wire")
        override = f"#(.T({chosen})) " if chosen else ""
        self.add_item(f"{stem} {override}{self.fresh('ti')}(.a(", self.actual(4), f"), .y({signal.name}));")
        self.publish(signal)


# Weight, dialects, item
EXTRA_ITEMS = [
    (4, "vs", Extras.add_primitive), (4, "sw", Extras.add_machine), (3, "sw", Extras.add_foreach),
    (5, "w", Extras.add_unpacked_struct), (4, "w", Extras.add_interface), (3, "w", Extras.add_type_parameter),
]
