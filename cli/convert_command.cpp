// cli/convert_command.cpp — `vellicor convert`: a document in another form.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "cli/commands.h"
#include "cli/diagram.h"
#include "cli/document_command.h"
#include "cli/document_input.h"
#include "cli/document_part.h"
#include "cli/failure.h"
#include "cli/forms.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/progress.h"
#include "cli/result.h"
#include "vellicor/model/container.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct ConvertOptions {
    std::string document;
    std::string output;
    std::string form;
    bool inPlace = false;
    PartOptions part;
    PreferenceOptions preferences;
    ReportOptions report;
};

std::string xmlForm(const Document& document) {
    // A document that has labels keeps them, unless the user set the preference.
    Preferences& preferences = Preferences::shared();
    if (!document.container->objectLabelManager()->labelList().empty() &&
        !preferences.objectForKey(prefs::documentLevelLabels))
        preferences.setBool(true, prefs::documentLevelLabels);
    std::string all;
    document.container->writeXML([&all](std::string_view piece) { all += piece; });
    return all;
}

std::string jsonForm(const Document& document) { return prettyJsonText(document.container->jsonDictionary()) + "\n"; }

struct Form {
    std::string_view name;
    std::string_view extension;
    std::string (*text)(const Document& document);
};
constexpr Form kForms[] = {
    {"xml", "xml", xmlForm},
    {"json", "json", jsonForm},
    {"markdown", "md", [](const Document& d) { return markdownForm(diagramOf(*d.container), d.stem); }},
    {"mermaid", "mmd", [](const Document& d) { return mermaidForm(diagramOf(*d.container)); }},
    {"dot", "dot", [](const Document& d) { return dotForm(diagramOf(*d.container), d.stem); }},
};

std::vector<std::string> formNames() {
    std::vector<std::string> names;
    for (const Form& form : kForms) names.emplace_back(form.name);
    return names;
}

/// The one that was asked for, or the one of the output's extension.
const Form& chosenForm(const ConvertOptions& options) {
    std::string extension = std::filesystem::path(options.output).extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    for (const Form& form : kForms)
        if (options.form.empty() ? equalIgnoringCase(form.extension, extension) : form.name == options.form)
            return form;
    throw Failure(kBadUse, text("'%@' does not say which form is meant; choose one of %@ with --to", options.output,
                                joined(formNames(), ", ")));
}

/// What replaces the document must be all of it, and of a damaged one a backup stays.
void protectSource(const ConvertOptions& options, const Form& form, const Document& document, const Output& output) {
    if (!output.replaces(document)) return;
    if (form.text != xmlForm)
        throw Failure(kBadUse, text("the %@ would replace the document; choose another file with -o", form.name));
    if (!options.part.isWhole())
        throw Failure(kBadUse, "a part of the document would replace all of it; choose another file with -o");
    if (document.recovered && !options.inPlace)
        throw Failure(
            kBadUse, text("%@ is damaged, and its repaired text would replace it; choose another file with -o, or keep "
                          "a backup of it with --in-place",
                          document.name));
}

/// Where the document goes that was asked for: with --in-place, to where it came from.
ConvertOptions completed(ConvertOptions options) {
    if (options.inPlace && options.output.empty()) options.output = options.document;
    if (options.inPlace && options.output == "-")
        throw Failure(kBadUse, "--in-place needs a file; standard input cannot be replaced");
    if (options.output.empty())
        throw Failure(kBadUse, "--output is required, or --in-place to replace the document itself");
    return options;
}

ExitCode convert(const ConvertOptions& given, Messages& messages) {
    messages.steps().setCount(2);  // reading and converting
    const ConvertOptions options = completed(given);
    applyPreferences(options.preferences, messages);
    const Form& form = chosenForm(options);
    const Document document = readDocument(options.document, messages);
    const Output output = Output::to(options.output, document.stem, form.extension);
    protectSource(options, form, document, output);
    std::string converted;
    {
        const Progress progress(messages, "converting " + document.name);
        keepPart(*document.container, options.part, messages);
        converted = form.text(document);
    }
    if (options.inPlace && document.recovered && output.replaces(document)) {
        requireClean(messages, options.report);
        messages.warning(text("the damaged document is kept as %@", output.keepBackup().string()));
    }
    deliver(messages, options.report, document, output, converted, {{"form", form.name}});
    return kDone;
}

}  // namespace

void addConvertCommand(CLI::App& app, Session& session) {
    auto options = std::make_shared<ConvertOptions>();
    CLI::App& command =
        *app.add_subcommand("convert", "write a document as XML, JSON, Markdown, Mermaid or a Graphviz graph");
    addDocument(command, options->document);
    command.add_option("-o,--output", options->output, "file or folder to write; - for standard output")
        ->type_name(kFileType);
    command.add_flag("--in-place", options->inPlace,
                     "replace the document itself; a damaged one is kept beside it as DOC.bak");
    command.add_option("--to", options->form, "form of the output; by its extension when not given")
        ->check(CLI::IsMember(formNames()));
    command.add_flag("--classic", options->preferences.classic,
                     "the classic XML, even where it would not come back as it is");
    addPartOptions(command, options->part);
    completeDocumentCommand(command, session, options, convert);
}

}  // namespace vellicor::cli
