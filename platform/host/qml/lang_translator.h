// Translates the device's language keys ("@Key") in QML texts through the language files.
#ifndef LUMENPRESS_HOST_LANG_TRANSLATOR_H
#define LUMENPRESS_HOST_LANG_TRANSLATOR_H

#include <QTranslator>

class LangTranslator : public QTranslator {
  Q_OBJECT

public:
  using QTranslator::QTranslator;

  QString translate(const char *context, const char *sourceText, const char *disambiguation, int n) const override;
  bool isEmpty() const override { return false; }
};

#endif
