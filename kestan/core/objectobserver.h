#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/observer.h"

#include <atomic>

namespace vorrel::kestan {

/// The object that changed, and its field.
struct FieldChangedEvent {
  SchemaObject& object;
  const Field& field;
};

/// A change below the observed object.
struct KESTAN_EXPORT SubFieldChangedEvent {
  SchemaObject& observed; ///< The object that the observer watches.
  SchemaObject& child;    ///< Its direct child on the way up.
  SchemaObject& changed;  ///< The object that really changed.
  const Field& field;     ///< The field that changed in `changed`.
  mutable const Field* observedSubField = nullptr;

  /// The field of the observed object that holds the child; searched for once.
  const Field* GetObservedSubField() const;
};

/// The object is about to be deleted, and still whole.
struct PreDeleteEvent {
  SchemaObject& object;
};

class KESTAN_EXPORT ISchemaObjectObserver {
public:
  virtual ~ISchemaObjectObserver();
  virtual void OnFieldChanged(const FieldChangedEvent& event) = 0;
  virtual void OnSubFieldChanged(const SubFieldChangedEvent& event) = 0;
  virtual void OnPreDelete(const PreDeleteEvent& event) = 0;
};

/// Watches one object. The latest observer is told first. An observer may remove itself, remove or
/// add others, or destroy the object while it's being told.
/// Thread: that of the object.
class KESTAN_EXPORT ObjectObserver : public Observer, public ISchemaObjectObserver {
public:
  explicit ObjectObserver(SchemaObject& object);
  /// Null leaves the observer without an object.
  explicit ObjectObserver(SchemaObject* object);
  ~ObjectObserver() override;

  /// Moves the observer to another object, or to none. A dying one isn't watched any more.
  void SetObserved(const SchemaObject* object);

  void OnSubFieldChanged(const SubFieldChangedEvent& event) override;

  static void NotifyFieldChanged(SchemaObject& object, const Field& field);
  static void NotifySubFieldChanged(SchemaObject& observed, SchemaObject& child,
                                    SchemaObject& changed, const Field& field,
                                    VisitedObjects& visited);
  /// The first step of that: tells those who watch `observed`. False when the news ends there.
  static bool TellOwner(SchemaObject& observed, SchemaObject& child, SchemaObject& changed,
                        const Field& field, VisitedObjects& visited);
  static void NotifyPreDelete(SchemaObject& object);
  /// What is derived from the object is out of date, though none of its values has changed: the
  /// revisions of the object and of all that it's a part of move on. Nobody is told.
  static void MoveRevision(SchemaObject& object);
  /// Sets the mask of the fields of `object` that count as given. A given value may be the one that
  /// the field has anyway, so that a change of the mask isn't a change of a field.
  static void SetSpecified(SchemaObject& object, unsigned& mask, unsigned value);

  /// The next count, which no other change has.
  static std::uint32_t NextRevision() {
    return s_revision_counter_.fetch_add(1, std::memory_order_relaxed) + 1;
  }

  /// Counts the changes of all objects of the process.
  static std::atomic<std::uint32_t> s_revision_counter_;
};

} // namespace vorrel::kestan
