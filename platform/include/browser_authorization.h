// The device's browser run for a web page that ends in a return address (payment pages).
#ifndef LUMENPRESS_BROWSER_AUTHORIZATION_H
#define LUMENPRESS_BROWSER_AUTHORIZATION_H

#include <string>
#include <vector>

namespace lumenpress::utilities {

class BrowserAuthorization {
public:
  class IEventHandler {
  public:
    // Every address the browser shows.
    virtual void UrlChanged(const std::string &url) = 0;
    virtual void Closed() = 0;
    virtual ~IEventHandler() = default;
  };

  explicit BrowserAuthorization(IEventHandler *handler);

  // Blocks until the browser has ended or was stopped; 0 or an error number.
  int Start(const std::string &url, const std::vector<std::string> &args);
  void SetFocus();

private:
  IEventHandler *handler_;
};

}  // namespace lumenpress::utilities

#endif
