#!/usr/bin/env python3
"""The perft tool: counts, --divide, --time, and clear refusals of bad input.

Usage: test_perft_tool.py BUILD_DIR
"""
import subprocess

from engine_session import expect, expect_equal, run_tests, tool_path

KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -"


def perft(*arguments):
    completed = subprocess.run([tool_path("brask-perft"), *arguments], capture_output=True,
                               text=True, timeout=60)
    return completed.returncode, completed.stdout.splitlines(), completed.stderr


def test_counts_with_the_fen_quoted_or_not():
    for arguments, count in [(["3"], "8902"), (["0"], "1"), (["2", KIWIPETE], "2039"),
                             (["2", *KIWIPETE.split()], "2039")]:
        status, lines, _ = perft(*arguments)
        expect_equal((status, lines[-1:]), (0, [count]), f"perft {arguments}")


def test_divide_and_time():
    status, lines, _ = perft("2", "--divide")
    expect_equal((status, len(lines), lines[-1]), (0, 21, "400"), "divide lines")
    expect(lines[0] == "g1h3: 20" and "e2e4: 20" in lines, f"divide texts {lines[:3]}")
    status, lines, _ = perft("--time", "1")
    expect(status == 0 and len(lines) == 2 and "nodes per second" in lines[0]
           and lines[1] == "20", f"time: {lines}")


def test_bad_input_is_refused_on_stderr():
    for bad in (["abc"], ["-1"], ["999"], [], ["3", "--frobnicate"], ["2", "not a fen"],
                ["2", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 extra"],
                ["2", "8/8/8/8/8/8/8/8 w - - 0 1"]):
        status, lines, stderr = perft(*bad)
        expect(status > 0 and lines == [] and stderr.startswith("brask-perft: "),
               f"refusal of {bad}: {status} {lines} {stderr!r}")


if __name__ == "__main__":
    run_tests(globals())
