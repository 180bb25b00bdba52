"""Runs the engine as a whole program for the transcript tests.

Each run gets a fresh temporary working directory, so that its log file (read back into the
result) and any files the commands write stay out of the build tree. A run that does not end
within its timeout is a failure, never a stuck suite.
"""
import os
import queue
import re
import subprocess
import sys
import tempfile
import threading
import time
import traceback

TIMEOUT_SECONDS = 20

# The console prompt: a carriage return for the terminal, then side and move number.
PROMPT = re.compile(r" \r(?:White|Black) \d+> ")
EDIT_PROMPT = "edit mode> "
# What a search writes on the console while it runs and when it ends: iteration lines without a
# newline, thinking lines that overwrite them, new candidates, and the statistics.
THINKING = re.compile(r"\r?Depth: \d+\.(?: [^\n]*\n)?|\d+ knodes searched\n|!\? \S+ |"
                      r"(?:time: |hit ratio: |ETTC tries=)[^\n]*\n")
# A board diagram as the console shows it after each change of the game.
BOARD_LINE = re.compile(r"^(?:    \+---.*|  [1-8] \|.*|      a   b .*|castle possibilities: .*"
                        r"|side on move: .*)$")


class Run:
    """The outcome of one run: exit status, both output streams as text, the log, the files."""

    def __init__(self, completed, log, directory_files):
        self.status = completed.returncode
        self.stdout = completed.stdout.decode("utf-8", "replace")
        self.stderr = completed.stderr.decode("utf-8", "replace")
        self.log = log
        self.files = directory_files

    def answers(self):
        """Standard output without prompts, board diagrams and thinking output, as lines."""
        text = PROMPT.sub("", self.stdout).replace(EDIT_PROMPT, "")
        text = THINKING.sub("", text)
        return [line for line in text.split("\n") if line and not BOARD_LINE.match(line)]

    def prompts(self):
        return [match.group(0)[2:] for match in PROMPT.finditer(self.stdout)]


def engine_path():
    return os.path.join(os.path.abspath(sys.argv[1]), "brask")


def run(lines=(), arguments=(), files=None, input_bytes=None, timeout=TIMEOUT_SECONDS):
    """Runs the engine on `lines` (each ended by a newline) or on raw `input_bytes`.

    `files` maps names to contents to put into the working directory first; the contents of all
    files there after the run, logs excepted, come back in `Run.files`.
    """
    if input_bytes is None:
        input_bytes = "".join(line + "\n" for line in lines).encode("utf-8", "surrogateescape")
    with tempfile.TemporaryDirectory(prefix="brask-") as directory:
        for name, content in (files or {}).items():
            with open(os.path.join(directory, name), "w", encoding="utf-8") as file:
                file.write(content)
        completed = subprocess.run([engine_path(), *arguments], cwd=directory, input=input_bytes,
                                   capture_output=True, timeout=timeout)
        return Run(completed, read_log(directory), read_files(directory))


def read_log(directory):
    path = os.path.join(directory, "logfile.000")
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def read_files(directory):
    contents = {}
    for name in os.listdir(directory):
        path = os.path.join(directory, name)
        if name.startswith("logfile.") or not os.path.isfile(path):
            continue
        with open(path, encoding="utf-8", errors="replace") as file:
            contents[name] = file.read()
    return contents


class InteractiveSession:
    """The engine on pipes, for tests that time their lines against what it has answered.

    Lines of standard output are read as they come; every wait has a deadline, and `close` ends
    the engine (by "quit", then by force) so that no test can hang. Use it in a `with` block; the
    log of the run is in `log` afterwards.
    """

    def __init__(self, arguments=(), timeout=TIMEOUT_SECONDS):
        self.directory = tempfile.TemporaryDirectory(prefix="brask-")
        self.process = subprocess.Popen([engine_path(), *arguments], cwd=self.directory.name,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        self.lines = queue.Queue()
        self.received = []  # every line read so far, in order
        self.deadline = time.monotonic() + timeout
        self.log = ""
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for raw in iter(self.process.stdout.readline, b""):
            self.lines.put(raw.decode("utf-8", "replace").rstrip("\n"))
        self.lines.put(None)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def send(self, *lines):
        for line in lines:
            self.process.stdin.write((line + "\n").encode())
        self.process.stdin.flush()

    def read_line(self, timeout):
        """The next line of output, or None if none came within `timeout` seconds."""
        timeout = min(timeout, self.deadline - time.monotonic())
        try:
            line = self.lines.get(timeout=max(timeout, 0))
        except queue.Empty:
            return None
        if line is None:
            self.lines.put(None)  # the end of output stays seen by later reads
        else:
            self.received.append(line)
        return line

    def wait_for(self, pattern, timeout, what=None):
        """Reads lines until one matches `pattern` (a regular expression, searched); returns the
        match and the lines read before it. Fails the test if none comes in time."""
        pattern = re.compile(pattern)
        skipped = []
        end = time.monotonic() + timeout
        while True:
            line = self.read_line(end - time.monotonic())
            if line is None:
                raise AssertionError(f"{what or pattern.pattern}: nothing matching within "
                                     f"{timeout} s; last lines read: {skipped[-8:]}")
            match = pattern.search(line)
            if match:
                return match, skipped
            skipped.append(line)

    def quiet_for(self, seconds):
        """The lines written within `seconds`: what the engine says while left alone."""
        lines = []
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            line = self.read_line(end - time.monotonic())
            if line is None:
                break
            lines.append(line)
        return lines

    def close(self):
        if self.process.poll() is None:
            try:
                self.send("quit")
                self.process.wait(timeout=5)
            except (OSError, subprocess.TimeoutExpired):
                self.process.kill()
                self.process.wait()
        self.log = read_log(self.directory.name)
        self.directory.cleanup()
        return self.log


def log_only_reports(log):
    """The last lines of the reports that went to the log alone, without their suffix."""
    reports = re.findall(r"([^\n]*) \(not sent to xboard\)\n", log)
    return [re.sub(r"^(?:White|Black) \d+> ", "", report) for report in reports]


def expect_equal(actual, expected, what):
    if actual != expected:
        raise AssertionError(f"{what}:\n  expected {expected!r}\n  actual   {actual!r}")


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def run_tests(tests):
    """Runs the test functions in order, reports each, and exits non-zero if any failed."""
    failures = 0
    for test in tests:
        try:
            test()
            print(f"ok   {test.__name__}")
        except (AssertionError, subprocess.TimeoutExpired) as error:
            failures += 1
            print(f"FAIL {test.__name__}: {error}")
        except Exception:  # a broken test is reported like a failing one, and the others run
            failures += 1
            print(f"FAIL {test.__name__}:\n{traceback.format_exc()}")
    print(f"{len(tests) - failures} passed, {failures} failed")
    sys.exit(1 if failures else 0)


class ConsoleSession:
    """The engine on pipes as a console user meets it, watched as one stream of text.

    Unlike `InteractiveSession`, which reads whole lines, this one also sees what the console
    writes without a newline (prompts, iteration lines that the next thinking line overwrites),
    and a wait may look back at output already seen, from any position. A reader thread collects
    the output; `wait_for` looks for a pattern after a position in it, with a deadline, so a
    silent engine fails the test instead of hanging it. Use it as a context manager: the engine is killed at the end whatever happened,
    and the log is read back into `log`.
    """

    def __init__(self, arguments=()):
        self._directory = tempfile.TemporaryDirectory(prefix="brask-")
        self.process = subprocess.Popen([engine_path(), *arguments], cwd=self._directory.name,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT)
        self._output = ""
        self._lock = threading.Lock()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self.log = ""

    def _read(self):
        for chunk in iter(lambda: self.process.stdout.read1(4096), b""):
            with self._lock:
                self._output += chunk.decode("utf-8", "replace")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def send(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines).encode())
        self.process.stdin.flush()

    def output(self, start=0):
        with self._lock:
            return self._output[start:]

    def mark(self):
        """A position in the output, for looking only at what comes after it."""
        with self._lock:
            return len(self._output)

    def poll_for(self, pattern, timeout, start=0):
        """The first match of `pattern` after `start` within `timeout` seconds, or None."""
        compiled = re.compile(pattern)
        deadline = time.monotonic() + timeout
        while True:
            match = compiled.search(self.output(), start)
            if match or time.monotonic() >= deadline:
                return match
            time.sleep(0.02)

    def wait_for(self, pattern, timeout, start=0):
        """Like `poll_for`, but a missing answer fails the test with the end of the output."""
        match = self.poll_for(pattern, timeout, start)
        if match is None:
            raise AssertionError(f"no {pattern!r} within {timeout} s; output ends with "
                                 f"{self.output(start)[-800:]!r}")
        return match

    def quit(self, timeout=10):
        """Sends quit and waits for the end; the exit status."""
        self.send("quit")
        return self.process.wait(timeout=timeout)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self._reader.join(timeout=5)
        self.log = read_log(self._directory.name)
        self._directory.cleanup()
