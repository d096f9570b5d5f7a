// Direct drawing on the device's panel, for what must show before Qt draws anything.
#ifndef LUMENPRESS_PANELKIT_DRAW_H
#define LUMENPRESS_PANELKIT_DRAW_H

#include "panelkit.h"

#ifdef __cplusplus
extern "C" {
#endif

int ScreenWidth(void);
int ScreenHeight(void);
// Height of the device shell's panel at the bottom of the screen.
int PanelHeight(void);
void SetPanelType(int type);
// Colour as 0x00RRGGBB.
void FillArea(int x, int y, int width, int height, int color);
void DrawBitmap(int x, int y, const lpbitmap *bitmap);
void PartialUpdate(int x, int y, int width, int height);
// A message box of the shell: icon kind, title, text, time-out in milliseconds.
void Message(int icon, const char *title, const char *text, int timeout_ms);

int PkGetScreenModeInversion(void);
// 0 for a grey panel.
int device_display_colormask(void);
// Percentages of the device's display adjustment.
void getBrightnessContrastGammaAdjustParams(int *brightness, int *contrast, int *gamma);

#ifdef __cplusplus
}
#endif

#endif
