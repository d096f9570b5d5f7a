// The control interface under "/_control/", for tests and for anyone trying failures by hand:
// the request log, injected faults, tokens issued or expired on demand, and what the payment
// page decides.
#ifndef DEVSTORE_CONTROL_ROUTES_H
#define DEVSTORE_CONTROL_ROUTES_H

#include <httplib.h>

#include "database.h"
#include "fault_injector.h"
#include "payment_pages.h"
#include "request_log.h"
#include "token_store.h"

namespace devstore {

class ControlRoutes {
public:
  static constexpr const char *kPrefix = "/_control/";

  ControlRoutes(const Database *db, RequestLog *log, FaultInjector *faults, TokenStore *tokens, PaymentPages *pages);

  void install(httplib::Server *server);

private:
  void addFault(const httplib::Request &request, httplib::Response &response);
  void issueToken(const httplib::Request &request, httplib::Response &response);
  void expireTokens(const httplib::Request &request, httplib::Response &response);
  void setPaymentMode(const httplib::Request &request, httplib::Response &response);

  static void sendJson(httplib::Response &response, const Json::Value &value, int status = 200);

  const Database *db_;
  RequestLog *log_;
  FaultInjector *faults_;
  TokenStore *tokens_;
  PaymentPages *pages_;
};

}  // namespace devstore

#endif
