"""Tables as a user sees them: terminal.py VRNT FOLDER, with the product of FOLDER registered.

In a terminal of whatever width no line is wider than it, and no record is missing; --wide, and a pipe, have every
column; --plain has a line for each record, its cells between tabs, whatever the output is.
"""
import fcntl, os, pathlib, pty, re, struct, subprocess, sys, termios

WINE = str(pathlib.Path(__file__).resolve().parents[2] / "scripts/wine")
VRNT, FOLDER = sys.argv[1:]
COMMANDS = ["query service-units", "query policy", "query enforce-data", f"query competitor-actions --dir {FOLDER}",
            f"query competitor-detections --dir {FOLDER}", f"query compatibility --dir {FOLDER}",
            f"query key-config --dir {FOLDER}", "documents", "trace status"]
faults = []


def through_pipe(*arguments):
    run = subprocess.run([WINE, VRNT, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8")
    if run.returncode != 0:
        faults.append(f"{' '.join(arguments)}: status {run.returncode}, output {run.stdout!r}")
    return run.stdout.splitlines()


def in_terminal(columns, *arguments):
    child, terminal = pty.fork()
    if child == 0:
        os.environ.pop("COLUMNS", None)
        fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        os.execv(WINE, [WINE, VRNT, *arguments])
    printed = b""
    try:
        while block := os.read(terminal, 65536):
            printed += block
    except OSError:  # the other side is closed
        pass
    if os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) != 0:
        faults.append(f"{arguments} fails in a terminal: {printed[-200:]}")
    return printed.decode("utf-8").splitlines()


def expect(what, arguments, truth):
    if not truth:
        faults.append(f"vrnt {' '.join(arguments)}: {what}")


for command in COMMANDS:
    arguments = command.split(" ")
    whole = through_pipe(*arguments)
    rule = next((i for i, line in enumerate(whole) if re.fullmatch(r"-+(  -+)*", line)), -1)
    expect("a pipe has no table", arguments, rule >= 0)
    expect("--wide differs from a pipe", arguments, in_terminal(80, *arguments, "--wide") == whole)
    plain = in_terminal(80, *arguments, "--plain")
    expect("--plain in a terminal differs from a pipe", arguments, plain == through_pipe(*arguments, "--plain"))
    expect("--plain has other cells than tabs divide", arguments, len({line.count("\t") for line in plain}) == 1)
    for columns in (80, 40):
        fit = in_terminal(columns, *arguments)
        widest = max(len(line) for line in fit if FOLDER not in line)  # a path is written whole
        expect(f"{widest} columns in a terminal of {columns}", arguments, widest <= columns)
        expect(f"other records in a terminal of {columns}", arguments, len(fit) >= len(whole))
        expect(f"first cells differ at {columns}", arguments,
               all(line[:6].rstrip() in "\n".join(fit) for line in whole[rule + 1:]))

print(*faults, f"{len(COMMANDS)} tables", sep="\n")
sys.exit(bool(faults))
