#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// gtest finds these by argument-dependent lookup, so they stand in Qt's namespace, the global one.

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
  *out << '"' << bytes.toStdString() << '"';
}
