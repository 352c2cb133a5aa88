#pragma once

#include "kestan/read/kmlhandler.h"
#include "kestan/update/childchanges.h"
#include "kestan/update/update.h"

#include <cstddef>
#include <limits>

namespace vorrel::kestan {

/// Runs the content of an update: finds the objects that it names, makes and removes features, and
/// has fields record their new values as edits.
///
/// What an object has beyond its schema stays as it is. An element that can't be applied is
/// reported once, and its content isn't looked at.
class UpdateHandler final : public KmlHandler {
public:
  /// Where `scope` is given, the main thread stands still meanwhile.
  static void ApplyUpdate(Update& update, ThreadScope* scope);

  void EndElement(const unsigned short* name) override;
  void BeginParse() override;
  void EndParse() override;

protected:
  RefPtr<SchemaObject> GetObject(SchemaObject* parent, const Field* parentField,
                                 const Schema& schema, const unsigned short** attrs, int idIndex,
                                 ObjectPlace& place) override;
  bool TakeKeyword() override;
  bool IsOwnAttribute(const unsigned short** attrs, int index) const override;
  bool Insert(SchemaObject& parent, const Field& field, SchemaObject& child, int index) override;
  FromStringResult SetText(SchemaObject& object, const QString& text) override;

private:
  /// What an element asks for.
  struct Request {
    SchemaObject* parent;
    const Field* parentField;
    const Schema& schema;
    QString id;                  ///< Null when none is given.
    RefPtr<SchemaObject> target; ///< The object that it names, or null.
    QString targetId;
  };

  UpdateHandler(Update& update, ThreadScope* scope);

  Update::State LookupUpdateState(const QString& name);
  SchemaObject* Find(const QString& id) const;
  /// Each answers false for an element that is refused.
  bool FindTarget(const unsigned short** attrs, Request& request);
  bool FindIndex(const unsigned short** attrs, int& index);
  bool CheckSecurity();

  // One for each kind of block; null for an element that holds nothing more.
  RefPtr<SchemaObject> Change(const Request& request, ObjectPlace& place);
  RefPtr<SchemaObject> Create(const Request& request, ObjectPlace& place);
  RefPtr<SchemaObject> Delete(const Request& request, ObjectPlace& place);
  RefPtr<SchemaObject> Replace(const Request& request, ObjectPlace& place);
  RefPtr<SchemaObject> MakeObject(const Request& request) const;

  template <class MakeText> void Refuse(MakeText&& makeText);

  static constexpr std::size_t kNoTarget = std::numeric_limits<std::size_t>::max();

  const RefPtr<Update> update_;
  Update::State state_ = Update::kUpdate;
  std::size_t targetDepth_ = kNoTarget; ///< Where the target that is open lies on the stack.
  ChildChanges children_;
};

} // namespace vorrel::kestan
