#!/usr/bin/env python3
"""What is shipped is hardened: read from the headers of the built files by readelf.

    hardening_test.py BUILD_TYPE READELF FILE...

Only the optimised build is hardened; of another the test says that it is skipped."""

import re
import subprocess
import sys
import unittest

SKIPPED = 77

# What each file must have: a pattern in what readelf says of it, and what it stands for.
WANTED = {
    r"GNU_RELRO ": "tables of the linker that are read-only once it is done",
    r"\(FLAGS\).*BIND_NOW": "all calls bound when it is loaded, so that no table stays writable",
    r"\(FLAGS_1\).*NOW": "the same, in the newer flag",
    r"GNU_STACK .* RW +0x": "a stack that is not executable",
    r" UND __stack_chk_fail": "guards on the stack",
    r"Type: +DYN ": "code for any address",
}
UNWANTED = {
    r"TEXTREL": "relocations in the code",
    r" UND (f|v|vf)?printf@": "a printing call without its checked form, which each has",
}
WANTED_OF_PROGRAMS = {r"INTERP ": "an interpreter, which makes it a program at any address"}
# Other calls are checked where the compiler knows the size of a buffer. The Python module prints
# nothing and knows of no such size: it has no checked call.
CHECKED_CALL = r" UND __(?!stack_chk)\w+_chk\b"


def headers(readelf, path):
    command = [readelf, "--wide", "--file-header", "--segments", "--dynamic", "--dyn-syms", path]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


class HardeningTest(unittest.TestCase):
    files = {}

    def test_every_file_has_each_guard(self):
        for path, text in self.files.items():
            program = path.endswith(("/rova", "/rova-agent"))
            for pattern, meaning in {**WANTED, **(WANTED_OF_PROGRAMS if program else {})}.items():
                with self.subTest(path, wanted=meaning):
                    self.assertRegex(text, pattern)
            for pattern, meaning in UNWANTED.items():
                with self.subTest(path, unwanted=meaning):
                    self.assertNotRegex(text, pattern)

    def test_calls_of_the_c_library_are_checked(self):
        for path, text in self.files.items():
            with self.subTest(path):
                self.assertTrue(re.search(CHECKED_CALL, text) or "/_rova." in path,
                                "no call of a checked function")


if __name__ == "__main__":
    build_type, readelf_path, *paths = sys.argv[1:]
    if build_type != "Release":
        print(f"skipped: only Release is hardened, and this is {build_type}")
        sys.exit(SKIPPED)
    HardeningTest.files = {path: headers(readelf_path, path) for path in paths}
    unittest.main(argv=sys.argv[:1])
