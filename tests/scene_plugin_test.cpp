// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "mesh/claims/weigh_claims.h"
#include "platform/process.h"
#include "support/load_scene.h"
#include "support/temp_folder.h"

namespace {

using support::ManagerPtr;

// The folder holds a plug-in, one that crashes when it is loaded, and a library that only names the function.

TEST(Plugins, OnlyLibrariesThatLoadAndExportTheFunctionAreFound) {
  const std::string folder = TEST_PLUGIN_FOLDER;
  EXPECT_EQ(platform::FindPlugins(folder, "so", scene::kRegisterReadersSymbol),
            std::vector<std::string>{folder + "/reader_plugin.so"});
}

TEST(Plugins, OtherFoldersExtensionsAndFilesGiveNone) {
  const support::TempFolder folder;
  folder.Write("text.so", "FbxSceneRegisterReaders");
  const std::string plugin = support::ReadWholeFile(TEST_PLUGIN_FOLDER "/reader_plugin.so");
  for (const size_t size : {plugin.size() / 2, size_t{64}, size_t{63}, size_t{4}}) {
    folder.Write("cut" + std::to_string(size) + ".so", plugin.substr(0, size));
  }
  EXPECT_TRUE(platform::FindPlugins(folder.Path(), "so", scene::kRegisterReadersSymbol).empty());
  EXPECT_TRUE(platform::FindPlugins(folder.Path("missing"), "so", scene::kRegisterReadersSymbol).empty());
  EXPECT_TRUE(platform::FindPlugins(TEST_PLUGIN_FOLDER, "dll", scene::kRegisterReadersSymbol).empty());
}

TEST(Plugins, AReaderOfAPluginOpensItsFiles) {
  const support::TempFolder folder;
  const ManagerPtr manager(scene::KFbxSdkManager::Create());
  const size_t ownReaders = manager->GetReaderRegistry().GetReaderCount();
  manager->LoadPluginsDirectory(TEST_PLUGIN_FOLDER, "so");
  EXPECT_EQ(manager->GetReaderRegistry().GetReaderCount(), ownReaders + 1);
  scene::KFbxImporter& importer = *manager->CreateImporter(ts3d::WeighClaims);
  ASSERT_TRUE(importer.Initialize(folder.Write("model.fbx", "PLUGIN")));
  EXPECT_EQ(importer.GetFileVersion().minor, 2);
  EXPECT_FALSE(importer.Import(*manager->CreateScene("scene")));
  EXPECT_STREQ(importer.GetLastErrorString(), "said by the plug-in");
}

}  // namespace
