#!/usr/bin/env python3
"""Playing through the console: moves, taking back, prompts, results, sides, names, positions
and game files.

Usage: test_game_commands.py BUILD_DIR
"""
from engine_session import expect, expect_equal, run, run_tests

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
RUY_LOPEZ = "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 4"
GAME_PGN = """[Event "Club match"]
[Site "Berlin"]
[White "Ann"]
[Black "Bob"]
[Result "1-0"]
[Opening "Ruy Lopez"]

1. e4 e5 2. Nf3 {develops} Nc6 ; a comment
3.Bb5 a6 1-0
"""


def fen_after(lines):
    result = run([*lines, "write_fen out.fen"])
    expect_equal(result.status, 0, "exit status")
    return result.files.get("out.fen", "").strip(), result


def test_prompts_count_moves_from_the_start_position():
    result = run(["force", "e4", "e5", "Nf3", "", "setboard 4k3/8/8/8/8/8/4P3/4K3 b - - 0 30",
                  "Kd7", "new"])
    expect_equal(result.prompts(), ["White 1> ", "White 1> ", "Black 1> ", "White 2> ",
                                     "Black 2> ", "Black 2> ", "Black 30> ", "White 31> ",
                                     "White 1> "], "prompts")
    expect(result.stdout.startswith(" \rWhite 1> "), "the prompt's carriage return")
    # The carriage return is for the terminal alone.
    expect("\r" not in result.log and "White 1> Brask received input: force" in result.log,
           "prompt in the log")


def test_moves_in_force_mode_in_every_notation():
    fen, result = fen_after(["force", "e2e4", "e7e5", "Nf3", "nc6", "usermove f1b5",
                             "usermove a6"])
    expect_equal(fen, RUY_LOPEZ, "position after six half-moves")
    expect(result.answers() == [], f"answers to legal moves: {result.answers()}")
    expect("User move: Bb5 (not sent to xboard)\n" in result.log, "user move report in log")
    fen, result = fen_after(["force", "e2e5", "usermove Ke2", "O-O", "e4 e5"])
    expect_equal(result.answers(), ["Illegal move: e2e5", "Illegal move: Ke2",
                                    "Illegal move: O-O", "Error (unrecognized command): e4 e5"],
                 "illegal moves")
    expect_equal(fen, START_FEN, "position after illegal moves")


def test_undo_next_and_their_warnings():
    moves = ["force", "e4", "e5", "Nf3", "Nc6", "Bb5", "a6"]
    fen, result = fen_after([*moves, "undo 8"])
    expect_equal(fen, START_FEN, "undo beyond the start")
    expect_equal(result.answers(),
                 ["could not undo 2 move(s), because start position has been reached"],
                 "undo warning")
    fen, result = fen_after([*moves, "undo all", "next 4", "next 5"])
    expect_equal(fen, RUY_LOPEZ, "next after undo all")
    expect_equal(result.answers(),
                 ["3 move(s) could not be made, because next move buffer is empty"],
                 "next warning")
    fen, result = fen_after([*moves, "undo 3", "undo", "next all", "undo 2", "remove"])
    expect_equal(fen, "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2",
                 "undo, next all, remove")
    # A new move after undo drops the moves put aside.
    fen, result = fen_after([*moves, "undo 2", "d3", "next"])
    expect_equal(result.answers(), ["Error (next move buffer is empty): next"],
                 "next after another move")


def test_remove_takes_back_two_half_moves_for_the_human():
    fen, result = fen_after(["force", "e4", "e5", "d4", "new", "force", "e4", "e5", "d4",
                             "remove", "remove", "remove"])
    expect_equal(fen, "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1",
                 "position after remove")
    expect_equal(result.answers(), ["Error (no moves to remove): remove"] * 2,
                 "remove with one half-move left")


def test_result_ends_the_game_and_new_starts_one():
    fen, result = fen_after(["result 1-0 {White mates}", "e4", "result 0-1", "new", "force",
                             "e4", "e5", "result 1/2-1/2 {Draw by mutal agreement}", "Nf3",
                             "result *"])
    expect_equal(result.answers(), ["Illegal move: e4", "Command ignored (game over)",
                                    "Illegal move: Nf3", "Command ignored (game over)"],
                 "moves and results after the end")
    expect_equal(fen, "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2",
                 "position at the end")
    result = run(["result 1/2-1/2", "write_pgn draw.pgn", "new", "write_pgn new.pgn"])
    expect('[Result "1/2-1/2"]' in result.files["draw.pgn"], "result in the PGN")
    expect('[Result "*"]' in result.files["new.pgn"], "new game has no result")


def test_white_and_black_set_the_side_on_move():
    fen, result = fen_after(["force", "Nf3", "Nc6", "black", "write_fen black.fen", "white"])
    expect_equal(result.files["black.fen"].strip(),
                 "r1bqkbnr/pppppppp/2n5/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 0 1",
                 "position after black")
    expect_equal(fen, "r1bqkbnr/pppppppp/2n5/8/8/5N2/PPPPPPPP/RNBQKB1R w KQkq - 0 1",
                 "position after white")
    # The side that would go off move stands in check, or the en-passant square would not fit.
    fen, result = fen_after(["force", "e4", "white", "setboard 4k3/8/8/8/8/8/8/4R1K1 b - - 0 1",
                             "black", "white"])
    expect_equal(result.answers(), ["Error (cannot change sides): white"] * 2,
                 "refused side changes")
    expect_equal(fen, "4k3/8/8/8/8/8/8/4R1K1 b - - 0 1", "position after the refusals")


def test_names_and_ratings_reach_the_game_and_the_greeting():
    result = run(["name Ann Lee", "rating 2100 1900", "write_pgn one.pgn", "black",
                  "write_pgn two.pgn", "console", "name Bob", "write_pgn three.pgn"])
    expect('[White "Ann Lee"]\n[Black "Brask"]' in result.files["one.pgn"], "name of White")
    # After black the engine plays White, and the human has the new default name.
    expect('[White "Brask"]\n[Black "Ann Lee"]' in result.files["two.pgn"], "names after black")
    # The human still has the default name, so a new one replaces it.
    expect('[Black "Bob"]' in result.files["three.pgn"], "name of the human after name Bob")
    greetings = [line for line in result.answers() if line.endswith("!")]
    expect(len(greetings) == 1 and greetings[0].endswith(", Ann Lee!"),
           f"greeting: {greetings}")


def test_setboard_accepts_legal_positions_only():
    fen, result = fen_after(["force", "setboard 4k3/8/8/8/8/8/8/4K2R w K - 12 40",
                             "setboard 8/8/8/8/8/8/8/8 w - - 0 1", "setboard nonsense",
                             "setboard 4k3/8/8/8/8/8/8/4K2R w K - 101 40"])
    expect_equal(fen, "4k3/8/8/8/8/8/8/4K2R w K - 12 40", "position kept")
    expect_equal(result.answers(),
                 ["Command ignored (Illegal position)",
                  "Command ignored (input inconsistent with FEN standard)",
                  "Command ignored (Illegal position)",
                  "Command ignored (input inconsistent with FEN standard)",
                  "Command ignored (Illegal position)"], "refusals")
    fen, result = fen_after(["force", "setboard 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1", "Qg7",
                             "Kh7"])
    expect_equal(result.answers(), ["game over: 1-0 (White mates)", "Illegal move: Kh7"],
                 "mate on the console")


def test_fen_files_round_trip():
    fen, result = fen_after(["force", "e4", "c5", "Nf3", "write_fen a.fen", "new", "force",
                             "read_fen a.fen"])
    expect_equal(fen, "rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2",
                 "position read back")
    expect_equal(result.files["a.fen"].strip(), fen, "file as written")
    result = run(["force", "read_fen missing.fen", "read_fen bad.fen", "read_fen illegal.fen",
                  "write_fen no/such/dir.fen", "write_fen out.fen"],
                 files={"bad.fen": "rnbqkbnr/pppppppp w KQkq\n",
                        "illegal.fen": "8/8/8/8/8/8/8/8 w - - 0 1\n"})
    expect_equal(result.answers(), ["Error (could not open file): read_fen missing.fen",
                                    "Error (could not read FEN file): read_fen bad.fen",
                                    "Error (Illegal position): read_fen illegal.fen",
                                    "Error (could not open file): write_fen no/such/dir.fen"],
                 "FEN file errors")
    expect_equal(result.files["out.fen"].strip(), START_FEN, "position after the errors")


def test_pgn_files_read_tags_and_keep_moves_for_next():
    result = run(["force", "read_pgn game.pgn", "write_fen start.fen", "next all",
                  "write_fen end.fen", "write_pgn again.pgn"], files={"game.pgn": GAME_PGN})
    expect_equal(result.files["start.fen"].strip(), START_FEN, "a read game waits at its start")
    expect_equal(result.files["end.fen"].strip(), RUY_LOPEZ, "next all plays it")
    expect_equal(result.answers()[:7], ['Event\t"Club match"', 'Site\t"Berlin"',
                                        'Date\t"????.??.??"', 'Round\t"-"', 'White\t"Ann"',
                                        'Black\t"Bob"', 'TimeControl\t"?"'], "tags shown")
    expect_equal(result.files["again.pgn"],
                 '[Event "?"]\n[Site "?"]\n[Date "????.??.??"]\n[Round "-"]\n'
                 '[White "Incognito"]\n[Black "Brask"]\n[Result "*"]\n[TimeControl "?"]\n\n'
                 "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 \n*\n", "PGN as written")
    result = run(["force", "e4", "read_pgn bad.pgn", "read_pgn unended.pgn", "read_pgn none.pgn",
                  "write_fen kept.fen"],
                 files={"bad.pgn": "1. e4 e5 2. Ke3 Nc6 *\n", "unended.pgn": "1. e4 e5\n"})
    expect_equal(result.answers(), ["Error (Illegal move): read_pgn bad.pgn",
                                    "Error (could not read PGN file): read_pgn unended.pgn",
                                    "Error (could not open file): read_pgn none.pgn"],
                 "PGN file errors")
    expect_equal(result.files["kept.fen"].strip(),
                 "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1",
                 "game after failed reads")


def test_end_of_input_quits_like_quit():
    for text in (b"force\ne4", b"force\ne4\nquit\nping 1\n", b""):
        result = run(input_bytes=text)
        expect_equal(result.status, 0, f"exit status for {text!r}")
        expect("pong" not in result.stdout, "a line after quit was read")
    result = run(input_bytes=b"force\ne4")
    expect("Brask received input: e4\nUser move: e4" in result.log,
           "a last line without newline is still a line")


if __name__ == "__main__":
    run_tests(globals())
