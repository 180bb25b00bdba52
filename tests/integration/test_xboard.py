#!/usr/bin/env python3
"""The xboard protocols: installing them, the feature list, terse answers and log-only notes.

Usage: test_xboard.py BUILD_DIR
"""
from engine_session import expect, expect_equal, log_only_reports, run, run_tests

FEATURES = ["analyze=1", "colors=0", "draw=1", "ics=0", 'myname="Brask"', "name=1", "pause=0",
            "ping=1", "playother=1", "resume=0", "reuse=1", "san=1", "setboard=1", "sigint=0",
            "sigterm=0", "time=0", "usermove=1", "variants=normal", "done=1"]
FEATURE_LINES = [f"feature {feature}" for feature in FEATURES]


def test_protover_2_sends_the_features_in_order():
    result = run(["protover 2"])
    expect_equal(result.answers(), FEATURE_LINES, "features")
    expect(result.stdout.endswith("\n" + "\n".join(FEATURE_LINES) + "\n"),
           "each feature on a line of its own")
    expect("Stdin has been set to raw mode (OS: Unix compatible)." in log_only_reports(result.log),
               "raw mode note")
    result = run(["id ##Rival", "protover 2"])
    expect_equal(result.answers()[4], 'feature myname="Rival"', "name from a ## id")
    result = run(["id test build", "force", "personality 7", "protover 2"])
    expect(any(line.startswith('feature myname="') and line.endswith(' Brask test build"')
               for line in result.answers()), f"name with personality: {result.answers()[4:5]}")


def test_other_protocol_versions_are_noted_in_the_log():
    result = run(["protover 1", "ping 1"])
    expect_equal(result.answers(), ["pong 1"], "protover 1 sends no features")
    expect('Unexpected xboard protocol version. Executing command "xboard" instead'
           in log_only_reports(result.log), "log line of protover 1")
    result = run(["protover 3"])
    expect_equal(result.answers(), FEATURE_LINES, "protover 3 falls back to 2")
    expect("Future XBoard protocol version not support, falling back to version 2"
           in log_only_reports(result.log), "log line of protover 3")


def test_xboard_answers_without_prompts_or_sentences():
    result = run(["xboard", "", ".", "?", "random", "force", "e4", "undo 3", "foo",
                  "setboard 8/8/8/8/8/8/8/8 w - - 0 1", "write_fen kings.fen", "hint", "ping 9"])
    # The console's prompt before "xboard" is ended, so that the front end reads whole lines.
    expect_equal(result.stdout, " \rWhite 1> \n"
                 "stat01: 0 0 0 0 0\n"
                 "telluser could not undo 2 move(s), because start position has been reached\n"
                 "Illegal move: foo\n"
                 "telluser Illegal position\n"
                 "pong 9\n", "terminal transcript")
    expect_equal(result.files["kings.fen"].strip(), "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                 "an illegal setboard leaves the two kings")
    reports = log_only_reports(result.log)
    expect("Command ignored (no search running)" in reports, "ignored ? in the log")
    expect("Command ignored (command is not supported)" in reports, "ignored random in the log")


def test_console_and_fritz_switch_back_and_forth():
    result = run(["xboard", "console", "", "fritz", "", "ping 2"])
    answers = result.answers()
    expect_equal(len(answers), 3, f"answers {answers}")
    expect(answers[0].endswith("!"), "the console greets")
    expect_equal(answers[1:], ["OK.", "pong 2"], "console answers, then fritz is silent")


def test_game_end_by_a_move_under_xboard():
    result = run(["xboard", "new", "force", "setboard 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1",
                  "usermove Qg7", "usermove Kh7"])
    # In force mode the front end decides the result itself: the engine says nothing.
    expect_equal(result.answers(), ["Illegal move: Kh7"], "answers after the mate")


if __name__ == "__main__":
    run_tests(globals())
