#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>

class QIODevice;

namespace vorrel::kmz {

/// Writes a KMZ archive, entry by entry, holding no more than a piece of one in memory.
///
/// The same entries in the same order give the same bytes: nothing in the archive tells when or
/// where it was made, all are of 1980-01-01. Names are UTF-8, and marked as such. More entries, and
/// larger ones, than a plain archive has room for make it a large one (zip64). Thread: any, one at
/// a time.
class KESTAN_EXPORT Writer {
public:
  enum Result {
    kAdded,
    kUnreadable, ///< The contents can't be read; the archive is as it was before.
    kCutShort,   ///< The contents ended, or failed, before their size was read.
    kFailed,     ///< The archive can't be written.
  };

  /// `device` is empty, and open for writing at any place; it outlives the writer.
  explicit Writer(QIODevice& device);
  ~Writer();
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  /// Adds an entry: deflated, or stored when the name ends in ".jpg", of which nothing is gained by
  /// packing it again. After any result but the first two the archive can't be completed.
  bool Add(const QString& name, const char* data, qint64 size);
  /// Takes the size that `contents` have now, also when they grow meanwhile.
  Result Add(const QString& name, QIODevice& contents);
  /// Completes the archive. False when it, or anything before, couldn't be written.
  bool Close();

private:
  /// What minizip writes through.
  struct Output {
    QIODevice* device;
    bool good;
    QByteArray end; ///< The bytes that were written last.
  };

  bool WriteLargeEnd();
  bool Open(const QString& name, qint64 size);
  bool Write(const char* data, qint64 size);

  bool IsGood() const { return good_ && output_.good; }

  Output output_;
  void* file_; ///< minizip's.
  bool good_;
  quint64 count_ = 0; ///< Of the entries.
};

} // namespace vorrel::kmz
