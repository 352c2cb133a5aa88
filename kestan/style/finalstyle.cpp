#include "kestan/style/finalstyle.h"

#include "kestan/style/styleschema.h"

namespace vorrel::kestan {

FinalStyle::FinalStyle()
    : Style(KmlId(), QString(), false), line_(KmlId(), QString(), false),
      label_(KmlId(), QString(), false), icon_(KmlId(), QString(), false),
      iconStack_(KmlId(), QString(), false), poly_(KmlId(), QString(), false),
      balloon_(KmlId(), QString(), false), list_(KmlId(), QString(), false) {
  // A reference that nobody gives back: members don't go with their last one.
  for (SchemaObject* object :
       {static_cast<SchemaObject*>(this), static_cast<SchemaObject*>(&line_),
        static_cast<SchemaObject*>(&label_), static_cast<SchemaObject*>(&icon_),
        static_cast<SchemaObject*>(&iconStack_), static_cast<SchemaObject*>(&poly_),
        static_cast<SchemaObject*>(&balloon_), static_cast<SchemaObject*>(&list_)})
    object->ref();
  lineStyle_ = &line_;
  labelStyle_ = &label_;
  iconStyle_ = &icon_;
  iconStackStyle_ = &iconStack_;
  polyStyle_ = &poly_;
  balloonStyle_ = &balloon_;
  listStyle_ = &list_;
}

FinalStyle::~FinalStyle() { ReleaseSubStyles(); }

void FinalStyle::MergeStyles(const Style& base, const Style& over) {
  const StyleSchema& fields = StyleSchema::GetSingleton();
  const Field* const order[] = {&fields.lineStyle,      &fields.labelStyle, &fields.iconStyle,
                                &fields.iconStackStyle, &fields.polyStyle,  &fields.balloonStyle,
                                &fields.listStyle};
  for (const Field* field : order) {
    SchemaObject* target = field->GetObject(*this, -1);
    const SchemaObject* b = field->GetObject(base, -1);
    const SchemaObject* o = field->GetObject(over, -1);
    if (o && o->GetFieldsSpecified() == 0)
      o = nullptr;
    if (b && o)
      target->merge(*b, *o);
    else if (b || o)
      target->copy(b ? *b : *o, true, nullptr);
  }
  providerId_ = base.GetProviderId();
}

} // namespace vorrel::kestan
