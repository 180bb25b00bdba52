#!/usr/bin/env python3
"""The error texts of the command language, and that a refused command changes nothing.

Usage: test_command_errors.py BUILD_DIR
"""
from engine_session import expect, expect_equal, run, run_tests

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
AFTER_E4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"


def errors_of(lines, prelude=()):
    """The answers to `lines`, each line run after the same `prelude`, one run in all."""
    result = run([*prelude, *lines])
    expect_equal(result.status, 0, "exit status")
    return result.answers()


def check_answers(cases, prelude=()):
    answers = errors_of([line for line, _ in cases], prelude)
    expect_equal(answers, [answer for _, answer in cases], "answers")


def test_token_counts():
    check_answers([
        ("go now", "Error (too many parameters): go now"),
        ("force please", "Error (too many parameters): force please"),
        (". x", "Error (too many parameters): . x"),
        ("undo 1 2", "Error (too many parameters): undo 1 2"),
        ("contempt", "Error (wrong number of arguments): contempt"),
        ("ping", "Error (wrong number of arguments): ping"),
        ("ping 1 2", "Error (wrong number of arguments): ping 1 2"),
        ("level 40 5", "Error (wrong number of arguments): level 40 5"),
        ("rating 1", "Error (wrong number of arguments): rating 1"),
        ("hash trans", "Error (wrong number of arguments): hash trans"),
        ("personality 1 2", "Error (wrong number of arguments): personality 1 2"),
        ("name", "Error (missing parameters): name"),
        ("result", "Error (missing parameters): result"),
        ("setboard", "Error (missing parameters): setboard"),
        ("modify_settings", "Error (missing parameters): modify_settings"),
        ("probe", "Error (missing parameters): probe"),
        ("tb nalimov", "Error (missing parameters): tb nalimov"),
        ("tb nalimov 8M", "Error (missing parameters): tb nalimov 8M"),
    ])


def test_argument_values():
    check_answers([
        ("contempt x", "Error (integer argument expected): contempt x"),
        ("sd 1.5", "Error (integer argument expected): sd 1.5"),
        ("time +7", "Error (integer argument expected): time +7"),
        ("otim 2147483648", "Error (integer argument expected): otim 2147483648"),
        ("undo many", "Error (integer argument expected): undo many"),
        ("protover two", "Error (integer argument expected): protover two"),
        # st is refused by the parser, sd by the command: the words are the same.
        ("st -1", "Error (argument out of bounds): st -1"),
        ("sd -1", "Error (argument out of bounds): sd -1"),
        ("rating -1 0", "Error (argument out of bounds): rating -1 0"),
        ("rating 0 -1", "Error (argument out of bounds): rating 0 -1"),
        ("level 40 -5 0", "Error (argument out of bounds): level 40 -5 0"),
        ("result 2-0", "Error (invalid argument(s)): result 2-0"),
    ])


def test_unknown_words_and_bad_lines():
    check_answers([
        ("", "OK."),
        ("   \t ", "OK."),
        ("ping 7", "pong 7"),
        ("ping 'a b'", "pong a b"),
        ("ping 007", "pong 007"),
        ("foo", "Illegal move: foo"),
        ("E2E5", "Illegal move: E2E5"),
        ("foo bar", "Error (unrecognized command): foo bar"),
        ("GO", "Illegal move: GO"),
        ('"unclosed', 'Error (could not tokenize the input string): "unclosed'),
        ("ping 'x", "Error (could not tokenize the input string): ping 'x"),
        ("bk", "Error (command is not supported): bk"),
        ("variant suicide", "Error (command is not supported): variant suicide"),
        ("random", "Command ignored (command is not supported)"),
        ("accepted draw", "Command ignored (command is not supported)"),
        ("?", "Command ignored (no search running)"),
        (".", "Command ignored (no search running)"),
        ("exit", "Error (must be in analyze mode): exit"),
    ])


def test_commands_that_need_force_mode():
    # At start the engine plays Black: one-side mode, not force mode.
    words = ["contempt 5", "edit", "modify_settings enable_ettc=true", "personality 3",
             "read_fen x.fen", "read_pgn x.pgn", "read_settings x.txt", "setboard " + START_FEN,
             "hash trans 64M", "tb nalimov 8M tb", "generate all", "verify all"]
    check_answers([(word, f"Error (must be in force mode): {word}") for word in words])
    # After go the engine plays the side on move; the move record is checked before the mode.
    check_answers([("undo", "Error (must be in force mode): undo"),
                   ("next all", "Error (must be in force mode): next all")],
                  prelude=["force", "e4", "e5", "undo", "go", "force", "go"])
    check_answers([("undo", "Error (no move to undo): undo"),
                   ("next", "Error (next move buffer is empty): next")])


def test_refusals_of_missing_machinery_check_arguments_first():
    check_answers([
        ("hash foo 64M", "Error (unknown hashtable type): hash foo 64M"),
        ("hash trans 0M", "Error (could not parse new size): hash trans 0M"),
        ("hash pawn 64Q", "Error (could not parse new size): hash pawn 64Q"),
        ("tb gaviota 8M tb", "Error (could not parse type): tb gaviota 8M tb"),
        ("tb nalimov -8M tb", "Error (could not parse new size): tb nalimov -8M tb"),
        ("probe nonsense", "Error (input inconsistent with FEN standard): probe nonsense"),
        ("probe 8/8/8/8/8/8/8/8 w - - 0 1",
         "Error (Illegal position): probe 8/8/8/8/8/8/8/8 w - - 0 1"),
        ("personality Nobody", "Error (could not parse personality): personality Nobody"),
    ], prelude=["force"])


def test_refusals_leave_the_game_as_it_was():
    refused = ["hash eval 0M", "hash eval 1Q", "tb nalimov 8M here", "probe 8/8 w - - 0 1",
               "generate foo", "verify generic[2]", "e5e4", "Nf3", "undo 0",
               "undo -3", "next 1", "remove", "setboard 8/8/8/8/8/8/8/8 w - - 0 1", "level 0 0 -1",
               "tc 40 5 0", "playother now", "draw"]
    result = run(["force", "e4", *refused, "write_fen after.fen", "display_settings enable_ettc"])
    expect_equal(result.status, 0, "exit status")
    expect_equal(result.files.get("after.fen"), AFTER_E4 + "\n", "position after the refusals")
    answers = result.answers()
    expect_equal(answers[-1], "enable_ettc=false", "settings after the refusals")
    # The tablebase error carries the reason on a line of its own.
    expect(all(answer.startswith(("Error", "Illegal move", "Command ignored", "Reason:"))
               for answer in answers[:-1]), f"unexpected answers: {answers[:-1]}")
    expect_equal(sum(answer.startswith(("Error", "Illegal move", "Command ignored"))
                     for answer in answers), len(refused), "one refusal per line")
    # Anything refused in the main loop is never a crash or a warning of start-up.
    expect("Startup" not in result.stdout, "start-up wording in the main loop")
    expect("Brask received input: e5e4\nIllegal move: e5e4\n" in result.log, "input in the log")
    missing = [answer for answer in answers if answer + "\n" not in result.log]
    expect(not missing, f"answers not in the log: {missing}")


if __name__ == "__main__":
    run_tests(globals())
