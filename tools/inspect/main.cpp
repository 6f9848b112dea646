// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <iterator>

#include "core/json/text.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

namespace {

int refuseUsage(const std::string& reason) {
  std::cerr << (reason.empty() ? "" : reason + "\n\n") << usage();
  return kExitUsage;
}

/// The result of one line of input: the line is JSON, a JSON string where the subject reads text.
Outcome convertLine(const Subject& subject, const Converter& converter, const std::string& line) {
  if (subject.input == Subject::Input::JSON) return converter(line);
  const auto text = json::parse(line);
  if (!text) return std::unexpected(text.error().message());
  if (text->string() == nullptr) return std::unexpected("expected a string");
  return converter(*text->string());
}

int convertLines(const Subject& subject, const Converter& converter) {
  std::string line;
  while (std::getline(std::cin, line)) {
    const Outcome outcome = convertLine(subject, converter, line);
    if (outcome) {
      std::cout << R"({"ok":)" << *outcome << "}\n";
    } else {
      const auto reason = json::write(json::JSONValue(outcome.error()));
      std::cout << R"({"error":)" << reason.value_or(R"("the reason is not UTF-8")") << "}\n";
    }
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
  }
  return kExitOk;
}

int convertAll(const Converter& converter) {
  const std::string input(std::istreambuf_iterator<char>(std::cin), {});
  const Outcome outcome = converter(input);
  if (!outcome) {
    std::cerr << outcome.error() << "\n";
    return kExitRefused;
  }
  std::cout << *outcome << "\n";
  return kExitOk;
}

int run(const std::vector<std::string>& words) {
  const auto command = parseCommandLine(words);
  if (!command) return refuseUsage(command.error());
  if (command->help) {
    std::cout << usage();
    return kExitOk;
  }
  if (command->subject.empty()) return refuseUsage({});
  const auto subject = std::ranges::find(subjects(), command->subject, &Subject::name);
  if (subject == subjects().end()) return refuseUsage("no subject is called " + command->subject);
  if (subject->converter == nullptr) {
    if (command->lines) return refuseUsage("--lines is for subjects that read standard input");
    const int status = subject->run(*command);
    return status == kExitUsage ? refuseUsage({}) : status;
  }
  const auto converter = subject->converter(command->parameters);
  if (!converter) return refuseUsage(command->subject + " takes " + std::string(subject->parameters));
  return command->lines ? convertLines(*subject, *converter) : convertAll(*converter);
}

}  // namespace

}  // namespace varnel::inspect

int main(int argc, char** argv) {
  qputenv("LC_ALL", "C.UTF-8");  // else Qt complains on standard error where no locale is set
  std::ios::sync_with_stdio(false);
  const QCoreApplication application(argc, argv);
  const int status = varnel::inspect::run({argv + 1, argv + argc});
  std::cout.flush();
  return std::cout.good() ? status : varnel::inspect::kExitRefused;
}
