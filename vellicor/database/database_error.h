// vellicor/database/database_error.h — what goes wrong with databases.
#pragma once

#include <string>

#include "vellicor/platform/exception.h"

namespace vellicor {

/// The reason is a sentence for people: which database, what is wrong, what to do. It never holds a password.
class DatabaseError : public SQLException {
public:
    enum class Kind {
        BadUrl,    ///< the text names no database
        NotThere,  ///< no such file, server, database or schema
        Refused,   ///< the engine does not let us in, or not read what is needed
        Failed,    ///< a statement failed, or the connection was lost
        NotBuilt,  ///< this build has no client for the engine
        TooOld,    ///< the server's version is not served
    };
    DatabaseError(Kind kind, const std::string& reason) : SQLException("DatabaseError", reason), _kind(kind) {}
    [[nodiscard]] Kind kind() const { return _kind; }

private:
    Kind _kind;
};

}  // namespace vellicor
