"""Brask against Brask under the real xboard GUI, headless, two games so that each process plays
both colours. Every game must end normally, with no illegal move, loss on time or dead engine.

Usage: test_xboard_gui.py BUILD_DIR [GAMES] [TIME] [INCREMENT]; with BRASK_MATCH_DIR set, the
games, xboard's debug file and the engines' logs are kept in that directory.
"""
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

XBOARD = "/usr/games/xboard"
NORMAL_ENDINGS = re.compile(r"mates|checkmate|stalemate|resigns|repetition|50|fifty|fifthy|"
                            r"insufficient|material|agree", re.IGNORECASE)
ABNORMAL = re.compile(r"illegal|on time|forfeit|disconnect|exited|crash|unexpectedly|died|"
                      r"false|error", re.IGNORECASE)
# What xboard's debug file shows when an engine refuses a move or a command, or goes away.
ENGINE_FAULTS = re.compile(r"<(?:first|second)\s*: (?:Illegal move|Error)|"
                           r"Error writing to|exited unexpectedly|killed by signal", re.IGNORECASE)


def read_until(process, marker, deadline):
    """xboard's output up to the line holding `marker`, or up to the deadline."""
    output = b""
    while marker not in output and time.monotonic() < deadline:
        ready, _, _ = select.select([process.stdout], [], [], max(0, deadline - time.monotonic()))
        chunk = os.read(process.stdout.fileno(), 4096) if ready else b""
        if not chunk:
            break
        output += chunk
    return output.decode(errors="replace")


def play_match(build, directory, games, clock, increment):
    pgn, debug = os.path.join(directory, "games.pgn"), os.path.join(directory, "xboard.debug")
    engines = [os.path.join(directory, role) for role in ("first", "second")]
    for engine in engines:
        os.makedirs(engine, exist_ok=True)
    brask = os.path.join(build, "brask")
    command = ["xvfb-run", "-a", XBOARD, "-noGUI",
               "-fcp", brask, "-fd", engines[0], "-scp", brask, "-sd", engines[1],
               "-matchGames", str(games), "-tc", clock, "-inc", increment,
               "-saveGameFile", pgn, "-debug", "-nameOfDebugFile", debug]
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True)
    try:
        # xboard stays up after the match: wait for its final score line, then end it.
        output = read_until(process, b"final score", time.monotonic() + 60 + 120 * games)
    finally:
        time.sleep(0.5)
        # xboard ends on SIGTERM; the engines ignore it under xboard, so what is left of the
        # group goes by SIGKILL.
        for stop, grace in ((signal.SIGTERM, 10), (signal.SIGKILL, None)):
            try:
                os.killpg(process.pid, stop)
                process.wait(timeout=grace)
            except (ProcessLookupError, subprocess.TimeoutExpired):
                pass
    return output, read_text(pgn), read_text(debug)


def read_text(path):
    return Path(path).read_text(encoding="utf-8", errors="replace") if os.path.exists(path) else ""


def game_endings(games_text):
    """(result, closing comment) of each game, from the movetext's last comment and result."""
    endings = []
    for game in games_text.split("[Event ")[1:]:
        result = re.search(r'\[Result "([^"]*)"\]', game)
        comments = re.findall(r"\{([^}]*)\}\s*(?:1-0|0-1|1/2-1/2|\*)\s*$", game.strip())
        endings.append((result[1] if result else "", comments[-1] if comments else ""))
    return endings


def judge(games, output, games_text, debug_text):
    """The failures of the match: games missing or ended abnormally, faults the GUI saw."""
    endings = game_endings(games_text)
    print(f"games {len(endings)}: " + ", ".join(f"{result} {{{comment}}}"
                                                 for result, comment in endings))
    failures = []
    if len(endings) != games:
        failures.append(f"{len(endings)} of {games} games saved")
    abnormal = [ending for ending in endings if ending[0] not in ("1-0", "0-1", "1/2-1/2")
                or not NORMAL_ENDINGS.search(ending[1]) or ABNORMAL.search(ending[1])]
    if abnormal:
        failures.append(f"abnormal endings: {abnormal}")
    faults = [line for line in (debug_text + output).splitlines() if ENGINE_FAULTS.search(line)]
    if faults:
        failures.append(f"engine faults seen by xboard: {faults[:5]}")
    return failures


def main():
    build = os.path.abspath(sys.argv[1])
    games = int(sys.argv[2]) if len(sys.argv) > 2 else 2
    clock = sys.argv[3] if len(sys.argv) > 3 else "0:10"
    increment = sys.argv[4] if len(sys.argv) > 4 else "0.1"
    if not os.path.exists(XBOARD) or not shutil.which("xvfb-run"):
        print("FAIL xboard or xvfb-run missing: scripts/test installs xboard and xvfb")
        return 1
    kept = os.environ.get("BRASK_MATCH_DIR")
    with tempfile.TemporaryDirectory() as scratch:
        directory = os.path.abspath(kept) if kept else scratch
        os.makedirs(directory, exist_ok=True)
        started = time.monotonic()
        output, games_text, debug_text = play_match(build, directory, games, clock, increment)
        failures = judge(games, output, games_text, debug_text)
        print(f"match of {games} game(s) in {time.monotonic() - started:.1f} s")
        if failures:
            print("FAIL " + "; ".join(failures) + "\n" + output[-2000:])
            print("0 passed, 1 failed")
            return 1
        print("ok   the games ended normally\n1 passed, 0 failed")
        return 0


if __name__ == "__main__":
    sys.exit(main())
