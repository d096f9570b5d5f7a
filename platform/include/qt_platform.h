// The Qt platform plugin the device's screen is driven through.
#ifndef LUMENPRESS_QT_PLATFORM_H
#define LUMENPRESS_QT_PLATFORM_H

#ifdef __cplusplus
extern "C" {
#endif

// The plugin's name, for QT_QPA_PLATFORM; called before the application object exists.
const char *lp_qt_platform_plugin(void);

#ifdef __cplusplus
}
#endif

#endif
