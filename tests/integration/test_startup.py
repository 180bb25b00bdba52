#!/usr/bin/env python3
"""Start-up of the engine: the numbered log, its first blocks, and the logging of every input line.

Usage: test_startup.py BUILD_DIR
"""
import os
import re
import tempfile

from engine_session import expect, expect_equal, run, run_tests

BITBOARD_BLOCK = (
    "Bitboard algorithms"
    "\n- popcount:         Table lookup PopCount"
    "\n- popcount_sparse:  Table lookup PopCount"
    "\n- find_lowest_bit:  FindLowestBitViaFindHighestBit"
    "\n- find_highest_bit: Table lookup (not inlined)"
    "\n- find_next_bit:    FindHighestBit"
    "\n\n"
)
PROMPT = " \rWhite 1> "
BANNER = re.compile(r"Brask logfile created at: \w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}\n\n")


def test_empty_input_leaves_banner_and_a_numbered_log_per_run():
    with tempfile.TemporaryDirectory() as directory:
        for number in range(2):
            result = run(directory=directory)
            # The console greets nobody: the first prompt is all, and the end of input quits.
            expect_equal((result.status, result.stdout, result.stderr), (0, PROMPT, ""), "run")
            banner = BANNER.match(result.log)
            expect(banner, f"no banner at the start of the log: {result.log[:80]!r}")
            expect(result.log[banner.end():].startswith(BITBOARD_BLOCK), "the log's first block")
            expect("Brask received input" not in result.log, "the end of input logged as a line")
        expect_equal(sorted(os.listdir(directory)), ["logfile.000", "logfile.001"], "files")


def test_input_lines_are_logged():
    pings = [f"ping {i}" for i in range(2000)]
    text = "force\r\n\r\nusermove e2e4\n" + "".join(f"{ping}\n" for ping in pings) + "last"
    result = run(input_bytes=text.encode())
    expect_equal(result.status, 0, "exit status")
    expect_equal(re.findall(r"Brask received input: (.*)\n", result.log),
                 ["force", "", "usermove e2e4"] + pings + ["last"], "logged input")
    expect_equal(re.findall(r"pong (\d+)", result.stdout), [str(i) for i in range(2000)],
                 "every line answered in order")


def writable(directory):
    try:
        with open(os.path.join(directory, "probe"), "w"):
            pass
    except OSError:
        return False
    os.remove(os.path.join(directory, "probe"))
    return True


def test_read_only_directory_runs_without_a_log():
    with tempfile.TemporaryDirectory() as directory:
        os.chmod(directory, 0o555)
        # Root writes into any ordinary directory; /proc refuses new files even to root.
        where = directory if not writable(directory) else "/proc"
        os.chmod(directory, 0o755)
        if not os.path.isdir(where) or writable(where):
            print("skipped: no read-only directory for this user")
            return
        before = set(os.listdir(where))
        os.chmod(directory, 0o555)
        try:
            result = run(["hello"], directory=where)
        finally:
            os.chmod(directory, 0o755)
        expect_equal((result.status, result.stdout, result.stderr),
                     (0, PROMPT + "Illegal move: hello\n" + PROMPT, ""), "run without a log")
        expect(not any(name.startswith("logfile.") for name in set(os.listdir(where)) - before),
               "a log file appeared")


if __name__ == "__main__":
    run_tests(globals())
