#pragma once

#include "kestan/read/expathandler.h"
#include "kestan/update/update.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

/// Reads documents and updates for them, and hears what is reported while these are applied.
class UpdateTest : public KmlTest {
protected:
  UpdateTest();
  ~UpdateTest() override;

  /// An update with this content that came from `url`. `target` is its `targetHref`.
  RefPtr<Update> MakeUpdate(const QString& content, const QString& target = "doc.kml",
                            const QString& url = "http://example.com/dir/update.kml");
  /// Makes one and applies it as a whole. Answers what was reported.
  QStringList Apply(const QString& content);

  /// What was reported since the last call, a text each.
  QStringList TakeReports();
  /// The line of the last report.
  qint64 GetLastLine() const { return lastLine_; }

private:
  class Listener;

  QStringList reports_;
  qint64 lastLine_ = 0;
};

/// The value of an object's field as text. Each step of the path names a child field, by its class
/// where it has no name of its own; the last one is the field, or nothing for an object's own text.
QString Get(const SchemaObject& object, const QString& path);

} // namespace vorrel::kestan
