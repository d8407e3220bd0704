"""Just enough of C++ to find where a source can be changed: its tokens, which
brackets belong together, what each brace opens, and what is out of bounds."""

import re
from dataclasses import dataclass, field

_TOKEN = re.compile(
    r"""
    (?P<space>\s+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<pp>^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<raw>(?:u8|[uUL])?R"(?P<mark>[^\s()\\"]{0,16})\(.*?\)(?P=mark)"(?:_\w+|\b\w+)?)
  | (?P<string>(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*"(?:_\w+)?)
  | (?P<char>(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+'(?:_\w+)?)
  | (?P<number>\.?\d(?:'?[\w.]|(?<=[eEpP])[+-])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<op><<=|>>=|<=>|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_OPENING = {"(": ")", "[": "]", "{": "}"}

# Their arguments tell a developer something and change no behaviour.
_SILENT_CALLS = re.compile(
    r"static_assert|Q_ASSERT\w*|assert|qC?(?:Debug|Info|Warning|Critical|Fatal)|alignas|Q_DISABLE\w*"
)


@dataclass
class Token:
    kind: str  # comment, pp, raw, string, char, number, name, op
    text: str
    start: int
    end: int


@dataclass
class Source:
    """The tokens without comments and preprocessor lines; all indices below are
    indices of `tokens`."""

    text: str
    tokens: list[Token] = field(default_factory=list)
    partner: dict[int, int] = field(default_factory=dict)  # both ways
    brace_kind: dict[int, str] = field(default_factory=dict)  # block, list or scope
    inside: list[int] = field(default_factory=list)  # innermost bracket open at each token
    barred: set[int] = field(default_factory=set)

    def __getitem__(self, index: int) -> str:
        """The token's text; empty in front of the first and behind the last."""
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def is_spaced(self, index: int) -> bool:
        """An operator between two operands stands between blanks; that of a
        template or a pointer does not."""
        token = self.tokens[index]
        return (
            0 < token.start
            and self.text[token.start - 1].isspace()
            and token.end < len(self.text)
            and self.text[token.end].isspace()
        )

    def touches(self, index: int) -> bool:
        """Nothing stands between this token and the one before."""
        return index > 0 and self.tokens[index - 1].end == self.tokens[index].start

    def line_of(self, offset: int) -> int:
        return self.text.count("\n", 0, offset) + 1


def read(text: str) -> Source:
    source = Source(text)
    for match in _TOKEN.finditer(text):
        kind = match.lastgroup if match.lastgroup != "mark" else "raw"
        if kind not in ("space", "comment", "pp"):
            source.tokens.append(Token(kind, match.group(), match.start(), match.end()))
    _pair(source)
    _bar(source)
    return source


def _pair(source: Source) -> None:
    stack: list[int] = []
    for i, token in enumerate(source.tokens):
        if token.kind == "op" and token.text in _OPENING.values() and stack:
            opening = stack.pop()
            source.partner[opening], source.partner[i] = i, opening
        source.inside.append(stack[-1] if stack else -1)
        if token.kind == "op" and token.text in _OPENING:
            if token.text == "{":
                source.brace_kind[i] = _kind_of_brace(source, i, stack)
            stack.append(i)


def _kind_of_brace(source: Source, i: int, stack: list[int]) -> str:
    previous = source[i - 1]
    if previous in (")", "else", "do", "try", "const", "noexcept", "override", "mutable", "]", ";", "}"):
        return "block"
    if previous == "{":
        return source.brace_kind.get(stack[-1], "list") if stack else "block"
    first = i - 1
    while first >= 0 and source[first] not in (";", "{", "}"):
        first -= 1
    head = [source[k] for k in range(first + 1, i)]
    if "=" not in head and "(" not in head:
        if any(word in head for word in ("enum",)):
            return "names"
        if any(word in head for word in ("namespace", "class", "struct", "union", "extern")):
            return "scope"
    if previous != "=" and "->" in head and ")" in head and head.index("->") > head.index(")"):
        return "block"  # a function with its type behind it
    return "list"


def _bar(source: Source) -> None:
    for i, token in enumerate(source.tokens):
        if token.kind != "name":
            if token.text == "[" and source[i + 1] == "[" and i in source.partner:
                source.barred.update(range(i, source.partner[i] + 1))
            continue
        if _SILENT_CALLS.fullmatch(token.text) and source[i + 1] == "(":
            end = source.partner.get(i + 1, i + 1)
            while end < len(source.tokens) and source[end] != ";":
                end += 1
            source.barred.update(range(i, end + 1))
        elif token.text in ("QT_TRANSLATE_NOOP", "translate") and source[i + 1] == "(":
            source.barred.add(i + 2)  # the context, for translators alone
        elif token.text == "template" and source[i + 1] == "<":
            depth, k = 0, i + 1
            while k < len(source.tokens):
                depth += {"<": 1, ">": -1, ">>": -2}.get(source[k], 0)
                if depth <= 0:
                    break
                k += 1
            source.barred.update(range(i, k + 1))
        elif token.text == "operator":
            source.barred.update((i, i + 1))
        elif token.text in ("namespace", "using", "typedef", "friend", "extern") and source[i + 1]:
            k = i
            while k < len(source.tokens) and source[k] not in (";", "{"):
                k += 1
            source.barred.update(range(i, k))
