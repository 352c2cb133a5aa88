#pragma once

#include <QByteArray>
#include <QString>

namespace tool {

/// Writes a line to standard error, with the program's name in front.
void Complain(const QString& message);

/// Writes bytes to standard output. False when that fails.
bool Print(const QByteArray& bytes);

/// The text on one line, with nothing in it that a terminal would obey.
QString Printable(const QString& text);

/// Standard output for long texts, which goes out piece by piece.
class Output {
public:
  /// False once writing has failed: then nothing more is written.
  bool Write(const QByteArray& bytes);
  /// Writes what is left; the exit status.
  int Finish(int status);

private:
  bool Flush();

  QByteArray pending_;
  bool failed_ = false;
};

} // namespace tool
