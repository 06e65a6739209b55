#!/usr/bin/env python3
"""Checks the project's #include "..." lines: no include of a higher folder, and no include cycle
between modules (a module is a header and its source, e.g. generator/bodymark.h + .cpp).
Usage: .ci/check_includes.py [-v]   (-v lists every module edge). Exit status 1 on a finding."""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
INCLUDE_DIRS = ["dorvabase", "FEL", "Kavex3_GridGen"]  # as the CMake targets publish them

# Folder -> the folders its files may include, itself included. The order of building is
# dorvabase, FEL, FEL/readers, then generator and intersector, then driver and the intersector's
# reference procedure, then the tools.
ALLOWED = {
    "dorvabase": {"dorvabase"},
    "FEL": {"FEL", "dorvabase"},
    "FEL/readers": {"FEL/readers", "FEL", "dorvabase"},
    "FEL/umbrella": {"FEL", "FEL/readers"},
    "Kavex3_GridGen/generator": {"Kavex3_GridGen/generator"},
    "Kavex3_GridGen/intersector": {"Kavex3_GridGen/intersector", "FEL", "FEL/readers", "dorvabase"},
    "Kavex3_GridGen/reference": {"Kavex3_GridGen/reference", "Kavex3_GridGen/intersector", "FEL",
                                 "FEL/readers", "dorvabase"},
    "Kavex3_GridGen/driver": {"Kavex3_GridGen/driver", "Kavex3_GridGen/generator",
                              "Kavex3_GridGen/intersector", "FEL", "FEL/readers", "dorvabase"},
}
TOOL_ALLOWED = set(ALLOWED) - {"FEL/umbrella"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def folder_of(rel):
    if rel == "FEL/FEL.h":
        return "FEL/umbrella"  # the umbrella gathers the readers too
    d = os.path.dirname(rel)
    if d.startswith("tools/"):
        return "/".join(d.split("/")[:2])
    return d


def resolve(including, name):
    for base in [os.path.dirname(including)] + INCLUDE_DIRS:
        cand = os.path.normpath(os.path.join(base, name))
        if os.path.isfile(os.path.join(ROOT, cand)):
            return cand
    return None


def main():
    verbose = "-v" in sys.argv
    files = []
    for top in INCLUDE_DIRS + ["tools"]:
        for d, _, names in os.walk(os.path.join(ROOT, top)):
            files += [os.path.relpath(os.path.join(d, n), ROOT) for n in names
                      if n.endswith((".h", ".cpp"))]
    problems = []
    edges = {}
    for rel in sorted(files):
        src = folder_of(rel)
        allowed = ALLOWED.get(src, TOOL_ALLOWED | {src})
        module = os.path.splitext(rel)[0]
        edges.setdefault(module, set())
        with open(os.path.join(ROOT, rel), encoding="utf-8") as f:
            text = f.read()
        for name in INCLUDE.findall(text):
            target = resolve(rel, name)
            if target is None:
                problems.append(f"{rel}: cannot find \"{name}\"")
                continue
            dst = folder_of(target)
            if dst not in allowed:
                problems.append(f"{rel}: includes a higher or unrelated folder: \"{name}\"")
            other = os.path.splitext(target)[0]
            if other != module:
                edges[module].add(other)

    # Tarjan's strongly connected components: any component of two or more modules is a cycle.
    index, low, on_stack, stack, counter = {}, {}, set(), [], [0]

    def visit(v):
        index[v] = low[v] = counter[0]
        counter[0] += 1
        stack.append(v)
        on_stack.add(v)
        for w in sorted(edges.get(v, ())):
            if w not in index:
                visit(w)
                low[v] = min(low[v], low[w])
            elif w in on_stack:
                low[v] = min(low[v], index[w])
        if low[v] == index[v]:
            comp = []
            while True:
                w = stack.pop()
                on_stack.discard(w)
                comp.append(w)
                if w == v:
                    break
            if len(comp) > 1:
                problems.append("include cycle between modules: " + " <-> ".join(sorted(comp)))

    sys.setrecursionlimit(10000)
    for v in sorted(edges):
        if v not in index:
            visit(v)

    if verbose:
        for v in sorted(edges):
            for w in sorted(edges[v]):
                print(f"{v} -> {w}")
    for p in problems:
        print(p)
    n_edges = sum(len(e) for e in edges.values())
    print(f"{len(files)} files, {len(edges)} modules, {n_edges} module edges: "
          f"{len(problems)} problem(s)")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
