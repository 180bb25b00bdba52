#!/usr/bin/env python3
"""The match driver's reading of xboard's games, without xboard or any engine: the score is only
as honest as the blame for each ending, so the cases are the endings that are easy to misjudge."""
import importlib.machinery
import importlib.util
import os
import sys

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "match")
loader = importlib.machinery.SourceFileLoader("match", SCRIPT)
loader_spec = importlib.util.spec_from_loader("match", loader)
match = importlib.util.module_from_spec(loader_spec)
loader.exec_module(match)

failures = []
checks = 0


def check(condition, what):
    global checks
    checks += 1
    if not condition:
        failures.append(what)


for text, options in [("40/60", ["-tc", "1", "-mps", "40"]),
                      ("40/10", ["-tc", "0:10", "-mps", "40"]),
                      ("10+0.1", ["-tc", "0:10", "-inc", "0.1"]),
                      ("90+0", ["-tc", "1:30", "-inc", "0"])]:
    got = match.xboard_clock(*match.parse_clock(text))
    check(got == options, f"clock {text}: {got}")
for bad in ["40", "40/", "+1", "10+x", "1:30", "0.5+0.1", "40/7.5"]:
    try:
        match.parse_clock(bad)
        check(False, f"clock {bad} accepted")
    except Exception:
        check(True, "")

PGN = """[Event "Computer Chess Game"]
[White "brask"]
[Black "fairymax"]
[Result "0-1"]

1. f3 {+0.1/5 0.2} e5 {-0.2/6} 2. g4 {+0.0/4} Qh4# {+327.66/1}
{Black mates} 0-1

[Event "Computer Chess Game"]
[White "fairymax"]
[Black "brask"]
[Result "1/2-1/2"]

1. e4 e5 2. Nf3 Nc6 {Draw by 3-fold repetition} 1/2-1/2
"""
games = match.parse_games(PGN)
check([(g["white"], g["result"], g["plies"], g["comment"]) for g in games]
      == [("brask", "0-1", 4, "Black mates"), ("fairymax", "1/2-1/2", 4,
                                               "Draw by 3-fold repetition")],
      f"games of a PGN: {games}")

JUDGED = [  # (white, result, comment, crashed, ending, points of brask, at fault)
    ("brask", "1-0", "Xboard adjudication: Checkmate", set(), "mate", 1.0, None),
    ("x", "1-0", "Black resigns", set(), "resign", 0.0, None),
    ("brask", "1/2-1/2", "Draw agreed", set(), "agreement", 0.5, None),
    ("x", "1/2-1/2", "Xboard adjudication: Insufficient mating material", set(), "claim", .5,
     None),
    ("x", "1/2-1/2", "Stalemate", set(), "claim", 0.5, None),
    ("brask", "0-1", "Black wins on time", set(), "time forfeit", 0.0, "first"),
    ("x", "0-1", "Black wins on time", set(), "time forfeit", 1.0, "second"),
    ("brask", "1-0", "Xboard: Forfeit due to invalid move: e2e5", set(), "illegal move", 1.0,
     "second"),
    ("brask", "1-0", "White wins on time", {"x"}, "crash", 1.0, "second"),
    ("x", "1-0", "White wins on time", {"brask"}, "crash", 0.0, "first"),
    ("brask", "*", "White's engine exited", set(), "crash", None, "first"),
    ("x", "*", "White's engine exited", set(), "crash", None, "second"),
]
for white, result, comment, crashed, ending, points, at_fault in JUDGED:
    game = {"white": white, "black": "brask" if white == "x" else "x", "result": result,
            "comment": comment, "plies": 10, "crashed": crashed}
    got = match.judge(game, "brask")
    check(got == (ending, points, at_fault), f"{white} {result} {{{comment}}}: {got}")

DEBUG = """GameEnds(0, (null), 2)
4942 >first : result 0-1 {Black wins on time}
GameEnds(27, Black wins on time, 4)
GameEnds(27, Black wins on time, 2)
GameEnds(29, xboard exit, 2)
"""
game = match.game_from_debug(DEBUG, "x", "brask")
check((game["result"], game["comment"], game["plies"]) == ("0-1", "Black wins on time", 0),
      f"a game xboard didn't save: {game}")
game = match.game_from_debug("GameEnds(29, xboard exit, 2)\n", "x", "brask")
check(game["result"] == "*", f"a game that never ended: {game}")

for failure in failures:
    print("FAIL:", failure)
print(f"{checks - len(failures)} passed, {len(failures)} failed")
sys.exit(1 if failures else 0)
