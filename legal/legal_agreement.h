// What the owner did about one version of a legal document.
#ifndef LUMENPRESS_LEGAL_AGREEMENT_H
#define LUMENPRESS_LEGAL_AGREEMENT_H

#include <cstdint>
#include <string>

namespace lumenpress::legal {

struct LegalAgreement {
  enum Status { kNotAgreed = 0, kAgreed = 1, kPreagreed = 2 };

  std::string user_id;
  std::string session_id;
  int status = kNotAgreed;
  // Seconds since 1970; 0 when never set.
  std::int64_t time = 0;
  bool sent_to_server = false;
};

}  // namespace lumenpress::legal

#endif
