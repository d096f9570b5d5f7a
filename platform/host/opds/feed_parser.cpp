#include "feed_parser.h"

#include <cctype>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "link_type_mapper.h"
#include "lp_log.h"
#include "mime_types.h"
#include "opds/opds_names.h"

namespace lumenpress::opds {

namespace {

using OPDS::Entry;
using OPDS::Link;

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Trimmed(std::string_view text) {
  return std::string(Trim(text));
}

bool IsText(const pugi::xml_node &node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

// The character data directly inside an element; comments and child elements do not break it. Most elements hold
// one piece of text, which is read where it lies; only text in pieces is put together in `pieces`.
std::string_view TextView(const pugi::xml_node &element, std::string *pieces) {
  const pugi::xml_node first = element.first_child();
  if (!first) return {};
  if (!first.next_sibling()) return IsText(first) ? Trim(first.value()) : std::string_view();
  for (pugi::xml_node child = first; child; child = child.next_sibling()) {
    if (IsText(child)) *pieces += child.value();
  }
  return Trim(*pieces);
}

std::string Text(const pugi::xml_node &element) {
  std::string pieces;
  return std::string(TextView(element, &pieces));
}

std::string AttributeText(const pugi::xml_attribute &attribute) {
  return Trimmed(attribute.value());
}

class StringWriter : public pugi::xml_writer {
public:
  explicit StringWriter(std::string *out) : out_(out) {}
  void write(const void *data, size_t size) override { out_->append(static_cast<const char *>(data), size); }

private:
  std::string *out_;
};

// An Atom text construct as HTML: xhtml keeps the markup inside its wrapping div, html and text are the text.
std::string TextConstruct(const pugi::xml_node &element) {
  if (std::strcmp(element.attribute("type").value(), "xhtml") != 0) return Text(element);
  const pugi::xml_node div =
      element.find_child([](const pugi::xml_node &node) { return node.type() == pugi::node_element; });
  std::string markup;
  StringWriter writer(&markup);
  for (pugi::xml_node child = (div ? div : element).first_child(); child; child = child.next_sibling()) {
    child.print(writer, "", pugi::format_raw);
  }
  return Trimmed(markup);
}

bool Digits(std::string_view *rest, size_t count, int *value) {
  if (rest->size() < count) return false;
  *value = 0;
  for (size_t i = 0; i < count; ++i) {
    const char c = (*rest)[i];
    if (c < '0' || c > '9') return false;
    *value = *value * 10 + (c - '0');
  }
  rest->remove_prefix(count);
  return true;
}

bool Consume(std::string_view *rest, const char *any_of) {
  if (rest->empty() || rest->front() == '\0' || !std::strchr(any_of, rest->front())) return false;
  rest->remove_prefix(1);
  return true;
}

bool Zone(std::string_view *rest) {
  if (Consume(rest, "Zz")) return true;
  if (!Consume(rest, "+-")) return true;
  int hours = 0;
  int minutes = 0;
  if (!Digits(rest, 2, &hours)) return false;
  Consume(rest, ":");
  return Digits(rest, 2, &minutes);
}

void PutDigits(char *at, int value, int width) {
  for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
}

// "%Y-%m-%d %H:%M:%S" from a W3C date: a year, a month, a day, or a time with or without seconds, fraction and
// zone. The zone is dropped, so a release date stays on the day the catalogue gave. Anything else stays as written.
std::string NormaliseDate(std::string_view text) {
  std::string_view rest = text;
  int year = 0, month = 1, day = 1, hour = 0, minute = 0, second = 0;
  bool ok = Digits(&rest, 4, &year);
  if (ok && Consume(&rest, "-")) ok = Digits(&rest, 2, &month) && (!Consume(&rest, "-") || Digits(&rest, 2, &day));
  if (ok && Consume(&rest, "Tt ")) {
    ok = Digits(&rest, 2, &hour) && Consume(&rest, ":") && Digits(&rest, 2, &minute) &&
         (!Consume(&rest, ":") || Digits(&rest, 2, &second));
    if (ok && Consume(&rest, ".")) {
      while (!rest.empty() && std::isdigit(static_cast<unsigned char>(rest.front()))) rest.remove_prefix(1);
    }
    ok = ok && Zone(&rest);
  }
  ok = ok && rest.empty() && month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour <= 23 && minute <= 59 &&
       second <= 60;
  if (!ok) return std::string(text);
  char normalised[] = "0000-00-00 00:00:00";
  PutDigits(normalised, year, 4);
  PutDigits(normalised + 5, month, 2);
  PutDigits(normalised + 8, day, 2);
  PutDigits(normalised + 11, hour, 2);
  PutDigits(normalised + 14, minute, 2);
  PutDigits(normalised + 17, second, 2);
  return normalised;
}

std::string DateOf(const pugi::xml_node &element) {
  std::string pieces;
  return NormaliseDate(TextView(element, &pieces));
}

// How many children of an element have the local name `first`, and how many `second`, whatever their namespace:
// enough to reserve room before the walk.
std::pair<size_t, size_t> CountChildren(const pugi::xml_node &element, const char *first, const char *second) {
  std::pair<size_t, size_t> counts;
  for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
    const char *qualified = child.name();
    const char *colon = std::strchr(qualified, ':');
    const char *local_name = colon ? colon + 1 : qualified;
    if (std::strcmp(local_name, first) == 0) {
      ++counts.first;
    } else if (std::strcmp(local_name, second) == 0) {
      ++counts.second;
    }
  }
  return counts;
}

void KeepFirst(std::string *field, const pugi::xml_node &element) {
  if (field->empty()) *field = Text(element);
}

void ReadLinkAttribute(const pugi::xml_attribute &attribute, XmlVocabulary vocabulary, const char *name, Link *link) {
  if (vocabulary == XmlVocabulary::kUnqualified) {
    if (std::strcmp(name, "href") == 0) {
      link->href = AttributeText(attribute);
    } else if (std::strcmp(name, "rel") == 0) {
      link->rel = AttributeText(attribute);
    } else if (std::strcmp(name, "type") == 0) {
      link->mime = AttributeText(attribute);
    } else if (std::strcmp(name, "title") == 0) {
      link->title = attribute.value();
    }
  } else if (vocabulary == XmlVocabulary::kOpds) {
    if (std::strcmp(name, "facetGroup") == 0) {
      link->facet_group = attribute.value();
    } else if (std::strcmp(name, "activeFacet") == 0) {
      link->active = attribute.as_bool();
    }
  }
}

void ReadPriceAttribute(const pugi::xml_attribute &attribute, XmlVocabulary vocabulary, const char *name,
                        OPDS::Price *price) {
  if (vocabulary == XmlVocabulary::kUnqualified && std::strcmp(name, "currencycode") == 0) {
    price->currency_code = AttributeText(attribute);
  } else if (vocabulary == XmlVocabulary::kStore) {
    if (std::strcmp(name, names::kOldPrice) == 0) {
      price->old_value = AttributeText(attribute);
    } else if (std::strcmp(name, names::kMinBooks) == 0) {
      price->min_books = AttributeText(attribute);
    } else if (std::strcmp(name, names::kDiscount) == 0) {
      price->discount_count = AttributeText(attribute);
    }
  }
}

}  // namespace

const FeedParser::EntryElement FeedParser::kEntryElements[] = {
    {XmlVocabulary::kAtom, "id", &FeedParser::ReadId},
    {XmlVocabulary::kAtom, "title", &FeedParser::ReadTitle},
    {XmlVocabulary::kAtom, "link", &FeedParser::ReadEntryLink},
    {XmlVocabulary::kAtom, "author", &FeedParser::ReadAuthor},
    {XmlVocabulary::kAtom, "summary", &FeedParser::ReadSummary},
    {XmlVocabulary::kAtom, "content", &FeedParser::ReadContent},
    {XmlVocabulary::kAtom, "category", &FeedParser::ReadCategory},
    {XmlVocabulary::kAtom, "published", &FeedParser::ReadPublished},
    {XmlVocabulary::kDublinCore, "issued", &FeedParser::ReadIssued},
    {XmlVocabulary::kDublinCore, "language", &FeedParser::ReadLanguage},
    {XmlVocabulary::kDublinCore, "identifier", &FeedParser::ReadIdentifier},
    {XmlVocabulary::kDublinCore, "publisher", &FeedParser::ReadPublisher},
    {XmlVocabulary::kDublinCore, "extent", &FeedParser::ReadExtent},
    {XmlVocabulary::kStore, names::kKind, &FeedParser::ReadKind},
    {XmlVocabulary::kStore, names::kStock, &FeedParser::ReadStock},
    {XmlVocabulary::kStore, names::kRating, &FeedParser::ReadRating},
    {XmlVocabulary::kStore, names::kGroupedImages, &FeedParser::ReadGroupedImages},
};

bool FeedParser::Parse(const char *data, size_t size, const std::string &feed_url, Feed *feed, std::string *title,
                       std::string *error) {
  pugi::xml_document document;
  const pugi::xml_parse_result result = document.load_buffer(data, size, pugi::parse_default);
  if (!result) {
    *error = "not XML at offset " + std::to_string(result.offset) + ": " + result.description();
    LP_LOG(LP_LOG_WARNING, "feed %s: %s", feed_url.c_str(), error->c_str());
    return false;
  }
  FeedParser parser;
  const pugi::xml_node root = document.document_element();
  parser.scope_.Enter(root);
  const char *local_name = nullptr;
  const XmlVocabulary vocabulary = parser.scope_.Resolve(root.name(), &local_name);
  if (vocabulary == XmlVocabulary::kAtom && std::strcmp(local_name, "feed") == 0) {
    title->clear();
    parser.ReadFeed(root, feed, title);
  } else if (vocabulary == XmlVocabulary::kAtom && std::strcmp(local_name, "entry") == 0) {
    feed->entries.push_back(parser.ReadEntry(root));
    *title = feed->entries.back()->title;
  } else {
    *error = std::string("the root element <") + root.name() + "> at offset " + std::to_string(root.offset_debug()) +
             " is no Atom feed or entry";
    LP_LOG(LP_LOG_WARNING, "feed %s: %s", feed_url.c_str(), error->c_str());
    return false;
  }
  return true;
}

void FeedParser::ReadFeed(const pugi::xml_node &element, Feed *feed, std::string *title) {
  const auto [entries, links] = CountChildren(element, "entry", "link");
  feed->entries.reserve(entries);
  feed->links.reserve(links);
  scope_.ForEachChild(element, [&](const pugi::xml_node &child, XmlVocabulary vocabulary, const char *name) {
    if (vocabulary == XmlVocabulary::kAtom) {
      if (std::strcmp(name, "entry") == 0) {
        feed->entries.push_back(ReadEntry(child));
      } else if (std::strcmp(name, "link") == 0) {
        feed->links.push_back(ReadLink(child));
      } else if (std::strcmp(name, "title") == 0) {
        KeepFirst(title, child);
      }
    } else if (vocabulary == XmlVocabulary::kOpenSearch && std::strcmp(name, "totalResults") == 0) {
      feed->total_results = Text(child);
    }
  });
}

std::shared_ptr<Entry> FeedParser::ReadEntry(const pugi::xml_node &element) {
  auto entry = std::make_shared<Entry>();
  const auto [links, categories] = CountChildren(element, "link", "category");
  entry->links.reserve(links);
  entry->categories.reserve(categories);
  scope_.ForEachChild(element, [&](const pugi::xml_node &child, XmlVocabulary vocabulary, const char *name) {
    for (const EntryElement &known : kEntryElements) {
      if (known.vocabulary == vocabulary && known.name[0] == name[0] && std::strcmp(known.name, name) == 0) {
        (this->*known.read)(child, entry.get());
        break;
      }
    }
  });
  return entry;
}

std::shared_ptr<Link> FeedParser::ReadLink(const pugi::xml_node &element) {
  auto link = std::make_shared<Link>();
  scope_.ForEachAttribute(element,
                          [&](const pugi::xml_attribute &attribute, XmlVocabulary vocabulary, const char *name) {
                            ReadLinkAttribute(attribute, vocabulary, name, link.get());
                          });
  link->type = LinkTypeMapper::Map(link->rel, link->mime);
  std::string format = MimeTypes::MimeToFormat(link->mime);
  if (format != MimeTypes::kUnsupported) link->format = std::move(format);
  scope_.ForEachChild(element, [&](const pugi::xml_node &child, XmlVocabulary vocabulary, const char *name) {
    if (vocabulary != XmlVocabulary::kOpds) return;
    if (std::strcmp(name, "price") == 0) {
      ReadPrice(child, link.get());
    } else if (std::strcmp(name, "indirectAcquisition") == 0) {
      ReadIndirectAcquisitions(child, link.get());
    }
  });
  return link;
}

void FeedParser::ReadPrice(const pugi::xml_node &element, Link *link) {
  auto price = std::make_unique<OPDS::Price>();
  price->value = Text(element);
  scope_.ForEachAttribute(element,
                          [&](const pugi::xml_attribute &attribute, XmlVocabulary vocabulary, const char *name) {
                            ReadPriceAttribute(attribute, vocabulary, name, price.get());
                          });
  if (price->old_value.empty()) price->old_value = "0";
  link->prices.push_back(price.release());
}

// Every level of the chain, in document order. The walk is iterative so that no depth of nesting can exhaust the
// stack; the declarations of each open level stay in force until the walk climbs out of it.
void FeedParser::ReadIndirectAcquisitions(const pugi::xml_node &element, Link *link) {
  std::vector<std::pair<pugi::xml_node, size_t>> open;
  pugi::xml_node node = element;
  while (node) {
    auto acquisition = std::make_unique<OPDS::IndirectAcquisition>();
    acquisition->mime = AttributeText(node.attribute("type"));
    link->indirect_acquisitions.push_back(acquisition.release());
    size_t declared = 0;
    pugi::xml_node next = NextIndirectAcquisition(node.first_child(), &declared);
    while (!next && !open.empty()) {
      const auto [climbed, climbed_declared] = open.back();
      open.pop_back();
      scope_.Leave(climbed_declared);
      next = NextIndirectAcquisition(climbed.next_sibling(), &declared);
    }
    if (next) open.emplace_back(next, declared);
    node = next;
  }
}

// The first opds:indirectAcquisition from node on among its siblings, with its declarations in force.
pugi::xml_node FeedParser::NextIndirectAcquisition(pugi::xml_node node, size_t *declared) {
  for (; node; node = node.next_sibling()) {
    if (node.type() != pugi::node_element) continue;
    *declared = scope_.Enter(node);
    const char *name = nullptr;
    if (scope_.Resolve(node.name(), &name) == XmlVocabulary::kOpds && std::strcmp(name, "indirectAcquisition") == 0) {
      return node;
    }
    scope_.Leave(*declared);
  }
  return {};
}

void FeedParser::ReadId(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->id, element);
}

void FeedParser::ReadTitle(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->title, element);
}

// The first author with a name or a page; catalogues also send authors with neither.
void FeedParser::ReadAuthor(const pugi::xml_node &element, Entry *entry) {
  if (entry->author) return;
  auto author = std::make_shared<OPDS::Author>();
  scope_.ForEachChild(element, [&](const pugi::xml_node &child, XmlVocabulary vocabulary, const char *name) {
    if (vocabulary != XmlVocabulary::kAtom) return;
    if (std::strcmp(name, "name") == 0) {
      KeepFirst(&author->name, child);
    } else if (std::strcmp(name, "uri") == 0) {
      KeepFirst(&author->uri, child);
    }
  });
  if (!author->name.empty() || !author->uri.empty()) entry->author = std::move(author);
}

void FeedParser::ReadSummary(const pugi::xml_node &element, Entry *entry) {
  if (entry->summary.empty()) entry->summary = TextConstruct(element);
}

void FeedParser::ReadContent(const pugi::xml_node &element, Entry *entry) {
  if (entry->content) return;
  std::string text = TextConstruct(element);
  if (text.empty()) return;
  entry->content = std::make_shared<OPDS::Content>();
  entry->content->text = std::move(text);
}

void FeedParser::ReadCategory(const pugi::xml_node &element, Entry *entry) {
  auto category = std::make_shared<OPDS::Category>();
  category->term = AttributeText(element.attribute("term"));
  category->label = AttributeText(element.attribute("label"));
  // A category without a label is named by its term, so a row of genres never shows blanks.
  if (category->label.empty()) category->label = category->term;
  if (!category->term.empty() || !category->label.empty()) entry->categories.push_back(std::move(category));
}

void FeedParser::ReadEntryLink(const pugi::xml_node &element, Entry *entry) {
  entry->links.push_back(ReadLink(element));
}

// Atom's own date wins over dcterms:issued, whichever comes first.
void FeedParser::ReadPublished(const pugi::xml_node &element, Entry *entry) {
  entry->published = DateOf(element);
}

void FeedParser::ReadIssued(const pugi::xml_node &element, Entry *entry) {
  if (entry->published.empty()) entry->published = DateOf(element);
}

void FeedParser::ReadLanguage(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->language, element);
}

void FeedParser::ReadIdentifier(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->identifier, element);
}

void FeedParser::ReadPublisher(const pugi::xml_node &element, Entry *entry) {
  if (entry->publisher.empty()) entry->publisher = Text(element);
}

void FeedParser::ReadExtent(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->extent, element);
}

void FeedParser::ReadKind(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->type, element);
}

void FeedParser::ReadStock(const pugi::xml_node &element, Entry *entry) {
  KeepFirst(&entry->in_stock, element);
}

void FeedParser::ReadRating(const pugi::xml_node &element, Entry *entry) {
  if (entry->rating.empty()) entry->rating = Text(element);
}

void FeedParser::ReadGroupedImages(const pugi::xml_node &element, Entry *entry) {
  if (!entry->grouped_img) entry->grouped_img = std::make_shared<OPDS::GroupedImg>();
  scope_.ForEachChild(element, [&](const pugi::xml_node &child, XmlVocabulary vocabulary, const char *name) {
    if (vocabulary != XmlVocabulary::kStore || std::strcmp(name, names::kGroupedImage) != 0) return;
    const std::string href = AttributeText(child.attribute("href"));
    if (!href.empty()) entry->grouped_img->addImage(href);
  });
}

}  // namespace lumenpress::opds
