"""The engine playing with its real search and clock, at the console and under xboard: mates and
resignation, a 40-move game on the clock, limits, analysis, pondering, hints, draw offers, status
lines, the hash tables, and the basic mates played out by both sides."""
import re
import tempfile
import time

from engine_session import (InteractiveSession, expect, expect_equal, log_only_reports,
                            make_tables, run_tests)

PLAYED = r"Brask played: (\S+)\n"
THINKING_LINE = re.compile(r"Depth: (\d+)\. ([^\n(]*)\(([^)]*)\)\n")
MOVE = r"^move (\S+)$"
# Iteration, score, centiseconds, nodes, then each move of the line followed by a blank.
THINKING = re.compile(r"^(\d+) (-?\d+) (-?\d+) (\d+) ((?:\S+ )+)$")
STATUS = re.compile(r"^stat01: (\d+) (\d+) (\d+) (-?\d+) (\d+) (\S+)$")
BLACK_FIRST = re.compile(r"^(?:[a-h][65]|N[acfh]6)$")  # Black's legal answers to 1.e4 or 1.d4
MATED_IN_1 = "k7/8/1K6/8/8/8/8/7R b - - 0 1"


def console():
    # Whole games are played in one session: no overall deadline beyond each wait's own.
    return InteractiveSession(timeout=600)


def answer(session, pattern, timeout, *lines):
    """Sends `lines`; the first match of `pattern` in the output that follows, whose `pos` is
    where that output starts."""
    mark = session.mark()
    session.send(*lines)
    return session.wait_for_text(pattern, timeout, mark)


def engine_move(session, start, timeout=30):
    """The engine's next move after `start`, with the line and score of its last thinking line."""
    match = session.wait_for_text(PLAYED, timeout, start)
    lines = THINKING_LINE.findall(session.output()[start:match.start()])
    expect(lines, f"no thinking line before {match.group(0)!r}")
    line, score = lines[-1][1].split(), lines[-1][2]
    expect_equal(line[0], match.group(1), "the move played is the head of the last line")
    return match.group(1), line, score


def play_out(session, setup, max_moves):
    """Sets up a game for the engine, then answers each engine move with the reply it expects,
    until the game ends; the engine's moves with their scores, and the output of the game."""
    session.send("force", *setup)
    start = mark = session.mark()
    session.send("go")
    moves = []
    for _ in range(max_moves):
        move, line, score = engine_move(session, mark)
        moves.append((move, score))
        if session.poll_for(r"game over: [^\n]*\n", 1.0, mark):
            return moves, session.output(start)
        mark = session.mark()
        session.send(line[1])
    raise AssertionError(f"no end of the game after {moves}")


def test_console_hopeless_games_are_resigned_after_some_moves_and_forced_moves_played():
    with console() as engine:
        moves, output = play_out(engine, ["setboard 3qk2r/8/8/8/8/8/8/R3K3 w - - 0 1", "sd 5"], 8)
        expect(len(moves) >= 2 and all(score.startswith("-") for _, score in moves), f"{moves}")
        expect(output.count("Congratulations! Brask resigns.\n") == 1 and re.search(
            r"resigns.\n(?:.*\n)*?game over: 0-1 \(White resigns\)\n", output), output[-300:])
        # A forced move is played without a search's time.
        started = time.monotonic()
        mark = answer(engine, PLAYED, 10, "new", "force", "st 1",
                      "setboard k7/8/8/8/8/8/1r6/K6r w - - 0 1", "go").pos
        expect_equal(engine_move(engine, mark)[0], "Kxb2", "the only legal move")
        expect(time.monotonic() - started < 5, "a forced move took the time of a search and more")


HASH_TABLE = re.compile(r"(transposition table|pawn hashtable|evaluation hashtable): "
                        r"([\d.]+ \w+)\n#total slots: +(\d+)\n#free  slots: +(\d+)\n")


def hash_report(session):
    start = answer(session, r"evaluation hashtable:[^%]*%\n", 5, "hash").pos
    return {name: (size, int(total), int(free))
            for name, size, total, free in HASH_TABLE.findall(session.output(start))}


def test_hash_tables_sized_filled_and_cleared_by_a_new_personality():
    with console() as engine:
        expect_equal(list(hash_report(engine).items()), [
            ("transposition table", ("24.00 megabyte", 1048576, 1048576)),
            ("pawn hashtable", ("3.50 megabyte", 32768, 32768)),
            ("evaluation hashtable", ("3.00 megabyte", 262144, 262144))], "at start")
        engine.send("force", "hash trans 64M")
        expect_equal(hash_report(engine)["transposition table"],
                     ("48.00 megabyte", 2097152, 2097152), "after hash trans 64M")
        answer(engine, PLAYED, 30, "sd 6", "go")
        engine.send("force")
        filled = hash_report(engine)
        expect(all(free < total for _, total, free in filled.values()), f"search used {filled}")
        engine.send("personality Ilmaris")
        after = hash_report(engine)
        expect(all(after[name][2] == after[name][1] for name in (
            "transposition table", "evaluation hashtable")), f"after a new personality: {after}")
        expect_equal(after["pawn hashtable"], filled["pawn hashtable"], "the pawn table stays")


# A minute for 40 moves, repeated: 45 moves of each side cross the end of the first stage. The
# test's own reaction between moves runs on the engine's clock too, which a shorter stage would
# make count for too much.
LEVEL_SECONDS = 60
GAME_MOVES = 45
SEARCH_LIMITS = re.compile(r"type=normal\nmax_depth=\d+\nmax_time_limit=(\d+)\n")


def test_a_forty_move_game_against_itself_keeps_within_the_clock():
    """The engine plays both sides at level 40 1 0. The hard limit of move 41, from the log, is
    exactly the clock divided by 40: it tells what was left of the first minute."""
    with console() as engine:
        # A draw is worth less than a pawn to both sides, so the game isn't repeated to its end.
        engine.send("force", "contempt -50", f"level 40 {LEVEL_SECONDS // 60} 0")
        wall = []
        for ply in range(2 * GAME_MOVES):
            started = time.monotonic()
            mark = answer(engine, PLAYED, 30, "go").pos
            wall.append(time.monotonic() - started)
            expect(not engine.poll_for("game over", 0.05, mark),
                   f"the game ended at ply {ply + 1}: {engine.output(mark)[-300:]!r}")
        expect_equal(engine.quit(), 0, "exit status")
    limits = [int(limit) for limit in SEARCH_LIMITS.findall(engine.log)]
    expect_equal(len(limits), 2 * GAME_MOVES, "searches logged")
    for side, name in ((0, "White"), (1, "Black")):
        used = sum(wall[side:80:2])
        left_ms = 40 * limits[80 + side] - LEVEL_SECONDS * 1000
        print(f"     {name}: 40 moves in {used:.2f} s by the test's watch, "
              f"{left_ms} ms left on the clock (±40)")
        expect(used < LEVEL_SECONDS, f"{name} used {used:.2f} s for 40 moves")
        expect(left_ms > 0, f"{name}'s clock ran out: {left_ms} ms after 40 moves")
        # Each move of the first stage gets at least what is left divided by the moves to come.
        expect(all(limit >= 150 for limit in limits[side:80:2]), f"{name}'s limits: {limits}")


def test_console_limits_hint_and_draw():
    with console() as engine:
        started = time.monotonic()
        answer(engine, PLAYED, 10, "st 1", "e4")
        expect(0.8 <= time.monotonic() - started <= 3.0, "st 1 took the wrong time")
        hint = answer(engine, r"Brask suggests (\S+)\n", 10, "hint").group(1)
        mark = answer(engine, PLAYED, 30, "sd 3", "st 100", hint).pos
        expect(re.search(r"Illegal|Error", engine.output(mark)) is None, f"the hint {hint}")
        depths = {int(depth) for depth in re.findall(r"Depth: (\d+)\.", engine.output(mark))}
        expect_equal(max(depths), 3, "the last iteration with sd 3")
        # A queen and a rook down, the engine takes the draw at the end of its next search.
        engine.send("force", "setboard r3k3/2q5/8/8/8/8/8/4K3 b - - 0 1", "sd 4", "playother")
        mark = answer(engine, r"Brask accepts draw offer\n(?:.*\n)*?game over: 1/2-1/2 \(", 20,
                      "draw", "Kd8").pos
        expect("Brask played" not in engine.output(mark), "a move after accepting the draw")


def xboard():
    session = InteractiveSession(timeout=120)
    session.send("protover 2")
    session.wait_for("feature done=1", 5)
    return session


def move_after(session, timeout, *lines):
    """Sends `lines`; the match of the engine's move, and the lines before it."""
    session.send(*lines)
    return session.wait_for(MOVE, timeout, f"a move after {lines}")


def thinking_lines(lines):
    return [THINKING.match(line) for line in lines if THINKING.match(line)]


def synchronize(session, *lines):
    """What `lines` and the commands before them said: the lines before the answer to a ping."""
    session.send(*lines, "ping 1")
    return session.wait_for("^pong 1$", 10)[1]


def test_xboard_moves_in_both_forms_status_move_now_and_result():
    with xboard() as engine:
        match, before = move_after(engine, 10, "new", "st 1", "usermove e2e4")
        expect(BLACK_FIRST.match(match.group(1)) and before == [], f"{before} {match.group(1)}")
        engine.send("new", "st 20", "d2d4")
        time.sleep(1.0)
        engine.send(".")
        status = STATUS.match(engine.wait_for(r"^stat01: ", 5)[0].string)
        expect(status is not None, "a status line")
        centiseconds, nodes, depth, left, total, current = status.groups()
        expect(50 <= int(centiseconds) <= 400, f"elapsed time {centiseconds} cs after 1 s")
        expect(int(nodes) > 0 and int(depth) >= 2, f"nodes {nodes}, depth {depth}")
        expect(total == "20" and 0 <= int(left) < 20 and BLACK_FIRST.match(current),
               f"root moves {left} {total} {current}")
        # "?" ends the search at once, and its best move is played.
        engine.send("?")
        started = time.monotonic()
        match, before = engine.wait_for(MOVE, 3, "move after ?")
        expect(time.monotonic() - started < 1.5, "? answers at once")
        expect(BLACK_FIRST.match(match.group(1)) and before == [], f"{before} {match.group(1)}")
        engine.send("new", "st 5", "e2e4")
        time.sleep(0.5)
        # The front end ends the game while the engine thinks: the search is dropped unplayed.
        expect_equal(synchronize(engine, "result 1-0 {White mates}"), [], "answer to result")
        expect_equal(synchronize(engine, ".", "e7e5", "go", "draw"),
                     ["stat01: 0 0 0 0 0", "Illegal move: e7e5", "Error (game over): draw"],
                     "answers after the result, the status line without a search")
        expect_equal(engine.quiet_for(0.5), [], "no move after the result")
    reports = log_only_reports(engine.log)
    expect("User move: e4" in reports and "User move: d4" in reports, "user moves in the log")


def test_xboard_thinking_lines_and_mate_scores():
    with xboard() as engine:
        match, before = move_after(engine, 10, "new", "post", "sd 4", "usermove e2e4")
        lines = thinking_lines(before)
        expect(len(lines) >= 4 and len(lines) == len(before), f"thinking lines {before}")
        expect_equal(sorted({int(line.group(1)) for line in lines}), [1, 2, 3, 4], "iterations")
        expect_equal(lines[-1].group(5).split()[0], match.group(1), "move is the line's first")
        nodes = [int(line.group(4)) for line in lines]
        expect(nodes == sorted(nodes) and nodes[-1] > 0, f"nodes grow: {nodes}")
        expect(all(-200 < int(line.group(2)) < 200 for line in lines), "scores in centipawns")
        match, before = move_after(engine, 10, "nopost", "new", "st 1", "d2d4")
        expect_equal(before, [], "no thinking on the terminal with nopost")
        # Mate in 2 for White (1.Kb6 or 1.Kc7, then the rook mates); then mated in 1.
        match, before = move_after(engine, 10, "post", "force", "sd 5",
                                   "setboard k7/8/2K5/8/8/8/8/7R w - - 0 1", "go")
        expect_equal(int(thinking_lines(before)[-1].group(2)), 32764, "mate in 2 for the engine")
        expect(match.group(1) in {"Kb6", "Kc7"}, f"mating move {match.group(1)!r}")
        match, before = move_after(engine, 10, "force", f"setboard {MATED_IN_1}", "go")
        expect_equal((int(thinking_lines(before)[-1].group(2)), match.group(1)), (-32765, "Kb8"),
                     "mated in 1, and the only move")
    # Without post each thinking line goes to the log, marked as not sent.
    after_nopost = engine.log[engine.log.rindex("received input: nopost"):]
    expect(re.search(r"\n\d+ -?\d+ \d+ \d+ (?:\S+ )+\n \(not sent to xboard\)\n", after_nopost),
           "thinking lines in the log after nopost")


def test_xboard_analysis_ignores_limits_follows_moves_and_makes_none():
    with xboard() as engine:
        # Limits that would end a normal search long before.
        engine.send("post", "new", "st 1", "sd 2", "analyze")
        time.sleep(1.5)
        lines = synchronize(engine, "exit")
        expect(max(int(line.group(1)) for line in thinking_lines(lines)) > 2, f"{lines[-3:]}")
        expect(not any(line.startswith("move") for line in lines), "analysis makes no move")
        expect_equal(engine.quiet_for(0.3), [], "nothing after exit")
        # Exit leaves force mode: a move is taken without an answer.
        expect_equal(synchronize(engine, "e2e4"), [], "no answer in force mode")
        engine.send("force", f"setboard {MATED_IN_1}", "analyze")
        # A forced line is searched to the last iteration; the analysis then waits.
        engine.wait_for(r"^79 -32765 \d+ \d+ Kb8 Rh8# $", 10, "last iteration")
        engine.send("Kb8")
        engine.wait_for(r"^79 32766 \d+ \d+ Rh8# $", 10, "analysis after Kb8")
        expect_equal(synchronize(engine, "Rh8"), [], "the mate is silent in analyze mode")
        expect_equal(synchronize(engine, "."), ["stat01: 0 0 0 0 0"],
                     "no search on a finished game")
        engine.send("undo")
        engine.wait_for(r"^1 32766 \d+ \d+ Rh8# $", 5, "analysis again after undo")
        lines = synchronize(engine, "exit")
        expect(not any(line.startswith("move") for line in lines), f"no move: {lines[-3:]}")
    expect("type=analyze" in engine.log, "an analyze search in the log")
    expect("Entering analyze compatibility mode" in log_only_reports(engine.log),
           "a wait on the finished game")


def engine_move_then_ponder(engine):
    """Plays 1.e4 with pondering on; returns the move the engine expects."""
    move_after(engine, 10, "new", "hard", "st 1", "e2e4")
    time.sleep(0.3)
    engine.send("hint")
    return engine.wait_for(r"^Hint: (\S+)$", 5, "the move pondered on")[0].group(1)


def test_xboard_ponder_hit_and_miss():
    with xboard() as engine:
        expected = engine_move_then_ponder(engine)
        time.sleep(2.0)
        # Pondering runs on past the time limit of a move.
        engine.send(".")
        status = STATUS.match(engine.wait_for("^stat01", 5)[0].string)
        expect(status and int(status.group(1)) >= 150, f"pondering stopped: {status}")
        engine.send(f"usermove {expected}")
        started = time.monotonic()
        engine.wait_for(MOVE, 5, "the answer after a ponder hit")
        # Thinking time spent on the right guess counts, so the 1 s limit is mostly used up.
        expect(time.monotonic() - started < 0.9, "a quick answer after a hit")
    expect(f"Predicted move made (usermove {expected})" in log_only_reports(engine.log),
           "the hit in the log")
    with xboard() as engine:
        expected = engine_move_then_ponder(engine)
        time.sleep(0.5)
        match, before = move_after(engine, 5, "h3" if expected == "a3" else "a3")
        expect_equal(before, [], "nothing else before the answer")
        synchronize(engine, "easy")
        expect_equal(synchronize(engine, "."), ["stat01: 0 0 0 0 0"], "easy ends pondering")
        # Pondering from playother; go then makes the engine take White's move itself.
        engine.send("hard", "force", "playother")
        time.sleep(0.5)
        engine.send(".")
        expect(STATUS.match(engine.wait_for("^stat01", 5)[0].string), "pondering after playother")
        move_after(engine, 5, "go")
    expect("Predicted move made" not in engine.log, "no hit on another move")
    expect_equal(re.findall(r"type=(\w+)", engine.log)[:6],
                 ["normal", "pondering", "normal", "pondering", "pondering", "normal"],
                 "searches: reply, ponder, after the miss, ponder, after playother, go")
    fens = re.findall(r"FEN: (\S+ [wb])", engine.log)
    expect(fens[2].endswith(" b") and fens[5].endswith(" w"), f"sides of the searches: {fens}")


def test_xboard_draw_offers():
    with xboard() as engine:
        # A rook down: the offer is taken, and the engine still moves.
        _, before = move_after(engine, 10, "force", "st 1",
                               "setboard 4k3/pppp4/8/8/8/8/PPPP4/R3K3 b - - 0 1", "go", "draw")
        thinking = ("telluser Brask is thinking about the draw offer and will decide after the "
                    "next move.")
        expect_equal(before, [thinking, "offer draw"], "accepted offer")
        # Level: the offer is turned down, said to a human, not to a computer.
        _, before = move_after(engine, 10, "new", "st 1", "draw", "e2e4")
        expect_equal(before, [thinking, "telluser Brask rejects the draw offer and wants to play "
                                        "on."], "rejected offer")
        expect_equal(move_after(engine, 10, "new", "computer", "st 1", "draw", "e2e4")[1], [],
                     "the answers to a computer are silent")
        expect_equal(synchronize(engine, "force", "draw"), ["Error (command not legal now): draw"],
                     "offer in force mode")
    expect("Engine rejects draw offer" in log_only_reports(engine.log), "rejection in the log")


RESULT = re.compile(r"^(1-0|0-1|1/2-1/2) \{([^}]*)\}$")
FIFTY_MOVES = 100  # plies without a capture or pawn move
# (position, winner): the bare king in the centre, the winning king far away in a corner, either
# side on move, and Black as the attacker once.
BASIC_MATES = [("8/8/8/3k4/8/8/8/R6K w - - 0 1", "1-0"), ("8/8/8/4k3/8/8/8/K6R b - - 0 1", "1-0"),
               ("7K/8/8/8/3k4/8/8/R7 w - - 0 1", "1-0"), ("r6k/8/8/8/4K3/8/8/8 b - - 0 1", "0-1"),
               ("8/8/8/4k3/8/8/8/1Q5K w - - 0 1", "1-0"), ("K7/8/8/8/4k3/8/8/6Q1 b - - 0 1", "1-0"),
               ("q6k/8/8/8/3K4/8/8/8 b - - 0 1", "0-1")]


def play_to_the_end(engine, fen, setup=(), depth=6):
    """Both sides played by the engine from `fen` at a fixed depth, which keeps the games the
    same on a loaded machine; the result, the reason and the plies. Under xboard a resignation
    is only a message, so the losing side plays on to the mate."""
    engine.send("force", *setup, "setboard " + fen, f"sd {depth}")
    expect_equal(synchronize(engine), [], f"setboard {fen}")
    for ply in range(FIFTY_MOVES + 2):
        move_after(engine, 30, "go")
        for line in synchronize(engine, "force"):
            if result := RESULT.match(line):
                return result.group(1), result.group(2), ply + 1
    raise AssertionError(f"{fen}: no end of the game after {FIFTY_MOVES + 2} plies")


def test_king_and_rook_or_queen_mate_the_bare_king():
    for fen, winner in BASIC_MATES:
        with xboard() as engine:
            result, reason, plies = play_to_the_end(engine, fen)
        print(f"     {fen}: {result} ({reason}) after {plies} plies")
        expect(result == winner and plies <= FIFTY_MOVES and "mates" in reason,
               f"{fen}: {result} {{{reason}}} after {plies} plies")


def test_with_tablebases_the_mate_takes_exactly_the_moves_of_the_table():
    fen = "8/8/8/8/8/2k5/8/K6R w - - 0 1"
    with tempfile.TemporaryDirectory() as directory, xboard() as engine:
        engine.send("force", f"tb nalimov 1M {make_tables(directory, 'krk')}", f"probe {fen}")
        # A win in n moves reads 32767 - 2n.
        moves = (32767 - int(engine.wait_for(r"Probing tablebases: result=(\d+)", 5)[0][1])) // 2
        result, reason, plies = play_to_the_end(engine, fen, depth=2)
    print(f"     {fen}: {result} ({reason}) after {plies} plies, the table says {moves} moves")
    expect_equal((result, plies), ("1-0", 2 * moves - 1), f"mate from {fen} ({reason})")
    expect(re.search(r"endgame probes: bitbases=\d+ \(found \d+\), tablebases=[1-9]", engine.log),
           "no probe statistics in the log")


if __name__ == "__main__":
    run_tests(globals())
