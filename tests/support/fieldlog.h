#pragma once

#include "kestan/core/objectobserver.h"
#include "kestan/core/schema.h"

#include <QStringList>

namespace vorrel::kestan {

/// Notes the fields of an object that change, by name; a child that its class names shows as that
/// class.
class FieldLog final : public ObjectObserver {
public:
  explicit FieldLog(SchemaObject& object) : ObjectObserver(object) {}

  void OnFieldChanged(const FieldChangedEvent& event) override {
    const Field& field = event.field;
    names_ += field.GetName().isEmpty() && field.GetObjSchema() ? field.GetObjSchema()->GetName()
                                                                : field.GetName();
  }
  void OnPreDelete(const PreDeleteEvent&) override { SetObserved(nullptr); }

  /// The fields since the last call, separated by blanks.
  QString take() {
    const QString text = names_.join(' ');
    names_.clear();
    return text;
  }

private:
  QStringList names_;
};

} // namespace vorrel::kestan
