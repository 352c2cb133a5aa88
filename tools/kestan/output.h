#pragma once

#include <QByteArray>
#include <QString>

namespace tool {

/// Writes a line to standard error, with nothing in it that a terminal would obey.
void PrintLine(const QString& line);
/// The same with the program's name in front.
void Complain(const QString& message);

/// Writes bytes to standard output. False when that fails.
bool Print(const QByteArray& bytes);

/// The text with nothing in it that a terminal would obey.
QString Harmless(QString text);
/// The same with each run of white space as one blank.
QString Printable(const QString& text);

/// Standard output for long texts, which goes out piece by piece.
class Output {
public:
  /// False once writing has failed: then nothing more is written.
  bool Write(const QByteArray& bytes);
  /// Writes what is left; the exit status.
  int Finish(int status);
  /// Writes what has come up to now.
  bool Flush();
  bool HasFailed() const { return failed_; }

private:
  QByteArray pending_;
  bool failed_ = false;
};

} // namespace tool
