#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The layers point down, and no two sources include each other in a circle.

    check_layers.py PROJECT-DIRECTORY

LAYERS names the layers from the lowest to the highest; a file belongs to the first pattern that it
matches. A file includes only files of its own layer or of lower ones. Batch program and dialogs
stand side by side: neither includes the other. A header and its source count as one in the search
for circles. The CMake library of a layer names only sources of the layer and links with the next
lower one only. Below the dialogs, whose tests drive several of their sources at once, each source
has a test file of its own name and place.
"""

import re
import sys
from pathlib import Path

LAYERS = [
    # name, CMake library, the library that it links with, files
    ("core", "tarvel_core", "tarvel_options", r"core/"),
    ("settings", "tarvel_settings", "tarvel_core", r"app/(settings|tags|texts)\."),
    ("warnings", "tarvel_warnings", "tarvel_settings", r"warnings/"),
    ("operations", "tarvel_ops", "tarvel_warnings", r"ops/"),
    ("shell", "tarvel_shell", "tarvel_ops",
     r"app/(entry_points|globals|operations|process|reporter|run_operation)\."
     r"|gui/(input_checks|line_endings)\."),
    ("batch", "tarvel_batch", "tarvel_shell", r"batch/"),
    ("dialogs", "tarvel_gui", "tarvel_shell tarvel_wx", r"gui/"),
    ("application", None, None, r"app/(main|tarvel_app)\."),
]
DIRECTORIES = ["app", "batch", "core", "gui", "ops", "warnings"]
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def layer_of(path):
    for rank, (_, _, _, files) in enumerate(LAYERS):
        if re.match(files, path):
            return rank
    return None


def read_includes(project):
    """The product's files, each with the files that it includes."""
    files = {}
    for directory in DIRECTORIES:
        for path in sorted((project / directory).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                name = path.relative_to(project).as_posix()
                files[name] = INCLUDE.findall(path.read_text("utf-8"))
    return files


def check_arrows(files):
    batch, dialogs = (next(i for i, layer in enumerate(LAYERS) if layer[0] == name)
                      for name in ("batch", "dialogs"))
    for name, includes in files.items():
        rank = layer_of(name)
        if rank is None:
            yield f"{name}: belongs to no layer"
            continue
        for included in includes:
            if included not in files:
                yield f"{name}: includes {included}, which is none of the program's"
                continue
            other = layer_of(included)
            if other is not None and (other > rank or (rank, other) == (dialogs, batch)):
                yield (f"{name} ({LAYERS[rank][0]}) includes {included} ({LAYERS[other][0]}): "
                       "the arrow points up")


def check_circles(files):
    """Reports each circle once, from its alphabetically first member on."""
    def unit(name):
        return name.rsplit(".", 1)[0]
    edges = {}
    for name, includes in files.items():
        edges.setdefault(unit(name), set()).update(unit(i) for i in includes if i in files)
    reported = set()
    state = {}

    def walk(node, road):
        state[node] = "open"
        for other in sorted(edges.get(node, ())):
            if other == node:
                continue
            if state.get(other) == "open":
                circle = road[road.index(other):]
                if frozenset(circle) not in reported:
                    reported.add(frozenset(circle))
                    yield "a circle: " + " -> ".join(circle + [other])
            elif other not in state:
                yield from walk(other, road + [other])
        state[node] = "done"

    for node in sorted(edges):
        if node not in state:
            yield from walk(node, [node])


def check_tests(project, files):
    untested = re.compile(r"gui/(?!input_checks|line_endings)|batch/(completions_)?main|app/(main|tarvel_app)")
    for name in files:
        test = f"tests/{name.removesuffix('.cpp')}_test.cpp"
        if name.endswith(".cpp") and not untested.match(name) and not (project / test).is_file():
            yield f"{name}: has no test file {test}"


def check_libraries(project):
    text = "\n".join((project / directory / "CMakeLists.txt").read_text("utf-8")
                     .replace("${PROJECT_SOURCE_DIR}/", "/")
                     .replace("add_library(", f"add_library({directory} ")
                     for directory in DIRECTORIES)
    for rank, (name, library, lower, _) in enumerate(LAYERS):
        if library is None:
            continue
        made = re.search(rf"add_library\((\w+) {library} (STATIC|INTERFACE)([^)]*)\)", text)
        if not made:
            yield f"{name}: no library {library}"
            continue
        for source in made.group(3).split():
            path = source[1:] if source.startswith("/") else f"{made.group(1)}/{source}"
            if layer_of(path) != rank:
                yield f"{library}: compiles {path}, which is of another layer"
        links = re.findall(rf"target_link_libraries\({library} (?:PUBLIC|INTERFACE)([^)]*)\)", text)
        if [" ".join(link.split()) for link in links] != [lower]:
            yield f"{library}: links with {links}, not with {lower} alone"


def main(arguments):
    project = Path(arguments[0])
    files = read_includes(project)
    complaints = [*check_arrows(files), *check_circles(files), *check_libraries(project),
                  *check_tests(project, files)]
    if len(files) < 100:
        complaints.append(f"only {len(files)} files were found")
    print(f"{len(files)} files", *complaints, sep="\n")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
