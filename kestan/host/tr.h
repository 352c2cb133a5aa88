#pragma once

#include <QCoreApplication>
#include <QString>

namespace vorrel {

/// The translation of a message of the library into the client's language; the text itself when
/// no translator is installed. Works without an application object.
///
/// Cold: the code that makes a message lies apart from the code that runs for every element.
Q_DECL_COLD_FUNCTION inline QString tr(const char* source, const char* comment = nullptr) {
  return QCoreApplication::translate("QObject", source, comment);
}

} // namespace vorrel
