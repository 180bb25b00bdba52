"""Endgame files as a user meets them: tablebases made by brask-tbgen, read by tb and probe; the
bitbases beside the engine, loaded, probed, generated from the tablebases, verified after a
restart, damaged and interrupted."""
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

from engine_session import (InteractiveSession, expect, expect_equal, make_tables, run,
                            run_tests, tool_path)

TIMEOUT = 300
THREE_PIECES = ["kp_k", "kq_k", "kr_k", "kb_k", "kn_k"]
# Entries of the table files, White and Black on move.
LENGTHS = {"kqk": (25629, 28644), "krk": (27030, 28644), "kqkr": (1563735, 1649196)}
TWO_PAWNS_SIZE = 1179648
KQK = "8/8/8/8/8/2k5/8/K6Q w - - 0 1"
KRK = "8/8/8/8/8/2k5/8/K6R w - - 0 1"
MATED = "k7/1Q6/1K6/8/8/8/8/8 b - - 0 1"
# White king e5, pawn e4, black king e7: a draw with White on move, a win with Black on move.
OPPOSITION = "8/4k3/8/4K3/4P3/8/8/8"
PAWN_AGAINST_PAWN = "4k3/3p4/8/8/4P3/8/8/4K3 w - - 0 1"
# What the terminal shows of the progress: a percentage, blanks and four backspaces.
PROGRESS = re.compile(r"\d+%  ?\x08{4}")


def probe_answers(result, kind="bitbases"):
    return [line.split(": ", 1)[1] for line in result.answers()
            if line.startswith(f"Probing {kind}: ")]


class Home(tempfile.TemporaryDirectory):
    """A copy of the engine in a directory of its own, where the bitbases it reads and writes lie,
    with tablebases of three pieces and `more_tables`, or with the bytes of `files` alone."""

    def __init__(self, *more_tables, files=None):
        super().__init__(prefix="brask-")
        self.path = self.name
        self.engine = os.path.join(self.path, "brask")
        shutil.copy(tool_path(), self.engine)
        for name, content in (files or {}).items():
            with open(os.path.join(self.path, name), "wb") as file:
                file.write(content)
        self.tables = None if files else make_tables(self.path, "kqk", "krk", "kbk", "knk", "kpk",
                                                     *more_tables)

    def run(self, lines, with_tables=True, arguments=()):
        if with_tables:
            lines = ["force", f"tb nalimov 4M {self.tables}", *lines]
        return run(lines, arguments, engine=self.engine, timeout=TIMEOUT)

    def files(self):
        return sorted(name for name in os.listdir(self.path) if name not in ("brask", "tb"))

    def __enter__(self):
        return self


def complete_tables(directory):
    """The table files in the directory, each checked for its full length."""
    names = sorted(os.listdir(directory))
    for name in names:
        table, extension = name.split(".")
        expect_equal(os.path.getsize(os.path.join(directory, name)),
                     LENGTHS[table][0 if extension == "nbw" else 1], name)
    return names


def test_the_generator_makes_what_a_table_needs_and_refuses_the_unknown():
    with tempfile.TemporaryDirectory() as directory:
        result = subprocess.run([tool_path("brask-tbgen"), "-o", directory, "kqkr"],
                                capture_output=True, text=True, timeout=600)
        expect_equal(result.returncode, 0, result.stderr)
        expect_equal(complete_tables(directory),
                     ["kqk.nbb", "kqk.nbw", "kqkr.nbb", "kqkr.nbw", "krk.nbb", "krk.nbw"], "files")
        expect("kqkr done in" in result.stdout, result.stdout)
    with tempfile.TemporaryDirectory() as directory:
        result = subprocess.run([tool_path("brask-tbgen"), "-o", directory, "kqqqk", "kqk"],
                                capture_output=True, text=True, timeout=60)
        expect_equal(result.returncode, 1, "exit status")
        expect("kqqqk: not a table of three to five pieces" in result.stderr, result.stderr)
        expect_equal(complete_tables(directory), ["kqk.nbb", "kqk.nbw"], "the known one is made")


def test_an_interrupted_generator_leaves_no_table_under_its_name():
    with tempfile.TemporaryDirectory() as directory:
        with InteractiveSession(["-o", directory, "kqkr"], TIMEOUT,
                                tool_path("brask-tbgen")) as generator:
            # Interrupted while kqkr is being solved, after the smaller tables are written.
            generator.wait_for("^Solving kqkr", TIMEOUT)
            time.sleep(0.5)
            generator.process.send_signal(signal.SIGTERM)
            generator.process.wait(timeout=60)
        names = complete_tables(directory)
        expect("kqkr.nbw" not in names and "kqkr.nbb" not in names, f"left behind: {names}")


def test_tablebases_probed_and_a_broken_file_left_out():
    with tempfile.TemporaryDirectory() as directory:
        tables = make_tables(directory, "kqk", "krk")
        result = run([f"probe {KQK}", "force", f"tb nalimov 1M {tables}", f"probe {KQK}",
                      f"probe {KQK.replace(' w ', ' b ')}", f"probe {MATED}", "tb"])
        with open(os.path.join(tables, "krk.nbw"), "r+b") as broken:
            broken.truncate(1000)
        broken = run([f"probe {MATED}", f"probe {KRK}", "ping 2"],
                     arguments=["--tb", "nalimov", "1M", tables])
    answers = probe_answers(result, "tablebases")
    expect(re.fullmatch(r"disabled \(not loaded\) result=3\d+ result=-3\d+ result=-32767",
                        " ".join(answers)), f"answers: {answers}")
    expect("Generic bitbases supporting up to 5 pieces" in result.answers(), "no tb status")
    expect_equal(probe_answers(broken, "tablebases"), ["result=-32767", "not found"],
                 "kqk from a start-up option, and the broken krk")
    expect("pong 2" in broken.answers(), "the engine did not go on")


def test_king_and_pawn_against_king_needs_no_file():
    # The table's values are the unit tests'; here the answers of each kind reach the user, for
    # the owner of the pawn and the other side, Black owning it once.
    result = run([f"probe {OPPOSITION} w - - 0 1", f"probe {OPPOSITION} b - - 0 1",
                  "probe 4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", "probe 8/8/8/4p3/4k3/8/4K3/8 w - - 0 1",
                  "probe 8/8/8/8/8/k7/8/1K5R w - - 0 1", f"probe {PAWN_AGAINST_PAWN}", "tb"])
    expect_equal(probe_answers(result), ["result=0", "result=-32699", "result=32703",
                                         "result=-32699", "not found", "not found"], "answers")
    for line in ["Loading bitbases (executables directory='", "- two pawns bitbases not found ('",
                 "- rammed pawn bitbases not found ('", "- max supported pieces: 5\n",
                 "\nLoading generic bitbases: (not sent to xboard)\n",
                 "- 'kr_k.bgb' not available\n",
                 "Total memory usage (all loaded generic bitbases combined): "]:
        expect(line in result.log and line.strip() not in result.stdout, f"log alone: {line!r}")
    expect("King+pawn vs king+pawn bitbases (not loaded)" in result.answers(), "tb status")


def test_broken_bitbase_files_beside_the_engine_are_left_out():
    files = {"kp_kp.bbb": bytes(TWO_PAWNS_SIZE - 1), "kpp_kp_ram.bbb": bytes(1966080 + 1),
             "kr_k.bgb": b"\x3a\x30\x00\x00\xff\xff\xff\xff\x01\x02",
             "kq_k.bgb": b"", "kb_k.bgb": os.urandom(5000)}
    with Home(files=files) as home:
        result = home.run(["tb", f"probe {OPPOSITION} b - - 0 1", f"probe {PAWN_AGAINST_PAWN}",
                           "probe 8/8/8/8/8/k7/8/1K5R w - - 0 1", "ping 7"], with_tables=False)
    expect_equal(result.status, 0, "exit status")
    expect("pong 7" in result.answers(), "the engine did not go on")
    for line in ["Warning: Failed to open two pawns bitbases.\n",
                 "Warning: Failed to open rammed pawn bitbases\n",
                 "- loading 'kr_k.bgb'...failed\n",
                 "- loading 'kq_k.bgb'...failed\n"]:
        expect(line in result.log, f"log lacks {line!r}")
    expect("Warning" not in result.stdout, "warnings reached the terminal")
    expect_equal(probe_answers(result), ["result=-32699", "not found", "not found"], "answers")
    expect("King+pawn vs king+pawn bitbases (not loaded)" in result.answers(), "tb status")


def test_job_lists_and_refusals():
    result = run(["generate", "verify", "force", "generate single_pawn", "generate foo",
                  "verify foo", "generate generic[2]", "verify generic[kqr]", "generate generic[3",
                  "verify all", "verify two_pawns", "ping 1"])
    expect_equal(result.answers()[:4], ["List of available generation jobs:",
                                        "two_pawns rammed_pawn generic",
                                        "List of available verification jobs:",
                                        "single_pawn two_pawns rammed_pawn generic"], "lists")
    # The job grammar's own texts are the unit tests'; here they reach the user, in order.
    expected = [
        "Error (Support for single pawn bitbase generation disabled): generate single_pawn",
        "Error (Could not parse generation job description 'foo'): generate foo",
        "Error (Could not parse verify job description 'foo'): verify foo",
        "Error (Could not parse generic bitbase generation command (Incorrect job description, "
        "as generic bitbases require that there are at least three pieces: '2')): "
        "generate generic[2]",
        "Error (Could not parse generic bitbase verification command (Could not parse single "
        "job description: 'kqr' (Maybe you forgot the underscore, e.g., \"krp_kr\"?))): "
        "verify generic[kqr]",
        "Error (Could not parse job list: a bracket or quotation mark is not closed): "
        "generate generic[3",
        # Without tablebases the first job fails and the others do not run.
        "Verifying bitbase 'single_pawn'...failed\nError (tablebases not loaded): verify all",
        "Verifying bitbase 'two_pawns'...failed\nError (tablebases not loaded): verify two_pawns",
        "pong 1"]
    found = [result.stdout.find(text) for text in expected]
    expect(-1 not in found and found == sorted(found), f"{found}: {result.stdout[-2000:]}")
    # A refused list runs none of its jobs.
    expect(not re.search("Verifying|Generating", result.stdout[:found[-3]]), "a job ran")


def test_generate_restart_verify_and_damage():
    with Home() as home:
        result = home.run(["generate generic[3]", "generate generic[3]", "ping 3"])
        text = PROGRESS.sub("", result.stdout)
        expect("Generating generic bitbases data files...\nGenerating generic bitbases (5 total):\n"
               in text, text)
        made = re.findall(r"- (\w+)\.\.\.done \(\d+(?:\.\d+)? sec\)\n", text)
        skipped = re.findall(r"- (\w+)\.\.\.skipped\n", text)
        expect_equal([sorted(made), sorted(skipped)], [sorted(THREE_PIECES)] * 2, "made, skipped")
        expect(re.search(r"\)\ndone \(\d+(?:\.\d+)? sec\)\n", text), "job line")
        expect("skipped\nskipped (file already exists)\n" in text, text)
        expect("Generation finished. Reloading bitbases. (not sent to xboard)" in result.log,
               "reload note")
        expect_equal(home.files(), sorted(name + ".bgb" for name in THREE_PIECES), "files")

        result = home.run(["verify generic[3]", "verify single_pawn", "ping 4"])
        passed = re.findall(r"Verifying bitbase '(\w+)'\.\.\.passed \((\d+) positions\)",
                            PROGRESS.sub("", result.stdout))
        expect_equal(len(passed), 10 + 1, f"verified: {result.stdout}")
        expect(all(int(count) > 100000 for _, count in passed), "counts")
        expect("Verifying generic bitbases (10 total):\n" in result.stdout, "generic heading")
        expect(re.search(r"Verification finished \(\d+ms total\)\.", result.log)
               and "Verification finished" not in result.stdout, "the total in the log alone")

        # An all-draw table under a won ending's name; damaged bytes are the unit tests'.
        shutil.copy(os.path.join(home.path, "kn_k.bgb"), os.path.join(home.path, "kq_k.bgb"))
        result = home.run(["verify generic[kq_k,kb_k]", "ping 5"])
        text = PROGRESS.sub("", result.stdout)
        expect("Verifying bitbase 'kq_k'...failed\n" in text and re.search(
            r"Verifying bitbase 'kb_k'\.\.\.passed", text) and "pong 5" in text, text)
        expect("Error in kq_k bitbase.\nPosition reports wrong result.\n" in result.log
               and "Position reports" not in result.stdout, "report in the log alone")


def test_special_files_need_their_tablebases():
    with Home() as home:
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
        result = home.run(["quit"], with_tables=False, arguments=[
            "--tb", "nalimov", "1M", home.tables, "--generate", "generic[kr_k]"])
        expect_equal((result.status, home.files()), (0, ["kr_k.bgb"]), "generated at start-up")


def test_two_pawns_file_from_its_tablebase():
    with Home("kpkp") as home:
        result = home.run(["generate two_pawns", "generate two_pawns"])
        expect("Generating king+pawn vs king+pawn bitbases data file...done (" in result.stdout
               and "...skipped (file already exists)\n" in result.stdout, result.stdout)
        path = os.path.join(home.path, "kp_kp.bbb")
        expect_equal(os.path.getsize(path), TWO_PAWNS_SIZE, "size")
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


def test_interrupted_generation_leaves_no_file():
    with Home("kqkr") as home:  # four pieces: the generation runs long enough to be cut off
        with InteractiveSession(engine=home.engine, timeout=TIMEOUT) as engine:
            engine.send("force", f"tb nalimov 4M {home.tables}", "generate generic[kq_kr]")
            engine.wait_for_text(r"- kq_kr\.\.\.0%", TIMEOUT)
            engine.process.kill()
            engine.process.wait()
        expect_equal(home.files(), [], "files of a cut-off generation")
        result = home.run(["tb"], with_tables=False)
        expect("- 'kq_kr.bgb' not available" in result.log, "a cut-off file was loaded")

if __name__ == "__main__":
    run_tests(globals())
