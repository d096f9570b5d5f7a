#include <gtest/gtest.h>

#include "url_resolver.h"

using lumenpress::opds::UrlResolver;

namespace {

struct Case {
  const char *href;
  const char *expected;
};

}  // namespace

// The normal and abnormal examples of RFC 3986 section 5.4.
TEST(UrlResolver, ReferenceExamples) {
  const char base[] = "http://a/b/c/d;p?q";
  const Case cases[] = {
      {"g:h", "g:h"},
      {"g", "http://a/b/c/g"},
      {"./g", "http://a/b/c/g"},
      {"g/", "http://a/b/c/g/"},
      {"/g", "http://a/g"},
      {"//g", "http://g"},
      {"?y", "http://a/b/c/d;p?y"},
      {"g?y", "http://a/b/c/g?y"},
      {"#s", "http://a/b/c/d;p?q#s"},
      {"g#s", "http://a/b/c/g#s"},
      {"g?y#s", "http://a/b/c/g?y#s"},
      {";x", "http://a/b/c/;x"},
      {"g;x?y#s", "http://a/b/c/g;x?y#s"},
      {"", "http://a/b/c/d;p?q"},
      {".", "http://a/b/c/"},
      {"./", "http://a/b/c/"},
      {"..", "http://a/b/"},
      {"../", "http://a/b/"},
      {"../g", "http://a/b/g"},
      {"../..", "http://a/"},
      {"../../", "http://a/"},
      {"../../g", "http://a/g"},
      {"../../../g", "http://a/g"},
      {"../../../../g", "http://a/g"},
      {"/./g", "http://a/g"},
      {"/../g", "http://a/g"},
      {"g.", "http://a/b/c/g."},
      {".g", "http://a/b/c/.g"},
      {"g..", "http://a/b/c/g.."},
      {"..g", "http://a/b/c/..g"},
      {"./../g", "http://a/b/g"},
      {"./g/.", "http://a/b/c/g/"},
      {"g/./h", "http://a/b/c/g/h"},
      {"g/../h", "http://a/b/c/h"},
      {"g;x=1/./y", "http://a/b/c/g;x=1/y"},
      {"g;x=1/../y", "http://a/b/c/y"},
      {"g?y/./x", "http://a/b/c/g?y/./x"},
      {"g?y/../x", "http://a/b/c/g?y/../x"},
      {"g#s/./x", "http://a/b/c/g#s/./x"},
      {"g#s/../x", "http://a/b/c/g#s/../x"},
      {"http:g", "http:g"},
  };
  for (const Case &c : cases) EXPECT_EQ(UrlResolver::Resolve(base, c.href), c.expected) << "href " << c.href;
}

// What catalogue feeds send beyond the examples above: hosts without a path, fragments on the base,
// encoded paths, odd schemes.
TEST(UrlResolver, CatalogueLinks) {
  EXPECT_EQ(UrlResolver::Resolve("https://store.example", "opds/new"), "https://store.example/opds/new");
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/list?page=2#top", ""), "https://store.example/a/list?page=2");
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/list?page=2#top", "#more"),
            "https://store.example/a/list?page=2#more");
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/list?x=/y/../z", "item"), "https://store.example/a/item");
  EXPECT_EQ(UrlResolver::Resolve("http://host/a%2Fb/c", "d%20e?q=%26"), "http://host/a%2Fb/d%20e?q=%26");
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/", "HTTPS://Other.example/x"), "HTTPS://Other.example/x");
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/", "mailto:help@store.example"), "mailto:help@store.example");
  const std::string data = "data:image/png;base64,iVBORw0KGgo/../AAA=";
  EXPECT_EQ(UrlResolver::Resolve("https://store.example/a/", data), data);
  EXPECT_EQ(UrlResolver::Resolve("", "/relative/only"), "/relative/only");
}
