#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/timer.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <unordered_map>

namespace vorrel::kestan {

class EditedObject;
class ThreadScope;
class UpdateEdit;
class UpdateSchema;

/// Changes to the objects of a document that was read earlier. What they are is kept as text, as
/// the element holds it, and doesn't change.
///
/// `CreateEdits` runs the text: it finds the objects by their ids, creates, replaces and deletes
/// features at once, and turns each new value into an edit. `ApplyEdits` moves all edits between
/// the values before and after. An update may be run any number of times, each of which makes new
/// edits.
///
/// What an update may do depends on where it and its target come from: see `CheckUrlSecurity`. What
/// is refused, and what can't be done, is reported as a recoverable error, and the rest goes on.
///
/// Thread: one with edits is used, and ends, on the main thread, but for `ApplyEdits`.
class KESTAN_EXPORT Update final : public SchemaObject, private Timer {
public:
  using ClassSchema = UpdateSchema;
  static const Schema& GetClassSchema();

  /// The block of the content that is open.
  enum State {
    kNoState = 0, ///< No block has this name.
    kUpdate = 1,  ///< Outside of all blocks.
    kChange = 2,  ///< Sets fields of objects.
    kCreate = 3,  ///< Adds objects.
    kDelete = 4,  ///< Removes features.
    kReplace = 5, ///< Puts new features in the place of others.
  };

  Update(const KmlId& id, const QString& baseUrl);
  /// `rawHref` is the text of the target as it's to be written, escapes included; see
  /// `SetTargetHref`.
  Update(const QString& rawHref, const KmlId& id, const QString& baseUrl);
  ~Update() override;

  /// The document whose objects are changed.
  const QString& GetTargetHref() const { return targetHref_; }
  /// `rawHref`, unless null, is written in the place of the value, as it stands.
  void SetTargetHref(const QString& href, const QString& rawHref = QString());
  /// The target against the base URL; that of an update without one is its base URL itself.
  const QString& GetAbsoluteTargetHref() const;

  /// Whether the update may change whatever it likes in its target: it names none, or it comes from
  /// the same web server (scheme, host and port). Any other may change only fields with
  /// `Field::kUpdateAnywhere`.
  bool CheckUrlSecurity() const;

  /// Runs the content: see the class. `scope` is that of a worker thread, which works in the main
  /// thread's place meanwhile; null for the objects of the calling thread.
  void CreateEdits(ThreadScope* scope);
  /// Brings all edits to the fraction `fraction` of their way, in the order in which they were
  /// made: the value before from 0 down, the one after from 1 up. Unless edits are kept, that is
  /// the end of them. From another thread than the main one it's done there, by the pump; of
  /// several such calls the last one counts.
  void ApplyEdits(float fraction);
  /// Both.
  void Apply(ThreadScope* scope, float fraction);

  /// Whether edits stay after they were applied, so that any fraction may follow any other. Off at
  /// first.
  bool GetKeepEdits() const { return keepEdits_; }
  void SetKeepEdits(bool keep) { keepEdits_ = keep; }

  int GetEditCount() const { return static_cast<int>(edits_.size() - goneEdits_); }
  /// Calls `visit(const UpdateEdit&)` for each edit, in the order in which they were made. It must
  /// change nothing.
  template <class Visit> void ForEachEdit(Visit visit) const {
    for (const UpdateEdit* edit : edits_) {
      if (edit)
        visit(*edit);
    }
  }
  /// Ends all edits, the last one first, and leaves the values as they are.
  void DeleteAllEdits();

  /// The line of the document at which the content begins, from 1; 0 for content that wasn't read.
  qint64 GetContentLine() const { return contentLine_; }
  void SetContentLine(qint64 line) { contentLine_ = line; }

  void NotifyFieldChanged(const Field& field) override;
  void CopyNonFieldStuff(const SchemaObject& src) override;

protected:
  void LeaveOwners() override;

private:
  friend class EditedObject;
  friend class UpdateEdit;
  friend class UpdateSchema;

  void Fire() override;
  void OnDropped() override;
  EditedObject& RequireEdited(SchemaObject& object);
  void AddEdit(UpdateEdit& edit);
  void RemoveEdit(UpdateEdit& edit);
  void DeleteEditsOf(EditedObject& edited);
  void DropGoneEdits();

  QString targetHref_;
  QString rawTargetHref_; ///< Null where the value is written.
  mutable QString absoluteTargetHref_;
  mutable bool hrefDirty_ = true;
  mutable bool isTrusted_ = false; ///< The answer of `CheckUrlSecurity` while the URL is right.
  bool keepEdits_ = false;
  mmvector<RefPtr<SchemaObject>> objects_; ///< For the field that admits any class; stays empty.
  mmvector<UpdateEdit*> edits_;            ///< In the order of their making; null for gone ones.
  std::size_t goneEdits_ = 0;
  int walks_ = 0; ///< Walks of the list under way; places stay meanwhile.
  std::unordered_map<const SchemaObject*, std::unique_ptr<EditedObject>> editedObjects_;
  std::atomic<float> pendingFraction_{0.0F};
  std::atomic<bool> isPending_{
      false}; ///< A call waits for the main thread, and counts a reference.
  qint64 contentLine_ = 0;
};

} // namespace vorrel::kestan
