// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace varnel::dictate {

/// How many samples from the start are to be recognised by themselves, since models lose their way in long speech: up
/// to the middle of a pause of 0.4 s that comes after 8 s, or else to the quietest moment between 18 and 25 s. 0 while
/// neither has come.
std::size_t cutAfter(std::span<const std::int16_t> samples, int rate);

/// The same speech with 0.5 s of quiet at both ends, neither more nor less: a model that hears a second of silence
/// first may take all of it for silence, and one that hears none mistakes the first word.
std::vector<std::int16_t> withEvenMargins(std::span<const std::int16_t> samples, int rate);

}  // namespace varnel::dictate
