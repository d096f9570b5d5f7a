#include "url.h"

#include <gtest/gtest.h>

#include <string>

using lumenpress::utilities::Url;

namespace {

struct Parts {
  const char *text;
  const char *scheme;
  const char *user_info;
  const char *host;
  int port;
  const char *path;
  const char *query;
  const char *fragment;
};

}  // namespace

TEST(Url, SplitsValidUrlsIntoTheirParts) {
  const Parts cases[] = {
      {"http://user:pw@Host:8080/a/b?x=1#f", "http", "user:pw", "host", 8080, "/a/b", "x=1", "f"},
      {"  HTTPS://Store.Example.COM/de_de/lpress/opds/home?content=en&p=2 \n", "https", "", "store.example.com", 443,
       "/de_de/lpress/opds/home", "content=en&p=2", ""},
      {"https://[::1]:9000/x", "https", "", "::1", 9000, "/x", "", ""},
      {"http://[2001:DB8::7]/", "http", "", "2001:db8::7", 80, "/", "", ""},
      {"http://127.0.0.1", "http", "", "127.0.0.1", 80, "/", "", ""},
      {"https://shop.example?q=a/b", "https", "", "shop.example", 443, "/", "q=a/b", ""},
      {"http://shop.example#top", "http", "", "shop.example", 80, "/", "", "top"},
      {"http://a@b@shop.example:65535/p?#", "http", "a@b", "shop.example", 65535, "/p", "", ""},
      {"ftp://files.example", "ftp", "", "files.example", -1, "", "", ""},
      {"ftp://files.example:21/pub", "ftp", "", "files.example", 21, "/pub", "", ""},
  };
  for (const auto &c : cases) {
    const Url url(c.text);
    SCOPED_TRACE(c.text);
    ASSERT_TRUE(url.isValid());
    EXPECT_EQ(url.scheme(), c.scheme);
    EXPECT_EQ(url.userInfo(), c.user_info);
    EXPECT_EQ(url.host(), c.host);
    EXPECT_EQ(url.port(), c.port);
    EXPECT_EQ(url.path(), c.path);
    EXPECT_EQ(url.query(), c.query);
    EXPECT_EQ(url.fragment(), c.fragment);
  }
}

TEST(Url, RejectsTextsThatAreNoAbsoluteUrl) {
  const char *cases[] = {
      "",                        // nothing
      "   ",                     // only blanks
      "store.example/de_de/",    // no scheme
      "/lpress/opds/home",       // relative
      "://store.example/",       // empty scheme
      "1http://store.example/",  // scheme must start with a letter
      "ht tp://store.example/",  // blank in the scheme
      "mailto:someone@example",  // no authority
      "http://",                 // no host
      "http:///path",            // no host
      "http://user@/",           // no host after the user
      "http://host:/",           // empty port
      "http://host:0/",          // port out of range
      "http://host:65536/",      // port out of range
      "http://host:123456/",     // port too long
      "http://host:8a/",         // port not a number
      "http://host:-80/",        // port not a number
      "http://host:80:81/",      // two ports
      "http://[::1/",            // unclosed IPv6 literal
      "http://[::1]x/",          // junk after the literal
      "http://[host]/",          // a name in brackets
      "http://ho st/",           // blank in the host
      "http://ho\nst/",          // line break in the host
  };
  for (const char *text : cases) {
    const Url url(text);
    EXPECT_FALSE(url.isValid()) << text;
    EXPECT_EQ(url.host(), "") << text;
    EXPECT_EQ(url.port(), -1) << text;
  }
}
