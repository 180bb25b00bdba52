"""The developer tools: brask-perft's counts and refusals, brask-bench's node counts, and the
readings of the match and tactics drivers, which need no engine. A driver's verdict is only as
honest as its reading: the cases are the game endings easy to misjudge and the move texts that
fool a careless reader."""
import importlib.machinery
import importlib.util
import os
import re
import subprocess

from engine_session import expect, expect_equal, run_tests, tool_path

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -"


def script(name):
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", name)
    loader = importlib.machinery.SourceFileLoader(name, path)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


def perft(*arguments):
    completed = subprocess.run([tool_path("brask-perft"), *arguments], capture_output=True,
                               text=True, timeout=60)
    return completed.returncode, completed.stdout.splitlines(), completed.stderr


def test_perft_counts_divide_time_and_refusals():
    for arguments, count in [(["3"], "8902"), (["0"], "1"), (["2", KIWIPETE], "2039"),
                             (["2", *KIWIPETE.split()], "2039")]:
        status, lines, _ = perft(*arguments)
        expect_equal((status, lines[-1:]), (0, [count]), f"perft {arguments}")
    status, lines, _ = perft("2", "--divide")
    expect_equal((status, len(lines), lines[-1]), (0, 21, "400"), "divide lines")
    expect(lines[0] == "g1h3: 20" and "e2e4: 20" in lines, f"divide texts {lines[:3]}")
    status, lines, _ = perft("--time", "1")
    expect(status == 0 and len(lines) == 2 and "nodes per second" in lines[0]
           and lines[1] == "20", f"time: {lines}")
    for bad in (["abc"], ["-1"], ["999"], [], ["3", "--frobnicate"], ["2", "not a fen"],
                ["2", START + " extra"], ["2", "8/8/8/8/8/8/8/8 w - - 0 1"]):
        status, lines, stderr = perft(*bad)
        expect(status > 0 and lines == [] and stderr.startswith("brask-perft: "),
               f"refusal of {bad}: {status} {lines} {stderr!r}")


def test_bench_counts_the_same_nodes_on_every_run():
    totals = []
    for _ in range(2):
        completed = subprocess.run([tool_path("brask-bench"), "4"], capture_output=True,
                                   text=True, timeout=120)
        total = re.search(r"^total nodes: (\d+)$", completed.stdout, re.M)
        expect(completed.returncode == 0 and total, f"no total in {completed.stdout[-300:]!r}")
        totals.append(int(total.group(1)))
    expect(totals[0] > 0 and totals[1] == totals[0], f"total nodes of two runs: {totals}")


def test_match_clocks_games_and_blame():
    match = script("match")
    for text, options in [("40/60", ["-tc", "1", "-mps", "40"]),
                          ("40/10", ["-tc", "0:10", "-mps", "40"]),
                          ("10+0.1", ["-tc", "0:10", "-inc", "0.1"]),
                          ("90+0", ["-tc", "1:30", "-inc", "0"])]:
        expect_equal(match.xboard_clock(*match.parse_clock(text)), options, f"clock {text}")
    for bad in ["40", "40/", "+1", "10+x", "1:30", "0.5+0.1", "40/7.5"]:
        try:
            match.parse_clock(bad)
        except Exception:  # the type error of argparse
            continue
        raise AssertionError(f"clock {bad} accepted")
    games = match.parse_games(
        '[Event "x"]\n[White "brask"]\n[Black "fairymax"]\n[Result "0-1"]\n\n1. f3 {+0.1/5 0.2} '
        "e5 {-0.2/6} 2. g4 {+0.0/4} Qh4# {+327.66/1}\n{Black mates} 0-1\n\n"
        '[Event "x"]\n[White "fairymax"]\n[Black "brask"]\n[Result "1/2-1/2"]\n\n'
        "1. e4 e5 2. Nf3 Nc6 {Draw by 3-fold repetition} 1/2-1/2\n")
    expect_equal([(g["white"], g["result"], g["plies"], g["comment"]) for g in games],
                 [("brask", "0-1", 4, "Black mates"),
                  ("fairymax", "1/2-1/2", 4, "Draw by 3-fold repetition")], "games of a PGN")
    for white, result, comment, crashed, expected in [  # expected: ending, brask's points, fault
            ("brask", "1-0", "Xboard adjudication: Checkmate", set(), ("mate", 1.0, None)),
            ("x", "1-0", "Black resigns", set(), ("resign", 0.0, None)),
            ("brask", "1/2-1/2", "Draw agreed", set(), ("agreement", 0.5, None)),
            ("x", "1/2-1/2", "Xboard adjudication: Insufficient mating material", set(),
             ("claim", .5, None)),
            ("x", "1/2-1/2", "Stalemate", set(), ("claim", 0.5, None)),
            ("brask", "0-1", "Black wins on time", set(), ("time forfeit", 0.0, "first")),
            ("x", "0-1", "Black wins on time", set(), ("time forfeit", 1.0, "second")),
            ("brask", "1-0", "Xboard: Forfeit due to invalid move: e2e5", set(),
             ("illegal move", 1.0, "second")),
            ("brask", "1-0", "White wins on time", {"x"}, ("crash", 1.0, "second")),
            ("x", "1-0", "White wins on time", {"brask"}, ("crash", 0.0, "first")),
            ("brask", "*", "White's engine exited", set(), ("crash", None, "first")),
            ("x", "*", "White's engine exited", set(), ("crash", None, "second"))]:
        game = {"white": white, "black": "brask" if white == "x" else "x", "result": result,
                "comment": comment, "plies": 10, "crashed": crashed}
        expect_equal(match.judge(game, "brask"), expected, f"{white} {result} {{{comment}}}")


KNIGHTS = "4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1"
ROOKS_ON_FILE = "4k3/R7/8/8/8/8/8/R3K3 w - - 0 1"
EN_PASSANT = "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1"
PROMOTION = "1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1"
BLACK_CASTLES = "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1"


def test_tactics_moves_and_suites():
    tactics = script("tactics")
    for fen, san, expected in [  # no pawn, own pawn there, blocked, ambiguous: None
            (START, "e4", "e2e4"), (START, "e3", "e2e3"), (START, "Nf3", "g1f3"),
            (START, "Nc3+", "b1c3"), (START, "e5", None), (START, "Nd2", None),
            (START, "Bc4", None), (START, "Zz9", None), (KNIGHTS, "Nd2", None),
            (KNIGHTS, "Nbd2", "b1d2"), (KNIGHTS, "Nfd2", "f1d2"), (KNIGHTS, "Nbc3", "b1c3"),
            (ROOKS_ON_FILE, "R1a4", "a1a4"), (ROOKS_ON_FILE, "R7a4", "a7a4"),
            # Nd2 is pinned: "Nf3" is the g1 knight.
            ("4k3/8/8/8/1b6/8/3N4/4K1N1 w - - 0 1", "Nf3", "g1f3"),
            (EN_PASSANT, "dxe6", "d5e6"), (EN_PASSANT, "d6", "d5d6"),
            (PROMOTION, "a8=Q", "a7a8q"), (PROMOTION, "axb8=N+", "a7b8n"),
            (PROMOTION, "axb8Q", "a7b8q"), (BLACK_CASTLES, "O-O", "e8g8"),
            (BLACK_CASTLES, "O-O-O", "e8c8"), (BLACK_CASTLES, "Rh1+", "h8h1"),
            (BLACK_CASTLES, "Re8", None),  # the king stands there
            ("4k3/8/8/8/8/8/1P6/B3K1B1 w - - 0 1", "Bc5", "g1c5")]:  # only g1 sees c5
        expect_equal(tactics.san_to_coordinates(fen, san), expected, f"{san} in {fen}")
    # Engines answer in either notation; both must land on the same squares.
    for answer, expected in [("e2e4", "e2e4"), ("a7a8Q", "a7a8q"), ("e7e8=n", "e7e8n"),
                             ("Nf3", None), ("O-O", None)]:
        expect_equal(tactics.normal_coordinates(answer), expected, f"coordinates of {answer}")
    for line, expected in [
            ("1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - ; bm Qd1 + ; id BK.01 ",
             ("1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1",
              {"bm": ["Qd1+"], "id": ["BK.01"]})),
            ('2b1k2r/8/8/8/8/8/8/4K3 b k - bm O-O Kf8; am Kd8; id "sbd.003";',
             ("2b1k2r/8/8/8/8/8/8/4K3 b k - 0 1",
              {"bm": ["O-O", "Kf8"], "am": ["Kd8"], "id": ["sbd.003"]})),
            ("", None), ("# a comment line", None)]:
        expect_equal(tactics.parse_epd(line), expected, f"EPD {line!r}")


if __name__ == "__main__":
    run_tests(globals())
