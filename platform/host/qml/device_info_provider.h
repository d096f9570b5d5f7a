// The panel the screens are laid out for: its size, the shell's panel and whether it is touched.
#ifndef LUMENPRESS_HOST_DEVICE_INFO_PROVIDER_H
#define LUMENPRESS_HOST_DEVICE_INFO_PROVIDER_H

#include <QObject>

class DeviceInfoProvider : public QObject {
  Q_OBJECT
  Q_PROPERTY(int screenWidth READ screenWidth CONSTANT)
  Q_PROPERTY(int screenHeight READ screenHeight CONSTANT)
  Q_PROPERTY(int panelHeight READ panelHeight CONSTANT)
  Q_PROPERTY(bool isTouchDevice READ isTouchDevice CONSTANT)

public:
  explicit DeviceInfoProvider(QObject *parent = nullptr);

  int screenWidth() const { return screen_width_; }
  int screenHeight() const { return screen_height_; }
  int panelHeight() const { return panel_height_; }
  bool isTouchDevice() const { return is_touch_device_; }

private:
  int screen_width_;
  int screen_height_;
  int panel_height_;
  bool is_touch_device_;
};

#endif
