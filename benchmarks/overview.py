"""One table of what a player feels: a column for each build, and for the two
programs that it is held against."""

from clients import TRIGGERS
from measuring import cell, cpu, medians, table
from terminals import urxvt

DEEDS = {
    "resize": "the window narrower by 7 pixels",
    "drag": "ten of these in a row",
    "font": "another font for the pane",
    "save": "the session saved",
    "links": "15,000 different links arrive",
    "more links": "30,000 more, which push others out",
}
FULL = 20  # megabytes that fill a pane for certain


class Rows:
    def __init__(self, columns):
        self.columns = columns
        self.rows = []

    def head(self, title):
        self.rows.append([f"**{title}**", *("" for _ in self.columns)])

    def add(self, title, results, key, unit="s"):
        self.rows.append([title, *(cell(results.get(name), key, unit) for name in self.columns)])


def milliseconds(key):
    return lambda result: result[key] * 1000 if key in result else None


def terminal_figures(bench, sizes):
    figures = {}
    for size in sizes:
        runs = [urxvt(bench.play, size) for _ in range(bench.runs)]
        figures[size] = medians([run for run in runs if run])
    return figures


def add_deaf(rows, deaf, terminals):
    rows.head("Full pane, a line every millisecond: longest wait for an answer")
    rows.add("nothing done", deaf, milliseconds("deaf nothing"), "ms")
    for name, title in DEEDS.items():
        rows.add(title, deaf, milliseconds(f"deaf {name}"), "ms")
    rows.add("links out of use, in a quiet moment (stall of the event loop)", deaf, "stall quiet", "ms")
    rows.head("Full pane: CPU")
    with_terminal = dict(deaf, urxvt=terminals.get(FULL))
    for name, title in DEEDS.items():
        if name != "more links":
            rows.add(title, with_terminal, milliseconds(f"work {name}"), "ms")
    rows.add("links out of use, six seconds of quiet", deaf, milliseconds("work quiet"), "ms")
    rows.head("Formats in the document")
    for title, key in (("after 15,000 links", "links"), ("after 60,000", "more links"),
                       ("after the links have been pushed out", "before quiet"),
                       ("after six seconds of quiet", "behind quiet")):
        rows.add(title, deaf, f"formats {key}", "")


def add_floods(rows, bench, chosen, sizes, limit, terminals):
    floods = {(triggers, size): bench.side_by_side("flood", chosen, triggers, ["--megabytes", size, "--limit", limit])
              for triggers in TRIGGERS for size in sizes}
    rows.head("A flood")
    for (triggers, size), result in floods.items():
        rows.add(f"{size} MB, {triggers} triggers: answer to the last line", result, milliseconds("answer"), "ms")
    for size in sizes:
        result = dict(floods["no", size], urxvt=terminals.get(size))
        rows.add(f"{size} MB: CPU until settled", result, lambda r: cpu(r) * 1000, "ms")
    result = dict(floods["no", sizes[-1]], urxvt=terminals.get(sizes[-1]))
    rows.add(f"{sizes[-1]} MB: resident memory, settled", result, "resident", "MB")
    rows.add(f"{sizes[-1]} MB: at its peak", result, "peak", "MB")


def add_rounds(rows, bench, chosen):
    rows.head("One line answered by a trigger")
    for gap, title in ((0, "one after another"), (4, "4 ms between them")):
        result = bench.side_by_side("rounds", chosen, options=["--count", 1000, "--gap", gap])
        for figure in ("median", "99th"):
            rows.add(f"{title}: {figure}", result, milliseconds(figure), "ms")


def add_keys(rows, bench, own, limit):
    rows.head(f"Keys pressed while a flood of {FULL} MB runs")
    result = bench.side_by_side("flood", own, "no", ["--megabytes", FULL, "--watch", "--limit", limit])
    for title, key in (("key to paint, median", "keyMedian"), ("99th", "key99"), ("longest", "keyLongest"),
                       ("longest stall of the event loop", "stall")):
        rows.add(title, result, key, "ms")


def overview(bench, chosen, sizes, limit):
    own = [c for c in chosen if c.name in bench.builds]
    players = own + [c for c in chosen if c.name == "tf5"]
    rows = Rows([*(c.name for c in players), "urxvt"])
    terminals = terminal_figures(bench, sorted({*sizes, FULL}))
    deaf = bench.side_by_side("deaf", own, options=["--megabytes", FULL, "--limit", limit], patience=600)
    add_deaf(rows, deaf, terminals)
    add_floods(rows, bench, players, sizes, limit, terminals)
    add_rounds(rows, bench, players)
    add_keys(rows, bench, own, limit)
    table("Side by side (tf5 draws nothing itself; urxvt's display server is not counted)", ["", *rows.columns],
          rows.rows)
