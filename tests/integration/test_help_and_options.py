#!/usr/bin/env python3
"""The help screen as a pipe sees it (80 columns, no paging), and the command-line options with
their exit status.

Usage: test_help_and_options.py BUILD_DIR
"""
from engine_session import expect, expect_equal, log_only_reports, run, run_tests

COMMAND_COUNT = 62
STARTUP_WORDS = ["contempt", "easy", "eval", "generate", "hash", "help", "id", "level",
                 "modify_settings", "personality", "probe", "protover", "quit", "read_fen",
                 "read_pgn", "read_settings", "sd", "setboard", "st", "tb", "tc", "verify",
                 "version", "xboard"]
# Entries whose descriptions hold line breaks of their own.
FORCED_BREAKS = {"generate", "hash", "personality", "tb", "undo", "verify"}
STARTUP_FAILED = 'Error while parsing startup commands (stopped at "{}")'


def help_entries(lines, width):
    """(word, description lines) of each entry of a help screen, checking its layout."""
    expect_equal(lines[0], "command".ljust(width) + " description", "heading")
    entries = []
    for line in lines[1:]:
        expect(len(line) <= 80, f"line longer than the terminal: {line!r}")
        if line.startswith(" " * (width + 1)):
            expect(line[width + 1] != " ", f"continuation not at column {width + 1}: {line!r}")
            entries[-1][1].append(line[width + 1:])
            continue
        word = line[:width + 1].rstrip(".")
        expect(line[:width + 1] == word.ljust(width + 1, "."), f"dots of {line!r}")
        entries.append((word, [line[width + 1:]]))
    return entries


def check_filled(entries, width):
    """Where a description has no breaks of its own, a line ends only if the next word would
    not have fitted behind it."""
    for word, lines in entries:
        if word in FORCED_BREAKS:
            continue
        for line, following in zip(lines, lines[1:]):
            next_word = following.split(" ")[0]
            expect(width + len(next_word) + len(line) >= 79,
                   f"{word}: {next_word!r} would have fitted behind {line!r}")


def test_command_help_columns_and_order():
    result = run(["help"])
    lines = result.answers()
    entries = help_entries(lines, 16)
    words = [word for word, _ in entries]
    expect_equal(len(words), COMMAND_COUNT, "entries")
    expect_equal(words[:3], ['"."', "?", "accepted"], "first entries")
    expect_equal(words, sorted(words, key=str.lower), "order without regard to case")
    expect("press enter" not in result.stdout, "no paging on a pipe")
    texts = dict(entries)
    expect_equal(lines[lines.index("display_settings.Displays the current values of one or more "
                                   "search settings")][16], ".", "one dot after display_settings")
    expect(any(line == "hint" + "." * 13 + "Makes the engine propose a move" for line in lines),
           "thirteen dots after hint")
    expect_equal(texts["personality"][:2],
                 ["Controls the engine's personality:",
                  "A positive (integer) value will make the engine play more"],
                 "forced line break of personality")
    # A run of blanks counts as one gap.
    expect_equal(texts["next"][1], 'one). Additionally, "next all" will make all moves at once, '
                 "and", "two blanks in the text of next")
    check_filled(entries, 16)
    # The log gets the entries without padding.
    expect("\ncommand description\n" in result.log, "heading in the log")
    expect("\nhint.Makes the engine propose a move\n" in result.log, "entry in the log")


def test_startup_help_and_version_end_the_run():
    result = run(["ping 1"], arguments=["--help", "--quit"])
    expect_equal(result.status, 0, "status of --help")
    entries = help_entries(result.answers(), 15)
    expect_equal([word for word, _ in entries], STARTUP_WORDS, "start-up words")
    expect("pong" not in result.stdout, "--help reads no input")
    result = run(["ping 1"], arguments=["-version"])
    expect_equal(result.status, 0, "status of --version")
    expect(result.stdout.startswith("Brask v2.0.1 ("), f"version: {result.stdout[:40]!r}")
    expect("build: Brask with variable search extensions\n" in result.stdout, "build line")
    expect("Brask v2.0.1" not in result.log, "the version is not logged")
    expect("Executing startup command: version (not sent to xboard)\n" in result.log,
           "start-up command in the log")


def test_bad_options_end_with_status_1():
    cases = [(["--foo"], "foo"), (["-"], "-"), (["--"], "--"), (["---quit"], "-quit"),
             (["--hash="], "hash="), (["--go"], "go"),
             (["--contempt", "-10"], "Error (wrong number of arguments): contempt"),
             (["--st=-1"], "Error (argument out of bounds): st -1"),
             (["--read_fen", "none.fen"], "Error (could not open file): read_fen none.fen"),
             (["--hash", "foo", "1M"], "Error (unknown hashtable type): hash foo 1M")]
    for arguments, stopped_at in cases:
        result = run(["ping 1"], arguments=arguments)
        expect_equal((result.status, result.stdout, result.stderr),
                     (1, STARTUP_FAILED.format(stopped_at) + "\n", ""), f"run with {arguments}")


def test_good_options_run_before_the_main_loop():
    result = run(["contempt", "write_fen out.fen", "sd 3"],
                 arguments=["--contempt=-10", "--setboard=4k3/8/8/8/8/8/4P3/4K3 b - - 0 40",
                            "-sd", "5"])
    expect_equal(result.status, 0, "exit status")
    expect_equal(result.files["out.fen"].strip(), "4k3/8/8/8/8/8/4P3/4K3 b - - 0 40",
                 "position from the command line")
    # Force-mode options leave the engine in force mode, where setboard works.
    expect_equal(result.answers(), ["Error (wrong number of arguments): contempt"], "answers")
    expect_equal(result.prompts()[0], "Black 40> ", "first prompt")
    expect("Executing startup command: contempt -10" in log_only_reports(result.log),
           "start-up command in the log")


def test_options_without_dashes_and_refusals_that_can_be_passed_over():
    result = run(["ping 5"], arguments=["hash", "trans", "64M"])
    expect_equal(result.status, 0, "exit status")
    expect_equal(result.stderr, "Warning: Expecting '-' before option \"hash\"! Continuing...\n",
                 "warning on stderr")
    expect_equal(result.answers(), ["pong 5"], "answers")
    # Tablebases that cannot be opened do not stop start-up; a verification without them does.
    result = run(["ping 6"], arguments=["--tb", "nalimov", "8M", "nowhere"])
    expect_equal(result.status, 0, "exit status")
    answers = result.answers()
    expect_equal(answers.count("Warning: Startup command failed!"), 1, f"warnings: {answers}")
    expect_equal(answers[-1], "pong 6", "answers")
    expect("Execution of the command failed, but it is safe to proceed and ignore this error:\n"
           in result.log, "note in the log")
    result = run(["ping 7"], arguments=["--verify", "all"])
    expect_equal(result.status, 1, "exit status of a failed verification")
    expect("tablebases not loaded" in result.stdout, f"reason: {result.stdout[-300:]}")


def test_quit_and_protocols_at_startup():
    result = run(["ping 1"], arguments=["--quit"])
    expect_equal((result.status, result.stdout), (0, ""), "--quit")
    result = run(["ping 1"], arguments=["--id=##Rival", "--protover", "2"])
    expect_equal(result.status, 0, "protover at start-up")
    expect_equal(result.answers()[4], 'feature myname="Rival"', "features at start-up")
    expect_equal(result.answers()[-1], "pong 1", "main loop after the options")


if __name__ == "__main__":
    run_tests(globals())
