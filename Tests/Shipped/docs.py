"""Holds the docs against the code: docs.py TREE DRIVE

A page's blocks of C++ are compiled as one program with the installed TREE. Blocks of commands are run under Wine with
the sample product on DRIVE, and what they print is compared ("..." stands for anything). Blocks with the name of a file
are installed.
"""
import pathlib, re, subprocess, sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
TREE, DRIVE = map(pathlib.Path, sys.argv[1:])
DESK, PRODUCT = DRIVE / "docs", DRIVE / "Program Files/Pelto"
faults, done = [], dict.fromkeys(["programs", "files", "commands", "outputs", "links", "names"], 0)


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                          encoding="utf-8", **options)


def wine(program, line):
    arguments = [word.strip('"') for word in re.findall(r'"[^"]*"|\S+', line)][1:]
    for _ in range(3):  # under load Wine itself fails to start a program now and then
        result = run(ROOT / "scripts/wine", program, *arguments, cwd=DESK)
        if not result.stdout.startswith("wine: "):
            break
    return result


def compile_program(where, text, program, command):
    """By the page's own command where it has one, with warnings besides."""
    program.parent.mkdir(parents=True)
    program.with_suffix(".cpp").write_text(text)
    done["programs"] += 1
    command = command or "x86_64-w64-mingw32-g++-posix -std=c++20 -static -I SDK/include host.cpp -o host.exe"
    result = run(*command.replace("SDK", str(TREE)).split(), "-Wall", "-Wextra", "-Werror", cwd=program.parent)
    if result.returncode != 0:
        faults.append(f"{where}: does not compile\n{result.stdout}")


def looks_like(printed, shown):
    def lines(text):
        return [line.rstrip() + "\n" for line in text.strip("\n").splitlines()]
    pattern = "".join(r"(?:.*\n)*" if line.strip() == "..." else re.escape(line).replace(r"\.\.\.", ".*")
                      for line in lines(shown))
    return re.fullmatch(pattern, "".join(lines(printed)))


def run_commands(where, text, program):
    parts = re.split(r"^((?:vrnt|host) .*)\n", text, flags=re.M)
    if parts[0]:
        faults.append(f"{where}: begins with no command")
    for line, shown in zip(parts[1::2], parts[2::2]):
        result = wine(PRODUCT / "vrnt.exe" if line.startswith("vrnt ") else program, line)
        done["commands"] += 1
        done["outputs"] += shown.strip() != ""
        differs = line.startswith("vrnt diff ") and shown.strip() != ""
        fails = differs or re.search(r"^vrnt: 0x8|^\d+ errors?, ", shown, re.M) is not None
        if (result.returncode != 0) != fails or (shown.strip() and not looks_like(result.stdout, shown)):
            faults.append(f"{where}: {line}: leaves with {result.returncode} and prints\n{result.stdout}")


def install(where, document, name, text):
    """What is of no document ("data") is only put beside the others."""
    (DESK / name).write_text(text)
    (PRODUCT / name).write_text(text)
    done["files"] += 1
    if document != "data":
        told = wine(PRODUCT / "vrnt.exe", f"vrnt check --document {document} {name}").stdout
        if not re.fullmatch(r"(?:.*: warning: .*\n)*(?:0 errors, .*\n)?", told):
            faults.append(f"{where}: {told}")
    if document in ("service-units", "policy", "enforce-data", "alias", "component"):
        stored = (PRODUCT / name).with_suffix(".xen")
        result = wine(PRODUCT / "vrnt.exe", f'vrnt xen encrypt --document {document} {name} "Z:{stored}"')
        if result.returncode != 0:
            faults.append(f"{where}: {result.stdout}")


BLOCK = re.compile(r"^```(\w+) ?(.*)\n((?:.*\n)*?)```$", re.M)


def look_through(page):
    text, cpp, command = page.read_text("utf-8"), "", None
    program = TREE.parent / "programs" / page.stem / "host.exe"
    for block in BLOCK.finditer(text):
        kind, info, body = block.groups()
        where = f"{page.relative_to(ROOT)}:{text.count(chr(10), 0, block.start()) + 1}"
        if kind == "cpp":
            cpp += body
            if "main(" in body:
                compile_program(where, cpp, program, command)
        elif kind == "sh":
            command = body.strip()
        elif kind == "console":
            run_commands(where, body, program)
        elif info:
            install(where, *info.split(), body)
    if cpp and not program.parent.exists():
        faults.append(f"{page}: its blocks make no program")
    for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", BLOCK.sub("", text)):
        done["links"] += 1
        if not (page.parent / target).exists():
            faults.append(f"{page}: leads to {target}, which is not there")


def compare_names():
    """The names of elements and attributes and the words: all of the code's stand in the page, and no others."""
    def names(texts):
        return {name for text in texts for name in text.split("/") if re.fullmatch(r"(?!(0x)?\d*$)\w+", name)}

    known = set()
    for pattern in ("Varnhelt/Documents/*", "Varnhelt/Files/DocumentTable.cpp", "Varnhelt/Descriptions/YesNo.h", "Common/FrwkCommon/Frwk_Words.h", "Common/ZkCommon/ZkComn_Platform.h"):
        for source in ROOT.glob(pattern):
            code = re.sub(r'#include.*|\.Key\("\w+"\)', "", source.read_text("utf-8"))
            known |= names(re.findall(r'"(?:\./)?([\w/]+)"', code))
    known = {name for name in known if not re.match(r"p(st)?[A-Z]|tsz|0123", name)}  # of variables, in trace lines; digits
    told = names(re.findall(r"`([\w/]+)`", BLOCK.sub("", (ROOT / "docs/documents.md").read_text("utf-8"))))
    faults.extend(f"only {'docs/documents.md' if name in told else 'the code'} has {name}" for name in known ^ told)
    done["names"] += len(known & told)


def compare_calls():
    """The value types of the hosts' page: number, operation, record and request are the headers'."""
    read = lambda name: (TREE / "include/Varnhelt" / name).read_text("utf-8")
    number = dict(re.findall(r"(g_ul\w+) = (0x\w+);", read("SrvFrwk_ValueType.h")))
    known = set()
    for name, bases in re.findall(r"struct CallsOf<ValueType::(\w+)> : (.*) \{\}", read("SrvFrwk_Calls.h")):
        calls = re.findall(r"(Query|LookUp|Store)Of<((?:std::vector<\w+>)|\w+)(?:, ([\w&:]+))?>", bases)
        requests = [f"its `{last.split('::')[1]}`" if kind == "LookUp" else f"`{last}`" for kind, _, last in calls if last]
        known.add((f"`{name}`", number[name], ", ".join(kind.replace("LookUp", "Query").lower() for kind, _, _ in calls),
                   f"`{calls[0][1]}`", requests[0] if requests else "–"))
    page = (ROOT / "docs/hosts.md").read_text("utf-8")
    told = {tuple(line.strip("| ").split(" | ")[:5]) for line in page.splitlines() if re.match(r"\| `g_ul\w+` \| 0x", line)}
    faults.extend(f"only {'docs/hosts.md' if row in told else 'SrvFrwk_Calls.h'} has {' | '.join(row)}" for row in known ^ told)
    done["calls"] = len(known & told)


DESK.mkdir(exist_ok=True)
# The documents' page comes last: it replaces the sample's documents by its own.
pages = [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]
for page in sorted(pages, key=lambda page: (page.stem == "documents", page)):
    look_through(page)
compare_names()
compare_calls()
faults += [f"there are no {kind}" for kind, count in done.items() if count == 0]
print(*sorted(faults), ", ".join(f"{count} {kind}" for kind, count in done.items()), sep="\n")
sys.exit(bool(faults))
