#include "kestan/read/kmlhandler.h"

#include "kestan/core/keptvalues.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/schemaobjectschema.h"
#include "kestan/core/threadcontext.h"
#include "kestan/core/threadscope.h"
#include "kestan/custom/customschema.h" // classes that documents declare
#include "kestan/host/tr.h"
#include "kestan/read/charbuf.h"
#include "kestan/read/deprecationmanager.h"
#include "kestan/read/namespacescope.h"
#include "kestan/read/rawxml.h"
#include "kestan/read/rootcontent.h"
#include "kestan/read/taginfo.h"
#include "kestan/update/update.h" // its content is kept as text

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace vorrel::kestan {

namespace {

/// Up to this length it's cheaper to copy a text than to wrap it.
constexpr int kShortValue = 256;

/// Names in classes that are remembered at a time; a power of two.
constexpr std::size_t kMeanings = 256;

AttributeList GetAttributeList(const unsigned short** attrs) {
  AttributeList list;
  for (; attrs && *attrs; attrs += 2)
    list.emplace_back(QString::fromUtf16(reinterpret_cast<const char16_t*>(attrs[0])),
                      QString::fromUtf16(reinterpret_cast<const char16_t*>(attrs[1])));
  return list;
}

bool HasAttribute(const unsigned short** attrs, QLatin1String name) {
  for (; attrs && *attrs; attrs += 2) {
    if (QString::fromUtf16(reinterpret_cast<const char16_t*>(attrs[0])) == name)
      return true;
  }
  return false;
}

/// True for a class whose element holds text of its own.
bool HoldsText(const Schema& schema) {
  const mmvector<Field*>& fields = schema.GetSerializedFields();
  return std::any_of(fields.begin(), fields.end(), [](const Field* field) {
    return field->GetType() == Field::kElement && field->GetName().isEmpty();
  });
}

} // namespace

KmlHandler::KmlHandler(const QString& url, unsigned access, MemoryManager* memoryManager,
                       ThreadScope* threadScope, IErrorHandler* errorHandler)
    : ExpatHandler(url, access, memoryManager, errorHandler), threadScope_(threadScope),
      meanings_(1 + kMeanings) {}

KmlHandler::~KmlHandler() = default;

bool KmlHandler::IsCancelled() const { return threadScope_ && threadScope_->IsCancelled(); }

void KmlHandler::StartElement(const unsigned short* name, const unsigned short** attrs) {
  if (!knownName_ || knownName_->utf16() != name)
    SetOtherName(name);
  if (!CheckDepth())
    return;
  if (skipDepth_ != 0) {
    ConsumeElement(attrs, kInText);
    return;
  }
  const unsigned short** const plain = PushNamespaces(attrs);
  if (HasFailed())
    return;

  TagInfo* const top = tagStack_.empty() ? nullptr : &tagStack_.back();
  if (top && !top->field) {
    Namespace ns = Namespace::kUnknown;
    if (!ProcessField(*top->object, *top, plain, &ns)) {
      if (HasFailed())
        return;
      if (!TakeKeyword()) {
        ConsumeUnknown(attrs, plain, ns);
        return;
      }
    }
  } else if (!top && editTarget_) {
    ConsumeElement(attrs, kInText);
    return;
  } else {
    const Schema* schema = FindSchema(GetTagName());
    if (!schema && top)
      schema = FindCustomClass(*top->object);
    bool goOn = true;
    if (!schema) {
      goOn = HandleRecoverable(GetUnknownCode(ReportCode::kUnknownType), [this] {
        return tr("Unknown type <%1>",
                  "Error message shown when a KML file contains an unknown tag. VAL_1 is the "
                  "unknown tag.")
            .arg(GetTagName());
      });
    }
    if (!schema || !ProcessSchema(top ? top->object.get() : nullptr, top ? top->field : nullptr,
                                  *schema, plain)) {
      if (goOn && !HasFailed() && IsInValue())
        ConsumeElement(attrs, kInText);
      else if (goOn && !HasFailed())
        ConsumeElement(plain, kListed);
      return;
    }
  }
  ++depth_;
  text_->clear();
  if (WantsFindings())
    NoteStart();
}

void KmlHandler::SetOtherName(const unsigned short* name) {
  knownName_ = nullptr;
  Assign(otherName_, name);
}

void KmlHandler::ConsumeUnknown(const unsigned short** attrs, const unsigned short** plain,
                                Namespace ns) {
  const bool isToldOf = std::exchange(isToldOf_, false);
  if (ns == Namespace::kXal && !isToldOf) {
    ConsumeElement(attrs, kInText);
    return;
  }
  const bool isReported =
      !isToldOf && unknownContent_ != UnknownContent::kKept && ns != Namespace::kAtom;
  if (!isReported || ReportUnknownElement())
    ConsumeElement(plain, kListed);
}

bool KmlHandler::ReportUnknownElement() {
  return HandleRecoverable(GetUnknownCode(ReportCode::kUnknownElement), [this] {
    return tr("Unknown element <%1>",
              "Error message shown when a KML file contains an unknown tag. VAL_1 is the unknown "
              "tag.")
        .arg(GetTagName());
  });
}

/// The code for an element that nothing is known of.
ReportCode KmlHandler::GetUnknownCode(ReportCode inKnownNamespace) const {
  return GetForeignUri(GetTagName()).isEmpty() ? inKnownNamespace : ReportCode::kForeignElement;
}

bool KmlHandler::ReportUnexpected(const QString& parentName) {
  return HandleRecoverable(ReportCode::kUnexpectedType, [&] {
    return tr("Unexpected type <%1> found as child of <%2>",
              "Error message shown when a KML file has a tag which should not appear at this "
              "location. VAL_1 is the name of the unexpected tag, VAL_2 is the parent tag "
              "that contains the unexpected tag.")
        .arg(GetTagName(), parentName);
  });
}

const KmlHandler::Meaning& KmlHandler::FindMeaning(const Schema& schema) {
  std::size_t place = 0;
  // A class that a document has made may still change.
  if (knownName_ && !schema.IsCustom()) {
    const auto mixed = (reinterpret_cast<std::uintptr_t>(knownName_) >> 4) ^
                       (reinterpret_cast<std::uintptr_t>(&schema) >> 6);
    place = 1 + (mixed ^ (mixed >> 8)) % kMeanings;
    const Meaning& meaning = meanings_[place];
    if (meaning.schema == &schema && meaning.name == knownName_ &&
        meaning.generation == namespaces_->GetGeneration())
      return meaning;
  }
  Meaning& meaning = meanings_[place];
  meaning.schema = &schema;
  meaning.name = knownName_;
  meaning.generation = namespaces_->GetGeneration();
  meaning.childSchema = nullptr;
  meaning.field =
      FindField(schema, GetTagName(), GetDefaultNamespace(), &meaning.ns, &meaning.childSchema);
  return meaning;
}

const Schema* KmlHandler::FindCustomClass(const SchemaObject& around) {
  const auto& classes = ThreadContext::GetCurrent()->customSchemas;
  if (!classes || classes->count() == 0)
    return nullptr;
  Namespace ns = Namespace::kUnknown;
  const QString& name = StripNamespacePrefix(GetTagName(), &ns);
  if (ns != Namespace::kKml)
    return nullptr;
  // An update speaks of the document that it changes.
  if (editTarget_)
    return CustomSchema::FindNamedCustomSchema(editTarget_->GetAbsoluteTargetHref(), name);
  // One of an earlier reading of the document isn't declared in this one.
  const CustomSchema* const schema = CustomSchema::FindNamedCustomSchema(around.GetUrl(), name);
  const std::uint32_t begun = ThreadContext::GetCurrent()->parseRevision;
  const bool isFromBefore = schema && static_cast<std::int32_t>(schema->GetRevision() - begun) < 0;
  return isFromBefore ? nullptr : schema;
}

bool KmlHandler::ProcessField(SchemaObject& object, TagInfo& tag, const unsigned short** attrs,
                              Namespace* nsOut) {
  const Meaning& meaning = FindMeaning(object.GetSchema());
  const Schema* childSchema = meaning.childSchema;
  const Field* field = meaning.field;
  *nsOut = meaning.ns;
  if (!field && !childSchema) {
    childSchema = FindCustomClass(object);
    if (childSchema)
      field = object.FindField(childSchema->GetBase()->GetName(), Namespace::kKml, nullptr);
  }
  if (!field || (unknownContent_ == UnknownContent::kKept && field->GetType() != Field::kElement))
    return false;

  if (field->GetType() == Field::kObject && field->GetName().isEmpty()) {
    if (!childSchema)
      return false;
    const int idIndex = GetId(attrs);
    ObjectPlace place;
    RefPtr<SchemaObject> child = GetObject(&object, field, *childSchema, attrs, idIndex, place);
    if (!child)
      return false;
    OpenObject(std::move(child), &object, field, place); // Ends the life of `tag`.
    if (attrs)
      HandleAttributes(*tagStack_.back().object, attrs, idIndex);
    return true;
  }

  switch (field->GetType()) {
  case Field::kObject:
    tag.field = field;
    tag.hasChild = false;
    if (!tag.IsExisting())
      tag.formerAttrs = object.TakeUnknownFieldAttrs(*field);
    if (!attrs)
      return true;
    HandleRecoverable(ReportCode::kUnknownAttribute, [this] {
      return tr("Unknown attribute(s) specified for <%1>.",
                "Error message shown when one or more unknown KML attributes are specified for a "
                "given KML tag. VAL_1 is the name of the tag.")
          .arg(GetTagName());
    });
    if (KeepsUnknown()) {
      AttributeList list = GetAttributeList(attrs);
      const NamespaceList& namespaces = GetNamespacesFor(object, true, list);
      object.SetUnknownFieldAttrs(*field, list, &namespaces);
    }
    return true;
  case Field::kAttribute:
    if (!HandleRecoverable(ReportCode::kAttributeAsElement, [this] {
          return tr("<%1> is expected to be an attribute, not an element",
                    "Error message shown if a name appears as an XML element in KML, instead of "
                    "being specified as an attribute. VAL_1 is the name of the element that "
                    "should be an attribute. ")
              .arg(GetTagName());
        }))
      return true;
    tag.field = field;
    fieldAttrs_.clear();
    if (attrs && KeepsUnknown())
      AddUnknownAttrs(object, attrs);
    return true;
  case Field::kElement:
    tag.field = field;
    unknownContent_ = UnknownContent::kAsSet; // elements inside are part of the value
    fieldAttrs_.clear();
    if (attrs) {
      fieldAttrs_ = GetAttributeList(attrs);
      fieldNamespaces_ = GetNamespacesFor(object, true, fieldAttrs_);
    }
    return true;
  case Field::kHidden:
    break;
  }
  return false;
}

/// Has the attributes of an element that becomes an attribute itself join the object's, unless they
/// would mean something there, or something else.
void KmlHandler::AddUnknownAttrs(SchemaObject& object, const unsigned short** attrs) {
  AttributeList list;
  for (; *attrs; attrs += 2) {
    Assign(attributeName_, attrs[0]);
    Namespace ns = Namespace::kUnknown;
    const Field* const field =
        FindField(object.GetSchema(), attributeName_, object.GetNamespace(), &ns, nullptr);
    if (!field || field->GetType() != Field::kAttribute)
      list.emplace_back(attributeName_, ToString(attrs[1]));
  }
  const std::size_t count = list.size();
  const NamespaceList& namespaces = GetNamespacesFor(object, true, list);
  if (list.empty() || list.size() > count)
    return; // a declaration can't join
  UnknownData& data = object.unknownData();
  data.attrs += schemaobject_detail::GetAttrListString(list);
  data.namespaces = namespaces;
}

bool KmlHandler::ProcessSchema(SchemaObject* parent, const Field* parentField, const Schema& schema,
                               const unsigned short** attrs) {
  const int idIndex = GetId(attrs);
  if (parentField) {
    const Schema* const expected = parentField->GetObjSchema();
    if (!expected || !schema.SubstitutesFor(*expected)) {
      ReportUnexpected(parentField->GetName());
      return false;
    }
  }
  ObjectPlace place;
  RefPtr<SchemaObject> child = GetObject(parent, parentField, schema, attrs, idIndex, place);
  if (!child && std::exchange(isToldOf_, false))
    return false;
  if (!child) {
    HandleRecoverable(ReportCode::kAbstractType, [this] {
      return tr("Failed to create object <%1>",
                "Error message shown when a KML file contains an invalid type name. VAL_1 is the "
                "type name the KML file attempts to create.")
          .arg(GetTagName());
    });
    return false;
  }
  if (!root_ && !editTarget_)
    root_ = child;
  OpenObject(std::move(child), parent, parentField, place);
  if (attrs)
    HandleAttributes(*tagStack_.back().object, attrs, idIndex);
  return true;
}

RefPtr<SchemaObject> KmlHandler::GetObject(SchemaObject*, const Field*, const Schema& schema,
                                           const unsigned short** attrs, int idIndex,
                                           ObjectPlace& place) {
  if (&schema == &Update::GetClassSchema()) {
    place.content = UnknownContent::kKept;
    contentLine_ = 0;
  }
  const QString id = idIndex < 0 ? QString() : ToString(attrs[2 * idIndex + 1]);
  RefPtr<SchemaObject> object = schema.CreateInstance(KmlId(id, url_), url_, memoryManager_);
  if (object)
    object->SetAccess(access_);
  if (object && WantsFindings())
    NoteId(id);
  CheckLookupCost();
  return object;
}

void KmlHandler::OpenObject(RefPtr<SchemaObject> object, SchemaObject* parent,
                            const Field* parentField, const ObjectPlace& place) {
  tagStack_.emplace_back(std::move(object), place.isAttached ? parent : nullptr, parentField,
                         place.index, place.content);
  unknownContent_ = place.content;
}

void KmlHandler::CloseObject() {
  tagStack_.pop_back();
  unknownContent_ = tagStack_.empty() ? UnknownContent::kAsSet : tagStack_.back().content;
}

bool KmlHandler::IsInValue() const {
  return !tagStack_.empty() && tagStack_.back().field &&
         tagStack_.back().field->GetType() != Field::kObject;
}

void KmlHandler::ConsumeElement(const unsigned short** attrs, Declarations declarations) {
  if (!root_ && !editTarget_) {
    RefuseRoot();
    return;
  }
  if (tagStack_.empty() && skipDepth_ == 0) {
    const bool goesOn =
        HandleError(tr("Unexpected element \"%1\"",
                       "Error message shown when a KML file contains an unexpected tag (VAL_1)")
                        .arg(GetTagName()),
                    editTarget_ ? kErrorRecoverable : kErrorFatal, ReportCode::kBadRoot);
    if (goesOn)
      ++skipDepth_;
    return;
  }
  if (KeepsUnknown()) {
    AttributeList ownDeclarations;
    if (skipDepth_ == 0) {
      StartUnknown(ownDeclarations, declarations);
      const QString uri = namespaces_->GetForeignDefaultUri();
      if (!uri.isEmpty() && !HasAttribute(attrs, QLatin1String("xmlns")))
        ownDeclarations.emplace_back(QStringLiteral("xmlns"), uri);
      for (const auto& declaration : ownDeclarations) {
        if (!CountRepeated(declaration.second.size()))
          return;
      }
    }
    AppendStartTag(attrs, ownDeclarations);
    CheckTextLength();
  }
  ++skipDepth_;
}

/// Tidies the text in front of an unknown element, and sees to the declarations it needs.
void KmlHandler::StartUnknown(AttributeList& declarations, Declarations mode) {
  TagInfo& tag = tagStack_.back();
  if (IsInValue()) {
    text_->trim();
  } else if (!tag.field && HoldsText(tag.object->GetSchema())) {
    tag.text += QString(text_->constData(), text_->size());
    text_->clear();
  } else {
    // The text becomes part of the raw XML.
    const QString stray =
        tag.content == UnknownContent::kKept ? TakeContentText(tag) : text_->trimmed();
    text_->clear();
    raw_->AppendText(stray.utf16(), static_cast<int>(stray.size()));
  }
  unknownStart_ = text_->size();
  if (IsInValue())
    return;
  CarryDeclarations(*tag.object, GetObjectDepth(tag), mode == kInText ? nullptr : &declarations);
}

/// The depth of the element of the object in which the present one stands, as a child of it or of a
/// field element.
int KmlHandler::GetObjectDepth(const TagInfo& tag) const { return depth_ - (tag.field ? 2 : 1); }

void KmlHandler::AppendStartTag(const unsigned short** attrs, const AttributeList& declarations) {
  text_->append('<');
  text_->append(GetTagName());
  for (const auto& [name, value] : declarations)
    raw_->AppendAttribute(name.utf16(), value.utf16());
  for (; attrs && *attrs; attrs += 2)
    raw_->AppendAttribute(attrs[0], attrs[1]);
  text_->append('>');
}

void KmlHandler::EndElement(const unsigned short* name) {
  if (skipDepth_ > 0 || tagStack_.empty()) {
    SetOtherName(name);
    EndUnknown();
    return;
  }
  --depth_;
  PopNamespaces();
  TagInfo& tag = tagStack_.back();
  if (tag.field) {
    EndField(tag);
    return;
  }
  if (!EndObject(tag))
    return;
  CloseObject();
  text_->clear();
}

void KmlHandler::EndUnknown() {
  if (skipDepth_ > 0)
    --skipDepth_;
  if (KeepsUnknown()) {
    text_->append(QLatin1String("</"));
    text_->append(GetTagName());
    text_->append('>');
    if (!CheckTextLength())
      return;
  } else {
    text_->clear();
  }
  if (skipDepth_ > 0)
    return;
  if (KeepsUnknown() && !tagStack_.empty() && !IsInValue())
    EndUnknownInObject();
  PopNamespaces();
}

void KmlHandler::EndUnknownInObject() {
  TagInfo& tag = tagStack_.back();
  CarryMentioned(*tag.object, GetObjectDepth(tag), QStringView(text_->constData(), text_->size()));
  if (tag.unknown_text.size() > CharBuf::kMaxSize - text_->size()) {
    text_->GrowBy(CharBuf::kMaxSize);
    CheckTextLength();
    return;
  }
  if (tagStack_.size() == 1 && !tag.field) {
    Namespace ns = Namespace::kUnknown;
    const QString& localName = StripNamespacePrefix(GetTagName(), &ns);
    rootContent_->Add(localName, ns, static_cast<int>(tag.unknown_text.size()) + unknownStart_,
                      static_cast<int>(GetTagName().size()));
  }
  // Inside a field element the content stays in one, so that it doesn't turn into something else
  // where it's written.
  const QString wrapper = tag.field ? tag.field->GetPrefixedElem() + QLatin1Char('>') : QString();
  if (!wrapper.isEmpty())
    tag.unknown_text += QLatin1Char('<') + wrapper;
  tag.unknown_text.append(text_->constData(), text_->size());
  if (!wrapper.isEmpty())
    tag.unknown_text += QLatin1String("</") + wrapper;
  text_->clear();
}

void KmlHandler::EndField(TagInfo& tag) {
  const Field& field = *tag.field;
  if (field.GetType() == Field::kObject) {
    if (!tag.IsExisting())
      EndChildElement(tag);
  } else {
    const QStringView text = text_->GetTrimmed();
    const int length = static_cast<int>(text.size());
    bool goOn = true;
    if (length == 0) {
      goOn = SetValue(tag, QString());
    } else if (field.KeepsText()) {
      goOn = SetValue(tag, QString(text.data(), length));
    } else if (length <= kShortValue) {
      Assign(value_, text.data(), length);
      goOn = SetValue(tag, value_);
    } else {
      goOn = SetValue(tag, QString::fromRawData(text.data(), length));
    }
    if (!goOn)
      return;
  }
  tag.field = nullptr;
  unknownContent_ = tag.content;
  text_->clear();
}

/// The child of the last element that holds one counts. The attributes of the others are kept.
void KmlHandler::EndChildElement(TagInfo& tag) {
  SchemaObject& object = *tag.object;
  const Field& field = *tag.field;
  QString attrs = std::move(tag.formerAttrs);
  if (tag.hasChild && attrs.isNull())
    return;
  const bool isBare = object.GetUnknownFieldAttrs(field).isNull();
  const bool hasFormer =
      field.IsArray() ? field.getCount(object) > 0 : field.GetObject(object, -1) != nullptr;
  if (!tag.hasChild && (hasFormer || isBare)) {
    QString former = std::exchange(attrs, object.TakeUnknownFieldAttrs(field));
    object.PutUnknownFieldAttrs(field, former);
  }
  if (!attrs.isNull())
    object.KeepEmptyElement(field, attrs);
}

bool KmlHandler::SetValue(TagInfo& tag, const QString& value) {
  SchemaObject& object = *tag.object;
  const Field& field = *tag.field;
  const bool isAttribute = field.GetType() == Field::kAttribute;
  const bool isSecond =
      tag.IsGiven(field) || (isAttribute && &field == &SchemaObjectSchema::GetSingleton().id &&
                             !object.GetId().isEmpty());
  const bool isFurther = isSecond && CanDisplace(field);
  tag.SetGiven(field);
  std::optional<Displacement> displacement;
  if (Q_UNLIKELY(!editTarget_ && (isFurther || object.HasKeptValues())))
    displacement.emplace(object, field, isFurther);
  const FromStringResult result =
      field.fromString(object, &fieldAttrs_, &fieldNamespaces_, value, -1, editTarget_);
  displacement.reset();
  if (!editTarget_ && !KeepsUnknown())
    object.DropKeptValues(field);
  if (isFurther || (isSecond && isAttribute)) // of which only one is kept
    ReportSecond(field.GetName());
  if (!HandleParseResult(result, value))
    return false;
  if (WantsFindings() && result == FromStringResult::kOk) {
    const auto place = text_->GetTrimmed().data() - text_->constData();
    CheckValue(object, field, &fieldAttrs_, value, static_cast<int>(place));
  }
  return true;
}

/// True for a field of which the last value or child counts, and the others are kept.
bool KmlHandler::CanDisplace(const Field& field) const {
  const bool isElement = field.GetType() == Field::kElement && !field.GetName().isEmpty();
  return (isElement || field.GetType() == Field::kObject) && !field.IsRepeatable() &&
         !field.HasFlag(Field::kNoWrite) && !editTarget_ && KeepsUnknown();
}

void KmlHandler::ReportSecond(const QString& name) {
  ReportFinding(ReportCode::kSecondValue, [&] {
    return tr("Of several <%1> the last one counts",
              "Message shown when a KML file gives an object more than one value or child for one "
              "place. VAL_1 is the name of the element.")
        .arg(name);
  });
}

/// The text in front of the next element, in content that is kept as text: all but what white space
/// there is in front of everything.
QString KmlHandler::TakeContentText(const TagInfo& tag) {
  QString text(text_->constData(), text_->size());
  text_->clear();
  if (!tag.unknown_text.isEmpty())
    return text;
  const QString content = (text + QLatin1Char('.')).trimmed();
  contentLine_ = GetLine() - content.count(QLatin1Char('\n'));
  return content.left(content.size() - 1);
}

void KmlHandler::EndContent(TagInfo& tag) {
  const QString text = (QLatin1Char('.') + TakeContentText(tag)).trimmed().mid(1);
  raw_->AppendText(text.utf16(), static_cast<int>(text.size()));
  tag.unknown_text.append(text_->constData(), text_->size());
  static_cast<Update&>(*tag.object).SetContentLine(contentLine_);
}

bool KmlHandler::EndObject(TagInfo& tag) {
  SchemaObject& object = *tag.object;
  QString value;
  if (tag.text.isEmpty())
    value = text_->trimmed();
  else
    value = (tag.text + QString(text_->constData(), text_->size())).trimmed();
  if (tag.content == UnknownContent::kKept) {
    EndContent(tag);
  } else if (!value.isEmpty() && !HandleParseResult(SetText(object, value), value)) {
    return false;
  }
  if (!tag.unknown_text.isEmpty() && KeepsUnknown()) {
    tag.unknown_text.squeeze();
    object.SetUnknownFields(tag.unknown_text, nullptr);
    tag.unknown_text.clear();
  }
  if (!tag.parent || !tag.parent_field)
    return true;

  RefPtr<SchemaObject> child = tag.object;
  const SchemaObjectTranslator* const translator =
      DeprecationManager::GetSingleton().FindTranslator(object.getType());
  if (translator)
    child = translator->Translate(object);
  if (child)
    Attach(tag, *child);
  return CheckFatalText();
}

FromStringResult KmlHandler::SetText(SchemaObject& object, const QString& text) {
  return object.fromString(text);
}

bool KmlHandler::Insert(SchemaObject& parent, const Field& field, SchemaObject& child, int index) {
  return field.insert(parent, &child, index);
}

/// Gives the child to the object around it.
void KmlHandler::Attach(const TagInfo& tag, SchemaObject& child) {
  TagInfo& parentTag = tagStack_[tagStack_.size() - 2];
  SchemaObject& parent = *tag.parent;
  const Field& place = tag.parent_field->GetPlaceFor(child);
  const bool isFurther =
      parentTag.IsGiven(place) && CanDisplace(place) && place.GetObject(parent, -1) != nullptr;
  std::optional<Displacement> displacement;
  if (Q_UNLIKELY(!parentTag.IsExisting() && (isFurther || parent.HasKeptValues()))) {
    displacement.emplace(parent, place, isFurther, parentTag.formerAttrs);
    if (isFurther)
      parentTag.formerAttrs = QString();
  }
  const bool isTaken = Insert(parent, *tag.parent_field, child, tag.index);
  displacement.reset();
  if (!isTaken)
    return;
  parentTag.SetGiven(place);
  parentTag.hasChild = true;
  if (isFurther)
    ReportSecond(child.getType());
}

} // namespace vorrel::kestan
