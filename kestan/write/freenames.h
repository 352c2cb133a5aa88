#pragma once

#include <QHash>
#include <QString>

namespace vorrel::kestan {

/// Finds names that nobody has yet. Names are never given back, so that the search for another one
/// with the same beginning goes on where the last one ended.
class FreeNames {
public:
  /// The first of `make(0)`, `make(1)` and so on for which `isFree` holds; `series` tells the
  /// beginnings apart.
  template <class Make, class IsFree>
  QString Find(const QString& series, Make make, IsFree isFree) {
    for (int& attempt = attempts_[series];; ++attempt) {
      QString name = make(attempt);
      if (isFree(name))
        return name;
    }
  }

private:
  QHash<QString, int> attempts_;
};

} // namespace vorrel::kestan
