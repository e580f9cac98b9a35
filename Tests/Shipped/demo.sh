#!/usr/bin/env bash
# The first impression: the demo fits on a page and a terminal, and the README shows what it prints ("..." is any text, as
# in docs.py). It has a Wine prefix apart from the tests'. Exit status 77 (skipped) where there is no release yet.
. "$(dirname "$0")/../../scripts/lib.sh"

[ -e build/release/bin/vrnt.exe ] || exit 77
WINEPREFIX=$root/build/wine scripts/demo >build/demo.txt || { cat build/demo.txt; exit 1; }
python3 - build/demo.txt README.md <<'END'
import re, sys

printed, readme = (open(name, encoding="utf-8").read() for name in sys.argv[1:])
# What a run may say about the time that its steps took.
lines = [line for line in printed.splitlines() if not re.search(r": \d+ s( so far.*)?$", line)]
assert len(lines) <= 60, f"{len(lines)} lines"
assert max(map(len, lines)) <= 100, max(lines, key=len)
shown = re.search(r"^```text\n(.*?)^```$", readme, re.M | re.S)[1]
pattern = "".join(r"(?:.*\n)*" if line.strip() == "..." else re.escape(line).replace(r"\.\.\.", ".*") + "\n"
                  for line in shown.splitlines())
assert re.search(pattern, "\n".join(lines) + "\n"), f"the README shows something else than\n{printed}"
END
