#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "feed_parser.h"

namespace {

std::atomic<size_t> allocations{0};

void *CountedMalloc(size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size);
}

// Out of line, so that the compiler does not take the replaced operators below for a mismatched pair.
[[gnu::noinline]] void Release(void *memory) {
  std::free(memory);
}

}  // namespace

// Every allocation of the program, ours and pugixml's, is counted, so that a parse can tell its own.
void *operator new(size_t size) {
  if (void *memory = CountedMalloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

void operator delete(void *memory) noexcept {
  Release(memory);
}

void operator delete(void *memory, size_t) noexcept {
  Release(memory);
}

namespace {

constexpr int kPageEntries = 1000;

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

// Runs parse_once over and over, with bytes per second and the allocations of one run, building and tearing down.
template <typename ParseOnce>
void Measure(benchmark::State &state, const std::string &xml, int entries, ParseOnce &&parse_once) {
  size_t counted = 0;
  for (auto _ : state) {
    const size_t before = allocations.load(std::memory_order_relaxed);
    parse_once();
    counted = allocations.load(std::memory_order_relaxed) - before;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(xml.size()));
  state.counters["allocs"] = static_cast<double>(counted);
  state.counters["allocs/entry"] = static_cast<double>(counted) / entries;
}

void Parse(benchmark::State &state, const std::string &xml, int entries) {
  Measure(state, xml, entries, [&xml] {
    lumenpress::opds::Feed feed;
    std::string title;
    std::string error;
    const bool ok = lumenpress::opds::FeedParser::Parse(xml.data(), xml.size(), "bench", &feed, &title, &error);
    benchmark::DoNotOptimize(ok);
    benchmark::DoNotOptimize(feed.entries.data());
  });
}

void BM_ParseFeed(benchmark::State &state) {
  const int entries = static_cast<int>(state.range(0));
  Parse(state, MakeFeed(entries), entries);
}

// What any reading of the page costs at least: pugixml's own parse, with no records made.
void BM_BarePugixml(benchmark::State &state) {
  const int entries = static_cast<int>(state.range(0));
  const std::string xml = MakeFeed(entries);
  Measure(state, xml, entries, [&xml] {
    pugi::xml_document document;
    benchmark::DoNotOptimize(document.load_buffer(xml.data(), xml.size()).status);
  });
}

// Time per byte must stay that of an ordinary feed, however many declarations are in force.
void BM_ParseManyDeclarations(benchmark::State &state) {
  const int declarations = static_cast<int>(state.range(0));
  Parse(state, MakeManyDeclarationsFeed(declarations), declarations / 20);
}

// The usual table, then the page of 1000 entries against what its parse is held to.
class GoalReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run> &runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      const std::string name = run.run_name.str();
      milliseconds_[name] = run.GetAdjustedCPUTime() * Milliseconds(run.time_unit);
      const auto per_entry = run.counters.find("allocs/entry");
      if (per_entry != run.counters.end()) allocations_[name] = per_entry->second.value;
    }
  }

  void PrintGoals() {
    const std::string parse = "BM_ParseFeed/" + std::to_string(kPageEntries);
    const std::string bare = "BM_BarePugixml/" + std::to_string(kPageEntries);
    if (!milliseconds_.count(parse) || !milliseconds_.count(bare)) return;
    const double share = milliseconds_[bare] / milliseconds_[parse];
    std::printf("\nThe %d-entry page (CPU time):\n", kPageEntries);
    std::printf("  parse into records  %6.2f ms          goal under 3 ms (100 times the JavaScript parsers)  %s\n",
                milliseconds_[parse], Verdict(milliseconds_[parse] < 3));
    std::printf("  bare pugixml parse  %6.2f ms = %3.0f%%   goal at least 40%% of the parse's time            %s\n",
                milliseconds_[bare], share * 100, Verdict(share >= 0.4));
    std::printf("  allocations         %6.1f per entry, building and tearing down\n", allocations_[parse]);
  }

private:
  static double Milliseconds(benchmark::TimeUnit unit) {
    switch (unit) {
      case benchmark::kNanosecond:
        return 1e-6;
      case benchmark::kMicrosecond:
        return 1e-3;
      case benchmark::kMillisecond:
        return 1;
      case benchmark::kSecond:
        return 1e3;
    }
    return 1;
  }
  static const char *Verdict(bool met) { return met ? "met" : "NOT MET"; }

  std::map<std::string, double> milliseconds_;
  std::map<std::string, double> allocations_;
};

}  // namespace

BENCHMARK(BM_ParseFeed)->Arg(20)->Arg(kPageEntries)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BarePugixml)->Arg(kPageEntries)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseManyDeclarations)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv) {
  pugi::set_memory_management_functions(CountedMalloc, std::free);
  benchmark::Initialize(&argc, argv);
  GoalReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintGoals();
  return 0;
}
