#!/usr/bin/env python3
"""The tb and probe commands on tablebase files made by brask-tbgen, plain and broken.

Usage: test_tablebase_commands.py BUILD_DIR
"""
import os
import subprocess
import sys
import tempfile

from engine_session import expect, expect_equal, run, run_tests

KQK_WHITE_TO_MOVE = "8/8/8/8/8/2k5/8/K6Q w - - 0 1"
KQK_BLACK_TO_MOVE = "8/8/8/8/8/2k5/8/K6Q b - - 0 1"
KRK = "8/8/8/8/8/2k5/8/K6R w - - 0 1"
MATED = "k7/1Q6/1K6/8/8/8/8/8 b - - 0 1"


def generate(directory, *endgames):
    tables = os.path.join(directory, "tb")
    tool = os.path.join(os.path.abspath(sys.argv[1]), "brask-tbgen")
    subprocess.run([tool, *endgames, "-o", tables], check=True, capture_output=True, timeout=60)
    return tables


def tablebase_answers(result):
    return [line.split(": ", 1)[1] for line in result.answers()
            if line.startswith("Probing tablebases: ")]


def test_probes_read_the_generated_tables():
    with tempfile.TemporaryDirectory() as directory:
        tables = generate(directory, "kqk")
        result = run([f"probe {KQK_WHITE_TO_MOVE}", "force", f"tb nalimov 1M {tables}",
                      f"probe {KQK_WHITE_TO_MOVE}", f"probe {KQK_BLACK_TO_MOVE}", f"probe {MATED}",
                      f"probe {KRK}", "probe nonsense", "tb"])
    answers = tablebase_answers(result)
    expect_equal(answers[0], "disabled (not loaded)", "before tb")
    expect(answers[1].startswith("result=") and int(answers[1][7:]) > 0, f"win: {answers[1]}")
    expect(answers[2].startswith("result=") and int(answers[2][7:]) < 0, f"loss: {answers[2]}")
    expect_equal(answers[3:5], ["result=-32767", "not found"], "mated, and krk without its table")
    expect("Error (input inconsistent with FEN standard): probe nonsense" in result.answers(),
           "garbage FEN not refused")
    expect("Generic bitbases supporting up to 5 pieces" in result.answers(), "no tb status")


def test_bad_arguments_and_paths():
    result = run(["tb nalimov 1M", "tb nalimov 8M .", "force", "tb foo 8M .", "tb nalimov 8Q .",
                  "tb nalimov 8M /does/not/exist", "ping 1"])
    expect_equal(result.stdout.count("Error"), 5, "refusals")
    for expected in ["Error (missing parameters): tb nalimov 1M",
                     "Error (must be in force mode): tb nalimov 8M .",
                     "Error (could not parse type): tb foo 8M .",
                     "Error (could not parse new size): tb nalimov 8Q .",
                     "Error (Could not initialize Nalimov tablebases.\nReason: Could not open "
                     "tablebases. Is the path correct?): tb nalimov 8M /does/not/exist",
                     "pong 1"]:
        expect(expected in result.stdout, f"missing {expected!r}")


def test_broken_file_is_left_out():
    with tempfile.TemporaryDirectory() as directory:
        tables = generate(directory, "kqk", "krk")
        with open(os.path.join(tables, "krk.nbw"), "r+b") as broken:
            broken.truncate(1000)
        result = run(["force", f"tb nalimov 1M {tables}", f"probe {KQK_WHITE_TO_MOVE}",
                      f"probe {KRK}", "ping 2"])
    answers = tablebase_answers(result)
    expect(answers[0].startswith("result="), f"kqk after a broken krk: {answers[0]}")
    expect_equal(answers[1], "not found", "the broken krk")
    expect("pong 2" in result.answers(), "the engine did not go on")


def test_tablebases_as_a_startup_option():
    with tempfile.TemporaryDirectory() as directory:
        tables = generate(directory, "kqk")
        result = run([f"probe {MATED}"], arguments=["--tb", "nalimov", "1M", tables])
    expect_equal((result.status, tablebase_answers(result)), (0, ["result=-32767"]), "start-up tb")
    result = run(["ping 3"], arguments=["--tb", "nalimov", "1M", "/nowhere"])
    expect(result.status == 0 and "Warning: Startup command failed!" in result.stdout
           and "pong 3" in result.stdout, "a failing tb at start-up is passed over")


if __name__ == "__main__":
    run_tests(globals())
