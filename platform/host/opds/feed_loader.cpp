#include "feed_loader.h"

#include <curl/curl.h>
#include <pugixml.hpp>

#include "feed_parser.h"
#include "http_fetcher.h"
#include "lp_log.h"
#include "url_resolver.h"

namespace lumenpress::opds {

namespace {

std::string encoded(const std::string &text) {
  char *escaped = curl_easy_escape(nullptr, text.c_str(), static_cast<int>(text.size()));
  std::string out = escaped ? escaped : "";
  curl_free(escaped);
  return out;
}

// Fills {searchTerms}; optional parameters ({name?}) are left empty.
std::string fillTemplate(std::string pattern, const std::string &text) {
  const std::string terms = "{searchTerms}";
  for (auto at = pattern.find(terms); at != std::string::npos; at = pattern.find(terms, at + 1))
    pattern.replace(at, terms.size(), encoded(text));
  for (auto open = pattern.find('{'); open != std::string::npos; open = pattern.find('{', open)) {
    const auto close = pattern.find('}', open);
    if (close == std::string::npos) break;
    pattern.erase(open, close - open + 1);
  }
  return pattern;
}

void absolutize(const std::string &base, std::vector<std::shared_ptr<OPDS::Link>> &links) {
  for (auto &link : links) link->href = UrlResolver::Resolve(base, link->href);
}

std::string atomTemplate(const std::string &body) {
  pugi::xml_document document;
  if (!document.load_buffer(body.data(), body.size())) return {};
  std::string fallback;
  for (pugi::xml_node url : document.document_element().children()) {
    const std::string name = url.name();
    if (name.substr(name.find(':') + 1) != "Url") continue;
    const std::string type = url.attribute("type").value();
    if (type.find("atom") != std::string::npos) return url.attribute("template").value();
    if (fallback.empty() && type.find("html") == std::string::npos) fallback = url.attribute("template").value();
  }
  return fallback;
}

}  // namespace

FeedLoader::FeedLoader(const CredentialStore &credentials, const DiskCache &cache)
    : credentials_(credentials), cache_(cache) {}

FeedLoader::Result FeedLoader::load(const std::string &url, const std::string &user_agent, bool absolute_links) const {
  Result result;
  DiskCache::Record cached;
  const bool have_copy = cache_.load(url, &cached);
  auto headers = credentials_.headersFor(url);
  headers["Accept"] = "application/atom+xml, application/xml;q=0.9, */*;q=0.1";
  if (have_copy && !cached.etag.empty()) headers["If-None-Match"] = cached.etag;
  if (have_copy && !cached.last_modified.empty()) headers["If-Modified-Since"] = cached.last_modified;

  const HttpFetcher::Result response = HttpFetcher(user_agent, headers).get(url);
  if (response.transport_error != 0) {
    LP_LOG(LP_LOG_ERROR, "Loading %s failed: %s", url.c_str(),
           curl_easy_strerror(static_cast<CURLcode>(response.transport_error)));
    result.error = kTransportError;
    return result;
  }
  if (response.status == 304 && have_copy) {
    parse(cached.body, url, absolute_links, &result);
    return result;
  }
  if (response.status != 200) {
    LP_LOG(LP_LOG_ERROR, "Loading %s answered %ld", url.c_str(), response.status);
    result.error = static_cast<int>(response.status);
    return result;
  }
  if (parse(response.body, url, absolute_links, &result))
    cache_.store(url, DiskCache::Record{response.body, response.etag, response.last_modified});
  return result;
}

FeedLoader::Result FeedLoader::search(const std::string &search_url, const std::string &text,
                                      const std::string &user_agent) const {
  const std::string pattern = search_url.find("{searchTerms}") != std::string::npos
                                  ? search_url
                                  : UrlResolver::Resolve(search_url, searchTemplate(search_url, user_agent));
  if (pattern.find("{searchTerms}") == std::string::npos) {
    Result result;
    result.error = kNoSearchTemplate;
    return result;
  }
  return load(fillTemplate(pattern, text), user_agent, true);
}

bool FeedLoader::loadCached(const std::string &url, Result *result) const {
  DiskCache::Record cached;
  return cache_.load(url, &cached) && parse(cached.body, url, false, result);
}

bool FeedLoader::parse(const std::string &body, const std::string &url, bool absolute_links, Result *result) const {
  auto feed = std::make_shared<Feed>();
  std::string error;
  if (!FeedParser::Parse(body.data(), body.size(), url, feed.get(), &result->title, &error)) {
    LP_LOG(LP_LOG_ERROR, "Feed %s does not parse: %s", url.c_str(), error.c_str());
    result->error = kParseError;
    return false;
  }
  if (absolute_links) {
    absolutize(url, feed->links);
    for (auto &entry : feed->entries) absolutize(url, entry->links);
  }
  result->feed = feed;
  return true;
}

std::string FeedLoader::searchTemplate(const std::string &description_url, const std::string &user_agent) const {
  {
    std::lock_guard<std::mutex> lock(templates_mutex_);
    const auto known = templates_.find(description_url);
    if (known != templates_.end()) return known->second;
  }
  const HttpFetcher::Result response =
      HttpFetcher(user_agent, credentials_.headersFor(description_url)).get(description_url);
  if (response.transport_error != 0 || response.status != 200) return {};
  const std::string pattern = atomTemplate(response.body);
  std::lock_guard<std::mutex> lock(templates_mutex_);
  templates_[description_url] = pattern;
  return pattern;
}

}  // namespace lumenpress::opds
