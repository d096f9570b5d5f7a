// The state a notification or another application passes to the store on its command line.
#ifndef LUMENPRESS_BOOK_STORE_AUTH_CONFIGS_H
#define LUMENPRESS_BOOK_STORE_AUTH_CONFIGS_H

#include <string>

namespace lumenpress::utilities {

class BookStoreAuthConfigs {
public:
  class AuthState {
  public:
    int state = 0;
    int second = 0;
  };

  // "<state>,<second>", as in "--auth-state=0,1".
  static AuthState parseState(const std::string &text);
};

}  // namespace lumenpress::utilities

#endif
