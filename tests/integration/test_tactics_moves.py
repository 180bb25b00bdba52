#!/usr/bin/env python3
"""The tactics driver's reading of suites and moves: no engine needed. Its verdicts are only as
good as the squares it finds for a SAN text, so the cases are those that fool a careless reader:
disambiguation, pins, en passant, promotion, castling, and checks written apart."""
import importlib.machinery
import importlib.util
import os
import sys

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "tactics")
loader = importlib.machinery.SourceFileLoader("tactics", SCRIPT)
loader_spec = importlib.util.spec_from_loader("tactics", loader)
tactics = importlib.util.module_from_spec(loader_spec)
loader.exec_module(tactics)

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
KNIGHTS = "4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1"
ROOKS_ON_FILE = "4k3/R7/8/8/8/8/8/R3K3 w - - 0 1"
PINNED_KNIGHT = "4k3/8/8/8/1b6/8/3N4/4K1N1 w - - 0 1"  # Nd2 is pinned: "Nf3" is the g1 knight
EN_PASSANT = "4k3/8/8/3Pp3/8/8/8/4K3 w - e6 0 1"
PROMOTION = "1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1"
BLACK_CASTLES = "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1"
BLOCKED_BISHOP = "4k3/8/8/8/8/8/1P6/B3K1B1 w - - 0 1"  # only the g1 bishop sees c5

SAN_CASES = [  # (position, SAN, coordinates or None)
    (START, "e4", "e2e4"),
    (START, "e3", "e2e3"),
    (START, "Nf3", "g1f3"),
    (START, "Nc3+", "b1c3"),
    (START, "e5", None),             # no pawn can get there
    (START, "Nd2", None),            # own pawn stands there
    (START, "Bc4", None),            # the bishop is blocked
    (KNIGHTS, "Nd2", None),          # ambiguous without a hint
    (KNIGHTS, "Nbd2", "b1d2"),
    (KNIGHTS, "Nfd2", "f1d2"),
    (KNIGHTS, "Nbc3", "b1c3"),
    (ROOKS_ON_FILE, "R1a4", "a1a4"),
    (ROOKS_ON_FILE, "R7a4", "a7a4"),
    (PINNED_KNIGHT, "Nf3", "g1f3"),
    (EN_PASSANT, "dxe6", "d5e6"),
    (EN_PASSANT, "d6", "d5d6"),
    (PROMOTION, "a8=Q", "a7a8q"),
    (PROMOTION, "axb8=N+", "a7b8n"),
    (PROMOTION, "axb8Q", "a7b8q"),
    (BLACK_CASTLES, "O-O", "e8g8"),
    (BLACK_CASTLES, "O-O-O", "e8c8"),
    (BLACK_CASTLES, "Rh1+", "h8h1"),
    (BLACK_CASTLES, "Re8", None),    # the king stands there
    (BLOCKED_BISHOP, "Bc5", "g1c5"),
    (START, "Zz9", None),
]

failures = []
for fen, san, expected in SAN_CASES:
    got = tactics.san_to_coordinates(fen, san)
    if got != expected:
        failures.append(f"{san} in {fen}: {got}, expected {expected}")

# Engines answer in either notation; both must land on the same squares.
for answer, expected in [("e2e4", "e2e4"), ("a7a8Q", "a7a8q"), ("e7e8=n", "e7e8n"),
                         ("Nf3", None), ("O-O", None)]:
    got = tactics.normal_coordinates(answer)
    if got != expected:
        failures.append(f"coordinates of {answer}: {got}, expected {expected}")

EPD_CASES = [  # (line, fen or None, operations)
    ("1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - ; bm Qd1 + ; id BK.01 ",
     "1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1",
     {"bm": ["Qd1+"], "id": ["BK.01"]}),
    ('2b1k2r/8/8/8/8/8/8/4K3 b k - bm O-O Kf8; am Kd8; id "sbd.003";',
     "2b1k2r/8/8/8/8/8/8/4K3 b k - 0 1",
     {"bm": ["O-O", "Kf8"], "am": ["Kd8"], "id": ["sbd.003"]}),
    ("", None, None),
    ("# a comment line", None, None),
]
for line, fen, operations in EPD_CASES:
    got = tactics.parse_epd(line)
    if got != (None if fen is None else (fen, operations)):
        failures.append(f"EPD {line!r}: {got}")

best, avoid = tactics.expected_moves(START, {"bm": ["e4", "d4"], "am": ["f3"]})
if best != {"e2e4", "d2d4"} or avoid != {"f2f3"}:
    failures.append(f"expected moves: {best}, {avoid}")

for failure in failures:
    print("FAIL:", failure)
print(f"{len(SAN_CASES) + 5 + len(EPD_CASES) + 1 - len(failures)} passed, {len(failures)} failed")
sys.exit(1 if failures else 0)
