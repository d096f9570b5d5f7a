#include <benchmark/benchmark.h>

#include <string>

#include "feed_parser.h"

namespace {

// A page of a store list as the local store writes it: a book with its cover, prices, categories and summary.
std::string MakeFeed(int entries) {
  std::string feed =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<feed xmlns=\"http://www.w3.org/2005/Atom\" xmlns:opds=\"http://opds-spec.org/2010/catalog\" "
      "xmlns:dcterms=\"http://purl.org/dc/terms/\" xmlns:opensearch=\"http://a9.com/-/spec/opensearch/1.1/\" "
      "xmlns:lp=\"urn:lumenpress:opds\">\n"
      "<id>tag:bench</id><title>Bench</title><updated>2024-01-01T00:00:00Z</updated>\n"
      "<link rel=\"self\" href=\"/opds/bench\" type=\"application/atom+xml;profile=opds-catalog\"/>\n"
      "<link rel=\"next\" href=\"/opds/bench?page=2\" type=\"application/atom+xml;profile=opds-catalog\"/>\n"
      "<opensearch:totalResults>100000</opensearch:totalResults>\n";
  for (int i = 0; i < entries; ++i) {
    const std::string n = std::to_string(i);
    feed += "<entry><id>book:" + n + "</id><title>Title number " + n +
            " of the bench</title>"
            "<author><name>Author " +
            n + "</name><uri>/opds/author/" + n +
            "</uri></author>"
            "<published>2020-05-17T10:20:30+02:00</published><dcterms:language>eng</dcterms:language>"
            "<dcterms:identifier>ISBN:97800000" +
            n +
            "</dcterms:identifier><dcterms:publisher>Publisher &amp; Sons</dcterms:publisher>"
            "<dcterms:extent>320 pages</dcterms:extent><lp:kind>book</lp:kind><lp:stock>1</lp:stock>"
            "<lp:rating>4.5</lp:rating>"
            "<category term=\"fiction\" label=\"Fiction\"/><category term=\"crime\" label=\"Crime\"/>"
            "<summary type=\"html\">&lt;p&gt;A summary of the book with a few sentences of text, long enough to "
            "look like the real thing in a store list of books.&lt;/p&gt;</summary>"
            "<link rel=\"http://opds-spec.org/image\" type=\"image/jpeg\" href=\"/covers/" +
            n +
            ".jpg\"/>"
            "<link rel=\"http://opds-spec.org/image/thumbnail\" type=\"image/jpeg\" href=\"/covers/" +
            n +
            "-small.jpg\"/>"
            "<link rel=\"alternate\" type=\"application/atom+xml;type=entry;profile=opds-catalog\" href=\"/opds/item/" +
            n +
            "\"/>"
            "<link rel=\"http://opds-spec.org/acquisition/buy\" type=\"text/html\" href=\"/buy/" +
            n +
            "\"><opds:price currencycode=\"EUR\" lp:oldPrice=\"12.99\">9.99</opds:price>"
            "<opds:indirectAcquisition type=\"application/vnd.adobe.adept+xml\">"
            "<opds:indirectAcquisition type=\"application/epub+zip\"/></opds:indirectAcquisition></link>"
            "<link rel=\"http://opds-spec.org/acquisition/sample\" type=\"application/epub+zip\" href=\"/sample/" +
            n + ".epub\"/></entry>\n";
  }
  return feed + "</feed>\n";
}

// A hostile page: the ordinary feed of `declarations / 20` entries, its root declaring `declarations` namespaces
// besides its own, all in force for every element after them.
std::string MakeManyDeclarationsFeed(int declarations) {
  std::string xml = MakeFeed(declarations / 20);
  std::string extra;
  for (int i = 0; i < declarations; ++i)
    extra += " xmlns:p" + std::to_string(i) + "=\"urn:x:" + std::to_string(i) + "\"";
  xml.insert(xml.find(" xmlns:lp="), extra);
  return xml;
}

void Parse(benchmark::State &state, const std::string &xml) {
  for (auto _ : state) {
    lumenpress::opds::Feed feed;
    std::string title;
    std::string error;
    const bool ok = lumenpress::opds::FeedParser::Parse(xml.data(), xml.size(), "bench", &feed, &title, &error);
    benchmark::DoNotOptimize(ok);
    benchmark::DoNotOptimize(feed.entries.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(xml.size()));
  state.counters["bytes"] = static_cast<double>(xml.size());
}

void BM_ParseFeed(benchmark::State &state) {
  Parse(state, MakeFeed(static_cast<int>(state.range(0))));
}

// Time per byte must stay that of an ordinary feed, however many declarations are in force.
void BM_ParseManyDeclarations(benchmark::State &state) {
  Parse(state, MakeManyDeclarationsFeed(static_cast<int>(state.range(0))));
}

}  // namespace

BENCHMARK(BM_ParseFeed)->Arg(20)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseManyDeclarations)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
