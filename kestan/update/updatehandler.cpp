#include "kestan/update/updatehandler.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schema.h"
#include "kestan/feature/abstractfolder.h" // features come and go
#include "kestan/host/tr.h"
#include "kestan/host/utf8ostream.h"
#include "kestan/read/charbuf.h"
#include "kestan/read/taginfo.h"
#include "kestan/update/mainthreadstay.h"
#include "kestan/write/rawxmlwriter.h" // the content as a document

#include <iterator>
#include <utility>

namespace vorrel::kestan {

namespace {

struct Keyword {
  const char* name;
  Update::State state;
};

constexpr Keyword kKeywords[] = {{"Change", Update::kChange},
                                 {"Create", Update::kCreate},
                                 {"Delete", Update::kDelete},
                                 {"Replace", Update::kReplace},
                                 {"Update", Update::kUpdate}};

Update::State FindKeyword(const QString& name) {
  for (const Keyword& keyword : kKeywords) {
    if (name == QLatin1String(keyword.name))
      return keyword.state;
  }
  return Update::kNoState;
}

AbstractFeature* AsFeature(SchemaObject* object) {
  return object && object->isOfType(AbstractFeature::GetClassSchema())
             ? static_cast<AbstractFeature*>(object)
             : nullptr;
}

QString ToText(const unsigned short* characters) {
  return QString::fromUtf16(reinterpret_cast<const char16_t*>(characters));
}

/// The id behind the "#" of a reference.
QString GetLocalId(const unsigned short* reference) {
  const QString text = ToText(reference);
  return text.mid(text.lastIndexOf(QLatin1Char('#')) + 1);
}

/// A document with the content of an update, well-formed whatever that is.
QByteArray ComposeDocument(const UnknownData& data) {
  RootNamespaces root;
  Utf8OStream content;
  RawXmlWriter writer(content, root);
  writer.SetScope(data.namespaces);
  writer.WriteElements(data.fields);

  Utf8OStream document;
  document << "<Update ";
  root.WriteDeclarations(document);
  document << ">";
  document.WriteRawBytes(content.data(), content.size());
  document << "</Update>";
  return document.TakeBytes();
}

} // namespace

template <class MakeText> void UpdateHandler::Refuse(MakeText&& makeText) {
  HandleRecoverable(ReportCode::kFailedUpdate, makeText);
}

void UpdateHandler::ApplyUpdate(Update& update, ThreadScope* scope) {
  const MainThreadStay stay(scope);
  const DeletionDeferrer deferrer;
  UpdateHandler handler(update, scope);
  if (!stay.IsThere()) {
    handler.Refuse([] {
      return tr("The update can't be applied: the main thread doesn't come",
                "Error message shown when a KML Update tag can't be applied since the program "
                "stops.");
    });
    return;
  }
  const UnknownData* const data = update.GetUnknownData();
  if (!data || data->fields.isEmpty())
    return;
  const QByteArray document = ComposeDocument(*data);
  LoadXml(handler, reinterpret_cast<const unsigned char*>(document.constData()),
          static_cast<std::size_t>(document.size()));
}

UpdateHandler::UpdateHandler(Update& update, ThreadScope* scope)
    : KmlHandler(update.GetUrl(), update.GetAccess(), MemoryManager::GetManager(&update), scope,
                 nullptr),
      update_(&update) {
  editTarget_ = &update;
  if (update.GetContentLine() > 0)
    firstLine_ = update.GetContentLine();
}

void UpdateHandler::BeginParse() {
  KmlHandler::BeginParse();
  state_ = Update::kUpdate;
  targetDepth_ = kNoTarget;
  OpenObject(update_, nullptr, nullptr, {-1, UnknownContent::kLeftOut, false});
}

void UpdateHandler::EndParse() {
  KmlHandler::EndParse();
  children_.Finish();
}

void UpdateHandler::EndElement(const unsigned short* name) {
  const bool isKeyword = skipDepth_ == 0 && tagStack_.size() == 1 && !tagStack_.back().field;
  if (!isKeyword) {
    KmlHandler::EndElement(name);
    if (tagStack_.size() <= targetDepth_)
      targetDepth_ = kNoTarget;
    return;
  }
  --depth_;
  PopNamespaces();
  text_->clear();
  state_ = Update::kUpdate;
  if (depth_ == 0)
    CloseObject();
}

bool UpdateHandler::TakeKeyword() {
  if (tagStack_.size() != 1)
    return false;
  const Update::State state = LookupUpdateState(GetTagName());
  const bool isOuter = depth_ == 0;
  const bool isTaken = state_ == Update::kUpdate && state != Update::kNoState &&
                       isOuter == (state == Update::kUpdate);
  isToldOf_ = !isTaken;
  if (isTaken)
    state_ = state;
  return isTaken;
}

/// The block of the name. A prefix may stand for any namespace where the whole name is a keyword.
Update::State UpdateHandler::LookupUpdateState(const QString& name) {
  const Update::State state = FindKeyword(name);
  if (state != Update::kNoState)
    return state;
  Namespace ns = Namespace::kUnknown;
  const QString& localName = StripNamespacePrefix(name, &ns);
  return ns == Namespace::kKml ? FindKeyword(localName) : Update::kNoState;
}

bool UpdateHandler::IsOwnAttribute(const unsigned short** attrs, int index) const {
  return index == GetTargetId(attrs) || index == GetTargetIndex(attrs) ||
         index == GetTargetIdIndex(attrs);
}

bool UpdateHandler::Insert(SchemaObject& parent, const Field& field, SchemaObject& child,
                           int index) {
  return children_.Insert(parent, field, child, index);
}

/// Its text is a value as any other, which nobody else may set either.
FromStringResult UpdateHandler::SetText(SchemaObject& object, const QString& text) {
  const Field* const field = object.GetTextField();
  return field ? field->fromString(object, nullptr, nullptr, text, -1, editTarget_)
               : FromStringResult::kUnsupportedData;
}

RefPtr<SchemaObject> UpdateHandler::GetObject(SchemaObject* parent, const Field* parentField,
                                              const Schema& schema, const unsigned short** attrs,
                                              int idIndex, ObjectPlace& place) {
  using Operation = RefPtr<SchemaObject> (UpdateHandler::*)(const Request&, ObjectPlace&);
  static constexpr Operation kOperations[] = {nullptr,
                                              nullptr,
                                              &UpdateHandler::Change,
                                              &UpdateHandler::Create,
                                              &UpdateHandler::Delete,
                                              &UpdateHandler::Replace};
  Request request{parent, parentField, schema, {}, {}, {}};
  if (idIndex >= 0)
    request.id = ToText(attrs[2 * idIndex + 1]);
  isToldOf_ = true; // Null comes with a message, or is nothing to talk about.
  const Operation operation = kOperations[state_];
  if (!FindTarget(attrs, request) || !FindIndex(attrs, place.index) || !operation)
    return {};
  const RefPtr<SchemaObject> target = request.target;
  if (target && &target->GetSchema() != &schema && state_ != Update::kReplace) {
    Refuse([&] {
      return tr("Error in <Update>. Target is wrong type: actual %1 vs %2",
                "Error message shown when a KML Update tag attempts to change an object but uses "
                "the wrong type. VAL_1 is the actual (wrong) type being used, VAL_2 is the "
                "expected tag name")
          .arg(target->getType(), schema.GetName());
    });
    return {};
  }
  RefPtr<SchemaObject> object = (this->*operation)(request, place);
  if (!object)
    return {};
  isToldOf_ = false;
  place.isAttached = place.isAttached && tagStack_.size() > 1;
  if (target)
    targetDepth_ = tagStack_.size();
  return object;
}

SchemaObject* UpdateHandler::Find(const QString& id) const {
  SchemaObject* const object = SchemaObject::find(update_->GetAbsoluteTargetHref(), id);
  return object && !children_.IsRemoved(*object) ? object : nullptr;
}

bool UpdateHandler::FindTarget(const unsigned short** attrs, Request& request) {
  const int place = GetTargetId(attrs);
  if (place < 0)
    return true;
  request.targetId = GetLocalId(attrs[2 * place + 1]);
  if (targetDepth_ != kNoTarget) {
    Refuse([&] {
      return tr("Cannot nest <targetId> (%1)",
                "Error message shown when a KML file contains nested targetId tags. VAL_1 is the "
                "value of the nested targetId tag")
          .arg(request.targetId);
    });
    return false;
  }
  request.target = RefPtr<SchemaObject>(Find(request.targetId));
  if (request.target)
    return true;
  Refuse([&] {
    return tr("Could not find <targetId> %1",
              "Error message shown when an Update tag references an object whose ID cannot be "
              "found. VAL_1 is the ID that cannot be found")
        .arg(request.targetId);
  });
  return false;
}

bool UpdateHandler::FindIndex(const unsigned short** attrs, int& index) {
  if (const int place = GetTargetIndex(attrs); place >= 0) {
    const QString text = ToText(attrs[2 * place + 1]);
    bool isNumber = false;
    index = text.toInt(&isNumber, 10);
    if (isNumber)
      return true;
    Refuse([&] {
      return tr("Bad <targetIndex> %1",
                "Error message shown when an Update tag references an invalid index in an array. "
                "VAL_1 is the value being referenced.")
          .arg(text);
    });
    return false;
  }
  const int place = GetTargetIdIndex(attrs);
  if (place < 0)
    return true;
  const QString id = GetLocalId(attrs[2 * place + 1]);
  const RefPtr<AbstractFeature> sibling(AsFeature(Find(id)));
  index = sibling ? children_.FindPlace(*sibling) : -1;
  if (index >= 0)
    return true;
  Refuse([&] {
    return tr("Could not find <targetIdIndex> %1",
              "Error message shown when an Update tag specifies an invalid targetIdIndex. VAL_1 is "
              "the invalid index value.")
        .arg(id);
  });
  return false;
}

bool UpdateHandler::CheckSecurity() {
  if (update_->CheckUrlSecurity())
    return true;
  HandleParseResult(FromStringResult::kSecurityViolation, QString());
  return false;
}

RefPtr<SchemaObject> UpdateHandler::Change(const Request& request, ObjectPlace& place) {
  place.content = UnknownContent::kLeftOut;
  place.isAttached = false;
  if (!request.id.isNull()) {
    Refuse([&] {
      return tr("Error in <Change>. id attribute \"%1\" not allowed within <Change>.",
                "Error message shown when parsing a KML file that contains an invalid attribute. "
                "VAL_1 is the id specified in the KML file. <Change> should not be translated (KML "
                "tag)")
          .arg(request.id);
    });
    return {};
  }
  if (request.target)
    return request.target;
  if (request.parentField && request.parentField->IsArray()) {
    Refuse([] {
      return tr("Error in <Change>. Cannot modify array element.",
                "Error message shown when a KML file attempts to change an array, which is "
                "forbidden. <Change> should not be translated.");
    });
    return {};
  }
  SchemaObject* const existing =
      request.parentField ? request.parentField->GetObject(*request.parent, -1) : nullptr;
  const QString& type = request.schema.GetName();
  if (!existing) {
    Refuse([&] {
      return tr("Error in <Change>. No object of type <%1> exists to change",
                "Error message shown when a KML <Change> tag tries to target an object type which "
                "cannot be found. VAL_1 is the type name. <Change> should not be translated")
          .arg(type);
    });
    return {};
  }
  if (&existing->GetSchema() != &request.schema) {
    Refuse([&] {
      return tr("Error in <Change>. Type mismatch: %1 vs %2",
                "Error message shown when a KML <Change> tag tries to target an object with the "
                "wrong type. VAL_1 is the actual type being specified, VAL_2 is the expected type")
          .arg(existing->getType(), type);
    });
    return {};
  }
  return RefPtr<SchemaObject>(existing);
}

RefPtr<SchemaObject> UpdateHandler::MakeObject(const Request& request) const {
  const QString& url = update_->GetAbsoluteTargetHref();
  RefPtr<SchemaObject> object =
      request.schema.CreateInstance(KmlId(request.id, url), url, memoryManager_);
  if (object)
    object->SetAccess(access_);
  return object;
}

RefPtr<SchemaObject> UpdateHandler::Create(const Request& request, ObjectPlace& place) {
  if (!CheckSecurity())
    return {};
  if (request.target) {
    place.content = UnknownContent::kLeftOut;
    return request.target;
  }
  const RefPtr<SchemaObject> object = MakeObject(request);
  isToldOf_ = bool(object); // an abstract class is told of as in any reading
  return object;
}

RefPtr<SchemaObject> UpdateHandler::Delete(const Request& request, ObjectPlace&) {
  if (!CheckSecurity())
    return {};
  if (AbstractFeature* const feature = AsFeature(request.target.get())) {
    children_.Remove(*feature);
  } else if (request.target) {
    Refuse([&] {
      return tr("Error in <Delete>. Object \"%1\" is not a feature",
                "Error message shown when a KML Update file tries to delete a non-feature object. "
                "VAL_1 is the ID object being targeted. <Delete> should not be translated.")
          .arg(request.targetId);
    });
  } else {
    Refuse([&] {
      return tr("Error in <Delete> Cannot find \"%1\".",
                "Error message shown when a KML Update file tries to delete an object that cannot "
                "be found. VAL_1 is the ID object being targeted. <Delete> should not be "
                "translated.")
          .arg(request.targetId);
    });
  }
  return {};
}

RefPtr<SchemaObject> UpdateHandler::Replace(const Request& request, ObjectPlace&) {
  AbstractFeature* const former = AsFeature(request.target.get());
  if (!former) {
    Refuse([&] {
      return request.target
                 ? tr("Error in <Replace>. Object \"%1\" is not a feature.",
                      "Error message shown when a KML Update file tries to replace a non-feature "
                      "object. VAL_1 is the ID object being targeted. <Replace> should not be "
                      "translated.")
                       .arg(request.targetId)
                 : tr("Error in <Replace>. Cannot find \"%1\".",
                      "Error message shown when a KML Update file tries to replace an object that "
                      "cannot be found. VAL_1 is the ID object being targeted. <Replace> should "
                      "not "
                      "be translated.")
                       .arg(request.targetId);
    });
    return {};
  }
  const RefPtr<SchemaObject> object = MakeObject(request);
  AbstractFeature* const feature = AsFeature(object.get());
  if (!feature) {
    Refuse([&] {
      return tr("Error in <Replace>. New object \"%1\" is not a feature.",
                "Error message shown when a KML Update file tries to replace an object with a "
                "non-feature object. VAL_1 is the ID object being targeted. <Replace> should not "
                "be translated.")
          .arg(request.id);
    });
    return {};
  }
  feature->SetBit(kBitLinkContent, former->GetBit(kBitLinkContent));
  if (!children_.Replace(*former, *feature)) {
    Refuse([&] {
      return tr("Error in <Replace>. Object \"%1\" does not have a parent.",
                "Error message shown when a KML Update tag attemps to replace a target object "
                "which has no parent. VAL_1 is the ID object being targeted.")
          .arg(request.targetId);
    });
  }
  return {};
}

} // namespace vorrel::kestan
