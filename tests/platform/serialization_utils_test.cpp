#include "serialization_utils.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using lumenpress::utilities::SerializationUtils;

namespace {

std::string allByteValues() {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  return all;
}

}  // namespace

TEST(SerializationUtils, KnownVectorsPaddedOrNot) {
  const std::pair<std::string, std::string> vectors[] = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
  };
  for (const auto &[plain, encoded] : vectors) {
    EXPECT_EQ(SerializationUtils::ToBase64(plain), encoded) << plain;
    EXPECT_EQ(SerializationUtils::FromBase64(encoded), plain) << encoded;
    EXPECT_EQ(SerializationUtils::FromBase64(encoded.substr(0, encoded.find('='))), plain) << "unpadded " << encoded;
    EXPECT_EQ(SerializationUtils::FromHex(SerializationUtils::ToHex(plain)), plain);
  }
  EXPECT_EQ(SerializationUtils::ToHex("foobar"), "666f6f626172");
  EXPECT_EQ(SerializationUtils::ToHex(std::string("\x00\xab\xff", 3)), "00abff");
  EXPECT_EQ(SerializationUtils::FromHex("00ABff"), std::string("\x00\xab\xff", 3));
}

TEST(SerializationUtils, RoundTripsEveryByteAndEveryShortLength) {
  const std::string all = allByteValues();
  EXPECT_EQ(SerializationUtils::FromBase64(SerializationUtils::ToBase64(all)), all);
  EXPECT_EQ(SerializationUtils::FromHex(SerializationUtils::ToHex(all)), all);
  for (size_t length = 0; length <= 10; ++length) {
    // High bytes and zeros at every position within a group of three.
    const std::string data = all.substr(256 - length) + all.substr(0, length);
    EXPECT_EQ(SerializationUtils::ToBase64(data).size(), (data.size() + 2) / 3 * 4);
    EXPECT_EQ(SerializationUtils::FromBase64(SerializationUtils::ToBase64(data)), data) << length;
    EXPECT_EQ(SerializationUtils::FromHex(SerializationUtils::ToHex(data)), data) << length;
  }
}

TEST(SerializationUtils, AcceptsUrlSafeAlphabetAndMissingPadding) {
  EXPECT_EQ(SerializationUtils::ToBase64("\xfb\xff\xbf"), "+/+/");
  EXPECT_EQ(SerializationUtils::FromBase64("-_-_"), "\xfb\xff\xbf");
  EXPECT_EQ(SerializationUtils::FromBase64("-_8"), "\xfb\xff");
}

TEST(SerializationUtils, MalformedInputGivesEmptyText) {
  for (const char *bad :
       {"Zm9v!", "Zm 9v", "Zm9v\n", "Z", "Zm9vY", "Zm9vY===", "Zg===", "Z=g=", "=Zg=", "Zm9v=", "Zm9v==", "Zg="})
    EXPECT_EQ(SerializationUtils::FromBase64(bad), "") << bad;
  for (const char *bad : {"a", "abc", "zz", "0g", "a b ", "0x12"})
    EXPECT_EQ(SerializationUtils::FromHex(bad), "") << bad;
}
