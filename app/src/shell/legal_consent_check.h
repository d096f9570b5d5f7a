// The consent check at start: in a thread of its own beside the event loop, so the store can be
// used while the owner is asked; a refusal ends the event loop with -1.
#ifndef LUMENPRESS_APP_LEGAL_CONSENT_CHECK_H
#define LUMENPRESS_APP_LEGAL_CONSENT_CHECK_H

#include "user_data.h"

class LegalConsentCheck {
public:
  // Detached at once; the run mode is given, not read from UserData on the thread.
  static void start(UserData::StoreRunMode mode);
  // The thread's work: false when the owner refused, after the event loop was told to end.
  static bool run(UserData::StoreRunMode mode);
};

#endif
