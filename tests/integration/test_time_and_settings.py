#!/usr/bin/env python3
"""Clock commands with the clock report in the log, and search settings written and read back.

Usage: test_time_and_settings.py BUILD_DIR
"""
import re

from engine_session import expect, expect_equal, run, run_tests

SETTINGS_COUNT = 173


def clock_reports(log):
    """Each clock report as (active, passive, white is engine, black is engine)."""
    pattern = re.compile(
        r"time \(active side\):\nmoves_left: (-?\d+)\nmilliseconds_left: (-?\d+)\n"
        r"out_of_time: (true|false)\ntime \(passive side\):\nmoves_left: (-?\d+)\n"
        r"milliseconds_left: (-?\d+)\nout_of_time: (true|false)\n"
        r"player1 played by engine: (true|false)\nplayer2 played by engine: (true|false)\n"
        r" \(not sent to xboard\)\n")
    return [((int(m[0]), int(m[1]), m[2]), (int(m[3]), int(m[4]), m[5]), m[6], m[7])
            for m in pattern.findall(log)]


def test_time_and_otim_set_the_engines_and_the_opponents_clock():
    result = run(["time 1000", "otim 2000", "level 0 5 12", "black", "time 500", "otim -1"])
    expect_equal(clock_reports(result.log), [
        # White is the human on move, the engine plays Black.
        ((40, 300000, "false"), (40, 10000, "false"), "false", "true"),
        ((40, 20000, "false"), (40, 10000, "false"), "false", "true"),
        # After black the engine has White, and Black's clock is the active one.
        ((-1, 300000, "false"), (-1, 5000, "false"), "true", "false"),
        ((-1, -10, "true"), (-1, 5000, "false"), "true", "false"),
    ], "clock reports")
    expect_equal(result.answers(), [], "time commands are silent")


def test_moves_in_force_mode_are_booked_on_the_clocks():
    result = run(["force", "e4", "time 700"])
    # Black is on move and still the engine's side; White's move counted on White's clock.
    expect_equal(clock_reports(result.log),
                 [((40, 7000, "false"), (39, 300000, "false"), "false", "true")],
                 "clocks after one move")


def test_level_and_tc_reset_the_clocks_they_set():
    result = run(["level 40 0 5", "time 1", "tc 40 120 0 20 60 0 0 30 5;0 1:30 0", "otim 1",
                  "tc 40 120 0", "tc 40 120", "tc 1 2 3;", "tc 0 5 0;0 5 0;0 5 0", "tc a 5 0",
                  "level 0 0 0", "level 1 -1 0", "level 1 1:-5 0"])
    expect_equal(result.answers(), [
        "Error (last time control must not terminate): tc 40 120 0",
        "Error (missing parameters): tc 40 120",
        "Error (missing parameters): tc 1 2 3;",
        "Error (too many parameters): tc 0 5 0;0 5 0;0 5 0",
        "Error (integer argument expected): tc a 5 0",
        "Error (argument out of bounds): level 1 -1 0",
        "Error (argument out of bounds): level 1 1:-5 0",
    ], "refused time controls")
    reports = clock_reports(result.log)
    expect_equal(reports[0][0], (40, 10000, "false"), "level with T 0 is ten seconds")
    expect_equal(reports[1][:2], ((40, 10, "false"), (-1, 90000, "false")),
                 "otim on White's first stage, Black's own list")


def test_st_and_sd_limits():
    result = run(["st 0", "st 2147483", "st 2147484", "sd 0", "sd 2147483647", "sd -5"])
    expect_equal(result.answers(), ["Error (argument out of bounds): st 2147484",
                                    "Error (argument out of bounds): sd -5"], "limits")


def test_settings_written_read_back_and_changed():
    result = run(["write_settings s.txt", "force", "modify_settings enable_ettc=true; "
                  "capture_move_sorting_bonus=1 2 3 4 5 6", "write_settings changed.txt",
                  "read_settings s.txt", "display_settings enable_ettc;capture_move_sorting_bonus",
                  "read_settings changed.txt",
                  "display_settings enable_ettc capture_move_sorting_bonus"])
    original = result.files["s.txt"].splitlines()
    expect_equal(len(original), SETTINGS_COUNT, "lines of a settings file")
    expect_equal(original[0], "root_distance_multiplier=64", "first variable")
    expect("capture_move_sorting_bonus=0 4 5 5 6 10" in original, "array default")
    expect_equal(result.answers(), ["enable_ettc=false", "capture_move_sorting_bonus=0 4 5 5 6 10",
                                    "enable_ettc=true", "capture_move_sorting_bonus=1 2 3 4 5 6"],
                 "settings after reading back")
    expect_equal(len(result.files["changed.txt"].splitlines()), SETTINGS_COUNT, "changed file")


def test_settings_errors_change_nothing():
    result = run(["force", "write_settings s.txt", "modify_settings enable_ettc=yes",
                  "modify_settings enable_ettc=true;no_such=1", "modify_settings enable_ettc",
                  "modify_settings root_distance_multiplier=0",
                  "modify_settings enable_ettc=true;capture_move_sorting_bonus=1 2",
                  "modify_settings enable_ettc=true;min_ply_for_null_move=\"5",
                  "read_settings missing.txt",
                  "write_settings no/dir/s.txt", "display_settings no_such", "new",
                  "read_settings s.txt", "display_settings enable_ettc root_distance_multiplier"])
    expect_equal(result.answers(), [
        "Error (could not parse new value: could not parse boolean: yes): "
        "modify_settings enable_ettc=yes",
        "Error (unknown variable: no_such): modify_settings enable_ettc=true;no_such=1",
        "Error (seperator missing (';')): modify_settings enable_ettc",
        "Error (could not parse new value: value out of bounds): "
        "modify_settings root_distance_multiplier=0",
        "Error (could not parse new value: invalid size): "
        "modify_settings enable_ettc=true;capture_move_sorting_bonus=1 2",
        "Error (could not tokenize the input string): "
        "modify_settings enable_ettc=true;min_ply_for_null_move=\"5",
        "Error (could not open file: missing.txt): read_settings missing.txt",
        "Error (could not write search settings file could not open file: no/dir/s.txt): "
        "write_settings no/dir/s.txt",
        "Error (unknown variable: no_such): display_settings no_such",
        "Error (must be in force mode): read_settings s.txt",
        "enable_ettc=false", "root_distance_multiplier=64"], "settings errors")


def settings_file_with(change):
    result = run(["write_settings s.txt"])
    return change(result.files["s.txt"].splitlines(keepends=True))


def test_settings_files_with_missing_misspelled_and_bad_lines():
    lines = settings_file_with(lambda lines: lines)
    missing = "".join(lines[:1] + lines[2:])
    misspelled = "".join(lines[:1] + ["enable_search_extension=true\n"] + lines[2:])
    out_of_range = "".join(lines[:2] + ["min_depth_for_search_extensions_if_searching_pv_move"
                                        "=99999999\n"] + lines[3:])
    result = run(["force", "modify_settings enable_ettc=true", "read_settings missing.txt",
                  "display_settings enable_ettc", "read_settings misspelled.txt",
                  "read_settings bad.txt", "read_settings empty.txt"],
                 files={"missing.txt": missing, "misspelled.txt": misspelled,
                        "bad.txt": out_of_range, "empty.txt": ""})
    answers = result.answers()
    warning = "Warning: Initialized missing variable <{}> with default value ('{}')"
    expect_equal(answers[:4], [
        "Expected variable: enable_search_extensions;",
        "Received variable: min_depth_for_search_extensions_if_searching_pv_move",
        warning.format("enable_search_extensions", "true"), "enable_ettc=false"],
        "one missing variable")
    # A wrong name makes every variable behind it take its present value.
    expect_equal(answers[4:6], ["Expected variable: enable_search_extensions;",
                                "Received variable: enable_search_extension"], "misspelled")
    warnings = [line for line in answers if line.startswith("Warning:")]
    expect_equal(len(warnings), 1 + (SETTINGS_COUNT - 1) + SETTINGS_COUNT, "warnings")
    expect("Error (file contained invalid data:" in answers, "error of an out-of-range value")
    expect("Parse error in line #3 (value out of bounds)): read_settings bad.txt" in answers,
           "line of the out-of-range value")
    expect("Received variable: invalid" in answers, "an empty file names no variable")


if __name__ == "__main__":
    run_tests(globals())
