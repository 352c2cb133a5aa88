#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

class SnippetSchema;

/// The old form of a feature's short text: an element with the text and the number of lines that a
/// list may show of it.
class KESTAN_EXPORT Snippet : public SchemaObject {
public:
  using ClassSchema = SnippetSchema;
  static const Schema& GetClassSchema();
  Snippet(const KmlId& id, const QString& baseUrl);
  ~Snippet() override;

  const QString& GetText() const { return text_; }
  void SetText(const QString& text);
  int GetMaxLines() const { return maxLines_; }
  void SetMaxLines(int lines);

  QString toString() const override { return text_; }
  FromStringResult fromString(const QString& text) override;
  const Field* GetTextField() const override;

protected:
  Snippet(const Schema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class SnippetSchema;

  int maxLines_ = 2;
  QString text_;
};

} // namespace vorrel::kestan
