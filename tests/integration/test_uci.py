"""Whole sessions under the UCI protocol, down to a game against itself on a fast clock."""
import re
import time

from engine_session import InteractiveSession, expect, expect_equal, run, run_tests

BESTMOVE = r"^bestmove (\S+)(?: ponder (\S+))?$"
COORDINATE = re.compile(r"^[a-h][1-8][a-h][1-8][qrbn]?$")
PV_INFO = re.compile(r"^info depth (\d+) seldepth (\d+) score (cp -?\d+|mate -?\d+)"
                     r"(?: (lowerbound|upperbound))? nodes (\d+) nps (\d+) time (\d+)"
                     r"(?: pv((?: [a-h][1-8][a-h][1-8][qrbn]?)+))?$")
PROGRESS_INFO = re.compile(r"^info depth \d+(?: currmove [a-h][1-8][a-h][1-8][qrbn]? "
                           r"currmovenumber \d+)?(?: score (?:cp|mate) -?\d+ (?:lower|upper)bound)?"
                           r" nodes \d+ nps \d+ time \d+ hashfull \d+$")
# White mates in 2 (1.Kb6 or 1.Kc7, then the rook mates on the eighth rank).
MATE_IN_2 = "k7/8/2K5/8/8/8/8/7R w - - 0 1"
STALEMATE = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"
PROMOTION_MATES = "k7/2P5/1K6/8/8/8/8/8 w - - 0 1"


def uci_session():
    session = InteractiveSession()
    session.send("uci")
    session.wait_for("^uciok$", 5)
    return session


def best_move(session, timeout, *lines):
    """Sends `lines`; the move, the ponder move, the lines before the move and the seconds."""
    started = time.monotonic()
    session.send(*lines)
    match, skipped = session.wait_for(BESTMOVE, timeout, "bestmove")
    return match.group(1), match.group(2), skipped, time.monotonic() - started


def no_move(lines, what):
    expect(not any(line.startswith("bestmove") for line in lines), what)


def ready(session, what):
    session.send("isready")
    no_move(session.wait_for("^readyok$", 2, "readyok")[1], what)


def test_identification_lists_the_options_with_their_present_values():
    result = run(["uci", "isready", "setoption name ENABLE_ETTC value true", "setoption name "
                  "checking_move_sorting_bonus_if_not_playing_for_mate[3] value 50", "uci"])
    lines = result.stdout.split("\n")
    start = lines.index("id name Brask 2.0.1")
    expect(lines[start + 1].startswith("id author "), "author line")
    end = lines.index("uciok")
    options = lines[start + 2:end]
    expect(all(line.startswith("option name ") for line in options), "only options between")
    expected = [
        "option name Hash type spin default 32 min 1 max 65536",
        "option name Ponder type check default false",
        "option name Clear Hash type button",
        "option name NalimovPath type string default <empty>",
        "option name root_distance_multiplier type spin default 64 min 1 max 6400",
        # Arrays are one option per element.
        "option name checking_move_sorting_bonus_if_not_playing_for_mate[3] type spin default 65 "
        "min -511 max 511",
        "option name capture_move_sorting_bonus[5] type spin default 10 min -511 max 511"]
    expect_equal([line for line in expected if line not in options], [], "options missing")
    personality = next(line for line in options if " Personality " in line)
    expect(all(f" var {name}" in personality for name in ("Random", "Nurz", "Vessimar")),
           f"personalities: {personality}")
    # 173 settings, three of them arrays of 4, 4 and 6, and the eight options of the engine.
    expect_equal(len(options), 173 - 3 + 14 + 8, "number of options")
    expect_equal(lines[end + 1], "readyok", "answer to isready")
    # Setting names are taken whatever their case, and the next listing shows the new values.
    expect("option name enable_ettc type check default true" in lines[end:] and
           "option name checking_move_sorting_bonus_if_not_playing_for_mate[3] type spin "
           "default 50 min -511 max 511" in lines[end:], f"second listing: {lines[end:end + 9]}")
    expect_equal((result.status, result.stdout.count("info string")), (0, 0), "all taken")


def test_bad_input_is_answered_with_info_strings_and_changes_nothing():
    bad = [(line, f"info string Error ({error}): {line}") for line, error in [
        ("foo", "unrecognized command"), ("e2e4", "unrecognized command"),
        ("position", "missing parameters"), ("position middle", "invalid argument(s)"),
        ("position fen 8/8/8/8/8/8/8/8 w - - 0 1", "Illegal position"),
        ("position fen rubbish", "input inconsistent with FEN standard"),
        ("position startpos e2e4", "invalid argument(s)"),
        ("position fen", "input inconsistent with FEN standard"),
        ("go wtime", "missing parameters"), ("go depth 7x", "integer argument expected"),
        ("go depth 0", "argument out of bounds"), ("go depth 101", "argument out of bounds"),
        ("go winc -1", "argument out of bounds"), ("go movestogo 0", "argument out of bounds"),
        ("go nodes 99999999999999999999", "integer argument expected"),
        ("go wtime 1000 fast", "unknown parameter fast"), ("go searchmoves", "missing parameters"),
        ("go searchmoves depth 3", "missing parameters"), ("setoption", "missing parameters"),
        # The other refusals of setoption are the unit tests'.
        ("setoption name Hash value 1000000", "value out of bounds")]] + [
        (line, f"info string Illegal move: {line.split()[-1]}") for line in [
            "position startpos moves e2e4 e7e5 e1e3", "position startpos moves xyz",
            # Mate ends the game; nothing can follow it.
            "position startpos moves f2f3 e7e5 g2g4 d8h4 a2a3", "go searchmoves e2e4"]]
    with uci_session() as session:
        session.send("position startpos moves e2e4", *[line for line, _ in bad], "go depth 2")
        move, _, skipped, _ = best_move(session, 10)
    answers = [line for line in skipped if line.startswith("info string")]
    expect_equal(answers, [answer for _, answer in bad], "answers")
    # The position stayed the one after 1.e4: Black moves, from the seventh or eighth rank.
    expect(move[1] in "78" and COORDINATE.match(move), f"a move of Black: {move}")


def test_searches_by_depth_nodes_mate_search_moves_and_time():
    with uci_session() as session:
        move, ponder, skipped, _ = best_move(session, 10, "position startpos moves e2e4 e7e5",
                                             "go depth 3")
        depths = [int(PV_INFO.match(line).group(1)) for line in skipped if PV_INFO.match(line)]
        expect(depths and max(depths) == 3, f"iterations up to 3: {depths}")
        expect(COORDINATE.match(move) and move[1] in "12", f"a move of White: {move}")
        expect(ponder is None or COORDINATE.match(ponder), f"ponder move {ponder}")
        for line in skipped:
            expect(PV_INFO.match(line) or PROGRESS_INFO.match(line), f"info line {line!r}")
        move = best_move(session, 10, "position startpos", "go depth 4 searchmoves a2a3 h2h4")[0]
        expect(move in ("a2a3", "h2h4"), f"one of the allowed moves: {move}")
        move, _, skipped, _ = best_move(session, 10, f"position fen {MATE_IN_2}", "go mate 2")
        expect(move in ("c6b6", "c6c7"), f"the mating king move: {move}")
        expect(any(" score mate 2 " in line for line in skipped), "the mate announced")
        # Mate by promotion: to a queen or a rook, and the piece is always named.
        move = best_move(session, 10, f"position fen {PROMOTION_MATES}", "go depth 3")[0]
        expect(move in ("c7c8q", "c7c8r"), f"the promotion that mates: {move}")
        move = best_move(session, 15, "position startpos",
                         "go nodes 5000 wtime 100000 btime 100000")[0]
        expect(COORDINATE.match(move), "a move within the node limit")
        # The starting position a third time: the game goes on while the front end sends moves.
        move, _, skipped, _ = best_move(session, 10, "position startpos moves "
                                        + "g1f3 g8f6 f3g1 f6g8 " * 2 + "b1c3", "go depth 2")
        expect(move != "0000" and move[1] in "78" and not any(
            line.startswith("info string") for line in skipped), f"draws left to the GUI: {move}")
        expect_equal(best_move(session, 5, f"position fen {STALEMATE}", "go depth 5")[:2],
                     ("0000", None), "no legal move")
        seconds = best_move(session, 5, "position startpos", "go movetime 700")[3]
        expect(0.3 < seconds < 1.5, f"movetime 700 took {seconds:.2f} s")
        seconds = best_move(session, 5, "position startpos moves d2d4",
                            "go wtime 1000 btime 1000 winc 10 binc 10")[3]
        expect(seconds < 0.5, f"one second on the clock took {seconds:.2f} s")


def test_stop_ends_infinite_analysis_with_a_best_move():
    with uci_session() as session:
        session.send("position startpos moves g1f3", "go infinite")
        waited = session.quiet_for(2.5)
        no_move(waited, "a move before stop")
        progress = [line for line in waited if PROGRESS_INFO.match(line)]
        expect(len(progress) <= 3, f"currmove at most once a second: {progress}")
        ready(session, "isready answered during the search")
        move = best_move(session, 3, "stop")[0]
        expect(move[1] in "78", f"a move of Black: {move}")
        session.send("stop")
        ready(session, "stop alone: no move")


def test_ponder_hit_and_ponder_miss():
    with uci_session() as session:
        session.send("setoption name Ponder value true", "ucinewgame",
                     "position startpos moves e2e4 e7e5", "go ponder wtime 2000 btime 2000")
        no_move(session.quiet_for(1.5), "pondering holds the move")
        move, _, _, seconds = best_move(session, 3, "ponderhit")
        expect(seconds < 1.0 and move[1] in "12", f"after a long ponder {move} in {seconds} s")
        # A miss: the front end stops the ponder search, ignores its move and asks again.
        session.send("position startpos moves e2e4 c7c5", "go ponder wtime 2000 btime 2000")
        session.quiet_for(0.5)
        best_move(session, 3, "stop")
        move = best_move(session, 3, "position startpos moves e2e4 e7e6",
                         "go wtime 2000 btime 2000")[0]
        expect(move[1] in "12", f"a move of White: {move}")
        ready(session, "one move per go")
    with uci_session() as session:
        session.send(f"position fen {STALEMATE}", "go ponder wtime 1000 btime 1000")
        no_move(session.quiet_for(0.7), "held while pondering")
        expect_equal(best_move(session, 2, "stop")[0], "0000", "no legal move")


def test_quit_during_a_search_ends_the_engine():
    with InteractiveSession() as session:
        session.send("uci", "position startpos", "go infinite")
        session.quiet_for(1.0)
        started = time.monotonic()
        expect_equal(session.quit(timeout=5), 0, "exit status")
        expect(time.monotonic() - started < 2, "quit acts during the search")


def test_the_console_switches_to_uci_and_help_lists_it():
    result = run(["help", "e4", "uci", "isready"])
    expect(re.search(r"^uci\.+ ?Enters UCI mode", result.stdout, re.M), "help row")
    expect(result.stdout.rstrip().endswith("readyok"), "UCI after console moves")


def test_self_play_on_one_second_plus_ten_milliseconds():
    """Brask against itself, the clocks kept here with the time between go and bestmove: no
    flag fall and no illegal move in a game's first 60 moves."""
    clocks, moves, engines = [1000.0, 1000.0], [], [uci_session(), uci_session()]
    try:
        for ply in range(120):
            side = ply % 2
            move, _, _, seconds = best_move(
                engines[side], 5, "ucinewgame" if ply < 2 else "isready",
                "position startpos" + (" moves " + " ".join(moves) if moves else ""),
                f"go wtime {int(clocks[0])} btime {int(clocks[1])} winc 10 binc 10")
            clocks[side] -= seconds * 1000
            expect(clocks[side] > 0, f"{'White' if side == 0 else 'Black'} flagged at ply {ply}")
            clocks[side] += 10
            if move == "0000":
                break
            expect(COORDINATE.match(move), f"move text {move}")
            moves.append(move)
        # Each engine checks the other's moves when it reads the position.
        for engine in engines:
            ready(engine, "a move after the game")
            expect(not any("Illegal" in line for line in engine.received), "legal moves only")
    finally:
        for engine in engines:
            engine.close()


if __name__ == "__main__":
    run_tests(globals())
