#include "tests/support/kmltest.h"

#include <QThread>

namespace vorrel::kestan {

using NestingTest = KmlTest;

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

class SmallStack final : public QThread {
public:
  SmallStack(const SchemaObject& object, QByteArray& bytes) : object_(object), bytes_(bytes) {
    setStackSize(512 * 1024);
  }
  void run() override { object_.WriteKmlString(bytes_); }

private:
  const SchemaObject& object_;
  QByteArray& bytes_;
};

TEST_F(NestingTest, AThousandLevelsFitASmallStack) {
  for (const char* name : {"Folder", "Document"}) {
    SCOPED_TRACE(name);
    const QString start = QString("<%1>").arg(name);
    const QString end = QString("</%1>").arg(name);
    const auto object = ReadObject(start.repeated(990) + "<Placemark/>" + end.repeated(990));
    ASSERT_TRUE(object) << error().toStdString();
    QByteArray bytes;
    SmallStack thread(*object, bytes);
    thread.start();
    thread.wait();
    EXPECT_EQ(990, bytes.count(start.toUtf8()));
  }
}

#endif

TEST_F(NestingTest, IndentationEndsAtThirtyTwoTabs) {
  const auto object = ReadObject(QString("<Folder>").repeated(40) + QString("</Folder>").repeated(40));
  ASSERT_TRUE(object);
  const QString xml = Write(*object);
  EXPECT_TRUE(xml.contains('\n' + QString(32, '\t') + "<Folder>"));
  EXPECT_FALSE(xml.contains(QString(33, '\t')));
}

} // namespace vorrel::kestan
