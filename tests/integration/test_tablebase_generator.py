#!/usr/bin/env python3
"""brask-tbgen as a user runs it: what it makes first, what it refuses, and what an interrupted
run leaves behind.

Usage: test_tablebase_generator.py BUILD_DIR
"""
import os
import signal
import subprocess
import sys
import tempfile
import time

from engine_session import expect, expect_equal, run_tests

# Entries of the files, White and Black on move.
LENGTHS = {"kqk": (25629, 28644), "krk": (27030, 28644), "kqkr": (1563735, 1649196)}


def tool():
    return os.path.join(os.path.abspath(sys.argv[1]), "brask-tbgen")


def complete_files(directory):
    """The table files in the directory, each checked for its full length."""
    names = sorted(os.listdir(directory))
    for name in names:
        table, extension = name.split(".")
        expected = LENGTHS[table][0 if extension == "nbw" else 1]
        expect_equal(os.path.getsize(os.path.join(directory, name)), expected, name)
    return names


def test_a_table_is_made_with_the_tables_it_needs():
    with tempfile.TemporaryDirectory() as directory:
        result = subprocess.run([tool(), "-o", directory, "kqkr"], capture_output=True, text=True,
                                timeout=600)
        expect_equal(result.returncode, 0, result.stderr)
        expect_equal(complete_files(directory),
                     ["kqk.nbb", "kqk.nbw", "kqkr.nbb", "kqkr.nbw", "krk.nbb", "krk.nbw"], "files")
        expect("kqkr done in" in result.stdout, result.stdout)


def test_unknown_tables_are_refused():
    with tempfile.TemporaryDirectory() as directory:
        result = subprocess.run([tool(), "-o", directory, "kqqqk", "kqk"], capture_output=True,
                                text=True, timeout=60)
        expect_equal(result.returncode, 1, "exit status")
        expect("kqqqk: not a table of three to five pieces" in result.stderr, result.stderr)
        expect_equal(complete_files(directory), ["kqk.nbb", "kqk.nbw"], "the known one is made")
        result = subprocess.run([tool(), "-x"], capture_output=True, text=True, timeout=60)
        expect(result.returncode == 2 and "usage" in result.stderr, "usage")


def test_an_interrupted_run_leaves_no_table_under_its_name():
    with tempfile.TemporaryDirectory() as directory:
        process = subprocess.Popen([tool(), "-o", directory, "kqkr"], stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, text=True)
        # Interrupted while kqkr is being solved, after the smaller tables are written.
        for line in process.stdout:
            if line.startswith("Solving kqkr"):
                break
        time.sleep(0.5)
        process.send_signal(signal.SIGTERM)
        process.wait(timeout=60)
        names = complete_files(directory)
        expect("kqkr.nbw" not in names and "kqkr.nbb" not in names, f"left behind: {names}")


if __name__ == "__main__":
    run_tests([test_a_table_is_made_with_the_tables_it_needs, test_unknown_tables_are_refused,
               test_an_interrupted_run_leaves_no_table_under_its_name])
