"""What a user sets: the clocks (with the clock report in the log), search settings written and
read back, the personalities, and the developer's aid optimize_piece."""
import re

from engine_session import expect, expect_answers, expect_equal, run, run_tests

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
    expect_answers([(line, None if error is None else f"Error ({error}): {line}")
                    for line, error in [
        ("tc 40 120 0", "last time control must not terminate"),
        ("tc 0 5 0;0 5 0;0 5 0", "too many parameters"), ("level 0 0 0", None),
        ("level 1 1:-5 0", "argument out of bounds"), ("st 0", None), ("st 2147483", None),
        ("st 2147484", "argument out of bounds"), ("sd 0", None), ("sd 2147483647", None),
        ("time 1000", None), ("otim 2000", None), ("sd -5", "argument out of bounds")]])


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
    expect_answers([
        ("personality", "Personality: Brask (0)"), ("force", None),
        ("personality Nurz", None), ("personality", "Personality: Nurz (1000)"),
        ("personality vessimar", None), ("personality", "Personality: Vessimar (-1000)"),
        ("personality 7", None), ("personality", "Personality: Custom (7)"),
        ("personality 5000", None), ("personality", "Personality: Nurz (1000)"),  # clamped
        # A value is shown with the first name it has.
        ("personality Default", None), ("personality", "Personality: Brask (0)"),
        ("personality -15", None), ("personality", "Personality: Jorlund (-15)"),
        ("personality NURZ", "Error (could not parse personality): personality NURZ"),
        ("personality 15x", "Error (could not parse personality): personality 15x")])
    result = run(["force", "setboard " + ROOK_UP, "eval", "personality Nurz", "eval",
                  "personality Vessimar", "eval", "personality Brask", "eval"])
    values = [int(line.split()[1]) for line in result.answers() if line.startswith("eval: ")]
    expect(values[1] != values[2], f"reckless and positional judgements alike: {values}")
    expect_equal(values[3], values[0], "back to the default")
    expect(min(values[1], values[2]) <= values[0] <= max(values[1], values[2]),
           f"the default blend lies between the two halves: {values}")
    answers = run(["force", "personality Random", "personality"]).answers()
    match = re.match(r"^Personality: \w+ \((-?\d+)\)$", answers[-1])
    expect(match and -20 <= int(match.group(1)) <= 20, f"a random personality: {answers[-1]}")


def test_optimize_piece_tries_the_squares_of_the_piece_and_keeps_the_best():
    # The light-squared bishop of f1 tries light squares only (a1 is dark); a pawn only squares
    # in front of its start rank, never its first or last rank.
    for square, allowed in (("b1", lambda file, rank: True),
                            ("f1", lambda file, rank: (file + rank) % 2 == 0),
                            ("e2", lambda file, rank: (file, rank) == (4, 2) or 3 <= rank <= 7)):
        result = run(["force", "setboard " + ROOK_UP, "optimize_piece", square])
        improvements = re.findall(r"New best square: ([a-h][1-8]) \(val=(-?\d+)\)", result.stdout)
        expect(improvements, "at least the first square tried is an improvement")
        for found, _ in improvements:
            expect(allowed(ord(found[0]) - ord("a"), int(found[1])), f"{found} for {square}")
        values = [int(value) for _, value in improvements]
        expect_equal(values, sorted(set(values)), "each improvement is better than the last")
        expect_equal(re.findall(r"Best square: ([a-h][1-8]) \(val=(-?\d+)\)", result.stdout),
                     [improvements[-1]], "the best square is the last improvement")
        # A board is shown with each improvement.
        expect_equal(result.stdout.count("+---+---+---+---+---+---+---+---+") // 9,
                     len(improvements) + 1, "boards")
    expect("Piece:\n" in result.stdout and "Piece:" not in result.log, "the prompt, not logged")
    for word in ("e4", "i9", "", "e2e4"):
        result = run(["force", "setboard " + ROOK_UP, "optimize_piece", word])
        expect("Error: Invalid square\n" in result.stdout and "Best square" not in result.stdout,
               f"refusal of {word!r}")


if __name__ == "__main__":
    run_tests(globals())
