// The store's tokens as bookstore.cfg keeps them between runs.
#ifndef LUMENPRESS_TOKEN_FILE_H
#define LUMENPRESS_TOKEN_FILE_H

#include <string>

namespace lumenpress::bookstore {

class TokenFile {
public:
  // Both stay empty unless the device has a session of the account service
  // ("sac_access_token"): store tokens without one belong to an account that is gone.
  static void read(std::string *accessToken, std::string *refreshToken);
  static void write(const std::string &accessToken, const std::string &refreshToken);
};

}  // namespace lumenpress::bookstore

#endif
