#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "feed_parser.h"

using lumenpress::opds::Feed;
using lumenpress::opds::FeedParser;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;

namespace fs = std::filesystem;

namespace {

struct Parsed {
  bool ok = false;
  Feed feed;
  std::string title;
  std::string error;
};

Parsed ParseText(const std::string &xml) {
  Parsed parsed;
  parsed.ok = FeedParser::Parse(xml.data(), xml.size(), "test", &parsed.feed, &parsed.title, &parsed.error);
  return parsed;
}

std::string ReadFile(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

const fs::path kOwnSamples = fs::path(LP_SOURCE_DIR) / "tests/data/opds";

// The AGPL samples are not part of the repository; they lie beside it, where there is a shared folder.
fs::path SharedSamples() {
  for (const fs::path &folder :
       {fs::path("/work/shared/opds-samples"), fs::path(LP_SOURCE_DIR) / "../shared/opds-samples"}) {
    if (fs::is_directory(folder)) return folder;
  }
  return {};
}

// A sample that must parse; tests read its entries with at() or after a size check, so a failure stays a failure.
Parsed ParseSample(const fs::path &folder, const char *name) {
  const Parsed parsed = ParseText(ReadFile(folder / name));
  EXPECT_TRUE(parsed.ok) << name << ": " << parsed.error;
  return parsed;
}

#define SHARED_SAMPLES_OR_SKIP(folder)     \
  const fs::path folder = SharedSamples(); \
  if (folder.empty()) GTEST_SKIP() << "no shared sample folder beside the repository"

std::vector<std::shared_ptr<Link>> LinksOfType(const std::vector<std::shared_ptr<Link>> &links, int type) {
  std::vector<std::shared_ptr<Link>> found;
  for (const auto &link : links) {
    if (link->type == type) found.push_back(link);
  }
  return found;
}

std::vector<std::string> IndirectMimes(const Link &link) {
  std::vector<std::string> mimes;
  for (const auto &acquisition : link.indirect_acquisitions) mimes.push_back(acquisition.mime);
  return mimes;
}

}  // namespace

TEST(FeedParser, EverySampleParsesOrFailsCleanly) {
  std::vector<fs::path> files;
  for (const fs::path &folder : {kOwnSamples, SharedSamples()}) {
    if (folder.empty()) continue;
    for (const auto &item : fs::directory_iterator(folder)) {
      if (item.path().extension() == ".xml") files.push_back(item.path());
    }
  }
  ASSERT_GE(files.size(), 14u);
  for (const fs::path &file : files) {
    const Parsed parsed = ParseText(ReadFile(file));
    const std::string name = file.filename().string();
    const bool not_a_feed = name == "malformed-not-xml.xml" || name == "gutenberg-opensearch-description.xml";
    EXPECT_EQ(parsed.ok, !not_a_feed) << name << ": " << parsed.error;
    EXPECT_NE(parsed.error.empty(), parsed.title.empty()) << name << ": a result needs a title, a failure a reason";
  }
}

// The self href holds a double-escaped "&amp;amp;", decoded once; the author a character reference.
TEST(FeedParser, EscapesInAPagedFeed) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-acquisition-facets-paged.xml");
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kSelf).at(0)->href,
            "http://www.feedbooks.com/books/top.atom?category=FSHUM000000N&amp;lang=en");
  ASSERT_EQ(parsed.feed.entries.size(), 1u);
  const Entry &book = *parsed.feed.entries[0];
  ASSERT_TRUE(book.author);
  EXPECT_EQ(book.author->name, "Ren\u00e9 Descartes");
  EXPECT_EQ(book.extent, "23,005 words");
}

TEST(FeedParser, SubscribeAndUnknownIndirectTypes) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-testcatalog-acquisition-paged-buy-borrow.xml");
  ASSERT_EQ(parsed.feed.entries.size(), 17u);
  std::map<std::string, const Entry *> by_title;
  for (const auto &entry : parsed.feed.entries) by_title[entry->title] = entry.get();
  const Entry &subscribe = *by_title.at("Acquisition: Subscribe");
  EXPECT_EQ(subscribe.GetLinkByType(Link::kBorrow)->prices.at(0).currency_code, "EUR");

  const auto unknown = by_title.at("Acquisition: Indirect bad")->GetLinkByType(Link::kAcquisition);
  EXPECT_EQ(unknown->mime, "text/imaginarytype");
  EXPECT_EQ(unknown->format, "");
  EXPECT_EQ(IndirectMimes(*unknown), std::vector<std::string>{"application/epub+zip"});
}

// The licence blocks of this feed hold prices and self links of their own that belong to no entry.
TEST(FeedParser, BuyPricesBesideLicenceDecoys) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-odl-buy-price-adept.xml");
  ASSERT_EQ(parsed.feed.entries.size(), 6u);
  const Entry &book = *parsed.feed.entries[1];
  EXPECT_EQ(book.title, "Sun Warrior");
  EXPECT_EQ(book.GetPrice(), "9.99");
  EXPECT_EQ(book.GetCurrencyCode(), "USD");
  EXPECT_EQ(book.GetLinkByType(Link::kSelf), nullptr);
  EXPECT_EQ(book.links.size(), 5u);
  const auto buy = book.GetLinkByType(Link::kBuy);
  EXPECT_EQ(buy->prices.size(), 1u);
  EXPECT_EQ(IndirectMimes(*buy), (std::vector<std::string>{"application/vnd.adobe.adept+xml", "application/epub+zip"}));
  ASSERT_TRUE(book.content);
  EXPECT_NE(book.content->text.find("<i><b>The blockbuster"), std::string::npos);
  EXPECT_NE(book.content->text.find("cruelty\u2026The battle"), std::string::npos);
}

TEST(FeedParser, EntryDocument) {
  const Parsed borrow = ParseSample(kOwnSamples, "simplified-entry-document-borrow-nested-indirect.xml");
  EXPECT_EQ(borrow.title, "The Frances Hodgson Burnett Megapack");
  ASSERT_EQ(borrow.feed.entries.size(), 1u);
  EXPECT_TRUE(borrow.feed.links.empty());
  const Entry &megapack = *borrow.feed.entries[0];
  EXPECT_EQ(megapack.summary.rfind("<p>The Frances Hodgson Burnett Megapack collects", 0), 0u);
  EXPECT_NE(megapack.summary.find("M\u00c8RE GIRAUDS"), std::string::npos);
  EXPECT_EQ(IndirectMimes(*megapack.GetLinkByType(Link::kBorrow)),
            (std::vector<std::string>{"application/epub+zip", "application/pdf", "vnd.adobe/adept+xml",
                                      "application/epub+zip", "vnd.adobe/adept+xml", "application/pdf"}));
}

TEST(FeedParser, LargeFeedWithLinksAfterTheEntries) {
  const Parsed parsed = ParseSample(kOwnSamples, "nypl-acquisition-paginated-facets-large.xml");
  ASSERT_EQ(parsed.feed.entries.size(), 50u);
  EXPECT_EQ(parsed.feed.entries[0]->title, "A   Woman of Virtue");
  std::map<std::string, int> active_by_group;
  const auto facets = LinksOfType(parsed.feed.links, Link::kFacet);
  EXPECT_EQ(facets.size(), 9u);
  for (const auto &facet : facets) active_by_group[facet->facet_group] += facet->active;
  EXPECT_EQ(active_by_group, (std::map<std::string, int>{{"Availability", 1}, {"Collection", 1}, {"Sort by", 1}}));
  for (const auto &link : parsed.feed.links) EXPECT_NE(link->title, "Book") << "a breadcrumb became a feed link";
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kNext).size(), 1u);
  EXPECT_EQ(parsed.feed.links.back()->href, "mailto:gethelp@nypl.org");
}

TEST(FeedParser, EmptyAndMissingValues) {
  const Parsed content = ParseSample(kOwnSamples, "simplified-open-access-empty-fields-extension.xml");
  ASSERT_EQ(content.feed.entries.size(), 2u);
  EXPECT_EQ(content.feed.entries[0]->author, nullptr);
  EXPECT_EQ(LinksOfType(content.feed.entries[1]->links, Link::kImage).at(1)->href, "/working-cover-image");

  const Parsed bad_uri = ParseSample(kOwnSamples, "tricky-nypl-bad-uri-empty-author.xml");
  const Entry &rhymes = *bad_uri.feed.entries.at(0);
  EXPECT_EQ(rhymes.id.back(), 'a');
  EXPECT_EQ(rhymes.GetLinkByType(Link::kImage)->href, "http:// clearly not valid");
  EXPECT_EQ(rhymes.categories.at(0)->term, "Children");
  EXPECT_EQ(rhymes.categories.at(0)->label, "Children") << "a category without a label is named by its term";

  const Parsed no_links = ParseSample(kOwnSamples, "tricky-nypl-navigation-entry-without-links.xml");
  EXPECT_TRUE(no_links.feed.entries.at(0)->links.empty());
  EXPECT_EQ(no_links.feed.entries.at(0)->GetGoLink(), nullptr);

  const Parsed empty = ParseSample(kOwnSamples, "tricky-nypl-empty-feed-no-entries.xml");
  EXPECT_EQ(empty.title, "Fiction: featured");
  EXPECT_TRUE(empty.feed.entries.empty());
  EXPECT_EQ(LinksOfType(empty.feed.links, Link::kSearch).at(0)->title, "");
}

// An Atom namespace under https, Cyrillic text and attributes, and xhtml content.
TEST(FeedParser, SharedSamples) {
  SHARED_SAMPLES_OR_SKIP(folder);
  const Parsed cbeta = ParseSample(folder, "tricky-cbeta-single-quotes-wrong-atom-ns.xml");
  EXPECT_EQ(cbeta.title, "CBETA ePub OPDS Catalog");
  ASSERT_EQ(cbeta.feed.entries.size(), 2u);
  EXPECT_EQ(cbeta.feed.entries[1]->title, "Entry Two");
  EXPECT_EQ(cbeta.feed.entries[1]->GetGoLink()->href, "https://www.cbeta.org/opds/index.php?vol=X");

  const Parsed cyrillic = ParseSample(folder, "flibusta-authors-cyrillic-paged.xml");
  EXPECT_EQ(cyrillic.title, "\u041a\u043d\u0438\u0433\u0438 \u043f\u043e \u0430\u0432\u0442\u043e\u0440\u0430\u043c");
  const Entry &author = *cyrillic.feed.entries.at(0);
  EXPECT_EQ(author.title, "\u0421\u0430\u043d\u0434 \u0416\u0430\u043a\u043b\u0438\u043d");
  EXPECT_EQ(author.content->text, "6 \u043a\u043d\u0438\u0433");
  EXPECT_EQ(LinksOfType(author.links, Link::kOther).at(1)->title,
            "\u041a\u043d\u0438\u0433\u0438 \u0430\u0432\u0442\u043e\u0440\u0430 \u0432\u043d\u0435 "
            "\u0441\u0435\u0440\u0438\u0439");

  const Parsed xhtml = ParseSample(folder, "gutenberg-book-acquisition-xhtml.xml");
  const Entry &book = *xhtml.feed.entries.at(0);
  ASSERT_TRUE(book.content);
  EXPECT_EQ(book.content->text.rfind("<p>This edition had all images removed.</p>", 0), 0u);
  EXPECT_NE(book.content->text.find("Briefly Described<br"), std::string::npos);
  EXPECT_EQ(book.content->text.find("<div"), std::string::npos);
}

// The store's own elements and attributes, under a prefix of the feed's choosing.
TEST(FeedParser, StoreNamespace) {
  const Parsed parsed = ParseText(R"(<!-- a store list -->
<a:feed xmlns:a="http://www.w3.org/2005/Atom" xmlns:o="http://opds-spec.org/2010/catalog"
        xmlns:shop="urn:lumenpress:opds" xmlns:os="http://a9.com/-/spec/opensearch/1.1/"
        xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:other="urn:someone:else">
  <a:title>Series</a:title>
  <os:totalResults> 42 </os:totalResults>
  <a:entry>
    <a:id>book-1</a:id><a:title>First</a:title>
    <shop:kind>audio</shop:kind><shop:stock>0</shop:stock><shop:rating>4.5</shop:rating>
    <other:kind>ebook</other:kind><other:rating>1</other:rating>
    <dc:publisher>&lt;b&gt;Verlag&lt;/b&gt;</dc:publisher>
    <a:link rel="http://opds-spec.org/acquisition/buy" type="text/html" href="/buy/1">
      <o:price currencycode="EUR" shop:oldPrice="12,99" shop:minBooks="3" shop:discount="20" other:oldPrice="1">9,99</o:price>
    </a:link>
  </a:entry>
  <a:entry xmlns:shop2="urn:lumenpress:opds">
    <a:id>collection-1</a:id>
    <shop2:kind>grouped</shop2:kind><own:stock xmlns:own="urn:lumenpress:opds">1</own:stock>
    <shop2:groupedImages><shop2:image href="/c/1.jpg"/><other:image href="/no.jpg"/><shop:image href="/c/2.jpg"/></shop2:groupedImages>
  </a:entry>
</a:feed>)");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_STREQ(parsed.feed.total_results, "42");
  ASSERT_EQ(parsed.feed.entries.size(), 2u);
  const Entry &book = *parsed.feed.entries[0];
  EXPECT_EQ(book.type, "audio");
  EXPECT_EQ(book.in_stock, "0");
  EXPECT_STREQ(book.rating, "4.5");
  EXPECT_STREQ(book.publisher, "<b>Verlag</b>");
  const auto &price = book.GetLinkByType(Link::kBuy)->prices.at(0);
  EXPECT_EQ(price.value, "9,99");
  EXPECT_EQ(price.currency_code, "EUR");
  EXPECT_EQ(price.old_value, "12,99");
  EXPECT_EQ(price.min_books, "3");
  EXPECT_EQ(price.discount_count, "20");

  const Entry &collection = *parsed.feed.entries[1];
  EXPECT_EQ(collection.type, "grouped");
  EXPECT_EQ(collection.in_stock, "1");
  ASSERT_TRUE(collection.grouped_img);
  EXPECT_EQ(collection.grouped_img->getGroupedImg(), (std::vector<std::string>{"/c/1.jpg", "/c/2.jpg"}));
}

TEST(FeedParser, DatesAreNormalisedWhenReadable) {
  const std::pair<const char *, const char *> cases[] = {
      {"<published>2014-11-30T17:27:27+01:00</published>", "2014-11-30 17:27:27"},
      {"<published>2012-01-01T10:00:00.123Z</published>", "2012-01-01 10:00:00"},
      {"<published>2012-01-01T10:00-0500</published>", "2012-01-01 10:00:00"},
      {"<published> 2017-10-16 </published>", "2017-10-16 00:00:00"},
      {"<dcterms:issued>1813</dcterms:issued>", "1813-01-01 00:00:00"},
      {"<dcterms:issued>1813</dcterms:issued><published>2006-12-28T20:00:54Z</published>", "2006-12-28 20:00:54"},
      {"<published>2006-12-28T20:00:54Z</published><dcterms:issued>1813</dcterms:issued>", "2006-12-28 20:00:54"},
      {"<published>yesterday</published>", "yesterday"},
      {"<published>2014-13-01</published>", "2014-13-01"},
      {"<published>2014-11-30T17:27:27+01:00 or so</published>", "2014-11-30T17:27:27+01:00 or so"},
  };
  for (const auto &[element, expected] : cases) {
    const Parsed parsed = ParseText(std::string("<feed xmlns='http://www.w3.org/2005/Atom' "
                                                "xmlns:dcterms='http://purl.org/dc/terms/'><entry>") +
                                    element + "</entry></feed>");
    ASSERT_TRUE(parsed.ok) << parsed.error;
    EXPECT_EQ(parsed.feed.entries.at(0)->published, expected) << element;
  }
}

TEST(FeedParser, Latin1FeedBecomesUtf8) {
  const Parsed parsed = ParseText("<?xml version='1.0' encoding='ISO-8859-1'?><feed><title>Caf\xe9</title></feed>");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_EQ(parsed.title, "Caf\u00e9");
}

TEST(FeedParser, BrokenDocumentsFailWithWhere) {
  const Parsed not_xml = ParseText(ReadFile(kOwnSamples / "malformed-not-xml.xml"));
  EXPECT_FALSE(not_xml.ok);
  EXPECT_NE(not_xml.error.find("offset"), std::string::npos) << not_xml.error;

  const Parsed rss = ParseText("<?xml version='1.0'?>\n<rss version='2.0'><channel/></rss>");
  EXPECT_FALSE(rss.ok);
  EXPECT_NE(rss.error.find("<rss> at offset 23"), std::string::npos) << rss.error;

  const Parsed foreign = ParseText("<feed xmlns='urn:not:atom'><entry/></feed>");
  EXPECT_FALSE(foreign.ok);

  Feed untouched;
  std::string title = "kept";
  std::string error;
  EXPECT_FALSE(FeedParser::Parse(nullptr, 0, "test", &untouched, &title, &error));
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(title, "kept");
  EXPECT_TRUE(untouched.entries.empty());
}

TEST(FeedParser, EveryTruncationOfAFeedFails) {
  const std::string xml = ReadFile(kOwnSamples / "feedbooks-acquisition-facets-paged.xml");
  const size_t end = xml.rfind("</feed>");
  ASSERT_NE(end, std::string::npos);
  for (size_t size = 0; size < end; ++size) {
    const Parsed parsed = ParseText(xml.substr(0, size));
    ASSERT_FALSE(parsed.ok) << "cut at " << size;
    ASSERT_FALSE(parsed.error.empty());
  }
}

TEST(FeedParser, RandomAndMutatedBytesNeverCrash) {
  std::mt19937 random(20240501);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 200; ++round) {
    std::string noise(1 + random() % 2000, '\0');
    for (char &c : noise) c = static_cast<char>(byte(random));
    const Parsed parsed = ParseText(noise);
    EXPECT_EQ(parsed.error.empty(), parsed.ok);
  }
  const std::string xml = ReadFile(kOwnSamples / "feedbooks-odl-buy-price-adept.xml");
  for (int round = 0; round < 300; ++round) {
    std::string mutated = xml;
    for (int flips = 0; flips < 8; ++flips) mutated[random() % mutated.size()] = static_cast<char>(byte(random));
    const Parsed parsed = ParseText(mutated);
    EXPECT_EQ(parsed.error.empty(), parsed.ok);
  }
}

TEST(FeedParser, DeeplyNestedIndirectAcquisitions) {
  constexpr int kDepth = 100000;
  std::string xml =
      "<feed xmlns='http://www.w3.org/2005/Atom' xmlns:opds='http://opds-spec.org/2010/catalog'><entry>"
      "<link rel='http://opds-spec.org/acquisition/buy' type='text/html' href='/b'>";
  for (int i = 0; i < kDepth; ++i) xml += "<opds:indirectAcquisition type='t" + std::to_string(i) + "'>";
  for (int i = 0; i < kDepth; ++i) xml += "</opds:indirectAcquisition>";
  xml += "<opds:indirectAcquisition type='last'/></link></entry></feed>";
  const Parsed parsed = ParseText(xml);
  ASSERT_TRUE(parsed.ok) << parsed.error;
  const Link &link = *parsed.feed.entries.at(0)->links.at(0);
  ASSERT_EQ(link.indirect_acquisitions.size(), static_cast<size_t>(kDepth + 1));
  EXPECT_EQ(link.indirect_acquisitions[kDepth - 1].mime, "t" + std::to_string(kDepth - 1));
  EXPECT_EQ(link.indirect_acquisitions[kDepth].mime, "last");
}
