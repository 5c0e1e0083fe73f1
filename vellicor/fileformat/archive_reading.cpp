// vellicor/fileformat/archive_reading.cpp — objects out of archives, read like documents.
#include "vellicor/model/archive_reading.h"

#include "vellicor/fileformat/parser.h"
#include "vellicor/model/object_peer.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::shared_ptr<SQLObjectPeer> objectFromArchivedXML(std::string_view xml) {
    try {
        return as<SQLObjectPeer>(Parser().parseDetachedObject(xml));
    } catch (const SQLException& failure) {
        log(text("An archived object cannot be read and is left out: %@", failure.reason()));
        return nullptr;
    }
}

}  // namespace vellicor
