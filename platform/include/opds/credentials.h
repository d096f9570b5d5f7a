// A bearer token that goes with every request whose URL begins with its key.
#ifndef LUMENPRESS_OPDS_CREDENTIALS_H
#define LUMENPRESS_OPDS_CREDENTIALS_H

#include <string>

namespace lumenpress::opds {

class Credentials {
public:
  std::string key;
  std::string token;
};

}  // namespace lumenpress::opds

#endif
