// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace varnel::bench {

/// How many times more reloads our client makes in a second of processor time than a plain Qt program, the answer
/// fetched from a bridge on the loopback interface. The answer is in turn one of these two. Needs an application
/// object.
double loopbackRatio(const std::string& before, const std::string& after);

}  // namespace varnel::bench
