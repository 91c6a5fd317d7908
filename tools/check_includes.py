#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tell which files of src/ and cli/ include what their folder must not.

A folder of src/ includes those that its CMake target links, itself or through others. Those that are one target
together, of scene/ and of cli/, include the ones before them in the lists below. So no folders include each other in a
circle. Exit status 1 when a file does otherwise, or is in a folder that has no place in this order.
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SCENE = ("container", "math", "document", "model", "geometry", "assemble", "readers", "gltf", "other", "")
CLI = ("terminal", "host", "options", "results", "settings", "finish", "proof", "convert", "output", "command_line",
       "completion", "commands", "")
# A program of its own, which has the words of its stream in common with the library.
BESIDES = {"src/translator": {"src/scene/readers"}}


def read(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


def linked_folders():
    """The folders of src/ that the target of each links, as sets by folder."""
    folders, statements = {}, []  # folders by target; targets and what they link
    for name in sorted(entry.name for entry in os.scandir(os.path.join(ROOT, "src")) if entry.is_dir()):
        folders[name] = name
        if os.path.exists(os.path.join(ROOT, "src", name, "CMakeLists.txt")):
            linked = re.findall(r"target_link_libraries\(ts3d_%s\b([^)]*)\)" % name, read("src", name, "CMakeLists.txt"))
            statements += [(name, words) for words in linked]
    for name, sources, words in re.findall(r"^ts3d_folder\((\w+)[^)]*?\bSOURCES\b([^)]*)\bLINKS\b([^)]*)\)",
                                           read("src/CMakeLists.txt"), re.M):
        folders[name] = os.path.commonpath([os.path.dirname(path) for path in re.findall(r"[\w/]+\.cpp", sources)])
        statements.append((name, words))
    links = {folder: set() for folder in folders.values()}
    for name, words in statements:
        links[folders[name]].update(folders[other] for other in re.findall(r"\bts3d_(\w+)", words) if other in folders)
    return links


def with_those_below(name, links, above=()):
    """The folder and all that it links, itself or through others."""
    if name in above:
        sys.exit("src/CMakeLists.txt: targets link each other in a circle: " + " -> ".join(above + (name,)))
    return {name}.union(*(with_those_below(other, links, above + (name,)) for other in links[name]))


def allowed_folders():
    """The folders that the files of each folder may include, as sets by folder."""
    def in_order(root, names, others):
        paths = [os.path.join(root, name).rstrip("/") for name in names]
        return {path: others.union(paths[:i + 1]) for i, path in enumerate(paths)}

    links, allowed = linked_folders(), {}
    scene = set(in_order("src/scene", SCENE, set()))
    for name in links:
        below = {"src/" + other for other in with_those_below(name, links)}
        allowed["src/" + name] = (below | scene if "src/scene" in below else below) | BESIDES.get("src/" + name, set())
    allowed.update(in_order("src/scene", SCENE, allowed["src/scene"] - scene))
    allowed.update(in_order("cli", CLI, set(allowed)))
    return allowed


def included_folder(folder, name):
    """The folder of the file that `folder` includes as `name`; none when it is not one of src/ and cli/."""
    paths = [os.path.normpath(os.path.join(start, name)) for start in (folder, "src", "cli")]
    return next((os.path.dirname(path) for path in paths if os.path.exists(os.path.join(ROOT, path))), None)


def main():
    allowed, wrong, count = allowed_folders(), [], 0
    for top in ("src", "cli"):
        for path, _, files in os.walk(os.path.join(ROOT, top)):
            folder = os.path.relpath(path, ROOT)
            for file in sorted(name for name in files if name.endswith((".h", ".cpp"))):
                count += 1
                if folder not in allowed:
                    wrong.append("%s/%s: the folder has no place in the order" % (folder, file))
                    continue
                for name in re.findall(r'^\s*#\s*include\s+"([^"]+)"', read(folder, file), re.M):
                    other = included_folder(folder, name)
                    if other and other != folder and other not in allowed[folder]:
                        wrong.append("%s/%s: %s must not include %s (%s)" % (folder, file, folder, other, name))
    print("\n".join(wrong) if wrong else "%d files include what they may" % count)
    return 1 if wrong or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
