// The device's notifications, each owned by an application id (6 store, 3 send-to-device,
// 9 reading service, 10 cloud).
#ifndef LUMENPRESS_FRAMEWORK_NOTIFIER_H
#define LUMENPRESS_FRAMEWORK_NOTIFIER_H

#include <string>

namespace lumenpress {

class Notifier {
public:
  // A tap on the notification starts application with parameters.
  static bool Add(const std::string &title, const std::string &text, const std::string &application,
                  const std::string &parameters, int app_id);
  // Every notification of the application id.
  static bool Remove(int app_id);
  // The one notification that matches all of these.
  static bool Remove(const std::string &title, const std::string &text, const std::string &application,
                     const std::string &parameters, int app_id);
};

}  // namespace lumenpress

#endif
