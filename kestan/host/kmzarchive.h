#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QHash>
#include <QString>

class QIODevice;

namespace vorrel::kmz {

struct Limits;

/// A KMZ archive that is open for reading, standing at one of its entries: for several reads of one
/// archive. A single read is simpler with `UnzipFile` and its kin.
///
/// Names are compared as these do. Thread: any, one at a time.
class KESTAN_EXPORT Archive {
public:
  /// `device` is open, and stays so as long as the archive is in use.
  explicit Archive(QIODevice& device);
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  /// False when the device holds no archive; then there are no entries.
  bool IsOpen() const { return file_ != nullptr; }

  /// Walk all entries, in the archive's order. False at the end.
  bool First();
  bool Next();
  /// The name of the present entry as it stands in the archive.
  QString Name() const;
  /// Goes to the first entry of this name, or to the document for a null name. False when there's
  /// none. Later searches for names cost no further walk through the archive.
  bool Find(const QString& entry);

  /// True for an entry that may be unpacked within these limits; else `reason` tells the user why
  /// not. Whether its bytes are sound shows when they are read.
  bool IsReadable(const Limits& limits, QString& reason) const;
  /// Unpacks the present entry. Null, and a reason, on failure; an empty entry is not null.
  QByteArray Read(const Limits& limits, QString& reason);

private:
  /// What minizip reads through.
  struct Input {
    QIODevice* device;
    quint64 shift; ///< For places that minizip takes from a field too small for them.

    static long Seek(void* opaque, void* stream, quint64 offset, int origin);
  };
  struct Position {
    quint64 offset;
    quint64 number;
  };

  bool FindDocument();
  void MakeIndex();
  bool GoTo(const Position& position);
  quint64 GetShift() const;
  Position GetPosition() const;
  bool ReadOpen(qint64 expected, qint64 largest, QByteArray& bytes, QString& reason);

  Input input_;
  void* file_ = nullptr; ///< minizip's.
  qint64 size_;
  bool hasIndex_ = false;
  QHash<QString, Position> index_; ///< By the form of the name that is compared.
};

} // namespace vorrel::kmz
