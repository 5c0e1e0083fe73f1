// vellicor/model/archive_reading.h — objects out of archives; defined beside the reader of documents.
#pragma once

#include <memory>
#include <string_view>

#include "vellicor/model/forward.h"

namespace vellicor {

/// The object that one element of a document describes, without a container; null when the text describes none.
[[nodiscard]] std::shared_ptr<SQLObjectPeer> objectFromArchivedXML(std::string_view xml);

}  // namespace vellicor
