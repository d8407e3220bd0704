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
            "place": change.place, "before": change.before, "after": change.after, "outcome": outcome, **more,
        }
        self.entries[change.name] = entry
        self._write(entry)
        return entry

    def _write(self, entry: dict) -> None:
        self._file.write(json.dumps(entry) + "\n")
        self._file.flush()


class Equivalents:
    """The list of what nobody can notice: paragraphs of "# reason", a file, "- line"
    and "+ line". "@ line" in front tells which of several functions is meant.
    Several changes may stand below one reason."""

    def __init__(self, path: Path):
        self._reasons: dict[tuple[str, str, str, str], str] = {}
        reason, file, place, before = "", "", "", ""
        in_reason = False
        for line in path.read_text().splitlines() if path.exists() else ():
            text = line[1:].strip()
            if line.startswith("#"):
                reason, place = (reason + " " + text if in_reason else text), ""
            elif line.startswith("@"):
                place = text
            elif line.startswith("-"):
                before = text
            elif line.startswith("+"):
                self._reasons[file, place, before, text] = reason
            elif line.strip():
                file, place = line.strip(), ""
            in_reason = line.startswith("#")

    def reason(self, file: str, place: str, before: str, after: str) -> str | None:
        for where in (place, ""):
            if (file, where, before, after) in self._reasons:
                return self._reasons[file, where, before, after]
        return None


def report(entries: list[dict], known: Equivalents) -> str:
    """Entries that became known as equivalent behind their run count as such."""
    def outcome(entry):
        listed = known.reason(*[entry[part] for part in ("file", "place", "before", "after")]) is not None
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
                      f"@ {entry['place']}", f"- {entry['before']}", f"+ {entry['after']}", ""]
    return "\n".join(lines)
