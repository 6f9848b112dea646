# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""A compiler that miscompiles coroutines is refused, with the reason. Exit 77 (skipped) when there is no such g++."""

import re
import shutil
import subprocess
import sys
import unittest

from scratch import REPOSITORY, ScratchCase

SKIPPED = 77


def refused_compiler():
    for name in ("g++-12", "g++", "g++-11"):
        path = shutil.which(name)
        if path and int(subprocess.check_output([path, "-dumpversion"], text=True).split(".")[0]) < 13:
            return path
    return None


class Compiler(ScratchCase):
    def test_old_gcc_is_refused_with_the_reason(self):
        compiler = refused_compiler()
        result = self.run_program("cmake", "-S", REPOSITORY, "-B", self.root / "build", f"-DCMAKE_CXX_COMPILER={compiler}")
        self.assertNotEqual(result.returncode, 0, result.stdout)
        words = re.sub(r"\s+", " ", result.stdout)
        self.assertIn("miscompiles coroutines", words)
        self.assertIn("Use clang 19", words)


if __name__ == "__main__":
    if not refused_compiler():
        print("there is no g++ below 13 here")
        sys.exit(SKIPPED)
    unittest.main()
