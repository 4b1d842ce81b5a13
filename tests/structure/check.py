#!/usr/bin/env python3
"""Checks what the compiler does not: one seam for every dialog, no circles of includes inside a room, no file that
has outgrown its reader, no core that knows of widgets, no setting whose page is silent about having no effect.

usage: check.py ROOT QTDIR  checks the sources below ROOT and prints each offence; exit code 1 when there are any;
                            QTDIR holds the toolkit's headers with the folders QtWidgets and QtGui
       check.py --self      checks the checks on small made-up trees
"""

import pathlib
import re
import sys
import tempfile

LONGEST = 600
# File -> why it may be longer.
LONG_FILES: dict[str, str] = {}

# The seam itself: the only places that may wait for a person.
SEAM = {"src/foundation/ui/ShowModal.cpp", "src/foundation/ui/TouchDialogs.cpp"}
RAW_DIALOG = re.compile(
    r"\bQMessageBox\b|\bQInputDialog\b|\bQFileDialog\b|\bQColorDialog\b|\bQErrorMessage\b|(?:->|\.)exec\s*\(|(?:->|\.)open\s*\(\s*\)")
# File -> whose exec() it is, when it is no dialog's.
EXEC_ALLOWED = {
    "src/app/main.cpp": "the application's event loop",
    "src/zvt/ByteLine.cpp": "the event loop that runs while the card terminal works",
    "src/foundation/session/Startup.cpp": "the event loop that gives the splash time to paint",
}

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
TEXT = re.compile(r'"(?:\\.|[^"\\\n])*"')
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def code_of(text: str) -> str:
    """Without comments and the contents of texts; line breaks stay."""
    text = TEXT.sub('""', text) if "#include" not in text else re.sub(
        r'^(?!\s*#\s*include).*$', lambda m: TEXT.sub('""', m.group()), text, flags=re.M)
    return COMMENT.sub(lambda m: "\n" * m.group().count("\n"), text)


def sources(root: pathlib.Path, *folders: str) -> dict[str, str]:
    found = {}
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h") and path.is_file():
                found[path.relative_to(root).as_posix()] = path.read_text(encoding="utf-8", errors="replace")
    return found


def raw_dialogs(files: dict[str, str]) -> list[str]:
    offences = []
    for name, text in files.items():
        if not name.startswith("src/") or name in SEAM:
            continue
        for number, line in enumerate(code_of(text).split("\n"), 1):
            hit = RAW_DIALOG.search(line)
            if hit is None or (name in EXEC_ALLOWED and "exec" in hit.group()):
                continue
            offences.append(f"{name}:{number}: {hit.group()} goes past the seam of dialogs")
    return offences


def long_files(files: dict[str, str]) -> list[str]:
    return [f"{name}: {lines} lines, more than {LONGEST}" for name, text in files.items()
            if (lines := text.count("\n")) > LONGEST and name not in LONG_FILES]


def room_of(name: str) -> str:
    """src/register/ui/x.cpp -> src/register/ui; private and public headers belong to the same room."""
    parts = name.split("/")
    if "include" in parts:
        return "/".join(parts[: parts.index("include")])
    return "/".join(parts[:-1])


def include_graph(files: dict[str, str]) -> dict[str, list[str]]:
    public = {name.split("/include/", 1)[1]: name for name in files if "/include/" in name}
    graph = {}
    for name, text in files.items():
        targets = []
        for bracket, spelled in INCLUDE.findall(text):
            beside = "/".join(name.split("/")[:-1] + [spelled])
            target = beside if bracket == '"' and beside in files else public.get(spelled)
            if target is not None and target != name:
                targets.append(target)
        graph[name] = targets
    return graph


def circles(files: dict[str, str]) -> list[str]:
    graph = include_graph(files)
    offences, state, path = [], {}, []

    def visit(name: str) -> None:
        state[name] = "open"
        path.append(name)
        for target in graph[name]:
            if state.get(target) == "open":
                ring = path[path.index(target):] + [target]
                offences.append("circle of includes: " + " -> ".join(ring))
            elif target not in state:
                visit(target)
        path.pop()
        state[name] = "done"

    for name in graph:
        if name not in state:
            visit(name)
    return offences


def widget_headers(qt: pathlib.Path) -> set[str]:
    """Headers that only the widgets library has; some of its folder merely pass on to others."""
    names = {path.name for path in (qt / "QtWidgets").iterdir()} - {path.name for path in (qt / "QtGui").iterdir()}
    return names | {"QtWidgets/" + name for name in names} | {"QtWidgets"}


def cores_without_widgets(files: dict[str, str], widgets: set[str]) -> list[str]:
    offences = []
    for name, text in files.items():
        room = room_of(name)
        if not name.startswith("src/") or "/ui" in room or room.startswith("src/app"):
            continue
        for _, spelled in INCLUDE.findall(text):
            if spelled in widgets or re.search(r"(^|/)ui/", spelled):
                offences.append(f"{name}: a core includes <{spelled}>")
    return offences


TABLE = "src/foundation/session/SettingsTable.cpp"
HANDBOOK = "docs/settings.md"
SETTING = re.compile(r'\.key = u"(\w+)"[^{}]*?\.target = &(g\w+)|switchOf\(u"(\w+)", &(g\w+)\)')
SESSION = "src/foundation/session/"
# Read into this, and used through that.
DERIVED = {"gDecimalStellen": "gFormatPreis", "gDecimalStellenEKPreis": "gFormatEKPreis"}


def settings_without_effect(files: dict[str, str], handbook: str) -> list[str]:
    """A key that nobody reads says so on its page, and one that somebody reads does not."""
    used = set(re.findall(r"\bg[A-Z]\w*", "\n".join(
        code_of(text) for name, text in files.items() if name.startswith("src/") and not name.startswith(SESSION))))
    rows = {}
    for key, meaning in re.findall(r"^\| `(\w+)` \|(?:[^|]*\|){3}([^|\n]*)\|", handbook, re.M):
        rows.setdefault(key, []).append(meaning)
    offences = []
    for hit in SETTING.finditer(files.get(TABLE, "")):
        key, target = hit.group(1) or hit.group(3), hit.group(2) or hit.group(4)
        if key == "Port" or key not in rows:  # several sections have one; a missing row is another test's matter
            continue
        effect = DERIVED.get(target, target) in used
        if effect == ("ohne Wirkung" in rows[key][0]):
            offences.append(f"{HANDBOOK}: {key} {'has an effect by now' if effect else 'has no effect'}")
    return offences


def check(root: pathlib.Path, widgets: set[str]) -> list[str]:
    files = sources(root, "src", "harness", "tests", "bench")
    if not files:
        return [f"no sources below {root}"]
    stale = [f"{name}: no longer needs its exception" for name in LONG_FILES
             if name not in files or files[name].count("\n") <= LONGEST]
    page = root / HANDBOOK
    handbook = page.read_text(encoding="utf-8") if page.is_file() else ""
    return (raw_dialogs(files) + long_files(files) + circles(files) + cores_without_widgets(files, widgets)
            + settings_without_effect(files, handbook) + stale)


def self_check() -> list[str]:
    """Each offence is found, its innocent neighbour is not."""
    trees = [
        ({"src/a/x.cpp": 'void f() { QMessageBox::information(0, "", ""); }\n'}, "seam"),
        ({"src/a/x.cpp": "void f() { dialog->exec(); }\n"}, "seam"),
        ({"src/a/x.cpp": '// QMessageBox::warning\nauto t = "QFileDialog::x";\nrun.execute();\n'}, None),
        ({"src/a/include/a/A.h": "#include <a/B.h>\n", "src/a/include/a/B.h": '#include <a/A.h>\n'}, "circle"),
        ({"src/a/A.h": '#include "B.h"\n', "src/a/B.h": "#include <vector>\n"}, None),
        ({"src/a/x.cpp": "int i;\n" * (LONGEST + 1)}, "lines"),
        ({"src/a/x.cpp": "int i;\n" * LONGEST}, None),
        ({"src/a/x.cpp": "#include <QLabel>\n"}, "core"),
        ({"src/a/x.cpp": "#include <ui/Theme.h>\n"}, "core"),
        ({"src/a/ui/x.cpp": "#include <QLabel>\n#include <ui/Theme.h>\n"}, None),
        ({TABLE: '{.key = u"Ton",\n .kind = Truth, .target = &gTon},', HANDBOOK: "| `Ton` | a | b | c | laut |\n"},
         "no effect"),
        ({TABLE: 'switchOf(u"Ton", &gTon)', "src/a/x.cpp": "if (gTon) beep();\n",
          HANDBOOK: "| `Ton` | a | b | c | laut; ohne Wirkung |\n"}, "effect by now"),
        ({TABLE: 'switchOf(u"Ton", &gTon)', "src/a/x.cpp": "if (gTon) beep();\n",
          HANDBOOK: "| `Ton` | a | b | c | laut |\n"}, None),
        ({}, "no sources"),
    ]
    failures = []
    for tree, expected in trees:
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in tree.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text, encoding="utf-8")
            offences = check(root, {"QLabel"})
        if (expected is None and offences) or (expected is not None and not any(expected in o for o in offences)):
            failures.append(f"{list(tree)}: expected {expected}, found {offences}")
    return failures


def main() -> int:
    if sys.argv[1:] == ["--self"]:
        offences = self_check()
    elif len(sys.argv) == 3:
        offences = check(pathlib.Path(sys.argv[1]), widget_headers(pathlib.Path(sys.argv[2])))
    else:
        print(__doc__, file=sys.stderr)
        return 2
    print("\n".join(offences))
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
