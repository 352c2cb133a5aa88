#include "tests/update/updatetest.h"

#include "kestan/core/schema.h"

#include <utility>

namespace vorrel::kestan {

class UpdateTest::Listener final : public IErrorHandler {
public:
  explicit Listener(UpdateTest& test) : test_(test) {}

  void OnParseError(ErrorReport& report) override {
    test_.reports_ += report.text;
    test_.lastLine_ = report.line;
  }
  // Whatever an update does, nobody looks for findings in it.
  bool WantsFindings() const override { return true; }
  void OnFinding(const ParseReport& finding) override { test_.reports_ += finding.text; }

private:
  UpdateTest& test_;
};

UpdateTest::UpdateTest() { ExpatHandler::SetDefaultErrorHandler(new Listener(*this)); }

UpdateTest::~UpdateTest() { ExpatHandler::SetDefaultErrorHandler(nullptr); }

RefPtr<Update> UpdateTest::MakeUpdate(const QString& content, const QString& target,
                                      const QString& url) {
  const QString href =
      target.isNull() ? QString() : QStringLiteral("<targetHref>%1</targetHref>").arg(target);
  const RefPtr<SchemaObject> object =
      ReadAt(url, QStringLiteral("<Update>%1%2</Update>").arg(href, content));
  EXPECT_EQ(QStringList(), TakeReports());
  return RefPtr<Update>(static_cast<Update*>(object.get()));
}

QStringList UpdateTest::Apply(const QString& content) {
  MakeUpdate(content)->Apply(nullptr, 1.0F);
  return TakeReports();
}

QStringList UpdateTest::TakeReports() { return std::exchange(reports_, QStringList()); }

QString Get(const SchemaObject& object, const QString& path) {
  const SchemaObject* at = &object;
  QStringList steps = path.split('/');
  const QString last = steps.takeLast();
  const auto find = [&](const QString& name) -> const Field* {
    for (const Namespace ns : {Namespace::kKml, Namespace::kExt}) {
      if (const Field* const field = at->FindField(name, ns, nullptr))
        return field;
    }
    return nullptr;
  };
  for (const QString& step : steps) {
    const Field* const field = find(step);
    at = field ? field->GetObject(*at, 0) : nullptr;
    if (!at)
      return QStringLiteral("no %1").arg(step);
  }
  const Field* const field = last.isEmpty() ? at->GetTextField() : find(last);
  if (!field)
    return QStringLiteral("no %1").arg(last);
  if (!field->IsArray())
    return field->toString(*at, -1);
  QStringList values;
  for (int i = 0; i < field->getCount(*at); ++i)
    values += field->toString(*at, i);
  return values.join(' ');
}

} // namespace vorrel::kestan
