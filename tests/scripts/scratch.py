# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""A tree of files for one test, and the repository's scripts run on it."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
CHECKS = REPOSITORY / "scripts" / "checks"


class ScratchCase(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def write(self, path, text, executable=False):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        if executable:
            file.chmod(0o755)
        return file

    def run_program(self, *command, **options):
        """The finished process, with its output as text; standard input is empty."""
        environment = {**os.environ, **options.pop("environment", {})}
        return subprocess.run(
            [str(part) for part in command],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=60,
            check=False,
            env=environment,
            **options,
        )

    def run_check(self, script, *arguments, **options):
        return self.run_program(sys.executable, CHECKS / script, *arguments, **options)
