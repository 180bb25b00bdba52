"""Runs the engine as a whole program for the transcript tests (`python3 test_X.py BUILD_DIR`),
each run in a fresh temporary directory. Every wait has a deadline: an engine that does not answer
fails its test, never hangs the suite."""
import os
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
# What a search writes on the console: iteration and thinking lines, candidates, statistics.
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
        text = THINKING.sub("", PROMPT.sub("", self.stdout).replace("edit mode> ", ""))
        return [line for line in text.split("\n") if line and not BOARD_LINE.match(line)]



def tool_path(name="brask"):
    return os.path.join(os.path.abspath(sys.argv[1]), name)


def make_tables(directory, *endgames):
    """Tablebase files of `endgames` made by brask-tbgen in `directory`/tb; the path."""
    tables = os.path.join(directory, "tb")
    subprocess.run([tool_path("brask-tbgen"), *endgames, "-o", tables], check=True,
                   capture_output=True, timeout=300)
    return tables


def run(lines=(), arguments=(), files=None, input_bytes=None, timeout=TIMEOUT_SECONDS,
        directory=None, engine=None):
    """Runs the engine (or a copy of it at `engine`) on `lines` or raw `input_bytes`, with `files`
    (name: content) put into the directory first; the files after the run, logs excepted, come
    back in `Run.files` (none when a `directory` of the caller's is used)."""
    if input_bytes is None:
        input_bytes = "".join(line + "\n" for line in lines).encode("utf-8", "surrogateescape")
    with tempfile.TemporaryDirectory(prefix="brask-") as scratch:
        where = directory or scratch
        for name, content in (files or {}).items():
            with open(os.path.join(where, name), "w", encoding="utf-8") as file:
                file.write(content)
        completed = subprocess.run([engine or tool_path(), *arguments], cwd=where,
                                   input=input_bytes, capture_output=True, timeout=timeout)
        return Run(completed, read_log(where), {} if directory else read_files(where))


def expect_transcripts(rows, files=None):
    """Each row (lines, answers, position): the lines, in a run of their own beside `files`, give
    those answers and leave that position in FEN (None: not looked at)."""
    for lines, answers, position in rows:
        result = run([*lines, "write_fen out.fen"], files=files)
        expect_equal(result.status, 0, f"exit status after {lines}")
        expect_equal(result.answers(), answers, f"answers to {lines}")
        if position is not None:
            expect_equal(result.files.get("out.fen", "").strip(), position, f"after {lines}")


def expect_answers(rows, prelude=()):
    """Rows (line, its answer: a text, a list of them, or None), all in one run after `prelude`."""
    result = run([*prelude, *(line for line, _ in rows)])
    expect_equal(result.status, 0, "exit status")
    expected = []
    for _, answer in rows:
        expected += [answer] if isinstance(answer, str) else answer or []
    expect_equal(result.answers(), expected, "answers")
    return result


def read_text(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def read_log(directory):
    logs = sorted(name for name in os.listdir(directory) if re.fullmatch(r"logfile\.\d+", name))
    return read_text(os.path.join(directory, logs[-1])) if logs else ""


def read_files(directory):
    """The files in `directory`, logs excepted, by name."""
    return {name: read_text(os.path.join(directory, name)) for name in os.listdir(directory)
            if not name.startswith("logfile.") and os.path.isfile(os.path.join(directory, name))}


class InteractiveSession:
    """The engine on pipes, read as lines (`read_line`, `wait_for`, `quiet_for`) or, for the
    console's unended prompts, as one text with positions in it (`mark`, `output`, `poll_for`,
    `wait_for_text`). Use it in a `with` block; the log is in `log` afterwards."""

    def __init__(self, arguments=(), timeout=TIMEOUT_SECONDS, engine=None):
        self.directory = tempfile.TemporaryDirectory(prefix="brask-")
        self.process = subprocess.Popen([engine or tool_path(), *arguments],
                                        cwd=self.directory.name,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        self._text = ""
        self._line_start = 0  # where the next unread line begins
        self._ended = False
        self._changed = threading.Condition()
        self.received = []  # every line read so far, in order
        self.deadline = time.monotonic() + timeout
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for chunk in iter(lambda: self.process.stdout.read1(4096), b""):
            with self._changed:
                self._text += chunk.decode("utf-8", "replace")
                self._changed.notify_all()
        with self._changed:
            self._ended = True
            self._changed.notify_all()

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def send(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines).encode())
        self.process.stdin.flush()

    def read_line(self, timeout):
        """The next line of output (the last may lack its newline), or None after `timeout`."""
        end = min(time.monotonic() + timeout, self.deadline)
        with self._changed:
            while True:
                newline = self._text.find("\n", self._line_start)
                if newline >= 0 or self._ended and self._line_start < len(self._text):
                    newline = newline if newline >= 0 else len(self._text)
                    line, self._line_start = self._text[self._line_start:newline], newline + 1
                    self.received.append(line)
                    return line
                if self._ended or time.monotonic() >= end:
                    return None
                self._changed.wait(end - time.monotonic())

    def wait_for(self, pattern, timeout, what=None):
        """The match of the first line matching `pattern`, and the lines skipped; fails the test
        if none comes in time."""
        end, skipped = time.monotonic() + timeout, []
        while (line := self.read_line(end - time.monotonic())) is not None:
            if match := re.search(pattern, line):
                return match, skipped
            skipped.append(line)
        raise AssertionError(f"{what or pattern}: nothing matching within {timeout} s; last "
                             f"lines read: {skipped[-8:]}")

    def quiet_for(self, seconds):
        """The lines written within `seconds`: what the engine says while left alone."""
        end, lines = time.monotonic() + seconds, []
        while (line := self.read_line(end - time.monotonic())) is not None:
            lines.append(line)
        return lines

    def output(self, start=0):
        with self._changed:
            return self._text[start:]

    def mark(self):
        """A position in the output, for looking only at what comes after it."""
        with self._changed:
            return len(self._text)

    def poll_for(self, pattern, timeout, start=0):
        """The first match of `pattern` in the output after `start` within `timeout`, or None."""
        compiled = re.compile(pattern)
        end = min(time.monotonic() + timeout, self.deadline)
        with self._changed:
            while True:
                match = compiled.search(self._text, start)
                left = end - time.monotonic()
                if match or self._ended or left <= 0:
                    return match
                self._changed.wait(left)

    def wait_for_text(self, pattern, timeout, start=0):
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
            try:
                self.send("quit")
                self.process.wait(timeout=5)
            except (OSError, subprocess.TimeoutExpired):
                self.process.kill()
                self.process.wait()
        self._reader.join(timeout=5)
        self.log = read_log(self.directory.name)
        self.directory.cleanup()


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


def run_tests(module_globals):
    """Runs the module's test functions, reports each, and exits non-zero if any failed."""
    tests = [value for name, value in module_globals.items() if name.startswith("test_")]
    failures = 0
    for test in tests:
        try:
            test()
            print(f"ok   {test.__name__}")
        except Exception as error:  # a broken test is reported like a failing one; the rest run
            failures += 1
            failed = isinstance(error, (AssertionError, subprocess.TimeoutExpired))
            print(f"FAIL {test.__name__}: {error if failed else traceback.format_exc()}")
    print(f"{len(tests) - failures} passed, {failures} failed")
    sys.exit(1 if failures else 0)
