// The legal documents service, at "/legal/v1/" and, as its test endpoint, "/legal-test/v1/":
// the documents that apply to a device, where each lies, and the consent devices report. A
// request without a valid signature is refused with 403.
#ifndef DEVSTORE_LEGAL_ROUTES_H
#define DEVSTORE_LEGAL_ROUTES_H

#include <httplib.h>

#include <string>

#include "database.h"
#include "rest_answer.h"

namespace devstore {

class LegalRoutes {
public:
  explicit LegalRoutes(Database *db);

  void install(httplib::Server *server);

private:
  RestAnswer list(const httplib::Request &request) const;
  RestAnswer document(const httplib::Request &request) const;
  RestAnswer process(const httplib::Request &request);
  static RestAnswer page(const httplib::Request &request);

  Database *db_;
};

}  // namespace devstore

#endif
