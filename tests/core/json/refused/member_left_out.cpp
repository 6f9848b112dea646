// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT

// Must not compile: the description of this record leaves a member out.
#include <boost/describe/class.hpp>

#include "core/json/record_codec.h"

struct Incomplete {
  std::string kept;
  std::optional<double> forgotten;
};
BOOST_DESCRIBE_STRUCT(Incomplete, (), (kept))

bool read(varnel::json::Reader& in, Incomplete& out) {
  return varnel::json::Codec<Incomplete>::read(in, out);
}
