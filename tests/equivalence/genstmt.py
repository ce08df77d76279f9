"""Random statements of generated designs. The targets of a block are assigned before any statement of this module reads
them; loops end, jumps leave named blocks, and cases that claim to be full or parallel are so."""

from genexpr import Expressions, Signal
from gentree import Node, listing


class Statements(Expressions):
    def __init__(self, random, counts, dialect):
        super().__init__(random, counts, dialect)
        self.targets = []  # of the block at hand
        self.operators = {}  # name of a target: "=" or "<="
        self.labels = []  # named blocks around
        self.tasks = []  # (name, number of inputs, number of outputs)
        self.loop_depth = 0
        self.rounds = 1
        self.helpers = []  # declarations that the module needs for the block
        self.serial = 0

    def fresh(self, stem):
        self.serial += 1
        return f"{stem}{self.serial}"

    # Assignments

    def assign(self, target, value, operator):
        self.note("blocking" if operator == "=" else "non-blocking")
        return Node("stmt", target, f" {operator} ", value, ";")

    def assign_whole(self, signal, depth):
        """Gives a signal a value in every bit."""
        operator = self.operators[signal.name]
        if signal.unpacked:
            loops = []
            path = signal.name
            for left, right in signal.unpacked:
                low, high = min(left, right), max(left, right)
                loops.append((low, high))
            names = [[str(i) for i in range(low, high + 1)] for low, high in loops]
            combos = [[]]
            for choices in names:
                combos = [c + [n] for c in combos for n in choices]
            return Node("stmt", "begin ", *[Node("", path, *[f"[{n}]" for n in c], f" {operator} ",
                                                 self.expression(1), "; ") for c in combos], "end")
        if self.dialect != "v" and self.chance(5):
            self.note("constant fill")
            return self.assign(signal.name, Node("expr", self.random.choice(["'0", "'1"])), operator)
        return self.assign(signal.name, self.expression(depth), operator)

    def first_values(self, signals, separator):
        """Assignments that no reduction may take away, since later statements read what they assign."""
        nodes = [self.assign_whole(s, 2) for s in signals]
        for node in nodes:
            node.kind = ""
        return Node("", *[part for node in nodes for part in (node, separator)])

    def assign_some(self, depth):
        signal = self.random.choice(self.targets)
        operator = self.operators[signal.name]
        others = [s for s in self.targets if s is not signal and self.operators[s.name] == operator and not s.unpacked]
        if others and not signal.unpacked and self.chance(12):
            self.note("target concatenation")
            return self.assign(self.target_pair(signal, self.random.choice(others)), self.expression(depth), operator)
        target = self.reference(signal, True)[0]
        if self.dialect == "s" and str(target) != signal.name:
            return self.assign(target, self.expression(depth), operator)  # iverilog shifts parts of vectors wrongly in place
        if operator == "=" and self.dialect != "v" and self.chance(25) and signal in self.readable and signal is not self.result:
            return self.compound(target, signal.total(), depth)
        return self.assign(target, self.expression(depth), operator)

    def target_pair(self, first, second):
        """A concatenation of targets; no index in it depends on what is assigned, since the order is a tool's own."""
        kept, self.readable = self.readable, [s for s in self.readable if s not in self.targets]
        node = Node("", "{", self.reference(first, True)[0], ", ", self.reference(second, True)[0], "}")
        self.readable = kept
        return node

    def compound(self, target, target_width, depth):
        if self.chance(35):
            operator = self.random.choice(["++", "--"])
            self.note(f"operator {operator}")
            return Node("stmt", target, f"{operator};")
        operator = self.random.choice(["+=", "-=", "*=", "&=", "|=", "^=", "<<=", ">>=", "<<<=", ">>>="])
        if self.dialect == "s" and target_width == 1 and operator.startswith(("<", ">")):
            operator = "^="  # iverilog shifts a bit with a sign wrongly in place
        self.note(f"operator {operator}")
        value = self.small() if operator.startswith(("<", ">")) else self.expression(depth)
        return Node("stmt", target, f" {operator} ", value, ";")

    # Branches

    def body(self, depth, count=None):
        """Statements of a branch."""
        count = count or self.random.choice([1, 1, 2, 2, 3])
        if count == 1 and self.chance(60):
            return self.statement(depth - 1)
        return Node("stmt", "begin ", Node("list", *[self.statement(depth - 1) for _ in range(count)], separator=" "), " end")

    def condition(self, depth):
        return self.expression(min(depth, 2))

    def branch(self, depth, body=None):
        body = body or self.body
        unique = ""
        if self.dialect == "w" and self.chance(15):
            unique = self.random.choice(["unique0 ", "priority "])
        parts = [unique, "if (", self.condition(depth), ") ", self.guarded(body, depth)]
        has_else = body is not self.body or unique or self.chance(60)
        self.note("if else" if has_else else "if")
        if unique:
            self.note("if " + unique.strip())
        if has_else:
            parts += [" else ", body(depth)]
        return Node("stmt", *parts)

    def guarded(self, body, depth):
        """A branch in front of an else that it must not take."""
        return Node("", "begin ", body(depth), " end")

    def selector(self, largest):
        """A case expression without sign and its width."""
        signals = self.plain_vectors(largest)
        if signals and self.chance(70):
            signal = self.random.choice(signals)
            return Node("expr", signal.name), signal.width
        node, width, _ = self.read()
        width = min(width, largest)
        if self.chance(50) and len(signals) > 1:
            first, second = self.random.sample(signals, 2)
            if first.width + second.width <= largest:
                return Node("expr", "{", first.name, ", ", second.name, "}"), first.width + second.width
        return Node("expr", "(", node, f" & {width}'d{(1 << width) - 1})") if width == 1 else Node("expr", "{", node, "}"), width if width == 1 else None

    def case(self, depth, body=None):
        body = body or self.body
        must_cover = body is not self.body
        if not must_cover and self.chance(12):
            return self.reverse_case(depth)
        node, width = self.selector(5)
        if width is None:
            return self.branch(depth, body if must_cover else None)
        keyword = self.random.choice(["case", "case", "casez", "casex"])
        labels = self.plain_labels(width) if keyword == "case" or self.chance(30) else self.wild_labels(width, keyword)
        is_plain = len(set(labels)) == len(labels) and all(set(label.split("'")[1]) <= set("b01") for label in labels)
        is_full = is_plain and len(labels) == 1 << width
        groups = self.grouped(labels)
        has_default = (must_cover and not (is_full and self.chance(50))) or self.chance(60)
        prefix, suffix = self.promises(is_plain, is_full or has_default)
        kind = "" if prefix or suffix else "item"  # a promise holds for all items together
        items = [Node(kind, listing(group) if kind else self.joined(group), ": ", self.guarded(body, depth - 1), "\n") for group in groups]
        if has_default:
            items.insert(len(items) if self.chance(85) else self.random.randint(0, len(items)),
                         Node("" if must_cover else kind, self.random.choice(["default: ", "default "]), self.guarded(body, depth - 1), "\n"))
        self.note(f"{keyword} {'default' if has_default else 'no default'}")
        return Node("stmt", prefix, keyword, " (", node, ")", suffix, "\n", Node("" if must_cover or not kind else "list", *items), "endcase")

    def plain_labels(self, width):
        values = list(range(1 << width))
        if self.chance(60):
            values = self.random.sample(values, self.random.randint(1, min(len(values), 6)))
        if len(values) > 16:
            values = values[:12]
        return [f"{width}'b{value:0{width}b}" for value in values]

    def wild_labels(self, width, keyword):
        wild = "z?" if keyword == "casez" else "xz?"
        labels = []
        for _ in range(self.random.randint(1, 5)):
            labels.append(f"{width}'b" + "".join(self.random.choice("0011" + wild) for _ in range(width)))
        return labels

    def joined(self, elements, separator=", "):
        """A list that no reduction shortens."""
        return Node("", *elements, separator=separator)

    def grouped(self, labels):
        groups = []
        while labels:
            size = self.random.choice([1, 1, 1, 2, 3])
            groups.append(labels[:size])
            labels = labels[size:]
        return groups

    def promises(self, is_parallel, is_full):
        """Attributes and keywords that hold for a case."""
        if not is_parallel or not self.chance(40):
            return "", ""
        if self.dialect != "v" and self.chance(60):
            word = self.random.choice(["unique ", "priority "] if is_full else ["unique0 "])
            self.note("case " + word.strip())
            return word, ""
        words = ["parallel_case"] + (["full_case"] if is_full else [])
        words = self.random.choice([words[-1:], words])
        self.note("case " + " ".join(words))
        if self.chance(50):
            return "", f" // synthesis {' '.join(words)}"
        return f"(* {', '.join(words)} *) ", ""

    def reverse_case(self, depth):
        """A case of a constant, whose items are conditions: the first that holds is taken."""
        self.note("case of constant")
        items = [Node("item", Node("", "|", self.read()[0]), ": ", self.guarded(self.body, depth - 1), "\n")
                 for _ in range(self.random.randint(1, 3))]
        return Node("stmt", "case (1'b1)\n", Node("list", *items), "default: ", self.guarded(self.body, depth - 1), "\nendcase")

    # Loops and jumps

    def loop_body(self, depth):
        self.loop_depth += 1
        node = Node("", "begin ", self.body(depth, self.random.choice([1, 2])), self.jump(), " end")
        self.loop_depth -= 1
        return node

    def jump(self):
        """A jump at the end of a loop's body, under a condition."""
        if self.labels and self.chance(40):
            self.note("disable")
            return Node("stmt", " if (", self.condition(1), f") disable {self.random.choice(self.labels)};")
        if self.dialect == "w" and self.loop_depth and self.chance(40):
            word = self.random.choice(["break", "continue"])
            self.note(word)
            return Node("stmt", " if (", self.condition(1), f") {word};")
        return ""

    def counted_rounds(self):
        return self.random.randint(1, max(1, min(6, 12 // self.rounds)))

    def for_loop(self, depth):
        count = self.counted_rounds()
        name = self.fresh("i")
        start = self.random.randint(0, 2)
        step = self.random.choice([1, 1, 1, 2])
        last = start + (count - 1) * step
        if self.chance(65):
            head = f"{name} = {start}; {name} {self.random.choice([f'< {last + 1}', f'<= {last}'])}; "
            forward = [f"{name} = {name} + {step}"]
            if self.dialect != "v":
                forward += [f"{name} += {step}"] + ([f"{name}++"] if step == 1 else [])
            head += self.random.choice(forward)
        else:
            head = f"{name} = {last}; {name} >= {start}; {name} = {name} - {step}"
        if self.dialect != "v" and self.chance(60):
            self.note("for int")
            head = "int " + head
        else:
            self.note("for")
            self.helpers.append(f"integer {name};")
        self.rounds *= count
        self.indices.append((name, start, last))
        node = Node("stmt", f"for ({head}) ", self.loop_body(depth - 1))
        self.indices.pop()
        self.rounds //= count
        return node

    def counting_loop(self, depth):
        """A while, do while or repeat loop with a counter of its own."""
        count = self.counted_rounds()
        name = self.fresh("k")
        kind = self.random.choice(["while", "repeat"] + (["do while"] if self.dialect != "v" else []))
        self.note(kind)
        self.rounds *= count
        # The counter comes first in the body, so that no jump passes it over.
        self.indices.append((name, 1, count))
        body = Node("", f"begin {name} = {name} + 1; ", self.loop_body(depth - 1), " end")
        self.indices.pop()
        self.rounds //= count
        loop = {"while": [f"while ({name} < {count}) ", body], "repeat": [f"repeat ({count}) ", body],
                "do while": ["do ", body, f" while ({name} < {count});"]}[kind]
        # The counter is local: one of the module would be a latch of a process that does not always reach the loop.
        return Node("stmt", f"begin : {self.fresh('lp')} integer {name}; {name} = 0; ", *loop, " end")

    def named_block(self, depth):
        """A block with a name to leave it by, and with a variable of its own."""
        label = self.fresh("blk")
        self.note("named block")
        self.labels.append(label)
        declarations, first = "", ""
        readable, targets = list(self.readable), list(self.targets)
        if self.chance(60):
            self.note("block variable")
            local = self.variable(self.fresh("t"))
            declarations = f"{self.declaration(local)} "
            first = Node("", local.name, " = ", self.expression(1), ";")
            self.operators[local.name] = "="
            self.readable.append(local)
            self.targets.append(local)
        inside = [self.statement(depth - 1) for _ in range(self.random.randint(1, 3))]
        if self.chance(50):
            inside.insert(1, self.jump())
        self.readable[:], self.targets[:] = readable, targets
        self.labels.pop()
        return Node("stmt", f"begin : {label} ", declarations, first, " ", *inside, " end")

    def task_call(self, depth):
        writable = [s for s in self.targets if self.operators[s.name] == "=" and not s.unpacked and not s.packed and not s.members]
        fitting = [task for task in self.tasks if task[2] <= len(writable)]
        if not fitting:
            return self.assign_some(depth)
        name, inputs, outputs = self.random.choice(fitting)
        self.note("task call")
        arguments = [self.expression(1) for _ in range(inputs)]
        arguments += [Node("", s.name) for s in self.random.sample(writable, outputs)]
        return Node("stmt", f"{name}(", *[part for a in arguments for part in (", ", a)][1:], ");")

    def statement(self, depth):
        if depth <= 0:
            return self.assign_some(1)
        forms = [(30, self.assign_some), (16, self.branch), (12, self.case), (6, self.named_block), (5, self.task_call)]
        if self.rounds < 6:
            forms += [(7, self.for_loop), (4, self.counting_loop)]
        return self.pick(forms)[1](depth)

    def covering(self, depth):
        """A statement that assigns every target on every path."""
        if depth <= 0 or self.chance(25):
            return Node("", "begin ", self.first_values(self.targets, " "), "end")
        form = self.random.choice([self.branch, self.case])
        self.note("covering " + form.__name__)
        node = form(depth, lambda d: self.covering(d - 1))
        node.kind = ""
        return node

    # Declarations

    def bounds(self, width):
        if width == 1 and self.chance(70):
            return None
        base = self.random.choice([0, 0, 0, 1, 2, 5])
        return (base + width - 1, base) if self.chance(75) else (base, base + width - 1)

    def variable(self, name, largest=12):
        width = self.random.choice([1, 1, 2, 3, 4, 4, 8, self.random.randint(1, largest)])
        return Signal(name, width, self.chance(25), self.bounds(width))

    def declaration(self, signal, keyword=None):
        if keyword is None:
            keyword = "reg" if self.dialect == "v" else self.random.choice(["reg", "logic", "logic"])
        sign = " signed" if signal.signed else ""
        self.note("declared signed" if signal.signed else "declared unsigned")
        span = signal.range_text()
        return f"{keyword}{sign}{' ' if span else ''}{span} {signal.name}{signal.unpacked_text()};"
