#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

/// An SQLite database. All members throw a Failure that names `shown` if something fails.
class Database {
public:
    enum class Mode { Read, Write };

    Database(const std::string& path, Mode mode, std::string shown);

    /// Runs several statements without results.
    void run(const std::string& sql);

    /// First column of the first row of a query, which must have one.
    std::int64_t number(const std::string& sql);

    sqlite3* handle() const { return _database.get(); }

    [[noreturn]] void fail(int code) const;

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };

    std::string _shown;
    std::unique_ptr<sqlite3, Close> _database;
};

/// A prepared statement. Parameters are added in their order; an empty optional is NULL. The database must outlive it.
class Statement {
public:
    Statement(const Database& database, const std::string& sql);

    Statement& add(std::int64_t value);
    Statement& add(double value);
    Statement& add(const std::string& value);
    Statement& addNull();

    template <class Value> Statement& add(const std::optional<Value>& value) { return value ? add(*value) : addNull(); }

    /// Goes to the next row, if there is one.
    bool step();

    /// Makes it ready for new parameters.
    void begin();

    /// Runs a statement without rows, and makes it ready for new parameters.
    void run();

    std::optional<std::string> text(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    void _check(int code) const;

    const Database& _database;
    std::unique_ptr<sqlite3_stmt, Finalize> _statement;
    int _next = 1; ///< parameter
};
