#pragma once

#include "kestan/host/export.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace vorrel::kestan {

class AbstractFeature;

/// Turns bytes into a feature, some time later.
class KESTAN_EXPORT IKmlParser {
public:
  /// `error` is empty when nothing has failed; `feature` is null then too when the document holds
  /// none. The callee takes a reference of its own.
  using Done = std::function<void(const QString& error, AbstractFeature* feature)>;

  virtual ~IKmlParser();

  /// Reads KML or KMZ. Main thread; `done` is called on it as well. Objects get `access`.
  virtual void ParseKmlOrKmz(const QByteArray& bytes, unsigned access, Done done) = 0;
};

} // namespace vorrel::kestan
