# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""scripts/setup against a machine made of stubs: its own PATH, an apt-get that follows a script, an id and a sudo."""

import shutil
import unittest

from scratch import REPOSITORY, ScratchCase

TOOLS = "bash env dirname realpath sed grep sort paste fold wc head cat rm true".split()

# Answers a call by the first file that exists among STATE/VERB.1, STATE/VERB.2 ..., each used once, then by
# STATE/VERB; the first line is the exit code, the rest what is printed. Calls are written to STATE/calls.
APT_GET = """#!/bin/bash
verb=install
for word in "$@"; do
  case $word in --simulate) verb=simulate ;; update) verb=update ;; esac
done
echo "$verb as $WHO: $*" >>"$STATE/calls"
for answer in "$STATE/$verb".[0-9] "$STATE/$verb"; do [[ ! -f $answer ]] || break; done
[[ -f $answer ]] || { echo "E: no answer for $verb"; exit 99; }
{ read -r code; cat; } <"$answer"
[[ $answer == "$STATE/$verb" ]] || rm "$answer"
exit "$code"
"""
SUDO = """#!/bin/bash
[[ $1 == -n ]] && shift
[[ -f $STATE/sudo-allowed ]] || { echo "sudo: a password is required" >&2; exit 1; }
WHO=root exec "$@"
"""

NOTHING_TO_DO = "0\n0 upgraded, 0 newly installed, 0 to remove.\n"
TWO_MISSING = "0\nInst ninja-build (1.11 Debian:12 [amd64])\nInst clang-19 [18.0] (19.1 Debian:12 [amd64])\nConf clang-19\n"
NO_LISTS = "100\nE: Unable to locate package ninja-build\n"


class Setup(ScratchCase):
    def setUp(self):
        super().setUp()
        self.bin = self.root / "bin"
        self.bin.mkdir()
        for tool in TOOLS:
            (self.bin / tool).symlink_to(shutil.which(tool))
        self.write("bin/apt-get", APT_GET, executable=True)
        self.user("root")

    def user(self, name, sudo=None):
        self.who = name
        self.write("bin/id", f"#!/bin/bash\necho {0 if name == 'root' else 1000}\n", executable=True)
        if sudo is not None:
            self.write("bin/sudo", SUDO, executable=True)
            if sudo:
                self.write("state/sudo-allowed", "")

    def apt(self, **answers):
        for name, text in answers.items():
            self.write("state/" + name.replace("_", "."), text)

    def setup(self, *arguments):
        environment = {"PATH": str(self.bin), "STATE": str(self.root / "state"), "WHO": self.who}
        environment["DEB_BUILD_PROFILES"] = "nocheck"
        (self.root / "state").mkdir(exist_ok=True)
        result = self.run_program(REPOSITORY / "scripts" / "setup", *arguments, environment=environment)
        calls = self.root / "state" / "calls"
        return result, calls.read_text().splitlines() if calls.exists() else []

    def assert_one_sentence(self, result, *words):
        self.assertEqual(result.returncode, 1, result.stdout)
        last = result.stdout.rstrip().splitlines()[-1]
        self.assertTrue(last.startswith("scripts/setup: "), result.stdout)
        for word in words:
            self.assertIn(word, last)

    def test_all_there_needs_neither_root_nor_network(self):
        self.user("someone")
        self.apt(simulate=NOTHING_TO_DO)
        result, calls = self.setup()
        self.assertEqual((result.returncode, result.stdout.count("\n")), (0, 1), result.stdout)
        self.assertEqual(len(calls), 1)
        self.assertIn("--simulate", calls[0])

    def test_installs_what_it_announced(self):
        for user, sudo in (("root", None), ("someone", True)):
            with self.subTest(user=user):
                (self.root / "state" / "calls").unlink(missing_ok=True)
                self.user(user, sudo)
                self.apt(simulate=TWO_MISSING, install="0\nSetting up\n")
                result, calls = self.setup()
                self.assertEqual(result.returncode, 0, result.stdout)
                announced, done = result.stdout.index("clang-19 ninja-build"), result.stdout.index("Setting up")
                self.assertLess(announced, done)
                self.assertIn("install as root:", calls[-1])
                for flag in ("build-dep", "--no-install-recommends", "--no-remove", "--yes", "./"):
                    self.assertIn(flag, calls[-1].split())

    def test_bench_asks_for_its_profile_only(self):
        self.apt(simulate=TWO_MISSING, install="0\n")
        plain = self.setup()[1]
        self.assertNotIn("pkg.varnel.bench", "\n".join(plain))
        bench = self.setup("--bench")[1][len(plain) :]
        self.assertTrue(all("--build-profiles pkg.varnel.bench" in call for call in bench), bench)

    def test_missing_lists_are_fetched_once(self):
        self.apt(simulate_1=NO_LISTS, update="0\n", simulate=TWO_MISSING, install="0\n")
        result, calls = self.setup()
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertEqual([call.split()[0] for call in calls], ["simulate", "update", "simulate", "install"])

    def test_outdated_lists_are_fetched_and_the_install_tried_again(self):
        self.apt(simulate=TWO_MISSING, install_1="100\nE: Failed to fetch 404\n", update="0\n", install="0\n")
        result, calls = self.setup()
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertEqual([call.split()[0] for call in calls], ["simulate", "install", "update", "install"])

    def test_no_network_is_named(self):
        down = "0\nW: Failed to fetch http://mirror.invalid  Could not resolve\n"
        self.apt(simulate=NO_LISTS, update=down)
        self.assert_one_sentence(self.setup()[0], "ninja-build", "is the network up?")
        self.apt(simulate=TWO_MISSING, install="100\nE: Failed to fetch\n")
        self.assert_one_sentence(self.setup()[0], "could not install", "is the network up?")

    def test_a_package_that_does_not_exist_is_named(self):
        unmet = "100\n builddeps:./ : Depends: libboost1.81-dev but it is not installable\nE: Unable to correct problems\n"
        self.apt(simulate=unmet, update="0\n")
        self.assert_one_sentence(self.setup()[0], "libboost1.81-dev but it is not installable")

    def test_removals_are_refused(self):
        self.apt(simulate="0\nRemv precious [1.0]\nInst ninja-build (1.11)\n")
        result, calls = self.setup()
        self.assert_one_sentence(result, "remove", "precious")
        self.assertEqual(len(calls), 1)

    def test_without_root_it_says_so(self):
        self.apt(simulate=TWO_MISSING)
        self.user("someone")
        self.assert_one_sentence(self.setup()[0], "needs root")
        self.user("someone", sudo=False)
        result, calls = self.setup()
        self.assert_one_sentence(result, "sudo would ask for a password")
        self.assertTrue(all(call.startswith("simulate") for call in calls), calls)

    def test_without_apt_get_it_says_so(self):
        (self.bin / "apt-get").unlink()
        self.assert_one_sentence(self.setup()[0], "there is no apt-get")

    def test_wrong_usage(self):
        result, calls = self.setup("--everything")
        self.assertEqual((result.returncode, calls), (2, []))
        self.assertIn("usage:", result.stdout)


if __name__ == "__main__":
    unittest.main()
