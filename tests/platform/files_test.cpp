// tests/platform/files_test.cpp — files are read whole and replaced whole, or not at all.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "tests/support/temp_folder.h"
#include "vellicor/platform/files.h"

namespace vellicor {
namespace {

namespace fs = std::filesystem;

std::ptrdiff_t entriesIn(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST(Files, ReadAnswersTheBytesOrTheReason) {
    testing::TempFolder folder;
    std::string bytes("a\0\xFF\r\n", 5);
    std::string error;
    EXPECT_EQ(readFile(folder.write("f", bytes), error), bytes);
    EXPECT_EQ(readFile(folder.write("empty", ""), error), "");
    EXPECT_EQ(error, "");
    EXPECT_FALSE(readFile(folder.path() / "missing", error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(readFile(folder.path(), error));
    EXPECT_EQ(error, "Is a directory");
}

TEST(Files, ReplacingKeepsPermissionsAndLinks) {
    testing::TempFolder folder;
    std::string error;
    fs::path file = folder.write("f.xml", "old");
    for (fs::perms mode : {fs::perms(0640), fs::perms(0600), fs::perms(0664)}) {
        fs::permissions(file, mode);
        EXPECT_TRUE(writeFileAtomically(file, "new", error)) << error;
        EXPECT_EQ(fs::status(file).permissions(), mode);
        EXPECT_EQ(testing::TempFolder::read(file), "new");
    }
    mode_t mask = ::umask(0027);
    EXPECT_TRUE(writeFileAtomically(folder.path() / "fresh", "x", error));
    ::umask(mask);
    EXPECT_EQ(fs::status(folder.path() / "fresh").permissions(), fs::perms(0640));

    fs::create_directory(folder.path() / "links");
    fs::create_symlink("two", folder.path() / "links/one");
    fs::create_symlink("../made", folder.path() / "links/two");
    for (const char* content : {"first", "second"}) {
        EXPECT_TRUE(writeFileAtomically(folder.path() / "links/one", content, error)) << error;
        EXPECT_EQ(testing::TempFolder::read(folder.path() / "made"), content);
    }
    EXPECT_TRUE(fs::is_symlink(folder.path() / "links/one") && fs::is_symlink(folder.path() / "links/two"));
    EXPECT_EQ(entriesIn(folder.path()), 4);  // f.xml, fresh, links, made: no temporary file
}

TEST(Files, LongContentInManyPiecesArrivesWhole) {
    testing::TempFolder folder;
    std::string expected;
    AtomicFile file(folder.path() / "f");
    for (std::size_t size : {10u, 65000u, 1000u, 200000u, 1u}) {
        std::string piece(size, static_cast<char>('a' + size % 26));
        file.write(piece);
        expected += piece;
    }
    std::string error;
    EXPECT_TRUE(file.commit(error));
    EXPECT_EQ(testing::TempFolder::read(folder.path() / "f"), expected);
    EXPECT_FALSE(file.commit(error));
}

TEST(Files, FailureLeavesTheOldFileAndNothingElse) {
    testing::TempFolder folder;
    fs::path file = folder.write("f", "old");
    AtomicFile(file).write("abandoned");
    EXPECT_EQ(testing::TempFolder::read(file), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);

    fs::create_symlink("loop", folder.path() / "loop");
    std::string error;
    for (const auto& [target, reason] : {std::pair(folder.path() / "no/f", "No such file or directory"),
                                         {folder.path(), "Is a directory"},
                                         {folder.path() / "loop", "Too many levels of symbolic links"},
                                         {"/dev/full", "No space left on device"}}) {
        EXPECT_FALSE(writeFileAtomically(target, "x", error));
        EXPECT_EQ(error, reason);
    }
    EXPECT_TRUE(writeFileAtomically("/dev/null", "x", error));
    EXPECT_TRUE(fs::is_character_file("/dev/null")) << "a device is written to, and stays one";

    if (::geteuid() == 0) return;  // permissions do not bind this user
    fs::permissions(file, fs::perms(0444));
    EXPECT_FALSE(writeFileAtomically(file, "new", error));
    EXPECT_EQ(error, "Permission denied");
    EXPECT_EQ(testing::TempFolder::read(file), "old");
}

}  // namespace
}  // namespace vellicor
