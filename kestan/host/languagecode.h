#pragma once

#include "kestan/host/export.h"

#include <QString>

namespace vorrel {

/// A language tag such as "de", "pt-BR" or "zh-Hant-TW", also with "_" for "-".
class KESTAN_EXPORT LanguageCode {
public:
  LanguageCode() = default;
  explicit LanguageCode(const QString& tag);

  /// The first subtag in lower case: "pt" of "pt-BR".
  QString GetLanguage() const;
  /// The whole tag, with "-" between its parts.
  QString ToString() const { return tag_; }

  friend bool operator==(const LanguageCode& a, const LanguageCode& b) {
    return a.tag_.compare(b.tag_, Qt::CaseInsensitive) == 0;
  }
  friend bool operator!=(const LanguageCode& a, const LanguageCode& b) { return !(a == b); }

private:
  QString tag_;
};

} // namespace vorrel
