// The storefront on loopback: its database, catalogue, REST interface, payment pages and
// control interface on one
// port, with faults and the request log applied around every request but the control ones.
#ifndef DEVSTORE_STORE_SERVER_H
#define DEVSTORE_STORE_SERVER_H

#include <httplib.h>

#include <memory>
#include <string>

#include "catalogue.h"
#include "control_routes.h"
#include "database.h"
#include "fault_injector.h"
#include "legal_routes.h"
#include "opds_routes.h"
#include "options.h"
#include "order_service.h"
#include "payment_pages.h"
#include "request_log.h"
#include "rest_routes.h"
#include "service_token_routes.h"
#include "token_store.h"

namespace devstore {

class StoreServer {
public:
  explicit StoreServer(const Options &options);

  // Opens and, the first time, seeds the data folder, then binds the port. Needs a
  // QGuiApplication for the covers of a first seed.
  bool open(std::string *error);
  int port() const { return port_; }
  // Serves until stop() is called from another thread.
  void run();
  void stop();

private:
  httplib::Server::HandlerResponse beforeRouting(const httplib::Request &request, httplib::Response &response);
  void afterRouting(const httplib::Request &request, httplib::Response &response);

  static void dropConnection(httplib::Response &response);
  static void truncateBody(httplib::Response &response);
  static void breakBody(httplib::Response &response);
  static bool isControl(const httplib::Request &request);

  Options options_;
  Database db_;
  Catalogue catalogue_{&db_};
  TokenStore tokens_{&db_};
  RequestLog log_;
  FaultInjector faults_;
  OpdsRoutes opds_;
  OrderService orders_{&db_};
  RestRoutes rest_{&db_, &catalogue_, &tokens_, &orders_};
  PaymentPages pages_{&db_, &catalogue_, &orders_};
  ServiceTokenRoutes accounts_{&db_, &tokens_};
  LegalRoutes legal_{&db_};
  ControlRoutes control_{&db_, &log_, &faults_, &tokens_, &pages_};
  httplib::Server server_;
  int port_ = 0;
};

}  // namespace devstore

#endif
