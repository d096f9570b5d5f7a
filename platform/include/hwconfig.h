// The device's hardware configuration: what this model of reader has.
#ifndef LUMENPRESS_HWCONFIG_H
#define LUMENPRESS_HWCONFIG_H

#ifdef __cplusplus
extern "C" {
#endif

int _device_has_audio(void);
int _device_touchpanel(void);
int _device_wifi(void);

#ifdef __cplusplus
}
#endif

#endif
