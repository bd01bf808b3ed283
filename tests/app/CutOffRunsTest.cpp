#include "app/CutOffRuns.h"

#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>

namespace tarnvexo {
namespace {

using test::TemporaryDirectory;

using Files = std::map<std::string, std::string>; // content by name

const std::vector<std::string> Names = {"a.txt", "b.txt", "c c.txt"};

// What is in a directory of these files when it has been cleared; the note.
Files Cleared(const Files& files, std::string& note)
{
    const TemporaryDirectory directory;
    for (const auto& [name, content] : files) { std::ofstream(name) << content; }
    note = ClearCutOffRuns(".", {Names});
    Files left;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::ifstream file(entry.path());
        left[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(file), {});
    }
    return left;
}

TEST(CutOffRuns, LeaveNoNoteWhereNothingIsLeft)
{
    std::string note;
    const Files files = {{"a.txt", "old"}, {"model.txt", "m"}};
    EXPECT_EQ(Cleared(files, note), files);
    EXPECT_EQ(note, "");
    EXPECT_EQ(ClearCutOffRuns("not there", {Names}), "");
}

TEST(CutOffRuns, LoseTheirUnfinishedFilesAndNoOthers)
{
    std::string note;
    const Files others = {{"a.txt", "old"},
                          {"a.txt.unfinished", "not ours"},
                          {"a.txt.12x.unfinished", "not ours"},
                          {"a.txt.12.earlier.txt", "not ours"},
                          {"model.txt.12.unfinished", "not a result file"}};
    Files files = others;
    files["a.txt.12.unfinished"] = "half";
    files["c c.txt.7.unfinished"] = "half";
    EXPECT_EQ(Cleared(files, note), others);
    EXPECT_EQ(note, ".: note: removed 2 files that a run left unfinished when it was cut off");
}

TEST(CutOffRuns, ThatWereMovingFilesAsideHaveThemPutBack)
{
    std::string note;
    EXPECT_EQ(Cleared({{"a.txt.12.unfinished", "new"},
                       {"b.txt.12.unfinished", "new"},
                       {"c c.txt.12.unfinished", "new"},
                       {"a.txt.12.earlier", "old a"},
                       {"b.txt", "old b"}},
                      note),
              (Files{{"a.txt", "old a"}, {"b.txt", "old b"}}));
    EXPECT_EQ(note, ".: note: a run was cut off while its result files took their names; those of the run before it "
                    "are back\n"
                    ".: note: removed 3 files that a run left unfinished when it was cut off");
}

// The run before had no file c: neither has what is put back.
TEST(CutOffRuns, ThatWereMovingFilesInHaveTheEarlierOnesPutBack)
{
    std::string note;
    EXPECT_EQ(Cleared({{"a.txt", "new"},
                       {"c c.txt", "new"},
                       {"b.txt.12.unfinished", "new"},
                       {"a.txt.12.earlier", "old a"},
                       {"b.txt.12.earlier", "old b"}},
                      note),
              (Files{{"a.txt", "old a"}, {"b.txt", "old b"}}));
}

// The one that is not in has no earlier file.
TEST(CutOffRuns, ThatLackANameThatNothingBoreHaveTheEarlierOnesPutBack)
{
    std::string note;
    EXPECT_EQ(Cleared({{"a.txt", "new"},
                       {"b.txt", "new"},
                       {"c c.txt.12.unfinished", "new"},
                       {"a.txt.12.earlier", "old a"},
                       {"b.txt.12.earlier", "old b"}},
                      note),
              (Files{{"a.txt", "old a"}, {"b.txt", "old b"}}));
}

TEST(CutOffRuns, WhoseFilesAllHaveTheirNamesKeepThem)
{
    std::string note;
    const Files complete = {{"a.txt", "new"}, {"b.txt", "new"}, {"c c.txt", "new"}};
    Files files = complete;
    files["b.txt.12.earlier"] = "old";
    EXPECT_EQ(Cleared(files, note), complete);
}

// Someone has written under the names since.
TEST(CutOffRuns, DoNotComeBeforeFilesWrittenSince)
{
    std::string note;
    const Files since = {{"a.txt", "newest"}, {"b.txt", "newest"}, {"c c.txt", "newest"}};
    Files files = since;
    files["b.txt.12.unfinished"] = "new";
    files["a.txt.12.earlier"] = files["b.txt.12.earlier"] = "old";
    EXPECT_EQ(Cleared(files, note), since);
}

// A run wrote one set; another set beside it is of a run before. Taking back the one must not touch the other.
TEST(CutOffRuns, LeaveSetsAloneThatTheyDidNotWrite)
{
    const TemporaryDirectory directory;
    const std::map<std::string, std::string> files = {{"a.txt", "new"},
                                                      {"a.txt.12.earlier", "old a"},
                                                      {"b.txt.12.unfinished", "new"},
                                                      {"b.txt.12.earlier", "old b"},
                                                      {"d.csv", "of another run"}};
    for (const auto& [name, content] : files) { std::ofstream(name) << content; }
    ClearCutOffRuns(".", {{"a.txt", "b.txt"}, {"d.csv"}});
    for (const auto& [name, content] : Files{{"a.txt", "old a"}, {"b.txt", "old b"}, {"d.csv", "of another run"}}) {
        std::ifstream file(name);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content) << name;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), std::filesystem::directory_iterator()), 3);
}

// The run wrote sets that the run after it does not.
TEST(CutOffRuns, AreTakenBackInAllTheirSets)
{
    const TemporaryDirectory directory;
    const std::map<std::string, std::string> files = {
        {"a.txt", "new"}, {"a.txt.12.earlier", "old a"}, {"d.csv.12.unfinished", "new"}, {"d.csv.12.earlier", "old d"}};
    for (const auto& [name, content] : files) { std::ofstream(name) << content; }
    ClearCutOffRuns(".", {{"a.txt"}, {"d.csv"}});
    for (const auto& [name, content] : Files{{"a.txt", "old a"}, {"d.csv", "old d"}}) {
        std::ifstream file(name);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content) << name;
    }
}

} // namespace
} // namespace tarnvexo
