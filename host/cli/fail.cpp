// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <iostream>

#include "host/cli/commands.h"
#include "host/service/log.h"

namespace varnel::cli {

int fail(const std::string& sentence) {
  std::cerr << "varnel: " << service::printable(sentence) << '\n' << std::flush;
  return 1;
}

}  // namespace varnel::cli
