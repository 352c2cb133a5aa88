#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace vorrel::kestan {

/// One attribute of preserved content, as it stands in the text.
struct TextAttribute {
  QStringView name;
  QStringView value; ///< Escaped.
};

/// Takes a name from the front of `text`; empty when there's none.
QStringView TakeName(QStringView& text);

/// Takes attributes from the front of `text`, up to what is none.
std::vector<TextAttribute> TakeAttributes(QStringView& text);

/// True for the name of a declaration. `prefix` is empty for the default namespace.
bool IsDeclaration(QStringView name, QStringView* prefix = nullptr);

} // namespace vorrel::kestan
