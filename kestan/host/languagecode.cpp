#include "kestan/host/languagecode.h"

namespace vorrel {

LanguageCode::LanguageCode(const QString& tag) : tag_(tag.section(QLatin1Char('.'), 0, 0)) {
  tag_.replace(QLatin1Char('_'), QLatin1Char('-'));
}

QString LanguageCode::GetLanguage() const { return tag_.section(QLatin1Char('-'), 0, 0).toLower(); }

} // namespace vorrel
