#pragma once

#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"
#include "kestan/write/freenames.h"
#include "kestan/write/objectset.h"

#include <QHash>
#include <QString>

#include <deque>
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
/// Before the outermost document is written, all that is in it is walked in the order of the
/// output. So it is known what a reader will take each reference for: the style of that id that
/// stands nearest in front, else the first one behind. Ids stay as they are where that is the style
/// that is meant; where it isn't, and where a style from elsewhere would take an id that is in use,
/// styles get other ids, or lose one that nothing refers to.
class StyleHoist {
public:
  explicit StyleHoist(const OutputUrls& urls) : urls_(urls) {}

  /// Each document that is being written has a set of styles and one of schemas.
  void Push();
  /// Without a document, does nothing.
  void Pop();
  bool HasStylesOrSchemas() const;

  /// As `WriteState` tells.
  bool AddStyle(const StyleSelector& style);
  bool AddSchema(const CustomSchema& schema);
  /// A schema of the innermost document, which has it whether something refers to it or not.
  void AddOwnSchema(const CustomSchema& schema);
  /// The class of an object, by whose name a reader will find it: one of the same name that
  /// declares the same stands for it.
  void AddClass(const CustomSchema& schema);
  /// The styles that the innermost document holds itself. They're written with it, whether
  /// something refers to them or not: another document may. They must live until the document is
  /// written.
  void AddOwnStyles(const mmvector<RefPtr<StyleSelector>>& styles);

  /// How a style is written where it stands.
  enum class Place {
    kInline, ///< With a feature, or with a pair of a map.
    kShared, ///< With its document, so that it gets an id of its own.
  };
  /// The walk has come to a style that is written where it stands.
  void AddInPlace(const StyleSelector& style, Place place);
  /// The walk has come to a reference of `owner`, whose text is `url`, to `style`; null for one
  /// that leads nowhere. `isInOrder` is false for owners that are written elsewhere than where the
  /// walk meets them.
  ///
  /// True for a style that this walk hasn't met yet and that isn't written where it stands: it has
  /// to be collected, and so has what it refers to.
  bool AddReference(const SchemaObject& owner, const QString& url, const StyleSelector* style,
                    bool isInOrder);
  /// When everything has been walked: settles the ids.
  void AssignStyleIds();
  /// Only the outermost document walks all documents inside it, so that each is walked twice at
  /// most, however deep it lies.
  bool IsInOutermost() const { return levels_.size() <= 1; }
  /// While documents inside the one that is being written are walked, nothing is hoisted: they
  /// keep what is theirs.
  void EnterInnerDocument() { ++innerDocuments_; }
  void LeaveInnerDocument() { --innerDocuments_; }

  /// Write what was collected for the innermost document. Styles leave out what equals a default.
  void WriteStyles(WriteState& state);
  void WriteSchemas(WriteState& state);

  /// True where references lead to the object by the id that it has in this output.
  bool HasName(const SchemaObject& object) const;
  QString GenerateUniqueId(const QString& id);
  QString GetObjectId(const SchemaObject& object) const;
  void WriteObjUrl(Utf8OStream& stream, SchemaObject* object, const QString& url);

private:
  /// What has to be written with one document.
  struct Level {
    const mmvector<RefPtr<StyleSelector>>* ownStyles = nullptr;
    ObjectSet styles;
    mmvector<const SchemaObject*> schemas;
  };
  /// What one id means in this output.
  struct Claim {
    mmvector<const StyleSelector*> styles;  ///< Those in place, in the order of the output.
    const StyleSelector* awaited = nullptr; ///< What references in front of them all mean.
    bool isGiven = false;                   ///< It's settled whose id it is.
    bool isOpen = false;                    ///< A reference leads nowhere, and has to go on so.
    bool isListed = false;                  ///< In `unsettled_`.
  };
  /// A style that the walk has met.
  struct Record {
    Claim* claim = nullptr; ///< Null without an id.
    bool isInPlace = false;
    bool isShared = false;
    bool isReferenced = false;
    bool isMistaken = false; ///< A reader would take another one for it.
    bool isNamed = false;    ///< References lead to it by the id that it has in this output.
    bool isSettled = false;
    int walk = 0; ///< The last one that collected it.
  };

  Record& Meet(const StyleSelector& style);
  Claim& GetClaim(const QString& id);
  void List(Claim& claim);
  void SettleIds();
  void Settle(Claim& claim);
  const StyleSelector* FindKeeper(const Claim& claim) const;
  bool IsFromElsewhere(const SchemaObject& object) const;

  bool MayHoist(const SchemaObject& object) const;
  bool IsHoisted(const StyleSelector& style) const;
  bool HoistSchema(const CustomSchema& schema);
  QString AssignId(const SchemaObject& object);
  void GiveId(const SchemaObject& object, const QString& id);

  const OutputUrls& urls_;
  mmvector<std::unique_ptr<Level>> levels_;
  int walks_ = 0;
  int innerDocuments_ = 0;
  QHash<const SchemaObject*, Record> records_;
  std::deque<Claim> claims_;
  QHash<QString, Claim*> claimsById_;
  mmvector<Claim*> unsettled_;
  ObjectSet schemas_;                               ///< Of all documents: each goes out once.
  QHash<QString, const CustomSchema*> classes_;     ///< Those by name, the last of each.
  mmvector<const StyleSelector*> nameless_;         ///< Referred to, and without an id.
  QHash<const SchemaObject*, QString> idsByObject_; ///< Null for an id that is left out.
  bool namesNameless_ = false; ///< An object without an id has one in this output.
  FreeNames freeIds_;
};

} // namespace vorrel::kestan
