// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringList>

#include <expected>
#include <string>

/// Figures that need a process of their own.
namespace varnel::bench {

QString thisProgram();

/// What a process prints, faults included, which must end well within minutes; else why it did not.
std::expected<QString, std::string> outputOf(const QString& program, const QStringList& arguments);

/// Instructions that the work on one file takes, by callgrind, per byte of it: this program is run with `--once ours
/// FILE` and `--once none FILE`, which leaves the work out. Says why when it cannot be had.
std::expected<double, std::string> instructionsPerByte(const std::string& file);

}  // namespace varnel::bench
