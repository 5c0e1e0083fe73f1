// tests/export/view_export_test.cpp — how views are created, dropped and changed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/view.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A dialect; what it can do with views is set by each test.
class Dialect : public GenericSQLExporter {
public:
    bool views = true, replaces = false, needsOwner = false;
    std::string instructionSeparator() override { return "\ngo\n"; }
    bool supportsViews() const override { return views; }
    bool canUpdateViewWithStandardCommand() const override { return replaces; }
    bool requiresOwnershipForAlter() const override { return needsOwner; }
    std::string changeOwnerToCurrent(SQLObject& object) override { return "OWN " + getCanonicalName(object); }
};
class PlainDialect : public GenericSQLExporter {};

std::shared_ptr<SQLView> view(const char* name, const OptionalText& query) {
    auto made = SQLView::viewWithName(name);
    if (query) made->setQueryString(query);
    return made;
}

TEST(ViewExport, CreateTextFollowsTheQuery) {
    const struct {
        OptionalText query;
        const char* expected;
    } cases[] = {
        {"SELECT 1", "CREATE VIEW s.v  AS SELECT 1;"},
        {" \nSELECT 1;\n", "CREATE VIEW s.v  AS SELECT 1;"},
        {"SELECT 1;;", "CREATE VIEW s.v  AS SELECT 1;;"},
        {"SELECT '%@' ;", "CREATE VIEW s.v  AS SELECT '%@' ;"},
        {" \n\t", "/* VIEW s.v - no query specified */"},
        {std::nullopt, "/* VIEW s.v - no query specified */"},
    };
    for (const auto& [query, expected] : cases)
        EXPECT_EQ(GenericSQLExporter::exporter()->export_(*view("s.v", query)), expected);
    EXPECT_EQ(create<Dialect>()->export_(*view("v", "SELECT 1;")), "CREATE VIEW v  AS SELECT 1\ngo\n");
    EXPECT_EQ(create<PlainDialect>()->export_(*view("v", "SELECT 1")), "") << "support is never inherited";
}

TEST(ViewExport, DropAndPostLoad) {
    auto exporter = GenericSQLExporter::exporter();
    EXPECT_EQ(exporter->drop(*view("s.v", "SELECT 1")), "DROP VIEW s.v;\n");
    EXPECT_EQ(exporter->postLoad(*view("v", "SELECT 1")), "");
    EXPECT_THAT(exporter->postLoadAsVector(*view("v", "SELECT 1")), IsEmpty());
}

TEST(ViewExport, ChangedViewIsDroppedAndCreated) {
    auto now = view("v", "SELECT 2"), old = view("w", "SELECT 1");
    auto generic = GenericSQLExporter::exporter();
    testing::LogCapture captured;
    EXPECT_THAT(generic->alterAsVector(*now, *now), IsEmpty());
    EXPECT_THAT(generic->alterAsVector(*view("v", "SELECT 2;"), *now), IsEmpty()) << "the texts are equal";
    EXPECT_THAT(generic->alterAsVector(*now, *old), ElementsAre("DROP VIEW w;\n", "CREATE VIEW v  AS SELECT 2;"));
    EXPECT_THAT(captured.lines(), ElementsAre("altering SQLView", "altering SQLView", "altering SQLView"));

    auto dialect = create<Dialect>();
    dialect->needsOwner = true;
    const std::string created = "CREATE VIEW v  AS SELECT 2\ngo\n";
    EXPECT_THAT(dialect->alterAsVector(*now, *old), ElementsAre("OWN w", "DROP VIEW w\ngo\n\n", created));
    dialect->replaces = true;
    EXPECT_THAT(dialect->alterAsVector(*now, *old), ElementsAre("OWN w", created));
    dialect->views = false;
    EXPECT_THAT(dialect->alterAsVector(*now, *old), IsEmpty());
}

}  // namespace
}  // namespace vellicor
