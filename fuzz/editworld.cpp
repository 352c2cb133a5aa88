#include "fuzz/editworld.h"

#include "fuzz/editdocument.h"
#include "fuzz/editoperations.h"
#include "fuzz/support.h"
#include "kestan/core/notificationdeferrer.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"

#include <array>

using namespace vorrel;
using namespace vorrel::kestan;

namespace fuzz {

namespace {

constexpr std::size_t kHeld = 12;
constexpr std::size_t kObservers = 10;
constexpr int kMaxDepth = 5;

const char kUrl[] = "http://example.com/edit.kml";

/// All classes with instances.
const std::vector<const Schema*>& Classes() {
  static const std::vector<const Schema*> classes = FindClasses(SchemaObject::GetClassSchema());
  return classes;
}

} // namespace

EditWorld* EditWorld::s_present_ = nullptr;

class EditWorld::Observer final : public ObjectObserver {
public:
  Observer(SchemaObject* object, EditWorld& world) : ObjectObserver(object), world_(world) {}

  void OnFieldChanged(const FieldChangedEvent& event) override { world_.React(event.object); }
  void OnSubFieldChanged(const SubFieldChangedEvent& event) override {
    event.GetObservedSubField();
    world_.React(event.changed);
  }
  void OnPreDelete(const PreDeleteEvent& event) override {
    if (world_.at_ != world_.end_ && world_.Next(4) == 0)
      world_.dead_.emplace_back(&event.object);
    world_.React();
  }

private:
  EditWorld& world_;
};

class EditWorld::CreationObserver final : public kestan::CreationObserver {
public:
  explicit CreationObserver(EditWorld& world)
      : kestan::CreationObserver(SchemaObject::GetClassSchema()), world_(world) {}

  void OnPostCreate(const Event& event) override {
    if (world_.Next(2) == 0)
      world_.observers_[world_.Next(kObservers)]->SetObserved(event.object);
    world_.React(*event.object);
  }

private:
  EditWorld& world_;
};

class EditWorld::Loader final : public LoadObserverLoader {
public:
  explicit Loader(EditWorld& world) : world_(world) {}
  void RequestLoad(const QString&) override { world_.React(); }
  bool HasLoadEnded(const QString&) override { return world_.Next(2) == 0; }

private:
  EditWorld& world_;
};

EditWorld::EditWorld(const std::uint8_t* data, std::size_t size)
    : at_(data), end_(data + size), held_(kHeld), creationObserver_(new CreationObserver(*this)),
      loader_(new Loader(*this)) {
  s_present_ = this;
  for (std::size_t i = 0; i < kObservers; ++i) {
    observers_.push_back(std::make_unique<Observer>(nullptr, *this));
    watchers_.push_back(std::make_unique<Watcher<SchemaObject>>());
  }
}

EditWorld::~EditWorld() {
  at_ = end_;
  held_.clear();
  std::vector<Held>().swap(dead_); // what ends now may find it empty
  s_present_ = nullptr;
}

void EditWorld::Run() {
  while (at_ != end_) {
    Edit();
    Check();
  }
}

unsigned EditWorld::Next() { return at_ == end_ ? 0 : *at_++; }

QString EditWorld::NextText() {
  static const char* const texts[] = {"",
                                      "1",
                                      "0",
                                      "-7.5",
                                      "1,2,3 4,5,6 7,8,9 1,2,3",
                                      "1,2,3",
                                      "true",
                                      "#a",
                                      "#b",
                                      "edit.kml#c",
                                      "other.kml#d",
                                      "root://styles#hl",
                                      "2001-02-03",
                                      "ff00ff00",
                                      "absolute",
                                      "x y z",
                                      "0 1 2"};
  return QLatin1String(texts[Next(std::size(texts))]);
}

EditWorld::Held EditWorld::Make() {
  static const char* const ids[] = {"", "", "a", "b", "c"};
  const Schema& schema = *Classes()[Next(Classes().size())];
  const KmlId id{QLatin1String(ids[Next(std::size(ids))]), QLatin1String(kUrl)};
  return Next(8) == 0 ? schema.FindCreateInstance(id, id.url, nullptr)
                      : schema.CreateInstance(id, id.url, nullptr);
}

SchemaObject* EditWorld::Pick() {
  SchemaObject* object = held_[Next(kHeld)].get();
  for (unsigned steps = Next(4); object && steps > 0; --steps) {
    const auto& fields = object->GetSchema().GetObjectFields();
    std::vector<SchemaObject*> near;
    for (const Field* field : fields) {
      for (int i = 0, count = field->IsArray() ? field->getCount(*object) : 1; i < count; ++i) {
        if (SchemaObject* child = field->GetObject(*object, i))
          near.push_back(child);
      }
    }
    if (near.empty())
      break;
    object = near[Next(near.size())];
  }
  return object;
}

SchemaObject* EditWorld::Pick(const Schema& schema) {
  for (int tries = 0; tries < 4; ++tries) {
    SchemaObject* const object = Pick();
    if (object && object->isOfType(schema))
      return object;
  }
  std::vector<SchemaObject*> all;
  for (const Held& held : held_) {
    mmvector<SchemaObject*> found;
    if (held)
      held->FindBySchema(schema, found);
    all.insert(all.end(), found.begin(), found.end());
  }
  return all.empty() ? nullptr : all[Next(all.size())];
}

const Field* EditWorld::PickField(const SchemaObject& object) {
  std::vector<const Field*> fields;
  for (const auto* list :
       {&object.GetSchema().GetSerializedFields(), &object.GetSchema().GetAttributes()})
    fields.insert(fields.end(), list->begin(), list->end());
  return fields.empty() ? nullptr : fields[Next(fields.size())];
}

void EditWorld::React(Object& object) {
  if (at_ != end_ && Next(4) == 0)
    held_[Next(kHeld)] = &object;
  React();
}

void EditWorld::React() {
  if (depth_ < kMaxDepth && at_ != end_ && Next(3) != 0)
    Edit();
}

bool EditWorld::OnPreDelete(HandlerEvent&) {
  if (s_present_)
    s_present_->React();
  return true;
}

void EditWorld::Edit() {
  ++depth_;
  switch (Next(13)) {
  case 0:
  case 1:
    held_[Next(kHeld)] = Make();
    break;
  case 2:
    held_[Next(kHeld)] = Read(MakeDocument([this](std::size_t count) { return Next(count); },
                                           [this] { return NextText(); }),
                              QLatin1String(kUrl));
    break;
  case 3:
    held_[Next(kHeld)] = Pick();
    break;
  case 4:
    Held(std::move(held_[Next(kHeld)])).reset();
    break;
  case 5:
    Watch();
    break;
  case 6:
  case 7:
    if (SchemaObject* object = Pick())
      EditObject(*object);
    break;
  case 8:
    RunClassOperation([this](std::size_t count) { return Next(count); },
                      [this](const Schema& schema) { return Pick(schema); });
    break;
  default:
    if (SchemaObject* object = Pick())
      EditField(*object);
  }
  --depth_;
}

void EditWorld::Watch() {
  SchemaObject* const object = Pick();
  switch (Next(8)) {
  case 0:
    watchers_[Next(kObservers)]->set(object);
    break;
  case 1:
    if (SchemaObject* watched = watchers_[Next(kObservers)]->get())
      held_[Next(kHeld)] = watched;
    break;
  case 2:
    observers_[Next(kObservers)] = std::make_unique<Observer>(object, *this);
    break;
  case 3:
    creationObserver_.reset();
    creationObserver_ = std::make_unique<CreationObserver>(*this);
    break;
  case 4:
    std::vector<Held>().swap(dead_);
    break;
  case 5:
    if (object)
      object->SetHandlerFunc(kHandlerPreDelete, &EditWorld::OnPreDelete);
    break;
  case 6:
    observers_[Next(kObservers)]->SetEnabled(Next(2) != 0);
    break;
  default:
    observers_[Next(kObservers)]->SetObserved(object);
  }
}

void EditWorld::EditObject(SchemaObject& object) {
  switch (Next(12)) {
  case 0: {
    const bool deep = Next(2) != 0;
    held_[Next(kHeld)] = object.clone(deep, nullptr);
    break;
  }
  case 1:
    if (const SchemaObject* source = Pick())
      object.copy(*source, Next(2) != 0, nullptr);
    break;
  case 2: {
    const SchemaObject* const a = Pick();
    const SchemaObject* const b = Pick();
    if (a && b)
      object.merge(*a, *b);
    break;
  }
  case 3:
    object.fromString(NextText());
    break;
  case 4: {
    QByteArray bytes;
    object.WriteKmlString(bytes);
    break;
  }
  case 5: {
    const NotificationDeferrer deferrer;
    Edit();
    break;
  }
  case 6: {
    const NotificationDisabler disabler;
    Edit();
    break;
  }
  case 7:
    object.RequireParentInheritedVisibility(Next(2) != 0);
    break;
  case 8:
    if (SchemaObject* found = SchemaObject::find(QLatin1String(kUrl), QStringLiteral("a")))
      held_[Next(kHeld)] = found;
    break;
  case 9:
    object.SetBit(Next(2) ? kBitNotifySubField : kBitInheritedNotifySubField, Next(2) != 0);
    break;
  case 10:
    kestan::CreationObserver::NotifyPostCreate(object);
    break;
  default:
    object.GetOwnerDocument();
    object.UpdateInheritedVisibility();
    object.GetInterpolant(1, 0, 2);
  }
}

void EditWorld::EditField(SchemaObject& object) {
  const Field* const field = PickField(object);
  if (!field)
    return;
  if (field->GetObjSchema() && field->IsArray() && Next(2)) {
    EditArray(object, *field);
    return;
  }
  SchemaObject* const a = Pick(field->GetSchema());
  SchemaObject* const b = Pick(field->GetSchema());
  SchemaObject* const child =
      field->GetObjSchema() && Next(4) ? Pick(*field->GetObjSchema()) : Pick();
  switch (Next(14)) {
  case 0:
  case 1:
  case 2:
    field->set(object, child, NextIndex());
    break;
  case 3:
    field->insert(object, child, NextIndex());
    break;
  case 4:
    if (a)
      field->copy(object, *a, Next(2) != 0);
    break;
  case 5:
    if (a)
      field->clone(object, *a, Next(2) != 0);
    break;
  case 6:
    if (a && b)
      field->merge(object, *a, *b, Next(2) != 0);
    break;
  case 7:
    if (a) {
      field->equals(object, *a);
      field->compare(object, *a);
      field->toString(object, NextIndex());
    }
    break;
  case 8:
    field->setCount(object, Next(5));
    break;
  case 9:
    field->NotifyFieldChanged(object);
    break;
  case 10:
    KeepMore(object, *field);
    break;
  default:
    TakeText(object, *field);
  }
}

void EditWorld::TakeText(SchemaObject& object, const Field& field) {
  static const AttributeList attributeLists[] = {
      {},
      {{QStringLiteral("type"), QStringLiteral("polyline")}},
      {{QStringLiteral("q"), QStringLiteral("1")}, {QStringLiteral("x"), QStringLiteral("0.5")}}};
  const unsigned choice = Next(std::size(attributeLists) + 1);
  const AttributeList* const attributes =
      choice < std::size(attributeLists) ? &attributeLists[choice] : nullptr;
  const NamespaceList namespaces;
  const QString text = NextText();
  field.fromString(object, attributes, Next(2) ? &namespaces : nullptr, text, NextIndex(), nullptr);
}

/// What a document may have given to a field beyond what that holds.
void EditWorld::KeepMore(SchemaObject& object, const Field& field) {
  switch (Next(4)) {
  case 0:
    object.KeepText(field, NextText());
    break;
  case 1:
    object.KeepEmptyElement(field, QStringLiteral(" q=\"1\""));
    break;
  case 2:
    object.SetUnknownFieldAttrs(field, {{QStringLiteral("q"), QStringLiteral("2")}}, nullptr);
    break;
  default:
    object.DropKeptValues(field);
  }
}

void EditWorld::EditArray(SchemaObject& object, const Field& field) {
  const auto& array = static_cast<const ObjArrayFieldBase&>(field);
  SchemaObject* const child = Pick(*field.GetObjSchema());
  std::array<Held, 3> children{Held(child), Held(Pick(*field.GetObjSchema())), Held(Pick())};
  const ArraySlice<Held> slice(children.data(), Next(4));
  switch (Next(8)) {
  case 0:
    array.add(object, child);
    break;
  case 1:
    array.remove(object, child);
    break;
  case 2:
    array.remove(object, NextIndex());
    break;
  case 3:
  case 4:
    array.AddMultiple(&object, slice);
    break;
  case 5:
    array.RemoveMultiple(&object, slice);
    break;
  case 6: {
    const int places[] = {NextIndex(), NextIndex(), NextIndex()};
    array.EraseMultiple(&object, ArraySlice<const int>(places, std::size(places)));
    break;
  }
  default:
    array.reverse(object);
  }
}

void EditWorld::Check() {
  std::unordered_set<const SchemaObject*> seen;
  for (const Held& held : held_) {
    if (!held)
      continue;
    const SchemaObject* const home = held->GetHome();
    if (held->GetBit(kBitDeleting) || (home && home->GetBit(kBitDeleting)))
      Fail(QStringLiteral("something held is dead, or belongs to the dead"));
    if (home && !home->SchemaObject::FindObject(*held, nullptr))
      Fail(QStringLiteral("an owner without its child"));
    if (!home)
      CheckTree(*held, seen);
  }
  for (const auto& watcher : watchers_) {
    if (const SchemaObject* object = watcher->get())
      CheckTree(*object, *std::make_unique<std::unordered_set<const SchemaObject*>>());
  }
}

void EditWorld::CheckTree(const SchemaObject& object,
                          std::unordered_set<const SchemaObject*>& seen) {
  if (!seen.insert(&object).second)
    return;
  CheckState(object);
  for (const Field* field : object.GetSchema().GetObjectFields()) {
    if (field->HasFlag(Field::kNoWrite))
      continue;
    for (int i = 0, count = field->IsArray() ? field->getCount(object) : 1; i < count; ++i) {
      const SchemaObject* const child = field->GetObject(object, i);
      if (!child)
        continue;
      if (child->GetBit(kBitDeleting))
        Fail(QStringLiteral("a dead child"));
      if (child->GetHome() != &object)
        Fail(QStringLiteral("a child of somebody else"));
      if (child->GetArrayIndex() != (field->IsArray() ? i : -1))
        Fail(QStringLiteral("a child that doesn't know its place"));
      if (seen.count(child) != 0)
        Fail(QStringLiteral("a child in two places"));
      CheckTree(*child, seen);
    }
  }
}

} // namespace fuzz
