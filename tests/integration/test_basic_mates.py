#!/usr/bin/env python3
"""Acceptance tests of the mating knowledge without tablebases: the engine plays both sides of
king and rook, and king and queen, against the bare king, and mates within the fifty-move rule,
also from the positions that are hardest for the attacker: the bare king in the centre and the
winning king far away in a corner.

Usage: test_basic_mates.py BUILD_DIR
"""
import re

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
KING_AND_ROOK = [
    ("8/8/8/3k4/8/8/8/R6K w - - 0 1", "1-0"),
    ("8/8/8/4k3/8/8/8/K6R b - - 0 1", "1-0"),
    ("7K/8/8/8/3k4/8/8/R7 w - - 0 1", "1-0"),
    ("r6k/8/8/8/4K3/8/8/8 b - - 0 1", "0-1"),
]
KING_AND_QUEEN = [
    ("8/8/8/4k3/8/8/8/1Q5K w - - 0 1", "1-0"),
    ("K7/8/8/8/4k3/8/8/6Q1 b - - 0 1", "1-0"),
    ("q6k/8/8/8/3K4/8/8/8 b - - 0 1", "0-1"),
]


def play_to_the_end(fen):
    """Both sides played by the engine from `fen`; the result, the reason and the plies."""
    with InteractiveSession(timeout=60) as engine:
        engine.send("protover 2")
        engine.wait_for("feature done=1", 5)
        engine.send("force", "setboard " + fen, f"sd {DEPTH}", "ping 1")
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


if __name__ == "__main__":
    engine_session.run_tests([test_king_and_rook_mate_the_bare_king,
                              test_king_and_queen_mate_the_bare_king])
