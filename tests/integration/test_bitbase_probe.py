#!/usr/bin/env python3
"""The probe command's bitbase answers, and start-up with broken bitbase files beside the engine.

Usage: test_bitbase_probe.py BUILD_DIR
"""
import os
import shutil
import subprocess
import tempfile

from engine_session import (TIMEOUT_SECONDS, Run, engine_path, expect, expect_equal, read_files,
                            read_log, run, run_tests)

TWO_PAWNS_SIZE = 1179648
RAMMED_PAWN_SIZE = 1966080
# White king e5, pawn e4, black king e7: a draw with White on move, a win with Black on move.
OPPOSITION = "8/4k3/8/4K3/4P3/8/8/8"
# The same with colours exchanged: Black owns the pawn.
OPPOSITION_BLACK_PAWN = "8/8/8/4p3/4k3/8/4K3/8"
PAWN_AGAINST_PAWN = "4k3/3p4/8/8/4P3/8/8/4K3 w - - 0 1"


def bitbase_answers(result):
    return [line.split(": ", 1)[1] for line in result.answers()
            if line.startswith("Probing bitbases: ")]


def test_king_and_pawn_against_king_needs_no_file():
    result = run([f"probe {OPPOSITION} w - - 0 1", f"probe {OPPOSITION} b - - 0 1",
                  "probe 4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", "probe k7/8/K7/P7/8/8/8/8 b - - 0 1",
                  f"probe {OPPOSITION_BLACK_PAWN} b - - 0 1",
                  f"probe {OPPOSITION_BLACK_PAWN} w - - 0 1",
                  "probe 8/8/8/8/8/8/8/K6k w - - 0 1"])
    expect_equal(bitbase_answers(result),
                 ["result=0", "result=-32699", "result=32703", "result=0", "result=0",
                  "result=-32699", "result=0"], "bitbase answers")


def test_positions_no_bitbase_knows():
    result = run(["probe 8/8/8/8/8/k7/8/1K5R w - - 0 1",
                  "probe rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                  "probe 4k3/ppp5/8/8/8/8/PP6/4K3 w - - 0 1", f"probe {PAWN_AGAINST_PAWN}"])
    expect_equal(bitbase_answers(result), ["not found"] * 4, "bitbase answers")
    expect_equal([line for line in result.answers() if line.startswith("Probing tablebases: ")],
                 ["Probing tablebases: disabled (not loaded)"] * 4, "tablebase answers")


def test_loading_is_reported_in_the_log_alone():
    result = run(["tb"])
    for line in ["Loading bitbases (executables directory='", "- two pawns bitbases not found ('",
                 "- rammed pawn bitbases not found ('", "- max supported pieces: 5\n",
                 "\nLoading generic bitbases: (not sent to xboard)\n",
                 "- 'kr_k.bgb' not available\n",
                 "Total memory usage (all loaded generic bitbases combined): "]:
        expect(line in result.log, f"log lacks {line!r}")
        expect(line.strip() not in result.stdout, f"terminal shows {line!r}")
    expect("King+pawn vs king+pawn bitbases (not loaded)" in result.answers(), "tb status")


def run_beside(files, lines):
    """Runs a copy of the engine with `files` (name to bytes) in the copy's own directory."""
    with tempfile.TemporaryDirectory(prefix="brask-") as home, \
            tempfile.TemporaryDirectory(prefix="brask-") as work:
        engine = os.path.join(home, "brask")
        shutil.copy(engine_path(), engine)
        for name, content in files.items():
            with open(os.path.join(home, name), "wb") as file:
                file.write(content)
        completed = subprocess.run([engine], cwd=work, capture_output=True,
                                   input="".join(line + "\n" for line in lines).encode(),
                                   timeout=TIMEOUT_SECONDS)
        return Run(completed, read_log(work), read_files(work))


def test_broken_files_are_left_out():
    files = {"kp_kp.bbb": bytes(TWO_PAWNS_SIZE - 1), "kpp_kp_ram.bbb": bytes(RAMMED_PAWN_SIZE + 1),
             "kr_k.bgb": b"\x3a\x30\x00\x00\xff\xff\xff\xff\x01\x02",
             "kq_k.bgb": b"", "kb_k.bgb": os.urandom(5000)}
    result = run_beside(files, ["tb", f"probe {OPPOSITION} b - - 0 1", f"probe {PAWN_AGAINST_PAWN}",
                                "probe 8/8/8/8/8/k7/8/1K5R w - - 0 1", "ping 7"])
    expect_equal(result.status, 0, "exit status")
    expect("pong 7" in result.answers(), "the engine did not go on")
    for line in ["Warning: Failed to open two pawns bitbases.\n",
                 "Warning: Failed to open rammed pawn bitbases\n", "- loading 'kr_k.bgb'...failed\n",
                 "- loading 'kq_k.bgb'...failed\n"]:
        expect(line in result.log, f"log lacks {line!r}")
    expect("Warning" not in result.stdout, "warnings reached the terminal")
    expect_equal(bitbase_answers(result), ["result=-32699", "not found", "not found"], "answers")
    expect("King+pawn vs king+pawn bitbases (not loaded)" in result.answers(), "tb status")


def test_two_pawns_file_of_the_right_size_is_used():
    result = run_beside({"kp_kp.bbb": bytes(TWO_PAWNS_SIZE)},
                        ["tb", f"probe {PAWN_AGAINST_PAWN}"])
    expect("- two pawns bitbases found\n" in result.log, "file not found")
    expect("King+pawn vs king+pawn bitbases (loaded)" in result.answers(), "tb status")
    expect_equal(bitbase_answers(result), ["result=0"], "an all-draw file")


if __name__ == "__main__":
    run_tests([test_king_and_pawn_against_king_needs_no_file, test_positions_no_bitbase_knows,
               test_loading_is_reported_in_the_log_alone, test_broken_files_are_left_out,
               test_two_pawns_file_of_the_right_size_is_used])
