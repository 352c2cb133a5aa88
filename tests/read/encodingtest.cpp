#include "tests/read/readtest.h"

#include <QTemporaryDir>
#include <QTextCodec>

namespace vorrel::kestan {

namespace {

using EncodingTest = ReadTest;

QByteArray Named(const QByteArray& name, const QByteArray& encoding = QByteArray()) {
  const QByteArray declaration =
      encoding.isEmpty() ? "" : "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>";
  return declaration + "<Placemark><name>" + name + "</name></Placemark>";
}

TEST_F(EncodingTest, EncodingsOfDocumentsAreUnderstood) {
  const std::pair<const char*, QString> cases[] = {
      {"UTF-8", QStringLiteral(u"Gr\u00FC\u00DFe \u4E2D \U0001F30D")},
      {"ISO-8859-1", QStringLiteral(u"Gr\u00FC\u00DFe")},
      {"windows-1252", QStringLiteral(u"\u201Cx\u201D \u20AC")},
      {"Shift_JIS", QStringLiteral(u"\u6771\u4EAC")},
      {"GB18030", QStringLiteral(u"\u5317\u4EAC \U0001F30D")},
  };
  for (const auto& [encoding, name] : cases) {
    SCOPED_TRACE(encoding);
    QTextCodec* const codec = QTextCodec::codecForName(encoding);
    ASSERT_TRUE(codec);
    const auto placemark = Read<Placemark>(Named(codec->fromUnicode(name), encoding));
    EXPECT_EQ(name, placemark->GetName());
  }
}

TEST_F(EncodingTest, BytesThatTheEncodingCannotMeanAreTakenAsLatin1) {
  const QByteArray name = QStringLiteral(u"Gr\u00FC\u00DFe").toLatin1();
  for (const char* encoding : {"", "UTF-8", "utf8", "UTF-16", "x-nobody-knows", "UTF-32"}) {
    SCOPED_TRACE(encoding);
    const auto placemark = Read<Placemark>(Named(name, encoding));
    EXPECT_EQ(QString::fromLatin1(name), placemark->GetName());
  }
  // Far behind the first piece, in memory and in a file: the second attempt starts anew.
  const QByteArray text = "<Document>" +
                          QByteArray("<Placemark><name>a</name></Placemark>").repeated(5000) +
                          Named("\xFC") + "</Document>";
  const auto document = ReadObject(text);
  ASSERT_TRUE(document);
  EXPECT_EQ(5001, Write(*document).count("<Placemark>"));
  const QTemporaryDir folder;
  QFile file(folder.filePath("latin.kml"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text);
  file.close();
  KmlHandler handler(file.fileName(), 2, nullptr, nullptr, nullptr);
  const auto fromFile = ExpatHandler::LoadXml(handler, nullptr, 0);
  ASSERT_TRUE(fromFile);
  EXPECT_EQ(5001, Write(*fromFile).count("<Placemark>"));
}

TEST_F(EncodingTest, NamesThatNoOtherEncodingHasAreRefused) {
  for (const char* content : {"<a\xAA/>", "<a b\xB5='1'/>", "<a><b><c\xBA/></b></a>"}) {
    SCOPED_TRACE(content);
    EXPECT_FALSE(ReadObject(QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><Placemark>") +
                            content + "</Placemark>"));
    EXPECT_TRUE(error().contains("no letter in UTF-8")) << error().toStdString();
  }
  EXPECT_TRUE(ReadObject(QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><Placemark>"
                                    "<a\xE4>\xAA</a\xE4></Placemark>")));
}

TEST_F(EncodingTest, OtherErrorsGetNoSecondAttempt) {
  EXPECT_FALSE(ReadObject(QByteArray("<Placemark><name>\xC3\xBC</nome></Placemark>")));
  EXPECT_EQ("Parse error at line 1, column 20:\n\n\tmismatched tag", error());
}

/// Moves a text with characters of 1 to 4 bytes over the ends of the pieces in which documents are
/// read.
TEST_F(EncodingTest, CharactersSurviveTheEndsOfPieces) {
  const QString name = QStringLiteral(u"a\u00FC\u4E2D\U0001F30D]b&c\u4E2D");
  const QString escaped = QString(name).replace('&', "&amp;");
  const auto nameBytes = escaped.toUtf8().size();
  for (int shift = 0; shift <= nameBytes + 1; ++shift) {
    const QByteArray head = "<Placemark><!--";
    const auto fill = 64 * 1024 - shift - head.size() - 3 - 6;
    const QByteArray text = head + QByteArray(fill, 'x') + "--><name>" + escaped.toUtf8() +
                            "</name><f:oo xmlns:f='f' a='" + escaped.toUtf8() + "'>" +
                            escaped.toUtf8() + "<![CDATA[<" + name.toUtf8() +
                            "]]></f:oo></Placemark>";
    const auto placemark = Read<Placemark>(text);
    ASSERT_EQ(name, placemark->GetName()) << shift;
    const QString raw = QString(name).replace("&", "<![CDATA[&]]>");
    ASSERT_EQ("<f:oo a=\"" + escaped + "\">" + raw + "<![CDATA[<" + name + "]]></f:oo>",
              placemark->GetUnknownData()->fields)
        << shift;
  }
}

/// The same for preserved text at each end of a piece: what is kept depends on the document only.
TEST_F(EncodingTest, PreservedTextDoesNotDependOnPieces) {
  const QByteArray content = "x &amp;&amp; <![CDATA[a<b>]] &\n<c/>]]>]]&gt;&#13;<![CDATA[>]]>";
  QString expected;
  for (int shift = 0; shift <= content.size(); ++shift) {
    const QByteArray head = "<Placemark><!--";
    const auto fill = 64 * 1024 - shift - head.size() - 3 - 5;
    const auto placemark =
        Read<Placemark>(head + QByteArray(fill, 'x') + "--><foo>" + content + "</foo></Placemark>");
    ASSERT_TRUE(placemark);
    const QString kept = placemark->GetUnknownData()->fields;
    if (shift == 0)
      expected = kept;
    ASSERT_EQ(expected, kept) << shift;
  }
}

TEST_F(EncodingTest, AByteOrderMarkSaysMoreThanADeclaration) {
  const QString name = QStringLiteral(u"\u00E4\u4E2D\U0001F30D");
  for (const char* const declared : {"", "<?xml version='1.0' encoding='windows-1251'?>"}) {
    for (const char* const encoding : {"UTF-8", "UTF-16LE", "UTF-16BE"}) {
      SCOPED_TRACE(encoding);
      QTextCodec::ConverterState state(QTextCodec::IgnoreHeader); // no mark but this one
      const QString text =
          QChar(0xFEFF) + QString(declared) + QString::fromUtf8(Named(name.toUtf8()));
      const auto placemark = Read<Placemark>(QTextCodec::codecForName(encoding)->fromUnicode(
          text.constData(), static_cast<int>(text.size()), &state));
      EXPECT_EQ(name, placemark->GetName());
    }
  }
}

TEST_F(EncodingTest, ASecondAttemptReportsNothingAnew) {
  const RefPtr<RecordingErrorHandler> recorder(new RecordingErrorHandler);
  const Parse parse("<Placemark><nome/><name>\xE4</name><neme/></Placemark>", 1, recorder.get());
  ASSERT_TRUE(parse.object);
  EXPECT_EQ(2U, recorder->reports.size());
  const RefPtr<RecordingErrorHandler> once(new RecordingErrorHandler);
  once->action = ErrorReport::kActionIgnoreRest;
  const Parse ignoring("<Placemark><nome/><name>\xE4</name><neme/></Placemark>", 1, once.get());
  EXPECT_EQ(1U, once->reports.size());
}

} // namespace

} // namespace vorrel::kestan
