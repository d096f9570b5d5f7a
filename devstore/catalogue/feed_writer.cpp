#include "feed_writer.h"

#include <cstdio>
#include <sstream>

#include "opds/opds_names.h"

namespace devstore {

namespace {

namespace names = lumenpress::opds::names;

const char kUpdated[] = "2026-11-01T00:00:00Z";

// Prices keep two decimals whatever the currency: "9.99", "210.00", "0.00".
std::string amount(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

std::string storeName(const char *name) {
  return std::string("lp:") + name;
}

}  // namespace

FeedWriter::FeedWriter(const std::string &id, const std::string &title, const std::string &selfHref, bool acquisition) {
  auto declaration = document_.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  feed_ = document_.append_child("feed");
  feed_.append_attribute("xmlns") = "http://www.w3.org/2005/Atom";
  feed_.append_attribute("xmlns:opds") = "http://opds-spec.org/2010/catalog";
  feed_.append_attribute("xmlns:dc") = "http://purl.org/dc/terms/";
  feed_.append_attribute("xmlns:opensearch") = "http://a9.com/-/spec/opensearch/1.1/";
  feed_.append_attribute("xmlns:lp") = names::kNamespace;
  text(feed_, "id", id);
  text(feed_, "title", title);
  text(feed_, "updated", kUpdated);
  link("self", acquisition ? kAcquisitionType : kNavigationType, selfHref);
}

void FeedWriter::link(const std::string &rel, const std::string &type, const std::string &href,
                      const std::string &title) {
  auto node = feed_.append_child("link");
  node.append_attribute("rel") = rel.c_str();
  if (!type.empty()) node.append_attribute("type") = type.c_str();
  node.append_attribute("href") = href.c_str();
  if (!title.empty()) node.append_attribute("title") = title.c_str();
}

void FeedWriter::facet(const std::string &group, const std::string &title, const std::string &href, bool active) {
  link("http://opds-spec.org/facet", kAcquisitionType, href, title);
  auto node = feed_.last_child();
  node.append_attribute("opds:facetGroup") = group.c_str();
  if (active) node.append_attribute("opds:activeFacet") = "true";
}

void FeedWriter::paging(int total, int page, int perPage) {
  text(feed_, "opensearch:totalResults", std::to_string(total));
  text(feed_, "opensearch:itemsPerPage", std::to_string(perPage));
  text(feed_, "opensearch:startIndex", std::to_string((page - 1) * perPage + 1));
}

pugi::xml_node FeedWriter::entry(const std::string &id, const std::string &title) {
  auto node = feed_.append_child("entry");
  text(node, "id", id);
  text(node, "title", title);
  text(node, "updated", kUpdated);
  return node;
}

pugi::xml_node FeedWriter::link(pugi::xml_node entry, const std::string &rel, const std::string &type,
                                const std::string &href, const std::string &title) {
  auto node = entry.append_child("link");
  node.append_attribute("rel") = rel.c_str();
  if (!type.empty()) node.append_attribute("type") = type.c_str();
  node.append_attribute("href") = href.c_str();
  if (!title.empty()) node.append_attribute("title") = title.c_str();
  return node;
}

void FeedWriter::text(pugi::xml_node parent, const char *name, const std::string &value) {
  parent.append_child(name).text().set(value.c_str());
}

void FeedWriter::html(pugi::xml_node entry, const char *name, const std::string &value) {
  auto node = entry.append_child(name);
  node.append_attribute("type") = "html";
  node.text().set(value.c_str());
}

void FeedWriter::author(pugi::xml_node entry, const std::string &name, const std::string &uri) {
  auto node = entry.append_child("author");
  text(node, "name", name);
  if (!uri.empty()) text(node, "uri", uri);
}

void FeedWriter::category(pugi::xml_node entry, const std::string &term, const std::string &label) {
  auto node = entry.append_child("category");
  node.append_attribute("term") = term.c_str();
  node.append_attribute("label") = label.c_str();
}

void FeedWriter::price(pugi::xml_node link, const std::string &currency, double value, double oldValue, int minBooks,
                       int discount) {
  auto node = link.append_child("opds:price");
  node.append_attribute("currencycode") = currency.c_str();
  if (oldValue > 0) node.append_attribute(storeName(names::kOldPrice).c_str()) = amount(oldValue).c_str();
  if (minBooks > 0) node.append_attribute(storeName(names::kMinBooks).c_str()) = minBooks;
  if (discount > 0) node.append_attribute(storeName(names::kDiscount).c_str()) = discount;
  node.text().set(amount(value).c_str());
}

void FeedWriter::indirect(pugi::xml_node link, std::initializer_list<const char *> types) {
  auto parent = link;
  for (const char *type : types) {
    parent = parent.append_child("opds:indirectAcquisition");
    parent.append_attribute("type") = type;
  }
}

std::string FeedWriter::xml() const {
  std::ostringstream out;
  document_.save(out, "", pugi::format_raw);
  return out.str();
}

}  // namespace devstore
