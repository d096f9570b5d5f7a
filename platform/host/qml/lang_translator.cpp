#include "lang_translator.h"

#include "panelkit.h"

QString LangTranslator::translate(const char *, const char *sourceText, const char *, int n) const {
  if (!sourceText || sourceText[0] != '@') return QString();
  const char *text = n >= 0 ? GetLangTextPlural(sourceText, n) : GetLangText(sourceText);
  return QString::fromUtf8(text ? text : "");
}
