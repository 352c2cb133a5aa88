#include "kestan/tour/tour.h"

#include "kestan/core/schema.h"
#include "kestan/tour/animatedupdate.h"
#include "kestan/tour/flyto.h"
#include "kestan/tour/playlist.h"
#include "kestan/tour/soundcue.h"
#include "kestan/tour/tourprimitivecast.h"
#include "kestan/update/update.h"
#include "tools/kestan/commands.h"
#include "tools/kestan/document.h"
#include "tools/kestan/json.h"
#include "tools/kestan/output.h"

#include <algorithm>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace tool {

namespace {

/// Something that happens in a tour, in seconds from its beginning.
struct Step {
  RefPtr<TourPrimitive> primitive;
  double begin;    ///< Its turn.
  double delay;    ///< From its turn to what it does.
  double duration; ///< Until the next one's turn.
};

double GetDelay(const TourPrimitive& primitive) {
  if (const AnimatedUpdate* const animated = TourPrimitiveCast::CastToAnimatedUpdate(&primitive)) {
    return animated->GetDelayedStart();
  }
  const SoundCue* const cue = TourPrimitiveCast::CastToSoundCue(&primitive);
  return cue ? cue->GetDelayedStart() : 0.0;
}

/// Each has its turn when the one before it has taken its time.
std::vector<Step> GetSteps(const Tour& tour) {
  std::vector<Step> steps;
  double now = 0.0;
  for (const RefPtr<TourPrimitive>& primitive : tour.GetPlaylist()->GetPrimitives()) {
    if (primitive) {
      steps.push_back({primitive, now, GetDelay(*primitive), primitive->GetDuration()});
      now += primitive->GetDuration();
    }
  }
  return steps;
}

QString Number(double value) { return QString::number(value, 'g', 10); }

QString Seconds(double value) { return Number(value) + QStringLiteral(" s"); }

/// The values of the object's own elements that aren't what they are anyway.
std::vector<std::pair<QString, QString>> GetValues(const SchemaObject& object) {
  const RefPtr<SchemaObject> plain = object.GetSchema().CreateInstance(KmlId(), QString(), nullptr);
  std::vector<std::pair<QString, QString>> values;
  for (const Field* const field : object.GetSchema().GetSerializedFields()) {
    if (field->GetObjSchema() || field->IsUndefined(object)) {
      continue;
    }
    const QString value = field->toString(object, -1);
    const bool isSaid =
        !field->HasFlag(Field::kHasDefault) || !plain || value != field->toString(*plain, -1);
    // The second spelling of a member says nothing new.
    const bool isTwice = std::any_of(values.begin(), values.end(), [&](const auto& other) {
      return other.first == field->GetName();
    });
    if (isSaid && !isTwice) {
      values.emplace_back(field->GetName(), value);
    }
  }
  return values;
}

/// What is in the step beside its times: its own values, those of its view, and its target.
std::vector<std::pair<QString, QString>> GetDetails(const TourPrimitive& primitive) {
  auto details = GetValues(primitive);
  details.erase(std::remove_if(details.begin(), details.end(),
                               [](const auto& detail) {
                                 return detail.first == QLatin1String("duration") ||
                                        detail.first == QLatin1String("delayedStart");
                               }),
                details.end());
  const AnimatedUpdate* const animated = TourPrimitiveCast::CastToAnimatedUpdate(&primitive);
  if (animated && animated->GetUpdate()) {
    details.emplace_back("target", animated->GetUpdate()->GetAbsoluteTargetHref());
  }
  return details;
}

QString ToText(const std::vector<std::pair<QString, QString>>& values) {
  QString text;
  for (const auto& [name, value] : values) {
    text += QStringLiteral(" %1=%2").arg(name, Printable(value));
  }
  return text;
}

QString ViewToText(const AbstractView* view) {
  return view ? view->getType() + ToText(GetValues(*view)) : QStringLiteral("no view");
}

QByteArray ViewToJson(const AbstractView* view) {
  if (!view) {
    return "null";
  }
  JsonObject object;
  object.Add("class", view->getType());
  for (const auto& [name, value] : GetValues(*view)) {
    object.Add(JsonText(name), JsonText(value));
  }
  return object.Get();
}

QByteArray StepToText(const Step& step) {
  QString text = QStringLiteral("  %1: %2 for %3")
                     .arg(Seconds(step.begin), step.primitive->getType(), Seconds(step.duration));
  if (step.delay != 0.0) {
    text += QStringLiteral(", from ") + Seconds(step.begin + step.delay);
  }
  const QString details = ToText(GetDetails(*step.primitive));
  text += details.isEmpty() ? QString() : QStringLiteral(",") + details;
  if (const FlyTo* const fly = TourPrimitiveCast::CastToFlyTo(step.primitive.get())) {
    text += QStringLiteral(", ") + ViewToText(fly->GetView());
  }
  return text.toUtf8() + '\n';
}

QByteArray NumberToJson(double value) { return Number(value).toLatin1(); }

QByteArray StepToJson(const Step& step) {
  JsonObject object;
  object.Add("class", step.primitive->getType())
      .Add("begin", NumberToJson(step.begin))
      .Add("duration", NumberToJson(step.duration))
      .Add("delay", NumberToJson(step.delay));
  for (const auto& [name, value] : GetDetails(*step.primitive)) {
    object.Add(JsonText(name), JsonText(value));
  }
  if (const FlyTo* const fly = TourPrimitiveCast::CastToFlyTo(step.primitive.get())) {
    object.Add("view", ViewToJson(fly->GetView()));
  }
  return object.Get();
}

int ListTours(const std::vector<RefPtr<Tour>>& tours, bool json) {
  Output output;
  output.Write(json ? "{\"tours\":[" : "");
  const char* separator = "\n";
  for (const RefPtr<Tour>& tour : tours) {
    const std::vector<Step> steps = GetSteps(*tour);
    if (json) {
      QByteArray list;
      for (const Step& step : steps) {
        list += (list.isEmpty() ? "\n" : ",\n") + StepToJson(step);
      }
      output.Write(separator + JsonObject()
                                   .Add("id", tour->GetId())
                                   .Add("name", tour->GetName())
                                   .Add("duration", NumberToJson(tour->GetDuration()))
                                   .Add("steps", '[' + list + ']')
                                   .Get());
      separator = ",\n";
      continue;
    }
    output.Write((GetTitle(*tour) + QStringLiteral(": ") + Seconds(tour->GetDuration())).toUtf8() +
                 '\n');
    for (const Step& step : steps) {
      output.Write(StepToText(step));
    }
  }
  output.Write(json ? "\n]}\n" : "");
  return output.Finish(kFine);
}

/// Has the animated updates made the document as it is at `now`: each starts where those before it
/// have taken the document by then.
void Play(const std::vector<Step>& steps, double now) {
  struct Running {
    RefPtr<AnimatedUpdate> animated;
    double start;
    double duration;
  };
  std::vector<Running> all;
  for (const Step& step : steps) {
    AnimatedUpdate* const animated = TourPrimitiveCast::CastToAnimatedUpdate(step.primitive.get());
    if (animated && animated->GetUpdate() && step.begin + step.delay <= now) {
      all.push_back({RefPtr<AnimatedUpdate>(animated), step.begin + step.delay, step.duration});
    }
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const Running& a, const Running& b) { return a.start < b.start; });
  std::vector<const Running*> running;
  const auto goOn = [&running](double time) {
    running.erase(std::remove_if(running.begin(), running.end(),
                                 [time](const Running* update) {
                                   const double way = time - update->start;
                                   const bool isDone = way >= update->duration;
                                   update->animated->GetUpdate()->ApplyEdits(
                                       isDone ? 1.0F : static_cast<float>(way / update->duration));
                                   return isDone;
                                 }),
                  running.end());
  };
  for (const Running& update : all) {
    goOn(update.start);
    if (!update.animated->GetUpdate()->CheckUrlSecurity()) {
      Complain(QStringLiteral("the update at %1 and its target are on no common web server: it may "
                              "only show, hide and open features, and replace them; see --base")
                   .arg(Seconds(update.start)));
    }
    update.animated->SetStart();
    running.push_back(&update);
  }
  goOn(now);
}

/// The flight that is under way, or was the last one; null before the first.
const Step* FindFlight(const std::vector<Step>& steps, double now) {
  const Step* last = nullptr;
  for (const Step& step : steps) {
    if (step.begin <= now && TourPrimitiveCast::CastToFlyTo(step.primitive.get())) {
      last = &step;
    }
  }
  return last;
}

QByteArray FlightToText(const std::vector<Step>& steps, double now, bool json) {
  const Step* const flight = FindFlight(steps, now);
  const double way = flight ? now - flight->begin : 0.0;
  const double fraction = !flight ? 0.0 : way >= flight->duration ? 1.0 : way / flight->duration;
  const AbstractView* const view =
      flight ? TourPrimitiveCast::CastToFlyTo(flight->primitive.get())->GetView() : nullptr;
  if (json) {
    return JsonObject()
               .Add("at", NumberToJson(now))
               .Add("view", ViewToJson(view))
               .Add("fraction", NumberToJson(fraction))
               .Get() +
           '\n';
  }
  const QString text = fraction < 1.0 && flight
                           ? QStringLiteral("flying to %1, %2% of the way")
                                 .arg(ViewToText(view), Number(100.0 * fraction))
                           : QStringLiteral("at ") + ViewToText(view);
  return (Seconds(now) + QStringLiteral(": ") + text).toUtf8() + '\n';
}

std::vector<RefPtr<Tour>> FindTours(const SchemaObject& root, const QString& id) {
  mmvector<SchemaObject*> found;
  root.FindBySchema(Tour::GetClassSchema(), found);
  std::vector<RefPtr<Tour>> tours;
  for (SchemaObject* tour : found) {
    if (id.isNull() || tour->GetId() == id) {
      tours.emplace_back(static_cast<Tour*>(tour));
    }
  }
  return tours;
}

} // namespace

int ShowTours(const Arguments& arguments) {
  const Document document = ReadDocument(arguments.GetFile(), arguments.base);
  if (!document.root) {
    Complain(document.GetErrorLine());
    return kFindings;
  }
  const QString id = arguments.operands.value(1);
  const std::vector<RefPtr<Tour>> tours = FindTours(*document.whole, id);
  if (tours.empty()) {
    Complain(QStringLiteral("%1: the document has no tour").arg(document.file) +
             (id.isNull() ? QString() : QStringLiteral(" \"%1\"").arg(id)));
    return kFindings;
  }
  if (!arguments.at) {
    return ListTours(tours, arguments.json);
  }
  if (tours.size() > 1) {
    Complain(QStringLiteral("%1: the document has %2 tours: give the id of one")
                 .arg(document.file, QString::number(tours.size())));
    return kFindings;
  }
  const std::vector<Step> steps = GetSteps(*tours.front());
  Play(steps, *arguments.at);
  const QByteArray flight = FlightToText(steps, *arguments.at, arguments.json);
  const bool isPiped = arguments.output.isEmpty() || arguments.output == QLatin1String("-");
  if (isPiped) {
    PrintLine(QString::fromUtf8(flight).trimmed()); // the document has standard output for itself
  } else if (!Print(flight)) {
    return kNoOutput;
  }
  return WriteDocument(*document.whole, arguments.output, kWriteOwnFilesOnly);
}

} // namespace tool
