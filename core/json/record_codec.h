// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/mp11/algorithm.hpp>
#include <boost/pfr/tuple_size.hpp>

#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/json/codec.h"
#include "core/json/described.h"

namespace varnel::json {

/// A record lists its members once, with BOOST_DESCRIBE_STRUCT in its `*_fields.h`; reading and writing follow from
/// that list and from the members' types. Included only where records are instantiated: it is heavy.
template <Record T>
struct Codec<T> {
  static_assert(boost::pfr::tuple_size_v<T> == boost::mp11::mp_size<Members<T>>::value,
                "a member of this record is missing from its BOOST_DESCRIBE_STRUCT");

  static bool read(Reader& in, T& out) {
    if (!in.enterObject()) return false;
    std::uint64_t seen = 0;
    for (std::size_t next = 0;;) {
      bool more = false;
      if (!in.hasMember(more)) return false;
      if (!more) return complete(in, seen);
      std::size_t index = kSize;
      if (!findMember(in, next, index)) return false;
      if (index == kSize) {
        if (!skipUnknown(in)) return false;
        continue;
      }
      if (!kFields[index].read(in, out)) {
        in.error().prependMember(kFields[index].key.name());
        return false;
      }
      seen |= std::uint64_t{1} << index;
      next = index + 1;
    }
  }

  static bool write(Writer& out, const T& value) {
    if (!out.beginObject()) return false;
    for (const Field& field : kFields) {
      if (!field.write(out, value)) {
        out.error().prependMember(field.key.name());
        return false;
      }
    }
    return out.endObject();
  }

 private:
  struct Field {
    Key key;
    bool required = true;
    bool (*read)(Reader&, T&);
    bool (*write)(Writer&, const T&);
  };

  template <class Member>
  static bool readMember(Reader& in, T& out) {
    auto& member = out.*Member::pointer;
    return Codec<std::remove_reference_t<decltype(member)>>::read(in, member);
  }

  template <class Member>
  static bool writeMember(Writer& out, const T& value) {
    const auto& member = value.*Member::pointer;
    using Type = std::remove_cvref_t<decltype(member)>;
    if constexpr (kIsOptional<Type>) {
      return !member || (out.key(Member::name) && Codec<typename Type::value_type>::write(out, *member));
    } else {
      return out.key(Member::name) && Codec<Type>::write(out, member);
    }
  }

  template <class Member>
  static constexpr Field field() {
    using Type = std::remove_cvref_t<decltype(std::declval<T&>().*Member::pointer)>;
    return {Key(Member::name), !kIsOptional<Type>, &readMember<Member>, &writeMember<Member>};
  }

  template <class... Member>
  static constexpr auto makeFields(boost::mp11::mp_list<Member...>) {
    return std::array<Field, sizeof...(Member)>{field<Member>()...};
  }

  static constexpr auto kFields = makeFields(boost::mp11::mp_rename<Members<T>, boost::mp11::mp_list>());
  static constexpr std::size_t kSize = kFields.size();
  static_assert(kSize <= 64, "the set of seen members is one word");

  /// The member whose key stands next, or `kSize` when it is none of ours. Most writers keep the declared order and
  /// leave out what is absent, so the fields after the last one are tried first, without looking for the key's end.
  static bool findMember(Reader& in, std::size_t next, std::size_t& index) {
    for (index = next; index < kSize; ++index) {
      if (in.takeKey(kFields[index].key)) return true;
    }
    std::string_view key;
    if (!in.readKey(key)) return false;
    for (index = 0; index < kSize && kFields[index].key.name() != key;) ++index;
    return true;
  }

  static bool skipUnknown(Reader& in) {
    std::string_view ignored;
    if (in.skipValue(ignored)) return true;
    in.error().prependMember("?");
    return false;
  }

  static bool complete(Reader& in, std::uint64_t seen) {
    for (std::size_t i = 0; i < kSize; ++i) {
      if (!kFields[i].required || (seen >> i & 1U) != 0) continue;
      in.fail("missing");
      in.error().prependMember(kFields[i].key.name());
      return false;
    }
    return true;
  }
};

}  // namespace varnel::json
