#!/usr/bin/env python3
"""Start-up of the engine: the numbered log, its first blocks, and the logging of every input line.

Usage: test_startup.py BUILD_DIR
"""
import os
import re
import subprocess
import sys
import tempfile

BITBOARD_BLOCK = (
    "Bitboard algorithms"
    "\n- popcount:         Table lookup PopCount"
    "\n- popcount_sparse:  Table lookup PopCount"
    "\n- find_lowest_bit:  FindLowestBitViaFindHighestBit"
    "\n- find_highest_bit: Table lookup (not inlined)"
    "\n- find_next_bit:    FindHighestBit"
    "\n\n"
)
PROMPT = b" \rWhite 1> "
BANNER = re.compile(r"Brask logfile created at: \w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}\n\n")


def run(engine, directory, text=None):
    """Runs the engine in `directory` with `text` as its whole input (None: /dev/null)."""
    if text is None:
        return subprocess.run([engine], cwd=directory, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=30)
    return subprocess.run([engine], cwd=directory, input=text.encode(), capture_output=True,
                          timeout=30)


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def test_empty_input_leaves_banner_and_summary(engine, directory):
    result = run(engine, directory)
    check(result.returncode == 0, f"exit status {result.returncode}")
    # The console greets nobody at start: the first prompt is all, and the end of input quits.
    check(result.stdout == PROMPT, f"start-up printed {result.stdout!r}")
    check(result.stderr == b"", f"start-up wrote to stderr: {result.stderr!r}")
    log = read(os.path.join(directory, "logfile.000"))
    banner = BANNER.match(log)
    check(banner is not None, f"no banner at the start of the log: {log[:80]!r}")
    check(log[banner.end():].startswith(BITBOARD_BLOCK),
          f"log after the banner: {log[banner.end():]!r}")
    check("Brask received input" not in log, "the end of input was logged as a line")


def test_input_lines_are_logged(engine, directory):
    lines = ["force", "", "usermove e2e4"] + [f"ping {i}" for i in range(2000)]
    result = run(engine, directory, "force\r\n\r\nusermove e2e4\n"
                 + "".join(f"ping {i}\n" for i in range(2000)) + "last without newline")
    check(result.returncode == 0, f"exit status {result.returncode}")
    log = read(os.path.join(directory, "logfile.000"))
    logged = re.findall(r"Brask received input: (.*)\n", log)
    check(logged == lines + ["last without newline"], f"logged input differs: {logged[:5]!r}")
    pongs = re.findall(rb"pong (\d+)", result.stdout)
    check(pongs == [str(i).encode() for i in range(2000)], "not every line was answered in order")


def test_second_run_takes_the_next_number(engine, directory):
    for _ in range(2):
        check(run(engine, directory).returncode == 0, "run failed")
    check(sorted(os.listdir(directory)) == ["logfile.000", "logfile.001"],
          f"files: {sorted(os.listdir(directory))}")
    check(BANNER.match(read(os.path.join(directory, "logfile.001"))), "no banner in logfile.001")


def writable(directory):
    probe = os.path.join(directory, "probe")
    try:
        with open(probe, "w"):
            pass
    except OSError:
        return False
    os.remove(probe)
    return True


def test_read_only_directory_runs_without_a_log(engine, directory):
    os.chmod(directory, 0o555)
    try:
        # Root writes into any ordinary directory; /proc refuses new files even to root.
        where = directory if not writable(directory) else "/proc"
        if not os.path.isdir(where) or writable(where):
            print("skipped: no read-only directory for this user")
            return
        before = set(os.listdir(where))
        result = run(engine, where, "hello\n")
        check(result.returncode == 0, f"exit status {result.returncode}")
        check(result.stdout == PROMPT + b"Illegal move: hello\n" + PROMPT and result.stderr == b"",
              f"output about the missing log: {result.stdout!r} {result.stderr!r}")
        check(not any(name.startswith("logfile.") for name in set(os.listdir(where)) - before),
              "a log file appeared")
    finally:
        os.chmod(directory, 0o755)


def main():
    engine = os.path.join(os.path.abspath(sys.argv[1]), "brask")
    tests = [test_empty_input_leaves_banner_and_summary, test_input_lines_are_logged,
             test_second_run_takes_the_next_number, test_read_only_directory_runs_without_a_log]
    failures = 0
    for test in tests:
        with tempfile.TemporaryDirectory() as directory:
            try:
                test(engine, directory)
                print(f"ok   {test.__name__}")
            except (AssertionError, subprocess.TimeoutExpired) as error:
                failures += 1
                print(f"FAIL {test.__name__}: {error}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
