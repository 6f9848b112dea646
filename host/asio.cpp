// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Asio and Beast are compiled here and nowhere else: see BOOST_ASIO_SEPARATE_COMPILATION in CMakeLists.txt.
#include <boost/asio/impl/src.hpp>
#include <boost/beast/src.hpp>
