// The catalogue's HTTP face: every store's feeds under "<store>/lpress/opds/", the
// suggestions for the search field, covers, samples and downloads.
#ifndef DEVSTORE_OPDS_ROUTES_H
#define DEVSTORE_OPDS_ROUTES_H

#include <httplib.h>

#include <optional>
#include <string>

#include "catalogue.h"
#include "feed_cache.h"
#include "store_feeds.h"
#include "token_store.h"

namespace devstore {

class OpdsRoutes {
public:
  OpdsRoutes(const Catalogue *catalogue, const TokenStore *tokens);

  void install(httplib::Server *server);

private:
  void serveFeed(const httplib::Request &request, httplib::Response &response) const;
  std::optional<std::string> feedBody(const std::string &name, const httplib::Request &request,
                                      httplib::Response &response) const;
  std::optional<std::string> feed(const StoreFeeds &feeds, const std::string &name, const httplib::Request &request,
                                  httplib::Response &response) const;
  std::optional<std::string> signedInFeed(const StoreFeeds &feeds, const std::string &name,
                                          const httplib::Request &request, httplib::Response &response) const;
  void serveSuggestions(const httplib::Request &request, httplib::Response &response) const;
  void serveFile(const httplib::Request &request, httplib::Response &response) const;
  void serveCover(const httplib::Request &request, httplib::Response &response) const;
  void serveIndex(const httplib::Request &request, httplib::Response &response) const;

  // The answer with its entity tag; a client that already has this version gets 304.
  static void sendVersioned(const httplib::Request &request, httplib::Response &response, const std::string &body,
                            const std::string &tag, const char *type);
  static void sendError(httplib::Response &response, int status, const std::string &message);
  static std::string origin(const httplib::Request &request);

  const Catalogue *catalogue_;
  const TokenStore *tokens_;
  mutable FeedCache public_feeds_{catalogue_};
};

}  // namespace devstore

#endif
