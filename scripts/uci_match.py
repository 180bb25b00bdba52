#!/usr/bin/env python3
"""A match of Brask against a UCI engine under the real xboard GUI, headless: the benchmark of
the UCI protocol and of the engine's time keeping. The opponent always speaks UCI through
xboard's adapter, polyglot; Brask does too ("uci", the default) or speaks xboard directly
("xboard"), so that both protocols of the same binary meet the same opponent.

Usage: uci_match.py BUILD_DIR [GAMES] [MINUTES:SECONDS] [INCREMENT] [OPPONENT] [uci|xboard]
The opponent is toga2 or glaurung (default toga2). Prints the score, each game's ending, and the
games lost on time or by an illegal move, which must be none. With BRASK_MATCH_DIR set, the
games, xboard's debug file and the engines' logs are kept there. Installs xboard, xvfb, polyglot
and the opponents when they are missing.
"""
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

XBOARD = "/usr/games/xboard"
OPPONENTS = {"toga2": "/usr/games/toga2", "glaurung": "/usr/games/glaurung"}
PACKAGES = ["xboard", "xvfb", "xauth", "polyglot", "toga2", "glaurung"]
LOST_ON_TIME = re.compile(r"on time|time forfeit|flag", re.IGNORECASE)
BROKEN = re.compile(r"illegal move|disconnect|exited|crash|unexpectedly|died|false illegal",
                    re.IGNORECASE)
SECONDS_PER_GAME_LIMIT = 600


def ensure_packages():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    script = f'BRASK_ROOT="{root}"; source "{root}/scripts/packages.sh"; ' \
             f'brask_ensure_packages {" ".join(PACKAGES)}'
    subprocess.run(["bash", "-c", script], check=True)


def play_match(build, directory, games, clock, increment, opponent, brask_protocol):
    pgn = os.path.join(directory, "games.pgn")
    debug = os.path.join(directory, "xboard.debug")
    brask = ["-fcp", os.path.join(build, "brask"), "-fd", directory]
    if brask_protocol == "uci":
        brask.append("-fUCI")
    command = ["xvfb-run", "-a", XBOARD, "-noGUI", *brask,
               "-scp", OPPONENTS[opponent], "-sd", directory, "-sUCI",
               "-matchGames", str(games), "-tc", clock, "-inc", increment,
               "-saveGameFile", pgn, "-debug", "-nameOfDebugFile", debug]
    # xboard starts the adapter by its bare name, and Debian puts it beside the games.
    environment = dict(os.environ, PATH=os.environ.get("PATH", "") + ":/usr/games")
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True, env=environment)
    deadline = time.time() + SECONDS_PER_GAME_LIMIT * games
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
    games_text = open(pgn, encoding="utf-8", errors="replace").read() if os.path.exists(pgn) else ""
    return output.decode(errors="replace"), games_text


def games_of(games_text):
    """(white, black, result, closing comment) of each saved game."""
    found = []
    for event in re.split(r"(?=\[Event )", games_text):
        result = re.search(r'\[Result "([^"]*)"\]', event)
        if not result:
            continue
        white = re.search(r'\[White "([^"]*)"\]', event)
        black = re.search(r'\[Black "([^"]*)"\]', event)
        comments = re.findall(r"\{([^}]*)\}", event)
        found.append((white.group(1) if white else "?", black.group(1) if black else "?",
                      result.group(1), comments[-1] if comments else ""))
    return found


def brask_points(game):
    white, _, result, _ = game
    brask_white = "brask" in white.lower()
    return {"1-0": 1.0 if brask_white else 0.0, "0-1": 0.0 if brask_white else 1.0,
            "1/2-1/2": 0.5}.get(result, 0.0)


def main():
    build = os.path.abspath(sys.argv[1])
    games = int(sys.argv[2]) if len(sys.argv) > 2 else 2
    clock = sys.argv[3] if len(sys.argv) > 3 else "0:10"
    increment = sys.argv[4] if len(sys.argv) > 4 else "0.1"
    opponent = sys.argv[5] if len(sys.argv) > 5 else "toga2"
    brask_protocol = sys.argv[6] if len(sys.argv) > 6 else "uci"
    if opponent not in OPPONENTS or brask_protocol not in ("uci", "xboard"):
        print(__doc__)
        return 2
    ensure_packages()
    kept = os.environ.get("BRASK_MATCH_DIR")
    with tempfile.TemporaryDirectory() as scratch:
        directory = os.path.abspath(kept) if kept else scratch
        os.makedirs(directory, exist_ok=True)
        started = time.time()
        output, games_text = play_match(build, directory, games, clock, increment, opponent,
                                        brask_protocol)
        played = games_of(games_text)
        on_time = [g for g in played if LOST_ON_TIME.search(g[3])]
        broken = [g for g in played if BROKEN.search(g[3]) or g[2] == "*"]
        points = sum(brask_points(g) for g in played)
        print(f"Brask ({brask_protocol}) against {opponent} at {clock} + {increment} s: "
              f"{len(played)} games in {time.time() - started:.0f} s, Brask {points:g} of "
              f"{len(played)}; lost on time {len(on_time)}, illegal or broken {len(broken)}")
        for white, black, result, comment in played:
            print(f"  {white} - {black} {result} {{{comment}}}")
        if len(played) != games or on_time or broken:
            print(output[-2000:])
            return 1
        return 0


if __name__ == "__main__":
    sys.exit(main())
