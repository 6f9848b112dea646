// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// What must hold before a figure means anything. Each throws, naming what is wrong, when it does not.
namespace varnel::bench {

/// Every decoder gives the same items, requests and conversation, and the comparison itself notices a single changed
/// byte.
void checkDetailAgreement(const std::string& body);
void checkEventAgreement(const std::vector<std::string>& events);

/// A fault inside the detail of an item, where a lazy reader would not look, makes our decoder refuse the answer.
void checkRefusals(const std::string& body);

}  // namespace varnel::bench
