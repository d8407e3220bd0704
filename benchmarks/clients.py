"""The clients that are measured, and what they are given."""

import shutil
from dataclasses import dataclass

NAMES = ["Aldric", "Brenna", "Corvin", "Dessa", "Edrik", "Fenna", "Garrod", "Hilde", "Ivo", "Jorun"]


@dataclass(frozen=True)
class Trigger:
    """A pattern as this client writes it, and the line it is answered with or
    the variable that it sets to its first word."""
    pattern: str
    send: str = ""
    variable: str = ""

    @property
    def words(self):
        return self.pattern.count("{*}")

    def ours(self):
        lines = [self.send] if self.send else []
        if self.send == "answer":
            lines.append("/set flooded, 1")
        if self.variable:
            lines.append(f"/set {self.variable}, " + ("{_trigOut0}" if self.words else "1"))
        return f'\ntrigger "{self.pattern}"\n' + "".join(line + "\n" for line in lines) + "/trigger\n"

    def tintin(self):
        pattern = self.pattern
        if self.words:
            pattern = "^" + pattern.replace("{*}", "%S") + ("" if pattern.endswith("{*}") else "$")
        action = self.send or f"#variable {self.variable} " + ("%1" if self.words else "1")
        return f"#action {{{pattern}}} {{{action}}}\n"

    def tf(self, number):
        # -F: as here, one trigger that fires does not keep the others from it.
        action = f"/send {self.send}" if self.send else f"/set {self.variable}=" + ("%1" if self.words else "1")
        pattern = self.pattern + ("*" if self.pattern.endswith("{*}") else "")
        kind = "glob" if self.words else "substr"
        return f'/def -F -m{kind} -t"{pattern}" trigger{number} = {action}\n'


ANSWERS = [Trigger("The flood is over", send="answer"), Trigger("who goes there", send="friend")]


def many_triggers():
    """100 plain ones and 100 templates; of all these one matches, a line in a
    hundred."""
    plain = [Trigger(f"{NAMES[n % 10]} has put up a sign number {n}", variable="sign") for n in range(50)]
    plain += [Trigger(f"for {n} points of the storm", variable="storm") for n in range(50)]
    templates = [Trigger("{*} tells you: {*}", variable="teller")]
    templates += [Trigger("{*} gives you {*} coins of kind " + str(n), variable="coins") for n in range(50)]
    templates += [Trigger("{*} has put up a notice for guild " + str(n) + " about {*}", variable="guild")
                  for n in range(49)]
    return plain + templates


TRIGGERS = {"no": ANSWERS, "200": many_triggers() + ANSWERS}


@dataclass(frozen=True)
class Client:
    name: str
    command: tuple
    terminal: bool = False


def write_scripts(folder, triggers):
    """The same triggers in each client's own form; {port} stays for bench_play."""
    (folder / "triggers.txt").write_text("".join(t.ours() for t in triggers))
    (folder / "tintin").write_text("".join(t.tintin() for t in triggers))
    # It takes many firings for a loop unless told otherwise.
    (folder / "tf").write_text("/set max_trig=0\n" + "".join(t.tf(n) for n, t in enumerate(triggers)))


def clients(builds):
    """Of each build, and what else is installed; the plain way is the last one's."""
    program = {name: str(build / "benchmarks" / "flood_client") for name, build in builds}
    found = [Client(name, (program[name], "ours", "{port}")) for name in program]
    found.append(Client("plain way", (program[builds[-1][0]], "literal", "{port}")))
    tintin = shutil.which("tt++") or shutil.which("tt++", path="/usr/games")
    if tintin:
        found.append(Client("TinTin++", (tintin, "-G", "-r", "tintin", "-e", "#session game 127.0.0.1 {port}"), True))
    if shutil.which("tf5"):
        found.append(Client("tf5", ("tf5", "-ftf", "127.0.0.1", "{port}"), True))
    return found
