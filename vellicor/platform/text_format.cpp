// vellicor/platform/text_format.cpp — the single pass that fills a template.
#include "vellicor/platform/text_format.h"

namespace vellicor::detail {

std::string fill(std::string_view form, const TextArgument* const* arguments, std::size_t count) {
    std::size_t size = form.size();
    for (std::size_t i = 0; i < count; ++i) size += arguments[i]->view().size();
    std::string result;
    result.reserve(size);
    std::size_t used = 0, copied = 0;
    for (std::size_t mark = form.find('%'); mark != form.npos && used < count; mark = form.find('%', mark)) {
        const std::size_t length = placeholderLength(form, mark);
        if (!length) {
            ++mark;  // an ordinary character of the template
            continue;
        }
        result.append(form, copied, mark - copied).append(arguments[used++]->view());
        copied = mark += length;
    }
    return result.append(form, copied);
}

}  // namespace vellicor::detail
