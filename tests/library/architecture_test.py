"""Holds docs/architecture.md against the tree: every include goes where its table of folders lets it,
every folder with sources stands there, and the files that it names exist."""

import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/architecture.md"
TOPS = ("platform", "rova", "sources", "command", "agent", "python", "tests", "bench", "fuzz")
EVERYWHERE = "all"


def table_of_folders():
    """What each folder may use, as the document says: a folder stands for those below it too."""
    folders = {}
    for line in DOCUMENT.read_text().splitlines():
        cells = [cell.strip() for cell in line.split("|")[1:-1]]
        if len(cells) != 3 or not cells[0].startswith("`"):
            continue
        for folder in re.findall(r"`([^`]+)`", cells[0]):
            folders[folder] = [] if cells[2] == "-" else [use.strip() for use in cells[2].split(",")]
    return folders


def full_name(use, folders):
    """`lumo` is short for `platform/lumo`."""
    named = [folder for folder in folders if folder == use or folder.endswith("/" + use)]
    if len(named) != 1 and use not in TOPS:
        raise AssertionError(f"{DOCUMENT.name}: '{use}' is no folder of the table")
    return named[0] if named else use


def reach(folder, folders):
    """The folders that one may use, and what those may use."""
    seen, left = set(), [folder]
    while left:
        at = left.pop()
        if at in seen:
            continue
        seen.add(at)
        below = [name for name in folders if name.startswith(at + "/") and at != folder]
        left += [full_name(use, folders) for use in folders.get(at, []) if use != EVERYWHERE] + below
    return seen


def folder_of(path, folders):
    """The folder of the table that a source or an installed header is of."""
    parts = [part for part in path.parts if part != "include"]
    if parts[0] == "rova" and len(parts) > 1 and parts[1] == "rova":
        parts = parts[1:]
    for length in (2, 1):
        name = "/".join(parts[:length])
        if name in folders and len(parts) > length:
            return name
    return None


def included(text):
    """The headers of the project that a text includes from another folder."""
    return re.findall(r'^#include ["<]([a-z]+/[\w./]+\.h)[">]', text, re.M)


def header_path(name):
    """Where a header stands, below the root; None for one of the system's."""
    for root in ("platform/include", "platform", "rova/include", "."):
        if (ROOT / root / name).is_file():
            return (ROOT / root / name).relative_to(ROOT)
    return None


def sources():
    for top in TOPS:
        for path in (ROOT / top).rglob("*"):
            if path.suffix in (".h", ".cpp"):
                yield path.relative_to(ROOT)


class ArchitectureTest(unittest.TestCase):
    maxDiff = None

    def test_every_include_goes_down(self):
        folders = table_of_folders()
        wrong = []
        for path in sources():
            folder = folder_of(path, folders)
            if folder is None:
                wrong.append(f"{path}: is in no folder of the table")
                continue
            if EVERYWHERE in folders[folder]:
                continue
            allowed = reach(folder, folders)
            for name in included((ROOT / path).read_text()):
                header = header_path(name)
                if header is None:
                    continue
                to = folder_of(header, folders)
                if to != folder and to not in allowed:
                    wrong.append(f"{path}: {folder} may not use {to} ({name})")
        self.assertEqual(wrong, [])

    def test_the_table_would_tell(self):
        """A check that cannot fail would be none: the platform may not use the library."""
        folders = table_of_folders()
        self.assertNotIn("rova/core", reach("platform/lumo", folders))
        self.assertNotIn("rova/route", reach("rova/fec", folders))
        self.assertIn("platform/lumo", reach("rova/fec", folders))
        self.assertEqual(folder_of(Path("rova/include/rova/fec/CachedFec.h"), folders), "rova/fec")

    def test_files_that_are_named_exist(self):
        known = {path.name for path in ROOT.rglob("*") if "build" not in path.parts}
        missing = []
        for name in re.findall(r"`([\w./-]+\.(?:h|cpp|py|md|txt|c|map|cmake))`", DOCUMENT.read_text()):
            if not (ROOT / name).exists() and not header_path(name) and ("/" in name or name not in known):
                missing.append(name)
        self.assertEqual(missing, [])


if __name__ == "__main__":
    sys.exit(unittest.main())
