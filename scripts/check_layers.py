#!/usr/bin/env python3
"""Checks that the sources include each other downwards only.

Every file belongs to the layer with the longest pattern that it matches. It may include its own
layer and those that the layer's row names; no files may include each other in a circle.
"""

import pathlib
import re
import subprocess
import sys

# From the bottom up: name, what belongs to it, and the layers below that it may use.
LAYERS = [
    ("support", ["support/"], []),
    ("kernel tables", ["encoding/tables/kernel_tables."], ["support"]),
    ("kernels", ["encoding/kernels/"], ["support", "kernel tables"]),
    ("texts", ["encoding/tables/texts/"], ["support"]),
    ("codecs", ["encoding/codecs/"], ["support", "kernel tables", "kernels", "texts"]),
    # The classes that users know by these names; they forward to the codecs and the rows.
    ("names", [f"support/{name}." for name in
               ("charset_naming", "japanese", "korean", "psdk", "zv_utf")],
     ["support", "codecs"]),
    ("tables", ["encoding/tables/"], ["support", "kernel tables", "texts", "codecs"]),
    ("engine", ["encoding/"], ["support", "kernel tables", "kernels", "codecs", "names", "tables"]),
    ("stream", ["encoding/stream/"], ["support", "kernels", "codecs", "engine"]),
    ("detect", ["encoding/detect/"], ["support", "codecs", "engine", "stream"]),
    ("include", ["include/encconv/"], []),
    ("interface", ["interface/"], ["include", "support", "codecs", "engine", "stream", "detect"]),
    ("iconv", ["iconv/"], ["include", "support", "kernels", "codecs", "engine"]),
    ("apps", ["apps/"], ["include", "support", "names", "engine", "stream", "detect"]),
    ("python", ["python/"], ["include", "support", "kernel tables", "kernels", "codecs", "engine", "stream",
                             "interface"]),
    ("npm", ["npm/"], ["include", "support", "kernel tables", "kernels", "codecs", "engine", "stream",
                       "interface"]),
    ("tools", ["tools/"], ["support", "codecs", "engine"]),
    ("examples", ["examples/"], ["include"]),
]
# Where extensions may stand, and where only there.
EXTENSION_HEADERS = ("support/compiler.h", "include/encconv/export.h", "npm/native/exports.h")
EXTENSION_FREE = ("apps/", "encoding/", "iconv/", "include/", "interface/", "npm/native/",
                  "python/src/", "support/", "tools/")
EXTENSION = re.compile(
    r"__attribute__|__builtin_|__extension__|__int128|\[\[gnu::|#\s*pragma GCC|__declspec")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def layer_of(path):
    fits = [(len(pattern), name) for name, patterns, _ in LAYERS for pattern in patterns
            if path.startswith(pattern)]
    return max(fits)[1] if fits else None


def includes_of(path, sources):
    """The files that one includes, as far as they are sources and not made by the build."""
    for written in INCLUDE.findall(pathlib.Path(path).read_text(encoding="utf-8")):
        beside = str(pathlib.PurePosixPath(path).parent / written)
        for candidate in (written, "include/" + written, beside):
            if candidate in sources:
                yield candidate
                break


def find_circle(graph):
    """The files of one circle, or nothing."""
    done = set()

    def visit(node, path):
        if node in path:
            return path[path.index(node):] + [node]
        if node in done:
            return []
        done.add(node)
        for following in graph[node]:
            if circle := visit(following, path + [node]):
                return circle
        return []

    return next((circle for node in graph if (circle := visit(node, []))), [])


def main():
    listed = subprocess.run(["git", "ls-files", "*.h", "*.c", "*.cpp"], check=True,
                            capture_output=True, text=True).stdout.split()
    sources = {path for path in listed if layer_of(path)}
    graph = {path: sorted(includes_of(path, sources)) for path in sorted(sources)}
    allowed = {name: {name, *below} for name, _, below in LAYERS}
    names = [name for name, _, _ in LAYERS]
    faults = [f"the row of {name} names a layer that is not below it" for name in names
              if not allowed[name] <= set(names[:names.index(name) + 1])]
    faults += [f"{path} ({layer_of(path)}) includes {target} ({layer_of(target)})"
               for path, targets in graph.items() for target in targets
               if layer_of(target) not in allowed[layer_of(path)]]
    faults += [f"{path} has an extension of compilers; support/compiler.h is for these"
               for path in sources
               if path.startswith(EXTENSION_FREE) and path not in EXTENSION_HEADERS
               and EXTENSION.search(pathlib.Path(path).read_text(encoding="utf-8"))]
    if circle := find_circle(graph):
        faults.append("a circle: " + " -> ".join(circle))
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
