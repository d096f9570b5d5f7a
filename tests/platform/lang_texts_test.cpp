#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <thread>
#include <vector>

#include "device_path.h"
#include "human_text.h"
#include "panelkit.h"

using lumenpress::platform::DeviceRoot;

namespace {

void setLanguage(const std::string &language) {
  lpconfig *cfg = OpenConfig("/mnt/ext1/system/config/global.cfg", 1);
  WriteString(cfg, "language", language.c_str());
  ASSERT_EQ(CloseConfig(cfg), 0);
}

std::map<std::string, std::string> languageFile(const std::string &language) {
  DeviceRoot();
  std::ifstream in(DeviceRoot() + "/coreapp/lang/" + language + ".txt");
  std::map<std::string, std::string> texts;
  for (std::string line; std::getline(in, line);) {
    const auto equals = line.find('=');
    if (!line.empty() && line[0] == '@' && equals != std::string::npos)
      texts[line.substr(0, equals)] = line.substr(equals + 1);
  }
  return texts;
}

}  // namespace

TEST(LangTexts, FollowTheLanguageOfGlobalConfigThenEnglishThenTheBareKey) {
  EXPECT_STREQ(currentLang(), "en");
  EXPECT_STREQ(GetLangText("@Buy"), "Buy");
  EXPECT_EQ(lumenpress::utilities::HumanText("@$UniversalStore"), "Book Store");
  EXPECT_STREQ(GetLangTextPlural("@EBook", 1), "e-book");
  EXPECT_STREQ(GetLangTextPlural("@EBook", 0), "e-books");
  EXPECT_STREQ(GetLangTextPlural("@EBook", 2), "e-books");
  EXPECT_STREQ(GetLangTextPlural("@Buy", 3), "Buy") << "a key without plural forms keeps its one text";
  setLanguage("de");
  EXPECT_STREQ(currentLang(), "de");
  EXPECT_STREQ(GetLangText("@MyPurchases"), "Meine Käufe");
  EXPECT_STREQ(GetLangTextPlural("@EBook", 5), "E-Books");

  setLanguage("fr");
  EXPECT_STREQ(GetLangText("@Buy"), "Buy");
  EXPECT_STREQ(GetLangText("@NoSuchKey"), "NoSuchKey");
  EXPECT_STREQ(GetLangText("@$NoSuchTitle"), "NoSuchTitle");
  EXPECT_STREQ(GetLangText("plain text"), "plain text");
  EXPECT_EQ(GetLangText(nullptr), nullptr);
}

TEST(LangTexts, BothLanguagesHoldTheSameKeysWithRealTexts) {
  const auto english = languageFile("en");
  const auto german = languageFile("de");
  ASSERT_GT(english.size(), 50u);
  for (const auto &[key, text] : english) {
    EXPECT_EQ(german.count(key), 1u) << key << " missing in German";
    EXPECT_FALSE(text.empty()) << key;
    EXPECT_NE(text[0], '@') << key;
  }
  for (const auto &[key, text] : german) {
    EXPECT_EQ(english.count(key), 1u) << key << " missing in English";
    EXPECT_FALSE(text.empty()) << key;
  }
}

TEST(LangTexts, TextsStayValidWhileThreadsReadAndTheLanguageChanges) {
  std::vector<std::thread> readers;
  for (int t = 0; t < 4; ++t) {
    readers.emplace_back([] {
      for (int i = 0; i < 2000; ++i) {
        const std::string text = GetLangText("@Open");
        ASSERT_TRUE(text == "Open" || text == "Öffnen") << text;
      }
    });
  }
  for (int i = 0; i < 50; ++i) setLanguage(i % 2 ? "de" : "en");
  for (auto &reader : readers) reader.join();
}
