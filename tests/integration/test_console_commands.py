"""The command language at the console and under xboard: moves, taking back, sides, results,
files, edit mode, and the error texts, with a refused command changing nothing; and random and
mutated lines (seeds fixed), of the console and of UCI, that the engine must survive."""
import random
import re

from engine_session import (PROMPT, expect, expect_answers, expect_equal, expect_transcripts,
                            log_only_reports, run, run_tests)

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
AFTER_E4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"
AFTER_E5 = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2"
RUY_LOPEZ = "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 4"
KINGS = "4k3/8/8/8/8/8/8/4K3 w - - 0 1"
MOVES = ["force", "e4", "e5", "Nf3", "Nc6", "Bb5", "a6"]
FILES = {"bad.fen": "rnbqkbnr/pppppppp w KQkq\n", "illegal.fen": "8/8/8/8/8/8/8/8 w - - 0 1\n",
         "pos.fen": "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1\n",
         "settings.txt": "root_distance_multiplier=64\nenable_ettc=maybe\n",
         "bad.pgn": "1. e4 e5 2. Ke3 Nc6 *\n", "unended.pgn": "1. e4 e5\n",
         "game.pgn": '[Event "Club match"]\n[Site "Berlin"]\n[White "Ann"]\n[Black "Bob"]\n'
                     '[Result "1-0"]\n[Opening "Ruy Lopez"]\n\n'
                     "1. e4 e5 2. Nf3 {develops} Nc6 ; a comment\n3.Bb5 a6 1-0\n"}
TAGS = ['Event\t"Club match"', 'Site\t"Berlin"', 'Date\t"????.??.??"', 'Round\t"-"',
        'White\t"Ann"', 'Black\t"Bob"', 'TimeControl\t"?"']
GAME_OVER = "Command ignored (game over)"

TRANSCRIPTS = [  # (lines, answers, position after them)
    (["force", "e2e4", "e7e5", "Nf3", "nc6", "usermove f1b5", "usermove a6"], [], RUY_LOPEZ),
    (["force", "e2e5", "usermove Ke2", "O-O", "e4 e5"],
     ["Illegal move: e2e5", "Illegal move: Ke2", "Illegal move: O-O",
      "Error (unrecognized command): e4 e5"], START_FEN),
    ([*MOVES, "undo 8"], ["could not undo 2 move(s), because start position has been reached"],
     START_FEN),
    ([*MOVES, "undo all", "next 4", "next 5"],
     ["3 move(s) could not be made, because next move buffer is empty"], RUY_LOPEZ),
    ([*MOVES, "undo 3", "undo", "next all", "undo 2", "remove"], [], AFTER_E5),
    # A new move after undo drops the moves put aside.
    ([*MOVES, "undo 2", "d3", "next"], ["Error (next move buffer is empty): next"], None),
    (["force", "e4", "e5", "d4", "new", "force", "e4", "e5", "d4", "remove", "remove", "remove"],
     ["Error (no moves to remove): remove"] * 2, AFTER_E4),
    (["result 1-0 {White mates}", "e4", "result 0-1", "new", "force", "e4", "e5",
      "result 1/2-1/2 {Draw by mutal agreement}", "Nf3", "result *"],
     ["Illegal move: e4", GAME_OVER, "Illegal move: Nf3", GAME_OVER], AFTER_E5),
    (["force", "Nf3", "Nc6", "black"], [],
     "r1bqkbnr/pppppppp/2n5/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 0 1"),
    (["force", "Nf3", "Nc6", "black", "white"], [],
     "r1bqkbnr/pppppppp/2n5/8/8/5N2/PPPPPPPP/RNBQKB1R w KQkq - 0 1"),
    # The side that would go off move stands in check, or the en-passant square would not fit.
    (["force", "e4", "white", "setboard 4k3/8/8/8/8/8/8/4R1K1 b - - 0 1", "black", "white"],
     ["Error (cannot change sides): white"] * 2, "4k3/8/8/8/8/8/8/4R1K1 b - - 0 1"),
    (["force", "setboard 4k3/8/8/8/8/8/8/4K2R w K - 12 40", "setboard 8/8/8/8/8/8/8/8 w - - 0 1",
      "setboard nonsense", "setboard 4k3/8/8/8/8/8/8/4K2R w K - 101 40"],
     ["Command ignored (Illegal position)",
      "Command ignored (input inconsistent with FEN standard)",
      "Command ignored (Illegal position)",
      "Command ignored (input inconsistent with FEN standard)",
      "Command ignored (Illegal position)"], "4k3/8/8/8/8/8/8/4K2R w K - 12 40"),
    (["force", "setboard 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1", "Qg7", "Kh7"],
     ["game over: 1-0 (White mates)", "Illegal move: Kh7"], None),
    (["force", "e4", "c5", "Nf3", "write_fen a.fen", "new", "force", "read_fen a.fen"], [],
     "rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2"),
    (["force", "read_fen missing.fen", "read_fen bad.fen", "read_fen illegal.fen",
      "write_fen no/such/dir.fen"],
     ["Error (could not open file): read_fen missing.fen",
      "Error (could not read FEN file): read_fen bad.fen",
      "Error (Illegal position): read_fen illegal.fen",
      "Error (could not open file): write_fen no/such/dir.fen"], START_FEN),
    # A game read waits at its start, for next.
    (["force", "read_pgn game.pgn"], TAGS, START_FEN),
    (["force", "e4", "read_pgn bad.pgn", "read_pgn unended.pgn", "read_pgn none.pgn"],
     ["Error (Illegal move): read_pgn bad.pgn",
      "Error (could not read PGN file): read_pgn unended.pgn",
      "Error (could not open file): read_pgn none.pgn"], AFTER_E4),
    # Edit mode: its own commands, and an invalid position kept until it is made valid.
    (["force", "edit", "#", "Ke1", "Rh1", "ra1", "c", "kE8", "Pd7", "XA1", "s", "."], [],
     "4k3/3p4/8/8/8/8/8/4K2R b K - 0 1"),
    (["force", "edit", "#", "Ke1", "cancel"], ["Edit mode aborted"], START_FEN),
    (["force", "edit", "Xe2", "Xd2", "restore", "Xa2", "."], [],
     "rnbqkbnr/pppppppp/8/8/8/8/1PPPPPPP/RNBQKBNR w KQkq - 0 1"),
    (["force", "edit", "#", "verify", ".", "foo", "K", "Ke9", "Ki1", "Ke1 Ke8", '"Ke1', "Ke1",
      "c", "Ke8", "verify", "."],
     ["Current position is invalid", "Command ignored (Illegal position)",
      "Error (unknown command): foo", "Error (unknown command): K",
      "Error (unknown command): Ke9", "Error (unknown command): Ki1",
      "Error (unknown command): Ke1 Ke8", 'Error (could not tokenize the input string): "Ke1',
      "Current position is valid"], KINGS),
    # Under xboard edit mode is silent, and an invalid position leaves the two kings.
    (["xboard", "force", "edit", "#", "Pe4", "."], ["telluser Illegal position"], KINGS),
    (["xboard", "force", "edit", "cancel"], [], START_FEN),
    # In force mode the front end decides the result itself: the engine says nothing.
    (["xboard", "force", "setboard 7k/5Q2/6K1/8/8/8/8/8 w - - 0 1", "Qg7", "Kh7"],
     ["Illegal move: Kh7"], None)]


def test_transcripts():
    expect_transcripts(TRANSCRIPTS, files=FILES)


def test_prompts_count_moves_and_the_log_records_them():
    result = run(["force", "e4", "e5", "Nf3", "", "setboard 4k3/8/8/8/8/8/4P3/4K3 b - - 0 30",
                  "Kd7", "new", "force", "edit", "Ke1", "."])
    # Each prompt begins with a blank and a carriage return, for the terminal.
    expect_equal(PROMPT.findall(result.stdout), [f" \r{prompt}> " for prompt in [
        "White 1", "White 1", "Black 1", "White 2", "Black 2", "Black 2", "Black 30", "White 31",
        "White 1", "White 1", "White 1"]], "prompts")
    expect_equal(result.stdout.count("edit mode> "), 2, "one edit prompt per line")
    # The carriage return is for the terminal alone.
    expect("\r" not in result.log and "White 1> Brask received input: force" in result.log,
           "prompt in the log")
    expect("User move: Nf3 (not sent to xboard)\n" in result.log, "user move report in log")


def test_names_results_and_the_game_written():
    result = run(["name Ann Lee", "rating 2100 1900", "write_pgn one.pgn", "black",
                  "write_pgn two.pgn", "console", "name Bob", "write_pgn three.pgn",
                  "result 1/2-1/2", "write_pgn draw.pgn", "new", "force", "read_pgn game.pgn",
                  "next all", "write_pgn again.pgn"], files=FILES)
    # After black the engine plays White; the human, with the name still the default, is Bob.
    expect('[White "Ann Lee"]\n[Black "Brask"]' in result.files["one.pgn"]
           and '[White "Brask"]\n[Black "Ann Lee"]' in result.files["two.pgn"]
           and '[Black "Bob"]' in result.files["three.pgn"]
           and '[Result "1/2-1/2"]' in result.files["draw.pgn"], f"{result.files}")
    expect_equal([line[-10:] for line in result.answers() if line.endswith("!")],
                 [", Ann Lee!"], "one greeting")
    expect_equal(result.files["again.pgn"],
                 '[Event "?"]\n[Site "?"]\n[Date "????.??.??"]\n[Round "-"]\n'
                 '[White "Bob"]\n[Black "Brask"]\n[Result "*"]\n[TimeControl "?"]\n\n'
                 "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 \n*\n", "PGN as written")
    # Edit mode's help, its entries being the unit tests'; quit ends the run there too.
    result = run(["force", "edit", "help", "quit", "ping 1"])
    expect_equal((result.answers()[1], len(result.answers()), result.status), (
        '"."........Leaves edit mode and confirms the changes that were made', 11, 0), "edit help")


def test_end_of_input_quits_like_quit():
    for text in (b"force\ne4", b"force\ne4\nquit\nping 1\n", b""):
        result = run(input_bytes=text)
        expect_equal(result.status, 0, f"exit status for {text!r}")
        expect("pong" not in result.stdout, "a line after quit was read")
    # Every line is logged as received, and a last line without newline is still a line.
    logged = re.findall(r"Brask received input: (.*)\n", run(input_bytes=b"force\r\n\r\ne4").log)
    expect_equal(logged, ["force", "", "e4"], "logged input")


ERRORS = [(line, f"Error ({error}): {line}") for error, lines in [
    ("too many parameters", ["go now", "force please", ". x", "undo 1 2"]),
    ("wrong number of arguments", ["contempt", "ping", "ping 1 2", "level 40 5", "rating 1",
                                   "hash trans", "personality 1 2"]),
    ("missing parameters", ["name", "result", "setboard", "modify_settings", "probe",
                            "tb nalimov", "tb nalimov 8M"]),
    ("integer argument expected", ["contempt x", "sd 1.5", "time +7", "otim 2147483648",
                                   "undo many", "protover two"]),
    # st is refused by the parser, sd by the command: the words are the same.
    ("argument out of bounds", ["st -1", "sd -1", "rating -1 0", "rating 0 -1", "level 40 -5 0"]),
    ("invalid argument(s)", ["result 2-0"]),
    ("unrecognized command", ["foo bar"]),
    ("could not tokenize the input string", ['"unclosed', "ping 'x"]),
    ("command is not supported", ["bk", "variant suicide"]),
    ("must be in analyze mode", ["exit"]),
    ("no move to undo", ["undo"]), ("next move buffer is empty", ["next"]),
    # At start the engine plays Black: one-side mode, not force mode.
    ("must be in force mode", ["contempt 5", "edit", "modify_settings enable_ettc=true",
                               "personality 3", "read_fen x.fen", "read_pgn x.pgn",
                               "read_settings x.txt", "setboard " + START_FEN, "hash trans 64M",
                               "tb nalimov 8M tb", "generate all", "verify all"])]
    for line in lines] + [
    ("", "OK."), ("   \t ", "OK."), ("ping 7", "pong 7"), ("ping 'a b'", "pong a b"),
    ("ping 007", "pong 007"), ("foo", "Illegal move: foo"), ("E2E5", "Illegal move: E2E5"),
    ("GO", "Illegal move: GO"), ("random", "Command ignored (command is not supported)"),
    ("accepted draw", "Command ignored (command is not supported)"),
    ("?", "Command ignored (no search running)"), (".", "Command ignored (no search running)"),
    ("force", None)] + [(line, f"Error ({error}): {line}") for line, error in [
    # Refusals of machinery that is missing check the arguments first.
    ("hash foo 64M", "unknown hashtable type"), ("hash trans 0M", "could not parse new size"),
    ("hash pawn 64Q", "could not parse new size"), ("tb gaviota 8M tb", "could not parse type"),
    ("tb nalimov -8M tb", "could not parse new size"),
    ("probe nonsense", "input inconsistent with FEN standard"),
    ("probe 8/8/8/8/8/8/8/8 w - - 0 1", "Illegal position"),
    ("personality Nobody", "could not parse personality")]] + [
    ("tb nalimov 8M /nowhere", ["Error (Could not initialize Nalimov tablebases.",
                                "Reason: Could not open tablebases. Is the path correct?): "
                                "tb nalimov 8M /nowhere"])]


def test_error_texts():
    expect_answers(ERRORS)
    # After go the engine plays the side on move; the move record is checked before the mode.
    expect_answers([("undo", "Error (must be in force mode): undo"),
                    ("next all", "Error (must be in force mode): next all")],
                   prelude=["force", "e4", "e5", "undo", "go", "force", "go"])


def test_refusals_leave_the_game_as_it_was():
    refused = ["hash eval 0M", "hash eval 1Q", "tb nalimov 8M here", "probe 8/8 w - - 0 1",
               "generate foo", "verify generic[2]", "e5e4", "Nf3", "undo 0",
               "undo -3", "next 1", "remove", "setboard 8/8/8/8/8/8/8/8 w - - 0 1", "level 0 0 -1",
               "tc 40 5 0", "playother now", "draw"]
    result = run(["force", "e4", *refused, "write_fen after.fen", "display_settings enable_ettc"])
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


FEATURES = [f"feature {feature}" for feature in [
    "analyze=1", "colors=0", "draw=1", "ics=0", 'myname="Brask"', "name=1", "pause=0", "ping=1",
    "playother=1", "resume=0", "reuse=1", "san=1", "setboard=1", "sigint=0", "sigterm=0",
    "time=0", "usermove=1", "variants=normal", "done=1"]]


def test_xboard_features_and_protocol_versions():
    # Version 1 sends no features; version 3 falls back to 2.
    result = run(["protover 1", "ping 1", "protover 3"])
    expect_equal(result.answers(), ["pong 1", *FEATURES], "answers")
    expect(result.stdout.endswith("\n" + "\n".join(FEATURES) + "\n"), "features, one a line")
    reports = log_only_reports(result.log)
    expect('Unexpected xboard protocol version. Executing command "xboard" instead' in reports
           and "Future XBoard protocol version not support, falling back to version 2" in reports
           and "Stdin has been set to raw mode (OS: Unix compatible)." in reports, f"{reports}")
    # A ## id names the engine alone; another is added to the name with the personality.
    answers = run(["id ##Rival", "protover 2", "id test build", "force", "personality 7",
                   "protover 2"]).answers()
    expect(answers[4] == 'feature myname="Rival"' and answers[23].startswith('feature myname="')
           and answers[23].endswith(' Brask test build"'), f"names: {answers[4]} {answers[23]}")


def test_xboard_answers_without_prompts_or_sentences():
    result = run(["xboard", "", ".", "?", "random", "force", "e4", "undo 3", "foo",
                  "setboard 8/8/8/8/8/8/8/8 w - - 0 1", "write_fen kings.fen", "edit", "Ke2",
                  ".", "hint", "console", "", "fritz", "", "ping 9"])
    # The console's prompt before "xboard" is ended, so that the front end reads whole lines;
    # the console greets and prompts, then fritz is silent again.
    lines = result.stdout.split("\n")
    expect_equal(lines[:6] + lines[7:], [
        " \rWhite 1> ", "stat01: 0 0 0 0 0",
        "telluser could not undo 2 move(s), because start position has been reached",
        "Illegal move: foo", "telluser Illegal position", "telluser Illegal position",
        " \rWhite 1> OK.", " \rWhite 1> ", "pong 9", ""], "terminal transcript")
    expect(lines[6].endswith("!"), f"greeting: {lines[6]!r}")
    expect_equal(result.files["kings.fen"].strip(), KINGS, "an illegal setboard leaves the kings")
    reports = log_only_reports(result.log)
    expect("Command ignored (no search running)" in reports, "ignored ? in the log")
    expect("Command ignored (command is not supported)" in reports, "ignored random in the log")


WORDS = [
 ".", "protover", "bk", "ics", "pause", "resume", "variant", "random", "accepted", "rejected",
 "?", "analyze", "black", "computer", "console", "contempt", "display", "display_settings",
 "draw", "easy", "eval", "exit", "force", "fritz", "generate", "go", "hard", "hash", "help",
 "hint", "id", "level", "modify_settings", "name", "new", "next", "nopost", "otim", "personality",
 "ping", "playother", "post", "probe", "rating", "read_fen", "read_pgn", "read_settings",
 "remove", "result", "sd", "setboard", "st", "tb", "tc", "time", "undo", "usermove", "verify",
 "version", "white", "write_fen", "write_pgn", "write_settings", "xboard"]
# Left out of the random lines: edit, whose lines follow a grammar of their own (they get a
# session of their own), quit, and optimize_piece, which reads a square from standard input.
LEFT_OUT = {"edit", "quit", "optimize_piece"}

ARGUMENTS = [
    "0", "1", "-1", "2", "40", "5", "12", "all", "2147483647", "2147483648", "-2147483648",
    "99999999999999999999", "007", "-0", "+7", "1:30", "0:0", "-1:5", "1.5", "x", "", '""', "e4",
    "e2e4", "Nf3", "O-O", "O-O-O", "e7e8q", "a7a8=N", "1-0", "0-1", "1/2-1/2", "*", "{resign}",
    "{time", "trans", "pawn", "eval", "nalimov", "64M", "0M", "1T", "18446744073709551616K",
    "Nurz", "Vessimar", "Random", "nurz", "enable_ettc=true", "a=1;b=2",
    "root_distance_multiplier=0", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "w", "b", "KQkq",
    "-", "e3", "100", "101", "8/8/8/8/8/8/8/8", "4k3/8/8/8/8/8/8/4K3", "7k/5Q2/6K1/8/8/8/8/8",
    "game.pgn", "pos.fen", "settings.txt", "missing.txt", ";", "'", '"', "\t", "##Name"]
SPECIAL_LINES = [
    "", " ", "\t", "\r", "\x00", "\x1b[A", "\xff\xfe", "'", '"', '"unclosed', "'also unclosed",
    "ping 'a b'", 'ping "a b" c', "x" * 5000, "ping " + "9" * 3000, "setboard " + "p" * 2000,
    " ".join(["undo"] * 300), "tc " + "40 5 0 " * 200 + "0 5 0", "name " + "\u00e9" * 100,
    "result 1/2-1/2 {" + "agree" * 200 + "}"]


def random_line(rng):
    word = rng.choice(WORDS)
    arguments = [rng.choice(ARGUMENTS) for _ in range(rng.choice([0, 0, 1, 1, 2, 3, 4, 7]))]
    return " ".join([word, *arguments])


def mutated(rng, line):
    text = bytearray(line.encode("utf-8"))
    for _ in range(rng.randint(1, 4)):
        position = rng.randint(0, len(text))
        action = rng.randrange(4)
        if action == 0:
            text[position:position] = bytes([rng.randrange(256)])
        elif action == 1 and text:
            del text[min(position, len(text) - 1)]
        elif action == 2:
            text[position:position] = rng.choice([b'"', b"'", b" ", b"\t", b"\r", b"9" * 12])
        else:
            text[position:position] = text[:rng.randint(0, len(text))]
    return bytes(text).replace(b"\n", b" ")


def harmless(line):
    """Keeps file commands in the working directory and out of the lines left out."""
    text = line.decode("utf-8", "replace")
    return (text.split() or [""])[0].strip("\"'") not in LEFT_OUT and not (
        ("read_" in text or "write_" in text) and ("/" in text or ".." in text))


def fuzz_lines(seed, count):
    rng, lines = random.Random(seed), []
    while len(lines) < count:
        choice = rng.random()
        if choice < 0.5:
            line = random_line(rng).encode("utf-8")
        elif choice < 0.9:
            line = mutated(rng, rng.choice([random_line(rng), *SPECIAL_LINES]))
        else:
            line = rng.choice(SPECIAL_LINES).encode("utf-8", "surrogateescape")
        lines += [line] if harmless(line) else []
    return lines


def check_survives(lines, label):
    result = run(input_bytes=b"\n".join([*lines, b"ping 424242"]) + b"\n", files=FILES, timeout=40)
    expect_equal(result.status, 0, f"exit status after {label}")
    expect(PROMPT.sub("", result.stdout).rstrip().endswith("pong 424242"),
           f"no final pong after {label}: ...{result.stdout[-300:]!r}")
    expect("CHECKED_ASSERT" not in result.stdout, f"assertion after {label}")


def test_random_and_mutated_lines():
    for seed in range(8):
        check_survives(fuzz_lines(seed, 1500), f"seed {seed}")


def test_fuzzed_edit_session():
    rng = random.Random(7)
    edit_words = ["#", "c", "s", "restore", "verify", "display", "help", ".", "Ke1", "ke8",
                  "Pa8", "Xe1", "qd4", "Rh1", "ra1", "Zz9", "K", "Ke9", "Ki1", "Kee1", "'", ""]
    lines = [b"force"]
    for _ in range(3):
        lines.append(b"edit")
        for _ in range(60):
            line = " ".join(rng.choice(edit_words) for _ in range(rng.choice([1, 1, 1, 2])))
            lines.append(mutated(rng, line) if rng.random() < 0.2 else line.encode())
        # On the console an invalid "." stays in edit mode; cancel always leaves it.
        lines.append(b"cancel")
    check_survives(lines, "edit sessions")


def test_random_uci_lines():
    """Lines put together at random from the words of the protocol, good and bad: the engine
    answers every one and is still ready at the end."""
    generator = random.Random(16)
    words = ["uci", "isready", "ucinewgame", "stop", "ponderhit", "debug", "register", "go",
             "position", "setoption", "startpos", "fen", "moves", "name", "value", "Hash",
             "Clear", "Contempt", "enable_ettc", "true", "e2e4", "e7e5", "g1f3", "a7a8q", "e1g1",
             "depth", "1", "2", "-3", "x", "movetime", "20", "nodes", "wtime", "btime", "winc",
             "movestogo", "0", "searchmoves", "ponder", "mate", "8/8/8/8/8/8/8/8",
             "k7/8/8/8/8/8/8/K7", "w", "b", "-", "\t", '"', "'"]
    # Half the lines are good ones, so that searches start and are broken off in every way.
    good = ["position startpos moves e2e4 e7e5", "position fen k7/8/8/8/8/8/8/K6R w - - 0 1",
            "go depth 2", "go movetime 20", "go nodes 300", "go ponder wtime 200 btime 200",
            "go infinite", "go wtime 100 btime 100 winc 5 binc 5", "stop", "ponderhit",
            "setoption name Hash value 8", "ucinewgame", "isready"]
    lines = ["uci", *(generator.choice(good) if generator.random() < 0.5 else
                      " ".join(generator.choice(words) for _ in range(generator.randint(1, 7)))
                      for _ in range(300)), "stop", "isready"]
    result = run(lines, timeout=60)
    expect_equal((result.status, result.stderr, result.stdout.rstrip()[-7:]), (0, "", "readyok"),
                 "status, standard error and readiness at the end")


if __name__ == "__main__":
    run_tests(globals())
