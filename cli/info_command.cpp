// cli/info_command.cpp — `vellicor info`: what a document is and holds.
#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands.h"
#include "cli/dialect_names.h"
#include "cli/document_command.h"
#include "cli/document_facts.h"
#include "cli/document_input.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/result.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/schema.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct InfoOptions {
    std::string document;
    PreferenceOptions preferences;
    ReportOptions report;
};

/// A name with how many objects belong to it; `more` is what else there is to say of it.
struct Group {
    std::string name;
    std::int64_t objects;
    std::string more;
};

struct Facts {
    std::string dialect;
    std::string generator;
    std::string generatorVersion;
    std::string fileFormatVersion;
    bool recoveredEarlier;
    std::map<std::string, std::int64_t> counts;
    std::vector<Group> schemas;
    std::vector<Group> labels;
};

Facts factsOf(const Document& document, Messages& messages) {
    const SQLContainer& container = *document.container;
    const SQLDocumentInfo& info = *container.documentInfo();
    Facts facts{
        .dialect = dialectOf(container, messages),
        .generator = info.getProperty(keys::generator),
        .generatorVersion = info.getProperty(keys::generatorVersion),
        .fileFormatVersion = info.getProperty(keys::fileFormatVersion),
        .recoveredEarlier = !document.recovered && container.getPropertyAsBoolean(keys::documentRecoveryOccurred),
        .counts = countsByClass(container),
        .schemas = {},
        .labels = {}};
    for (const auto& schema : container.schemaList())
        if (!schema->isUnspecifiedSchema() || !schema->isEmpty())
            facts.schemas.push_back(
                {schema->displayName(), static_cast<std::int64_t>(schema->objectList().size()), {}});
    const SQLObjectLabelManager& labels = *container.objectLabelManager();
    for (const auto& label : labels.labelList())
        facts.labels.push_back({label->getName(),
                                static_cast<std::int64_t>(labels.countOfObjectsWithLabel(label.get())),
                                label->colorString()});
    return facts;
}

std::string groupsText(const std::vector<Group>& groups) {
    std::vector<std::string> parts;
    for (const Group& group : groups) parts.push_back(text("%@ (%ld)", group.name, group.objects));
    return parts.empty() ? "none" : joined(parts, ", ");
}

std::string factsText(const Document& document, const Facts& facts) {
    std::string all;
    const auto line = [&all](std::string_view name, std::string_view value) {
        all += text("%@%@%@\n", name, std::string(name.size() < 20 ? 20 - name.size() : 1, ' '), singleLine(value));
    };
    line("document", document.name);
    line("dialect", facts.dialect);
    line("file format", facts.fileFormatVersion);
    line("generator", text("%@ %@", facts.generator, facts.generatorVersion));
    line("state", document.recovered       ? "damaged, repaired while reading"
                  : facts.recoveredEarlier ? "repaired before it was saved"
                                           : "intact");
    line("schemas", groupsText(facts.schemas));
    line("labels", groupsText(facts.labels));
    for (const auto& [name, count] : facts.counts) line(name, text("%ld", count));
    return all;
}

Value::List groupsJson(const std::vector<Group>& groups) {
    Value::List list;
    for (const Group& group : groups) {
        Value::Map map{{"name", group.name}, {"objects", Value::integer(group.objects)}};
        if (!group.more.empty()) map["color"] = group.more;
        list.push_back(std::move(map));
    }
    return list;
}

Value::Map factsJson(const Document& document, const Facts& facts, const Messages& messages) {
    return {{"document", document.name},
            {"dialect", facts.dialect},
            {"generator", facts.generator},
            {"generatorVersion", facts.generatorVersion},
            {"fileFormatVersion", facts.fileFormatVersion},
            {"recovered", Value::boolean(document.recovered)},
            {"recoveredEarlier", Value::boolean(facts.recoveredEarlier)},
            {"schemas", groupsJson(facts.schemas)},
            {"labels", groupsJson(facts.labels)},
            {"counts", jsonCounts(facts.counts)},
            {"events", messages.events()}};
}

ExitCode showFacts(const InfoOptions& options, Messages& messages) {
    applyPreferences(options.preferences, messages);
    const Document document = readDocument(options.document, messages);
    const Facts facts = factsOf(document, messages);
    requireClean(messages, options.report);
    if (options.report.json)
        writeJson(factsJson(document, facts, messages));
    else
        Output::standard().write(factsText(document, facts));
    return kDone;
}

}  // namespace

void addInfoCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App& command =
        *app.add_subcommand("info", "show what a document holds: counts, dialect, versions, schemas, labels");
    addDocument(command, options->document);
    completeDocumentCommand(command, session, options, showFacts);
}

}  // namespace vellicor::cli
