// The run directories among the entries of a folder of the server, as a table. GUI thread.
#pragma once

#include <QAbstractTableModel>
#include <QDate>
#include <QList>
#include <QSortFilterProxyModel>
#include <QString>
#include <QStringList>

namespace console {

/// A directory whose name is prefix, run number, "_", date.
struct RunDirectory {
    QString name;
    QString prefix;
    int run = 0;
    QDate date; ///< invalid if the name contains no valid date
    QString dateDigits;
};

/// The run directories among the entries of `ls-F`, by prefix, run and date.
QList<RunDirectory> runDirectoriesOf(const QStringList& entries);

class RunTable : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Prefix, Run, Date, Name, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setRuns(const QList<RunDirectory>& runs);
    const QList<RunDirectory>& runs() const { return m_runs; }
    /// Every prefix once, in order.
    QStringList prefixes() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    QList<RunDirectory> m_runs;
};

/// Sorts by one column, and equal rows by prefix, run and date; shows one prefix or all.
class RunOrder : public QSortFilterProxyModel {
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    /// Null shows every prefix.
    void setPrefix(const QString& prefix);
    /// Shows names that contain this text, case-insensitive.
    void setPart(const QString& part);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

    QString m_prefix;
    QString m_part;
};

} // namespace console
