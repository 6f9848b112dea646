// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>
#include <boost/pfr/tuple_size.hpp>

#include <array>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/base/url.h"
#include "core/json/enum_names.h"
#include "core/json/excerpt.h"
#include "core/json/raw_value.h"
#include "core/json/reader.h"
#include "core/json/value.h"
#include "core/json/writer.h"

/// One codec for everything that crosses the bridge. A record lists its members once, with BOOST_DESCRIBE_STRUCT in its
/// `*_fields.h`; reading, writing, comparing and hashing follow from that list and from the members' types. Included
/// only where records are instantiated: it is heavy.
namespace varnel::json {

template <class T>
struct Codec;

template <class T>
using Members = boost::describe::describe_members<T, boost::describe::mod_public>;

template <class T>
concept Record = std::is_aggregate_v<T> && boost::describe::has_describe_members<T>::value;

template <class T>
inline constexpr bool kIsOptional = false;
template <class T>
inline constexpr bool kIsOptional<std::optional<T>> = true;

template <>
struct Codec<std::string> {
  static bool read(Reader& in, std::string& out) { return in.readString(out); }
  static bool write(Writer& out, const std::string& value) { return out.string(value); }
};

template <>
struct Codec<double> {
  static bool read(Reader& in, double& out) { return in.readDouble(out); }
  static bool write(Writer& out, double value) { return out.number(value); }
};

template <>
struct Codec<std::int64_t> {
  static bool read(Reader& in, std::int64_t& out) { return in.readInteger(out); }
  static bool write(Writer& out, std::int64_t value) { return out.integer(value); }
};

template <>
struct Codec<bool> {
  static bool read(Reader& in, bool& out) { return in.readBool(out); }
  static bool write(Writer& out, bool value) { return out.boolean(value); }
};

template <>
struct Codec<JSONValue> {
  static bool read(Reader& in, JSONValue& out);
  static bool write(Writer& out, const JSONValue& value);
};

template <>
struct Codec<JSONValue::Object> {
  static bool read(Reader& in, JSONValue::Object& out);
  static bool write(Writer& out, const JSONValue::Object& value);
};

/// Keeps the text, checked in full, in place of the tree.
template <>
struct Codec<RawValue> {
  static bool read(Reader& in, RawValue& out) {
    std::string_view text;
    if (!in.skipValue(text)) return false;
    out = RawValue::adopt(std::string(text));
    return true;
  }
  static bool write(Writer& out, const RawValue& value) { return Codec<JSONValue>::write(out, value.value()); }
};

template <>
struct Codec<base::Url> {
  static bool read(Reader& in, base::Url& out) {
    std::string text;
    if (!in.readString(text)) return false;
    const auto url = base::Url::parse(text);
    if (!url) return in.fail("not a URL");
    out = *url;
    return true;
  }
  static bool write(Writer& out, const base::Url& value) { return out.string(value.text()); }
};

template <NamedEnum E>
struct Codec<E> {
  static bool read(Reader& in, E& out) {
    std::string text;
    if (!in.readString(text)) return false;
    const auto value = fromName<E>(text);
    if (!value) return in.fail("unknown value " + excerpt(text));
    out = *value;
    return true;
  }
  static bool write(Writer& out, E value) { return out.string(nameOf(value)); }
};

/// Null leaves it absent; that an absent member is not written at all is the record's business.
template <class T>
struct Codec<std::optional<T>> {
  static bool read(Reader& in, std::optional<T>& out) {
    Kind kind{};
    if (!in.peek(kind)) return false;
    if (kind != Kind::Null) return Codec<T>::read(in, out.emplace());
    out.reset();
    return in.readNull();
  }
};

template <class T>
struct Codec<std::vector<T>> {
  static bool read(Reader& in, std::vector<T>& out) {
    out.clear();
    if (!in.enterArray()) return false;
    for (bool more = true;;) {
      if (!in.nextElement(more)) return false;
      if (!more) return true;
      if (!Codec<T>::read(in, out.emplace_back())) {
        in.error().prependIndex(out.size() - 1);
        return false;
      }
    }
  }
  static bool write(Writer& out, const std::vector<T>& value) {
    if (!out.beginArray()) return false;
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (!Codec<T>::write(out, value[i])) {
        out.error().prependIndex(i);
        return false;
      }
    }
    return out.endArray();
  }
};

template <Record T>
struct Codec<T> {
  static_assert(boost::pfr::tuple_size_v<T> == boost::mp11::mp_size<Members<T>>::value,
                "a member of this record is missing from its BOOST_DESCRIBE_STRUCT");

  static bool read(Reader& in, T& out) {
    if (!in.enterObject()) return false;
    std::uint64_t seen = 0;
    for (std::size_t next = 0;;) {
      std::string_view key;
      bool more = false;
      if (!in.nextMember(key, more)) return false;
      if (!more) return complete(in, seen);
      const std::size_t index = find(key, next);
      std::string_view ignored;
      if (index == kSize ? !in.skipValue(ignored) : !kFields[index].read(in, out)) {
        in.error().prependMember(index == kSize ? std::string_view("?") : kFields[index].name);
        return false;
      }
      if (index != kSize) {
        seen |= std::uint64_t{1} << index;
        next = index + 1;
      }
    }
  }

  static bool write(Writer& out, const T& value) {
    if (!out.beginObject()) return false;
    for (const Field& field : kFields) {
      if (!field.write(out, value)) {
        out.error().prependMember(field.name);
        return false;
      }
    }
    return out.endObject();
  }

 private:
  struct Field {
    std::string_view name;
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
    return {Member::name, !kIsOptional<Type>, &readMember<Member>, &writeMember<Member>};
  }

  template <class... Member>
  static constexpr auto makeFields(boost::mp11::mp_list<Member...>) {
    return std::array<Field, sizeof...(Member)>{field<Member>()...};
  }

  static constexpr auto kFields = makeFields(boost::mp11::mp_rename<Members<T>, boost::mp11::mp_list>());
  static constexpr std::size_t kSize = kFields.size();
  static_assert(kSize <= 64, "the set of seen members is one word");

  /// Most writers keep the declared order, so the field after the last one is tried first.
  static std::size_t find(std::string_view key, std::size_t next) {
    for (std::size_t i = 0; i < kSize; ++i, ++next) {
      if (next >= kSize) next = 0;
      if (kFields[next].name == key) return next;
    }
    return kSize;
  }

  static bool complete(Reader& in, std::uint64_t seen) {
    for (std::size_t i = 0; i < kSize; ++i) {
      if (!kFields[i].required || (seen >> i & 1U) != 0) continue;
      in.fail("missing");
      in.error().prependMember(kFields[i].name);
      return false;
    }
    return true;
  }
};

/// Reads exactly one value from a text.
template <class T>
std::expected<T, DecodeError> decodeText(std::string_view text) {
  Reader in(text);
  T value{};
  if (Codec<T>::read(in, value) && in.finish()) return value;
  return std::unexpected(std::move(in.error()));
}

template <class T>
std::expected<std::string, DecodeError> encodeText(const T& value) {
  Writer out;
  if (Codec<T>::write(out, value)) return out.text();
  return std::unexpected(std::move(out.error()));
}

template <Record T>
bool equal(const T& a, const T& b) {
  bool same = true;
  boost::mp11::mp_for_each<Members<T>>([&](auto member) { same = same && a.*member.pointer == b.*member.pointer; });
  return same;
}

inline void mixHash(std::size_t& seed, std::size_t value) {
  // The mixer of splitmix64 over both.
  std::uint64_t x = seed + 0x9e3779b97f4a7c15U + value;
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
  seed = x ^ (x >> 31);
}

template <class T>
std::size_t hashValue(const T& value) {
  std::size_t seed = 0;
  if constexpr (Record<T>) {
    boost::mp11::mp_for_each<Members<T>>([&](auto member) { mixHash(seed, hashValue(value.*member.pointer)); });
  } else if constexpr (kIsOptional<T>) {
    if (value) mixHash(seed, hashValue(*value) + 1);
  } else if constexpr (std::is_same_v<T, JSONValue::Object>) {
    seed = JSONValue(value).hash();
  } else if constexpr (std::is_same_v<T, base::Url>) {
    seed = std::hash<std::string>{}(value.text());
  } else if constexpr (requires { typename T::allocator_type; } && !std::is_same_v<T, std::string>) {
    for (const auto& element : value) mixHash(seed, hashValue(element));
  } else {
    seed = std::hash<T>{}(value);
  }
  return seed;
}

}  // namespace varnel::json
