// Which store is in use as the store list arrives, as the user chooses and as deep links come.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "stores_model.h"

namespace {

const std::string kGerman = "http://a.test/de_de/";
const std::string kEnglish = "http://a.test/en_us/";
const std::string kFrench = "http://b.test/fr_fr/";

std::vector<BookstoreApi::StoreInfo> stores() {
  return {{kGerman, "Deutsch", "de", false}, {kEnglish, "English", "en", false}, {kFrench, "Français", "fr", true}};
}

class Stores : public ::testing::Test {
protected:
  Stores() { model.setFallbackUrl(kGerman); }

  StoresModel model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
  QSignalSpy changed{&model, &StoresModel::storesChanged};
  QSignalSpy langCode{&model, &StoresModel::storeLangCodeChanged};
  QSignalSpy loaded{&model, &StoresModel::storesLoaded};
};

TEST_F(Stores, TheStoredStoreStaysInForceWhenTheListHasIt) {
  model.setCurrentUrl(kEnglish);
  model.setStores(stores());
  EXPECT_EQ(model.getCurrentIndex(), 1);
  EXPECT_EQ(changed.count(), 0) << "models already loading the store are left alone";
  EXPECT_EQ(langCode[0][0].toString(), "en");
  EXPECT_TRUE(loaded[0][0].toBool());
  EXPECT_TRUE(model.data(model.index(1), StoresModel::ActiveRole).toBool());
  EXPECT_FALSE(model.data(model.index(0), StoresModel::ActiveRole).toBool());
  EXPECT_EQ(model.data(model.index(2), StoresModel::TextRole).toString(), "Français");
  EXPECT_EQ(model.roleNames().value(257), "text_");
}

TEST_F(Stores, AStoreNotInTheListOrNoneStoredGivesWayToTheFirst) {
  model.setCurrentUrl(kEnglish + "lpress/opds/");
  model.setStores(stores());
  EXPECT_EQ(model.getCurrentIndex(), 0);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toString().toStdString(), kGerman);

  StoresModel fresh;
  fresh.setFallbackUrl(kEnglish);
  fresh.setCurrentUrl("");
  EXPECT_EQ(fresh.currentUrl(), kEnglish);
  QSignalSpy freshChanged(&fresh, &StoresModel::storesChanged);
  fresh.setStores(stores());
  EXPECT_EQ(fresh.currentUrl(), kGerman) << "the built-in store is no choice of the user's";
  EXPECT_EQ(freshChanged.count(), 1);
}

TEST_F(Stores, AnEmptyListKeepsTheStoreInUse) {
  model.setCurrentUrl(kEnglish);
  model.setStores({});
  EXPECT_EQ(model.currentUrl(), kEnglish);
  EXPECT_EQ(changed.count(), 0);
  EXPECT_EQ(langCode.count(), 0);
  ASSERT_EQ(loaded.count(), 1);
  EXPECT_FALSE(loaded[0][0].toBool());
  EXPECT_EQ(model.isDisabled(), 0);
  EXPECT_EQ(model.firstStoreUrl(), "");
}

TEST_F(Stores, ChoosingAStore) {
  model.setCurrentUrl(kGerman);
  model.setStores(stores());
  langCode.clear();
  QSignalSpy index(&model, &StoresModel::currentIndexChanged);

  model.setModelToIndex(0);
  EXPECT_EQ(index.count() + changed.count() + langCode.count(), 0) << "the store in use: nothing at all";

  EXPECT_FALSE(model.isNeedAutoLogout(1)) << "same host";
  EXPECT_TRUE(model.isNeedAutoLogout(2));
  EXPECT_FALSE(model.isNeedAutoLogout(0));
  EXPECT_FALSE(model.isNeedAutoLogout(9));
  model.setModelToIndex(2);
  EXPECT_EQ(model.currentUrl(), kFrench);
  EXPECT_EQ(model.isDisabled(), 1);
  EXPECT_EQ(changed.last().at(0).toString().toStdString(), kFrench);
  EXPECT_EQ(langCode.last().at(0).toString(), "fr");

  model.setModelToIndex(7);
  EXPECT_EQ(model.currentUrl(), kFrench) << "out of range: the signals say the store in use again";
  EXPECT_EQ(changed.count(), 2);
  EXPECT_EQ(model.getElementText(1), "English");
  EXPECT_EQ(model.getElementText(3), "");
}

TEST_F(Stores, DeepLinksMoveToTheirStore) {
  model.updateStoresUrl(kEnglish + "lpress/opds/item?id=3");
  EXPECT_EQ(model.currentUrl(), kEnglish) << "without a list the link's store is taken as it is";
  EXPECT_EQ(changed.count(), 1);

  model.setStores(stores());
  changed.clear();
  model.updateStoresUrl("http://a.test/de_de/catalogue/item?id=3");
  model.updateStoresUrl("/lpress/opds/item?id=3");
  model.updateStoresUrl("http://c.test/xx_xx/lpress/opds/item?id=3");
  EXPECT_EQ(changed.count(), 0);
  model.updateStoresUrl(kGerman + "lpress/opds/item?id=3");
  EXPECT_EQ(model.getCurrentIndex(), 0);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toString().toStdString(), kGerman);
}

}  // namespace
