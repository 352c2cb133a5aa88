#pragma once

#include "kestan/read/kmlhandler.h"
#include "tests/support/kmltest.h"

namespace vorrel::kestan {

/// Reads documents around what a test looks at.
class ReadTest : public KmlTest {
protected:
  /// The content of the `Placemark` in the written form of a document that holds `content` in one,
  /// without white space at its ends.
  QString Keep(const QString& content, const QString& rootAttributes = QString(),
               const QString& attributes = QString());

  static QString InPlacemark(const QString& content, const QString& rootAttributes = QString(),
                             const QString& attributes = QString());
};

/// Keeps all reports, and answers them as told.
class RecordingErrorHandler final : public IErrorHandler {
public:
  void OnParseError(ErrorReport& report) override;
  bool WantsFindings() const override { return wantsFindings; }
  void OnFinding(const ParseReport& finding) override { findings.push_back(finding); }

  std::vector<ErrorReport> reports;
  std::vector<ParseReport> findings;
  bool wantsFindings = true;
  int action = ErrorReport::kActionContinue;
  bool sticky = false;
};

/// A parse with its own handler, under the setting `handling`.
struct Parse {
  Parse(const QByteArray& text, int handling, IErrorHandler* errorHandler = nullptr);
  ~Parse();

  KmlHandler handler;
  RefPtr<SchemaObject> object;
};

} // namespace vorrel::kestan
