#!/usr/bin/env python3
"""Edit mode on the console and under xboard: its own prompt, commands and way out.

Usage: test_edit_mode.py BUILD_DIR
"""
from engine_session import expect, expect_equal, run, run_tests

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"


def edit(lines, protocol=()):
    result = run([*protocol, "force", "edit", *lines, "write_fen out.fen"])
    expect_equal(result.status, 0, "exit status")
    return result.files.get("out.fen", "").strip(), result


def test_pieces_colour_and_side():
    fen, result = edit(["#", "Ke1", "Rh1", "ra1", "c", "kE8", "Pd7", "XA1", "s", "."])
    expect_equal(fen, "4k3/3p4/8/8/8/8/8/4K2R b K - 0 1", "position set up")
    expect_equal(result.stdout.count("edit mode> "), 10, "one prompt per line")
    # Every line that changes the board shows it, with its details.
    expect_equal(result.stdout.count("castle possibilities:"), 8, "board displays")


def test_cancel_and_restore_keep_the_old_position():
    fen, result = edit(["#", "Ke1", "cancel"])
    expect_equal(fen, START_FEN, "after cancel")
    expect("Edit mode aborted" in result.answers(), "cancel is reported")
    fen, _ = edit(["Xe2", "Xd2", "restore", "Xa2", "."])
    expect_equal(fen, "rnbqkbnr/pppppppp/8/8/8/8/1PPPPPPP/RNBQKBNR w KQkq - 0 1",
                 "restore, then one change")


def test_invalid_positions_and_bad_lines_on_the_console():
    fen, result = edit(["#", "verify", ".", "foo", "K", "Ke9", "Ki1", "Ke1 Ke8", '"Ke1',
                        "Ke1", "c", "Ke8", "verify", "."])
    expect_equal(fen, "4k3/8/8/8/8/8/8/4K3 w - - 0 1", "kings placed after the errors")
    expect_equal([line for line in result.answers() if "position" in line or "Error" in line],
                 ["Current position is invalid", "Command ignored (Illegal position)",
                  "Error (unknown command): foo", "Error (unknown command): K",
                  "Error (unknown command): Ke9", "Error (unknown command): Ki1",
                  "Error (unknown command): Ke1 Ke8",
                  'Error (could not tokenize the input string): "Ke1',
                  "Current position is valid"], "edit answers")


def test_edit_help_and_quit():
    result = run(["force", "edit", "help", "quit", "ping 1"])
    expect_equal(result.status, 0, "quit in edit mode ends the run")
    expect("pong" not in result.stdout, "lines after quit were read")
    help_lines = result.answers()
    expect_equal(help_lines[:3], ["command    description",
                                  '"."........Leaves edit mode and confirms the changes that '
                                  "were made", "#..........Clears the board"], "edit help")
    expect_equal(len(help_lines), 11, "heading and ten entries")


def test_edit_under_xboard_is_silent_and_gives_kings_for_a_bad_position():
    fen, result = edit(["#", "Pe4", "."], protocol=["xboard"])
    expect_equal(fen, "4k3/8/8/8/8/8/8/4K3 w - - 0 1", "kings alone after an illegal position")
    expect_equal(result.answers(), ["telluser Illegal position"], "xboard answers")
    expect("edit mode>" not in result.stdout, "no edit prompt under xboard")
    fen, result = edit(["cancel"], protocol=["xboard"])
    expect_equal((fen, result.answers()), (START_FEN, []), "cancel under xboard")


if __name__ == "__main__":
    run_tests(globals())
