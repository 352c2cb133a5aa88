#pragma once

#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/write/freenames.h"
#include "kestan/write/objectset.h"

#include <QHash>
#include <QString>

#include <memory>

namespace vorrel::kestan {

class CustomSchema;
class OutputUrls;
class SchemaObject;
class StyleSelector;
class Utf8OStream;
class WriteState;

/// The styles and schemas that the documents of one output carry, and the ids by which its objects
/// refer to each other.
///
/// Each document that is being written has a set of styles and one of schemas.
class StyleHoist {
public:
  explicit StyleHoist(const OutputUrls& urls) : urls_(urls) {}

  void Push();
  /// Without a document, does nothing.
  void Pop();
  bool HasStylesOrSchemas() const;

  /// As `WriteState` tells.
  bool AddStyle(const StyleSelector& style);
  bool AddSchema(const CustomSchema& schema);
  /// True for a style that has been collected, or that a document around writes.
  bool HasStyle(const StyleSelector& style) const;
  /// The styles that a document holds itself are written with it, whether something refers to them
  /// or not: another document may.
  void AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles);
  /// A style that is written where it stands, with a feature or a map below or with a document of
  /// its own. The latter may get another id in this output.
  void LeaveStyle(const StyleSelector& style, bool mayBeRenamed);
  /// When everything has been collected: gives ids to the styles of the innermost document, and a
  /// unique one to each inline style that something refers to and whose own name a reader can't
  /// find: a run-time one, or none.
  void AssignStyleIds();
  /// Only the outermost document walks all documents inside it, so that each is walked twice at
  /// most, however deep it lies.
  bool IsInOutermost() const { return styleSets_.size() <= 1; }
  /// While documents inside the one that is being written are walked, nothing is hoisted: they
  /// keep what is theirs.
  void EnterInnerDocument() { ++innerDocuments_; }
  void LeaveInnerDocument() { --innerDocuments_; }

  /// Write what was collected for the innermost document. Styles leave out what equals a default.
  void WriteStyles(WriteState& state);
  void WriteSchemas(WriteState& state);

  QString GenerateUniqueId(const QString& id);
  QString GetObjectId(const SchemaObject& object) const;
  void WriteObjUrl(Utf8OStream& stream, SchemaObject* object, const QString& url);

private:
  using ObjectSets = mmvector<std::unique_ptr<ObjectSet>>;

  static bool Contains(const ObjectSets& sets, const SchemaObject& object);
  bool Hoist(const SchemaObject& object, const ObjectSets& sets);
  void WriteObjs(const ObjectSet& objects, WriteState& state);
  void AssignIds(const ObjectSet& objects);
  QString AssignId(const SchemaObject& object);
  bool IsTaken(const QString& id, const SchemaObject& object) const;

  const OutputUrls& urls_;
  ObjectSets styleSets_;
  ObjectSets schemaSets_; ///< Always as many as `styleSets_`.
  /// Those that are written where they stand, and whether they may get another id.
  QHash<const SchemaObject*, bool> leftStyles_;
  QHash<QString, const StyleSelector*> leftStylesById_; ///< Null where several have the id.
  ObjectSet nameless_; ///< What is referred to and has no name that a reader can follow.
  int innerDocuments_ = 0;
  QHash<QString, const SchemaObject*> objectsById_;
  QHash<const SchemaObject*, QString> idsByObject_;
  bool namesNameless_ = false; ///< An object without an id has one in this output.
  FreeNames freeIds_;
};

} // namespace vorrel::kestan
