"""A copy of the tree with a build folder of its own, in which sources are
changed, built and tested. The checkout is only read."""

import hashlib
import json
import os
import select
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

# Optimised a little, nothing to debug with; a function that has lost its only
# `return` is no program.
_CONFIGURATION = {
    "CMAKE_BUILD_TYPE": "Release",
    "CMAKE_CXX_FLAGS": "-Werror=return-type",
    "CMAKE_CXX_FLAGS_RELEASE": "-O1",
    "BUILD_TESTING": "ON",
    "KELMORA_WERROR": "OFF",
    "KELMORA_BENCHMARKS": "OFF",
}
_BUILD_SECONDS = 600
# A change may ask for all the memory there is, or write without end.
_LIMITS = "ulimit -c 0; ulimit -v 6291456; ulimit -f 2097152"


class BrokenTree(Exception):
    """The unchanged tree does not build, or its own tests fail."""


@dataclass
class Test:
    name: str
    command: list[str]
    folder: str
    environment: dict[str, str]
    seconds: float = 0.0

    @property
    def limit(self) -> float:
        """Behind it a test counts as hanging; the machine may be busy."""
        return max(10.0, 6 * self.seconds)


def _output_of(
    command: list[str], folder: Path, limit: float, environment: dict[str, str], until: bytes | None = None
) -> tuple[int | None, str]:
    """The exit status, or None when it took too long, and what was printed. All
    that the command started ends with it; once it prints `until` it has failed,
    and need not come to its end."""
    process = subprocess.Popen(
        command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT, start_new_session=True,
    )
    output = bytearray()
    deadline = time.monotonic() + limit
    failed = False
    try:
        while (left := deadline - time.monotonic()) > 0 and not failed:
            if not select.select([process.stdout], [], [], left)[0]:
                continue
            chunk = os.read(process.stdout.fileno(), 1 << 16)
            if not chunk:
                return process.wait(max(left, 1)), output.decode(errors="replace")
            output += chunk
            failed = until is not None and until in output[-2 * len(chunk) - len(until) :]
    except subprocess.TimeoutExpired:
        pass
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.stdout.close()
        process.wait()
    return 1 if failed else None, output.decode(errors="replace")


class Workshop:
    def __init__(self, checkout: Path, place: Path, streams: int | None):
        self.checkout = checkout
        self.tree = place / "tree"
        self.build_folder = place / "build"
        self.home = place / "home"
        self.streams = streams
        self._objects: dict[Path, str] = {}

    def prepare(self, rooms: list[str], processes: int, say) -> None:
        """Brings the copy to the checkout's state and builds the rooms' tests."""
        self._copy()
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir(parents=True)
        self.home.chmod(0o1777)  # some tests go on as another user
        options = [f"-D{name}={value}" for name, value in _CONFIGURATION.items()]
        if shutil.which("ld.lld"):
            options += ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"]
        configure = ["cmake", "-G", "Ninja", "-S", str(self.tree), "-B", str(self.build_folder), *options]
        status, output = _output_of(configure, self.tree, _BUILD_SECONDS, dict(os.environ))
        if status != 0:
            raise BrokenTree(output)
        for room in rooms:
            say(f"Building the tests of {room} in {self.build_folder}")
            built, output = self.build(room, processes, 10 * _BUILD_SECONDS)
            if not built:
                raise BrokenTree(output)
        self._objects = {path: self._digest(path) for path in self.build_folder.rglob("*.o")}

    def _copy(self) -> None:
        listed = subprocess.run(
            ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
            cwd=self.checkout, check=True, capture_output=True,
        ).stdout.decode()
        wanted = {name for name in listed.split("\0") if name and (self.checkout / name).is_file()}
        for name in wanted:
            source, target = self.checkout / name, self.tree / name
            target.parent.mkdir(parents=True, exist_ok=True)
            content = source.read_bytes()
            # What is the same keeps its time, and is not compiled again.
            if not target.is_file() or target.read_bytes() != content:
                target.write_bytes(content)
            shutil.copymode(source, target)
        for path in self.tree.rglob("*"):
            if path.is_file() and str(path.relative_to(self.tree)) not in wanted:
                path.unlink()

    def tests_of(self, room: str) -> list[Test]:
        """Once they are built: before that, ctest has no command for them."""
        listed = subprocess.run(
            ["ctest", "--show-only=json-v1"], cwd=self.build_folder, check=True, capture_output=True, text=True
        )
        tests = []
        for entry in json.loads(listed.stdout)["tests"]:
            properties = {p["name"]: p["value"] for p in entry.get("properties", [])}
            folder = properties.get("WORKING_DIRECTORY", "")
            if Path(folder) != self.build_folder / "tests" / room:
                continue
            environment = dict(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", []))
            tests.append(Test(entry["name"], entry["command"], folder, environment))
        return tests

    def build(self, room: str, processes: int = 1, limit: float = _BUILD_SECONDS) -> tuple[bool, str]:
        """What the room's tests need, and nothing else."""
        command = ["ninja", "-C", str(self.build_folder), "-j", str(processes), f"tests/{room}/all"]
        status, output = _output_of(command, self.tree, limit, dict(os.environ))
        return status == 0, output

    def measure(self, tests: list[Test]) -> None:
        """Times each test on the unchanged tree, the quickest then first."""
        for test in tests:
            began = time.monotonic()
            status, output = self._run(test, 600)
            test.seconds = time.monotonic() - began
            if status != 0:
                raise BrokenTree(f"{test.name} fails without any change:\n{output}")
        tests.sort(key=lambda test: test.seconds)

    def changed_objects(self) -> bool:
        """Whether the last build made an object that the unchanged tree has not."""
        return any(self._digest(path) != digest for path, digest in self._objects.items())

    def first_failure(self, tests: list[Test]) -> tuple[str, str] | None:
        """The first test that notices, and how. A failure must happen twice, lest
        a busy machine is taken for one."""
        for test in tests:
            status, _ = self._run(test, test.limit)
            if status is None:
                return test.name, "hangs"
            if status < 0 or status > 128:
                return test.name, "crashes"
            if status != 0 and self._run(test, test.limit)[0] != 0:
                return test.name, "fails"
        return None

    def _run(self, test: Test, limit: float) -> tuple[int | None, str]:
        environment = os.environ | {"HOME": str(self.home), "TMPDIR": str(self.home)} | test.environment
        environment["QTEST_DISABLE_STACK_DUMP"] = "1"  # a debugger takes its time, and nobody reads it
        if self.streams is not None:
            environment["KELMORA_STREAMS"] = str(self.streams)
        command = ["sh", "-c", _LIMITS + '; exec "$@"', "sh", *test.command]
        return _output_of(command, Path(test.folder), limit, environment, until=b"FAIL!  : ")

    @staticmethod
    def _digest(path: Path) -> str:
        return hashlib.sha256(path.read_bytes()).hexdigest() if path.exists() else ""
