// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/database.h"

#include <sqlite3.h>

#include "host/store/fold.h"
#include "host/store/migrations.h"

namespace varnel::store {

namespace {

[[noreturn]] void fail(sqlite3* connection) {
  throw StoreError(sqlite3_errmsg(connection));
}

/// The text of a parameter or column; the terminating NUL is not part of it, a NUL inside is.
std::string_view textOf(sqlite3_value* value) {
  const void* data = sqlite3_value_blob(value);
  return {static_cast<const char*>(data), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void containsFolded(sqlite3_context* context, int, sqlite3_value** values) {
  sqlite3_result_int(context, findFolded(textOf(values[0]), textOf(values[1])) ? 1 : 0);
}

}  // namespace

Statement::Statement(sqlite3* database, std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr) != SQLITE_OK) {
    fail(database);
  }
  m_statement.reset(statement);
}

bool Statement::step() {
  const int result = sqlite3_step(m_statement.get());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) fail(sqlite3_db_handle(m_statement.get()));
  return false;
}

void Statement::run() {
  while (step()) {
  }
}

void Statement::reset() {
  sqlite3_reset(m_statement.get());
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(m_statement.get(), column);
}

double Statement::number(int column) const {
  return sqlite3_column_double(m_statement.get(), column);
}

std::string Statement::text(int column) const {
  const void* data = sqlite3_column_blob(m_statement.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
  return data == nullptr ? std::string() : std::string(static_cast<const char*>(data), size);
}

bool Statement::isNull(int column) const {
  return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

std::optional<std::string> Statement::optionalText(int column) const {
  if (isNull(column)) return std::nullopt;
  return text(column);
}

void Statement::bindOne(int index, std::int64_t value) {
  if (sqlite3_bind_int64(m_statement.get(), index, value) != SQLITE_OK) fail(sqlite3_db_handle(m_statement.get()));
}

void Statement::bindOne(int index, double value) {
  if (sqlite3_bind_double(m_statement.get(), index, value) != SQLITE_OK) fail(sqlite3_db_handle(m_statement.get()));
}

void Statement::bindOne(int index, std::string_view value) {
  // A view of nothing may hold a null pointer, which SQLite would take for NULL.
  const char* data = value.data() == nullptr ? "" : value.data();
  const int result = sqlite3_bind_text64(m_statement.get(), index, data, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  if (result != SQLITE_OK) fail(sqlite3_db_handle(m_statement.get()));
}

void Statement::bindOne(int index, std::nullptr_t) {
  if (sqlite3_bind_null(m_statement.get(), index) != SQLITE_OK) fail(sqlite3_db_handle(m_statement.get()));
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

std::expected<Database, std::string> Database::open(const std::filesystem::path& file) {
  sqlite3* connection = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int result = sqlite3_open_v2(file.c_str(), &connection, flags, nullptr);
  Database database;
  database.m_connection.reset(connection);
  if (result != SQLITE_OK) return std::unexpected(connection ? sqlite3_errmsg(connection) : "out of memory");
  sqlite3_busy_timeout(connection, 5000);
  sqlite3_create_function_v2(connection, "contains_folded", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                             containsFolded, nullptr, nullptr, nullptr);
  try {
    database.execute("PRAGMA journal_mode = WAL");
    database.execute("PRAGMA synchronous = FULL");
    database.execute("PRAGMA foreign_keys = ON");
    if (auto migrated = migrate(database); !migrated) return std::unexpected(migrated.error());
  } catch (const StoreError& error) {
    return std::unexpected(error.what());
  }
  return database;
}

void Database::execute(const std::string& sql) const {
  if (sqlite3_exec(m_connection.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail(m_connection.get());
}

std::int64_t Database::changes() const {
  return sqlite3_changes64(m_connection.get());
}

void Database::Close::operator()(sqlite3* connection) const {
  sqlite3_close_v2(connection);
}

Transaction::Transaction(const Database& database) : m_database(database) {
  m_database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  if (!m_open) return;
  try {
    m_database.execute("ROLLBACK");
  } catch (const StoreError&) {
    // SQLite has rolled back by itself after the failure that brought us here.
  }
}

void Transaction::commit() {
  m_database.execute("COMMIT");
  m_open = false;
}

}  // namespace varnel::store
