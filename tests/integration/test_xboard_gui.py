#!/usr/bin/env python3
"""One short game of Brask against Fairy-Max under the real xboard GUI, headless.

The game must end normally: mate, a draw rule or resignation, with no illegal move, no loss on
time and no engine that dies. Usage: test_xboard_gui.py BUILD_DIR [GAMES] [TIME] [INCREMENT]
(more games and other clocks make it the match benchmark). With BRASK_MATCH_DIR set, the games,
xboard's debug file and the engines' logs are kept in that directory.
"""
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

XBOARD = "/usr/games/xboard"
FAIRYMAX = "/usr/games/fairymax"
NORMAL_ENDINGS = re.compile(r"mates|checkmate|stalemate|resigns|repetition|50|fifty|fifthy|"
                            r"insufficient|material|agree", re.IGNORECASE)
ABNORMAL = re.compile(r"illegal move|on time|time forfeit|disconnect|exited|crash|"
                      r"unexpectedly|died|false illegal", re.IGNORECASE)


def play_match(build, directory, games, minutes_seconds, increment):
    pgn = os.path.join(directory, "games.pgn")
    debug = os.path.join(directory, "xboard.debug")
    command = ["xvfb-run", "-a", XBOARD, "-noGUI",
               "-fcp", os.path.join(build, "brask"), "-fd", directory,
               "-scp", FAIRYMAX, "-sd", directory,
               "-matchGames", str(games), "-tc", minutes_seconds, "-inc", increment,
               "-saveGameFile", pgn, "-debug", "-nameOfDebugFile", debug]
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True)
    # xboard stays up after the match: wait for its final score line, then end it.
    deadline = time.time() + 240 * games
    output = b""
    try:
        while time.time() < deadline:
            line = process.stdout.readline()
            if not line:
                break
            output += line
            if b"final score" in line:
                break
    finally:
        time.sleep(0.5)
        os.killpg(process.pid, signal.SIGTERM)
        process.wait(timeout=30)
    with open(pgn, encoding="utf-8", errors="replace") as file:
        games_text = file.read()
    with open(debug, encoding="utf-8", errors="replace") as file:
        debug_text = file.read()
    return output.decode(errors="replace"), games_text, debug_text


def game_endings(games_text):
    """(result, closing comment) of each game, from the movetext's last comment and result."""
    endings = []
    for result in re.finditer(r'\[Result "([^"]*)"\]', games_text):
        rest = games_text[result.end():]
        following = rest.find("[Event ")
        body = rest if following < 0 else rest[:following]
        comments = re.findall(r"\{([^}]*)\}\s*(?:1-0|0-1|1/2-1/2|\*)\s*$", body.strip())
        endings.append((result.group(1), comments[-1] if comments else ""))
    return endings


def main():
    build = os.path.abspath(sys.argv[1])
    games = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    clock = sys.argv[3] if len(sys.argv) > 3 else "0:10"
    increment = sys.argv[4] if len(sys.argv) > 4 else "0.1"
    for program in (XBOARD, FAIRYMAX, shutil.which("xvfb-run")):
        if not program or not os.path.exists(program):
            print(f"FAIL missing {program or 'xvfb-run'}: scripts/test installs xboard, xvfb "
                  "and fairymax")
            return 1
    kept = os.environ.get("BRASK_MATCH_DIR")
    if kept:
        os.makedirs(kept, exist_ok=True)
    with tempfile.TemporaryDirectory() as scratch:
        directory = os.path.abspath(kept) if kept else scratch
        output, games_text, debug_text = play_match(build, directory, games, clock, increment)
        endings = game_endings(games_text)
        abnormal = [ending for ending in endings
                    if ending[0] == "*" or not NORMAL_ENDINGS.search(ending[1])
                    or ABNORMAL.search(ending[1])]
        brask_lines = [line for line in debug_text.splitlines()
                       if re.match(r"\d+ <first : (Illegal move|Error)", line)]
        score = re.search(r"final score (\S+)", output)
        print(f"games {len(endings)}, final score (Brask first) "
              f"{score.group(1) if score else '?'}, abnormal {len(abnormal)}")
        for ending in endings:
            print(f"  {ending[0]} {{{ending[1]}}}")
        failures = []
        if len(endings) != games:
            failures.append(f"{len(endings)} of {games} games saved")
        if abnormal:
            failures.append(f"abnormal endings: {abnormal}")
        if brask_lines:
            failures.append(f"Brask refused what xboard sent: {brask_lines[:5]}")
        if failures:
            print("FAIL " + "; ".join(failures))
            print(output[-2000:])
            return 1
        print("ok   the games ended normally")
        return 0


if __name__ == "__main__":
    sys.exit(main())
