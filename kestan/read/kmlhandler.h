#pragma once

#include "kestan/read/expathandler.h"

namespace vorrel::kestan {

class ThreadScope;

/// Where the object of an element goes, and what becomes of content in it.
struct ObjectPlace {
  int index = -1; ///< In the field of the parent; -1 appends.
  UnknownContent content = UnknownContent::kAsSet;
  bool isAttached = true; ///< The object goes to the parent at its end.
};

/// Reads KML: builds a tree of objects, with no knowledge of any single class. What an element
/// means follows from the schemas and fields that the classes have registered; what nothing
/// understands is kept with the object around it.
///
/// An object goes to its parent at its end tag, with all fields and children in place.
class KESTAN_EXPORT KmlHandler : public ExpatHandler {
public:
  /// `threadScope` is that of a worker thread, null on the main one. The parse ends when the scope
  /// is cancelled.
  KmlHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
             ThreadScope* threadScope, IErrorHandler* errorHandler);
  ~KmlHandler() override;

  void StartElement(const unsigned short* name, const unsigned short** attrs) override;
  void EndElement(const unsigned short* name) override;

protected:
  bool IsCancelled() const override;

  /// Takes the element as a field of the open object, if it's one.
  bool ProcessField(SchemaObject& object, TagInfo& tag, const unsigned short** attrs,
                    Namespace* nsOut);
  /// Takes the element as an object of the class; false when it can't stand here.
  bool ProcessSchema(SchemaObject* parent, const Field* parentField, const Schema& schema,
                     const unsigned short** attrs);
  /// The object for an element in a field of `parent`, both null for the root; null for an abstract
  /// class.
  virtual RefPtr<SchemaObject> GetObject(SchemaObject* parent, const Field* parentField,
                                         const Schema& schema, const unsigned short** attrs,
                                         int idIndex, ObjectPlace& place);
  /// Takes an element that is nothing inside the open object.
  virtual bool TakeKeyword() { return false; }
  /// Gives an object a child, which has ended. False when it's refused.
  virtual bool Insert(SchemaObject& parent, const Field& field, SchemaObject& child, int index);
  /// Hands the text of its element to an object.
  virtual FromStringResult SetText(SchemaObject& object, const QString& text);

  /// The two ends of an object's stay on the stack.
  void OpenObject(RefPtr<SchemaObject> object, SchemaObject* parent, const Field* parentField,
                  const ObjectPlace& place);
  void CloseObject();

  /// Nothing more is to be said of the element that was refused last.
  bool isToldOf_ = false;
  ThreadScope* threadScope_;

private:
  enum Declarations {
    kListed, ///< `attrs` are without declarations.
    kInText, ///< `attrs` are as they stand in the document.
  };

  /// What a name stands for inside an object of a class.
  struct Meaning {
    const Schema* schema = nullptr;
    const QString* name = nullptr;
    unsigned generation = 0; ///< Of the namespaces in scope.
    Namespace ns = Namespace::kUnknown;
    const Field* field = nullptr;
    const Schema* childSchema = nullptr;
  };

  /// Keeps an element that is nothing inside the open object; `plain` is without declarations.
  void ConsumeUnknown(const unsigned short** attrs, const unsigned short** plain, Namespace ns);
  /// Both answer whether the parse goes on.
  void SetOtherName(const unsigned short* name);
  bool ReportUnknownElement();
  ReportCode GetUnknownCode(ReportCode inKnownNamespace) const;
  /// Tells of an element of a known class that can't stand here.
  bool ReportUnexpected(const QString& parentName);

  /// Answers for the present start tag. What names mean is kept, since most of them come again.
  const Meaning& FindMeaning(const Schema& schema);
  /// The class of the present start tag that the document of the object around it declares; null
  /// when there's none.
  const Schema* FindCustomClass(const SchemaObject& around);

  void AddUnknownAttrs(SchemaObject& object, const unsigned short** attrs);
  bool IsInValue() const;
  void ConsumeElement(const unsigned short** attrs, Declarations declarations);
  void StartUnknown(AttributeList& declarations, Declarations mode);
  int GetObjectDepth(const TagInfo& tag) const;
  void AppendStartTag(const unsigned short** attrs, const AttributeList& declarations);
  void EndUnknown();
  void EndUnknownInObject();
  void EndField(TagInfo& tag);
  /// Hands the text of a value field over. False when the parse must stop.
  bool SetValue(TagInfo& tag, const QString& value);
  void EndChildElement(TagInfo& tag);
  bool CanDisplace(const Field& field) const;
  void ReportSecond(const QString& name);
  bool EndObject(TagInfo& tag);
  QString TakeContentText(const TagInfo& tag);
  void EndContent(TagInfo& tag);
  void Attach(const TagInfo& tag, SchemaObject& child);

  mmvector<Meaning> meanings_;    ///< The first entry serves names that aren't kept.
  NamespaceList fieldNamespaces_; ///< For the attributes of the field element now open.
  int unknownStart_ = 0;          ///< Where the unknown element begins in the text.
  qint64 contentLine_ = 0;        ///< Where the content begins that is kept as text.
  QString value_;                 ///< Short texts that no field keeps share its memory.
};

} // namespace vorrel::kestan
