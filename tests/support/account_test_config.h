// Points the host's account and legal services at a test's own devstore.
#ifndef LUMENPRESS_TESTS_ACCOUNT_TEST_CONFIG_H
#define LUMENPRESS_TESTS_ACCOUNT_TEST_CONFIG_H

#include "devstore_process.h"

namespace lumenpress::testing {

void useAccountService(const DevstoreProcess &store);
void useLegalService(const DevstoreProcess &store);

}  // namespace lumenpress::testing

#endif
