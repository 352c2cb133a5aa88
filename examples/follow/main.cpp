// Follows the network links of a document, as a client does that draws it, and prints what it
// fetches, when and why, and what changes. Local files stand in for servers.

#include "fileserver.h"
#include "log.h"

#include "kestan/core/creationobserver.h"
#include "kestan/core/kestanoptions.h"
#include "kestan/core/library.h"
#include "kestan/host/datetime.h"
#include "kestan/host/net.h"
#include "kestan/host/pump.h"
#include "kestan/host/url.h"
#include "kestan/host/workerthread.h"
#include "kestan/link/fetchplan.h"
#include "kestan/link/link.h"
#include "kestan/link/networklink.h"
#include "kestan/read/expathandler.h"
#include "kestan/read/kmlparser.h"

#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <thread>
#include <utility>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace {

constexpr char kUsage[] =
    R"(usage: kestan-follow [--seconds N] [--start TIME] [--server URL] [--view VIEW]... FILE
  --seconds N   simulate N seconds; without it, go on until nothing is left to fetch
  --start TIME  begin at a time such as 2030-01-02T03:04:05Z rather than now, with --seconds
  --server URL  the folder of FILE is what lies at URL: links have queries, updates their rights
  --view [SECONDS=]NORTH,SOUTH,EAST,WEST
                where the user looks, in degrees, from a second on
The n-th fetch of name.kml gets the file name.n.kml where there is one.
)";

struct Options {
  double seconds = -1.0;
  double start = SystemTime::GetCurrent();
  QString server;
  std::vector<std::pair<double, ViewParams>> views;
};

bool ReadView(const QString& text, Options& options) {
  const QStringList parts = text.split('=');
  const QStringList bounds = parts.back().split(',');
  bool isGood = parts.size() <= 2 && bounds.size() == 4;
  const double seconds = isGood && parts.size() == 2 ? parts[0].toDouble(&isGood) : 0.0;
  ViewParams view;
  double* const places[] = {&view.north, &view.south, &view.east, &view.west};
  for (int i = 0; isGood && i < 4; ++i)
    *places[i] = bounds[i].toDouble(&isGood) / 180.0;
  const double former = options.views.empty() ? 0.0 : options.views.back().first;
  options.views.emplace_back(seconds, view);
  return isGood && seconds >= former;
}

bool ReadOption(const QString& name, const QString& value, Options& options) {
  if (name == "--seconds") {
    bool isGood = false;
    options.seconds = value.toDouble(&isGood);
    return isGood && options.seconds >= 0.0 && options.seconds <= 1e9;
  }
  if (name == "--start") {
    options.start = DateTime::FromString(value).ToCurrentTime();
    return !DateTime::FromString(value).isUndefined();
  }
  if (name == "--server") {
    options.server = value.endsWith('/') ? value : value + '/';
    return net::ServerInfo::IsHttp(value, false);
  }
  return name == "--view" && ReadView(value, options);
}

/// The main loop of a client. It hears of each link that a document or an update brings.
class Follower final : private CreationObserver {
public:
  Follower(const QFileInfo& file, Options options)
      : CreationObserver(NetworkLink::GetClassSchema()), name_(file.fileName()),
        options_(std::move(options)),
        now_(options_.start), server_{options_.server, file.absolutePath() + '/', {}} {}

  /// Goes on until nothing is left to do. Answers the exit status.
  int Run() {
    const QString url = (server_.url.isEmpty() ? server_.folder : server_.url) + name_;
    const RefPtr<ParseJob> job = Parse(url, server_.Fetch(url).bytes);
    if (!job->GetResult()) {
      Print(name_ + ": there's no feature to be read. " + job->GetErrorText().simplified());
      return 1;
    }
    PrintNow("open " + name_ + ": " + GetTitle(*job->GetResult()));
    const auto changes = LogChanges(*job->GetResult());
    Follow();
    PrintNow(QString("end: %1 fetches, %2 links").arg(fetches_).arg(plan_.GetLinkCount()));
    return 0;
  }

private:
  void OnPostCreate(const Event& event) override {
    plan_.Add(static_cast<NetworkLink&>(*event.object), GetNow());
  }

  bool IsSimulated() const { return options_.seconds >= 0.0; }
  double GetNow() const { return IsSimulated() ? now_ : SystemTime::GetCurrent(); }
  void PrintNow(const QString& text) const {
    Print(QString("%1  %2").arg(GetNow() - options_.start, 9, 'f', 2).arg(text));
  }

  /// The library does its share of the main thread's work meanwhile.
  void AdvanceTo(double time) {
    now_ = std::max(now_, time);
    do {
      const double idle = std::min({Pump::Run(0.004), time - GetNow(), 0.02});
      if (idle > 0.0)
        std::this_thread::sleep_for(std::chrono::duration<double>(idle));
    } while (GetNow() < time);
  }

  RefPtr<ParseJob> Parse(const QString& url, const QByteArray& bytes) {
    constexpr unsigned kAccess = 2; // what objects have by themselves
    const RefPtr<KmlParserJob> job(new KmlParserJob(&worker_, url, bytes, kAccess, nullptr, false));
    bool isDone = false;
    job->SetDone([&isDone](KmlParserJob*) { isDone = true; });
    job->Start();
    while (!isDone) { // a client draws its frames meanwhile
      Pump::Run(0.004);
      std::this_thread::yield();
    }
    return job;
  }

  void Follow() {
    const double end =
        IsSimulated() ? options_.start + options_.seconds : std::numeric_limits<double>::max();
    auto view = options_.views.begin();
    for (;;) {
      const FetchPlan::Next next = plan_.GetNext();
      const double due = std::max(next.due.time, GetNow());
      const bool isView = view != options_.views.end() && options_.start + view->first <= due;
      const double time = isView ? options_.start + view->first : due;
      if (time > end)
        break;
      AdvanceTo(time);
      if (isView) {
        PrintNow("the view moves");
        plan_.MoveView((view++)->second, time);
      } else {
        Take(next);
      }
    }
    if (IsSimulated())
      AdvanceTo(end);
  }

  void Take(const FetchPlan::Next& next) {
    const RefPtr<NetworkLink> link(next.link);
    const QString what = GetTitle(*link) + ": " + FetchSchedule::GetText(next.due.reason);
    if (next.due.reason == FetchSchedule::kSessionOver) {
      PrintNow(what);
      next.schedule->EndSession();
      return;
    }
    plan_.Begin(next, GetNow());
    const QString url = link->GetAbsoluteUrl();
    PrintNow(what + ", " + (url.startsWith(server_.folder) ? url.mid(server_.folder.size()) : url));
    Fetch(*link, url);
    if (!link->GetFetchErrorText().isEmpty())
      PrintNow("  failed: " + link->GetFetchErrorText().simplified());
  }

  void Fetch(NetworkLink& link, const QString& url) {
    const bool isEndless = link.IsEndless();
    const FileServer::Answer answer = isEndless ? FileServer::Answer() : server_.Fetch(url);
    ++fetches_;
    AdvanceTo(GetNow() + (IsSimulated() ? 0.05 : 0.0)); // no fetch takes no time
    if (answer.file.isNull()) {
      link.SetFetchState(net::kFetchCancelled,
                         isEndless ? "it leads back to where it stands" : "there's no such file");
      return;
    }
    const QString base = link.GetLink()->GetResourceUrl();
    const RefPtr<ParseJob> job = Parse(base.left(FindFragment(QString(), base)), answer.bytes);
    QString line = "  " + answer.file + ':';
    if (job->GetResult())
      line += ' ' + GetTitle(*job->GetResult());
    if (job->GetLinkControl())
      line += " control(" + GetValues(*job->GetLinkControl()) + ')';
    PrintNow(line);
    link.TakeFetched(*job);
  }

  const QString name_;
  const Options options_;
  double now_; // simulated
  FileServer server_;
  WorkerThread worker_;
  FetchPlan plan_;
  int fetches_ = 0;
};

} // namespace

int main(int argc, char** argv) {
  Options options;
  bool isGood = argc % 2 == 0;
  for (int i = 1; isGood && i + 1 < argc; i += 2)
    isGood = ReadOption(argv[i], QString::fromLocal8Bit(argv[i + 1]), options);
  if (!isGood) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  GInitialize(); // on the main thread, before any object is made
  KestanOptionsContext::kestanOptions.kmlErrorHandling.Set(1);
  ExpatHandler::SetDefaultErrorHandler(MakeErrorLog().get());
  const QFileInfo file(QString::fromLocal8Bit(argv[argc - 1]));
  const int status = Follower(file, options).Run();
  ExpatHandler::SetDefaultErrorHandler(nullptr);
  GShutdown(); // when all objects are gone
  return status;
}
