// What most sources of rules include, compiled once. No widget, no network:
// a rule that reaches for one must still say so, and fails to link.
#include <QByteArray>
#include <QByteArrayView>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QList>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QTimer>
#include <QVariant>
#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>
