"""A terminal that is given the same text as the client's pane."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

from measuring import display

SCROLLBACK = 37000  # lines, as many as the full pane of the client holds


class Urxvt:
    """One window, from its start to its end."""

    def __init__(self, screen, folder):
        self.folder = folder
        self.surroundings = dict(os.environ, DISPLAY=screen, LC_ALL="C.UTF-8", HOME=str(folder))
        wait = "until [ -e go ]; do sleep 0.02; done"
        script = f"echo $WINDOWID > window; {wait}; cat text; touch done; exec sleep 1000"
        self.process = subprocess.Popen(
            ["urxvt", "-sl", str(SCROLLBACK), "-geometry", "96x45", "-e", "sh", "-c", script],
            cwd=folder, env=self.surroundings, stderr=subprocess.DEVNULL)
        self.wait_for("window")
        self.wait_until_idle()

    def end(self):
        self.process.terminate()
        self.process.wait()

    def wait_for(self, name, patience=120):
        until = time.monotonic() + patience
        while not (self.folder / name).exists() or not (self.folder / name).stat().st_size and name == "window":
            if time.monotonic() > until or self.process.poll() is not None:
                raise RuntimeError(f"urxvt makes no {name}")
            time.sleep(0.01)

    def spent(self):
        """Seconds of the processor."""
        tasks = pathlib.Path(f"/proc/{self.process.pid}/task").glob("*/schedstat")
        return sum(int(task.read_text().split()[0]) for task in tasks) / 1e9

    def wait_until_idle(self, calm=0.25):
        before, quiet = self.spent(), time.monotonic()
        while time.monotonic() - quiet < calm:
            time.sleep(0.02)
            now = self.spent()
            if now - before > 0.002:
                quiet = time.monotonic()
            before = now

    def show_text(self):
        before = self.spent()
        (self.folder / "go").touch()
        self.wait_for("done")
        self.wait_until_idle()
        return self.spent() - before

    def xdotool(self, *words):
        window = (self.folder / "window").read_text().strip()
        # Options stand before the window, sizes behind it.
        options = [str(word) for word in words if str(word).startswith("--")]
        sizes = [str(word) for word in words[1:] if str(word) not in options]
        done = subprocess.run(["xdotool", words[0], *options, window, *sizes], env=self.surroundings,
                              stdout=subprocess.PIPE, text=True, check=True)
        return done.stdout

    def size(self):
        fields = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell").split())
        return int(fields["WIDTH"]), int(fields["HEIGHT"])

    def resize(self, times, by):
        """Each is seen to before the next comes."""
        width, height = self.size()
        before = self.spent()
        for number in range(1, times + 1):
            self.xdotool("windowsize", width + number * by, height)
            self.wait_until_idle(0.1)
        if self.size() != (width + times * by, height):
            raise RuntimeError("urxvt is not resized")
        return self.spent() - before

    def resident(self):
        lines = pathlib.Path(f"/proc/{self.process.pid}/status").read_text().splitlines()
        return int(next(line for line in lines if line.startswith("VmRSS")).split()[1]) * 1024 / 1e6


def urxvt(play, size):
    """What a flood of so many megabytes costs it, then one resize and ten, and
    what the display server has spent beside it; nothing where it is not installed."""
    if not all(map(shutil.which, ("urxvt", "Xvfb", "xdotool"))):
        return None
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="kelmora-bench-")))
        with open(folder / "text", "wb") as text:
            subprocess.run([str(play), "text", "--megabytes", str(size)], stdout=text, check=True)
        screen, server_spent = stack.enter_context(display())
        window = Urxvt(screen, folder)
        stack.callback(window.end)
        before = server_spent()
        result = {"cpu urxvt": window.show_text(), "display": server_spent() - before}
        result["resident"] = window.resident()
        result["work resize"] = window.resize(1, -7)
        result["work drag"] = window.resize(10, -7)
        return result
