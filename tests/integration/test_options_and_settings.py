"""What a user sets, and how: the command-line options with their exit status, the numbered log,
the help screens as a pipe sees them (80 columns, no paging), the clocks (with the clock report in
the log), search settings written and read back, the personalities, and the developer's aid
optimize_piece."""
import os
import re
import tempfile

from engine_session import (PROMPT, expect, expect_answers, expect_equal, log_only_reports,
                            run, run_tests)

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
            expect_equal((result.status, result.stdout, result.stderr), (0, " \rWhite 1> ", ""),
                         "run")
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
    expect_equal(help_words(result.answers(), 15), STARTUP_WORDS, "start-up words")
    expect("pong" not in result.stdout, "--help reads no input")
    result = run(["ping 1"], arguments=["-version"])
    expect(result.status == 0 and result.stdout.startswith("Brask v2.0.1 ("), result.stdout[:40])
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
    expect_equal(PROMPT.findall(result.stdout)[0], " \rBlack 40> ", "first prompt")
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
    expect_equal((result.status, result.answers().count("Warning: Startup command failed!"),
                  result.answers()[-1]), (0, 1, "pong 6"), "status, warning and main loop")
    expect("Execution of the command failed, but it is safe to proceed and ignore this error:\n"
           in result.log, "note in the log")



SETTINGS_COUNT = 173
CLOCK_REPORT = re.compile(
    r"time \(active side\):\nmoves_left: (-?\d+)\nmilliseconds_left: (-?\d+)\n"
    r"out_of_time: (true|false)\ntime \(passive side\):\nmoves_left: (-?\d+)\n"
    r"milliseconds_left: (-?\d+)\nout_of_time: (true|false)\n"
    r"player1 played by engine: (true|false)\nplayer2 played by engine: (true|false)\n"
    r" \(not sent to xboard\)\n")
# A rook up with everything else at home: the positional and the reckless judgement differ.
ROOK_UP = "1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQk - 0 1"


def clock_reports(lines):
    """Each clock report: active moves, ms, flag; passive moves, ms, flag; White, Black engine."""
    return [" ".join(report) for report in CLOCK_REPORT.findall(run(lines).log)]


def test_clock_commands():
    expect_equal(clock_reports(["time 1000", "otim 2000", "level 0 5 12", "black", "time 500",
                                "otim -1"]), [
        # White is the human on move, the engine plays Black.
        "40 300000 false 40 10000 false false true", "40 20000 false 40 10000 false false true",
        # After black the engine has White, and Black's clock is the active one.
        "-1 300000 false -1 5000 false true false", "-1 -10 true -1 5000 false true false"],
        "time, otim and level")
    # White's move in force mode counted on White's clock; Black is on move, the engine's side.
    expect_equal(clock_reports(["force", "e4", "time 700"]),
                 ["40 7000 false 39 300000 false false true"], "a move booked")
    expect_equal(clock_reports(["level 40 0 5", "time 1", "tc 40 120 0 20 60 0 0 30 5;0 1:30 0",
                                "otim 1"]),
                 ["40 10000 false 40 10 false false true",
                  "40 10 false -1 90000 false false true"],
                 "level with T 0 is ten seconds; otim on White's first stage, Black's own list")
    # The texts of refused time controls are the parser's unit tests'; here they reach the user.
    expect_answers([("tc 40 120 0", "Error (last time control must not terminate): tc 40 120 0"),
                    ("level 0 0 0", None), ("st 2147483", None), ("sd 2147483647", None),
                    ("st 2147484", "Error (argument out of bounds): st 2147484")])


def test_settings_written_read_back_and_changed():
    # The reader's reports on damaged files are the unit tests'; here they reach the user.
    result = run(["write_settings s.txt", "force", "modify_settings enable_ettc=true; "
                  "capture_move_sorting_bonus=1 2 3 4 5 6", "write_settings changed.txt",
                  "read_settings s.txt", "display_settings enable_ettc;capture_move_sorting_bonus",
                  "read_settings changed.txt",
                  "display_settings enable_ettc capture_move_sorting_bonus",
                  "read_settings missing.txt", "display_settings enable_ettc",
                  "read_settings bad.txt"], files={"missing.txt": "root_distance_multiplier=64\n",
                                                   "bad.txt": "root_distance_multiplier=0\n"})
    expect_equal(len(result.files["changed.txt"].splitlines()), SETTINGS_COUNT, "changed file")
    answers = result.answers()
    warning = "Warning: Initialized missing variable <{}> with default value ('{}')"
    expect_equal(answers[:7], ["enable_ettc=false", "capture_move_sorting_bonus=0 4 5 5 6 10",
                               "enable_ettc=true", "capture_move_sorting_bonus=1 2 3 4 5 6",
                               "Expected variable: enable_search_extensions;",
                               "Received variable: invalid",
                               warning.format("enable_search_extensions", "true")],
                 "settings read back, then a file with one variable")
    # Every variable missing behind the first keeps its present value.
    expect_equal(len(answers), 6 + SETTINGS_COUNT - 1 + 3, f"answers: {answers[-3:]}")
    expect_equal(answers[-3:], ["enable_ettc=true", "Error (file contained invalid data:",
                                "Parse error in line #1 (value out of bounds)): read_settings "
                                "bad.txt"], "a value out of range")


def test_settings_errors_change_nothing():
    expect_answers([(line, f"Error ({error}): {line}") for line, error in [
        ("modify_settings enable_ettc=yes", "could not parse new value: could not parse boolean: "
                                            "yes"),
        ("modify_settings enable_ettc=true;no_such=1", "unknown variable: no_such"),
        ("modify_settings enable_ettc", "seperator missing (';')"),
        ("modify_settings root_distance_multiplier=0", "could not parse new value: value out of "
                                                       "bounds"),
        ("modify_settings enable_ettc=true;capture_move_sorting_bonus=1 2",
         "could not parse new value: invalid size"),
        ('modify_settings enable_ettc=true;min_ply_for_null_move="5',
         "could not tokenize the input string"),
        ("read_settings missing.txt", "could not open file: missing.txt"),
        ("write_settings no/dir/s.txt", "could not write search settings file could not open "
                                        "file: no/dir/s.txt"),
        ("display_settings no_such", "unknown variable: no_such")]] + [
        ("new", None),
        ("read_settings s.txt", "Error (must be in force mode): read_settings s.txt"),
        ("display_settings enable_ettc root_distance_multiplier",
         ["enable_ettc=false", "root_distance_multiplier=64"])],
        prelude=["force", "write_settings s.txt"])


def test_personality_names_values_and_refusals():
    # Names, values and the random one are the unit tests'; here the command shows and clamps.
    expect_answers([
        ("personality", "Personality: Brask (0)"), ("force", None),
        ("personality vessimar", None), ("personality", "Personality: Vessimar (-1000)"),
        ("personality 7", None), ("personality", "Personality: Custom (7)"),
        ("personality 5000", None), ("personality", "Personality: Nurz (1000)"),
        ("personality NURZ", "Error (could not parse personality): personality NURZ")])
    result = run(["force", "setboard " + ROOK_UP, "eval", "personality Nurz", "eval",
                  "personality Vessimar", "eval", "personality Brask", "eval"])
    values = [int(line.split()[1]) for line in result.answers() if line.startswith("eval: ")]
    expect(values[1] != values[2], f"reckless and positional judgements alike: {values}")
    expect_equal(values[3], values[0], "back to the default")
    expect(min(values[1], values[2]) <= values[0] <= max(values[1], values[2]),
           f"the default blend lies between the two halves: {values}")


def test_optimize_piece_tries_the_squares_of_the_piece_and_keeps_the_best():
    # The light-squared bishop of f1 tries light squares only (a1 is dark); a pawn only squares
    # in front of its start rank, never its first or last rank.
    for square, allowed in (("b1", lambda file, rank: True),
                            ("f1", lambda file, rank: (file + rank) % 2 == 0),
                            ("e2", lambda file, rank: (file, rank) == (4, 2) or 3 <= rank <= 7)):
        result = run(["force", "setboard " + ROOK_UP, "optimize_piece", square])
        improvements = re.findall(r"New best square: ([a-h][1-8]) \(val=(-?\d+)\)", result.stdout)
        expect(improvements and all(allowed(ord(found[0]) - ord("a"), int(found[1]))
                                    for found, _ in improvements), f"{improvements} for {square}")
        values = [int(value) for _, value in improvements]
        expect_equal(values, sorted(set(values)), "each improvement is better than the last")
        expect_equal(re.findall(r"Best square: ([a-h][1-8]) \(val=(-?\d+)\)", result.stdout),
                     [improvements[-1]], "the best square is the last improvement")
        expect_equal(result.stdout.count("+---+---+---+---+---+---+---+---+") // 9,
                     len(improvements) + 1, "boards")
    expect("Piece:\n" in result.stdout and "Piece:" not in result.log, "the prompt, not logged")
    for word in ("e4", "i9", "", "e2e4"):
        result = run(["force", "setboard " + ROOK_UP, "optimize_piece", word])
        expect("Error: Invalid square\n" in result.stdout and "Best square" not in result.stdout,
               f"refusal of {word!r}")



if __name__ == "__main__":
    run_tests(globals())
