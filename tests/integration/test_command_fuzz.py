"""Random and mutated command lines, of the console and of UCI: the engine must survive them all
and still answer.

Seeds are fixed. `edit` (whose lines follow their own grammar; it gets a session of its own)
and `quit` are left out of the random lines.
"""
import random

from engine_session import PROMPT, expect, expect_equal, run, run_tests

WORDS = [
    ".", "protover", "bk", "ics", "pause", "resume", "variant", "random", "accepted",
    "rejected", "?", "analyze", "black", "computer", "console", "contempt", "display",
    "display_settings", "draw", "easy", "eval", "exit", "force", "fritz", "generate", "go",
    "hard", "hash", "help", "hint", "id", "level", "modify_settings", "name", "new", "next",
    "nopost", "otim", "personality", "ping", "playother", "post", "probe", "rating", "read_fen",
    "read_pgn", "read_settings", "remove", "result", "sd", "setboard", "st", "tb", "tc", "time",
    "undo", "usermove", "verify", "version", "white", "write_fen", "write_pgn", "write_settings",
    "xboard",
]
# optimize_piece reads a square from standard input; its own transcript test drives it.
LEFT_OUT = {"edit", "quit", "optimize_piece"}

ARGUMENTS = [
    "0", "1", "-1", "2", "40", "5", "12", "all", "2147483647", "2147483648", "-2147483648",
    "99999999999999999999", "007", "-0", "+7", "1:30", "0:0", "-1:5", "1.5", "x", "", '""',
    "e4", "e2e4", "Nf3", "O-O", "O-O-O", "e7e8q", "a7a8=N", "1-0", "0-1", "1/2-1/2", "*",
    "{resign}", "{time", "trans", "pawn", "eval", "nalimov", "64M", "0M", "1T", "18446744073709551616K",
    "Nurz", "Vessimar", "Random", "nurz", "enable_ettc=true", "a=1;b=2", "root_distance_multiplier=0",
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "w", "b", "KQkq", "-", "e3", "100", "101",
    "8/8/8/8/8/8/8/8", "4k3/8/8/8/8/8/8/4K3", "7k/5Q2/6K1/8/8/8/8/8", "game.pgn", "pos.fen",
    "settings.txt", "missing.txt", ";", "'", '"', "\t", "##Name",
]
SPECIAL_LINES = [
    "", " ", "\t", "\r", "\x00", "\x1b[A", "\xff\xfe", "'", '"', '"unclosed', "'also unclosed",
    "ping 'a b'", 'ping "a b" c', "x" * 5000, "ping " + "9" * 3000, "setboard " + "p" * 2000,
    " ".join(["undo"] * 300), "tc " + "40 5 0 " * 200 + "0 5 0", "name " + "\u00e9" * 100,
    "result 1/2-1/2 {" + "agree" * 200 + "}",
]
FILES = {
    "game.pgn": '[Event "x"]\n[White "A"]\n\n1. e4 e5 2. Nf3 {c} Nc6 3. Bb5 a6 1-0\n',
    "pos.fen": "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1\n",
    "settings.txt": "root_distance_multiplier=64\nenable_ettc=maybe\n",
}


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
    result = run(input_bytes=b"\n".join([*lines, b"ping 424242"]) + b"\n", files=FILES,
                 timeout=40)
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
