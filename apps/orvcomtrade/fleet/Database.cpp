#include "fleet/Database.h"

#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <new>
#include <sqlite3.h>
#include <utility>

namespace {

const char* adviceOn(int code) {
    constexpr unsigned primary = 0xFF; // bits of an extended code
    switch (static_cast<unsigned>(code) & primary) {
    case SQLITE_CORRUPT:
        return ": damaged; remove it, and make it again with orvcomtrade catalogue";
    default:
        return "";
    }
}

} // namespace

Database::Database(const std::string& path, Mode mode, std::string shown) : _shown(std::move(shown)) {
    sqlite3* database = nullptr;
    const int flags = mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    const int code = sqlite3_open_v2(path.c_str(), &database, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    _database.reset(database);
    if (code != SQLITE_OK) {
        fail(code);
    }
    sqlite3_extended_result_codes(database, 1);
    if (mode == Mode::Read) {
        run("PRAGMA trusted_schema=OFF; PRAGMA cell_size_check=ON;"); // it may come from anywhere
    }
}

void Database::run(const std::string& sql) {
    const int code = sqlite3_exec(_database.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

std::int64_t Database::number(const std::string& sql) {
    Statement query(*this, sql);
    query.step();
    const std::optional<std::string> value = query.text(0);
    return value ? std::stoll(*value) : 0;
}

void Database::fail(int code) const {
    if (code == SQLITE_NOMEM) {
        throw std::bad_alloc();
    }
    if (code == SQLITE_NOTADB) {
        throw Failure(kRecordingProblem, printable(_shown) + ": not a catalogue");
    }
    const char* const reason = _database ? sqlite3_errmsg(_database.get()) : sqlite3_errstr(code);
    throw Failure(kRecordingProblem, fmt::format("{}: {}{}", printable(_shown), printable(reason), adviceOn(code)));
}

void Database::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

Statement::Statement(const Database& database, const std::string& sql) : _database(database) {
    sqlite3_stmt* statement = nullptr;
    _check(sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &statement, nullptr));
    _statement.reset(statement);
}

Statement& Statement::add(std::int64_t value) {
    _check(sqlite3_bind_int64(_statement.get(), _next++, value));
    return *this;
}

Statement& Statement::add(double value) {
    _check(sqlite3_bind_double(_statement.get(), _next++, value));
    return *this;
}

Statement& Statement::add(const std::string& value) {
    _check(sqlite3_bind_text64(_statement.get(), _next++, value.data(), value.size(),
                               SQLITE_TRANSIENT, // NOLINT: the cast is SQLite's
                               SQLITE_UTF8));
    return *this;
}

Statement& Statement::addNull() {
    _check(sqlite3_bind_null(_statement.get(), _next++));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(_statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        _database.fail(code);
    }
    return code == SQLITE_ROW;
}

void Statement::begin() {
    _check(sqlite3_reset(_statement.get()));
    _next = 1;
}

void Statement::run() {
    step();
    begin();
}

std::optional<std::string> Statement::text(int column) const {
    const auto* const text = sqlite3_column_text(_statement.get(), column);
    if (text == nullptr) {
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(_statement.get(), column));
    return std::string(reinterpret_cast<const char*>(text), size); // NOLINT: SQLite's text is unsigned
}

void Statement::_check(int code) const {
    if (code != SQLITE_OK) {
        _database.fail(code);
    }
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}
