// Performs one HttpRequest over the network.
#ifndef LUMENPRESS_HTTP_REQUEST_RUNNER_H
#define LUMENPRESS_HTTP_REQUEST_RUNNER_H

#include <vector>

#include "http_request.h"

namespace lumenpress::utilities {

class HttpRequestRunner {
public:
  HttpRequestRunner();

  // 0 when an HTTP exchange took place, whatever its status (redirects are not followed);
  // then *httpCode holds the status and *response the body followed by one zero byte.
  // Non-zero (libcurl's code) for a transport failure, with an empty response and a status
  // of 0. timeoutSeconds bounds the whole exchange; 0 or less leaves it unbounded.
  int PerformRequest(const HttpRequest &request, long *httpCode, std::vector<char> *response, int timeoutSeconds);
};

}  // namespace lumenpress::utilities

#endif
