// Loading recorded trees in DMTF's mockup layout: both layouts, and the folders and files that
// are refused at start.
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/mockup_tree.hpp"
#include "tests/emulator/mockup_fixture.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using emulator::MockupTree;
using nlohmann::json;

class MockupTreeTest : public ::testing::Test {
protected:
    // Writes one file of a tree under dir_, making its folders.
    void Write(const std::string& file, const std::string& text) {
        const std::string path = dir_.File(file);
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        raidcfg_test::WriteFile(path, text);
    }

    bool Load(std::string& error) { return MockupTree::Load(dir_.path(), tree_, error); }

    raidcfg_test::TempDir dir_;
    MockupTree tree_;
};

TEST_F(MockupTreeTest, ShortLayoutMakesEveryFolderWithAnIndexAUri) {
    std::string error;
    ASSERT_TRUE(MockupTree::Load(MockupFixture::MockupDir("short"), tree_, error)) << error;
    const json* root = tree_.Find("/redfish/v1");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ((*root)["Id"], "RootService");
    const json* drive =
        tree_.Find("/redfish/v1/Systems/Sys.1/Storage/RAIDIntegrated/Drives/Disk-1-0");
    ASSERT_NE(drive, nullptr);
    EXPECT_EQ((*drive)["Id"], "Disk-1-0");
    EXPECT_EQ(*tree_.Find("/redfish/v1/Systems/Sys.1"),
              MockupFixture::Recorded("short", "Systems/Sys.1/index.json"));
    // A folder on the way to resources is no resource of its own.
    EXPECT_EQ(tree_.Find("/redfish/v1/Systems/Sys.1/Storage/RAIDIntegrated/Drives"), nullptr);
    EXPECT_EQ(tree_.resources().size(), 13U);
}

TEST_F(MockupTreeTest, LongLayoutStartsAtItsRedfishV1Folder) {
    std::string error;
    ASSERT_TRUE(MockupTree::Load(MockupFixture::MockupDir("long"), tree_, error)) << error;
    ASSERT_NE(tree_.Find("/redfish/v1"), nullptr);
    ASSERT_NE(tree_.Find("/redfish/v1/Systems/1"), nullptr);
    EXPECT_EQ((*tree_.Find("/redfish/v1/Systems/1"))["Name"], "Older Server");
    EXPECT_EQ(tree_.Find("/redfish/v1/redfish"), nullptr);
    EXPECT_EQ(tree_.resources().size(), 5U);
    const MockupTree::Headers headers = tree_.GetHeaders("/redfish/v1/Systems/1");
    ASSERT_EQ(headers.size(), 3U);
    EXPECT_EQ(headers[0], (std::pair<std::string, std::string>("Allow", "GET, HEAD, PATCH")));
    EXPECT_TRUE(tree_.GetHeaders("/redfish/v1/Systems").empty());
}

TEST_F(MockupTreeTest, MalformedIndexIsRefusedNamingTheFile) {
    Write("index.json", R"({"Id": "RootService"})");
    Write("Systems/index.json", R"({"Members": [)");
    std::string error;
    EXPECT_FALSE(Load(error));
    EXPECT_NE(error.find(dir_.File("Systems/index.json")), std::string::npos) << error;
    EXPECT_EQ(error.find('\n'), std::string::npos);
}

TEST_F(MockupTreeTest, IndexThatIsNoObjectIsRefused) {
    Write("redfish/v1/index.json", "[1, 2]");
    std::string error;
    EXPECT_FALSE(Load(error));
    EXPECT_NE(error.find(dir_.File("redfish/v1/index.json")), std::string::npos) << error;
}

TEST_F(MockupTreeTest, MalformedHeadersAreRefusedNamingTheFile) {
    Write("index.json", R"({"Id": "RootService"})");
    Write("headers.json", R"({"GET": "Allow: GET"})");
    std::string error;
    EXPECT_FALSE(Load(error));
    EXPECT_NE(error.find(dir_.File("headers.json")), std::string::npos) << error;
}

TEST_F(MockupTreeTest, FolderWithoutServiceRootIsRefused) {
    Write("Systems/index.json", R"({"Members": []})");
    std::string error;
    EXPECT_FALSE(Load(error));
    EXPECT_NE(error.find("is not a Redfish mockup"), std::string::npos) << error;
    // With a redfish folder, the root is looked for in redfish/v1.
    Write("index.json", R"({"Id": "RootService"})");
    Write("redfish/index.json", R"({"v1": "/redfish/v1/"})");
    EXPECT_FALSE(Load(error));
    EXPECT_NE(error.find("redfish/v1/index.json"), std::string::npos) << error;
}

TEST_F(MockupTreeTest, MissingFolderIsRefused) {
    std::string error;
    EXPECT_FALSE(MockupTree::Load(dir_.File("nowhere"), tree_, error));
    EXPECT_EQ(error, "'" + dir_.File("nowhere") + "' is not a folder");
}

TEST_F(MockupTreeTest, KeyIsDecodedWithoutOneTrailingSlash) {
    EXPECT_EQ(MockupTree::Key("/redfish/v1/"), "/redfish/v1");
    EXPECT_EQ(MockupTree::Key("/redfish/v1/Systems/Sys%2E1"), "/redfish/v1/Systems/Sys.1");
    EXPECT_EQ(MockupTree::Key("/redfish/v1/Systems/A+B%20C"), "/redfish/v1/Systems/A+B C");
    EXPECT_EQ(MockupTree::Key("/redfish/v1//"), "/redfish/v1/");
    EXPECT_EQ(MockupTree::Key("/"), "/");
}

TEST_F(MockupTreeTest, EraseTakesEverythingBelowAndNothingBeside) {
    tree_.Put("/redfish/v1/Systems/1", json::object());
    tree_.Put("/redfish/v1/Systems/1/Storage", json::object());
    tree_.Put("/redfish/v1/Systems/1/Storage/A", json::object());
    tree_.Put("/redfish/v1/Systems/10", json::object());
    EXPECT_EQ(tree_.Erase("/redfish/v1/Systems/1"), 3U);
    EXPECT_EQ(tree_.Find("/redfish/v1/Systems/1/Storage"), nullptr);
    EXPECT_NE(tree_.Find("/redfish/v1/Systems/10"), nullptr);
}

} // namespace
} // namespace emulator_test
