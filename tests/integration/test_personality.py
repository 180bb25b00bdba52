#!/usr/bin/env python3
"""What a user sees of the personalities and of the developer's aid optimize_piece: the names
and values shown, the parsing of the argument, the effect on the evaluation and on the hash
tables, and the search for the best square of a piece.

Usage: test_personality.py BUILD_DIR
"""
import re

from engine_session import ConsoleSession, expect, expect_equal, run, run_tests

PLAYED = r"Brask played: (\S+)\n"
DISPLAYED = re.compile(r"^Personality: (\w+) \((-?\d+)\)$")
# A rook up with everything else at home: the positional and the reckless judgement differ.
ROOK_UP = "1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQk - 0 1"


def test_names_values_and_refusals():
    result = run(["personality", "force", "personality Nurz", "personality",
                  "personality vessimar", "personality", "personality 7", "personality",
                  "personality 5000", "personality", "personality Default", "personality",
                  "personality -15", "personality", "personality NURZ", "personality 15x",
                  "personality Random", "personality"])
    expect_equal(result.status, 0, "exit status")
    answers = result.answers()
    expect_equal(answers[:-1], [
        "Personality: Brask (0)",
        "Personality: Nurz (1000)",
        "Personality: Vessimar (-1000)",
        "Personality: Custom (7)",
        "Personality: Nurz (1000)",   # clamped
        "Personality: Brask (0)",     # the first name of the value
        "Personality: Jorlund (-15)",
        "Error (could not parse personality): personality NURZ",
        "Error (could not parse personality): personality 15x",
    ], "answers")
    match = DISPLAYED.match(answers[-1])
    expect(match and -20 <= int(match.group(2)) <= 20, f"a random personality: {answers[-1]}")


def test_the_personality_moves_the_evaluation():
    result = run(["force", "setboard " + ROOK_UP, "eval", "personality Nurz", "eval",
                  "personality Vessimar", "eval", "personality Brask", "eval"])
    values = [int(line.split()[1]) for line in result.answers() if line.startswith("eval: ")]
    expect_equal(len(values), 4, "four evaluations")
    expect(values[1] != values[2], f"reckless and positional judgements alike: {values}")
    expect_equal(values[3], values[0], "back to the default")
    expect(min(values[1], values[2]) <= values[0] <= max(values[1], values[2]),
           f"the default blend lies between the two halves: {values}")


HASH_TABLE = re.compile(r"(transposition table|pawn hashtable|evaluation hashtable): "
                        r"[\d.]+ \w+\n#total slots: +(\d+)\n#free  slots: +(\d+)\n")


def free_slots(session):
    start = session.mark()
    session.send("hash")
    session.wait_for(r"evaluation hashtable:[^%]*%\n", 5, start)
    return {name: (int(total), int(free))
            for name, total, free in HASH_TABLE.findall(session.output(start))}


def test_a_new_personality_clears_the_tables_that_depend_on_it():
    with ConsoleSession() as engine:
        mark = engine.mark()
        engine.send("sd 4", "go")
        engine.wait_for(PLAYED, 30, mark)
        engine.send("force")
        before = free_slots(engine)
        for name, (total, free) in before.items():
            expect(free < total, f"{name} unused by the search")
        engine.send("personality Ilmaris")
        after = free_slots(engine)
        for name in ("transposition table", "evaluation hashtable"):
            expect_equal(after[name][1], after[name][0], f"{name} after the change")
        expect_equal(after["pawn hashtable"], before["pawn hashtable"], "the pawn table stays")


BEST = re.compile(r"Best square: ([a-h][1-8]) \(val=(-?\d+)\)")
NEW_BEST = re.compile(r"New best square: ([a-h][1-8]) \(val=(-?\d+)\)")


def optimize(fen, square):
    result = run(["force", "setboard " + fen, "optimize_piece", square])
    expect_equal(result.status, 0, "exit status")
    return result


def test_optimize_piece_finds_the_best_square():
    result = optimize(ROOK_UP, "b1")
    expect("Piece:\n" in result.stdout, "the prompt on the terminal")
    expect("Piece:" not in result.log, "the prompt stays out of the log")
    improvements = NEW_BEST.findall(result.stdout)
    best = BEST.findall(result.stdout)
    expect(improvements, "at least the first square tried is an improvement")
    values = [int(value) for _, value in improvements]
    expect_equal(values, sorted(set(values)), "each improvement is better than the last")
    expect_equal(best, [improvements[-1]], "the best square is the last improvement")
    # A board is shown with each improvement.
    expect_equal(result.stdout.count("+---+---+---+---+---+---+---+---+") // 9,
                 len(improvements) + 1, "boards")


def test_optimize_piece_keeps_to_the_squares_of_the_piece():
    # The light-squared bishop of f1 tries light squares only; a pawn only squares in front of
    # its start rank, never its first or last rank.
    def light(file, rank):  # a1 is dark; ranks count from 1
        return (file + rank - 1) % 2 == 1

    def pawn_walk(file, rank):
        return (file, rank) == (4, 2) or 3 <= rank <= 7

    for square, allowed in (("f1", light), ("e2", pawn_walk)):
        result = optimize(ROOK_UP, square)
        for found, _ in NEW_BEST.findall(result.stdout):
            file, rank = ord(found[0]) - ord("a"), int(found[1])
            expect(allowed(file, rank), f"{found} tried for the piece on {square}")
        expect(BEST.search(result.stdout), f"a best square for {square}")


def test_optimize_piece_refuses_what_is_no_piece():
    for word in ("e4", "i9", "", "e2e4"):
        result = optimize(ROOK_UP, word)
        expect("Error: Invalid square\n" in result.stdout, f"refusal of {word!r}")
        expect(not BEST.search(result.stdout), f"no search for {word!r}")


if __name__ == "__main__":
    run_tests([test_names_values_and_refusals, test_the_personality_moves_the_evaluation,
               test_a_new_personality_clears_the_tables_that_depend_on_it,
               test_optimize_piece_finds_the_best_square,
               test_optimize_piece_keeps_to_the_squares_of_the_piece,
               test_optimize_piece_refuses_what_is_no_piece])
