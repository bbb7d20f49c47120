// The headers that most tests include, compiled once for all test programs.
#ifdef __cplusplus
#include "headers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <random>
#include <sstream>
#include <thread>
#endif
