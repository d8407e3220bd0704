"""The changes that can be made in a source, one at a time."""

import random
import re
from dataclasses import dataclass, replace

from . import tokens
from .tokens import Source

KINDS = ("comparison", "constant", "condition", "statement", "arithmetic", "row")

_COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
_CONNECTIVES = {"&&": "||", "||": "&&"}
_ARITHMETIC = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "&=": "|=", "|=": "&=", "++": "--", "--": "++",
}
# What begins something else than an expression; `return` is looked at apart.
_NO_EXPRESSION = frozenset(
    "if else for while do switch case default try catch throw using namespace template class struct enum union"
    " typedef friend public private protected static constexpr const auto static_assert goto void bool int char"
    " unsigned signed long short float double emit Q_OBJECT Q_GADGET".split()
)
_CONTROLS = frozenset(("if", "for", "while", "switch", "constexpr"))


@dataclass(frozen=True)
class Edit:
    start: int
    end: int
    text: str


@dataclass(frozen=True)
class Change:
    """One change of one file. `before` and `after` are the lines it touches,
    without their indentation: they name it wherever the lines move to. `place`
    is the first line of the function or type around it."""

    file: str
    kind: str
    line: int
    place: str
    before: str
    after: str
    edits: tuple[Edit, ...]
    ordinal: int = 0  # of changes that read the same in one file

    @property
    def key(self) -> tuple[str, str, str]:
        return (self.file, self.before, self.after)

    @property
    def name(self) -> str:
        return "\n".join((*self.key, str(self.ordinal)))

    def apply(self, text: str) -> str:
        """Lines keep their numbers, so that nothing else is compiled anew."""
        for edit in sorted(self.edits, key=lambda edit: edit.start, reverse=True):
            lost = text.count("\n", edit.start, edit.end) - edit.text.count("\n")
            text = text[: edit.start] + edit.text + "\n" * lost + text[edit.end :]
        return text


def _flat(text: str) -> str:
    return " ".join(text.split())


def _place(text: str, before: int) -> str:
    """What begins in the first column begins a part of the file."""
    heads = re.findall(r"^(?!namespace\b)[A-Za-z_].*$", text[:before], re.MULTILINE)
    return _flat(heads[-1]) if heads else ""


def changes_of(file: str, text: str) -> list[Change]:
    source = tokens.read(text)
    found = []
    seen: dict[tuple[str, str, str], int] = {}
    for kind, edits in _all(source):
        first = text.rfind("\n", 0, edits[0].start) + 1
        last = text.find("\n", max(edits[-1].end - 1, edits[0].start))
        last = len(text) if last < 0 else last
        after = text[first:last]
        for edit in reversed(edits):
            after = after[: edit.start - first] + edit.text + after[edit.end - first :]
        change = Change(
            file, kind, source.line_of(edits[0].start), _place(text, first), _flat(text[first:last]), _flat(after),
            tuple(edits),
        )
        ordinal = seen.get(change.key, 0)
        seen[change.key] = ordinal + 1
        found.append(replace(change, ordinal=ordinal))
    return found


def drawn(changes: list[Change], seed: str) -> list[Change]:
    """All of them in an order that the seed alone decides; each kind has its
    turn as often as any other, as long as there are some of it."""
    random_source = random.Random(seed)
    by_kind = {kind: [change for change in changes if change.kind == kind] for kind in KINDS}
    for pool in by_kind.values():
        random_source.shuffle(pool)
    order = []
    while any(by_kind.values()):
        order.append(by_kind[random_source.choice([kind for kind in KINDS if by_kind[kind]])].pop())
    return order


def _all(source: Source):
    for i, token in enumerate(source.tokens):
        if i in source.barred:
            continue
        if token.kind == "op":
            yield from _operator(source, i)
            if token.text == "{" and source.brace_kind.get(i) == "list":
                yield from _rows(source, i)
        elif token.kind == "number":
            yield from _number(source, i)
        elif token.kind in ("string", "raw", "char"):
            yield from _letter(source, i)
        elif token.text in ("true", "false"):
            yield "constant", [_replace(source, i, "false" if token.text == "true" else "true")]
        elif token.text in ("if", "while"):
            yield from _condition(source, i)
        if _begins_statement(source, i):
            yield from _statement(source, i)


def _replace(source: Source, i: int, text: str) -> Edit:
    return Edit(source.tokens[i].start, source.tokens[i].end, text)


def _operator(source: Source, i: int):
    text = source[i]
    if text == "!" and source[i + 1] not in ("", "="):
        yield "condition", [_replace(source, i, "")]
    elif text in ("++", "--"):
        yield "arithmetic", [_replace(source, i, _ARITHMETIC[text])]
    elif text == "?":
        first = _start_of_operand(source, i)
        yield "condition", [
            Edit(source.tokens[first].start, source.tokens[first].start, "!("),
            Edit(source.tokens[i - 1].end, source.tokens[i - 1].end, ")"),
        ]
    elif source.is_spaced(i) and not (text == "&&" and source[i + 1] == "{"):
        if text == "+" and any(source.tokens[k].kind in ("string", "raw", "char") for k in (i - 1, i + 1)):
            return  # texts can be added only
        for kind, table in (("comparison", _COMPARISONS), ("condition", _CONNECTIVES), ("arithmetic", _ARITHMETIC)):
            if text in table:
                yield kind, [_replace(source, i, table[text])]


def _start_of_operand(source: Source, question: int) -> int:
    k = question - 1
    while k >= 0:
        if source[k] in (")", "]", "}"):
            k = source.partner[k]
        elif source[k] in ("(", "[", "{", ",", ";", "=", "+=", "-=", "|=", "&=", "?", ":", "return", "<<"):
            break
        k -= 1
    return k + 1


def _number(source: Source, i: int):
    text = source[i]
    # `= 0` makes a function pure; what touches ">" or "<" is a template's argument.
    if source[i - 1] == "=" and source[i - 2] in (")", "const", "noexcept", "override"):
        return
    if (source[i + 1] in (">", ">>") and source.touches(i + 1)) or (source[i - 1] == "<" and source.touches(i)):
        return
    whole = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9']+)([uUlLzZ]*)", text)
    if whole:
        digits = whole.group(1).replace("'", "")
        if digits.lower().startswith("0x"):
            yield "constant", [_replace(source, i, f"{int(digits, 16) + 1:#x}{whole.group(2)}")]
        else:
            yield "constant", [_replace(source, i, f"{int(digits) + 1}{whole.group(2)}")]
        return
    fraction = re.fullmatch(r"([0-9.]+)([fFlL]?)", text)
    if fraction:
        yield "constant", [_replace(source, i, f"{float(fraction.group(1)) + 1}{fraction.group(2)}")]


def _letter(source: Source, i: int):
    """The letter or figure in the middle of a text, or what stands there."""
    token = source.tokens[i]
    if token.kind == "raw":
        start, end = token.text.index("(") + 1, token.text.rindex(")")
    else:
        mark = '"' if token.kind == "string" else "'"
        start, end = token.text.index(mark) + 1, token.text.rindex(mark)
    content = token.text[start:end]
    # A figure behind "%" only names a place; behind "\" it belongs to an escape.
    letters = [m.start() for m in re.finditer(r"(?<![%\\])(?<!\\x)(?<!\\x[0-9a-fA-F])[A-Za-z0-9]", content)]
    if letters:
        place = letters[len(letters) // 2]
        letter = content[place]
        following = {"z": "a", "Z": "A", "9": "0"}.get(letter, chr(ord(letter) + 1))
        changed = content[:place] + following + content[place + 1 :]
    elif content.startswith("\\") and token.kind == "char":
        changed = "x"
    elif content and "\\" not in content:
        place = len(content) // 2
        changed = content[:place] + "x" + content[place + 1 :]
    else:
        return
    yield "constant", [Edit(token.start + start, token.start + end, changed)]


def _condition(source: Source, i: int):
    opening = i + 1
    if source[opening] != "(":
        return  # if constexpr
    closing = source.partner[opening]
    first = opening + 1
    for k in range(opening + 1, closing):
        if source[k] == ";" and source.inside[k] == opening:
            first = k + 1
    declared = _declared_name(source, first)
    if declared is not None and source[declared + 1] == "=":
        yield "condition", [Edit(*[source.tokens[closing].start] * 2, f"; !({source[declared]})")]
        return
    yield "condition", [
        Edit(*[source.tokens[first].start] * 2, "!("),
        Edit(*[source.tokens[closing].start] * 2, ")"),
    ]


def _declared_name(source: Source, first: int) -> int | None:
    """The index of the name that a declaration beginning here declares."""
    k = first
    words = 0
    while k < len(source.tokens):
        text, kind = source[k], source.tokens[k].kind
        if kind == "name":
            if words and source[k - 1] != "::" and source[k - 1] not in ("const", "constexpr", "static", "unsigned"):
                return k
            words += text not in ("const", "constexpr", "static")
        elif text == "<" and source.touches(k):
            depth = 0
            while k < len(source.tokens):
                depth += {"<": 1, ">": -1, ">>": -2}.get(source[k], 0)
                if depth <= 0:
                    break
                k += 1
        elif text not in ("::",) and not (text in ("*", "&", "&&") and source.touches(k)):
            return None
        k += 1
    return None


def _begins_statement(source: Source, i: int) -> bool:
    around = source.inside[i]
    if around < 0 or source.brace_kind.get(around) != "block":
        return False
    previous = source[i - 1]
    if previous in ("{", "}", ";", "else", "do"):
        # A brace in front of it may have closed a list: "f(T{} + 1)".
        return previous != "}" or source.brace_kind.get(source.partner.get(i - 1, -1)) == "block"
    if previous == ")":
        return source[source.partner[i - 1] - 1] in _CONTROLS
    return previous == ":" and _is_label(source, i - 1)


def _is_label(source: Source, colon: int) -> bool:
    k = colon - 1
    while k >= 0 and (source.tokens[k].kind != "op" or source[k] == "::"):
        if source[k] in ("case", "default"):
            return True
        k -= 1
    return False


def _is_controlled(source: Source, brace: int) -> bool:
    """A block of a condition or a loop, not the body of a function."""
    previous = source[brace - 1]
    if previous == ")":
        return source[source.partner[brace - 1] - 1] in _CONTROLS
    return previous in ("else", "do", ";", "{", "}", ":")


def _statement(source: Source, i: int):
    token = source.tokens[i]
    if token.text in (";", "{", "}") or token.text in _NO_EXPRESSION:
        return
    if token.text != "return" and _declared_name(source, i) is not None:
        return
    end = i
    while source[end] and source[end] != ";":
        if source[end] in (")", "]", "}"):
            return  # what is around it ended first
        end = source.partner.get(end, end) + 1
    if not source[end]:
        return
    closes = source.partner.get(end + 1, -1) == source.inside[i]
    if token.text == "return" and end > i + 1 and closes and not _is_controlled(source, source.inside[i]):
        return  # the function's last: what it returned then is anybody's guess
    stands_alone = source[i - 1] in ("{", "}", ";") or source[i - 1] == ":"
    last = source.tokens[end].end
    yield "statement", [Edit(token.start, last, "" if stands_alone else ";")]


def _rows(source: Source, opening: int):
    """The elements of a list that takes more than one line."""
    closing = source.partner.get(opening)
    around = source.inside[opening]
    if source.brace_kind.get(around) == "list" and source.partner.get(around) != (closing or 0) + 1:
        return  # itself a row, of cells
    if closing is None or "\n" not in source.text[source.tokens[opening].start : source.tokens[closing].end]:
        return
    rows, first = [], opening + 1
    for k in range(opening + 1, closing + 1):
        if source.inside[k] == opening and source[k] == ";":
            return
        if k == closing or (source[k] == "," and source.inside[k] == opening and not _in_template(source, k, first)):
            if k > first:
                rows.append((first, k))
            first = k + 1
    if len(rows) < 2:
        return
    for first, end in rows:
        if end < closing:
            yield "row", [Edit(source.tokens[first].start, source.tokens[end].end, "")]
        elif source[end - 1] != ",":  # the last has no comma: the one before it goes along
            yield "row", [Edit(source.tokens[first - 1].start, source.tokens[end - 1].end, "")]


def _in_template(source: Source, comma: int, first: int) -> bool:
    depth = 0
    for k in range(first, comma):
        if source[k] == "<" and not source.is_spaced(k):
            depth += 1
        elif source[k] in (">", ">>") and not source.is_spaced(k):
            depth -= len(source[k])
    return depth > 0
