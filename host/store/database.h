// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace varnel::store {

/// SQLite could not do its work: disk full, file damaged. A bridge that cannot write cannot keep a promise, so this is
/// not an expected failure: it ends the request in hand, and nothing of a transaction that was open is kept.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One prepared statement with its values; throws StoreError when SQLite refuses. Lives shorter than its database.
class Statement {
 public:
  Statement(sqlite3* database, std::string_view sql);

  /// Binds the values to the parameters from the first on.
  template <class... Values>
  Statement& bind(const Values&... values) {
    int index = 0;
    (bindOne(++index, values), ...);
    return *this;
  }

  /// True while there is a row to read.
  bool step();
  /// For statements without rows.
  void run();
  /// Makes it ready to be bound and run once more.
  void reset();

  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double number(int column) const;
  [[nodiscard]] std::string text(int column) const;
  [[nodiscard]] bool isNull(int column) const;
  [[nodiscard]] std::optional<std::string> optionalText(int column) const;

 private:
  void bindOne(int index, std::int64_t value);
  void bindOne(int index, double value);
  void bindOne(int index, std::string_view value);
  void bindOne(int index, std::nullptr_t);
  void bindOne(int index, bool value) { bindOne(index, std::int64_t{value}); }
  void bindOne(int index, int value) { bindOne(index, std::int64_t{value}); }
  void bindOne(int index, const std::string& value) { bindOne(index, std::string_view(value)); }
  void bindOne(int index, const char* value) { bindOne(index, std::string_view(value)); }
  template <class T>
  void bindOne(int index, const std::optional<T>& value) {
    if (value) {
      bindOne(index, *value);
    } else {
      bindOne(index, nullptr);
    }
  }

  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

/// The one connection to the bridge's file, in write-ahead mode with full syncs: what has been committed survives a
/// kill and a power cut. Used on one thread.
class Database {
 public:
  /// Opens or makes the file and brings its tables up to date; `:memory:` keeps nothing. The reason when it cannot:
  /// not writable, not a database, written by a newer version.
  static std::expected<Database, std::string> open(const std::filesystem::path& file);

  [[nodiscard]] Statement prepare(std::string_view sql) const { return {m_connection.get(), sql}; }
  void execute(const std::string& sql) const;
  /// Rows touched by the last statement.
  [[nodiscard]] std::int64_t changes() const;

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  std::unique_ptr<sqlite3, Close> m_connection;
};

/// All or nothing: rolled back unless committed.
class Transaction {
 public:
  explicit Transaction(const Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  const Database& m_database;
  bool m_open = true;
};

}  // namespace varnel::store
