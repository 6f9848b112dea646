# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""The arrows of the house: every kind of use that runs against them is found, and the good ones are let through."""

import unittest

from scratch import REPOSITORY, ScratchCase

# (file, its one line)
ALLOWED = [
    ("core/base/url.cpp", "#include <vector>"),
    ("core/base/url.cpp", "#include <chrono>"),
    ("core/base/url.cpp", '#include "core/base/url.h"'),
    ("core/json/reader.cpp", '#include "core/base/url.h"'),
    ("core/live/request.cpp", '#include "core/wire/session.h"'),
    ("core/live/request.cpp", '// #include "app/model/app_model.h"'),
    ("core/live/request.cpp", "// no std::chrono::system_clock here: the time is passed in"),
    ("app/client/pipeline.cpp", '#include "core/live/request.h"'),
    ("app/client/pipeline.cpp", "#include <QtCore/QTimer>"),
    ("app/client/pipeline.cpp", '#include "pipeline.moc"'),
    ("app/client/answer_parser.cpp", "#include <boost/beast/http/parser.hpp>"),
    ("app/screens/list/list_view.cpp", '#include "app/model/app_model.h"'),
    ("app/main.cpp", '#include "app/screens/list/list_view.h"'),
    ("host/service/bridge.cpp", '#include "host/agent/agent.h"'),
    ("host/agent/demo/showcase.cpp", '#include "host/agent/agent.h"'),
    ("host/http/listener.cpp", "#include <boost/beast/core.hpp>"),
    ("host/cli/main.cpp", '#include "host/agent/demo/showcase.h"'),
    ("tools/inspect/main.cpp", '#include "app/client/api_client.h"'),
    ("tests/e2e/both_test.cpp", '#include "host/http/listener.h"'),
    ("bench/json_bench.cpp", '#include "tests/support/conversation.h"'),
    ("app/screens/list/List.qml", "import QtQuick"),
    ("app/screens/list/List.qml", "import Varnel.Ui"),
]

# (file, its one line, part of the reason)
REFUSED = [
    ("core/json/reader.cpp", '#include "core/wire/session.h"', "core/wire stands above core/json"),
    ("core/json/reader.cpp", '#  include "core/live/request.h"', "core/live stands above core/json"),
    ("core/json/reader.cpp", '#include "app/client/pipeline.h"', "core never uses app"),
    ("core/json/reader.cpp", '#include "host/store/database.h"', "core never uses host"),
    ("core/json/reader.h", '#include "tests/support/clock.h"', "nothing in the house uses tests"),
    ("core/json/reader.cpp", '#include "bench/timer.h"', "nothing in the house uses bench"),
    ("core/json/reader.cpp", '#include "url.h"', "from the top of the tree"),
    ("core/json/reader.cpp", '#include "../base/url.h"', "from the top of the tree"),
    ("core/json/reader.cpp", '#include "core/json/../base/url.h"', "from the top of the tree"),
    ("core/json/reader.cpp", "#include <core/base/url.h>", "in quotes"),
    ("core/json/reader.cpp", '#include "core/cellar/box.h"', "no folder of the house"),
    ("core/json/reader.cpp", "#include <QString>", "no Qt"),
    ("core/json/reader.cpp", "#include <QtCore/QString>", "no Qt"),
    ("core/json/reader.cpp", "#include <boost/asio/awaitable.hpp>", "no Asio"),
    ("core/json/reader.cpp", "#include <boost/beast/http/parser.hpp>", "no Asio"),
    ("core/json/reader.cpp", "#include <thread>", "no threads"),
    ("core/json/reader.cpp", "#include <iostream>", "no I/O"),
    ("core/json/reader.cpp", "#include <fstream>", "no I/O"),
    ("core/json/reader.cpp", "auto now = std::chrono::system_clock::now();", "reads a clock"),
    ("core/json/reader.cpp", 'printf("here\\n");', "never prints"),
    ("core/cellar/box.cpp", "#include <vector>", "core/cellar is no folder of the house"),
    ("core/box.cpp", "#include <vector>", "core is no folder of the house"),
    ("app/client/pipeline.cpp", '#include "app/model/app_model.h"', "app/model stands above app/client"),
    ("app/client/pipeline.cpp", '#include "host/http/listener.h"', "app never uses host"),
    ("app/client/pipeline.cpp", '#include "tools/inspect/arguments.h"', "nothing in the house uses tools"),
    ("app/client/pipeline.cpp", "#include <boost/asio.hpp>", "not in Asio's"),
    ("app/screens/list/list_view.cpp", '#include "app/startup.h"', "composition root"),
    ("host/http/listener.cpp", '#include "app/client/pipeline.h"', "host never uses app"),
    ("host/http/listener.cpp", '#include "host/cli/serve.h"', "host/cli stands above host/http"),
    ("host/agent/demo/showcase.cpp", '#include "host/service/bridge.h"', "host/service stands above host/agent/demo"),
    ("host/agent/demo/showcase.cpp", '#include "host/agent/codex/rpc.h"', "do not know each other"),
    ("host/agent/agent.h", '#include "host/agent/codex/rpc.h"', "host/agent/codex stands above host/agent"),
    ("host/store/database.cpp", "#include <QString>", "no Qt"),
    ("tests/core/json_test.cpp", '#include "clock.h"', "from the top of the tree"),
    ("app/ui/Card.qml", "import Varnel.Screens", "app/screens stands above app/ui"),
    ("app/ui/Card.qml", 'import "../screens/list"', "app/screens stands above app/ui"),
    ("app/ui/Card.qml", 'import "../../host"', "app never uses host"),
]


class Arrows(ScratchCase):
    def setUp(self):
        super().setUp()
        self.write("core/base/empty.h", "")
        for folder, uri in (("ui", "Varnel.Ui"), ("screens", "Varnel.Screens")):
            self.write(f"app/{folder}/CMakeLists.txt", f"qt_add_qml_module(varnel_{folder} STATIC\n  URI {uri} VERSION 1.0)")

    def test_allowed_uses_pass_together(self):
        for number, (path, line) in enumerate(ALLOWED):
            stem, suffix = path.rsplit(".", 1)
            self.write(path if path == "app/main.cpp" else f"{stem}{number}.{suffix}", line + "\n")
        result = self.run_check("arrows.py", self.root)
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_each_refused_use_fails_alone_and_names_file_line_and_reason(self):
        for path, line, reason in REFUSED:
            with self.subTest(path=path, line=line):
                file = self.write(path, "\n" + line + "\n")
                result = self.run_check("arrows.py", self.root)
                file.unlink()
                self.assertEqual(result.returncode, 1, result.stdout)
                self.assertIn(path + ":", result.stdout)
                self.assertIn(reason, result.stdout)
                self.assertEqual(result.stdout.count("\n"), 1, result.stdout)

    def test_line_numbers_survive_comments(self):
        self.write("core/json/reader.cpp", '/* one\n   two */\n#include <vector>\n#include "app/client/x.h"\n')
        self.assertIn("core/json/reader.cpp:4:", self.run_check("arrows.py", self.root).stdout)

    def test_no_sources_is_no_success(self):
        self.assertEqual(self.run_check("arrows.py", self.root / "nowhere").returncode, 2)

    def test_check_fails_on_a_bad_include(self):
        """The whole way: scripts/check in a copy of the scripts, on a tree of its own."""
        self.run_program("cp", "-r", REPOSITORY / "scripts", self.root)
        self.run_program("git", "-C", self.root, "init", "--quiet")
        check = self.root / "scripts" / "check"
        good = self.run_program(check, "--only", "arrows")
        self.assertEqual(good.returncode, 0, good.stdout)
        self.write("host/http/listener.cpp", '#include "app/client/pipeline.h"\n')
        bad = self.run_program(check, "--only", "arrows")
        self.assertEqual(bad.returncode, 1)
        self.assertIn("FAIL  arrows", bad.stdout)
        self.assertIn("host never uses app", bad.stdout)


if __name__ == "__main__":
    unittest.main()
