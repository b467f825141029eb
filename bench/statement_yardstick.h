// The yardstick of parsing: how long SQLite takes to prepare a statement of the same length.
#pragma once

#include <stdexcept>
#include <string>

#include <sqlite3.h>

namespace vornwout {

/// A statement database with one table, on which statements are prepared.
class StatementYardstick {
 public:
  StatementYardstick() {
    if (sqlite3_open(":memory:", &database_) != SQLITE_OK ||
        sqlite3_exec(database_, "CREATE TABLE sales(region, city, year, amount, note)", nullptr,
                     nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error("the yardstick's database cannot be made");
    }
  }
  ~StatementYardstick() { sqlite3_close(database_); }
  StatementYardstick(const StatementYardstick&) = delete;
  StatementYardstick& operator=(const StatementYardstick&) = delete;

  void prepare(const std::string& statement, int repeats) {
    for (int i = 0; i < repeats; ++i) {
      sqlite3_stmt* prepared = nullptr;
      if (sqlite3_prepare_v2(database_, statement.c_str(), static_cast<int>(statement.size()),
                             &prepared, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
      }
      sqlite3_finalize(prepared);
    }
  }

 private:
  sqlite3* database_ = nullptr;
};

/// A statement of exactly `length` bytes: conditions, each much like a keyword with its value.
inline std::string statementOf(std::size_t length) {
  std::string statement = "SELECT region,amount FROM sales WHERE year=2026";
  while (statement.size() + 60 < length) statement += " AND note='of the quarter' OR amount>12";
  if (length < statement.size() + 10) throw std::logic_error("no statement has this length");
  statement += " OR note='";
  statement.append(length - statement.size() - 1, 'x');
  return statement + "'";
}

}  // namespace vornwout
