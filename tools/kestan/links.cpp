#include "kestan/core/objurlfield.h"
#include "kestan/core/schema.h"
#include "kestan/geometry/alias.h"
#include "kestan/host/url.h"
#include "kestan/link/abstractlinkschema.h"
#include "kestan/link/networklink.h"
#include "kestan/link/networklinkcontrolschema.h"
#include "kestan/overlay/imagepyramid.h"
#include "kestan/overlay/photooverlay.h"
#include "kestan/style/icon.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/json.h"
#include "tools/kestan/output.h"
#include "tools/kestan/progress.h"
#include "tools/kestan/walk.h"

#include <QSet>

#include <cmath>
#include <initializer_list>
#include <vector>

using namespace vorrel::kestan;

namespace tool {

namespace {

/// One URL of the document.
struct Reference {
  QString kind; ///< The class that holds the link, or the name of a field that refers to an object.
  QString href; ///< As written.
  QString url;  ///< Absolute; empty where that can't be had.
  const AbstractLink* link = nullptr; ///< Says when to fetch it again; null for never.
};

/// True for what a client has without fetching it.
bool IsBuiltIn(const Reference& reference) {
  const bool isIcon = reference.link && reference.link->isOfType(Icon::GetClassSchema());
  return (!reference.url.isEmpty() && GGetUrlType(reference.url) == kUrlRoot) ||
         (isIcon && static_cast<const Icon*>(reference.link)->GetTexId() == Icon::kBuiltInImage);
}

/// A field that names an object, when that lies in another document.
void AddObjectReference(const SchemaObject& object, const Field& field,
                        std::vector<Reference>& references) {
  const QString text = field.toString(object, -1);
  const KmlId target = SchemaObject::MakeAbsoluteId(object.GetBaseUrl(), text);
  const bool isHere = target.url == object.GetUrl() || target.url == object.GetBaseUrl();
  if (text.isEmpty() || isHere || GGetUrlType(target.url) == kUrlRoot) {
    return;
  }
  const QString fragment = target.id.isEmpty() ? QString() : QLatin1Char('#') + target.id;
  references.push_back({field.GetName(), text, target.url + fragment});
}

/// The network link that a link belongs to; null for all others.
const NetworkLink* GetNetworkLink(const AbstractLink& link) {
  const SchemaObject* const owner = link.GetOwner(0);
  return owner && owner->isOfType(NetworkLink::GetClassSchema())
             ? static_cast<const NetworkLink*>(owner)
             : nullptr;
}

/// False for the older form of the element beside the one that counts.
bool IsFetched(const AbstractLink& link) {
  const NetworkLink* const owner = GetNetworkLink(link);
  return !link.GetHref().isEmpty() && (!owner || owner->GetLink() == &link);
}

/// What belongs to a photo that is cut into tiles: the coarsest one, which stands for all, and the
/// map of those that there are.
void AddTiles(const PhotoOverlay& photo, std::vector<Reference>& references) {
  const ImagePyramid* const pyramid = photo.GetImagePyramid();
  if (!pyramid) {
    return;
  }
  const QString tile = photo.GetThumbnailUrl();
  if (!tile.isEmpty()) {
    references.push_back({QStringLiteral("tile"), photo.GetIcon()->GetHref(), tile});
  }
  const QString& map = pyramid->GetExistenceMapHref();
  if (!map.isEmpty()) {
    references.push_back({QStringLiteral("existenceMapHref"), map,
                          SchemaObject::MakeAbsoluteUrl(pyramid->GetBaseUrl(), map)});
  }
}

/// The URLs that the object itself holds, whatever its class: nearly all comes from its table.
std::vector<Reference> GetReferences(const SchemaObject& object) {
  std::vector<Reference> references;
  if (object.isOfType(Alias::GetClassSchema())) {
    const auto& alias = static_cast<const Alias&>(object);
    if (!alias.GetTargetHref().isEmpty()) {
      references.push_back({object.getType(), alias.GetTargetHref(), alias.GetTargetUrl()});
    }
  }
  const bool isLink = object.isOfType(AbstractLink::GetClassSchema());
  if (isLink && IsFetched(static_cast<const AbstractLink&>(object))) {
    const auto& link = static_cast<const AbstractLink&>(object);
    references.push_back({object.getType(), link.GetHref(), link.GetAbsoluteUrl(), &link});
  }
  if (object.isOfType(PhotoOverlay::GetClassSchema())) {
    AddTiles(static_cast<const PhotoOverlay&>(object), references);
  }
  const Schema& schema = object.GetSchema();
  for (const auto* fields : {&schema.GetSerializedFields(), &schema.GetAttributes()}) {
    for (const Field* field : *fields) {
      if (dynamic_cast<const ObjUrlFieldBase*>(field)) {
        AddObjectReference(object, *field, references);
      } else if (!isLink && field->GetName() == QLatin1String("href")) {
        const QString href = field->toString(object, -1);
        if (!href.isEmpty() && GGetUrlType(href) != kUrlFragment) {
          references.push_back(
              {object.getType(), href, SchemaObject::MakeAbsoluteUrl(object.GetBaseUrl(), href)});
        }
      }
    }
  }
  return references;
}

QString RefreshToText(const AbstractLink& link) {
  const AbstractLinkSchema& fields = AbstractLinkSchema::GetSingleton();
  QString text = fields.refreshMode.toString(link, -1);
  if (link.GetRefreshMode() == AbstractLink::kOnInterval) {
    text += QStringLiteral(" %1 s").arg(fields.refreshInterval.toString(link, -1));
  }
  if (link.GetViewRefreshMode() != AbstractLink::kNever) {
    text += QStringLiteral(", view ") + fields.viewRefreshMode.toString(link, -1);
  }
  if (link.GetViewRefreshMode() == AbstractLink::kOnStop) {
    text += QStringLiteral(" %1 s").arg(fields.viewRefreshTime.toString(link, -1));
  }
  return text;
}

QByteArray RefreshToJson(const AbstractLink* link) {
  if (!link) {
    return "null";
  }
  const AbstractLinkSchema& fields = AbstractLinkSchema::GetSingleton();
  const auto number = [link](const Field& field) {
    const double value = field.toString(*link, -1).toDouble();
    return std::isfinite(value) ? QByteArray::number(value) : QByteArray("null");
  };
  return JsonObject()
      .Add("refreshMode", fields.refreshMode.toString(*link, -1))
      .Add("refreshInterval", number(fields.refreshInterval))
      .Add("viewRefreshMode", fields.viewRefreshMode.toString(*link, -1))
      .Add("viewRefreshTime", number(fields.viewRefreshTime))
      .Get();
}

QByteArray ToText(const Reference& reference) {
  const QString refresh = IsBuiltIn(reference) ? QStringLiteral("built in")
                          : reference.link     ? RefreshToText(*reference.link)
                                               : QStringLiteral("once");
  const QString url =
      reference.url.isEmpty() ? QStringLiteral("nowhere") : Printable(reference.url);
  return (reference.kind + QStringLiteral(" (") + refresh + QStringLiteral("): ") +
          Printable(reference.href) + QStringLiteral(" -> ") + url)
      .toUtf8();
}

QByteArray ToJson(const Reference& reference) {
  return JsonObject()
      .Add("kind", reference.kind)
      .Add("href", reference.href)
      .Add("url", reference.url)
      .Add("builtIn", QByteArray(IsBuiltIn(reference) ? "true" : "false"))
      .Add("refresh", RefreshToJson(reference.link))
      .Get();
}

/// The values that a server has sent to the link that fetched the document: cookie, limits, expiry.
template <class Visit> void ForEachRule(const NetworkLinkControl& control, Visit visit) {
  const NetworkLinkControlSchema& fields = NetworkLinkControlSchema::GetSingleton();
  for (const Field* field : std::initializer_list<const Field*>{
           &fields.cookie, &fields.minRefreshPeriod, &fields.maxSessionLength, &fields.expires}) {
    visit(*field, field->toString(control, -1));
  }
}

QByteArray ToText(const NetworkLinkControl& control) {
  QStringList rules;
  ForEachRule(control, [&rules](const Field& field, const QString& value) {
    if (!value.isEmpty() && value != QLatin1String("0") && value != QLatin1String("-1")) {
      rules += field.GetName() + QLatin1Char(' ') + Printable(value);
    }
  });
  return (QStringLiteral("NetworkLinkControl: ") + rules.join(QStringLiteral(", "))).toUtf8();
}

QByteArray ToJson(const NetworkLinkControl* control) {
  if (!control) {
    return "null";
  }
  JsonObject object;
  ForEachRule(*control, [&object](const Field& field, const QString& value) {
    object.Add(JsonText(field.GetName()), JsonText(value));
  });
  return object.Get();
}

/// Prints each reference once: icons come again and again. `isRawContent` tells whether there's
/// more in elements that no class understands. Answers the exit status.
int PrintReferences(const SchemaObject& root, const NetworkLinkControl* control, bool json,
                    bool& isRawContent) {
  const Progress progress("Collecting links", Progress::kAsItGoes);
  Output output;
  output.Write(json      ? "{\"control\":" + ToJson(control) + ",\"links\":["
               : control ? ToText(*control) + '\n'
                         : "");
  QSet<QByteArray> shown;
  Walk walk(root);
  while (const SchemaObject* object = walk.Next()) {
    const UnknownData* unknown = object->GetUnknownData();
    isRawContent = isRawContent || (unknown && unknown->fields.contains("href>"));
    for (const Reference& reference : GetReferences(*object)) {
      const QByteArray line = json ? ToJson(reference) : ToText(reference);
      if (!shown.contains(line)) {
        const char* separator = !json ? "" : shown.isEmpty() ? "\n" : ",\n";
        output.Write(separator + line + (json ? "" : "\n"));
        shown.insert(line);
      }
    }
  }
  output.Write(json ? "\n]}\n" : "");
  return output.Finish(kFine);
}

} // namespace

int ShowLinks(const Arguments& arguments) {
  const QString& file = arguments.GetFile();
  const Document document = ReadDocument(file, arguments.base);
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  if (arguments.view) {
    vorrel::mmvector<SchemaObject*> links;
    document.root->FindBySchema(AbstractLink::GetClassSchema(), links);
    for (SchemaObject* link : links) {
      static_cast<AbstractLink*>(link)->setViewParams(*arguments.view);
    }
  }
  bool isRawContent = false;
  const int status =
      PrintReferences(*document.root, document.GetControl(), arguments.json, isRawContent);
  if (isRawContent) {
    Complain(QStringLiteral("%1: there are links in elements that aren't understood").arg(file));
  }
  return status;
}

} // namespace tool
