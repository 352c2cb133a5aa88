#pragma once

#include "kestan/write/writestate.h"

#include <QByteArray>
#include <QString>

namespace vorrel::kestan {

class OutputUrls;
class Utf8OStream;

/// Where the text of a write goes: a file, an archive, or an array of bytes.
class Destination {
public:
  explicit Destination(QByteArray& bytes) : bytes_(&bytes) {}
  /// Tries whether the file can be written, and leaves an empty one where there was none. `error`
  /// gets the failure text.
  Destination(const QString& fileName, QString& error);

  WriteState::WriteMode mode() const { return mode_; }
  const QString& fileName() const { return fileName_; }
  /// Folder of the file, with a "/" behind; empty for bytes.
  const QString& folder() const { return folder_; }

  /// Sends the text, and into an archive what travels with it. What was there before stays until
  /// all is complete. Answers the failure text.
  QString Write(Utf8OStream& text, OutputUrls& urls);
  /// Nothing has come of it: the file goes if it wasn't there before.
  void Discard();

private:
  QString Try();
  QString WriteBytes(Utf8OStream& text);
  QString WriteFile(const Utf8OStream& text);
  QString WriteArchive(const Utf8OStream& text, OutputUrls& urls);

  WriteState::WriteMode mode_ = WriteState::kWriteByteArray;
  bool created_ = false; ///< There was no file before.
  QString fileName_;
  QString folder_;
  QByteArray* bytes_ = nullptr;
};

} // namespace vorrel::kestan
