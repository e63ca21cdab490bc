#!/usr/bin/env python3
"""Checks that the program's folders depend on each other one way only.

Layers, bottom to top: resources, platform, storage, monitor, ui, logview, app.
A file may include headers of its own folder and of the folders below it, never
above. Within a folder, the portable files (the folder itself, or posix/) never
include its win32/ files, and only files under a win32/ folder include Windows
headers. A header and its .cpp count as one unit, and no two units include each
other, however far round. The scripts name controls and messages, never by number
(resources/resource_ids.h, scripts/wine-env.sh). Prints every breach; exits 1 when there is one.
"""
import os
import re
import sys

LAYERS = ["resources", "platform", "storage", "monitor", "ui", "logview", "app"]
WINDOWS_HEADERS = {"windows.h", "commctrl.h", "shellapi.h", "mmsystem.h", "shlobj.h",
                   "objbase.h", "commdlg.h", "winuser.h", "shlwapi.h", "ras.h", "raserror.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
RAW_ID = re.compile(r'--(ids?|icon|msg) "?(\d|WM_(USER|APP)\+)|WM_COMMAND --wparam \d|--wparam 0x|(?<!-)\b(checked|enabled|visible) ("\$\w+" )?"?\d')
SCRIPTS = ["tests/e2e", "scripts", "tests/drivers/win_driver"]


def check(root):
    problems, edges = [], {}
    for layer in LAYERS:
        for folder, _, names in os.walk(os.path.join(root, layer)):
            for name in sorted(n for n in names if n.endswith((".h", ".cpp"))):
                path = os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/")
                with open(os.path.join(root, path), encoding="latin-1") as text:
                    for number, line in enumerate(text, 1):
                        match = INCLUDE.match(line)
                        if match:
                            problems += breaches(f"{path}:{number}: ", path, *match.groups(), edges)
    for path in sorted(os.path.join(d, n) for d in SCRIPTS for n in os.listdir(os.path.join(root, d)) if n.endswith((".sh", ".md"))):
        with open(os.path.join(root, path), encoding="utf-8") as text:
            problems += [f"{path}:{number}: a raw id or message number" for number, line in enumerate(text, 1) if RAW_ID.search(line)]
    return problems + cycles(edges)


def breaches(where, path, kind, target, edges):
    portable, layer, other = "/win32/" not in path, path.split("/")[0], target.split("/")[0]
    if kind == "<":
        return [where + f"<{target}> outside a win32/ folder"] if portable and target.lower() in WINDOWS_HEADERS else []
    if other not in LAYERS:
        return []
    if os.path.splitext(target)[0] != os.path.splitext(path)[0]:
        edges.setdefault(os.path.splitext(path)[0], set()).add(os.path.splitext(target)[0])
    return ([where + f"{layer}/ includes {target}, a layer above it"] if LAYERS.index(other) > LAYERS.index(layer) else []) + \
        ([where + f"portable file includes the Windows side's {target}"] if portable and "/win32/" in target else [])


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


if __name__ == "__main__":
    problems = check(os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "../..")))
    print("\n".join(problems + [f"layers: {len(problems)} problem(s)"]))
    sys.exit(1 if problems else 0)
