#!/usr/bin/env python3
"""The search as a console user meets it: moves played on go and on the user's moves, the time and
depth limits, moving now, quitting, and commands typed while the engine thinks.

Usage: test_search_console.py BUILD_DIR
"""
import os
import re
import subprocess
import sys
import tempfile
import threading
import time

FIRST_MOVES = {"a3", "a4", "b3", "b4", "c3", "c4", "d3", "d4", "e3", "e4", "f3", "f4", "g3", "g4",
               "h3", "h4", "Na3", "Nc3", "Nf3", "Nh3"}
PLAYED = re.compile(r"Brask played: (\S+)")


class Engine:
    """The engine in a directory of its own, with its output collected as it comes."""

    def __init__(self, binary, directory):
        self.process = subprocess.Popen([binary], cwd=directory, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.output = ""
        self.lock = threading.Lock()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for chunk in iter(lambda: self.process.stdout.read1(4096), b""):
            with self.lock:
                self.output += chunk.decode(errors="replace")

    def send(self, text):
        self.process.stdin.write(text.encode())
        self.process.stdin.flush()

    def text(self):
        with self.lock:
            return self.output

    def wait_for(self, pattern, timeout, start=0):
        """The first match of pattern in the output after position start, or None."""
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            match = re.compile(pattern).search(self.text(), start)
            if match:
                return match
            time.sleep(0.02)
        return None

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def played(engine, timeout, start=0):
    match = engine.wait_for(PLAYED.pattern, timeout, start)
    check(match is not None, f"no move within {timeout} s; output: {engine.text()[start:][-600:]!r}")
    return match


def test_go_plays_a_legal_move(engine):
    engine.send("st 1\ngo\n")
    move = played(engine, 10).group(1)
    check(move in FIRST_MOVES, f"illegal first move {move!r}")


def test_a_user_move_is_answered_in_the_time_set(engine):
    engine.send("st 1\n")
    started = time.monotonic()
    engine.send("e4\n")
    played(engine, 10)
    seconds = time.monotonic() - started
    check(0.8 <= seconds <= 3.0, f"st 1 took {seconds:.2f} s")


def test_sd_limits_the_iterations(engine):
    engine.send("sd 3\nst 100\ngo\n")
    played(engine, 30)
    depths = [int(d) for d in re.findall(r"Depth: (\d+)\.", engine.text())]
    check(depths and max(depths) == 3, f"iterations with sd 3: {sorted(set(depths))}")


def test_level_gives_a_few_seconds(engine):
    engine.send("level 40 0:02 0\n")
    started = time.monotonic()
    engine.send("go\n")
    played(engine, 10)
    seconds = time.monotonic() - started
    check(seconds <= 5.0, f"a move of a 2-minute game for 40 moves took {seconds:.2f} s")


def test_question_mark_moves_now(engine):
    engine.send("st 100\ngo\n")
    time.sleep(1.0)
    check(PLAYED.search(engine.text()) is None, "moved before it was told to")
    started = time.monotonic()
    engine.send("?\n")
    played(engine, 2)
    seconds = time.monotonic() - started
    check(seconds < 1.0, f"? took {seconds:.2f} s")


def test_quit_during_a_search_ends_at_once(engine):
    engine.send("st 100\ngo\n")
    time.sleep(1.0)
    started = time.monotonic()
    engine.send("quit\n")
    status = engine.process.wait(timeout=5)
    seconds = time.monotonic() - started
    check(status == 0, f"exit status {status}")
    check(seconds < 1.0, f"quit took {seconds:.2f} s")
    check(PLAYED.search(engine.text()) is None, "a move was played after quit")


def test_a_wrong_command_is_answered_and_the_search_goes_on(engine):
    engine.send("st 100\ngo\n")
    time.sleep(0.5)
    mark = len(engine.text())
    engine.send("frobnicate\n")
    answer = engine.wait_for(r"frobnicate", 2, mark)
    check(answer is not None, "no answer to a wrong command during the search")
    time.sleep(0.5)
    check(PLAYED.search(engine.text()) is None, "the wrong command ended the search")
    engine.send("?\n")
    played(engine, 2)


def test_lines_arriving_together_run_in_order(engine):
    engine.send("st 100\ngo\n")
    time.sleep(0.5)
    mark = len(engine.text())
    engine.send("frobnicate1\nfrobnicate2\n?\n")
    move = played(engine, 2, mark)
    later = engine.text()[mark:]
    first, second = later.find("frobnicate1"), later.find("frobnicate2")
    check(0 <= first < second < move.start() - mark,
          f"output out of order: {later[:400]!r}")


def main():
    binary = os.path.abspath(os.path.join(sys.argv[1], "brask"))
    tests = [value for name, value in sorted(globals().items()) if name.startswith("test_")]
    failures = 0
    for test in tests:
        with tempfile.TemporaryDirectory() as directory:
            engine = Engine(binary, directory)
            try:
                test(engine)
                print(f"ok   {test.__name__}")
            except AssertionError as error:
                failures += 1
                print(f"FAIL {test.__name__}: {error}")
            finally:
                engine.close()
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
