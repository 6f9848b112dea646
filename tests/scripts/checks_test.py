# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""What the other checks find, what they let through, and what they refuse to call a success."""

import json
import os
import unittest

from scratch import REPOSITORY, ScratchCase

GTEST_GREEN = "[==========] 7 tests ran.\n[  PASSED  ] 7 tests.\n"
GTEST_RED = "[  PASSED  ] 5 tests.\n[  FAILED  ] 2 tests, listed below:\n[  FAILED  ] A.b\n 2 FAILED TESTS\n"
QTEST_RED = "Totals: 12 passed, 1 failed, 0 skipped, 0 blacklisted, 40ms\n"
UNITTEST_RED = "Ran 5 tests in 0.1s\n\nFAILED (failures=1, errors=1)\n"


def result_file(*cases):
    """ctest's result file for (status, output) pairs."""
    entries = []
    for number, (status, output) in enumerate(cases):
        failure = '<failure message=""/>' if status == "fail" else ""
        entries.append(
            f'<testcase name="t{number}" status="{status}">{failure}<system-out>{output}</system-out></testcase>'
        )
    return f"<testsuite>{''.join(entries)}</testsuite>"


class CountTests(ScratchCase):
    def count(self, *cases):
        result = self.run_check("count_tests.py", self.write("results.xml", result_file(*cases)))
        return result.stdout.rstrip().splitlines()[-1], result.returncode

    def test_cases_are_counted_where_a_program_says_how_many(self):
        table = [
            ([("run", GTEST_GREEN)], "7 passed, 0 failed", 0),
            ([("run", "a script without a summary")], "1 passed, 0 failed", 0),
            ([("run", GTEST_GREEN), ("fail", GTEST_RED)], "12 passed, 2 failed", 1),
            ([("fail", QTEST_RED)], "12 passed, 1 failed", 1),
            ([("fail", UNITTEST_RED)], "3 passed, 2 failed", 1),
            # all cases green, then a leak at exit; a crash before any summary
            ([("fail", GTEST_GREEN)], "7 passed, 1 failed", 1),
            ([("fail", "Segmentation fault")], "0 passed, 1 failed", 1),
            ([("run", GTEST_GREEN), ("notrun", "no such compiler")], "7 passed, 0 failed", 0),
        ]
        for cases, last_line, code in table:
            with self.subTest(cases=cases):
                self.assertEqual(self.count(*cases), (last_line, code))

    def test_nothing_run_is_no_success(self):
        self.assertEqual(self.count(), ("0 passed, 0 failed", 1))
        self.assertEqual(self.run_check("count_tests.py", self.root / "none.xml").returncode, 1)


class Sizes(ScratchCase):
    def test_caps_by_place_and_kind(self):
        caps = {
            "core/json/a.cpp": 400,
            "app/model/a.cpp": 500,
            "host/http/a.cpp": 500,
            "core/json/a.h": 250,
            "app/ui/A.qml": 300,
            "tests/core/a_test.cpp": 600,
            "fuzz/a.cpp": 600,
        }
        for path, cap in caps.items():
            self.write(path, "x\n" * cap)
        self.assertEqual(self.run_check("sizes.py", self.root).returncode, 0)
        for path, cap in caps.items():
            self.write(path, "x\n" * (cap + 1))
        result = self.run_check("sizes.py", self.root)
        self.assertEqual(result.returncode, 1)
        for path, cap in caps.items():
            self.assertIn(f"{path}: {cap + 1} lines, {cap} at most\n", result.stdout)


class Documents(ScratchCase):
    def test_paths_named_in_the_guides_exist(self):
        self.write("core/json/value.h", "")
        self.write("scripts/check", "")
        self.write("ARCHITECTURE.md", "`core/json/*.h`, `core/`, `/v1/sessions`, `build/dev`, `std::expected`\n")
        self.write("CONTRIBUTING.md", "`scripts/check --all`, [up](README.md), [out](https://example.invalid/x)\n")
        self.write("README.md", "```\n`no/such/path`\n```\n")
        good = self.run_check("documents.py", self.root)
        self.assertEqual((good.returncode, good.stdout), (0, ""))
        self.write("README.md", "one\n`core/gone.h` and `scripts/demo --tour`\n![x](docs/x.png)\n")
        bad = self.run_check("documents.py", self.root)
        self.assertEqual(bad.returncode, 1)
        for finding in ("README.md:2: there is no core/gone.h", "README.md:2: there is no scripts/demo", "docs/x.png"):
            self.assertIn(finding, bad.stdout)


class TidyUnits(ScratchCase):
    def units(self, *changed):
        self.write("core/a.cpp", '#include "core/a.h"\n')
        self.write("core/b.cpp", '#include "core/alone.h"\n')
        commands = [{"directory": str(self.root), "file": f"core/{name}.cpp"} for name in "ab"]
        self.write("build/dev/compile_commands.json", json.dumps(commands))
        script = REPOSITORY / "scripts" / "checks" / "tidy_units.py"
        command = f"printf '%s\\0' {' '.join(changed)} | python3 {script} build/dev | tr '\\0' '\\n'; exit ${{PIPESTATUS[1]}}"
        result = self.run_program("bash", "-c", command, cwd=self.root)
        return result.stdout.splitlines(), result.returncode

    def test_headers_are_seen_through_a_unit(self):
        self.assertEqual(self.units("core/a.h", "core/alone.h", "bench/x.cpp", "tests/refused/y.cpp"), (["core/a.cpp", "core/b.cpp"], 0))

    def test_a_source_that_nothing_compiles_is_no_success(self):
        self.assertEqual(self.units("core/lost.cpp")[1], 1)


class Fuzz(ScratchCase):
    def fuzz(self, harness):
        self.run_program("cp", "-r", REPOSITORY / "scripts", self.root)
        self.write("build/fuzz/fuzz/reader", harness, executable=True)
        return self.run_program("bash", "-c", "source scripts/lib.sh; fuzz 1", cwd=self.root)

    def test_only_a_harness_that_ran_on_seeds_is_clean(self):
        clean = "#!/bin/sh\necho stat::number_of_executed_units: 12\n"
        self.assertIn("no seeds", self.fuzz(clean).stdout)
        self.write("fuzz/corpus/reader/one", "{}")
        result = self.fuzz(clean)
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertIn("fuzz reader: clean, 12 inputs", result.stdout)
        self.assertNotEqual(self.fuzz("#!/bin/sh\nexit 0\n").returncode, 0)
        crashed = self.fuzz("#!/bin/sh\necho overflow\nexit 77\n")
        self.assertNotEqual(crashed.returncode, 0)
        self.assertIn("overflow", crashed.stdout)
        (self.root / "build/fuzz/fuzz/reader").unlink()
        nothing = self.run_program("bash", "-c", "source scripts/lib.sh; fuzz 1", cwd=self.root)
        self.assertIn("no harness", nothing.stdout)


class Steps(ScratchCase):
    """scripts/check in a copy of the scripts, with the programs it needs as stubs."""

    def check(self, name, **environment):
        environment = {**self.environment, **environment}
        return self.run_program(self.root / "scripts" / "check", "--only", name, environment=environment)

    def setUp(self):
        super().setUp()
        self.run_program("cp", "-r", REPOSITORY / "scripts", self.root)
        for command in (["init", "-q"], ["-c", "user.name=a", "-c", "user.email=a", "commit", "-q", "--allow-empty", "-m", "a"]):
            self.run_program("git", *command, cwd=self.root)
        for program in ("cmake", "ninja", "clang++-19", "clang-tidy-19", "qmllint"):
            self.write(f"bin/{program}", "#!/bin/sh\nexit 0\n", executable=True)
        self.environment = {"PATH": f"{self.root}/bin:{os.environ['PATH']}"}

    def test_a_check_is_red_when_only_its_first_step_fails(self):
        steps = {"qmllint": "scripts/checks/qml_modules.py", "tidy": "scripts/checks/tidy_units.py", "shell": "scripts/a"}
        for name, path in steps.items():
            with self.subTest(check=name):
                self.write(path, "#!/usr/bin/env bash\n", executable=True)
                good = self.check(name)
                self.assertEqual(good.returncode, 0, good.stdout)
                self.write(path, "#!/usr/bin/env bash\nfi\n", executable=True)
                bad = self.check(name)
                self.assertEqual(bad.returncode, 1, bad.stdout)
                self.assertIn(f"FAIL  {name}", bad.stdout)

    def test_tidy_names_what_it_leaves_out(self):
        commands = [{"directory": str(self.root), "file": f"core/{name}.cpp"} for name in ("a", "b")]
        self.write("build/dev/compile_commands.json", json.dumps(commands))
        for name in ("a", "b"):
            self.write(f"core/{name}.cpp", "")
        self.write("bin/clang-tidy-19", "#!/bin/sh\nexit 1\n", executable=True)
        self.assertEqual(self.check("tidy").returncode, 1)
        late = self.check("tidy", VARNEL_TIDY_SECONDS="0")
        self.assertEqual(late.returncode, 0, late.stdout)
        for name in ("a", "b"):
            self.assertIn(f"left out, time is up: core/{name}.cpp\n", late.stdout)


class ContinuousIntegration(ScratchCase):
    """.ci/run in a copy of the tree's scripts, with stages that are stubs."""

    def ci(self, test, check, **environment):
        self.run_program("cp", "-r", REPOSITORY / "scripts", REPOSITORY / ".ci", self.root)
        results = self.write("results.xml", result_file(("run", GTEST_GREEN)))
        keep = f"#!/bin/sh\nmkdir -p build/dev && cp {results} build/dev/test-results.xml\n"
        self.write("scripts/test", keep + test, executable=True)
        self.write("scripts/check", "#!/bin/sh\necho checking\n" + check, executable=True)
        result = self.run_program(self.root / ".ci" / "run", environment=environment)
        return result.returncode, result.stdout.rstrip().splitlines()[-1], result.stdout

    def test_the_last_line_counts_and_a_red_stage_ends_the_run(self):
        code, last, output = self.ci("exit 0", "exit 0")
        self.assertEqual((code, last), (0, "7 passed, 0 failed"), output)
        code, last, output = self.ci("exit 3", "exit 0")
        self.assertEqual((code, last), (1, "7 passed, 0 failed"), output)
        self.assertNotIn("checking", output)
        code, last, output = self.ci("exit 0", "exit 1")
        self.assertEqual((code, last), (1, "7 passed, 0 failed"), output)

    def test_a_stage_that_does_not_end_is_ended(self):
        code, last, output = self.ci("exec tail -f /dev/null", "exit 0", VARNEL_CI_BUDGET="1")
        self.assertEqual((code, last), (1, "7 passed, 0 failed"), output)
        self.assertIn("was ended", output)


if __name__ == "__main__":
    unittest.main()
