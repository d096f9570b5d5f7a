#include "device_info_provider.h"

#include "hwconfig.h"
#include "panelkit_draw.h"

DeviceInfoProvider::DeviceInfoProvider(QObject *parent)
    : QObject(parent),
      screen_width_(ScreenWidth()),
      screen_height_(ScreenHeight()),
      panel_height_(PanelHeight()),
      is_touch_device_(_device_touchpanel() != 0) {}
