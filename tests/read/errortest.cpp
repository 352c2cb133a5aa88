#include "kestan/core/kestanoptions.h"
#include "tests/read/readtest.h"

#include <QTemporaryDir>

#include <functional>
#include <new>

namespace vorrel::kestan {

namespace {

using ErrorTest = ReadTest;

TEST_F(ErrorTest, EachErrorHasItsMessageItsCodeAndItsPlace) {
  struct Case {
    const char* text;
    const char* codes; // of a refused document, the reason for that is the last
    const char* path;
    const char* messages = "";
    bool isRefused = false;
  };
  const Case cases[] = {
      {"<Folder><Placemark><nome/></Placemark></Folder>", "unknown-element", "Folder/Placemark",
       "Unknown element <nome>"},
      {"<Placemark><Geometry/></Placemark>", "unknown-element", "Placemark",
       "Unknown element <Geometry>"},
      {"<Placemark><q:nome/></Placemark>", "unknown-element", "Placemark",
       "Unknown element <q:nome>"},
      {"<Placemark xmlns:q='urn:q'><q:nome/></Placemark>", "foreign-element", "Placemark",
       "Unknown element <q:nome>"},
      {"<Placemark><nome xmlns='urn:q'/></Placemark>", "foreign-element", "Placemark",
       "Unknown element <nome>"},
      {"<Placemark><description>a <b>x</b></description></Placemark>", "unknown-type",
       "Placemark/description", "Unknown type <b>"},
      {"<Placemark><description><Folder/></description></Placemark>", "unexpected-type",
       "Placemark/description", "Unexpected type <Folder> found as child of <description>"},
      {"<Polygon><outerBoundaryIs><Point/></outerBoundaryIs></Polygon>", "unexpected-type",
       "Polygon/outerBoundaryIs", "Unexpected type <Point> found as child of <outerBoundaryIs>"},
      {"<Placemark a='1' b:c='2' d='&lt;&quot;'/>", "unknown-attribute unknown-attribute",
       "Placemark", "Unknown attribute a=\"1\" | Unknown attribute d=\"&lt;&quot;\""},
      {"<Polygon><outerBoundaryIs a='1'/></Polygon>", "unknown-attribute",
       "Polygon/outerBoundaryIs", "Unknown attribute(s) specified for <outerBoundaryIs>."},
      {"<Placemark><id>a</id></Placemark>", "attribute-as-element", "Placemark",
       "<id> is expected to be an attribute, not an element"},
      {"<Placemark><name>x</name>stray</Placemark>", "unsupported-data", "Placemark",
       "Unsupported data in kml object (stray)."},
      {"<Placemark>stray<name>x</name></Placemark>", "", ""},
      {"<Point><altitudeMode>high</altitudeMode></Point>", "unknown-enumeration",
       "Point/altitudeMode", "Unknown enumeration (high)."},
      {"<Placemark><q:name xmlns:q='http://www.w3.org/2005/Atom'/></Placemark>", "", ""},
      {"<nonsense/>", "unknown-type bad-root", "", "Unknown type <nonsense>", true},
      {"<Geometry/>", "abstract-type bad-root", "", "Failed to create object <Geometry>", true},
      {"<kml xmlns='urn:q/2.2'/>", "foreign-element foreign-root", "", "Unknown type <kml>", true},
      {"<kml xmlns='http://www.opengis.net/kml/3'/>", "too-new", "", "", true},
      {"<kml><Document/><Folder/></kml>", "refused", "", "", true},
      {"<Placemark><name></Placemark>", "malformed-xml", "", "", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
    const Parse parse(c.text, 1, recorder.get());
    QStringList codes;
    QStringList messages;
    for (const ErrorReport& report : recorder->reports) {
      codes += GetText(report.code);
      messages += report.text;
      EXPECT_EQ(c.path, report.path);
    }
    EXPECT_EQ(c.isRefused, !parse.object);
    if (c.isRefused)
      codes += GetText(parse.handler.GetErrorCode());
    EXPECT_EQ(c.codes, codes.join(' '));
    EXPECT_EQ(c.messages, messages.join(" | "));
  }
  EXPECT_EQ("urn:q/2.2", Parse("<kml xmlns='urn:q/2.2'/>", 0).handler.GetForeignNamespace());
  EXPECT_TRUE(Parse("<Geometry/>", 0).handler.GetForeignNamespace().isNull());
}

TEST_F(ErrorTest, EachFatalErrorHasItsMessage) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"", "no element found", "Parse error at line 1, column 0:\n\n\tno element found"},
      {"<Placemark>\n <name></nome>", "mismatched tag",
       "Parse error at line 2, column 9:\n\n\tmismatched tag"},
      {"<Geometry/>", "File has missing or bad root element",
       "Error while parsing file \"http://example.com/a.kml\" at line 1, column 0:\n\n"
       "File has missing or bad root element\n\n"},
      {"<kml><Document/><Folder/></kml>", "Only a single root feature allowed within <kml> tag",
       "Only a single root feature allowed within <kml> tag"},
  };
  for (int handling = 0; handling <= 3; ++handling) {
    for (const auto& [text, bare, full] : cases) {
      SCOPED_TRACE(text);
      const Parse parse(text, handling);
      EXPECT_FALSE(parse.object);
      EXPECT_FALSE(parse.handler.GetRoot());
      if (handling == 2 && text == QByteArray("<Geometry/>"))
        continue; // The first, recoverable error ends the parse already.
      EXPECT_EQ(full, parse.handler.GetErrorText());
      EXPECT_EQ(bare, parse.handler.GetBareErrorText());
    }
  }
}

TEST_F(ErrorTest, FindingsReachThoseWhoAskAndChangeNothing) {
  const QByteArray text = "<!DOCTYPE kml SYSTEM 'a.dtd'>\n<Placemark>\n"
                          "<name>a&nbsp;b</name></Placemark>";
  for (int handling = 0; handling <= 3; ++handling) {
    SCOPED_TRACE(handling);
    const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
    EXPECT_TRUE(Parse(text, handling, recorder.get()).object);
    EXPECT_TRUE(recorder->reports.empty());
    ASSERT_EQ(1U, recorder->findings.size());
    const ParseReport& finding = recorder->findings[0];
    EXPECT_EQ(ReportCode::kSkippedEntity, finding.code);
    EXPECT_EQ(Severity::kWarning, GetSeverity(finding.code));
    EXPECT_EQ(3, finding.line);
    EXPECT_EQ(8, finding.column);
    EXPECT_EQ("Placemark/name", finding.path);
    EXPECT_TRUE(finding.text.contains("\"nbsp\"")) << finding.text.toStdString();
  }
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  recorder->wantsFindings = false;
  EXPECT_TRUE(Parse(text, 1, recorder.get()).object);
  EXPECT_TRUE(recorder->findings.empty());
}

const QByteArray kTwoErrors = "<Placemark>\n<one/>\n <two/></Placemark>";

TEST_F(ErrorTest, TheSettingGradesRecoverableErrors) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  const Parse silent(kTwoErrors, 0, recorder.get());
  ASSERT_TRUE(silent.object);
  EXPECT_EQ("<one></one><two></two>", silent.object->GetUnknownData()->fields);
  EXPECT_TRUE(recorder->reports.empty());

  const Parse strict(kTwoErrors, 2, recorder.get());
  EXPECT_FALSE(strict.object);
  EXPECT_EQ("Unknown element <one>", strict.handler.GetBareErrorText());
  EXPECT_EQ(2, strict.handler.GetErrorLine());
  EXPECT_EQ(1, strict.handler.GetErrorColumn());
  EXPECT_TRUE(recorder->reports.empty());
}

TEST_F(ErrorTest, ReportsTellTheirPlaceAndObeyTheAnswer) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  EXPECT_TRUE(Parse(kTwoErrors, 1, recorder.get()).object);
  ASSERT_EQ(2U, recorder->reports.size());
  EXPECT_EQ("Error while parsing file \"http://example.com/a.kml\" at line 3, column 1:\n\n"
            "Unknown element <two>\n\n",
            recorder->reports[1].message);
  EXPECT_EQ("Unknown element <two>", recorder->reports[1].text);
  EXPECT_EQ(3, recorder->reports[1].line);
  EXPECT_EQ(2, recorder->reports[1].column);

  recorder->reports.clear();
  recorder->action = ErrorReport::kActionIgnoreRest;
  EXPECT_TRUE(Parse(kTwoErrors, 1, recorder.get()).object);
  EXPECT_EQ(1U, recorder->reports.size());

  recorder->reports.clear();
  recorder->action = ErrorReport::kActionAbort;
  const Parse aborted(kTwoErrors, 1, recorder.get());
  EXPECT_FALSE(aborted.object);
  EXPECT_EQ(recorder->reports[0].message, aborted.handler.GetErrorText());

  recorder->reports.clear();
  recorder->action = ErrorReport::kActionContinue;
  recorder->sticky = true;
  const Parse sticky(kTwoErrors, 1, recorder.get());
  EXPECT_TRUE(sticky.object);
  EXPECT_EQ(0, KestanOptionsContext::kestanOptions.kmlErrorHandling.Get());
  EXPECT_EQ(1U, recorder->reports.size());
}

TEST_F(ErrorTest, WithoutAHandlerTheFirstErrorSilencesReports) {
  {
    const Parse parse(kTwoErrors, 1);
    EXPECT_TRUE(parse.object);
    EXPECT_EQ(0, KestanOptionsContext::kestanOptions.kmlErrorHandling.Get());
  }
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  ExpatHandler::SetDefaultErrorHandler(recorder.get());
  EXPECT_TRUE(Parse(kTwoErrors, 1).object);
  ExpatHandler::SetDefaultErrorHandler(nullptr);
  EXPECT_EQ(2U, recorder->reports.size());
  EXPECT_EQ(1, recorder->GetRefCount());
}

TEST_F(ErrorTest, FilesThatCannotBeReadSayWhy) {
  const QTemporaryDir folder;
  const auto load = [](const QString& path) {
    KmlHandler handler(path, 2, nullptr, nullptr, nullptr);
    EXPECT_FALSE(ExpatHandler::LoadXml(handler, nullptr, 0));
    return handler.GetErrorText();
  };
  const QString missing = folder.filePath("none.kml");
  EXPECT_EQ("Could not open file \"" + missing + "\"", load(missing));
  EXPECT_EQ("Could not open file \"" + folder.path() + "\"", load(folder.path()));

  QFile archive(folder.filePath("bad.kmz"));
  ASSERT_TRUE(archive.open(QIODevice::WriteOnly));
  archive.write("PK\x03\x04 broken");
  archive.close();
  EXPECT_TRUE(load(archive.fileName())
                  .startsWith("Could not parse zero byte kmz file \"" + archive.fileName() + "\""));
}

TEST_F(ErrorTest, AHandlerStartsEachDocumentAfresh) {
  KmlHandler handler(GetDocumentUrl(), 2, nullptr, nullptr, nullptr);
  EXPECT_FALSE(Load(handler, "<kml><Document/><Folder/></kml>"));
  EXPECT_FALSE(Load(handler, "<Placemark><x><y>"));
  EXPECT_TRUE(Load(handler, "<Placemark xmlns='http://www.opengis.net/kml/2.2'/>"));
  EXPECT_TRUE(Load(handler, "<Placemark/>"));
  EXPECT_EQ(QString(), handler.GetErrorText());
}

/// Acts as the code of a client that an error is told to.
class ActingErrorHandler final : public IErrorHandler {
public:
  explicit ActingErrorHandler(std::function<void()> act) : act_(std::move(act)) {}
  void OnParseError(ErrorReport&) override { act_(); }

private:
  const std::function<void()> act_;
};

TEST_F(ErrorTest, MemoryThatRunsOutEndsTheParse) {
  const RefPtr<IErrorHandler> handler(new ActingErrorHandler([] { throw std::bad_alloc(); }));
  const Parse parse("<Folder><Placemark/>\n<x/><Placemark/></Folder>", 1, handler.get());
  EXPECT_FALSE(parse.object);
  EXPECT_EQ("There is not enough memory for the document", parse.handler.GetBareErrorText());
  EXPECT_EQ(2, parse.handler.GetErrorLine());
  EXPECT_TRUE(ReadObject(QByteArray("<Placemark/>")));
}

TEST_F(ErrorTest, AFailedParseInsideAnotherOneDoesNotEndIt) {
  const RefPtr<IErrorHandler> handler(new ActingErrorHandler(
      [] { EXPECT_FALSE(Parse("<kml><Placemark/><Placemark/></kml>", 1).object); }));
  const Parse parse("<Folder><x/><name>n</name></Folder>", 1, handler.get());
  EXPECT_TRUE(parse.object) << parse.handler.GetErrorText().toStdString();
}

} // namespace

} // namespace vorrel::kestan
