"""Random expressions and references of generated designs. All that is written has one meaning: no division by zero, no
read outside a range, no read of what was not assigned, so that the source never computes with unknown bits."""

from gentree import Node, listing


class Signal:
    """A declared object: the vector of one element, further packed dimensions and unpacked ones, outermost first."""

    def __init__(self, name, width, signed=False, bounds=None, packed=(), unpacked=(), members=()):
        self.name = name
        self.width = width  # of the innermost vector
        self.signed = signed
        self.bounds = bounds  # (left, right), or None for a scalar
        self.packed = list(packed)
        self.unpacked = list(unpacked)
        self.members = list(members)  # signals whose names follow a dot

    def total(self):
        bits = self.width
        for left, right in self.packed:
            bits *= abs(left - right) + 1
        return bits

    def range_text(self):
        return "".join(f"[{left}:{right}]" for left, right in self.packed + ([self.bounds] if self.bounds else []))

    def unpacked_text(self):
        return "".join(f" [{left}:{right}]" for left, right in self.unpacked)


class Counted:
    """Random choices, and how often each construct was chosen."""

    def __init__(self, random, counts):
        self.random = random
        self.counts = counts

    def note(self, construct):
        self.counts[construct] += 1

    def chance(self, percent):
        return self.random.random() * 100 < percent

    def pick(self, table):
        """One entry of a table of (weight, entry, ...)."""
        return self.random.choices(table, [row[0] for row in table])[0]


BINARY = ["+", "-", "*", "&", "|", "^", "~^", "^~"]
COMPARE = ["<", "<=", ">", ">=", "==", "!=", "===", "!=="]
REDUCE = ["&", "|", "^", "~&", "~|", "~^", "^~"]
SHIFT = ["<<", ">>", "<<<", ">>>"]
LARGEST = 40


class Expressions(Counted):
    """Expressions over the readable signals. Those that may stand in a concatenation have a size of their own."""

    def __init__(self, random, counts, dialect):
        super().__init__(random, counts)
        self.dialect = dialect
        self.readable = []
        self.indices = []  # loop variables as (name, low, high)
        self.constants = []  # parameters: (name, is sized)
        self.result = None  # of the function at hand
        self.functions = []  # (name, widths of the arguments)

    # Constants

    def sized_constant(self, width=None):
        width = width or self.random.randint(1, 12)
        value = self.random.choice([0, 1, (1 << width) - 1, self.random.getrandbits(width)]) & ((1 << width) - 1)
        sign = "s" if self.chance(25) else ""
        self.note("constant signed" if sign else "constant sized")
        base, digits = self.random.choice([("b", "b"), ("h", "x"), ("d", "d"), ("o", "o")])
        text = format(value, digits)
        if len(text) > 3 and self.chance(20):
            text = text[:2] + "_" + text[2:]
        return f"{width}'{sign}{base}{text}"

    def constant(self, sized):
        if not sized and self.chance(40):
            self.note("constant unsized")
            return str(self.random.choice([0, 1, 2, 3, 7, 100, self.random.getrandbits(10)]))
        named = [name for name, is_sized in self.constants if is_sized or not sized]
        if named and self.chance(35):
            self.note("parameter read")
            return self.random.choice(named)
        return self.sized_constant()

    # Indices

    def plain_vectors(self, largest):
        """Vectors without sign that may be an index. The result of a function is none, since iverilog fails on it."""
        return [s for s in self.readable if s.width <= largest and not s.signed and s is not self.result and
                not (s.unpacked or s.members or s.packed)]

    def index(self, low, high):
        """An index that never leaves a range."""
        size = high - low + 1
        loops = [name for name, a, b in self.indices if low <= a and b <= high]
        if loops and self.chance(70):
            self.note("index loop variable")
            return self.random.choice(loops)
        vectors = self.plain_vectors(8)
        if not vectors or self.chance(40):
            self.note("index constant")
            return str(self.random.randint(low, high))
        signal = self.random.choice(vectors)
        self.note("index variable")
        offset = f"{low} + " if low else ""
        if 1 << signal.width <= size:
            return f"{offset}{signal.name}"
        return f"{offset}({signal.name} % {size})"

    def stray_index(self, low, high):
        """An index of a target, which may also fall outside: nothing is written then."""
        if self.chance(6) and self.dialect != "w":
            vectors = self.plain_vectors(6)
            if vectors:
                self.note("index out of range")
                return self.random.choice(vectors).name
        return self.index(low, high)

    # References

    def select(self, signal, path, target):
        """A vector, or a bit or part of it, by a random kind of select: (node, width, signed)."""
        whole = (Node("expr", *path), signal.width, signal.signed)
        if not signal.bounds or self.chance(45):
            return whole
        left, right = signal.bounds
        low, high = min(left, right), max(left, right)
        downto = left >= right
        kind = self.random.choice(["bit", "bit", "part", "plus", "minus"])
        index = self.stray_index if target else self.index
        self.note(f"{'target' if target else 'read'} {kind} {'downto' if downto else 'upto'}")
        if kind == "bit":
            return Node("expr", *path, "[", index(low, high), "]"), 1, False
        width = self.random.randint(1, signal.width)
        if kind == "part":
            start = self.random.randint(low, high - width + 1)
            first, last = (start + width - 1, start) if downto else (start, start + width - 1)
            return Node("expr", *path, f"[{first}:{last}]"), width, False
        if kind == "plus":
            return Node("expr", *path, "[", self.index(low, high - width + 1), f" +: {width}]"), width, False
        return Node("expr", *path, "[", self.index(low + width - 1, high), f" -: {width}]"), width, False

    def reference(self, signal, target=False):
        """A reference to a signal or a part of it: (node, width, signed)."""
        path = [signal.name]
        for left, right in signal.unpacked:
            self.note("target array element" if target else "read array element")
            path += ["[", self.index(min(left, right), max(left, right)), "]"]
        if signal.members and self.chance(70):
            member = self.random.choice(signal.members)
            self.note("target member" if target else "read member")
            path += ["." + member.name]
            signal = member
            if self.dialect != "w":
                return Node("expr", *path), signal.width, signal.signed
        elif signal.members:
            self.note("whole struct")
            return Node("expr", *path), signal.total(), False
        for position, (left, right) in enumerate(signal.packed):
            low, high = min(left, right), max(left, right)
            if self.chance(25):
                rest = Signal("", signal.width, False, signal.bounds, signal.packed[position:]).total()
                return Node("expr", *path), rest, signal.signed and position == 0
            self.note("target packed dimension" if target else "read packed dimension")
            if self.dialect == "w":
                path += ["[", self.index(low, high), "]"]
            else:
                path += [f"[{self.random.randint(low, high)}]"]
        if signal.packed:
            if self.dialect != "w":
                return Node("expr", *path), signal.width, False
            signal = Signal("", signal.width, False, signal.bounds)
        return self.select(signal, path, target)

    def read(self):
        if not self.readable:
            return Node("expr", self.sized_constant()), 4, False
        recent = self.readable[-4:] if self.chance(50) else self.readable
        return self.reference(self.random.choice(recent))

    # Operators

    def unary(self, depth, sized):
        operator = self.random.choice(["~", "-", "+", "!"] + REDUCE)
        self.note(f"unary {operator}")
        is_self_determined = operator not in ("~", "-", "+")
        return Node("expr", f"({operator}", self.expression(depth - 1, sized or is_self_determined), ")")

    def binary(self, depth, sized):
        operator = self.random.choice(BINARY)
        self.note(f"binary {operator}")
        return Node("expr", "(", self.expression(depth - 1, sized), f" {operator} ", self.expression(depth - 1, sized), ")")

    def comparison(self, depth, sized):
        operator = self.random.choice(COMPARE)
        self.note(f"compare {operator}")
        return Node("expr", "(", self.expression(depth - 1, False), f" {operator} ", self.expression(depth - 1, False), ")")

    def wildcard(self, depth, sized):
        operator = self.random.choice(["==?", "!=?"])
        self.note(f"compare {operator}")
        node, width, _ = self.read()
        size = min(width, 8)
        # A wild bit at the head of a shorter pattern is extended by some tools and not by others.
        head = self.random.choice("01" if size < width else "01xz?")
        pattern = head + "".join(self.random.choice("01xz?") for _ in range(size - 1))
        return Node("expr", "(", node, f" {operator} {len(pattern)}'b{pattern})")

    def logical(self, depth, sized):
        operator = self.random.choice(["&&", "||"])
        self.note(f"logical {operator}")
        return Node("expr", "(", self.expression(depth - 1, False), f" {operator} ", self.expression(depth - 1, False), ")")

    def shift(self, depth, sized):
        operator = self.random.choice(SHIFT)
        self.note(f"shift {operator}")
        if self.chance(35):
            amount = str(self.random.randint(0, 9))
        else:
            amount = self.small()
        return Node("expr", "(", self.expression(depth - 1, sized), f" {operator} ", amount, ")")

    def small(self):
        """A value of at most four bits."""
        signals = self.plain_vectors(4)
        if signals:
            return Node("expr", self.random.choice(signals).name)
        return Node("expr", self.sized_constant(3))

    def division(self, depth, sized):
        operator = self.random.choice(["/", "%"])
        divisor, width, signed = self.read()
        self.note(f"divide {operator}{' signed' if signed else ''}")
        if self.chance(30):
            self.note(f"divide {operator} by constant")
            constant = self.random.choice([1, 2, 3, 4, 5, 8, 10])
            return Node("expr", "(", self.read()[0], f" {operator} {f'6{chr(39)}d{constant}' if sized or self.chance(50) else constant})")
        one = "2'sd1" if signed else "1'b1"
        return Node("expr", "(", self.read()[0], f" {operator} (", divisor, f" | {one}))")

    def power(self, depth, sized):
        self.note("power")
        if self.chance(50):
            return Node("expr", "(", self.read()[0], f" ** {self.random.randint(0, 3)})")
        base = "4'd2" if sized else "2"
        return Node("expr", f"({base} ** ", self.small(), ")")

    def conditional(self, depth, sized):
        self.note("conditional")
        return Node("expr", "(", self.expression(depth - 1, False), " ? ", self.expression(depth - 1, sized), " : ",
                    self.expression(depth - 1, sized), ")")

    def concatenation(self, depth, sized):
        self.note("concatenation")
        elements = [self.expression(depth - 1, True) for _ in range(self.random.randint(1, 3))]
        return Node("expr", "{", listing(elements), "}")

    def replication(self, depth, sized):
        self.note("replication")
        return Node("expr", f"{{{self.random.randint(1, 3)}{{", listing([self.expression(depth - 1, True)]), "}}")

    def sign_cast(self, depth, sized):
        name = self.random.choice(["$signed", "$unsigned"])
        self.note(name)
        return Node("expr", f"{name}(", self.expression(depth - 1, sized or True), ")")

    def size_cast(self, depth, sized):
        kind = self.random.choice(["size", "type", "sign"] if self.dialect == "w" else ["size", "type"])
        self.note(f"cast {kind}")
        target = {"size": str(self.random.randint(1, 12)), "type": self.random.choice(["int", "byte", "shortint", "bit"]),
                  "sign": self.random.choice(["signed", "unsigned"])}[kind]
        return Node("expr", f"{target}'(", self.expression(depth - 1, True), ")")

    def inside(self, depth, sized):
        self.note("inside")
        members = []
        for _ in range(self.random.randint(1, 3)):
            low = self.random.randint(0, 12)
            members.append(f"[{low}:{low + self.random.randint(0, 9)}]" if self.chance(40) else str(low))
        return Node("expr", "(", self.read()[0], " inside {", listing(members), "})")

    def call(self, depth, sized):
        if not self.functions:
            return self.binary(depth, sized)
        name, count = self.random.choice(self.functions)
        self.note("function call")
        return Node("expr", f"{name}(", ", ".join(["{}"] * 0), *self.arguments(count, depth), ")")

    def arguments(self, count, depth):
        parts = []
        for number in range(count):
            parts += [", "] if number else []
            parts.append(self.expression(min(depth - 1, 1), False))
        return parts

    def system_function(self, depth, sized):
        self.note("system function")
        # In braces, because iverilog takes the results as unsigned.
        if self.chance(50):
            return Node("expr", f"{{$clog2({self.random.randint(1, 70)})}}")
        return Node("expr", "{$bits(", self.read()[0], ")}")

    def leaf(self, sized):
        if self.readable and self.chance(80):
            return self.read()[0]
        return Node("expr", self.constant(sized))

    def expression(self, depth, sized=False):
        if depth <= 0 or self.chance(12):
            return self.leaf(sized)
        forms = [(20, self.binary), (8, self.comparison), (5, self.logical), (8, self.unary), (8, self.shift), (8, self.conditional),
                 (7, self.concatenation), (3, self.replication), (3, self.sign_cast), (3, self.division), (1, self.power),
                 (5, self.call)]
        if self.dialect != "v":
            forms += [(3, self.size_cast), (2, self.wildcard)] + ([] if sized else [(1, self.system_function)])
        if self.dialect == "w":
            forms += [(3, self.inside)]
        return self.pick(forms)[1](depth, sized)
