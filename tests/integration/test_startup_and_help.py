"""Start-up: the numbered log, the command-line options with their exit status, and the help
screens as a pipe sees them (80 columns, no paging)."""
import os
import re
import tempfile

from engine_session import expect, expect_equal, log_only_reports, run, run_tests

PROMPT = " \rWhite 1> "
BANNER = re.compile(r"Brask logfile created at: \w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}\n\n"
                    r"Bitboard algorithms\n- popcount:         Table lookup PopCount\n"
                    r"- popcount_sparse:  Table lookup PopCount\n"
                    r"- find_lowest_bit:  FindLowestBitViaFindHighestBit\n"
                    r"- find_highest_bit: Table lookup \(not inlined\)\n"
                    r"- find_next_bit:    FindHighestBit\n\n")
STARTUP_WORDS = ["contempt", "easy", "eval", "generate", "hash", "help", "id", "level",
                 "modify_settings", "personality", "probe", "protover", "quit", "read_fen",
                 "read_pgn", "read_settings", "sd", "setboard", "st", "tb", "tc", "verify",
                 "version", "xboard"]


def test_empty_input_leaves_banner_and_a_numbered_log_per_run():
    with tempfile.TemporaryDirectory() as directory:
        for _ in range(2):
            result = run(directory=directory)
            # The console greets nobody: the first prompt is all, and the end of input quits.
            expect_equal((result.status, result.stdout, result.stderr), (0, PROMPT, ""), "run")
            expect(BANNER.match(result.log), f"the log's first blocks: {result.log[:300]!r}")
            expect("Brask received input" not in result.log, "the end of input logged as a line")
        expect_equal(sorted(os.listdir(directory)), ["logfile.000", "logfile.001"], "files")


def help_words(lines, width):
    """The commands of a help screen; its layout is the unit tests', its contents are here."""
    expect_equal(lines[0], "command".ljust(width) + " description", "heading")
    expect(all(len(line) <= 80 for line in lines), "a line longer than the terminal")
    return [line[:width + 1].rstrip(".") for line in lines[1:] if not line.startswith(" ")]


def test_command_help_contents_and_order():
    result = run(["help"])
    lines = result.answers()
    words = help_words(lines, 16)
    expect_equal(len(words), 62, "entries")
    expect_equal(words[:3], ['"."', "?", "accepted"], "first entries")
    expect_equal(words, sorted(words, key=str.lower), "order without regard to case")
    expect("press enter" not in result.stdout, "no paging on a pipe")
    margin = " " * 17
    for line in ["display_settings.Displays the current values of one or more search settings",
                 "hint" + "." * 13 + "Makes the engine propose a move",
                 # A line break of the description's own, and a run of blanks as one gap.
                 "personality......Controls the engine's personality:",
                 margin + "A positive (integer) value will make the engine play more",
                 margin + 'one). Additionally, "next all" will make all moves at once, and']:
        expect(line in lines, f"missing {line!r}")
    # The log gets the entries without padding.
    expect("\ncommand description\n" in result.log, "heading in the log")
    expect("\nhint.Makes the engine propose a move\n" in result.log, "entry in the log")


def test_startup_help_and_version_end_the_run():
    result = run(["ping 1"], arguments=["--help", "--quit"])
    expect_equal(result.status, 0, "status of --help")
    expect_equal(help_words(result.answers(), 15), STARTUP_WORDS,
                 "start-up words")
    expect("pong" not in result.stdout, "--help reads no input")
    result = run(["ping 1"], arguments=["-version"])
    expect_equal(result.status, 0, "status of --version")
    expect(result.stdout.startswith("Brask v2.0.1 ("), f"version: {result.stdout[:40]!r}")
    expect("build: Brask with variable search extensions\n" in result.stdout, "build line")
    expect("Brask v2.0.1" not in result.log, "the version is not logged")
    expect("Executing startup command: version (not sent to xboard)\n" in result.log,
           "start-up command in the log")
    expect_equal((run(["ping 1"], arguments=["--quit"]).stdout), "", "--quit")


def test_bad_options_end_with_status_1():
    for arguments, stopped_at in [
            (["--foo"], "foo"), (["-"], "-"), (["--"], "--"), (["---quit"], "-quit"),
            (["--hash="], "hash="), (["--go"], "go"),
            (["--contempt", "-10"], "Error (wrong number of arguments): contempt"),
            (["--st=-1"], "Error (argument out of bounds): st -1"),
            (["--read_fen", "none.fen"], "Error (could not open file): read_fen none.fen"),
            (["--verify", "all"], "Error (tablebases not loaded): verify all")]:
        result = run(["ping 1"], arguments=arguments)
        expect_equal((result.status, result.stdout.split("\n")[-2:], result.stderr),
                     (1, [f'Error while parsing startup commands (stopped at "{stopped_at}")', ""],
                      ""), f"run with {arguments}")


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
    result = run(["ping 1"], arguments=["--id=##Rival", "--protover", "2"])
    expect_equal((result.answers()[4], result.answers()[-1]), ('feature myname="Rival"', "pong 1"),
                 "features at start-up, then the main loop")


def test_options_without_dashes_and_refusals_that_can_be_passed_over():
    result = run(["ping 5"], arguments=["hash", "trans", "64M"])
    expect_equal((result.status, result.stderr, result.answers()),
                 (0, "Warning: Expecting '-' before option \"hash\"! Continuing...\n", ["pong 5"]),
                 "an option without dashes")
    # Tablebases that cannot be opened do not stop start-up.
    result = run(["ping 6"], arguments=["--tb", "nalimov", "8M", "nowhere"])
    expect_equal(result.status, 0, "exit status")
    answers = result.answers()
    expect_equal(answers.count("Warning: Startup command failed!"), 1, f"warnings: {answers}")
    expect_equal(answers[-1], "pong 6", "answers")
    expect("Execution of the command failed, but it is safe to proceed and ignore this error:\n"
           in result.log, "note in the log")


if __name__ == "__main__":
    run_tests(globals())
