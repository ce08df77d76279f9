"""The tree of a generated design. It knows only as much of the language as the reducer needs: what may be left out,
and what may stand in the place of what."""


class Node:
    """A piece of text made of strings and nodes. The kind says how it may shrink: an "item" or a "stmt" may go or be
    replaced by one that it contains, an "expr" by an operand or a constant, an element of a "list" may go."""

    __slots__ = ("kind", "parts", "separator")

    def __init__(self, kind, *parts, separator=""):
        self.kind = kind
        self.parts = list(parts)
        self.separator = separator

    def __str__(self):
        text = self.separator.join(str(part) for part in self.parts)
        return text + " " if self.kind == "stmt" else text


def listing(elements, separator=", "):
    return Node("list", *elements, separator=separator)


EMPTY = {"item": "", "stmt": "begin end"}
CONSTANTS = ("1'b0", "1'b1")


def slots(root):
    """Every place of a tree as (parent, index), outer ones first."""
    level = [root]
    while level:
        following = []
        for parent in level:
            for index, part in enumerate(parent.parts):
                if isinstance(part, Node):
                    yield parent, index
                    following.append(part)
        level = following


def inner(node, kind):
    """The outermost nodes of a kind below a node."""
    found, level = [], [node]
    while level:
        for part in level.pop().parts:
            if isinstance(part, Node):
                (found if part.kind == kind else level).append(part)
    return found


def replacements(node):
    if node.kind in EMPTY:
        yield EMPTY[node.kind]
        yield from inner(node, node.kind)
    elif node.kind == "expr":
        yield from CONSTANTS
        yield from inner(node, "expr")


def drop_runs(parent, fails):
    """Leaves out runs of elements of a list, long runs first."""
    shrunk = False
    size = len(parent.parts)
    while size:
        start = 0
        while start < len(parent.parts):
            kept = parent.parts
            parent.parts = kept[:start] + kept[start + size:]
            if fails():
                shrunk = True
            else:
                parent.parts = kept
                start += size
        size //= 2
    return shrunk


def shrink_slot(parent, index, fails):
    node = parent.parts[index]
    for smaller in replacements(node):
        parent.parts[index] = smaller
        if fails():
            return True
    parent.parts[index] = node
    return False


def is_reachable(root, parent, index):
    return any(p is parent and i == index for p, i in slots(root))


def reduce_tree(root, fails):
    """Shrinks a tree while fails() still says that its text shows the fault."""
    shrunk = True
    while shrunk:
        shrunk = False
        for parent in [root] + [p.parts[i] for p, i in slots(root)]:
            if isinstance(parent, Node) and parent.kind == "list":
                shrunk |= drop_runs(parent, fails)
        for parent, index in list(slots(root)):
            if index < len(parent.parts) and isinstance(parent.parts[index], Node) and is_reachable(root, parent, index):
                shrunk |= shrink_slot(parent, index, fails)
    return root
