#!/usr/bin/env python3
"""Checks that the program's folders depend on each other one way only.

Layers, bottom to top: resources, platform, storage, monitor, ui, logview, app.
A file may include headers of its own folder and of the folders below it, never
above. Within a folder, the portable files (the folder itself, or posix/) never
include its win32/ files, and only files under a win32/ folder include Windows
headers. A header and its .cpp count as one unit, and no two units include each
other, however far round. Prints every breach; exits 1 when there is one.
"""
import os
import re
import sys

LAYERS = ["resources", "platform", "storage", "monitor", "ui", "logview", "app"]
RANK = {name: rank for rank, name in enumerate(LAYERS)}
WINDOWS_HEADERS = {"windows.h", "commctrl.h", "shellapi.h", "mmsystem.h", "shlobj.h",
                   "objbase.h", "commdlg.h", "winuser.h", "shlwapi.h", "ras.h", "raserror.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def sources(root):
    for layer in LAYERS:
        for folder, _, names in os.walk(os.path.join(root, layer)):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    yield os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/")


def is_win32(path):
    return "/win32/" in path


def unit(path):
    return os.path.splitext(path)[0]


def check(root):
    problems = []
    edges = {}
    for path in sources(root):
        layer = path.split("/")[0]
        with open(os.path.join(root, path), encoding="latin-1") as text:
            for number, line in enumerate(text, 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                kind, target = match.groups()
                where = f"{path}:{number}: "
                if kind == "<":
                    if target.lower() in WINDOWS_HEADERS and not is_win32(path):
                        problems.append(where + f"<{target}> outside a win32/ folder")
                    continue
                other = target.split("/")[0]
                if other not in RANK:
                    continue
                if RANK[other] > RANK[layer]:
                    problems.append(where + f"{layer}/ includes {target}, a layer above it")
                if is_win32(target) and not is_win32(path):
                    problems.append(where + f"portable file includes the Windows side's {target}")
                if unit(target) != unit(path):
                    edges.setdefault(unit(path), set()).add(unit(target))
    problems += cycles(edges)
    return problems


def cycles(edges):
    found, state, stack = [], {}, []

    def visit(node):
        state[node] = 1
        stack.append(node)
        for nxt in sorted(edges.get(node, ())):
            if state.get(nxt) == 1:
                found.append("cycle: " + " -> ".join(stack[stack.index(nxt):] + [nxt]))
            elif nxt not in state:
                visit(nxt)
        stack.pop()
        state[node] = 2

    for node in sorted(edges):
        if node not in state:
            visit(node)
    return found


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "..")
    problems = check(os.path.abspath(root))
    for problem in problems:
        print(problem)
    print(f"layers: {len(problems)} problem(s)")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
