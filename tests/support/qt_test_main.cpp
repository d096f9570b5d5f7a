#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cstdlib>

#include "temp_device_root.h"

// Qt's offscreen platform never frees its screen; these frames are all that leaks of it. A leak
// of the program's own objects still shows, since its direct allocation is made elsewhere.
extern "C" const char *__lsan_default_suppressions() {
  return "leak:libqoffscreen.so\n"
         "leak:QScreen::QScreen\n"
         "leak:QPlatformScreen::QPlatformScreen\n"
         "leak:QWindowSystemInterface::handleScreenAdded\n"
         "leak:QObject::QObject\n"
         "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n"
         // Qt's network layer loads OpenSSL, whose global state lives until the process ends.
         "leak:libcrypto.so\n"
         // The software scene graph keeps the textures of shown images (and through them the
         // decoded pictures) past the window's end.
         "leak:QSGRenderContext::textureForFactory\n";
}

// Qt is built without frame pointers: only the slow unwinder sees the Qt frames the
// suppressions above name.
extern "C" const char *__asan_default_options() {
  return "fast_unwind_on_malloc=0";
}

// Qt tests run with an application object on the offscreen platform, and a device root of their own.
int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("QT_QUICK_BACKEND", "software", 0);
  // The device's control module lies beside kiosk-2.app, not beside the test programs.
  setenv("QML2_IMPORT_PATH", LP_CONTROLS_IMPORT_DIR, 1);
  ::testing::InitGoogleTest(&argc, argv);
  // Tests run with the platform's defaults, whatever the developer's shell has set.
  unsetenv("LUMENPRESS_LOG_LEVEL");
  lumenpress::testing::TempDeviceRoot root;
  QGuiApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
