#!/usr/bin/env python3
"""The engine plays both sides of king and rook, and king and queen, against the bare king, and
mates within the fifty-move rule, also from the positions hardest for the attacker.

Usage: test_basic_mates.py BUILD_DIR
"""
import os
import re
import subprocess
import sys
import tempfile

import engine_session
from engine_session import InteractiveSession, expect, expect_equal

# Under xboard a resignation is only a message, so the losing side plays on to the mate.
MOVE = r"^move (\S+)$"
RESULT = re.compile(r"^(1-0|0-1|1/2-1/2) \{([^}]*)\}$")
# Fixed depth keeps the games the same on a loaded machine.
DEPTH = 6
FIFTY_MOVES = 100  # plies without a capture or pawn move

# (position, winner): the bare king in the centre, the winning king far away in a corner, either
# side on move, and Black as the attacker once.
KING_AND_ROOK = [("8/8/8/3k4/8/8/8/R6K w - - 0 1", "1-0"), ("8/8/8/4k3/8/8/8/K6R b - - 0 1", "1-0"),
                 ("7K/8/8/8/3k4/8/8/R7 w - - 0 1", "1-0"), ("r6k/8/8/8/4K3/8/8/8 b - - 0 1", "0-1")]
KING_AND_QUEEN = [("8/8/8/4k3/8/8/8/1Q5K w - - 0 1", "1-0"),
                  ("K7/8/8/8/4k3/8/8/6Q1 b - - 0 1", "1-0"), ("q6k/8/8/8/3K4/8/8/8 b - - 0 1", "0-1")]


def play_to_the_end(fen, setup=(), depth=DEPTH, session=None):
    """Both sides played by the engine from `fen`; the result, the reason and the plies."""
    with InteractiveSession(timeout=60) as engine:
        engine.send("protover 2")
        engine.wait_for("feature done=1", 5)
        engine.send("force", *setup, "setboard " + fen, f"sd {depth}", "ping 1")
        _, before = engine.wait_for("^pong 1$", 5)
        expect(not any("rror" in line for line in before), f"setboard {fen}: {before}")
        for ply in range(FIFTY_MOVES + 2):
            engine.send("go")
            engine.wait_for(MOVE, 30, f"move {ply + 1} from {fen}")
            engine.send("force", f"ping {ply + 2}")
            _, before = engine.wait_for(f"^pong {ply + 2}$", 5)
            for line in before:
                result = RESULT.match(line)
                if result:
                    if session is not None:
                        session["engine"] = engine  # its log is read when it has ended
                    return result.group(1), result.group(2), ply + 1
        raise AssertionError(f"{fen}: no end of the game after {FIFTY_MOVES + 2} plies")


def expect_mates(games):
    for fen, winner in games:
        result, reason, plies = play_to_the_end(fen)
        print(f"     {fen}: {result} ({reason}) after {plies} plies")
        expect_equal(result, winner, f"result from {fen} ({reason})")
        expect(plies <= FIFTY_MOVES, f"mate from {fen} only after {plies} plies")
        expect("mates" in reason, f"the game from {fen} ended by {reason}")


def test_king_and_rook_mate_the_bare_king():
    expect_mates(KING_AND_ROOK)


def test_king_and_queen_mate_the_bare_king():
    expect_mates(KING_AND_QUEEN)


def test_with_tablebases_the_mate_takes_exactly_the_moves_of_the_table():
    fen = "8/8/8/8/8/2k5/8/K6R w - - 0 1"
    with tempfile.TemporaryDirectory() as directory:
        tool = os.path.join(os.path.abspath(sys.argv[1]), "brask-tbgen")
        subprocess.run([tool, "krk", "-o", directory], check=True, capture_output=True,
                       timeout=60)
        setup = [f"tb nalimov 1M {directory}"]
        probe = engine_session.run(["force", *setup, f"probe {fen}"]).answers()
        found = [line for line in probe if line.startswith("Probing tablebases: result=")]
        expect(found, f"no tablebase answer: {probe}")
        # A win in n moves reads 32767 - 2n.
        moves = (32767 - int(found[0].rsplit("=", 1)[1])) // 2
        session = {}
        result, reason, plies = play_to_the_end(fen, setup, depth=2, session=session)
    print(f"     {fen}: {result} ({reason}) after {plies} plies, the table says {moves} moves")
    expect_equal((result, plies), ("1-0", 2 * moves - 1), f"mate from {fen} ({reason})")
    expect(re.search(r"endgame probes: bitbases=\d+ \(found \d+\), tablebases=[1-9]",
                     session["engine"].log), "no probe statistics in the log")


if __name__ == "__main__":
    engine_session.run_tests(globals())
