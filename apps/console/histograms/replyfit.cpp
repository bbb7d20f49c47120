#include "histograms/replyfit.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace console {

namespace {

constexpr qsizetype valueBytes = sizeof(double);
constexpr int maxPairBins = 1 << 24;

struct ReplyFit {
    Q_DECLARE_TR_FUNCTIONS(console::ReplyFit)
};

/// As the window reads them: one character stands behind the word, a count that is no number is 0.
void readCounts(const QString& replyText, int& binsX, int& binsY)
{
    const QString word = QStringLiteral("exported");
    const qsizetype at = replyText.indexOf(word);
    const QStringList tokens = at > 0 ? replyText.mid(at + word.size() + 1).split(u' ') : QStringList();
    if (tokens.size() < 4)
        return;
    binsX = tokens.at(0).toInt();
    binsY = tokens.at(2).toInt();
}

double valueAt(const QByteArray& payload, qsizetype index)
{
    double value = 0.0;
    std::memcpy(&value, payload.constData() + index * valueBytes, sizeof value);
    return value;
}

} // namespace

QString mapProblem(const QString& replyText, const QByteArray& payload, int binsX, int binsY)
{
    readCounts(replyText, binsX, binsY);
    const qint64 values = payload.size() / valueBytes;
    if (payload.isEmpty() || (binsX >= 0 && binsY >= 0 && values > 0 && values == qint64(binsX) * binsY))
        return {};
    return ReplyFit::tr("The reply holds %1 values for %2 x %3 bins and is not shown.")
        .arg(values)
        .arg(binsX)
        .arg(binsY);
}

QString pairsProblem(const QString& replyText, const QByteArray& payload)
{
    QString text = replyText;
    const qsizetype open = text.indexOf(u'(');
    for (const QChar last : { u'\n', u')' }) {
        if (text.endsWith(last))
            text.chop(1);
    }
    const QStringList tokens = open > 0 ? text.mid(open + 1).split(u' ') : QStringList();
    const int bins = tokens.size() == 3 ? tokens.at(2).toInt() : 0;
    if (tokens.size() != 3 || bins > maxPairBins)
        return ReplyFit::tr("The reply tells no axis and is not shown: %1").arg(replyText.trimmed());
    const double min = tokens.at(0).toDouble();
    const double max = tokens.at(1).toDouble();
    const qsizetype all = payload.size() / (2 * valueBytes);
    const qsizetype pairs = bins > 0 ? std::min<qsizetype>(all, bins) : all;
    for (qsizetype i = 0; i < pairs; ++i) {
        const double bin = std::round((valueAt(payload, 2 * i) - min) * bins / (max - min));
        if (!(bin >= 0.0 && bin < bins)) // a NaN is outside too
            return ReplyFit::tr("The reply holds a value outside of its axis and is not shown.");
    }
    return {};
}

} // namespace console
