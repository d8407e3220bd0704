"""What became of each change: the file of results, the list of changes that
cannot be noticed, and the report."""

import json
from collections import Counter
from pathlib import Path

from .changes import Change

NOTICED, UNNOTICED, EQUIVALENT, REJECTED = "noticed", "unnoticed", "equivalent", "does not compile"


class Results:
    """A file with one line for each change, written as soon as it is known."""

    def __init__(self, path: Path, entries: dict[str, dict]):
        self.entries = entries
        path.parent.mkdir(parents=True, exist_ok=True)
        self._file = path.open("w")
        for entry in entries.values():
            self._write(entry)

    @staticmethod
    def read(path: Path) -> dict[str, dict]:
        entries = {}
        for line in path.read_text().splitlines() if path.exists() else ():
            try:
                entry = json.loads(line)
            except ValueError:
                continue  # cut off in the middle of it
            entries[entry["name"]] = entry
        return entries

    def add(self, room: str, change: Change, outcome: str, **more) -> dict:
        entry = {
            "name": change.name, "room": room, "file": change.file, "line": change.line, "kind": change.kind,
            "before": change.before, "after": change.after, "outcome": outcome, **more,
        }
        self.entries[change.name] = entry
        self._write(entry)
        return entry

    def _write(self, entry: dict) -> None:
        self._file.write(json.dumps(entry) + "\n")
        self._file.flush()


def read_equivalents(path: Path) -> dict[tuple[str, str, str], str]:
    """Paragraphs of "# reason", "file", "- line" and "+ line"; several changes
    may stand below one reason."""
    known: dict[tuple[str, str, str], str] = {}
    reason, file, before = "", "", ""
    in_reason = False
    for line in path.read_text().splitlines() if path.exists() else ():
        if line.startswith("#"):
            reason = (reason + " " if in_reason else "") + line[1:].strip()
        elif line.startswith("- "):
            before = line[2:].strip()
        elif line.startswith("+"):
            known[file, before, line[1:].strip()] = reason
        elif line.strip():
            file = line.strip()
        in_reason = line.startswith("#")
    return known


def report(entries: list[dict], known: dict[tuple[str, str, str], str]) -> str:
    """Entries that became known as equivalent behind their run count as such."""
    def outcome(entry):
        listed = (entry["file"], entry["before"], entry["after"]) in known
        return EQUIVALENT if listed and entry["outcome"] == UNNOTICED else entry["outcome"]

    lines, total = [], Counter()
    lines.append(f"{'room':<12}{'changes':>8}{'equivalent':>12}{'noticed':>9}{'(hangs)':>9}{'unnoticed':>11}{'score':>9}")

    def row(name, counted):
        real = counted[NOTICED] + counted[UNNOTICED]
        score = f"{100 * counted[NOTICED] / real:.1f} %" if real else "-"
        lines.append(
            f"{name:<12}{real + counted[EQUIVALENT]:>8}{counted[EQUIVALENT]:>12}{counted[NOTICED]:>9}"
            f"{counted['hangs']:>9}{counted[UNNOTICED]:>11}{score:>9}"
        )

    for room in dict.fromkeys(entry["room"] for entry in entries):
        counted = Counter(outcome(entry) for entry in entries if entry["room"] == room)
        counted["hangs"] = sum(entry["room"] == room and entry.get("how") == "hangs" for entry in entries)
        row(room, counted)
        total += counted
    row("all", total)
    lines.append(f"Drawn anew, because they do not compile: {total[REJECTED]}")
    by = Counter(entry["by"] for entry in entries if outcome(entry) == NOTICED)
    lines += ["", "Noticed by: " + ", ".join(f"{test} {count}" for test, count in by.most_common()), ""]
    for entry in entries:
        if outcome(entry) == UNNOTICED:
            lines += [f"unnoticed: {entry['file']}:{entry['line']} ({entry['kind']})",
                      f"- {entry['before']}", f"+ {entry['after']}", ""]
    return "\n".join(lines)
