#!/usr/bin/env python3
"""The tb and probe commands on tablebase files made by brask-tbgen, plain and broken.

Usage: test_tablebase_commands.py BUILD_DIR
"""
import os
import subprocess
import sys
import tempfile

KQK_WHITE_TO_MOVE = "8/8/8/8/8/2k5/8/K6Q w - - 0 1"
KQK_BLACK_TO_MOVE = "8/8/8/8/8/2k5/8/K6Q b - - 0 1"
MATED = "k7/1Q6/1K6/8/8/8/8/8 b - - 0 1"


def run_engine(build, directory, lines, arguments=()):
    result = subprocess.run([os.path.join(build, "brask"), *arguments], cwd=directory,
                            input="".join(line + "\n" for line in lines).encode(),
                            capture_output=True, timeout=60)
    return result.returncode, result.stdout.decode(errors="replace")


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def tablebase_answers(output):
    return [line.split(": ", 1)[1] for line in output.splitlines()
            if line.startswith("Probing tablebases: ")]


def test_probes_read_the_generated_tables(build, directory):
    tables = os.path.join(directory, "tb")
    subprocess.run([os.path.join(build, "brask-tbgen"), "kqk", "-o", tables], check=True,
                   capture_output=True, timeout=60)
    status, output = run_engine(build, directory, [
        f"probe {KQK_WHITE_TO_MOVE}", "force", f"tb nalimov 1M {tables}",
        f"probe {KQK_WHITE_TO_MOVE}", f"probe {KQK_BLACK_TO_MOVE}", f"probe {MATED}",
        "probe 8/8/8/8/8/2k5/8/K6R w - - 0 1", "probe nonsense", "tb"])
    check(status == 0, f"exit status {status}")
    answers = tablebase_answers(output)
    check(answers[0] == "disabled (not loaded)", f"before tb: {answers[0]}")
    check(answers[1].startswith("result=") and int(answers[1][7:]) > 0, f"win: {answers[1]}")
    check(answers[2].startswith("result=") and int(answers[2][7:]) < 0, f"loss: {answers[2]}")
    check(answers[3] == "result=-32767", f"mated: {answers[3]}")
    check(answers[4] == "not found", f"krk without its table: {answers[4]}")
    check("Error (input inconsistent with FEN standard): probe nonsense" in output,
          "garbage FEN not refused")
    check("Generic bitbases supporting up to 5 pieces" in output, "no tb status")


def test_bad_arguments_and_paths(build, directory):
    status, output = run_engine(build, directory, [
        "tb nalimov 1M", "tb nalimov 8M .", "force", "tb foo 8M .", "tb nalimov 8Q .",
        "tb nalimov 8M /does/not/exist", "ping 1"])
    check(status == 0, f"exit status {status}")
    for expected in ["Error (missing parameters): tb nalimov 1M",
                     "Error (must be in force mode): tb nalimov 8M .",
                     "Error (could not parse type): tb foo 8M .",
                     "Error (could not parse new size): tb nalimov 8Q .",
                     "Error (Could not initialize Nalimov tablebases.\nReason: Could not open "
                     "tablebases. Is the path correct?): tb nalimov 8M /does/not/exist",
                     "pong 1"]:
        check(expected in output, f"missing {expected!r}")


def test_broken_file_is_left_out(build, directory):
    tables = os.path.join(directory, "tb")
    subprocess.run([os.path.join(build, "brask-tbgen"), "kqk", "krk", "-o", tables], check=True,
                   capture_output=True, timeout=60)
    with open(os.path.join(tables, "krk.nbw"), "r+b") as broken:
        broken.truncate(1000)
    status, output = run_engine(build, directory, [
        "force", f"tb nalimov 1M {tables}", f"probe {KQK_WHITE_TO_MOVE}",
        "probe 8/8/8/8/8/2k5/8/K6R w - - 0 1", "ping 2"])
    check(status == 0, f"exit status {status}")
    answers = tablebase_answers(output)
    check(answers[0].startswith("result="), f"kqk after a broken krk: {answers[0]}")
    check(answers[1] == "not found", f"broken krk answers: {answers[1]}")
    check("pong 2" in output, "engine did not go on")


def test_tablebases_as_a_startup_option(build, directory):
    tables = os.path.join(directory, "tb")
    subprocess.run([os.path.join(build, "brask-tbgen"), "kqk", "-o", tables], check=True,
                   capture_output=True, timeout=60)
    status, output = run_engine(build, directory, [f"probe {MATED}"],
                                ["--tb", "nalimov", "1M", tables])
    check(status == 0, f"exit status {status}")
    check(tablebase_answers(output) == ["result=-32767"], f"answers: {tablebase_answers(output)}")
    status, output = run_engine(build, directory, ["ping 3"], ["--tb", "nalimov", "1M", "/nowhere"])
    check(status == 0 and "Warning: Startup command failed!" in output and "pong 3" in output,
          f"a failing tb at start-up must be passed over: {status} {output!r}")


def main():
    build = os.path.abspath(sys.argv[1])
    failures = 0
    for test in [test_probes_read_the_generated_tables, test_bad_arguments_and_paths,
                 test_broken_file_is_left_out, test_tablebases_as_a_startup_option]:
        with tempfile.TemporaryDirectory() as directory:
            try:
                test(build, directory)
                print(f"ok   {test.__name__}")
            except (AssertionError, subprocess.SubprocessError) as error:
                failures += 1
                print(f"FAIL {test.__name__}: {error}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
