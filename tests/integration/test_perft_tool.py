"""The perft tool: counts, --divide, --time, and clear refusals of bad input."""
import os
import subprocess
import sys

BUILD = sys.argv[1]
PERFT = os.path.join(BUILD, "brask-perft")
KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -"
failures = []
checks = 0


def run(*args):
    return subprocess.run([PERFT, *args], capture_output=True, text=True, timeout=60)


def check(condition, what, result=None):
    global checks
    checks += 1
    if not condition:
        detail = "" if result is None else f"\n  exit {result.returncode}\n  stdout {result.stdout!r}\n  stderr {result.stderr!r}"
        failures.append(what + detail)


result = run("3")
check(result.returncode == 0 and result.stdout.splitlines()[-1] == "8902", "initial depth 3", result)

result = run("2", KIWIPETE)
check(result.returncode == 0 and result.stdout.splitlines()[-1] == "2039", "quoted FEN", result)
result = run("2", *KIWIPETE.split())
check(result.returncode == 0 and result.stdout.splitlines()[-1] == "2039", "unquoted FEN", result)

result = run("2", "--divide")
lines = result.stdout.splitlines()
check(result.returncode == 0 and len(lines) == 21 and lines[-1] == "400", "divide lines", result)
check(lines[0] == "g1h3: 20" and "e2e4: 20" in lines, "divide texts", result)

result = run("--time", "1")
lines = result.stdout.splitlines()
check(result.returncode == 0 and len(lines) == 2 and "nodes per second" in lines[0]
      and lines[1] == "20", "time", result)

result = run("0")
check(result.returncode == 0 and result.stdout.splitlines()[-1] == "1", "depth 0", result)

for bad in (["abc"], ["-1"], ["999"], [], ["3", "--frobnicate"], ["2", "not a fen"],
            ["2", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 extra"],
            ["2", "8/8/8/8/8/8/8/8 w - - 0 1"]):
    result = run(*bad)
    check(result.returncode > 0, f"refuses {bad}", result)
    check(result.stderr.startswith("brask-perft: ") and result.stdout == "",
          f"explains {bad} on stderr", result)

for failure in failures:
    print("FAIL:", failure)
print(f"{checks - len(failures)} passed, {len(failures)} failed")
sys.exit(1 if failures else 0)
