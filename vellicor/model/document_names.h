// vellicor/model/document_names.h — what element names of documents are taken; defined beside the reader.
#pragma once

#include <string_view>

namespace vellicor {

/// Whether the reader makes an object of an element of that name, or refuses to: such a name can be no property's.
[[nodiscard]] bool namesObjectInDocuments(std::string_view elementName);

}  // namespace vellicor
