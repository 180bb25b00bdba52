#!/usr/bin/env python3
"""Games under the xboard protocol with the real search, timed as a front end times them.

Usage: test_xboard_play.py BUILD_DIR
"""
import re
import time

from engine_session import (InteractiveSession, expect, expect_equal, log_only_reports, run,
                            run_tests)

# Black's legal answers to 1.e4 or 1.d4.
BLACK_REPLIES = {"a6", "a5", "b6", "b5", "c6", "c5", "d6", "d5", "e6", "e5", "f6", "f5", "g6",
                 "g5", "h6", "h5", "Na6", "Nc6", "Nf6", "Nh6"}
WHITE_FIRST_MOVES = {"a3", "a4", "b3", "b4", "c3", "c4", "d3", "d4", "e3", "e4", "f3", "f4", "g3",
                     "g4", "h3", "h4", "Na3", "Nc3", "Nf3", "Nh3"}
MOVE = r"^move (\S+)$"
# Iteration, score, centiseconds, nodes, then each move of the line followed by a blank.
THINKING = re.compile(r"^(\d+) (-?\d+) (-?\d+) (\d+) ((?:\S+ )+)$")
STATUS = re.compile(r"^stat01: (\d+) (\d+) (\d+) (-?\d+) (\d+) (\S+)$")
# Mate in 2 for White (1.Kb6 or 1.Kc7, then the rook mates); Black to move is mated in 1.
MATE_IN_2 = "k7/8/2K5/8/8/8/8/7R w - - 0 1"
MATED_IN_1 = "k7/8/1K6/8/8/8/8/7R b - - 0 1"
STALEMATE = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"


def xboard(*arguments):
    session = InteractiveSession(arguments)
    session.send("protover 2")
    session.wait_for("feature done=1", 5)
    return session


def thinking_lines(lines):
    return [THINKING.match(line) for line in lines if THINKING.match(line)]


def synchronize(session, tag="sync"):
    """Lines written before the engine has answered a ping: what the commands before it said."""
    session.send(f"ping {tag}")
    return session.wait_for(f"^pong {tag}$", 10)[1]


def test_user_moves_in_both_forms_are_answered_in_san():
    with xboard() as engine:
        engine.send("new", "level 0 2 0.5", "usermove e2e4")
        started = time.monotonic()
        match, before = engine.wait_for(MOVE, 14, "answer to usermove e2e4")
        expect(match.group(1) in BLACK_REPLIES, f"answer {match.group(1)!r} to 1.e4")
        # At 2 minutes a game the hard limit of a move is 12 s.
        expect(time.monotonic() - started < 13, "an answer in time at 2 minutes a game")
        expect_equal(before, [], "nothing else on a game clock without post")
        engine.send("new", "st 1", "d2d4")
        match, before = engine.wait_for(MOVE, 10, "answer to plain d2d4")
        expect(match.group(1) in BLACK_REPLIES, f"answer {match.group(1)!r} to 1.d4")
        expect_equal(before, [], "no error for the level or the plain move")
    reports = log_only_reports(engine.log)
    expect("User move: e4" in reports and "User move: d4" in reports, "user moves in the log")


def test_status_during_a_search_and_without_one():
    with xboard() as engine:
        engine.send("new", "st 20", "usermove e2e4")
        time.sleep(1.0)
        engine.send(".")
        match, _ = engine.wait_for(r"^stat01: ", 5)
        status = STATUS.match(match.string)
        expect(status is not None, f"status line {match.string!r}")
        centiseconds, nodes, depth, left, total, current = status.groups()
        expect(50 <= int(centiseconds) <= 400, f"elapsed time {centiseconds} cs after 1 s")
        expect(int(nodes) > 0 and int(depth) >= 2, f"nodes {nodes}, depth {depth}")
        expect_equal(total, "20", "root moves after 1.e4")
        expect(0 <= int(left) < 20, f"moves left {left}")
        expect(current in BLACK_REPLIES, f"current move {current!r}")
        # "?" ends the search at once, and its best move is played.
        engine.send("?")
        started = time.monotonic()
        match, _ = engine.wait_for(MOVE, 3, "move after ?")
        expect(time.monotonic() - started < 1.5, "? answers at once")
        expect(match.group(1) in BLACK_REPLIES, f"move {match.group(1)!r}")
        engine.send(".")
        engine.wait_for(r"^stat01: 0 0 0 0 0$", 5, "status without a search")


def test_thinking_lines_with_post_and_nopost():
    with xboard() as engine:
        engine.send("new", "post", "sd 4", "usermove e2e4")
        match, before = engine.wait_for(MOVE, 10)
        lines = thinking_lines(before)
        expect(len(lines) >= 4 and len(lines) == len(before), f"thinking lines {before}")
        expect_equal(sorted({int(line.group(1)) for line in lines}), [1, 2, 3, 4], "iterations")
        expect_equal(lines[-1].group(5).split()[0], match.group(1), "move is the line's first")
        nodes = [int(line.group(4)) for line in lines]
        expect(nodes == sorted(nodes) and nodes[-1] > 0, f"nodes grow: {nodes}")
        expect(all(-200 < int(line.group(2)) < 200 for line in lines), "scores in centipawns")
        engine.send("nopost", "new", "d2d4")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal(before, [], "no thinking on the terminal with nopost")
    # Without post each thinking line goes to the log, marked as not sent.
    after_nopost = engine.log[engine.log.rindex("received input: nopost"):]
    expect(re.search(r"\n4 -?\d+ \d+ \d+ (?:\S+ )+\n \(not sent to xboard\)\n", after_nopost),
           "thinking lines in the log after nopost")


def test_mate_scores_are_plain_integers():
    with xboard() as engine:
        engine.send("post", "force", f"setboard {MATE_IN_2}", "sd 5", "go")
        match, before = engine.wait_for(MOVE, 10)
        scores = [int(line.group(2)) for line in thinking_lines(before)]
        expect_equal(scores[-1], 32764, "mate in 2 for the engine")
        expect(match.group(1) in {"Kb6", "Kc7"}, f"mating move {match.group(1)!r}")
        engine.send("force", f"setboard {MATED_IN_1}", "go")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal([int(line.group(2)) for line in thinking_lines(before)][-1], -32765,
                     "mated in 1")
        expect_equal(match.group(1), "Kb8", "the only move")


def test_result_ends_the_game_silently():
    with xboard() as engine:
        engine.send("new", "st 5", "e2e4")
        time.sleep(0.5)
        # The front end ends the game while the engine thinks: the search is dropped unplayed.
        engine.send("result 1-0 {White mates}")
        expect_equal(synchronize(engine), [], "answer to result")
        engine.send(".", "e7e5", "go", "draw")
        expect_equal(synchronize(engine, "after"),
                     ["stat01: 0 0 0 0 0", "Illegal move: e7e5", "Error (game over): draw"],
                     "answers after the result")
        expect_equal(engine.quiet_for(0.5), [], "no move after the result")


def test_analyze_runs_until_exit_and_makes_no_move():
    with xboard() as engine:
        engine.send("post", "new", "analyze")
        time.sleep(1.5)
        engine.send("exit")
        lines = synchronize(engine)
        expect(len(thinking_lines(lines)) >= 3, f"analysis output {lines[-3:]}")
        expect(not any(line.startswith("move") for line in lines), "analysis makes no move")
        expect_equal(engine.quiet_for(0.3), [], "nothing after exit")
        # Exit leaves force mode: a move is taken without an answer.
        engine.send("e2e4")
        expect_equal(synchronize(engine, "force"), [], "no answer in force mode")
        engine.send("exit")
        expect_equal(synchronize(engine, "again"),
                     ["Error (must be in analyze mode): exit"], "exit without analysis")
    expect("type=analyze" in engine.log, "an analyze search in the log")


def test_analysis_follows_moves_to_the_end_of_the_game_and_back():
    with xboard() as engine:
        engine.send("post", "force", f"setboard {MATED_IN_1}", "analyze")
        # A forced line is searched to the last iteration; the analysis then waits.
        match, _ = engine.wait_for(r"^79 -32765 \d+ \d+ Kb8 Rh8# $", 10, "last iteration")
        engine.send("Kb8")
        engine.wait_for(r"^79 32766 \d+ \d+ Rh8# $", 10, "analysis after Kb8")
        engine.send("Rh8")
        expect_equal(synchronize(engine), [], "the mate is silent in analyze mode")
        engine.send(".")
        expect_equal(synchronize(engine, "status"), ["stat01: 0 0 0 0 0"],
                     "no search on a finished game")
        engine.send("undo")
        engine.wait_for(r"^1 32766 \d+ \d+ Rh8# $", 5, "analysis again after undo")
        engine.send("exit")
        lines = synchronize(engine, "exit")
        expect(not any(line.startswith("move") for line in lines), f"no move: {lines[-3:]}")
    expect("Entering analyze compatibility mode" in log_only_reports(engine.log),
           "a wait on the finished game")


def test_hint_searches_briefly_and_is_silent_without_a_move():
    with xboard() as engine:
        engine.send("new", "hint")
        started = time.monotonic()
        match, before = engine.wait_for(r"^Hint: (\S+)$", 6, "hint")
        expect(time.monotonic() - started < 4, "the hint search is short")
        expect(match.group(1) in WHITE_FIRST_MOVES and before == [], f"hint {match.group(0)!r}")
        # The answer is known now: a second hint comes without a search.
        engine.send("hint")
        engine.wait_for(rf"^Hint: {re.escape(match.group(1))}$", 2, "hint again")
        engine.send("force", f"setboard {STALEMATE}", "hint")
        expect_equal(synchronize(engine), [], "no hint without a legal move")


def test_playother_gives_the_engine_the_side_not_on_move():
    with xboard() as engine:
        engine.send("new", "force", "e2e4", "st 1", "playother")
        expect_equal(synchronize(engine), [], "playother starts no search without pondering")
        engine.send("e7e5")
        match, _ = engine.wait_for(MOVE, 10, "the engine's move for White")
        expect(match.group(1) not in BLACK_REPLIES, f"a move for White: {match.group(1)!r}")


def engine_move_then_ponder(engine):
    """Plays 1.e4 with pondering on; returns the engine's reply and the move it expects."""
    engine.send("new", "hard", "st 1", "e2e4")
    reply = engine.wait_for(MOVE, 10, "the engine's reply")[0].group(1)
    time.sleep(0.3)
    engine.send("hint")
    expected = engine.wait_for(r"^Hint: (\S+)$", 5, "the move pondered on")[0].group(1)
    return reply, expected


def test_ponder_hit_answers_quickly():
    with xboard() as engine:
        engine.send("post")
        _, expected = engine_move_then_ponder(engine)
        time.sleep(2.0)
        engine.send(f"usermove {expected}")
        started = time.monotonic()
        engine.wait_for(MOVE, 5, "the answer after a ponder hit")
        # Thinking time spent on the right guess counts, so the 1 s limit is mostly used up.
        expect(time.monotonic() - started < 0.9, "a quick answer after a hit")
    expect(f"Predicted move made (usermove {expected})" in log_only_reports(engine.log),
           "the hit in the log")


def test_ponder_miss_starts_a_new_search():
    with xboard() as engine:
        _, expected = engine_move_then_ponder(engine)
        other = "h3" if expected == "a3" else "a3"
        time.sleep(0.5)
        engine.send(other)
        match, before = engine.wait_for(MOVE, 5, "the answer after a ponder miss")
        expect_equal(before, [], "nothing else before the answer")
    expect("Predicted move made" not in engine.log, "no hit on another move")
    searches = re.findall(r"type=(\w+)", engine.log)
    expect_equal(searches[:4], ["normal", "pondering", "normal", "pondering"],
                 "searches: reply, ponder, new search after the miss, ponder")
    fens = re.findall(r"FEN: (\S+ [wb])", engine.log)
    expect(fens[2].endswith(" b"), f"the new search is for Black: {fens[2]}")


def test_pondering_gives_way_to_easy_go_and_playother():
    with xboard() as engine:
        engine_move_then_ponder(engine)
        engine.send("easy")
        synchronize(engine)
        engine.send(".")
        expect_equal(synchronize(engine, "easy"), ["stat01: 0 0 0 0 0"], "easy ends pondering")
        # Pondering again from playother, then go: the engine takes White's move itself.
        engine.send("hard", "force", "playother")
        time.sleep(0.5)
        engine.send(".")
        expect(STATUS.match(engine.wait_for("^stat01", 5)[0].string), "pondering after playother")
        engine.send("go")
        match, _ = engine.wait_for(MOVE, 5, "a move for White after go")
        expect(match.group(1) not in BLACK_REPLIES, f"a move for White: {match.group(1)!r}")
    searches = re.findall(r"type=(\w+)", engine.log)
    expect_equal(searches[:5], ["normal", "pondering", "pondering", "normal", "pondering"],
                 "searches")


def test_time_and_otim_set_the_clocks():
    with xboard() as engine:
        engine.send("new", "level 40 5 0", "time 150", "otim 30000", "e2e4")
        started = time.monotonic()
        match, before = engine.wait_for(MOVE, 5)
        expect_equal(before, [], "time and otim are silent")
        expect(time.monotonic() - started < 1.0, "1.5 s left: a quick move")
        expect(match.group(1) in BLACK_REPLIES, f"move {match.group(1)!r}")
    expect("milliseconds_left: 1500" in engine.log, "the engine's clock set by time")


def test_draw_offers_are_answered_after_the_next_search():
    with xboard() as engine:
        # A rook down: the offer is taken, and the engine still moves.
        engine.send("force", "setboard 4k3/pppp4/8/8/8/8/PPPP4/R3K3 b - - 0 1", "st 1", "go", "draw")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal(before, ["telluser Brask is thinking about the draw offer and will decide "
                              "after the next move.", "offer draw"], "accepted offer")
        # Level: the offer is turned down, said to a human, not to a computer.
        engine.send("new", "st 1", "draw", "e2e4")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal(before, ["telluser Brask is thinking about the draw offer and will decide "
                              "after the next move.",
                              "telluser Brask rejects the draw offer and wants to play on."],
                     "rejected offer")
        engine.send("new", "computer", "draw", "e2e4")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal(before, [], "the answers to a computer are silent")
        engine.send("force", "draw")
        expect_equal(synchronize(engine), ["Error (command not legal now): draw"],
                     "offer in force mode")
    expect("Engine rejects draw offer" in log_only_reports(engine.log), "rejection in the log")


def test_the_engine_offers_a_draw_when_its_best_is_a_perpetual_check():
    with xboard() as engine:
        # A queen down, White has nothing better than a perpetual check: two searches in a row at
        # exactly the draw score bring the offer.
        engine.send("force", "setboard 6k1/ppp3p1/8/7Q/8/8/q4PPP/6K1 w - - 0 1", "st 1", "go")
        match, before = engine.wait_for(MOVE, 10)
        expect_equal(before, [], "no offer after the first search")
        engine.send("hint")
        reply = engine.wait_for(r"^Hint: (\S+)$", 5, "a move for Black")[0].group(1)
        engine.send(reply)
        engine.wait_for(MOVE, 10)
        expect_equal(engine.quiet_for(0.3), ["offer draw"], "offer after the move")


def test_name_rating_and_computer_shape_the_players():
    result = run(["xboard", "new", "name Kasparov", "rating 2100 2800", "computer",
                  "write_pgn game.pgn"])
    expect_equal(result.answers(), [], "silent answers")
    pgn = result.files["game.pgn"]
    expect('[White "Kasparov"]' in pgn and '[Black "Brask"]' in pgn, f"players: {pgn}")


if __name__ == "__main__":
    run_tests(globals())
