// vellicor/model/whereabouts.h — saying which object of a document is meant.
#pragma once

#include <string>

#include "vellicor/model/forward.h"
#include "vellicor/platform/log.h"

namespace vellicor {

/// For people: "column a of table t, line 12", without what is not known.
[[nodiscard]] std::string whereabouts(const SQLObject& object);

/// Makes an object the subject of the lines that the thread logs while this lives.
class ObjectSubject : public LogSubject {
public:
    explicit ObjectSubject(const SQLObject& object) : _object(object) {}

private:
    [[nodiscard]] std::string description() const override { return whereabouts(_object); }

    const SQLObject& _object;
};

}  // namespace vellicor
