#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include "layering/Declarations.h"
#include "layering/SourceTree.h"
#include "support/ScratchMain.h"

/// Where names are declared, and that no class opens its private part to another.
class TestDeclarations : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void headersDeclareInTheirRoomsNamespace();
  void everyWidgetOnTopIsThere();
  void noClassHasAFriend();
  void findsWhatIsOutOfPlace_data();
  void findsWhatIsOutOfPlace();
  void findsFriends_data();
  void findsFriends();
};

namespace {

/// Classes outside of any namespace. Style sheets, accessibility tools and
/// scripts that drive the window find widgets and timers by the class name of the
/// meta-object, which would get the namespace's name before it.
const QSet<QString> onTop{
    // The window and its two big parts.
    "MainWidget",
    "OutputWidget",
    "InputWidget",
    // The editors of the automation, and the key capture of one of them.
    "AliasWidget",
    "MacroWidget",
    "TriggerWidget",
    "KeyPressInput",
    "KeyPressWidget",
    // The other dialogs.
    "ConfigureWidget",
    "HelpWidget",
    "ProxyWidget",
    "StyleWidget",
    // A child of the window for each pause that waits.
    "ActionTimer",
};

bool isOnTop(const Declaration& declaration) {
  static const QRegularExpression macro(QStringLiteral(R"(\bQ_OBJECT\b)"));
  return declaration.scope.isEmpty() && onTop.contains(declaration.className()) &&
         declaration.body->contains(macro);
}

/// What a header at this path declares where it should not.
QStringList outOfPlace(const QString& path, const QString& code) {
  const QString room = QStringLiteral("kelmora::") + path.section(u'/', 0, 0);
  QStringList found;
  for (const Declaration& declaration : declarationsIn(code)) {
    const bool inRoom =
        declaration.scope == room || declaration.scope.startsWith(room + QStringLiteral("::"));
    if (!inRoom && !declaration.isForward() && !isOnTop(declaration))
      found << declaration.scope + QStringLiteral(": ") + declaration.text;
  }
  return found;
}

/// Friend functions and operators are part of a class; they have a "(".
QStringList friendsIn(const QString& code) {
  static const QRegularExpression friendship(QStringLiteral(R"(\bfriend\b[^(;]*;)"));
  QStringList friends;
  for (auto matches = friendship.globalMatch(code); matches.hasNext();)
    friends << matches.next().captured().simplified();
  return friends;
}

}  // namespace

void TestDeclarations::headersDeclareInTheirRoomsNamespace() {
  const SourceTree tree = projectSources();
  QStringList found;
  for (auto file = tree.begin(); file != tree.end(); ++file)
    if (file.key().endsWith(QLatin1String(".h")))
      for (const QString& declaration : outOfPlace(file.key(), file->code))
        found << file.key() + u' ' + declaration;
  QCOMPARE(found.join(u'\n'), QString());
}

void TestDeclarations::everyWidgetOnTopIsThere() {
  QSet<QString> found;
  for (const SourceFile& file : projectSources())
    for (const Declaration& declaration : declarationsIn(file.code))
      if (isOnTop(declaration))
        found << declaration.className();
  QCOMPARE(found, onTop);
}

void TestDeclarations::noClassHasAFriend() {
  const SourceTree tree = projectSources();
  QStringList found;
  for (auto file = tree.begin(); file != tree.end(); ++file)
    for (const QString& friendship : friendsIn(file->code))
      found << file.key() + u' ' + friendship;
  QCOMPARE(found.join(u'\n'), QString());
}

void TestDeclarations::findsWhatIsOutOfPlace_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QStringList>("found");
  const auto inRoom = [](const QString& text) {
    return "namespace kelmora::room {\n" + text + "}\n";
  };
  const QStringList none;
  QTest::newRow("a class and a function in the room")
      << inRoom("class A {\n  void f() { g(); }\n};\n[[nodiscard]] int f(int a = 0);\n") << none;
  QTest::newRow("a namespace within the room's")
      << inRoom("namespace inner {\nstruct B {};\n}\nint f();\n") << none;
  QTest::newRow("forward declarations")
      << "class QWidget;\nnamespace kelmora::other {\nclass B;\nenum class C : int;\n}\n"
      << none;
  QTest::newRow("a widget that stays on top")
      << "class MainWidget : public QWidget,\n    private Host {\n  Q_OBJECT\n  int a;\n};\n"
      << none;
  QTest::newRow("such a widget without its macro")
      << "class MainWidget : public QWidget {\n  // Q_OBJECT\n};\n"
      << QStringList{": class MainWidget : public QWidget"};
  QTest::newRow("another widget") << "class OtherWidget : public QWidget {\n  Q_OBJECT\n};\n"
                                  << QStringList{": class OtherWidget : public QWidget"};
  QTest::newRow("a function on top behind one in the room")
      << inRoom("inline int f() { return '}'; }\n") + "int g();\n"
      << QStringList{": int g()"};
  QTest::newRow("a body on top")
      << "inline int f() {\n  return 1'000;\n}\ninline int g() {\n  return 2;\n}\n"
      << QStringList{": inline int f()", ": inline int g()"};
  QTest::newRow("a value, an enumeration and a name")
      << "inline constexpr int a{1};\nenum class B { C };\nusing D = int;\n"
      << QStringList{": inline constexpr int a", ": enum class B", ": using D = int"};
  QTest::newRow("a class of another room") << "namespace kelmora::other {\nstruct B {};\n}\n"
                                           << QStringList{"kelmora::other: struct B"};
  QTest::newRow("a room whose name only begins alike")
      << "namespace kelmora::rooms {\nstruct B {};\n}\n"
      << QStringList{"kelmora::rooms: struct B"};
  QTest::newRow("no room") << "namespace kelmora {\nstruct B {};\n}\nnamespace {\nint c;\n}\n"
                           << QStringList{"kelmora: struct B", "(unnamed): int c"};
  QTest::newRow("quotes and comments")
      << "/* int a; */\n  #define B \\\n int b;\n" + inRoom("const char* c = \"}\"; // }\nint d;\n")
      << none;
}

void TestDeclarations::findsWhatIsOutOfPlace() {
  QFETCH(const QString, text);
  QTEST(outOfPlace(QStringLiteral("room/core/File.h"), sourceFile(text).code), "found");
}

void TestDeclarations::findsFriends_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QStringList>("friends");
  QTest::newRow("none") << "// my friend class;\nconst char* a = \"friend class B;\";"
                        << QStringList();
  QTest::newRow("an operator") << "friend bool operator==(const A&, const A&) = default;"
                               << QStringList();
  QTest::newRow("a function") << "friend std::vector<A> all(int number);" << QStringList();
  QTest::newRow("a class") << "friend class\n  Other;" << QStringList{"friend class Other;"};
  QTest::newRow("a struct") << "friend struct ::Other;" << QStringList{"friend struct ::Other;"};
  QTest::newRow("a class by its name alone")
      << "int f();\nfriend Other;\nint g();" << QStringList{"friend Other;"};
  QTest::newRow("a template") << "template <typename T> friend class Other;"
                              << QStringList{"friend class Other;"};
}

void TestDeclarations::findsFriends() {
  QFETCH(const QString, text);
  QTEST(friendsIn(sourceFile(text).code), "friends");
}

KELMORA_TEST_MAIN(TestDeclarations)
#include "tst_declarations.moc"
