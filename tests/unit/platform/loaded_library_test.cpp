// Libraries that are loaded when they are needed, and what is said where they are missing.
#include "platform/canberra_library.h"
#include "platform/gio_library.h"

#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

bool isMapped(const char* library) {
  QFile maps(QStringLiteral("/proc/self/maps"));
  return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

} // namespace

class LoadedLibraryTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void itsFunctionsCanBeCalled() {
    LoadedLibrary library("m", 6);
    double (*const root)(double) = library["sqrt"];
    QCOMPARE(library.problem(), QString());
    QVERIFY(root);
    QCOMPARE(root(16.0), 4.0);
  }

  void aLibraryThatIsMissingIsNamedAndHasNoFunctions() {
    LoadedLibrary library("tockwise-has-none", 3);
    int (*const function)(int) = library["anything"];
    QVERIFY(!function);
    QVERIFY2(library.problem().contains(QStringLiteral("tockwise-has-none")),
             qPrintable(library.problem()));
  }

  void aFunctionThatIsMissingIsNamed() {
    LoadedLibrary library("m", 6);
    int (*const function)(int) = library["no_such_function"];
    QVERIFY(!function);
    QVERIFY2(library.problem().contains(QStringLiteral("no_such_function")),
             qPrintable(library.problem()));
    double (*const root)(double) = library["sqrt"];
    QVERIFY(root);
    QVERIFY(library.problem().contains(QStringLiteral("no_such_function")));
  }

  void whatIsUsedOfEachIsThere() {
    QCOMPARE(Canberra::instance().library.problem(), QString());
    QVERIFY(isMapped("libcanberra.so.0"));
    QCOMPARE(QByteArray(Canberra::instance().text_of_error(CA_SUCCESS)), "Success");
    const Gio* gio = Gio::find();
    QVERIFY(gio);
    QVERIFY(isMapped("libgio-2.0.so.0"));
    QCOMPARE(gio->library.problem(), QString());
  }
};

QTEST_GUILESS_MAIN(LoadedLibraryTest)
#include "loaded_library_test.moc"
