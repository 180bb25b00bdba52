#!/usr/bin/env python3
"""The engine playing at the console with its real search and clock, from mates to a 40-move
game, searches that never stop by themselves, draw offers, resignation and quitting.

Usage: test_search_play.py BUILD_DIR
"""
import re
import subprocess
import time

from engine_session import InteractiveSession, expect, expect_equal, run_tests, tool_path

PLAYED = r"Brask played: (\S+)\n"
THINKING_LINE = re.compile(r"Depth: (\d+)\. ([^\n(]*)\(([^)]*)\)\n")
STATUS = re.compile(r"stat01: (\d+) (\d+) (\d+) (\d+) (\d+)")


def console():
    # Whole games are played in one session: no overall deadline beyond each wait's own.
    return InteractiveSession(timeout=600)


def last_thinking_line(text):
    """(principal variation as a list of moves, score text) of the last thinking line in text."""
    lines = THINKING_LINE.findall(text)
    expect(lines, f"no thinking line in {text[-400:]!r}")
    _, line, score = lines[-1]
    return line.split(), score


def engine_move(session, start, timeout=30):
    """The engine's next move after `start`, with the line and score it played it on."""
    match = session.wait_for_text(PLAYED, timeout, start)
    line, score = last_thinking_line(session.output()[start:match.start()])
    expect_equal(line[0], match.group(1), "the move played is the head of the last line")
    return match.group(1), line, score


def play_out(session, setup, max_moves):
    """Sets up a game for the engine, then answers each engine move with the reply it expects
    (the second move of its line), until the game ends. The engine's moves with their scores and
    the output from the first search on come back."""
    session.send("force", *setup)
    start = mark = session.mark()
    session.send("go")
    moves = []
    for _ in range(max_moves):
        move, line, score = engine_move(session, mark)
        moves.append((move, score))
        if session.poll_for(r"game over: [^\n]*\n", 1.0, mark):
            return moves, session.output(start)
        expect(len(line) >= 2, f"no expected reply behind {move} to play")
        mark = session.mark()
        session.send(line[1])
    raise AssertionError(f"no end of the game after {moves}")


def test_mates_are_announced_and_played():
    for fen, scores, result in [
            ("7k/8/8/8/8/8/R7/1R4K1 w - - 0 1", ["#2", "#1"], "1-0 (White mates)"),
            ("r1b1kb1r/pppp1ppp/5q2/4n3/3KP3/2N3PN/PPP4P/R1BQ1B1R b kq - 0 1", ["#3", "#2", "#1"],
             "0-1 (Black mates)")]:
        with console() as engine:
            moves, output = play_out(engine, ["setboard " + fen, "st 2"], len(scores) + 2)
            expect_equal([score for _, score in moves], scores, "scores of the mating moves")
            expect(moves[-1][0].endswith("#"), f"last move {moves[-1][0]} is no mate")
            expect(f"game over: {result}\n" in output, f"no end of game: {output[-300:]!r}")


def test_being_mated_shows_the_distance_and_the_engine_resigns():
    with console() as engine:
        engine.send("force", "setboard 7k/8/8/8/8/8/R7/1R4K1 b - - 0 1", "st 2", "go")
        move, _, score = engine_move(engine, 0)
        expect_equal(score, "-#3", f"score of {move}")
        engine.wait_for_text(r"Congratulations! Brask resigns.\n(?:.*\n)*?game over: 1-0 \(Black "
                             r"resigns\)\n", 2)


def test_hopeless_position_is_resigned_after_some_moves_not_at_once():
    with console() as engine:
        moves, output = play_out(engine, ["setboard 3qk2r/8/8/8/8/8/8/R3K3 w - - 0 1", "sd 5"], 8)
        expect(len(moves) >= 2, f"resigned at once: {moves}")
        expect(output.count("Congratulations! Brask resigns.\n") == 1, "no single resignation")
        expect(re.search(r"Congratulations! Brask resigns.\n(?:.*\n)*?game over: 0-1 \(White "
                         r"resigns\)\n", output), f"no result after resigning: {output[-300:]!r}")
        expect(all(score.startswith("-") for _, score in moves), f"scores {moves}")


def test_a_single_legal_move_is_played():
    with console() as engine:
        engine.send("force", "setboard k7/8/8/8/8/8/1r6/K6r w - - 0 1", "st 1", "go")
        started = time.monotonic()
        move, _, _ = engine_move(engine, 0, timeout=10)
        expect_equal(move, "Kxb2", "the only legal move")
        expect(time.monotonic() - started < 5, "a forced move took the time of a search and more")


def test_stalemate_is_worth_the_contempt():
    # Black is a rook down; giving the queen away stalemates its own king.
    fen = "k7/p7/P7/4Q3/6q1/4R3/8/7K b - - 0 1"
    for contempt in ("-30", "20"):
        with console() as engine:
            engine.send("force", "setboard " + fen, "contempt " + contempt, "st 2", "go")
            move, _, score = engine_move(engine, 0)
            expect_equal((move, score), ("Qg2+", contempt), "the stalemating move and its score")
            mark = engine.mark()
            engine.send("Kxg2")
            engine.wait_for_text(r"game over: 1/2-1/2 \(Stalemate\)\n", 5, mark)


HASH_TABLE = re.compile(r"(transposition table|pawn hashtable|evaluation hashtable): "
                        r"([\d.]+ \w+)\n#total slots: +(\d+)\n#free  slots: +(\d+)\n"
                        r"fill percentage: (\d+)\.(\d+)%\n")


def hash_report(session, start):
    session.send("hash")
    session.wait_for_text(r"evaluation hashtable:[^%]*%\n", 5, start)
    tables = HASH_TABLE.findall(session.output(start))
    expect_equal([table[0] for table in tables[-3:]],
                 ["transposition table", "pawn hashtable", "evaluation hashtable"], "tables")
    return {name: (size, int(total), int(free), int(whole) * 100 + int(hundredths))
            for name, size, total, free, whole, hundredths in tables[-3:]}


def test_hash_sizes_resizing_and_filling():
    with console() as engine:
        report = hash_report(engine, 0)
        expect_equal(report["transposition table"], ("24.00 megabyte", 1048576, 1048576, 0),
                     "transposition table at start")
        expect_equal(report["pawn hashtable"][:2], ("3.50 megabyte", 32768), "pawn table")
        expect_equal(report["evaluation hashtable"][:2], ("3.00 megabyte", 262144), "eval table")

        mark = engine.mark()
        engine.send("hash trans 64M")
        engine.wait_for_text(r"Error \(must be in force mode\): hash trans 64M\n", 5, mark)
        engine.send("force", "hash trans 64M")
        resized = hash_report(engine, engine.mark())
        expect_equal(resized["transposition table"], ("48.00 megabyte", 2097152, 2097152, 0),
                     "transposition table after hash trans 64M")

        mark = engine.mark()
        engine.send("sd 6", "go")
        engine.wait_for_text(PLAYED, 30, mark)
        filled = hash_report(engine, engine.mark())
        for name, (size, total, free, percent) in filled.items():
            expect(free < total, f"{name} unused by a search")
            expect_equal(percent, 10000 * (total - free) // total, f"fill percentage of {name}")
        expect_equal(filled["transposition table"][:2], ("48.00 megabyte", 2097152),
                     "the size stays after a search")


# A minute for 40 moves, repeated: 45 moves of each side cross the end of the first stage. The
# test's own reaction between moves runs on the engine's clock too, which a shorter stage would
# make count for too much.
LEVEL_SECONDS = 60
GAME_MOVES = 45
SEARCH_LIMITS = re.compile(r"type=normal\nmax_depth=\d+\nmax_time_limit=(\d+)\n"
                           r"variable_time_limit=(\d+)\n")
SEARCH_TIME = re.compile(r"time: ([\d.]+) sec")


def test_a_forty_move_game_against_itself_keeps_within_the_clock():
    """The engine plays both sides at level 40 1 0. The hard limit of move 41, from the log, is
    exactly the clock divided by 40: it tells what was left of the first minute."""
    with console() as engine:
        # A draw is worth less than a pawn to both sides, so the game isn't repeated to its end.
        engine.send("force", "contempt -50", f"level 40 {LEVEL_SECONDS // 60} 0")
        wall = []
        for ply in range(2 * GAME_MOVES):
            mark = engine.mark()
            started = time.monotonic()
            engine.send("go")
            engine.wait_for_text(PLAYED, 30, mark)
            wall.append(time.monotonic() - started)
            expect(not engine.poll_for("game over", 0.05, mark),
                   f"the game ended at ply {ply + 1}: {engine.output(mark)[-300:]!r}")
        expect_equal(engine.quit(), 0, "exit status")
    limits = [int(limit) for limit, _ in SEARCH_LIMITS.findall(engine.log)]
    times = [float(seconds) for seconds in SEARCH_TIME.findall(engine.log)]
    expect_equal((len(limits), len(times)), (2 * GAME_MOVES, 2 * GAME_MOVES), "searches logged")
    # The clock is polled by node counts at most an eighth of a second apart: on a busy machine
    # that much may be spent past the limit.
    for ply, (limit, seconds) in enumerate(zip(limits, times)):
        expect(seconds * 1000 <= limit + 125,
               f"ply {ply + 1} searched {seconds} s with a hard limit of {limit} ms")
    for side, name in ((0, "White"), (1, "Black")):
        used = sum(wall[side:80:2])
        left_ms = 40 * limits[80 + side] - LEVEL_SECONDS * 1000
        print(f"     {name}: 40 moves in {used:.2f} s by the test's watch, "
              f"{left_ms} ms left on the clock (±40)")
        expect(used < LEVEL_SECONDS, f"{name} used {used:.2f} s for 40 moves")
        expect(left_ms > 0, f"{name}'s clock ran out: {left_ms} ms after 40 moves")
        # Each move of the first stage gets at least what is left divided by the moves to come.
        expect(all(limit >= 150 for limit in limits[side:80:2]), f"{name}'s limits: {limits}")


def test_analyze_never_stops_by_itself():
    with console() as engine:
        # Limits that would end a normal search long before.
        engine.send("st 1", "sd 3", "level 40 0:10 0", "analyze")
        time.sleep(5)
        mark = engine.mark()
        engine.send(".")
        status = STATUS.search(engine.wait_for_text(STATUS.pattern, 3, mark).group(0))
        expect(int(status.group(1)) >= 450, f"status after 5 s: {status.group(0)}")
        expect(int(status.group(3)) > 3, f"analysis stopped at depth {status.group(3)}")
        expect("Brask played" not in engine.output(), "analysis played a move")
        mark = engine.mark()
        engine.send("exit")
        engine.wait_for_text(r"time: [\d.]+ sec", 3, mark)
        engine.send("e4")
        engine.wait_for_text(r"Black 1> ", 3, mark)
        time.sleep(1.5)
        expect("Brask played" not in engine.output(), "a move after the analysis")


def test_pondering_goes_on_until_the_user_moves():
    with console() as engine:
        engine.send("st 1", "hard", "e4")
        move = engine.wait_for_text(PLAYED, 10)
        time.sleep(4)
        mark = engine.mark()
        engine.send(".")
        status = STATUS.search(engine.wait_for_text(STATUS.pattern, 3, mark).group(0))
        expect(int(status.group(1)) >= 350, f"pondering stopped: {status.group(0)}")
        expect(engine.output().count("Brask played") == 1, "a move was played while pondering")
        mark = engine.mark()
        engine.send("d4")
        started = time.monotonic()
        engine.wait_for_text(PLAYED, 5, mark)
        expect(time.monotonic() - started < 3, "the answer to the user's move took too long")
    expect("type=pondering" in engine.log, f"no pondering search after {move.group(1)}")


def test_draw_offers_on_the_console():
    # Rook against rook: a level game is played on, the draw is not taken at once.
    with console() as engine:
        engine.send("force", "setboard 4k3/8/r7/8/8/8/7R/4K3 b - - 0 1", "sd 6", "playother")
        mark = engine.mark()
        engine.send("draw", "Ke7")
        engine.wait_for_text(r"Brask is thinking about the draw offer and will decide after the "
                             r"next move.\n", 5, mark)
        engine.wait_for_text(r"Brask rejects the draw offer and wants to play on.\n", 20, mark)
        _, line, score = engine_move(engine, mark)
        expect(abs(int(score)) <= 25, f"score of a level position: {score}")

        # A queen and a rook down, the engine takes the draw at the end of its next search.
        engine.send("force", "setboard r3k3/2q5/8/8/8/8/8/4K3 b - - 0 1", "sd 4", "playother")
        mark = engine.mark()
        engine.send("draw", "Kd8")
        engine.wait_for_text(r"Brask accepts draw offer\n", 20, mark)
        engine.wait_for_text(r"game over: 1/2-1/2 \(", 5, mark)
        expect("Brask played" not in engine.output(mark), "a move after accepting the draw")


def test_hint_move_now_and_status_during_a_search():
    with console() as engine:
        engine.send("st 2", "e4")
        engine.wait_for_text(PLAYED, 10)
        mark = engine.mark()
        engine.send("hint")
        hint = engine.wait_for_text(r"Brask suggests (\S+)\n", 10, mark).group(1)
        mark = engine.mark()
        engine.send(hint)
        engine.wait_for_text(PLAYED, 10, mark)
        expect(re.search(r"Illegal|Error", engine.output(mark)) is None,
               f"the hint {hint} was not a legal move: {engine.output(mark)[-300:]!r}")

        # An hour on the clock: the search is surely still running when "." arrives. A new game,
        # so that the move sent is legal whatever the engine played before.
        engine.send("st 0", "level 0 60 0", "new")
        mark = engine.mark()
        engine.send("d4")
        time.sleep(1.5)
        engine.send(".")
        status = STATUS.search(engine.wait_for_text(STATUS.pattern, 3, mark).group(0))
        centiseconds, nodes, depth, left, total = (int(value) for value in status.groups()[:5])
        expect(centiseconds >= 100 and nodes > 0 and depth >= 1 and 0 <= left < total,
               f"status {status.group(0)}")
        mark = engine.mark()
        started = time.monotonic()
        engine.send("?")
        engine.wait_for_text(PLAYED, 2, mark)
        expect(time.monotonic() - started < 1, "? did not move at once")


def test_bench_counts_the_same_nodes_on_every_run():
    bench = tool_path("brask-bench")
    totals = []
    for _ in range(2):
        completed = subprocess.run([bench, "4"], capture_output=True, text=True, timeout=120)
        expect_equal(completed.returncode, 0, "bench exit status")
        total = re.search(r"^total nodes: (\d+)$", completed.stdout, re.M)
        expect(total is not None, f"no total in {completed.stdout[-300:]!r}")
        totals.append(int(total.group(1)))
    expect(totals[0] > 0, "no nodes searched")
    expect_equal(totals[1], totals[0], "total nodes of the second run")


def test_time_and_depth_limits():
    with console() as engine:
        engine.send("st 1")
        started = time.monotonic()
        engine.send("e4")
        engine.wait_for_text(PLAYED, 10)
        expect(0.8 <= time.monotonic() - started <= 3.0, "st 1 took the wrong time")
        mark = engine.mark()
        engine.send("sd 3", "st 100", "go")
        engine.wait_for_text(PLAYED, 30, mark)
        depths = {int(depth) for depth in re.findall(r"Depth: (\d+)\.", engine.output(mark))}
        expect_equal(max(depths), 3, "the last iteration with sd 3")


def test_commands_during_a_search_run_in_order_and_quit_ends_it():
    with console() as engine:
        engine.send("st 100", "go")
        time.sleep(0.5)
        mark = engine.mark()
        engine.send("frobnicate1", "frobnicate2")
        engine.wait_for_text("frobnicate2", 2, mark)
        time.sleep(0.5)
        expect("Brask played" not in engine.output(), "a wrong command ended the search")
        later = engine.output(mark)
        expect(0 <= later.find("frobnicate1") < later.find("frobnicate2"), f"order: {later!r}")
        started = time.monotonic()
        expect_equal(engine.quit(timeout=5), 0, "exit status of quit during a search")
        expect(time.monotonic() - started < 1.0, "quit waited for the search")
        expect("Brask played" not in engine.output(), "a move was played after quit")


if __name__ == "__main__":
    run_tests(globals())
