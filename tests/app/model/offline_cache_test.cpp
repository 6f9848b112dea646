// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/offline_cache.h"

#include <sys/stat.h>

#include <QTemporaryDir>
#include <filesystem>

#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

class Offline : public ModelTest {
 protected:
  void TearDown() override { cache.reset(); }
  void make() { cache = std::make_unique<OfflineCache>(*model, folder); }
  /// A run that hears of one conversation and opens it.
  void firstRun() {
    makePaired();
    make();
    expectLists("s");
    await(model->refresh(false));
    expectGet(kDetail, answers::detail({answers::item("1", "user", "hello"), answers::item("2", "assistant", "hi")}));
    await(model->loadSession("s"));
    EXPECT_FALSE(cache->isWanted()) << "the bridge has been heard of";
    cache.reset();
  }

  QTemporaryDir scratch;
  std::filesystem::path folder = std::filesystem::path(scratch.path().toStdString()) / "offline";
  std::unique_ptr<OfflineCache> cache;
};

TEST_F(Offline, TheNextRunReadsWhatTheLastOneKnewAndTheModelStaysEmpty) {
  firstRun();
  makePaired();
  make();
  EXPECT_TRUE(cache->isWanted());
  ASSERT_EQ(cache->sessions().size(), 1U);
  EXPECT_EQ(cache->sessions().front().id, "s");
  EXPECT_EQ(cache->transcript("s").size(), 2U);
  EXPECT_TRUE(cache->transcript("other").empty());
  EXPECT_TRUE(model->sessions().empty());
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_EQ(entry.status().permissions(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  }
}

TEST_F(Offline, UnpairingLeavesNothing) {
  firstRun();
  makePaired();
  make();
  model->unpair();
  EXPECT_FALSE(cache->isWanted());
  EXPECT_TRUE(cache->sessions().empty());
  cache.reset();
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(Offline, AConversationThatIsGoneFromTheListIsForgotten) {
  firstRun();
  makePaired();
  make();
  expectLists("other");
  await(model->refresh(false));
  cache.reset();
  makePaired();
  make();
  EXPECT_EQ(cache->sessions().front().id, "other");
  EXPECT_TRUE(cache->transcript("s").empty());
}

}  // namespace
}  // namespace varnel::model
