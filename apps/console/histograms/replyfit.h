// Whether the reply to a poll can be drawn. The library's windows ask a person in a box about one that cannot; the
// console's say it below the plot and go on polling.
#pragma once

#include <QByteArray>
#include <QString>

namespace console {

/// What is wrong with a map's reply, in words; empty if it can be drawn. The bins are those in force unless the text
/// tells others ("exported X x Y y").
QString mapProblem(const QString& replyText, const QByteArray& payload, int binsX, int binsY);

/// The same for a reply in the pair format, whose text ends with the axis, "(min max bins)".
QString pairsProblem(const QString& replyText, const QByteArray& payload);

} // namespace console
