// What a store started anew finds of the session: "signed-in <e-mail>" or "signed-out <e-mail>".
#include <QCoreApplication>

#include <cstdio>

#include "user_data.h"

int main(int argc, char **argv) {
  QCoreApplication app(argc, argv);
  UserData *user = UserData::instance();
  std::printf("%s %s\n", user->isLoggedIn() ? "signed-in" : "signed-out", qUtf8Printable(user->getUserEmail()));
  return 0;
}
