#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "feed_parser.h"
#include "url_resolver.h"

using lumenpress::opds::Feed;
using lumenpress::opds::FeedParser;
using lumenpress::opds::UrlResolver;
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

Parsed ParseSample(const fs::path &folder, const char *name) {
  const std::string xml = ReadFile(folder / name);
  EXPECT_FALSE(xml.empty()) << name;
  return ParseText(xml);
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

TEST(FeedParser, FacetsPagingAndAcquisitions) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-acquisition-facets-paged.xml");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  const std::string url = "http://www.feedbooks.com/books/top.atom?category=FSHUM000000N&lang=en";
  EXPECT_EQ(parsed.title, "Human Science");
  EXPECT_STREQ(parsed.feed.total_results, "55");
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kSelf).at(0)->href,
            "http://www.feedbooks.com/books/top.atom?category=FSHUM000000N&amp;lang=en");
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kNext).at(0)->href,
            "http://www.feedbooks.com/books/top.atom?category=FSHUM000000N&lang=en&page=2");

  const auto facets = LinksOfType(parsed.feed.links, Link::kFacet);
  ASSERT_EQ(facets.size(), 8u);
  EXPECT_EQ(facets[0]->facet_group, "In category");
  EXPECT_EQ(facets[1]->title, "Language arts & disciplines");
  EXPECT_EQ(UrlResolver::Resolve(url, facets[0]->href),
            "http://www.feedbooks.com/books/top.atom?category=FBPHI000000&free=true&lang=en");
  int active = 0;
  for (const auto &facet : facets) active += facet->active;
  EXPECT_EQ(active, 1);
  EXPECT_TRUE(facets[3]->active);
  EXPECT_EQ(facets[3]->facet_group, "Language");
  EXPECT_EQ(facets[3]->title, "English");

  ASSERT_EQ(parsed.feed.entries.size(), 1u);
  const Entry &book = *parsed.feed.entries[0];
  ASSERT_TRUE(book.author);
  EXPECT_EQ(book.author->name, "Ren\u00e9 Descartes");
  EXPECT_EQ(book.extent, "23,005 words");
  EXPECT_EQ(book.published, "2007-03-15 18:27:01");
  ASSERT_EQ(book.categories.size(), 3u);
  EXPECT_EQ(book.categories[2]->label, "Philosophy");
  EXPECT_EQ(book.GetLinkByType(Link::kAlternateHtml)->href, "http://www.feedbooks.com/book/677");
  EXPECT_EQ(book.GetGoLink()->href, "http://www.feedbooks.com/book/677.atom");
  const auto acquisitions = LinksOfType(book.links, Link::kAcquisition);
  ASSERT_EQ(acquisitions.size(), 3u);
  EXPECT_EQ(acquisitions[0]->format, "epub");
  EXPECT_EQ(acquisitions[1]->format, "mobi");
  EXPECT_EQ(acquisitions[2]->format, "pdf");
  EXPECT_EQ(book.GetLinkByType(Link::kImage)->href, "http://covers.feedbooks.net/book/677.jpg?size=large&t=1428398185");
}

TEST(FeedParser, BuyAndBorrowCases) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-testcatalog-acquisition-paged-buy-borrow.xml");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_STREQ(parsed.feed.total_results, "18");
  ASSERT_EQ(parsed.feed.entries.size(), 17u);
  const Entry &first = *parsed.feed.entries[0];
  EXPECT_EQ(first.published, "2006-12-28 20:00:54");
  EXPECT_EQ(first.categories[1]->label, "Romance");
  ASSERT_TRUE(first.content);
  EXPECT_EQ(first.content->text.rfind("Pride And Prejudice, the story", 0), 0u);

  std::map<std::string, const Entry *> by_title;
  for (const auto &entry : parsed.feed.entries) by_title[entry->title] = entry.get();
  const Entry &buy = *by_title.at("Acquisition: Buy");
  EXPECT_EQ(buy.GetPrice(), "10.99");
  EXPECT_DOUBLE_EQ(buy.GetPriceDouble(), 10.99);
  EXPECT_EQ(buy.GetCurrencyCode(), "USD");
  EXPECT_EQ(buy.GetOldPrice(), "0");
  EXPECT_EQ(IndirectMimes(*buy.GetLinkByType(Link::kBuy)), std::vector<std::string>{"application/epub+zip"});
  EXPECT_EQ(UrlResolver::Resolve("http://feedbooks.github.io/test/acquisition/main.xml",
                                 buy.GetLinkByType(Link::kImage)->href),
            "http://feedbooks.github.io/test/larger.jpg");

  const Entry &subscribe = *by_title.at("Acquisition: Subscribe");
  EXPECT_EQ(subscribe.GetLinkByType(Link::kBorrow)->prices.at(0).currency_code, "EUR");
  EXPECT_EQ(subscribe.GetPrice(), "4.99");

  const Entry &unknown = *by_title.at("Acquisition: Indirect bad");
  const auto plain = unknown.GetLinkByType(Link::kAcquisition);
  EXPECT_EQ(plain->mime, "text/imaginarytype");
  EXPECT_EQ(plain->format, "");
  EXPECT_EQ(IndirectMimes(*plain), std::vector<std::string>{"application/epub+zip"});
}

// The licence blocks of this feed hold prices and self links of their own that belong to no entry.
TEST(FeedParser, BuyPricesBesideLicenceDecoys) {
  const Parsed parsed = ParseSample(kOwnSamples, "feedbooks-odl-buy-price-adept.xml");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_STREQ(parsed.feed.total_results, "4");
  ASSERT_EQ(parsed.feed.entries.size(), 6u);
  const Entry &book = *parsed.feed.entries[1];
  EXPECT_EQ(book.title, "Sun Warrior");
  EXPECT_EQ(book.identifier, "urn:ISBN:9781250100771");
  EXPECT_STREQ(book.publisher, "St. Martin's Press");
  EXPECT_EQ(book.published, "2017-09-25 07:41:57");
  EXPECT_EQ(book.GetPrice(), "9.99");
  EXPECT_EQ(book.GetCurrencyCode(), "USD");
  EXPECT_EQ(book.GetLinkByType(Link::kSelf), nullptr);
  EXPECT_EQ(book.links.size(), 5u);
  const auto buy = book.GetLinkByType(Link::kBuy);
  EXPECT_EQ(buy->prices.size(), 1u);
  EXPECT_EQ(buy->format, "");
  EXPECT_EQ(IndirectMimes(*buy), (std::vector<std::string>{"application/vnd.adobe.adept+xml", "application/epub+zip"}));
  EXPECT_EQ(book.GetLinkByType(Link::kSample)->format, "epub");
  ASSERT_TRUE(book.content);
  EXPECT_NE(book.content->text.find("<i><b>The blockbuster"), std::string::npos);
  EXPECT_NE(book.content->text.find("cruelty\u2026The battle"), std::string::npos);
}

TEST(FeedParser, EntryDocuments) {
  const Parsed borrow = ParseSample(kOwnSamples, "simplified-entry-document-borrow-nested-indirect.xml");
  ASSERT_TRUE(borrow.ok) << borrow.error;
  EXPECT_EQ(borrow.title, "The Frances Hodgson Burnett Megapack");
  ASSERT_EQ(borrow.feed.entries.size(), 1u);
  EXPECT_TRUE(borrow.feed.links.empty());
  const Entry &megapack = *borrow.feed.entries[0];
  EXPECT_STREQ(megapack.publisher, "Wildside Press LLC");
  EXPECT_EQ(megapack.summary.rfind("<p>The Frances Hodgson Burnett Megapack collects", 0), 0u);
  EXPECT_NE(megapack.summary.find("M\u00c8RE GIRAUDS"), std::string::npos);
  EXPECT_EQ(megapack.categories.at(2)->label, "Classics");
  EXPECT_EQ(megapack.GetGoLink()->href,
            "http://circulation.librarysimplified.org/works/Overdrive/135d0478-1ab9-4cc1-a1aa-2aa616b1218c");
  EXPECT_EQ(IndirectMimes(*megapack.GetLinkByType(Link::kBorrow)),
            (std::vector<std::string>{"application/epub+zip", "application/pdf", "vnd.adobe/adept+xml",
                                      "application/epub+zip", "vnd.adobe/adept+xml", "application/pdf"}));

  const Parsed html = ParseSample(kOwnSamples, "feedbooks-entry-document-html-content.xml");
  ASSERT_TRUE(html.ok) << html.error;
  const Entry &discourse = *html.feed.entries.at(0);
  EXPECT_EQ(html.title, "Discourse on the Method");
  EXPECT_EQ(discourse.summary.rfind("The Discourse on the Method is", 0), 0u);
  ASSERT_TRUE(discourse.content);
  EXPECT_NE(discourse.content->text.find("<p>"), std::string::npos);
  EXPECT_EQ(discourse.content->text.find("&lt;"), std::string::npos);
  EXPECT_EQ(LinksOfType(discourse.links, Link::kRelated).size(), 2u);
}

TEST(FeedParser, LargeFeedWithLinksAfterTheEntries) {
  const Parsed parsed = ParseSample(kOwnSamples, "nypl-acquisition-paginated-facets-large.xml");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  ASSERT_EQ(parsed.feed.entries.size(), 50u);
  EXPECT_EQ(parsed.feed.entries[0]->title, "A   Woman of Virtue");
  EXPECT_EQ(IndirectMimes(*parsed.feed.entries[0]->GetLinkByType(Link::kBorrow)),
            (std::vector<std::string>{"application/vnd.adobe.adept+xml", "application/epub+zip"}));
  std::map<std::string, int> active_by_group;
  const auto facets = LinksOfType(parsed.feed.links, Link::kFacet);
  EXPECT_EQ(facets.size(), 9u);
  for (const auto &facet : facets) active_by_group[facet->facet_group] += facet->active;
  EXPECT_EQ(active_by_group, (std::map<std::string, int>{{"Availability", 1}, {"Collection", 1}, {"Sort by", 1}}));
  for (const auto &link : parsed.feed.links) EXPECT_NE(link->title, "Book") << "a breadcrumb became a feed link";
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kSelf).at(0)->href, "/NYNYPL/feed/13");
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kUp).at(0)->title, "Fiction");
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kStart).size(), 1u);
  EXPECT_EQ(LinksOfType(parsed.feed.links, Link::kNext).size(), 1u);
  EXPECT_EQ(parsed.feed.links.back()->href, "mailto:gethelp@nypl.org");
}

TEST(FeedParser, EmptyAndMissingValues) {
  const Parsed content = ParseSample(kOwnSamples, "simplified-open-access-empty-fields-extension.xml");
  ASSERT_TRUE(content.ok) << content.error;
  ASSERT_EQ(content.feed.entries.size(), 2u);
  EXPECT_EQ(content.feed.entries[0]->author, nullptr);
  EXPECT_EQ(content.feed.entries[1]->summary, "");
  EXPECT_EQ(LinksOfType(content.feed.entries[1]->links, Link::kImage).at(1)->href, "/working-cover-image");
  EXPECT_EQ(content.feed.links.front()->type, Link::kOther);
  EXPECT_EQ(content.feed.links.back()->type, Link::kNext);
  EXPECT_STREQ(content.feed.total_results, "");

  const Parsed bad_uri = ParseSample(kOwnSamples, "tricky-nypl-bad-uri-empty-author.xml");
  ASSERT_TRUE(bad_uri.ok) << bad_uri.error;
  const Entry &rhymes = *bad_uri.feed.entries.at(0);
  EXPECT_EQ(rhymes.id.back(), 'a');
  EXPECT_EQ(rhymes.GetLinkByType(Link::kImage)->href, "http:// clearly not valid");
  EXPECT_EQ(rhymes.GetLinkByType(Link::kBorrow)->mime, "application/atom+xml;relation=entry;profile=opds-catalog");
  EXPECT_EQ(rhymes.categories.at(0)->term, "Children");
  EXPECT_EQ(rhymes.categories.at(0)->label, "");

  const Parsed no_links = ParseSample(kOwnSamples, "tricky-nypl-navigation-entry-without-links.xml");
  ASSERT_TRUE(no_links.ok) << no_links.error;
  EXPECT_TRUE(no_links.feed.entries.at(0)->links.empty());
  EXPECT_EQ(no_links.feed.entries.at(0)->GetGoLink(), nullptr);

  const Parsed empty = ParseSample(kOwnSamples, "tricky-nypl-empty-feed-no-entries.xml");
  ASSERT_TRUE(empty.ok) << empty.error;
  EXPECT_EQ(empty.title, "Fiction: featured");
  EXPECT_TRUE(empty.feed.entries.empty());
  EXPECT_EQ(LinksOfType(empty.feed.links, Link::kSearch).at(0)->title, "");
}

TEST(FeedParser, SharedNavigationSamples) {
  SHARED_SAMPLES_OR_SKIP(folder);
  const Parsed gutenberg = ParseSample(folder, "gutenberg-navigation-root.xml");
  ASSERT_TRUE(gutenberg.ok) << gutenberg.error;
  ASSERT_EQ(gutenberg.feed.entries.size(), 3u);
  for (const auto &entry : gutenberg.feed.entries) EXPECT_EQ(entry->GetGoLink()->type, Link::kSubsection);
  const auto thumbnail = gutenberg.feed.entries[0]->GetLinkByType(Link::kThumbnail);
  ASSERT_TRUE(thumbnail);
  EXPECT_EQ(thumbnail->href.rfind("data:image/png;base64,", 0), 0u);
  EXPECT_EQ(UrlResolver::Resolve("https://www.gutenberg.org/ebooks.opds/", thumbnail->href), thumbnail->href);

  const Parsed popular = ParseSample(folder, "feedbooks-publicdomain-navigation.xml");
  ASSERT_TRUE(popular.ok) << popular.error;
  EXPECT_EQ(LinksOfType(popular.feed.links, Link::kFeatured).size(), 1u);
  EXPECT_EQ(LinksOfType(popular.feed.links, Link::kSortPopular).size(), 3u);

  const Parsed cbeta = ParseSample(folder, "tricky-cbeta-single-quotes-wrong-atom-ns.xml");
  ASSERT_TRUE(cbeta.ok) << cbeta.error;
  EXPECT_EQ(cbeta.title, "CBETA ePub OPDS Catalog");
  ASSERT_EQ(cbeta.feed.entries.size(), 2u);
  EXPECT_EQ(cbeta.feed.entries[1]->title, "Entry Two");
  EXPECT_EQ(cbeta.feed.entries[1]->GetGoLink()->href, "https://www.cbeta.org/opds/index.php?vol=X");
}

TEST(FeedParser, SharedCyrillicAndXhtmlSamples) {
  SHARED_SAMPLES_OR_SKIP(folder);
  const Parsed cyrillic = ParseSample(folder, "flibusta-authors-cyrillic-paged.xml");
  ASSERT_TRUE(cyrillic.ok) << cyrillic.error;
  EXPECT_EQ(cyrillic.title, "\u041a\u043d\u0438\u0433\u0438 \u043f\u043e \u0430\u0432\u0442\u043e\u0440\u0430\u043c");
  EXPECT_EQ(LinksOfType(cyrillic.feed.links, Link::kSearch).size(), 2u);
  const auto next = LinksOfType(cyrillic.feed.links, Link::kNext).at(0);
  EXPECT_EQ(UrlResolver::Resolve("http://flibusta.is/opds/authors/Sand", next->href),
            "http://flibusta.is/opds/authors/%D0%A1%D0%B0%D0%BD%D0%B4/1");
  const Entry &author = *cyrillic.feed.entries.at(0);
  EXPECT_EQ(author.title, "\u0421\u0430\u043d\u0434 \u0416\u0430\u043a\u043b\u0438\u043d");
  EXPECT_EQ(author.content->text, "6 \u043a\u043d\u0438\u0433");
  EXPECT_EQ(author.author, nullptr);
  EXPECT_EQ(author.GetGoLink()->href, "/opds/author/75357");
  EXPECT_EQ(author.links.at(0)->rel, "");
  EXPECT_EQ(LinksOfType(author.links, Link::kOther).size(), 2u);
  EXPECT_EQ(LinksOfType(author.links, Link::kOther)[1]->title,
            "\u041a\u043d\u0438\u0433\u0438 \u0430\u0432\u0442\u043e\u0440\u0430 \u0432\u043d\u0435 "
            "\u0441\u0435\u0440\u0438\u0439");

  const Parsed xhtml = ParseSample(folder, "gutenberg-book-acquisition-xhtml.xml");
  ASSERT_TRUE(xhtml.ok) << xhtml.error;
  ASSERT_EQ(xhtml.feed.entries.size(), 2u);
  const Entry &book = *xhtml.feed.entries[0];
  ASSERT_TRUE(book.content);
  EXPECT_EQ(book.content->text.rfind("<p>This edition had all images removed.</p>", 0), 0u);
  EXPECT_NE(book.content->text.find("Briefly Described<br"), std::string::npos);
  EXPECT_EQ(book.content->text.find("<div"), std::string::npos);
  EXPECT_EQ(book.published, "2013-04-07 00:00:00");
  EXPECT_EQ(book.identifier, "urn:lccn:00001011");
  ASSERT_EQ(book.categories.size(), 3u);
  EXPECT_EQ(book.categories[0]->term, "Mythology -- Dictionaries");
  EXPECT_EQ(book.categories[0]->label, "");
  EXPECT_EQ(LinksOfType(book.links, Link::kRelated).at(0)->title, "Readers also downloaded\u2026");
  EXPECT_EQ(LinksOfType(book.links, Link::kAcquisition).at(1)->format, "mobi");
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
    <dc:language>deu</dc:language><dc:identifier>ISBN:9783000000000</dc:identifier>
    <dc:publisher>&lt;b&gt;Verlag&lt;/b&gt;</dc:publisher>
    <a:link rel="http://opds-spec.org/acquisition/buy" type="text/html" href="/buy/1">
      <o:price currencycode="EUR" shop:oldPrice="12,99" shop:minBooks="3" shop:discount="20" other:oldPrice="1">9,99</o:price>
    </a:link>
    <a:link rel="urn:lumenpress:series" type="application/atom+xml" href="/series/7"/>
    <a:link rel="http://opds-spec.org/acquisition/open-access" type="application/vnd.adobe.adept+xml" href="/f/1.acsm">
      <o:indirectAcquisition type="application/epub+zip"/>
    </a:link>
  </a:entry>
  <a:entry xmlns:shop2="urn:lumenpress:opds">
    <a:id>collection-1</a:id>
    <shop2:kind>grouped</shop2:kind><own:stock xmlns:own="urn:lumenpress:opds">1</own:stock>
    <shop2:groupedImages><shop2:image href="/c/1.jpg"/><other:image href="/no.jpg"/><shop:image href="/c/2.jpg"/></shop2:groupedImages>
  </a:entry>
</a:feed>)");
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_EQ(parsed.title, "Series");
  EXPECT_STREQ(parsed.feed.total_results, "42");
  ASSERT_EQ(parsed.feed.entries.size(), 2u);
  const Entry &book = *parsed.feed.entries[0];
  EXPECT_EQ(book.type, "audio");
  EXPECT_EQ(book.in_stock, "0");
  EXPECT_STREQ(book.rating, "4.5");
  EXPECT_EQ(book.language, "deu");
  EXPECT_EQ(book.identifier, "ISBN:9783000000000");
  EXPECT_STREQ(book.publisher, "<b>Verlag</b>");
  const auto &price = book.GetLinkByType(Link::kBuy)->prices.at(0);
  EXPECT_EQ(price.value, "9,99");
  EXPECT_EQ(price.old_value, "12,99");
  EXPECT_EQ(price.min_books, "3");
  EXPECT_EQ(price.discount_count, "20");
  EXPECT_EQ(book.GetPriceWithDot(), "9.99");
  EXPECT_EQ(book.GetOldPriceWithDot(), "12.99");
  EXPECT_DOUBLE_EQ(book.GetPriceDouble(), 9.99);
  EXPECT_EQ(book.GetCurrencyCode(), "EUR");
  EXPECT_EQ(book.GetLinkByType(Link::kSeries)->href, "/series/7");
  EXPECT_EQ(book.GetLinkByType(Link::kOpenAccess)->format, "acsm");
  EXPECT_EQ(book.grouped_img, nullptr);

  const Entry &collection = *parsed.feed.entries[1];
  EXPECT_EQ(collection.type, "grouped");
  EXPECT_EQ(collection.in_stock, "1");
  ASSERT_TRUE(collection.grouped_img);
  EXPECT_EQ(collection.grouped_img->getGroupedImg(), (std::vector<std::string>{"/c/1.jpg", "/c/2.jpg"}));
  EXPECT_EQ(collection.GetOldPrice(), "0");
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
  const Parsed not_xml = ParseSample(kOwnSamples, "malformed-not-xml.xml");
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
