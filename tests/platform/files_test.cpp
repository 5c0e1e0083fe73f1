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

mode_t modeOf(const fs::path& file) {
    struct stat status {};
    ::stat(file.c_str(), &status);
    return status.st_mode & 07777;
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
    for (mode_t mode : {0640, 0600, 0664}) {
        ::chmod(file.c_str(), mode);
        EXPECT_TRUE(writeFileAtomically(file, "new", error)) << error;
        EXPECT_EQ(modeOf(file), mode);
        EXPECT_EQ(testing::TempFolder::read(file), "new");
    }
    mode_t mask = ::umask(0027);
    EXPECT_TRUE(writeFileAtomically(folder.path() / "fresh", "x", error));
    ::umask(mask);
    EXPECT_EQ(modeOf(folder.path() / "fresh"), 0640u);

    fs::create_directory(folder.path() / "links");
    fs::create_symlink("two", folder.path() / "links/one");
    fs::create_symlink("../made", folder.path() / "links/two");
    EXPECT_TRUE(writeFileAtomically(folder.path() / "links/one", "first", error)) << error;
    EXPECT_TRUE(writeFileAtomically(folder.path() / "links/one", "second", error)) << error;
    EXPECT_TRUE(fs::is_symlink(folder.path() / "links/one"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "links/two"));
    EXPECT_EQ(testing::TempFolder::read(folder.path() / "made"), "second");
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
    std::string error;
    {
        AtomicFile abandoned(file);
        abandoned.write("new");
    }
    EXPECT_EQ(testing::TempFolder::read(file), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);

    EXPECT_FALSE(writeFileAtomically(folder.path() / "no/f", "x", error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(writeFileAtomically(folder.path(), "x", error));
    EXPECT_EQ(error, "Is a directory");
    fs::create_symlink("loop", folder.path() / "loop");
    EXPECT_FALSE(writeFileAtomically(folder.path() / "loop", "x", error));
    EXPECT_EQ(error, "Too many levels of symbolic links");
    // A device is written to, so that its failure shows, and stays a device.
    EXPECT_FALSE(writeFileAtomically("/dev/full", "x", error));
    EXPECT_EQ(error, "No space left on device");
    EXPECT_TRUE(writeFileAtomically("/dev/null", "x", error));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(Files, AReadOnlyFileIsNotReplaced) {
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind this user";
    testing::TempFolder folder;
    fs::path file = folder.write("f", "old");
    ::chmod(file.c_str(), 0444);
    std::string error;
    EXPECT_FALSE(writeFileAtomically(file, "new", error));
    EXPECT_EQ(error, "Permission denied");
    EXPECT_EQ(testing::TempFolder::read(file), "old");
}

}  // namespace
}  // namespace vellicor
