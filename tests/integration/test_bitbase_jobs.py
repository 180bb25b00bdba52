#!/usr/bin/env python3
"""generate and verify: job lists and their refusals, generic bitbases made from tablebases by a
copy of the engine in a directory of its own, verified after a restart, damaged and interrupted.

Usage: test_bitbase_jobs.py BUILD_DIR
"""
import os
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

from engine_session import Run, engine_path, expect, expect_equal, read_files, read_log, run, run_tests

TIMEOUT = 300
THREE_PIECES = ["kp_k", "kq_k", "kr_k", "kb_k", "kn_k"]
GENERATION_LIST = "two_pawns rammed_pawn generic"
VERIFICATION_LIST = "single_pawn two_pawns rammed_pawn generic"
# What the terminal shows of the progress: a percentage, blanks and four backspaces.
PROGRESS = re.compile(r"\d+%  ?\x08{4}")


def make_tables(directory, *endgames):
    tables = os.path.join(directory, "tb")
    tool = os.path.join(os.path.abspath(sys.argv[1]), "brask-tbgen")
    subprocess.run([tool, *endgames, "-o", tables], check=True, capture_output=True, timeout=120)
    return tables


class Home:
    """A copy of the engine in a directory of its own: the bitbases it writes and reads lie there."""

    def __init__(self, *more_tables):
        self._home = tempfile.TemporaryDirectory(prefix="brask-")
        self.path = self._home.name
        self.engine = os.path.join(self.path, "brask")
        shutil.copy(engine_path(), self.engine)
        self.tables = make_tables(self.path, "kqk", "krk", "kbk", "knk", "kpk", *more_tables)

    def run(self, lines, with_tables=True, arguments=()):
        if with_tables:
            lines = ["force", f"tb nalimov 4M {self.tables}", *lines]
        with tempfile.TemporaryDirectory(prefix="brask-") as work:
            completed = subprocess.run([self.engine, *arguments], cwd=work, capture_output=True,
                                       input="".join(line + "\n" for line in lines).encode(),
                                       timeout=TIMEOUT)
            return Run(completed, read_log(work), read_files(work))

    def files(self):
        return sorted(name for name in os.listdir(self.path) if name != "brask" and name != "tb")

    def close(self):
        self._home.cleanup()


def without_progress(text):
    return PROGRESS.sub("", text)


def test_job_lists_and_refusals():
    result = run(["generate", "verify", "generate all", "verify generic", "force",
                  "generate single_pawn", "generate foo", "verify foo", "generate generic[2]",
                  "verify generic[kqr]", "generate generic [3]", "generate generic[3",
                  "verify two_pawns generic[kx_k]", "generate generic3", "ping 1"])
    answers = result.answers()
    expect_equal(answers[:4], ["List of available generation jobs:", GENERATION_LIST,
                               "List of available verification jobs:", VERIFICATION_LIST],
                 "lists")
    for expected in [
            "Error (must be in force mode): generate all",
            "Error (must be in force mode): verify generic",
            "Error (Support for single pawn bitbase generation disabled): generate single_pawn",
            "Error (Could not parse generation job description 'foo'): generate foo",
            "Error (Could not parse verify job description 'foo'): verify foo",
            "Error (Could not parse generic bitbase generation command (Incorrect job description, "
            "as generic bitbases require that there are at least three pieces: '2')): "
            "generate generic[2]",
            "Error (Could not parse generic bitbase verification command (Could not parse single "
            "job description: 'kqr' (Maybe you forgot the underscore, e.g., \"krp_kr\"?))): "
            "verify generic[kqr]",
            "Error (Could not parse generation job description '[3]'): generate generic [3]",
            "Error (Could not parse job list: a bracket or quotation mark is not closed): "
            "generate generic[3",
            "Error (Could not parse generic bitbase verification command (Undefined piece in job "
            "description: 'kx')): verify two_pawns generic[kx_k]",
            "pong 1"]:
        expect(expected in result.stdout, f"missing {expected!r}")
    expect("Error (Could not parse generic bitbase generation command (Could not parse job "
           "description:\n\nSyntax: 'generic[<job1>,...,<jobN>]'.\nDo not seperate the jobs by "
           "whitespaces.\n\n)): generate generic3" in result.stdout, "syntax message")
    # A refused list runs none of its jobs.
    expect("Verifying" not in result.stdout and "Generating" not in result.stdout, "a job ran")


def test_verify_without_tablebases():
    result = run(["force", "verify all", "verify two_pawns", "ping 2"])
    expect("Verifying bitbase 'single_pawn'...failed\n" in result.stdout, result.stdout)
    expect("Error (tablebases not loaded): verify all" in result.stdout, "all")
    expect("Error (tablebases not loaded): verify two_pawns" in result.stdout, "two_pawns")
    expect("Verifying bitbase 'two_pawns'" not in result.stdout.split("verify all")[0], "order")
    expect("pong 2" in result.stdout, "the engine did not go on")


def test_generate_restart_verify_and_damage():
    home = Home()
    try:
        result = home.run(["generate generic[3]", "generate generic[3]", "ping 3"])
        text = without_progress(result.stdout)
        expect("Generating generic bitbases data files...\nGenerating generic bitbases (5 total):\n"
               in text, text)
        made = re.findall(r"- (\w+)\.\.\.done \(\d+(?:\.\d+)? sec\)\n", text)
        expect_equal(sorted(made), sorted(THREE_PIECES), "generated")
        expect(re.search(r"\)\ndone \(\d+(?:\.\d+)? sec\)\n", text), "job line")
        skipped = re.findall(r"- (\w+)\.\.\.skipped\n", text)
        expect_equal(sorted(skipped), sorted(THREE_PIECES), "skipped")
        expect("skipped\nskipped (file already exists)\n" in text, text)
        expect(PROGRESS.search(result.stdout), "no progress shown")
        expect("%" not in result.log and "\x08" not in result.log, "progress in the log")
        expect("Generation finished. Reloading bitbases. (not sent to xboard)" in result.log,
               "reload note")
        expect_equal(home.files(), sorted(name + ".bgb" for name in THREE_PIECES), "files")

        result = home.run(["verify generic[3]", "verify single_pawn", "ping 4"])
        passed = re.findall(r"Verifying bitbase '(\w+)'\.\.\.passed \((\d+) positions\)",
                            without_progress(result.stdout))
        expect_equal(len(passed), 10 + 1, f"verified: {result.stdout}")
        expect(all(int(count) > 100000 for _, count in passed), "counts")
        expect("Verifying generic bitbases (10 total):\n" in result.stdout, "generic heading")
        expect(re.search(r"Verification finished \(\d+ms total\)\.", result.log), "log total")
        expect("Verification finished" not in result.stdout, "total on the terminal")

        # An all-draw table under a won ending's name, and bytes that are no bit array.
        shutil.copy(os.path.join(home.path, "kn_k.bgb"), os.path.join(home.path, "kq_k.bgb"))
        with open(os.path.join(home.path, "kr_k.bgb"), "r+b") as file:
            file.seek(20)
            file.write(os.urandom(2000))
        result = home.run(["verify generic[kq_k,kr_k,kb_k]", "ping 5"])
        text = without_progress(result.stdout)
        expect("Verifying bitbase 'kq_k'...failed\n" in text, text)
        # Refused at loading (and so not found), or read and found wrong: never a crash.
        expect(re.search(r"Verifying bitbase 'kr_k'\.\.\.(skipped|failed)\n", text), text)
        expect(re.search(r"Verifying bitbase 'kb_k'\.\.\.passed", text), text)
        expect("Error in kq_k bitbase.\nPosition reports wrong result.\n" in result.log, "report")
        expect(re.search(r"Error in kr_k bitbase\.\nPosition (not found|reports wrong result)\.\n",
                         result.log), "kr_k report")
        report = result.log.split("Position reports wrong result.\n")[1]
        expect("side on move: " in report.split("Verifying")[0], "no diagram in the log")
        expect("Position reports" not in result.stdout, "report on the terminal")
        expect("pong 5" in result.stdout and result.status == 0, "the engine did not go on")
    finally:
        home.close()


def test_special_files_need_their_tablebases():
    home = Home()
    try:
        result = home.run(["generate two_pawns", "generate rammed_pawn generic[kq_k]", "ping 6"])
        for expected in ["Generating king+pawn vs king+pawn bitbases data file...failed\n"
                         "Error (endgame king+pawn vs king+pawn not available): "
                         "generate two_pawns",
                         "Generating rammed pawn bitbases data file...failed\nError (endgame "
                         "king+pawn+pawn vs king+pawn not available): generate rammed_pawn",
                         "pong 6"]:
            expect(expected in result.stdout, f"missing {expected!r}")
        expect_equal(home.files(), [], "files left behind")  # the generic job never ran
        result = home.run(["force", "generate all", "ping 7"], with_tables=False)
        expect("Generating king+pawn vs king+pawn bitbases data file...failed\n"
               "Error (tablebases not loaded): generate all" in result.stdout, result.stdout)
        expect("rammed" not in result.stdout, "the jobs behind a failure ran")
    finally:
        home.close()


def test_two_pawns_file_from_its_tablebase():
    """Runs only where the table generator makes tables with pawns on both sides."""
    with tempfile.TemporaryDirectory(prefix="brask-") as directory:
        tool = os.path.join(os.path.abspath(sys.argv[1]), "brask-tbgen")
        tables = os.path.join(directory, "tb")
        made = subprocess.run([tool, "kpkp", "-o", tables], capture_output=True, timeout=TIMEOUT)
        if made.returncode != 0:
            print("     (no kpkp table from this generator: two_pawns left untested)")
            return
        home = Home()
        try:
            home.tables = tables
            result = home.run(["generate two_pawns", "generate two_pawns"])
            expect("Generating king+pawn vs king+pawn bitbases data file...done (" in result.stdout
                   and "...skipped (file already exists)\n" in result.stdout, result.stdout)
            path = os.path.join(home.path, "kp_kp.bbb")
            expect_equal(os.path.getsize(path), 1179648, "size")
            result = home.run(["verify two_pawns"])
            expect(re.search(r"Verifying bitbase 'two_pawns'\.\.\.passed \(\d+ positions\)",
                             result.stdout), result.stdout)
            with open(path, "r+b") as file:
                file.seek(600000)
                file.write(bytes(64 * [0xff]))
            result = home.run(["verify two_pawns"])
            expect("Verifying bitbase 'two_pawns'...failed\n" in result.stdout, result.stdout)
            expect("Error in two_pawns bitbase.\nPosition reports wrong result.\n" in result.log,
                   "no report")
        finally:
            home.close()


def test_interrupted_generation_leaves_no_file():
    home = Home("kqkr")  # four pieces: the generation runs long enough to be cut off
    try:
        with tempfile.TemporaryDirectory(prefix="brask-") as work:
            process = subprocess.Popen([home.engine], cwd=work, stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            process.stdin.write(f"force\ntb nalimov 4M {home.tables}\ngenerate generic[kq_kr]\n"
                                .encode())
            process.stdin.flush()
            seen = b""
            deadline = time.time() + TIMEOUT
            while b"%" not in seen and time.time() < deadline:
                ready, _, _ = select.select([process.stdout], [], [], 1)
                chunk = os.read(process.stdout.fileno(), 4096) if ready else b""
                if ready and not chunk:
                    break
                seen += chunk
            process.kill()
            process.wait()
        expect(b"- kq_kr...0%" in seen, f"generation did not start: {seen!r}")
        expect_equal(home.files(), [], "files of a cut-off generation")
        result = home.run(["tb"], with_tables=False)
        expect("- 'kq_kr.bgb' not available" in result.log, "a cut-off file was loaded")
    finally:
        home.close()


def test_generation_as_a_startup_option():
    home = Home()
    try:
        result = home.run(["quit"], with_tables=False,
                          arguments=["--tb", "nalimov", "1M", home.tables,
                                     "--generate", "generic[kr_k]"])
        expect_equal(result.status, 0, "exit status")
        expect_equal(home.files(), ["kr_k.bgb"], "files")
    finally:
        home.close()


if __name__ == "__main__":
    run_tests([test_job_lists_and_refusals, test_verify_without_tablebases,
               test_generate_restart_verify_and_damage, test_special_files_need_their_tablebases,
               test_two_pawns_file_from_its_tablebase, test_interrupted_generation_leaves_no_file,
               test_generation_as_a_startup_option])
